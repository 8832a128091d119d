// Watershed and growing by gradient.
// One body serves both variants.
#include <functional>
#include <queue>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"
#include "reference/segmentation.h"

using namespace test;
using reference::Map;

namespace {

template <class T>
struct Arguments {
  const uint8_t* src;
  int32_t srcStep;
  T* markers;
  int32_t markerStep;
  OrvSize size;
  int32_t norm, flags;
  uint8_t* buffer;
};
template <class T>
struct Form {
  const char* name;
  OrvStatus (*run)(const uint8_t*, int32_t, T*, int32_t, OrvSize, int32_t, int32_t, uint8_t*);
  OrvStatus (*size)(OrvSize, int32_t*);
  int channels;

  OrvStatus call(const Arguments<T>& a) const {
    return run(a.src, a.srcStep, a.markers, a.markerStep, a.size, a.norm, a.flags, a.buffer);
  }
};
const Form<uint8_t> watershed8 = {"orviSegmentWatershed_8u_C1IR", orviSegmentWatershed_8u_C1IR,
                                  orviSegmentWatershedGetBufferSize_8u_C1R, 1};
const Form<uint16_t> watershed16 = {"orviSegmentWatershed_8u16u_C1IR", orviSegmentWatershed_8u16u_C1IR,
                                    orviSegmentWatershedGetBufferSize_8u16u_C1R, 1};
const Form<uint8_t> gradient1 = {"orviSegmentGradient_8u_C1IR", orviSegmentGradient_8u_C1IR,
                                 orviSegmentGradientGetBufferSize_8u_C1R, 1};
const Form<uint8_t> gradient3 = {"orviSegmentGradient_8u_C3IR", orviSegmentGradient_8u_C3IR,
                                 orviSegmentGradientGetBufferSize_8u_C3R, 3};

// An image, its markers and what became of them.
template <class T>
struct Case {
  OrvSize size;
  Image<uint8_t> src;
  Image<T> markers;
  int32_t bytes = 0;

  // Few gray levels or many; few seeds or many, some of them the reserved values.
  Case(const Form<T>& form, Random& r, const Shape& shape)
      : size{shape.width, shape.height},
        src(r, shape.width, shape.height, form.channels),
        markers(r, shape.width, shape.height, 1) {
    const int levels = r.one(2) ? r.in(0, 3) : 255, sparse = r.one(5) ? 1000000 : r.in(2, 60);
    src.fill(r, false);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < src.elements(); ++x)
        if (levels < 4 || r.one(2)) src.set(x, y, (uint8_t)r.in(0, levels));
      for (int x = 0; x < size.width; ++x)
        markers.set(x, y, (T)(!r.one(sparse) ? 0 : r.one(8) ? (T)-r.in(1, 3) : r.in(1, 4)));
    }
    src.keep(), markers.keep();
    CHECK(form.size(size, &bytes) == orvStatusOk);
  }
  Map labels() const {
    Map m(size, (T)-1);
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) m.at(x, y) = markers.at(x, y);
    return m;
  }
  Map relief() const {
    Map m(size, 0);
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) m.at(x, y) = src.at(x, y);
    return m;
  }
  // Runs in memory of exactly the reported size, for every setting, and hands the labels to `verify`.
  void run(const Form<T>& form, Random& r, int norm, int flags, const std::function<void(Map)>& verify) {
    const Guarded buffer((size_t)bytes, true, (size_t)r.in(0, 9));
    const Context context(std::string(form.name) + " " + std::to_string(size.width) + "x" +
                          std::to_string(size.height) + ", norm " + std::to_string(norm) + ", flags " +
                          std::to_string(flags));
    for (const int threads : {1, 3}) {
      steerThreads(threads);
      markers.restore();
      CHECK(form.call({src.data(), src.step(), markers.data(), markers.step(), size, norm, flags, buffer.data()}) ==
            orvStatusOk);
      CHECK(src.unchanged() && markers.onlyRegionChanged() && buffer.intact());
      verify(labels());
    }
    steerThreads(1);
    markers.restore();
  }
};

void expectSame(Map got, Map want) {
  for (int y = 0; y < got.height; ++y)
    for (int x = 0; x < got.width; ++x)
      if (got.at(x, y) != want.at(x, y)) return fail("label %d at %d,%d, not %d", got.at(x, y), x, y, want.at(x, y));
}

constexpr int lineFlags[4] = {0, orvWatershedBorder4, orvWatershedBorder8, orvWatershedBorder4 | orvWatershedBorder8};

template <class T>
void compareQueues(const Form<T>& form) {
  Random r(seed());
  for (const Shape& shape : shapes({300, 230})) {
    Case<T> c(form, r, shape);
    const int norm = r.in(0, 1), lines = lineFlags[r.in(0, 3)];
    Map want = c.labels(), relief = c.relief();
    reference::watershed(relief, want, (T)-1, norm, lines & orvWatershedBorder4, lines & orvWatershedBorder8);
    c.run(form, r, norm, lines | orvWatershedQueue | (r.one(2) ? orvWatershedSweep : 0),
          [&](const Map& got) { expectSame(got, want); });
  }
}

template <class T>
void compareGradient(const Form<T>& form) {
  Random r(seed());
  for (const Shape& shape : shapes({300, 230})) {
    Case<T> c(form, r, shape);
    const int norm = r.in(0, 1), lines = lineFlags[r.in(0, 3)];
    Map want = c.labels();
    reference::growByGradient(
        [&](int x, int y, int u, int v) {
          int most = 0;
          for (int k = 0; k < form.channels; ++k)
            most = std::max(most, abs(c.src.at(x * form.channels + k, y) - c.src.at(u * form.channels + k, v)));
          return most;
        },
        want, norm, lines & orvWatershedBorder4, lines & orvWatershedBorder8);
    c.run(form, r, norm, lines, [&](const Map& got) { expectSame(got, want); });
  }
}

// The cheapest ways from the seeds, by the shortest first.
Map cheapest(Map& relief, Map& labels) {
  Map cost({relief.width, relief.height}, -1);
  using Entry = std::pair<int, std::pair<int, int>>;
  std::priority_queue<Entry, std::vector<Entry>, std::greater<Entry>> queue;
  for (int y = 0; y < cost.height; ++y)
    for (int x = 0; x < cost.width; ++x) {
      cost.at(x, y) = labels.at(x, y) != 0 ? relief.at(x, y) << 23 : INT32_MAX;
      if (labels.at(x, y) != 0) queue.push({cost.at(x, y), {x, y}});
    }
  while (!queue.empty()) {
    const auto [c, p] = queue.top();
    queue.pop();
    for (int k = 0; k < 4; ++k) {
      const int x = p.first + reference::around[k].x, y = p.second + reference::around[k].y;
      if (cost.at(x, y) < 0) continue;
      const int next = std::max(relief.at(x, y) << 23, c + 1);
      if (next < cost.at(x, y)) cost.at(x, y) = next, queue.push({next, {x, y}});
    }
  }
  return cost;
}

template <class T>
void sweepsFindCheapestWays(const Form<T>& form) {
  Random r(seed());
  for (const Shape& shape : shapes({300, 230})) {
    Case<T> c(form, r, shape);
    Map seeds = c.labels(), relief = c.relief();
    Map cost = cheapest(relief, seeds);
    c.run(form, r, 1, orvWatershedSweep, [&](Map got) {
      for (int y = 0; y < got.height; ++y)
        for (int x = 0; x < got.width; ++x) {
          const int label = got.at(x, y);
          bool right = seeds.at(x, y) != 0 ? label == seeds.at(x, y) : label == 0 && cost.at(x, y) == INT32_MAX;
          for (int k = 0; k < 4 && seeds.at(x, y) == 0; ++k) {
            const int u = x + reference::around[k].x, v = y + reference::around[k].y;
            right |= cost.at(u, v) >= 0 && label == got.at(u, v) && label != 0 &&
                     cost.at(x, y) == std::max(relief.at(x, y) << 23, cost.at(u, v) + 1);
          }
          if (!right) return fail("label %d at %d,%d isn't on a cheapest way", label, x, y);
        }
    });
  }
}

}  // namespace

TEST(queues) { compareQueues(watershed8), compareQueues(watershed16); }
TEST(gradient) { compareGradient(gradient1), compareGradient(gradient3); }
TEST(sweeps) { sweepsFindCheapestWays(watershed8), sweepsFindCheapestWays(watershed16); }

// On flat ground a pixel belongs to the nearer seed by the metric's distance. Not so in the first column, which looks
// straight up and down and to the right alone.
TEST(sweepsOnFlatGround) {
  Random r(seed());
  const Form<uint8_t>& form = watershed8;
  for (const int norm : {0, 2, 3})
    for (int trial = 0; trial < 20; ++trial) {
      Case<uint8_t> c(form, r, {r.in(2, 60), r.in(1, 60)});
      int sx[2], sy[2];
      for (int y = 0; y < c.size.height; ++y)
        for (int x = 0; x < c.size.width; ++x) c.src.set(x, y, 7), c.markers.set(x, y, 0);
      for (const int k : {0, 1}) {
        sx[k] = r.in(0, c.size.width - 1), sy[k] = r.in(0, c.size.height - 1);
        c.markers.set(sx[k], sy[k], (uint8_t)(k + 1));
      }
      c.src.keep(), c.markers.keep();
      if (sx[0] == sx[1] && sy[0] == sy[1]) continue;
      c.run(form, r, norm, orvWatershedSweep, [&](Map got) {
        for (int y = 0; y < got.height; ++y)
          for (int x = norm == 3 ? 0 : 1; x < got.width; ++x) {
            double d[2];
            for (const int k : {0, 1}) {
              const int dx = abs(x - sx[k]), dy = abs(y - sy[k]), low = std::min(dx, dy), high = std::max(dx, dy);
              d[k] = norm == 0 ? high : norm == 2 ? 11 * (high - low) + 15 * low : sqrt(dx * dx + dy * dy);
            }
            const double slack = norm == 3 ? 0.12 * (d[0] + d[1]) + 1 : 0;
            if (fabs(d[0] - d[1]) > slack && got.at(x, y) != (d[0] < d[1] ? 1 : 2))
              return fail("label %d at %d,%d, %g and %g away", got.at(x, y), x, y, d[0], d[1]);
          }
      });
    }
}

// Lines separate the segments of the sweeps, on the dearer side.
TEST(linesOfSweeps) {
  uint8_t src[5] = {0, 1, 9, 3, 0}, markers[5] = {1, 0, 0, 0, 2}, buffer[2000];
  const uint8_t want[5] = {1, 1, 255, 2, 2};
  for (const int norm : {0, 1, 2, 3})
    for (const int flag : {orvWatershedBorder4, orvWatershedBorder8}) {
      memset(markers + 1, 0, 3);
      CHECK(orviSegmentWatershed_8u_C1IR(src, 5, markers, 5, {5, 1}, norm, orvWatershedSweep | flag, buffer) == 0);
      CHECK(memcmp(markers, want, 5) == 0);
      memset(markers + 1, 0, 3);
      CHECK(orviSegmentWatershed_8u_C1IR(src, 1, markers, 1, {1, 5}, norm, orvWatershedSweep | flag, buffer) == 0);
      CHECK(memcmp(markers, want, 5) == 0);
    }
}

namespace {

template <class T>
void walk(const Form<T>& form, bool watershed) {
  using A = Arguments<T>;
  const Context context(form.name);
  Random r(seed());
  Image<T> markers(r, 9, 5, 1);
  const uint8_t src[9 * 5 * 3] = {};
  uint8_t buffer[2000];
  const int row = 9 * form.channels;
  std::vector<Check<A>> checks = {{"src", orvStatusNullPtr, [](A& a) { a.src = nullptr; }},
                                  {"markers", orvStatusNullPtr, [](A& a) { a.markers = nullptr; }},
                                  {"buffer", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }},
                                  {"width", orvStatusSize, [](A& a) { a.size.width = 0; }},
                                  {"height", orvStatusSize, [](A& a) { a.size.height = -1; }},
                                  {"srcStep", orvStatusStep, [=](A& a) { a.srcStep = row - 1; }},
                                  {"step", orvStatusStep, [](A& a) { a.markerStep = 9 * (int32_t)sizeof(T) - 1; }}};
  if (sizeof(T) > 1) checks.push_back({"alignment", orvStatusStepAlign, [](A& a) { a.markerStep += 1; }});
  if (watershed) checks.push_back({"engine", orvStatusBadArg, [](A& a) { a.flags = orvWatershedBorder4; }});
  checks.push_back(
      {"norm", orvStatusBadArg, [=](A& a) { a.norm = watershed && a.flags == orvWatershedSweep ? 4 : 2; }});
  for (const int flags : {1, 2, 3})
    walkChecks<A>(
        {src, row, markers.data(), markers.step(), {9, 5}, 1, flags, buffer}, checks,
        [&](A& a) { return form.call(a); }, [&] { return markers.unchanged(); });
  int32_t bytes = 5;
  CHECK(form.size({0, 1}, nullptr) == orvStatusNullPtr && form.size({0, 1}, &bytes) == orvStatusSize &&
        form.size({1, 0}, &bytes) == orvStatusSize && bytes == 5);
}

}  // namespace

TEST(checks) { walk(watershed8, true), walk(watershed16, true), walk(gradient1, false), walk(gradient3, false); }

TEST(sizes) {
  int32_t bytes = 0;
  orviSegmentWatershedGetBufferSize_8u_C1R({7, 3}, &bytes);
  CHECK(bytes == 2 * 32 * 4 + 4 * 3 * 32 + 3 + 66);
  orviSegmentWatershedGetBufferSize_8u16u_C1R({100, 50}, &bytes);
  CHECK(bytes == 16 * 5000 + 2 * 102 * 52 + 48);
  orviSegmentGradientGetBufferSize_8u_C3R({7, 3}, &bytes);
  CHECK(bytes == 17 * 21 + 115);
}

// Watershed and growing by gradient.
// One body serves both variants.
#include "framework/sweep.h"
#include "reference/segmentation.h"

using namespace test;

namespace {

// Few gray levels or many.
struct Relief : ImageRole<uint8_t> {
  explicit Relief(int count) : ImageRole<uint8_t>(In<uint8_t>(count)) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<uint8_t>::prepare(r, shape);
    const int levels = r.one(2) ? r.in(0, 3) : 255;
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < candidate->elements(); ++x)
        if (levels < 4 || r.one(2)) candidate->set(x, y, (uint8_t)r.in(0, levels));
    candidate->keep();
  }
};
// Few seeds or many, some of them the reserved values.
template <class T>
struct Seeds : ImageRole<T> {
  Seeds() : ImageRole<T>(InOut<T>()) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<T>::prepare(r, shape);
    const int sparse = r.one(5) ? 1000000 : r.in(2, 60);
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) {
        const auto label = (T)(!r.one(sparse) ? 0 : r.one(8) ? (T)-r.in(1, 3) : r.in(1, 4));
        this->candidate->set(x, y, label), this->expected->set(x, y, label);
      }
    this->candidate->keep();
  }
};

constexpr int queue = orvWatershedQueue, both = orvWatershedQueue | orvWatershedSweep, line4 = orvWatershedBorder4,
              line8 = orvWatershedBorder8;

template <class T>
using Segment = OrvStatus (*)(const uint8_t*, int32_t, T*, int32_t, OrvSize, int32_t, int32_t, uint8_t*);
using Bytes = OrvStatus (*)(OrvSize, int32_t*);

template <class T>
void check(const char* name, Segment<T> segment, Bytes size, int channels,
           void (*plain)(const uint8_t*, int32_t, T*, int32_t, OrvSize, int32_t, int32_t, uint8_t*)) {
  const Value<int32_t> flags({queue, queue | line4, queue | line8, both | line4 | line8, both});
  sweep(name, segment, plain, {300, 230}, Relief(channels), Seeds<T>(), Roi(), Value<int32_t>({0, 1}), flags,
        Scratch(size));
  const std::vector<Told> order =
      pointersThenSizes({0, 1, 5}, 2) + eachOf(Fault::smallStep, {0, 1}) +
      eachOf(Fault::misalignedStep, sizeof(T) > 1 ? std::vector<int>{1} : std::vector<int>());
  const auto walk = [&](int32_t flag, const std::vector<Told>& refused) {
    walkArguments(name, segment, order + refused, Relief(channels), Seeds<T>(), Roi(), Value<int32_t>({0}),
                  Value<int32_t>({flag}), Scratch(size));
  };
  for (const int flag : {queue, both}) walk(flag, {badValue(3, -1), badValue(3, 2), badValue(3, 4)});
  if (strstr(name, "Watershed")) walk(orvWatershedSweep, {badValue(3, -1), badValue(3, 4), badValue(4, line4 | line8)});
  int32_t bytes = 5;
  CHECK(size({0, 1}, nullptr) == orvStatusNullPtr && size({0, 1}, &bytes) == orvStatusSize &&
        size({1, 0}, &bytes) == orvStatusSize && bytes == 5);
}

// On the way by which each pixel is reached most cheaply its label comes from a seed.
template <class T>
void sweepsFindCheapestWays(Segment<T> segment, Bytes size) {
  Random r(seed());
  constexpr int64_t none = INT64_MAX - 1;
  for (const Shape& shape : shapes({300, 230})) {
    const Context context(detail::describe("sweeps", shape));
    const OrvSize roi = {shape.width, shape.height};
    const auto to = reference::around(roi);
    Relief relief(1);
    Seeds<T> seeds;
    Scratch buffer(size);
    relief.prepare(r, shape), seeds.prepare(r, shape), buffer.prepare(r, shape), buffer.reset();
    const Image<uint8_t>& src = *relief.candidate;
    const Image<T>& markers = *seeds.candidate;
    const auto height = reference::framed(src.data(), src.step(), roi, 0);
    const auto seed = reference::framed(markers.data(), markers.step(), roi, 0);
    std::vector<int64_t> cost(seed.size(), none);
    const auto via = [&](size_t p, int d) { return std::max((int64_t)height[p] << 23, cost[p + d] + 1); };
    for (bool changed = true; changed;) {
      changed = false;
      reference::forEachPlace(roi, [&](size_t p) {
        int64_t least = seed[p] != 0 ? (int64_t)height[p] << 23 : cost[p];
        for (int k = 0; k < 4 && seed[p] == 0; ++k) least = std::min(least, via(p, to[k]));
        if (least < cost[p]) cost[p] = least, changed = true;
      });
    }
    CHECK(segment(src.data(), src.step(), markers.data(), markers.step(), roi, 1, orvWatershedSweep,
                  std::get<0>(buffer.arguments(Side::candidate))) == orvStatusOk);
    CHECK(src.unchanged() && markers.onlyRegionChanged() && buffer.memory->intact());
    const auto label = reference::framed(markers.data(), markers.step(), roi, 0);
    reference::forEachPlace(roi, [&](size_t p) {
      bool right = seed[p] != 0 ? label[p] == seed[p] : label[p] == 0 && cost[p] == none;
      for (int k = 0; k < 4 && seed[p] == 0; ++k)
        right |= label[p] != 0 && label[p] == label[p + to[k]] && cost[p] == via(p, to[k]);
      CHECK(right, "label %d at %d isn't on a cheapest way", label[p], (int)p);
    });
  }
}

}  // namespace

TEST(againstQueues) {
  check("Watershed_8u", orviSegmentWatershed_8u_C1IR, orviSegmentWatershedGetBufferSize_8u_C1R, 1,
        reference::watershed<uint8_t>);
  check("Watershed_16u", orviSegmentWatershed_8u16u_C1IR, orviSegmentWatershedGetBufferSize_8u16u_C1R, 1,
        reference::watershed<uint16_t>);
  check("Gradient_C1", orviSegmentGradient_8u_C1IR, orviSegmentGradientGetBufferSize_8u_C1R, 1,
        reference::growByGradient<1>);
  check("Gradient_C3", orviSegmentGradient_8u_C3IR, orviSegmentGradientGetBufferSize_8u_C3R, 3,
        reference::growByGradient<3>);
}
TEST(sweeps) {
  sweepsFindCheapestWays(orviSegmentWatershed_8u_C1IR, orviSegmentWatershedGetBufferSize_8u_C1R);
  sweepsFindCheapestWays(orviSegmentWatershed_8u16u_C1IR, orviSegmentWatershedGetBufferSize_8u16u_C1R);
}

// On flat ground a pixel belongs to the nearer seed by the metric's distance. Not so in the first column, which looks
// straight up and down and to the right alone.
TEST(sweepsOnFlatGround) {
  Random r(seed());
  for (const int norm : {0, 2, 3})
    for (int trial = 0; trial < 20; ++trial) {
      const int w = r.in(2, 60), h = r.in(1, 60), seeds[2] = {r.in(0, w * h - 1), r.in(0, w * h - 1)};
      if (seeds[0] == seeds[1]) continue;
      std::vector<uint8_t> src((size_t)(w * h), 7), labels(src.size()), buffer(src.size() * 20 + 60000);
      for (const int k : {0, 1}) labels[(size_t)seeds[k]] = (uint8_t)(k + 1);
      orviSegmentWatershed_8u_C1IR(src.data(), w, labels.data(), w, {w, h}, norm, orvWatershedSweep, buffer.data());
      for (int i = 0; i < w * h; ++i) {
        double d[2];
        for (const int k : {0, 1}) {
          const int dx = abs(i % w - seeds[k] % w), dy = abs(i / w - seeds[k] / w);
          const int low = std::min(dx, dy), high = std::max(dx, dy);
          d[k] = norm == 0 ? high : norm == 2 ? 11 * (high - low) + 15 * low : sqrt(dx * dx + dy * dy);
        }
        const double slack = norm == 3 ? 0.12 * (d[0] + d[1]) + 1 : 0;
        if (fabs(d[0] - d[1]) > slack && (norm == 3 || i % w > 0))
          CHECK(labels[(size_t)i] == (d[0] < d[1] ? 1 : 2), "%d x %d at %d: %g and %g away", w, h, i, d[0], d[1]);
      }
    }
}

// Lines separate the segments of the sweeps, on the dearer side.
TEST(linesOfSweeps) {
  const uint8_t src[5] = {0, 1, 9, 3, 0}, want[5] = {1, 1, 255, 2, 2};
  uint8_t buffer[2000];
  for (const int norm : {0, 1, 2, 3})
    for (const int flag : {line4, line8})
      for (const OrvSize size : {OrvSize{5, 1}, {1, 5}}) {
        uint8_t markers[5] = {1, 0, 0, 0, 2};
        CHECK(orviSegmentWatershed_8u_C1IR(src, size.width, markers, size.width, size, norm, orvWatershedSweep | flag,
                                           buffer) == orvStatusOk);
        CHECK(memcmp(markers, want, 5) == 0);
      }
}

TEST(sizes) {
  int32_t bytes = 0;
  orviSegmentWatershedGetBufferSize_8u_C1R({7, 3}, &bytes);
  CHECK(bytes == 2 * 32 * 4 + 4 * 3 * 32 + 3 + 66);
  orviSegmentWatershedGetBufferSize_8u16u_C1R({100, 50}, &bytes);
  CHECK(bytes == 16 * 5000 + 2 * 102 * 52 + 48);
  orviSegmentGradientGetBufferSize_8u_C3R({7, 3}, &bytes);
  CHECK(bytes == 17 * 21 + 115);
}

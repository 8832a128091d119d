// Points tracked through pyramids of drawn images, whose motion is known.
// One body serves both variants.
#include <math.h>
#include <string.h>
#include <algorithm>
#include <vector>
#include "framework/sweep.h"

using namespace test;

namespace {

// A smooth picture that is alike nowhere.
double scene(double x, double y) {
  return 128 + 40 * sin(x * 0.31 + y * 0.07) + 35 * cos(y * 0.27 - x * 0.11) + 30 * sin((x + 2 * y) * 0.083 + 1);
}

// Levels of half the size each; the picture is moved by (dx, dy). `wide` scales the gray levels.
template <class T>
struct Levels {
  std::vector<std::vector<T>> pixels;
  OrvPyramid* pyramid = nullptr;

  Levels(OrvSize size, int levels, double dx, double dy, double wide = 1, double (*picture)(double, double) = scene) {
    CHECK(orviPyramidInitAlloc(&pyramid, std::max(levels - 1, 1), size, 2) == orvStatusOk);
    for (int l = 0; l < levels; ++l) {
      const int scale = 1 << l, w = pyramid->roi[l].width;
      pixels.emplace_back((size_t)(w * pyramid->roi[l].height));
      for (int i = 0; i < (int)pixels.back().size(); ++i) {
        const double v = picture(i % w * scale - dx, i / w * scale - dy) * wide;
        pixels.back()[(size_t)i] = (T)(std::is_integral<T>::value ? nearbyint(v) : v);
      }
      pyramid->images[l] = pixels.back().data();
      pyramid->steps[l] = w * (int32_t)sizeof(T);
    }
  }
  Levels(const Levels&) = delete;
  ~Levels() { orviPyramidFree(pyramid); }
};

struct Settings {
  OrvSize maxRoi;
  int winSize, maxLevel, maxIter;
  float threshold;
};

struct Tracked {
  std::vector<OrvPoint32f> points;
  std::vector<int8_t> status;
  std::vector<float> error;
};

// The functions of an element type, and how far its results may be off.
template <class T>
struct Flow;
#define FLOW(T, type, wideness, tolerance)                                   \
  template <>                                                                \
  struct Flow<T> {                                                           \
    static constexpr auto make = orviOpticalFlowPyrLKInitAlloc_##type##_C1R; \
    static constexpr auto track = orviOpticalFlowPyrLK_##type##_C1R;         \
    static constexpr auto release = orviOpticalFlowPyrLKFree_##type##_C1R;   \
    static constexpr double wide = wideness, near = tolerance;               \
  }
FLOW(uint8_t, 8u, 1, 0.02);
FLOW(uint16_t, 16u, 200, 0.002);
FLOW(float, 32f, 1, 0.0005);

// Tracks at every width, with the same bits.
template <class T>
Tracked track(const Levels<T>& a, const Levels<T>& b, const std::vector<OrvPoint32f>& from,
              const std::vector<OrvPoint32f>& guess, const Settings& s) {
  Tracked first;
  forEachSetting(false, [&] {
    Tracked r{guess, std::vector<int8_t>(from.size(), 99), std::vector<float>(from.size(), -7)};
    OrvOptFlowPyrLKState* state = nullptr;
    CHECK(Flow<T>::make(&state, s.maxRoi, s.winSize, 3) == orvStatusOk);
    CHECK(Flow<T>::track(a.pyramid, b.pyramid, from.data(), r.points.data(), r.status.data(), r.error.data(),
                         (int32_t)from.size(), s.winSize, s.maxLevel, s.maxIter, s.threshold, state) == orvStatusOk);
    CHECK(Flow<T>::release(state) == orvStatusOk);
    if (first.points.empty()) first = r;
    CHECK(memcmp(first.points.data(), r.points.data(), from.size() * sizeof(OrvPoint32f)) == 0 &&
              first.status == r.status && first.error == r.error,
          "depends on the setting");
  });
  return first;
}

std::vector<OrvPoint32f> grid(OrvSize size, float from, float step) {
  std::vector<OrvPoint32f> points;
  for (float y = from; y <= (float)size.height - 1 - from; y += step)
    for (float x = from; x <= (float)size.width - 1 - from; x += step) points.push_back({x, y});
  return points;
}

double distance(OrvPoint32f a, OrvPoint32f b) { return hypot(a.x - b.x, a.y - b.y); }

// One step from a definition of its own: in double precision, pixel by pixel, with clamped coordinates.
template <class T>
struct Step {
  const std::vector<T>&a, &b;
  OrvSize size;

  double at(const std::vector<T>& image, double x, double y) const {
    const auto pixel = [&](double i, double k) {
      const int column = (int)std::clamp(i, 0., size.width - 1.), row = (int)std::clamp(k, 0., size.height - 1.);
      return (double)image[(size_t)(row * size.width + column)];
    };
    const double i = floor(x), k = floor(y), fx = x - i, fy = y - k;
    return (1 - fy) * ((1 - fx) * pixel(i, k) + fx * pixel(i + 1, k)) +
           fy * ((1 - fx) * pixel(i, k + 1) + fx * pixel(i + 1, k + 1));
  }
  bool inside(double x, double y) const {
    return x >= 0 && y >= 0 && floor(x) + 1 <= size.width - 1 && floor(y) + 1 <= size.height - 1;
  }
  OrvPoint32f operator()(OrvPoint32f p, OrvPoint32f guess, int winSize) const {
    double A = 0, B = 0, C = 0, bx = 0, by = 0;
    for (int i = 0; i < winSize * winSize; ++i) {
      const double ox = i % winSize - (winSize - 1) * 0.5, oy = i / winSize - (winSize - 1) * 0.5;
      const double x = p.x + ox, y = p.y + oy;
      if (!inside(x, y) || !inside(guess.x + ox, guess.y + oy)) continue;
      double gx = 0, gy = 0;
      for (int k = -1; k <= 1; ++k) {
        const double weight = k ? 3 / 32. : 10 / 32.;
        gx += weight * (at(a, x + 1, y + k) - at(a, x - 1, y + k));
        gy += weight * (at(a, x + k, y + 1) - at(a, x + k, y - 1));
      }
      const double d = at(a, x, y) - at(b, guess.x + ox, guess.y + oy);
      A += gx * gx, B += gx * gy, C += gy * gy, bx += d * gx, by += d * gy;
    }
    const double det = A * C - B * B;
    return {(float)(guess.x + (C * bx - B * by) / det), (float)(guess.y + (A * by - B * bx) / det)};
  }
};

template <class T>
void singleSteps() {
  const OrvSize size{61, 47};
  const Levels<T> a(size, 1, 0, 0, Flow<T>::wide), b(size, 1, 0.6, -0.4, Flow<T>::wide);
  const Step<T> plain{a.pixels[0], b.pixels[0], size};
  auto from = grid(size, 1.37f, 5.61f);  // windows over every side
  from.insert(from.end(), {{0, 0}, {60, 46}, {30, 20}, {-2.5f, 20}, {30, 49.25f}, {60, 0.5f}, {7.99999f, 8}});
  std::vector<OrvPoint32f> guess = from;
  for (size_t i = 0; i < guess.size(); i += 2) guess[i].x += 1.3f, guess[i].y -= 0.7f;
  for (const int winSize : {15, 8, 3})
    for (const int roi : {250, 1}) {  // whole level, windows on their own
      const Tracked r = track(a, b, from, guess, {{roi, roi}, winSize, 0, 1, 0});
      for (size_t i = 0; i < from.size(); ++i) {
        const OrvPoint32f want = plain(from[i], guess[i], winSize), got = r.points[i];
        if (!(distance(want, guess[i]) < 3)) continue;  // hardly determined
        CHECK(r.status[i] == 0 && distance(got, want) < Flow<T>::near * 2, "window %d, roi %d, (%g, %g): (%.6g, %.6g)",
              winSize, roi, from[i].x, from[i].y, got.x, got.y);
      }
    }
}

// Far motion through the levels, by either route and by both.
template <class T>
void throughLevels() {
  const OrvSize size{240, 200};
  const Levels<T> a(size, 3, 0, 0, Flow<T>::wide), b(size, 3, 7.3, -5.6, Flow<T>::wide);
  const auto from = grid(size, 30, 22.7f);
  for (const int roi : {250, 130, 100, 1}) {
    const Tracked r = track(a, b, from, from, {{roi, roi}, 15, 2, 30, 0.001f});
    for (size_t i = 0; i < from.size(); ++i)
      CHECK(r.status[i] == 0 && distance(r.points[i], {from[i].x + 7.3f, from[i].y - 5.6f}) < 0.04 &&
                r.error[i] < 0.5 * Flow<T>::wide,
            "roi %d, (%g, %g): at (%g, %g), error %g", roi, from[i].x, from[i].y, r.points[i].x, r.points[i].y,
            r.error[i]);
  }
}

double flat(double, double) { return 77; }
double stripes(double x, double) { return 100 + 50 * sin(x * 0.4); }
double bent(double x, double y) { return 2 * x + 3 * y + (x + y) * (x - y) * 0.01; }
double brighterBent(double x, double y) { return bent(x, y) + 6; }

}  // namespace

TEST(singleSteps) { singleSteps<uint8_t>(), singleSteps<uint16_t>(), singleSteps<float>(); }
TEST(throughLevels) { throughLevels<uint8_t>(), throughLevels<uint16_t>(), throughLevels<float>(); }

// What stays in the arrays of lost points.
TEST(lostPoints) {
  const OrvSize size{64, 64};
  const Levels<uint8_t> blank(size, 2, 0, 0, 1, flat), lines(size, 2, 0, 0, 1, stripes), seen(size, 2, 0, 0),
      missing(size, 2, 0, 0);
  missing.pyramid->images[0] = nullptr;
  const OrvPoint32f from{30, 30}, guess{31.5f, 29};
  const struct {
    const Levels<uint8_t>&first, &second;
    OrvPoint32f from, guess;
    int levels, status;
  } cases[] = {{blank, blank, from, guess, 1, 2},
               {lines, lines, from, guess, 1, 2},
               {seen, seen, from, {400, 30}, 1, 2},  // no window in both images: the last estimate, from level 1
               {seen, seen, {-1e9f, NAN}, guess, 0, 1},
               {seen, missing, from, guess, 0, 1}};
  for (const auto& k : cases)
    for (const int roi : {250, 33, 1}) {
      const Tracked r = track(k.first, k.second, {k.from}, {k.guess}, {{roi, roi}, 9, k.levels, 5, 0.01f});
      CHECK(r.status[0] == k.status && r.error[0] == 0 && distance(r.points[0], k.guess) == 0, "case %d, roi %d",
            (int)(&k - cases), roi);
    }
  // the first image is missing: level 1 whole, level 0 by windows; error cleared, status 0
  const Tracked whole = track(missing, seen, {from}, {from}, {{33, 33}, 9, 1, 5, 0.01f});
  CHECK(whole.status[0] == 0 && whole.error[0] == 0);
}

TEST(stopping) {
  const OrvSize size{64, 64};
  const Levels<float> a(size, 1, 0, 0, 1, bent), b(size, 1, 1.5, 0.5, 1, bent);
  const OrvPoint32f from{30, 30};
  const auto steps = [&](OrvPoint32f guess, int most, float threshold) {
    return track(a, b, {from}, {guess}, {{1, 1}, 9, 0, most, threshold}).points[0];
  };
  const OrvPoint32f once = steps(from, 1, 0);
  CHECK(distance(once, steps(from, 50, 100)) == 0, "a step within the threshold");
  CHECK(distance(steps(from, 2, 0), steps(once, 1, 0)) == 0);
  CHECK(distance(steps(from, 10000, 0), {31.5f, 30.5f}) < 1e-3, "ends by itself");
  // the last windows differ by 6 all over, whatever the step after them
  const Levels<float> brighter(size, 1, 0, 0, 1, brighterBent);
  const Tracked r = track(a, brighter, {from}, {from}, {{1, 1}, 8, 0, 1, 0});
  CHECK(fabsf(r.error[0] - 6) < 1e-4f, "%g: of the windows before the step", r.error[0]);
}

namespace {

template <class T>
void statuses() {
  OrvOptFlowPyrLKState* state = nullptr;
  CHECK(Flow<T>::make(nullptr, {0, 0}, 0, 0) == orvStatusNullPtr && Flow<T>::release(nullptr) == orvStatusNullPtr);
  CHECK(Flow<T>::make(&state, {5, 5}, 0, 0) == orvStatusSize);
  for (const OrvSize bad : {OrvSize{5, 0}, {-1, 5}}) CHECK(Flow<T>::make(&state, bad, 5, 0) == orvStatusSize);
  for (const OrvSize huge : {OrvSize{INT32_MAX, INT32_MAX}, {40000, 40000}})
    CHECK(Flow<T>::make(&state, huge, 5, 0) == orvStatusNoMem);
  CHECK(Flow<T>::make(&state, {5, 5}, INT32_MAX, 0) == orvStatusNoMem);
  for (int kth = 1; kth <= 2; ++kth) {
    steerFailAllocation(kth);
    CHECK(Flow<T>::make(&state, {20, 20}, 5, 0) == orvStatusNoMem && !state && steeredLiveAllocations() == 0);
  }
  steerFailAllocation(0);

  CHECK(Flow<T>::make(&state, {20, 20}, 5, 0) == orvStatusOk);
  const Levels<T> image({20, 20}, 1, 0, 0);
  const OrvPoint32f from{9, 9};
  const Value<const OrvPyramid*> pyramid({image.pyramid});
  const std::vector<Told> numbers = {badValue(6, 0, orvStatusSize), badValue(7, 6, orvStatusSize), badValue(8, -1),
                                     badValue(9, 0), badValue(10, -1e-9)};
  walkArguments("tracking", Flow<T>::track, eachOf(Fault::null, {0, 1, 2, 3, 4, 5, 11}) + numbers, pyramid, pyramid,
                Value<const OrvPoint32f*>({&from}), Result<OrvPoint32f>(), Result<int8_t>(), Result<float>(),
                Value<int32_t>({1}), Value<int32_t>({5}), Value<int32_t>({0}), Value<int32_t>({3}),
                Value<float>({0.01f}), Value<OrvOptFlowPyrLKState*>({state}));
  CHECK(Flow<T>::release(state) == orvStatusOk && steeredLiveAllocations() == 1);  // the record of the pyramid
}

}  // namespace

TEST(statuses) { statuses<uint8_t>(), statuses<uint16_t>(), statuses<float>(); }

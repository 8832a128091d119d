// Flood fills against the plain form, in scratch memory of exactly the reported size.
#pragma once
#include <functional>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"
#include "reference/flood.h"

namespace test {

using reference::FloodArguments;
using reference::Rule;

template <class T>
struct FloodForm {
  const char* name;
  int channels;
  Rule rule;
  bool corners;
  std::function<OrvStatus(const FloodArguments<T>&)> run;
};
#define FLOOD_ARGUMENTS a.data, a.step, a.size, a.seed
#define FLOOD_C1(name, T)                                                                                \
  FloodForm<T> {                                                                                         \
#name, 1, Rule::equal, strstr(#name, "8Con") != nullptr,                                             \
        [](const FloodArguments <T>&                                                                     \
               a) { return orviFloodFill_##name##_C1IR(FLOOD_ARGUMENTS, *a.value, a.region, a.buffer); } \
  }
#define FLOOD_DELTAS_C1(kind, name, T)                                                                               \
  FloodForm<T> {                                                                                                     \
#kind #name, 1, #kind[0] == 'R' ? Rule::range : Rule::grad, strstr(#name, "8Con") != nullptr,                      \
        [](const FloodArguments<T>& a) {                                                                               \
          return orviFloodFill_##kind##name##_C1IR(FLOOD_ARGUMENTS, *a.value, *a.minDelta, *a.maxDelta, a.region,      \
                                                   a.buffer);                                                          \
        } \
  }
#define FLOOD_C3(name, T)                                                                               \
  FloodForm<T> {                                                                                        \
#name "_C3", 3, Rule::equal, strstr(#name, "8Con") != nullptr,                                      \
        [](const FloodArguments <T>&                                                                    \
               a) { return orviFloodFill_##name##_C3IR(FLOOD_ARGUMENTS, a.value, a.region, a.buffer); } \
  }
#define FLOOD_DELTAS_C3(kind, name, T)                                                                             \
  FloodForm<T> {                                                                                                   \
#kind #name "_C3", 3, #kind[0] == 'R' ? Rule::range : Rule::grad, strstr(#name, "8Con") != nullptr,              \
        [](const FloodArguments<T>& a) {                                                                             \
          return orviFloodFill_##kind##name##_C3IR(FLOOD_ARGUMENTS, a.value, a.minDelta, a.maxDelta, a.region,       \
                                                   a.buffer);                                                        \
        } \
  }

// As reported, computed anew: the size functions are one for all types.
inline size_t floodBytes(Rule rule, int w, int h) {
  return (size_t)(rule == Rule::grad ? (w + 2) * (h + 2) + h * 48 * w / 3 + 64 : 6 * w * h + 32);
}

// A few values only, so that there are regions: noise, a chessboard, stripes with gaps, slopes, or runs.
template <class T>
void drawRegions(Random& r, Image<T>& image, int channels) {
  const int mode = r.in(0, 5), gap = r.in(3, 20);
  const T base = (T)(std::is_floating_point<T>::value ? (T)0.25f : (T)r.in(0, 20));
  const float special[] = {NAN, INFINITY, -0.f, 0.f, -INFINITY};
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.elements(); ++x) {
      const int px = x / channels;
      int v = r.in(0, mode == 0 ? 3 : 1);
      if (mode == 1) v = (px + y) % 2 + (r.one(gap) ? 1 : 0);
      if (mode == 2) v = px % 2 == 0 || r.one(gap) ? 1 : 0;
      if (mode == 3) v = px / 2 + y + (r.one(gap) ? 1 : 0);
      if (mode == 4) v = r.one(10) ? 1 : 0;
      T value = (T)(base + (T)v);
      if constexpr (std::is_floating_point<T>::value)
        if (mode == 0 && r.one(8)) value = special[r.in(0, 4)];
      image.set(x, y, value);
    }
  if (mode == 5) image.fill(r, std::is_floating_point<T>::value);
  image.keep();
}

template <class T>
void checkFlood(const FloodForm<T>& form, Random& r, const Shape& shape) {
  const int c = form.channels;
  Image<T> got(r, shape.width, shape.height, c), want(r, shape.width, shape.height, c);
  drawRegions(r, got, c);
  for (int y = 0; y < got.height(); ++y)
    for (int x = 0; x < got.elements(); ++x) want.set(x, y, got.at(x, y));
  const OrvPoint seed = {r.in(0, shape.width - 1), r.in(0, shape.height - 1)};
  T value[3], low[3], high[3];
  for (int k = 0; k < 3; ++k) {
    value[k] = r.one(2) ? (T)r.in(0, 100) : got.at(r.in(0, got.elements() - 1), r.in(0, shape.height - 1));
    low[k] = r.one(6) ? highest<T>() : (T)r.in(0, 2), high[k] = r.one(6) ? highest<T>() : (T)r.in(0, 2);
  }
  OrvConnectedComp expected, region;
  memset(&expected, 0x5C, sizeof expected);
  flood(
      FloodArguments<T>{
          want.data(), want.step(), {shape.width, shape.height}, seed, value, low, high, &expected, nullptr},
      c, form.rule, form.corners);
  const Guarded buffer(floodBytes(form.rule, shape.width, shape.height), true, (size_t)r.in(0, 8));
  forEachSetting(false, [&] {
    got.restore();
    memset(&region, 0x5C, sizeof region);
    CHECK(form.run(
              {got.data(), got.step(), {shape.width, shape.height}, seed, value, low, high, &region, buffer.data()}) ==
          orvStatusOk);
    for (int y = 0; y < got.height(); ++y)
      for (int x = 0; x < got.elements(); ++x)
        if (!same(got.at(x, y), want.at(x, y)))
          return fail("seed %d,%d: element %d of row %d is %g, not %g", (int)seed.x, (int)seed.y, x, y,
                      (double)got.at(x, y), (double)want.at(x, y));
    CHECK(got.onlyRegionChanged() && buffer.intact());
    CHECK(same(region.area, expected.area), "area %g, not %g", region.area, expected.area);
    CHECK(memcmp(&region.rect, &expected.rect, sizeof region.rect) == 0);
    for (int k = 0; k < 3; ++k) CHECK(same(region.value[k], expected.value[k]));
  });
}

template <class T>
void sweepFlood(const FloodForm<T>& form) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    const Context context(std::string(form.name) + " " + std::to_string(shape.width) + "x" +
                          std::to_string(shape.height));
    checkFlood(form, r, shape);
    if (shape.width < 40 && shape.height > 2) checkFlood(form, r, shape);
  }
}

// The checks of a form, pair by pair.
template <class T>
void walkFlood(const FloodForm<T>& form) {
  const Context context(form.name);
  Random r(seed());
  using A = FloodArguments<T>;
  Image<T> image(r, 9, 5, form.channels);
  OrvConnectedComp region = {};
  uint8_t buffer[2000];
  const T values[3] = {1, 2, 3};
  std::vector<Check<A>> checks = {{"srcDst", orvStatusNullPtr, [](A& a) { a.data = nullptr; }},
                                  {"region", orvStatusNullPtr, [](A& a) { a.region = nullptr; }},
                                  {"buffer", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }}};
  if (form.channels == 3) checks.push_back({"value", orvStatusNullPtr, [](A& a) { a.value = nullptr; }});
  if (form.channels == 3 && form.rule != Rule::equal) {
    checks.push_back({"minDelta", orvStatusNullPtr, [](A& a) { a.minDelta = nullptr; }});
    checks.push_back({"maxDelta", orvStatusNullPtr, [](A& a) { a.maxDelta = nullptr; }});
  }
  checks.push_back({"width", orvStatusSize, [](A& a) { a.size.width = 0; }});
  checks.push_back({"height", orvStatusSize, [](A& a) { a.size.height = -1; }});
  const int channels = form.channels;
  checks.push_back({"step", orvStatusStep, [=](A& a) { a.step = (9 * channels - 1) * (int32_t)sizeof(T); }});
  if (sizeof(T) > 1) checks.push_back({"alignment", orvStatusStepAlign, [](A& a) { a.step += 1; }});
  checks.push_back({"x", orvStatusOutOfRange, [](A& a) { a.seed.x = 9; }});
  checks.push_back({"y", orvStatusOutOfRange, [](A& a) { a.seed.y = -1; }});
  static const T below[3] = {1, 1, (T)-1};
  if (std::is_floating_point<T>::value && form.rule == Rule::grad && channels == 3)
    checks.push_back({"delta", orvStatusOutOfRange, [](A& a) { a.maxDelta = below; }});
  walkChecks<A>(
      {image.data(), image.step(), {9, 5}, {3, 2}, values, values, values, &region, buffer}, checks,
      [&](A& a) { return form.run(a); }, [&] { return image.unchanged() && region.area == 0; });
}

}  // namespace test

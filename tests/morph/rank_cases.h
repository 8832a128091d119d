// Cases of rank filters: functions by description, run in exactly the reported scratch.
#pragma once
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"
#include "reference/rank_filter.h"

namespace test {

template <class T>
struct RankArguments {
  const T* src;
  int32_t srcStep;
  T* dst;
  int32_t dstStep;
  OrvSize roi, mask;
  OrvPoint anchor;
  uint8_t* buffer;
};

template <class T>
struct RankCase {
  const char* name;
  OrvStatus (*filter)(const T*, int32_t, T*, int32_t, OrvSize, OrvSize, OrvPoint, uint8_t*);
  OrvStatus (*size)(int32_t, OrvSize, int32_t*);
  int channels;
  bool max;

  OrvStatus run(const RankArguments<T>& a) const {
    return filter(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.mask, a.anchor, a.buffer);
  }
};

template <class T>
void checkRank(const RankCase<T>& rank, Random& r, Shape shape, OrvSize mask, OrvPoint anchor) {
  char text[120];
  snprintf(text, sizeof text, "%s %dx%d, mask %dx%d, anchor %d, %d", rank.name, shape.width, shape.height, mask.width,
           mask.height, anchor.x, anchor.y);
  const Context context(text);
  const OrvSize roi = {shape.width, shape.height};
  Image<T> src(r, roi.width, roi.height, rank.channels), dst(r, roi.width, roi.height, rank.channels);
  src.fill(r, false);
  std::vector<T> expected;
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < src.elements(); ++x)
      expected.push_back(reference::rank(src.data(), src.step(), roi, rank.channels, x, y, mask, anchor, rank.max));
  int32_t bytes = 0;
  CHECK(rank.size(roi.width, mask, &bytes) == orvStatusOk);
  const Guarded buffer((size_t)bytes, true, r.one(2) ? 0 : (size_t)r.in(1, 40));
  forEachSetting(false, [&] {
    dst.restore();
    CHECK(rank.run({src.data(), src.step(), dst.data(), dst.step(), roi, mask, anchor, buffer.data()}) == orvStatusOk);
    size_t i = 0;
    for (int y = 0; y < roi.height; ++y)
      for (int x = 0; x < src.elements(); ++x, ++i)
        CHECK(dst.at(x, y) == expected[i], "element %d of row %d: %g, not %g", x, y, (double)dst.at(x, y),
              (double)expected[i]);
    CHECK(dst.onlyRegionChanged() && src.unchanged());
  });
  CHECK(buffer.intact());
}

// Random windows on all sizes, and the cuts of the driver: many rows, strips, one column, one row, more than the image.
template <class T>
void sweepRank(const RankCase<T>& rank) {
  Random r(seed());
  const auto check = [&](Shape shape, OrvSize mask) {
    const bool end = r.one(4);
    checkRank(rank, r, shape, mask,
              end ? OrvPoint{mask.width - 1, 0} : OrvPoint{r.in(0, mask.width - 1), r.in(0, mask.height - 1)});
  };
  for (const Shape& shape : shapes())
    check(shape, {r.one(3) ? r.in(1, 40) : r.in(1, 9), r.one(3) ? r.in(1, 40) : r.in(1, 5)});
  const Shape tall = {37, 90}, wide = {2700 / rank.channels, 3};
  for (const OrvSize mask : {OrvSize{3, 33}, {1, 40}, {5, 70}, {2, 95}, {1, 200}}) check(tall, mask);
  for (const OrvSize mask : {OrvSize{3, 3}, {1, 2}, {64, 1}, {150, 2}, {70, 1}}) check(wide, mask);
  if (!quick()) check({8500, 2}, {17, 2});
}

template <class T>
void walkRank(const RankCase<T>& rank) {
  using Arguments = RankArguments<T>;
  const Context context(rank.name);
  Random r(seed());
  Image<T> src(r, 9, 5, rank.channels), dst(r, 9, 5, rank.channels);
  const Guarded buffer(1 << 14, true, 0);
  std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
      {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
      {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
      {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }},
      {"mask width", orvStatusMaskSize, [](Arguments& a) { a.mask.width = 0; }},
      {"mask height", orvStatusMaskSize, [](Arguments& a) { a.mask.height = -1; }},
      {"anchor left", orvStatusAnchor, [](Arguments& a) { a.anchor.x = -1; }},
      {"anchor right", orvStatusAnchor, [](Arguments& a) { a.anchor.x = a.mask.width; }},
      {"anchor above", orvStatusAnchor, [](Arguments& a) { a.anchor.y = -1; }},
      {"anchor below", orvStatusAnchor, [](Arguments& a) { a.anchor.y = a.mask.height; }},
      {"source step", orvStatusStep, [](Arguments& a) { a.srcStep = 9 * (int)sizeof(T) - 1; }},
      {"destination step", orvStatusStep, [](Arguments& a) { a.dstStep = 9 * (int)sizeof(T) - 1; }},
  };
  if (sizeof(T) > 1) {
    checks.push_back({"source alignment", orvStatusStepAlign, [](Arguments& a) { a.srcStep += 1; }});
    checks.push_back({"destination alignment", orvStatusStepAlign, [](Arguments& a) { a.dstStep += 1; }});
  }
  walkChecks<Arguments>(
      {src.data(), src.step(), dst.data(), dst.step(), {9, 5}, {3, 2}, {1, 1}, buffer.data()}, checks,
      [&](Arguments& a) { return rank.run(a); }, [&] { return dst.unchanged(); });
  int32_t bytes = 0;
  CHECK(rank.size(0, {0, 1}, nullptr) == orvStatusNullPtr && rank.size(0, {0, 1}, &bytes) == orvStatusSize);
  CHECK(rank.size(1, {0, 1}, &bytes) == orvStatusMaskSize && rank.size(1, {1, 0}, &bytes) == orvStatusMaskSize);
}

}  // namespace test

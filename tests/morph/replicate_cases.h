// Filters that repeat the nearest pixel and take a record: one call checked, and their checks walked.
#pragma once
#include "framework/sweep.h"

namespace test {

template <class T, class State>
using ReplicateFilter = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, State*);

// Runs a filter at every vector width; want(x, y) is element x of row y.
template <class T, class Run, class Want>
void checkReplicate(Random& r, const Image<T>& src, int channels, const Run& run, const Want& want) {
  const OrvSize roi = {src.elements() / channels, src.height()};
  Image<T> dst(r, roi.width, roi.height, channels);
  forEachSetting(false, [&] {
    dst.restore();
    const OrvStatus status = run(src.data(), src.step(), dst.data(), dst.step(), roi, orvBorderRepl);
    if (status != orvStatusOk) return fail("status %d", (int)status);
    for (int y = 0; y < roi.height; ++y)
      for (int x = 0; x < src.elements(); ++x)
        if (dst.at(x, y) != want(x, y))
          return fail("element %d of row %d is %g, not %g", x, y, (double)dst.at(x, y), (double)want(x, y));
    CHECK(dst.onlyRegionChanged() && src.unchanged());
  });
}

// The checks of a filter whose record serves regions of 9 pixels a row, and of 5 rows if `rows`.
template <class T, class State>
void walkReplicate(ReplicateFilter<T, State> filter, State* record, int channels, bool rows) {
  struct Arguments {
    const T* src;
    int32_t srcStep;
    T* dst;
    int32_t dstStep;
    OrvSize roi;
    OrvBorderType border;
    State* state;
  };
  Random r(seed());
  Image<T> src(r, 12, 6, channels), dst(r, 12, 6, channels);
  const int32_t row = 9 * channels * (int32_t)sizeof(T);
  std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
      {"state", orvStatusNullPtr, [](Arguments& a) { a.state = nullptr; }},
      {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
      {"height", orvStatusSize, [](Arguments& a) { a.roi.height = 0; }},
      {"source step", orvStatusStep, [=](Arguments& a) { a.srcStep = row - 1; }},
      {"destination step", orvStatusStep, [=](Arguments& a) { a.dstStep = row - 1; }}};
  if (sizeof(T) > 1) checks.push_back({"alignment", orvStatusStepAlign, [](Arguments& a) { a.dstStep += 1; }});
  for (const int border : {0, 2, 6, 17})
    checks.push_back({"border", orvStatusBadArg, [=](Arguments& a) { a.border = border; }});
  checks.push_back({"record's width", orvStatusSize, [](Arguments& a) { a.roi.width = 10; }});
  if (rows) checks.push_back({"record's height", orvStatusSize, [](Arguments& a) { a.roi.height = 6; }});
  walkChecks<Arguments>(
      {src.data(), src.step(), dst.data(), dst.step(), {9, 5}, orvBorderRepl, record}, checks,
      [&](Arguments& a) { return filter(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.border, a.state); },
      [&] { return dst.unchanged(); });
}

}  // namespace test

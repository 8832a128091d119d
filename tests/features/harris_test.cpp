// The Harris response and line suppression against their definitions: windows, filters, every border; sizes, statuses.
#include "features/planned.h"
#include "reference/tensor.h"

using namespace test;
using reference::FilterPlan;

namespace {

OrvStatus harris(const uint8_t* src, int32_t step, FilterPlan p, float* dst, int32_t dstStep, OrvSize roi,
                 uint8_t* buffer, float k, float scale) {
  return orviHarrisCorner_8u32f_C1R(src, step, dst, dstStep, roi, p.filter, p.mask, p.window, p.border,
                                    (uint8_t)p.value, buffer, k, scale);
}
OrvStatus harris(const float* src, int32_t step, FilterPlan p, float* dst, int32_t dstStep, OrvSize roi,
                 uint8_t* buffer, float k, float scale) {
  return orviHarrisCorner_32f_C1R(src, step, dst, dstStep, roi, p.filter, p.mask, p.window, p.border, buffer, k, scale,
                                  p.value);
}
OrvStatus lines(const uint8_t* src, int32_t step, FilterPlan p, const uint8_t* feature, int32_t featureStep,
                uint8_t* dst, int32_t dstStep, OrvSize roi, uint8_t* buffer, float threshold) {
  return orviLineSuppression_8u_C1R(src, step, feature, featureStep, dst, dstStep, roi, p.filter, p.mask, p.window,
                                    p.border, (uint8_t)p.value, buffer, threshold);
}

template <class T>
void responses(const char* name) {
  FilterPlan plan;
  const Scratch buffer([&](OrvSize roi, int32_t* bytes) {
    return orviHarrisCornerGetBufferSize(roi, plan.mask, plan.window, sizeof(T) == 1 ? orvData8u : orvData32f, 1,
                                         bytes);
  });
  for (const Shape wide : {Shape{1500, 5}, Shape{700, 9}})
    sweep(
        name, [](auto... a) { return harris(a...); }, reference::harris<T>, wide, Planned<T>(&plan), Out<float>(),
        Roi(), buffer, Value<float>({0.04f}), Value<float>({1.f, 1e-6f}));
}

}  // namespace

TEST(harris) {
  responses<uint8_t>("orviHarrisCorner_8u32f_C1R");
  responses<float>("orviHarrisCorner_32f_C1R");
}

TEST(lineSuppression) {
  FilterPlan plan;
  const Scratch buffer([&](OrvSize roi, int32_t* bytes) {
    return orviLineSuppressionGetBufferSize(roi, plan.mask, plan.window, orvData8u, 1, bytes);
  });
  sweep("orviLineSuppression_8u_C1R", lines, reference::lineSuppression, {1500, 5}, Planned<uint8_t>(&plan),
        In<uint8_t>(), Out<uint8_t>(), Roi(), buffer, Value<float>({-1, 0, 1, 4, 5, 10, 39}));
}

// Worked by hand; a region that is one piece, and one whose left strip is the largest.
TEST(sizes) {
  const struct {
    OrvSize roi;
    int32_t mask, window, type, bytes;
  } cases[] = {{{4, 4}, orvMaskSize3x3, 3, orvData8u, 1696},
               {{1920, 1080}, orvMaskSize3x3, 3, orvData8u, 251224},
               // planes (3 * 32 + 2 * 32) * 7, gradient 4 * (7 + 4) * 7 + 8 * 7, sums 32 * 7 + 1272
               {{1, 1}, orvMaskSize5x5, 7, orvData32f, 2680}};
  int32_t bytes = 0;
  for (const auto& c : cases) {
    CHECK(orviHarrisCornerGetBufferSize(c.roi, c.mask, c.window, c.type, 1, &bytes) == 0 && bytes == c.bytes, "%d",
          (int)bytes);
  }
  for (const int window : {-1, -93, -100000, 1 << 28, INT32_MAX, INT32_MIN})
    CHECK(orviHarrisCornerGetBufferSize({640, 480}, orvMaskSize3x3, window, orvData8u, 1, &bytes) == orvStatusOk);
}

namespace {

// The arguments of all functions in one record.
struct Call {
  const uint8_t* src;
  const uint8_t* feature;
  uint8_t* dst;
  int32_t srcStep, featureStep, dstStep;
  OrvSize roi;
  FilterPlan plan;
  uint8_t* buffer;
  int32_t type, channels;
  int32_t* bytes;
};
enum { ofBytes = 1, ofFloats = 2, ofLines = 4, ofSizes = 8, ofImages = ofBytes | ofFloats | ofLines, all = 15 };

OrvStatus run(int function, const Call& c) {
  auto* const out = (float*)(void*)c.dst;
  const auto* const in = (const float*)(const void*)c.src;
  if (function == ofBytes) return harris(c.src, c.srcStep, c.plan, out, c.dstStep, c.roi, c.buffer, 0.04f, 1);
  if (function == ofFloats) return harris(in, c.srcStep, c.plan, out, c.dstStep, c.roi, c.buffer, 0.04f, 1);
  if (function == ofLines)
    return lines(c.src, c.srcStep, c.plan, c.feature, c.featureStep, c.dst, c.dstStep, c.roi, c.buffer, 10);
  return orviHarrisCornerGetBufferSize(c.roi, c.plan.mask, c.plan.window, c.type, c.channels, c.bytes);
}

}  // namespace

TEST(statuses) {
  // The checks in their order, and the functions that make them.
  const std::vector<SharedCheck<Call>> checks = {
      {ofImages, {"src", orvStatusNullPtr, [](Call& c) { c.src = nullptr; }}},
      {ofImages, {"dst", orvStatusNullPtr, [](Call& c) { c.dst = nullptr; }}},
      {ofLines, {"feature", orvStatusNullPtr, [](Call& c) { c.feature = nullptr; }}},
      {ofImages, {"buffer", orvStatusNullPtr, [](Call& c) { c.buffer = nullptr; }}},
      {ofSizes, {"bufferSize", orvStatusNullPtr, [](Call& c) { c.bytes = nullptr; }}},
      {all, {"width", orvStatusSize, [](Call& c) { c.roi.width = 0; }}},
      {all, {"height", orvStatusSize, [](Call& c) { c.roi.height = -1; }}},
      {ofFloats, {"src alignment", orvStatusStepAlign, [](Call& c) { c.srcStep += 1; }}},
      {ofBytes | ofFloats, {"dst alignment", orvStatusStepAlign, [](Call& c) { c.dstStep += 2; }}},
      {ofImages, {"filter", orvStatusFilterType, [](Call& c) { c.plan.filter = 3; }}},
      {all, {"mask", orvStatusMaskSize, [](Call& c) { c.plan.mask = 35; }}},
      {ofImages, {"border", orvStatusBorder, [](Call& c) { c.plan.border = orvBorderMirr; }}},
      {ofSizes, {"type", orvStatusDataType, [](Call& c) { c.type = orvData16s; }}},
      {ofSizes, {"channels", orvStatusChannels, [](Call& c) { c.channels = 3; }}},
      {all, {"window", orvStatusSize, [](Call& c) { c.plan.window = 0; }}},
      {ofImages, {"srcStep", orvStatusStep, [](Call& c) { c.srcStep = -40; }}},
      {ofLines, {"featureStep", orvStatusStep, [](Call& c) { c.featureStep = -8; }}},
      {ofImages, {"dstStep", orvStatusStep, [](Call& c) { c.dstStep = -36 + c.dstStep % 4; }}},
      {ofFloats, {"in place", orvStatusInPlace, [](Call& c) { c.src = c.dst; }}},
      {ofLines, {"in place", orvStatusInPlace, [](Call& c) { c.feature = c.dst; }}}};
  std::vector<uint8_t> src(400), feature(400, 9), dst(400, 77), buffer(1 << 15);
  int32_t bytes = -7;
  const Call valid = {src.data(), feature.data(),   dst.data(),    40,        40, 40,
                      {9, 7},     {2, 33, 3, 1, 0}, buffer.data(), orvData8u, 1,  &bytes};
  for (const int function : {ofBytes, ofFloats, ofLines, ofSizes}) {
    walkShared(function, valid, checks, run,
               [&] { return bytes == -7 && std::count(dst.begin(), dst.end(), 77) == 400; });
    Call scharr5 = valid;
    scharr5.plan.filter = orvFilterKernelScharr, scharr5.plan.mask = orvMaskSize5x5;
    CHECK(function == ofSizes || run(function, scharr5) == orvStatusMaskSize);
  }
}

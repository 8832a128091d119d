// Products of an image and a constant. A team shares the rows; a kernel works on one.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/image_mulc.cpp"
#include "core/kernels.h"
#include "core/scaling.h"

KERNELS_BEGIN

void MulC_32f(Plane<const float> src, float value, Plane<float> dst, int32_t y, int32_t width) {
  const auto* s = src.row(y);
  auto* d = dst.row(y);
  Columns(
      0, width, PIXEL(x) { d[x] = s[x] * value; });
}

// Scale 0, all in 16 bits: the low half of the product is the result if the high half is only its sign; else the sign
// of the high half decides which end of the range it is.
void MulC_16s(Plane<const int16_t> src, int16_t value, Plane<int16_t> dst, int32_t y, int32_t width, Scaling) {
  const int16_t* s = raw(src.row(y));
  int16_t* t = raw(dst.row(y));
  Vectors<int16_t>(
      0, width, VECTOR(d, x) {
        const auto a = hn::LoadU(d, s + x), v = hn::Set(d, value);
        const auto low = hn::Mul(a, v), high = hn::MulHigh(a, v);
        const auto end = hn::Xor(hn::ShiftRight<15>(high), hn::Set(d, int16_t{32767}));
        hn::StoreU(hn::IfThenElse(hn::Eq(high, hn::ShiftRight<15>(low)), low, end), d, t + x);
      });
}

void MulCDown_16s(Plane<const int16_t> src, int16_t value, Plane<int16_t> dst, int32_t y, int32_t width,
                  Scaling scaling) {
  const auto* s = src.row(y);
  auto* d = dst.row(y);
  Columns(
      0, width, PIXEL(x) { d[x] = scaleDown<int16_t>(s[x] * value, scaling.right); });
}

void MulCUp_16s(Plane<const int16_t> src, int16_t value, Plane<int16_t> dst, int32_t y, int32_t width,
                Scaling scaling) {
  const auto* s = src.row(y);
  auto* d = dst.row(y);
  Columns(
      0, width, PIXEL(x) { d[x] = scaleUp<int16_t>(s[x] * value, scaling.left); });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

OrvStatus orviMulC_32f_C1R(const float* src, int32_t srcStep, float value, float* dst, int32_t dstStep,
                           OrvSize roiSize) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  const Plane<const float> s{src, srcStep};
  const Plane<float> d{dst, dstStep};
  const auto kernel = WIDEST(MulC_32f);
  runRows(roiSize.height, [&](int32_t y) { kernel(s, value, d, y, roiSize.width); });
  return orvStatusOk;
}

OrvStatus orviMulC_16s_C1RSfs(const int16_t* src, int32_t srcStep, int16_t value, int16_t* dst, int32_t dstStep,
                              OrvSize roiSize, int32_t scaleFactor) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  const Plane<const int16_t> s{src, srcStep};
  const Plane<int16_t> d{dst, dstStep};
  const Scaling scaling = makeScaling(scaleFactor);
  const auto kernel = scaleFactor == 0 ? WIDEST(MulC_16s) : scaleFactor > 0 ? WIDEST(MulCDown_16s) : WIDEST(MulCUp_16s);
  runRows(roiSize.height, [&](int32_t y) { kernel(s, value, d, y, roiSize.width, scaling); });
  return orvStatusOk;
}

#endif

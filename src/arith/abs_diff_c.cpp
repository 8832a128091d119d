// Absolute difference of an image and a constant.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/abs_diff_c.cpp"
#include "arith/pointwise.h"

KERNELS_BEGIN

// As between two images, one of which is flat.
template <class T>
void AbsDiffC(Area area, Plane<const T> src, Plane<T> dst, T value) {
  const auto formula = FORMULA(T s) { return Distance(s, value); };
  MapRows<(sizeof(T) > 1)>(area, dst, formula, src);
}

KERNELS_END

#if HWY_ONCE

// The constant as a pixel: what a pixel can't hold works as the nearest one that it can.
template <class T>
static inline T nearestPixel(int32_t value) {
  return (T)(value < 0 ? 0 : value > (T)-1 ? (T)-1 : value);
}

OrvStatus orviAbsDiffC_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                              int32_t value) {
  return pointwise(with(WIDEST(AbsDiffC<uint8_t>), nearestPixel<uint8_t>(value)), ordinary, roiSize,
                   image(src, srcStep), image(dst, dstStep));
}

OrvStatus orviAbsDiffC_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize,
                               int32_t value) {
  return pointwise(with(WIDEST(AbsDiffC<uint16_t>), nearestPixel<uint16_t>(value)), bypassing(4), roiSize,
                   image(src, srcStep), image(dst, dstStep));
}

OrvStatus orviAbsDiffC_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                               float value) {
  return pointwise(with(WIDEST(AbsDiffC<float>), value), bypassing(8), roiSize, image(src, srcStep),
                   image(dst, dstStep));
}

#endif

// Absolute difference of two images.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/abs_diff.cpp"
#include "arith/pointwise.h"

KERNELS_BEGIN

// Wider elements than bytes choose their stores by the size of the cache.
template <class T>
void AbsDiff(Area area, Plane<const T> src1, Plane<const T> src2, Plane<T> dst) {
  const auto formula = FORMULA(T a, T b) { return Distance(a, b); };
  MapRows<(sizeof(T) > 1)>(area, dst, formula, src1, src2);
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviAbsDiff_8u_C1R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AbsDiff<uint8_t>), ordinary, roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(dst, dstStep));
}

OrvStatus orviAbsDiff_8u_C3R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize) {
  roiSize.width = wrapMul(roiSize.width, 3);
  return orviAbsDiff_8u_C1R(src1, src1Step, src2, src2Step, dst, dstStep, roiSize);
}

OrvStatus orviAbsDiff_16u_C1R(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                              uint16_t* dst, int32_t dstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AbsDiff<uint16_t>), bypassing(6), roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(dst, dstStep));
}

OrvStatus orviAbsDiff_32f_C1R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                              int32_t dstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AbsDiff<float>), bypassing(12), roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(dst, dstStep));
}

#endif

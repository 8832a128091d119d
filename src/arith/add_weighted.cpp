// Running average: srcDst moves towards src by the share alpha.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/add_weighted.cpp"
#include "arith/pointwise.h"

KERNELS_BEGIN

// The three operations stand in this order in every form: alpha * s + (1 - alpha) * d would differ in the last bit.
HWY_INLINE float Step(float s, float d, float alpha) { return (s - d) * alpha; }

template <class T>
void AddWeighted(Area area, Plane<const T> src, Plane<float> srcDst, float alpha) {
  const auto formula = FORMULA(float s, float d) { return d + Step(s, d, alpha); };
  MapRows(area, srcDst, formula, src, srcDst);
}
template <class T>
void AddWeightedMasked(Area area, Plane<const T> src, Plane<const uint8_t> mask, Plane<float> srcDst, float alpha) {
  const auto formula = FORMULA(float s, uint8_t m, float d) { return d + Keep(m, Step(s, d, alpha)); };
  MapRows<std::is_same<T, float>::value>(area, srcDst, formula, src, mask, srcDst);
}
// Into a third image: dst is src2 moved towards src1.
void AddWeightedInto(Area area, Plane<const float> src1, Plane<const float> src2, Plane<float> dst, float alpha) {
  const auto formula = FORMULA(float s, float d) { return d + Step(s, d, alpha); };
  MapRows(area, dst, formula, src1, src2);
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviAddWeighted_32f_C1R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                                  int32_t dstStep, OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeightedInto), alpha), oneThread, roiSize, image(src1, src1Step),
                   image(src2, src2Step), image(dst, dstStep));
}

OrvStatus orviAddWeighted_8u32f_C1IR(const uint8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeighted<uint8_t>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddWeighted_8u32f_C1IMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                      float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeightedMasked<uint8_t>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(mask, maskStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddWeighted_8s32f_C1IR(const int8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeighted<int8_t>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddWeighted_8s32f_C1IMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                      float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeightedMasked<int8_t>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(mask, maskStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddWeighted_16u32f_C1IR(const uint16_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                      OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeighted<uint16_t>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddWeighted_16u32f_C1IMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                       float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeightedMasked<uint16_t>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(mask, maskStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddWeighted_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeighted<float>), alpha), ordinary, roiSize, image(src, srcStep),
                   image(srcDst, srcDstStep));
}

// The mask counts as a float image in the choice of stores.
OrvStatus orviAddWeighted_32f_C1IMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha) {
  return pointwise(with(WIDEST(AddWeightedMasked<float>), alpha), bypassing(12), roiSize, image(src, srcStep),
                   image(mask, maskStep), image(srcDst, srcDstStep));
}

#endif

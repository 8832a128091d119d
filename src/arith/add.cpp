// Accumulation of images: srcDst += src.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/add.cpp"
#include "arith/pointwise.h"

KERNELS_BEGIN

template <class T>
void Add(Area area, Plane<const T> src, Plane<float> srcDst) {
  const auto formula = FORMULA(float s, float d) { return d + s; };
  MapRows(area, srcDst, formula, src, srcDst);
}
template <class T>
void AddMasked(Area area, Plane<const T> src, Plane<const uint8_t> mask, Plane<float> srcDst) {
  const auto formula = FORMULA(T s, uint8_t m, float d) { return d + Keep(m, s); };
  MapRows(area, srcDst, formula, src, mask, srcDst);
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviAdd_8u32f_C1IR(const uint8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(Add<uint8_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

OrvStatus orviAdd_8u32f_C1IMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst,
                              int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddMasked<uint8_t>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAdd_8s32f_C1IR(const int8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(Add<int8_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

OrvStatus orviAdd_8s32f_C1IMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst,
                              int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddMasked<int8_t>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAdd_16u32f_C1IR(const uint16_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                              OrvSize roiSize) {
  return pointwise(WIDEST(Add<uint16_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

OrvStatus orviAdd_16u32f_C1IMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddMasked<uint16_t>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAdd_32f_C1IMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst,
                            int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddMasked<float>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

#endif

// Accumulation of squares: srcDst += src * src.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/add_square.cpp"
#include "arith/pointwise.h"

KERNELS_BEGIN

template <class T>
void AddSquare(Area area, Plane<const T> src, Plane<float> srcDst) {
  const auto formula = FORMULA(float s, float d) { return d + s * s; };
  MapRows(area, srcDst, formula, src, srcDst);
}
template <class T>
void AddSquareMasked(Area area, Plane<const T> src, Plane<const uint8_t> mask, Plane<float> srcDst) {
  const auto formula = FORMULA(T s, uint8_t m, float d) {
    const float kept = Keep(m, s);
    return d + kept * kept;
  };
  MapRows<std::is_same<T, float>::value>(area, srcDst, formula, src, mask, srcDst);
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviAddSquare_8u32f_C1IR(const uint8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize) {
  return pointwise(WIDEST(AddSquare<uint8_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddSquare_8u32f_C1IMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddSquareMasked<uint8_t>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddSquare_8s32f_C1IR(const int8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize) {
  return pointwise(WIDEST(AddSquare<int8_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddSquare_8s32f_C1IMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddSquareMasked<int8_t>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddSquare_16u32f_C1IR(const uint16_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                    OrvSize roiSize) {
  return pointwise(WIDEST(AddSquare<uint16_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddSquare_16u32f_C1IMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                     float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddSquareMasked<uint16_t>), ordinary, roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddSquare_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                 OrvSize roiSize) {
  return pointwise(WIDEST(AddSquare<float>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
}

// The mask counts as a float image in the choice of stores.
OrvStatus orviAddSquare_32f_C1IMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddSquareMasked<float>), bypassing(12), roiSize, image(src, srcStep), image(mask, maskStep),
                   image(srcDst, srcDstStep));
}

#endif

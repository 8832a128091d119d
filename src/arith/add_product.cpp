// Accumulation of products of two images: srcDst += src1 * src2.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/add_product.cpp"
#include "arith/pointwise.h"

KERNELS_BEGIN

template <class T>
void AddProduct(Area area, Plane<const T> src1, Plane<const T> src2, Plane<float> srcDst) {
  const auto formula = FORMULA(float a, float b, float d) { return d + a * b; };
  MapRows(area, srcDst, formula, src1, src2, srcDst);
}
// The mask clears the first factor alone: an infinite or NaN second one still makes a NaN.
template <class T>
void AddProductMasked(Area area, Plane<const T> src1, Plane<const T> src2, Plane<const uint8_t> mask,
                      Plane<float> srcDst) {
  const auto formula = FORMULA(T a, float b, uint8_t m, float d) { return d + Keep(m, a) * b; };
  MapRows<true>(area, srcDst, formula, src1, src2, mask, srcDst);
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviAddProduct_8u32f_C1IR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddProduct<uint8_t>), ordinary, roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_8u32f_C1IMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                     const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize) {
  return pointwise(WIDEST(AddProductMasked<uint8_t>), bypassing(7), roiSize, image(src1, src1Step),
                   image(src2, src2Step), image(mask, maskStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_8s32f_C1IR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddProduct<int8_t>), ordinary, roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_8s32f_C1IMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                     const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize) {
  return pointwise(WIDEST(AddProductMasked<int8_t>), bypassing(7), roiSize, image(src1, src1Step),
                   image(src2, src2Step), image(mask, maskStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_16u32f_C1IR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                     float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddProduct<uint16_t>), ordinary, roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_16u32f_C1IMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                      const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                      OrvSize roiSize) {
  return pointwise(WIDEST(AddProductMasked<uint16_t>), bypassing(9), roiSize, image(src1, src1Step),
                   image(src2, src2Step), image(mask, maskStep), image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_32f_C1IR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                  float* srcDst, int32_t srcDstStep, OrvSize roiSize) {
  return pointwise(WIDEST(AddProduct<float>), ordinary, roiSize, image(src1, src1Step), image(src2, src2Step),
                   image(srcDst, srcDstStep));
}

OrvStatus orviAddProduct_32f_C1IMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize) {
  return pointwise(WIDEST(AddProductMasked<float>), bypassing(13), roiSize, image(src1, src1Step),
                   image(src2, src2Step), image(mask, maskStep), image(srcDst, srcDstStep));
}

#endif

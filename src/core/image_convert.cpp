// Conversions to float. All values of 8 and 16 bits are exact.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/image_convert.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// `width` counts elements.
template <class T>
void ToFloat(Plane<const T> src, Plane<float> dst, ptrdiff_t width, int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    const auto* s = src.row(y);
    auto* d = dst.row(y);
    Columns(
        0, width, PIXEL(x) { d[x] = (float)s[x]; });
  }
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

namespace {

template <class T>
OrvStatus convert(const T* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roi, int32_t channels) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  WIDEST(ToFloat<T>)({src, srcStep}, {dst, dstStep}, (ptrdiff_t)roi.width * channels, roi.height);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviConvert_16u32f_C1R(const uint16_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize) {
  return convert(src, srcStep, dst, dstStep, roiSize, 1);
}

OrvStatus orviConvert_8u32f_C3R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize) {
  return convert(src, srcStep, dst, dstStep, roiSize, 3);
}

#endif

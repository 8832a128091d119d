// The prepared Gaussian filter: checks, and the ring of filtered rows over the row and column stages.
#include "core/checks.h"
#include "core/scratch.h"
#include "filter/gaussian_bytes.h"
#include "filter/gaussian_spec.h"
#include "filter/smooth_stages.h"

namespace {

// The body of all members; `borderValue` points to one element a channel.
template <class T>
OrvStatus gaussianBorder(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int32_t channels,
                         const T* borderValue, const OrvFilterGaussianSpec* spec, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer, spec), orvStatusNullPtr);
  const int32_t row = wrapMul(roi.width, channels);  // elements, not bytes
  ORV_REQUIRE(srcStep >= row && dstStep >= row, orvStatusStep);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(stepsAligned<T>(srcStep, dstStep), orvStatusStepAlign);
  const OrvFilterGaussianSpec filter = readSpec(spec);
  ORV_REQUIRE(filter.kernelSize >= 0 && validGaussianSize((uint32_t)filter.kernelSize), orvStatusBadArg);
  ORV_REQUIRE(validGaussianBorder(filter.borderType), orvStatusBorder);
  ORV_REQUIRE(borderValue != nullptr || borderKind(filter.borderType) != orvBorderConst, orvStatusNullPtr);
  ORV_REQUIRE(filter.shift >= 0 && filter.shift < 32, orvStatusBadArg);  // 1 << shift isn't 0
  const int32_t divisor = (int32_t)(1u << filter.shift);
  // A single row has none above and below, also where the flags say so.
  const bool single = roi.height == 1 && borderKind(filter.borderType) != orvBorderConst;
  const Smoothing<T> work = {
      {src, srcStep}, {dst, dstStep}, roi, channels, filter.borderType, single ? orvBorderRepl : filter.borderType,
      borderValue,    buffer};
  const auto* const taps = specTaps<const typename Stages<T>::Tap>(spec);
  if constexpr (sizeof(T) == 1) {
    if (filter.shift == 12 && gaussianBytesFit(taps, filter.kernelSize)) {
      gaussianBytes(work, taps, filter.kernelSize);
      return orvStatusOk;
    }
  }
  smooth(work, taps, filter.kernelSize, divisor, Scratch{buffer});
  return orvStatusOk;
}

}  // namespace

OrvStatus orviFilterGaussianBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, uint8_t borderValue, const OrvFilterGaussianSpec* spec,
                                          uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 1, &borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, const uint8_t borderValue[3],
                                          const OrvFilterGaussianSpec* spec, uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 3, borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, uint16_t borderValue, const OrvFilterGaussianSpec* spec,
                                           uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 1, &borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_16u_C3R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const uint16_t borderValue[3],
                                           const OrvFilterGaussianSpec* spec, uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 3, borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, int16_t borderValue, const OrvFilterGaussianSpec* spec,
                                           uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 1, &borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_16s_C3R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const int16_t borderValue[3],
                                           const OrvFilterGaussianSpec* spec, uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 3, borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, float borderValue, const OrvFilterGaussianSpec* spec,
                                           uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 1, &borderValue, spec, buffer);
}
OrvStatus orviFilterGaussianBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, const float borderValue[3],
                                           const OrvFilterGaussianSpec* spec, uint8_t* buffer) {
  return gaussianBorder(src, srcStep, dst, dstStep, roiSize, 3, borderValue, spec, buffer);
}

// Sobel filters: a derivative of first or second order along one direction, smoothed by binomial taps along the other.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/sobel.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"

#if HWY_ONCE
#include "filter/sobel_internal.h"

namespace {

using Vert3 = Separable<kerDxNeg_3, kerSobel_3>;
using Vert5 = Separable<kerDxNeg_5, kerSobel_5>;
using NegVert3 = Separable<kerDxNeg_3, kerSobelNeg_3>;
using NegVert5 = Separable<kerDxNeg_5, kerSobelNeg_5>;
using Horiz3 = Separable<kerSobel_3, kerDx_3>;
using Horiz5 = Separable<kerSobel_5, kerDx_5>;
using Cross3 = Separable<kerDxNeg_3, kerDx_3>;
using Cross5 = Separable<kerDxNeg_5, kerDx_5>;
using HorizSecond3 = Separable<kerSobel_3, kerD2x_3>;
using HorizSecond5 = Separable<kerSobel_5, kerD2x_5>;
using VertSecond3 = Separable<kerD2x_3, kerSobel_3>;
using VertSecond5 = Separable<kerD2x_5, kerSobel_5>;

constexpr FixedSize size8u16s{2, 1, 368, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R,
                              orviFilterColumnPipelineGetBufferSize_16s_C1R};
constexpr FixedSize size8u8s{2, 1, 304, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R,
                             orviFilterColumnPipelineGetBufferSize_16s8s_C1R};
constexpr FixedSize size32f{4, 1, 368, orviFilterRowBorderPipelineGetBufferSize_32f_C1R,
                            orviFilterColumnPipelineGetBufferSize_32f_C1R};

// The internal forms check less, and in another order. They take no orvBorderWrap and nothing above the side flags.
template <class T, class R, class D>
OrvStatus internalFilter(FixedCall<T, D> call, const FixedSize& size, FixedFilter<T, R, D> (*make3)(),
                         FixedFilter<T, R, D> (*make5)()) {
  const int32_t maxThreads = owncvGetMaxNumThreads();
  ORV_REQUIRE(allSet(call.src, call.dst, call.buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  ORV_REQUIRE(stepsAligned<T>(call.srcStep) && stepsAligned<D>(call.dstStep), orvStatusStepAlign);
  ORV_REQUIRE(validMask(call.maskSize), orvStatusMaskSize);
  const int32_t kind = borderKind(call.borderType);
  ORV_REQUIRE(kind <= orvBorderInMem && kind != orvBorderWrap && kind != 5, orvStatusBadArg);
  ORV_REQUIRE(call.borderType >= 0 && call.borderType <= 255, orvStatusBadArg);
  if (kind == orvBorderInMem) call.borderType = borderAllSides;
  filterRegion(call, call.maskSize == orvMaskSize3x3 ? make3() : make5(), size, maxThreads);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviFilterSobelVertBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<Vert3>), WIDEST(Separable8u8s<Vert5>));
}
OrvStatus orviFilterSobelVertGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelNegVertBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                 OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                 uint8_t borderValue, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<NegVert3>), WIDEST(Separable8u16s<NegVert5>));
}
OrvStatus orviFilterSobelNegVertGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelNegVertBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                                OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<NegVert3>), WIDEST(Separable8u8s<NegVert5>));
}
OrvStatus orviFilterSobelNegVertGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelNegVertBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                               float borderValue, uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<NegVert3>), WIDEST(Separable32f<NegVert5>));
}
OrvStatus orviFilterSobelNegVertGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelHorizBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<Horiz3>), WIDEST(Separable8u8s<Horiz5>));
}
OrvStatus orviFilterSobelHorizGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelCrossBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                               uint8_t borderValue, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<Cross3>), WIDEST(Separable8u16s<Cross5>));
}
OrvStatus orviFilterSobelCrossGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelCrossBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<Cross3>), WIDEST(Separable8u8s<Cross5>));
}
OrvStatus orviFilterSobelCrossGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelCrossBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             float borderValue, uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<Cross3>), WIDEST(Separable32f<Cross5>));
}
OrvStatus orviFilterSobelCrossGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelHorizSecondBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                     OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                     uint8_t borderValue, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<HorizSecond3>), WIDEST(Separable8u16s<HorizSecond5>));
}
OrvStatus orviFilterSobelHorizSecondGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize,
                                                            int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelHorizSecondBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                                    OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                    uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<HorizSecond3>), WIDEST(Separable8u8s<HorizSecond5>));
}
OrvStatus orviFilterSobelHorizSecondGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelHorizSecondBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                                   OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                   float borderValue, uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<HorizSecond3>), WIDEST(Separable32f<HorizSecond5>));
}
OrvStatus orviFilterSobelHorizSecondGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelVertSecondBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                    OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                    uint8_t borderValue, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<VertSecond3>), WIDEST(Separable8u16s<VertSecond5>));
}
OrvStatus orviFilterSobelVertSecondGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelVertSecondBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                                   OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                   uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<VertSecond3>), WIDEST(Separable8u8s<VertSecond5>));
}
OrvStatus orviFilterSobelVertSecondGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelVertSecondBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                  float borderValue, uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<VertSecond3>), WIDEST(Separable32f<VertSecond5>));
}
OrvStatus orviFilterSobelVertSecondGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

// The gradients that corner detection takes.
OrvStatus orviFilterSobelVertBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, uint8_t* buffer) {
  return internalFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<Vert3>), WIDEST(Separable8u16s<Vert5>));
}
OrvStatus orviFilterSobelVertGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelVertBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                            float borderValue, uint8_t* buffer) {
  return internalFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<Vert3>), WIDEST(Separable32f<Vert5>));
}
OrvStatus orviFilterSobelVertGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelHorizBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                               uint8_t borderValue, uint8_t* buffer) {
  return internalFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<Horiz3>), WIDEST(Separable8u16s<Horiz5>));
}
OrvStatus orviFilterSobelHorizGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterSobelHorizBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             float borderValue, uint8_t* buffer) {
  return internalFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<Horiz3>), WIDEST(Separable32f<Horiz5>));
}
OrvStatus orviFilterSobelHorizGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

#endif

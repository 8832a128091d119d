// Scharr filters: a central difference along one direction, smoothed by 3 10 3 along the other.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/scharr.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"

#if HWY_ONCE
namespace {

using Horiz = Separable<kerScharr_3, kerDx_3>;
using Vert = Separable<kerDx_3, kerScharr_3>;

constexpr FixedSize size8u16s{2, 1, 304, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R,
                              orviFilterColumnPipelineGetBufferSize_16s_C1R};
constexpr FixedSize size8u8s{2, 1, 304, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R,
                             orviFilterColumnPipelineGetBufferSize_16s8s_C1R};
constexpr FixedSize size32f{4, 1, 368, orviFilterRowBorderPipelineGetBufferSize_32f_C1R,
                            orviFilterColumnPipelineGetBufferSize_32f_C1R};

}  // namespace

OrvStatus orviFilterScharrHorizBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                                uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, orvMaskSize3x3, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<Horiz>));
}
OrvStatus orviFilterScharrHorizGetBufferSize_8u16s_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, orvMaskSize3x3, bufferSize);
}

OrvStatus orviFilterScharrHorizBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                               int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, orvMaskSize3x3, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<Horiz>));
}
OrvStatus orviFilterScharrHorizGetBufferSize_8u8s_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, orvMaskSize3x3, bufferSize);
}

OrvStatus orviFilterScharrHorizBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                              uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, orvMaskSize3x3, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<Horiz>));
}
OrvStatus orviFilterScharrHorizGetBufferSize_32f_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, orvMaskSize3x3, bufferSize);
}

OrvStatus orviFilterScharrVertBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                               uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, orvMaskSize3x3, borderType, borderValue, buffer}, size8u16s,
      WIDEST(Separable8u16s<Vert>));
}
OrvStatus orviFilterScharrVertGetBufferSize_8u16s_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportFixedSize(size8u16s, roiSize, orvMaskSize3x3, bufferSize);
}

OrvStatus orviFilterScharrVertBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                              int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, orvMaskSize3x3, borderType, borderValue, buffer, divisor}, size8u8s,
      WIDEST(Separable8u8s<Vert>));
}
OrvStatus orviFilterScharrVertGetBufferSize_8u8s_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportFixedSize(size8u8s, roiSize, orvMaskSize3x3, bufferSize);
}

OrvStatus orviFilterScharrVertBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                             uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, orvMaskSize3x3, borderType, borderValue, buffer}, size32f,
      WIDEST(Separable32f<Vert>));
}
OrvStatus orviFilterScharrVertGetBufferSize_32f_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, orvMaskSize3x3, bufferSize);
}

#endif

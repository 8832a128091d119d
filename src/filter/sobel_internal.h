// Sobel gradients for callers inside the library; what Vert and Horiz mean stands in orvcv/filter_fixed.h.
#pragma once
#include "filter/names.h"

extern "C" {
// Kinds 0, 1, 3, 4 and 6 with any side flags. Scratch as the size functions report it.
// Returns, in order: orvStatusNullPtr, orvStatusSize, orvStatusStepAlign, orvStatusMaskSize, orvStatusBadArg (border);
// steps aren't measured.
OrvStatus orviFilterSobelVertBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelVertBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                            float borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelHorizBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                               uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelHorizBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             float borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelVertGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelVertGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelHorizGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelHorizGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
}

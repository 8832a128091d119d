// Rank filters of 16-bit elements, for erosion and dilation: rank_filter.h tells the rest.
#pragma once
#include "morph/names.h"

extern "C" {
OrvStatus ownorviFilterMinBorderReplicate_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus ownorviFilterMaxBorderReplicate_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus ownorviFilterMinBorderReplicate_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus ownorviFilterMaxBorderReplicate_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
// For both 16-bit types.
OrvStatus ownorviFilterMinGetBufferSize_16u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus ownorviFilterMaxGetBufferSize_16u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
}

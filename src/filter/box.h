// Mean of a box of any size around each pixel of a float image, for callers inside the library.
#pragma once
#include "filter/names.h"

extern "C" {
// Scratch size in bytes. maskSize: width and height of the box; dataType: 8u, 16u, 16s or 32f; numChannels: 1, 3 or 4.
// Returns, in order: orvStatusNullPtr, orvStatusSize, orvStatusMaskSize, orvStatusDataType, orvStatusChannels.
OrvStatus orviFilterBoxBorderGetBufferSize(OrvSize roiSize, OrvSize maskSize, OrvDataType dataType, int32_t numChannels,
                                           int32_t* bufferSize);

// dst = sum of the box * (1.0f / (width * height)). The box covers columns x - hw to x - hw + width - 1 with
// hw = (width - 1) / 2, rows likewise. Each row of it is summed from the left, then the rows from the top, so a pixel
// is the same in whatever tile it is computed. dst may be src. borderType: orvBorderConst or orvBorderRepl with any
// side flags, or orvBorderInMem. borderValue points to one float. Returns, in order: orvStatusNullPtr (src, dst,
// buffer), orvStatusStep (below 1), orvStatusSize, orvStatusMaskSize, orvStatusNullPtr (kind orvBorderConst without a
// value), orvStatusBorder.
OrvStatus orviFilterBoxBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      OrvSize maskSize, OrvBorderType borderType, const float* borderValue,
                                      uint8_t* buffer);
}

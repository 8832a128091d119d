/* Rank filters: the smallest or largest pixel of a rectangle around each pixel.
 *
 *   dst(x, y) = min or max of src(x - anchor.x + j, y - anchor.y + i), 0 <= j < maskSize.width, 0 <= i <
 * maskSize.height
 *
 * per channel. Beyond its sides the image goes on with its nearest pixel; nothing outside the region is read. Windows
 * may be of any size, also larger than the image. Cost doesn't grow with the window beyond 15 columns and 5 rows
 * (M. van Herk, "A fast algorithm for local minimum and maximum filters on rectangular and octagonal kernels", 1992,
 * and doubling windows). Of zeros with different signs either may be given; NaNs are outside the contract.
 * src and dst must not overlap. One thread; any number of calls at once, each with a buffer of its own.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize (a side of the region below 1),
 * orvStatusMaskSize (a side of the mask below 1), orvStatusAnchor (the anchor isn't in the mask), orvStatusStep (a step
 * below a row), orvStatusStepAlign (32f: a step that isn't a whole number of elements).
 *
 * GetBufferSize tells the bytes of `buffer`, which may lie at any address: 2 * h * (P + 32) + 32 * h + 32, h the rows
 * of the mask, P the bytes of a row of roiWidth pixels; in 32 bits. Min and Max need the same. Returns, in order:
 * orvStatusNullPtr (bufferSize), orvStatusSize (roiWidth below 1), orvStatusMaskSize. */
#ifndef ORVCV_RANK_FILTER_H
#define ORVCV_RANK_FILTER_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

OrvStatus orviFilterMinBorderReplicate_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMaxBorderReplicate_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMinBorderReplicate_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMaxBorderReplicate_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMinBorderReplicate_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMaxBorderReplicate_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMinBorderReplicate_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMaxBorderReplicate_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMinBorderReplicate_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMaxBorderReplicate_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMinBorderReplicate_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);
OrvStatus orviFilterMaxBorderReplicate_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvSize maskSize, OrvPoint anchor, uint8_t* buffer);

OrvStatus orviFilterMinGetBufferSize_8u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMaxGetBufferSize_8u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMinGetBufferSize_8u_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMaxGetBufferSize_8u_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMinGetBufferSize_8u_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMaxGetBufferSize_8u_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMinGetBufferSize_32f_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMaxGetBufferSize_32f_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMinGetBufferSize_32f_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMaxGetBufferSize_32f_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMinGetBufferSize_32f_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterMaxGetBufferSize_32f_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* bufferSize);

#ifdef __cplusplus
}
#endif
#endif

/* The gradients of three channels made one, by a norm. Of a pixel (a, b, c):
 *
 *   norm  8u                                16u                               32f
 *   0     the largest                       the largest                       the largest of |a|, |b|, |c|
 *   1     ((a+b+c) * 1365 + 2048) >> 12     ((a+b+c) * 5461 + 8192) >> 14     |a| + |b| + |c|
 *   2     the root of (aa + bb + cc) / 3, rounded to nearest                  the root of aa + bb + cc
 *
 * Float sums are taken left to right in single precision and, unlike the others, not divided by 3. src has three
 * interleaved channels and must not overlap dst. Regions of at least 2048 pixels and 32 rows are worked on by a team.
 *
 * Returns, in order: orvStatusNullPtr (src, dst), orvStatusSize, orvStatusStep (a step below a row), orvStatusStepAlign
 * (16u, 32f: a step that isn't a whole number of elements), orvStatusBadArg (norm). */
#ifndef ORVCV_GRADIENT_COLOR_H
#define ORVCV_GRADIENT_COLOR_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

OrvStatus orviGradientColorToGray_8u_C3C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, int32_t norm);
OrvStatus orviGradientColorToGray_16u_C3C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                            OrvSize roiSize, int32_t norm);
OrvStatus orviGradientColorToGray_32f_C3C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, int32_t norm);

#ifdef __cplusplus
}
#endif
#endif

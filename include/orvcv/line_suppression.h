/* Feature pixels on lines cleared, those at corners kept.
 *
 * With A, B and C the means of dx * dx, dy * dy and dx * dy over a window of avgWindow x avgWindow pixels, taken as
 * orviHarrisCorner_8u32f_C1R takes them, a pixel of dst is 0 if
 *
 *   (A + B) * (A + B) > (A * B - C * C) * threshold
 *
 * and that of `feature` otherwise, in single precision. The left side is at least 4 times the bracket on the right, and
 * much more along a line: a low threshold clears all but the roundest corners, a high one little but straight lines.
 *
 * Gradient filters, windows, borders and scratch are those of orviHarrisCorner_8u32f_C1R (orvcv/corners.h). dst must
 * overlap neither src nor feature. Calling thread only; any number of threads may call at once, with a buffer each.
 */
#ifndef ORVCV_LINE_SUPPRESSION_H
#define ORVCV_LINE_SUPPRESSION_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* The same size as orviHarrisCornerGetBufferSize, with the same checks. */
OrvStatus orviLineSuppressionGetBufferSize(OrvSize roiSize, OrvMaskSize maskSize, int32_t avgWindow,
                                           OrvDataType dataType, int32_t numChannels, int32_t* bufferSize);

/* Returns, in order: orvStatusNullPtr (src, dst, feature, buffer), orvStatusSize, orvStatusFilterType,
 * orvStatusMaskSize, orvStatusBorder, orvStatusSize (avgWindow below 1), orvStatusStep (a step below 0; they are not
 * compared with the row), orvStatusInPlace (feature is dst). */
OrvStatus orviLineSuppression_8u_C1R(const uint8_t* src, int32_t srcStep, const uint8_t* feature, int32_t featureStep,
                                     uint8_t* dst, int32_t dstStep, OrvSize roiSize, OrvFilterKernel filterType,
                                     OrvMaskSize maskSize, int32_t avgWindow, OrvBorderType borderType,
                                     uint8_t borderValue, uint8_t* buffer, float threshold);

#ifdef __cplusplus
}
#endif
#endif

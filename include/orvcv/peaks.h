/* Local extrema of a response image.
 *
 * A pixel v with |v| above the threshold is a peak if it is positive and equals the largest, or not positive and equals
 * the smallest of itself and its neighbours; so maxima and minima are found together, and a flat patch gives a peak at
 * each of its pixels. norm 0: eight neighbours, norm 1: the four that share a side. Floats count as equal if their
 * distance is at most 1.1754944e-38, the smallest normal number; an infinite pixel is no peak, NaN is neither listed
 * nor promised to be heeded as a neighbour.
 *
 * Only pixels at least `border` columns and rows inside the region are tested; border is 1 or more and at most half of
 * either side. Peaks are listed as (x, y) in scan order. When the list is full the function ends with orvStatusOk:
 * *peakCount == maxPeakCount may mean that there are more.
 *
 * Scratch of ((width + 5) >> 2) * 128 + 32 bytes, at any address. Calling thread only; any number of threads may call.
 *
 * Size functions return, in order: orvStatusNullPtr (bufferSize), orvStatusSize (width below 1).
 * The others return, in order: orvStatusNullPtr (src, peak, peakCount, buffer), orvStatusSize (roiSize, maxPeakCount or
 * border below 1, border above half a side), orvStatusStep (srcStep / 4 below the width), orvStatusStepAlign,
 * orvStatusBadArg (norm). */
#ifndef ORVCV_PEAKS_H
#define ORVCV_PEAKS_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

OrvStatus orviFindPeaks3x3GetBufferSize_32f_C1R(int32_t width, int32_t* bufferSize);
OrvStatus orviFindPeaks3x3GetBufferSize_32s_C1R(int32_t width, int32_t* bufferSize);
OrvStatus orviFindPeaks3x3_32f_C1R(const float* src, int32_t srcStep, OrvSize roiSize, float threshold, OrvPoint* peak,
                                   int32_t maxPeakCount, int32_t* peakCount, int32_t norm, int32_t border,
                                   uint8_t* buffer);
OrvStatus orviFindPeaks3x3_32s_C1R(const int32_t* src, int32_t srcStep, OrvSize roiSize, int32_t threshold,
                                   OrvPoint* peak, int32_t maxPeakCount, int32_t* peakCount, int32_t norm,
                                   int32_t border, uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

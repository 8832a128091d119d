/* Labels of connected regions, removal of small regions, boundaries between segments. */
#ifndef ORVCV_LABELLING_H
#define ORVCV_LABELLING_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Labels the connected regions of pixels above 0, in the order of their first pixels (row by row, left to right): the
 * first gets minLabel, each further one the next number, after maxLabel minLabel again. Other pixels are 0. *numLabels
 * is the number of regions, also where labels were used again. norm 1: pixels touch at sides; norm 0: at corners too.
 *
 *   8u, 16u   in place, maxLabel < 255 and maxLabel < 65535
 *   8u32s     into another image, maxLabel < 0x7FFFFFFF
 *
 * `buffer` has the size that GetBufferSize reports (6 * width * height + 32, the low 32 bits), at any address. The time
 * is in proportion to the pixels, whatever the shapes. One thread.
 *
 * Returns, in order: orvStatusNullPtr (images, buffer, numLabels), orvStatusSize, orvStatusStep (src, then dst, below a
 * row), orvStatusStepAlign (16u, dst), orvStatusBadArg (minLabel below 1 or above maxLabel, maxLabel above its limit),
 * orvStatusBadArg (norm neither 0 nor 1). Size functions: orvStatusNullPtr, orvStatusSize. */
OrvStatus orviLabelMarkers_8u_C1IR(uint8_t* markers, int32_t markerStep, OrvSize roiSize, int32_t minLabel,
                                   int32_t maxLabel, int32_t norm, int32_t* numLabels, uint8_t* buffer);
OrvStatus orviLabelMarkers_16u_C1IR(uint16_t* markers, int32_t markerStep, OrvSize roiSize, int32_t minLabel,
                                    int32_t maxLabel, int32_t norm, int32_t* numLabels, uint8_t* buffer);
OrvStatus orviLabelMarkers_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                     OrvSize roiSize, int32_t minLabel, int32_t maxLabel, int32_t norm,
                                     int32_t* numLabels, uint8_t* buffer);
OrvStatus orviLabelMarkersGetBufferSize_8u_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviLabelMarkersGetBufferSize_16u_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviLabelMarkersGetBufferSize_8u32s_C1R(OrvSize roiSize, int32_t* bufferSize);

/* Overwrites regions of at most maxSpeckleSize pixels with speckleValue, in place. Two neighbours at a side belong to
 * one region if neither has the value speckleValue and their values differ by at most maxPixelDiff (exactly for
 * integers, in single precision for floats, where a NaN belongs to nothing but itself). A value that changes slowly
 * over a region may thus vary by more than maxPixelDiff in all. Used on disparity maps, for example.
 *
 * norm must be 1. `buffer` has the reported size, 13 * width * height (the low 32 bits), at any address. One thread.
 *
 * Returns, in order: orvStatusNullPtr (srcDst, buffer), orvStatusSize, orvStatusStep, orvStatusStepAlign (8u checks
 * neither step), orvStatusNorm. GetBufferSize: orvStatusNullPtr, orvStatusSize, orvStatusDataType (8u, 16u, 16s, 32f
 * are allowed), orvStatusChannels (other than 1). */
OrvStatus orviMarkSpeckles_8u_C1IR(uint8_t* srcDst, int32_t step, OrvSize roiSize, uint8_t speckleValue,
                                   int32_t maxSpeckleSize, uint8_t maxPixelDiff, int32_t norm, uint8_t* buffer);
OrvStatus orviMarkSpeckles_16u_C1IR(uint16_t* srcDst, int32_t step, OrvSize roiSize, uint16_t speckleValue,
                                    int32_t maxSpeckleSize, uint16_t maxPixelDiff, int32_t norm, uint8_t* buffer);
OrvStatus orviMarkSpeckles_16s_C1IR(int16_t* srcDst, int32_t step, OrvSize roiSize, int16_t speckleValue,
                                    int32_t maxSpeckleSize, int16_t maxPixelDiff, int32_t norm, uint8_t* buffer);
OrvStatus orviMarkSpeckles_32f_C1IR(float* srcDst, int32_t step, OrvSize roiSize, float speckleValue,
                                    int32_t maxSpeckleSize, float maxPixelDiff, int32_t norm, uint8_t* buffer);
OrvStatus orviMarkSpecklesGetBufferSize(OrvSize roiSize, OrvDataType dataType, int32_t channels, int32_t* bufferSize);

/* Draws lines of borderValue between the segments of a label image, in place. Row by row, left to right, a pixel
 * becomes borderValue if it differs from the pixel above, or from its left neighbour (norm 0: also from the two at its
 * upper corners) where that isn't borderValue. What has been written counts at once: a line is one pixel wide and lies
 * on the side that is reached later. Every value is a label, 0 too. One thread.
 *
 * Returns, in order: orvStatusNullPtr, orvStatusSize, orvStatusStep, orvStatusStepAlign (16u), orvStatusBadArg (norm
 * neither 0 nor 1). */
OrvStatus orviBoundSegments_8u_C1IR(uint8_t* markers, int32_t markerStep, OrvSize roiSize, uint8_t borderValue,
                                    int32_t norm);
OrvStatus orviBoundSegments_16u_C1IR(uint16_t* markers, int32_t markerStep, OrvSize roiSize, uint16_t borderValue,
                                     int32_t norm);

#ifdef __cplusplus
}
#endif
#endif

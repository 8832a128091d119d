/* Morphological reconstruction (L. Vincent, "Morphological grayscale reconstruction in image analysis: applications
 * and efficient algorithms", 1993).
 *
 * Dilate: the marker srcDst grows under the mask src. Each pixel becomes the largest value that reaches it on a path
 * from pixel to pixel, where the value on its way is cut to the mask at every pixel, its own included:
 *
 *   repeat srcDst(p) = min(src(p), max(srcDst(p), srcDst(q) of all neighbours q)) until nothing changes
 *
 * Erode is the mirror image: the marker shrinks above the mask. A marker beyond the mask is cut to it. `norm` 1 takes
 * the four neighbours of a pixel, 0 all eight. Nothing outside the region is read or written. The result is one fixed
 * point for any number of threads; NaNs are outside the contract. src and srcDst must not overlap.
 * Regions of at least 11 x 11 pixels are worked on by two threads if the library may use as many. The time is that of
 * two sweeps over the image and of the pixels that change after them.
 *
 * Example: the holes of an object image, dark regions that can't be reached from its border, are filled by erosion
 * above it from a marker that equals the image on its border and is the highest value inside.
 *
 * Returns, in order: orvStatusNullPtr (src, srcDst, buffer), orvStatusSize, orvStatusStep (src, srcDst),
 * orvStatusStepAlign (16u, 32f, 64f), orvStatusBadArg (norm). */
#ifndef ORVCV_RECONSTRUCT_H
#define ORVCV_RECONSTRUCT_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

OrvStatus orviMorphReconstructDilate_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructErode_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* srcDst, int32_t srcDstStep,
                                            OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructDilate_16u_C1IR(const uint16_t* src, int32_t srcStep, uint16_t* srcDst,
                                              int32_t srcDstStep, OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructErode_16u_C1IR(const uint16_t* src, int32_t srcStep, uint16_t* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructDilate_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                              OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructErode_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructDilate_64f_C1IR(const double* src, int32_t srcStep, double* srcDst, int32_t srcDstStep,
                                              OrvSize roiSize, uint8_t* buffer, int32_t norm);
OrvStatus orviMorphReconstructErode_64f_C1IR(const double* src, int32_t srcStep, double* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm);

/* Bytes of `buffer`, which may lie at any address; with w and h the sides of the region: 4 * w + h + 161 (8u),
 * 2 * (4 * w + h) + 322 (16u), 16 * w + h + 164 (32f), 32 * w + h + 168 (64f). The general form takes the element type
 * as an argument.
 * Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize; the general form then orvStatusDataType (a type
 * other than the four), orvStatusChannels (channels other than 1). */
OrvStatus orviMorphReconstructGetBufferSize_8u_C1(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviMorphReconstructGetBufferSize_16u_C1(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviMorphReconstructGetBufferSize_32f_C1(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviMorphReconstructGetBufferSize_64f_C1(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviMorphReconstructGetBufferSize(OrvSize roiSize, OrvDataType dataType, int32_t channels,
                                            int32_t* bufferSize);

#ifdef __cplusplus
}
#endif
#endif

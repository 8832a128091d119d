/* Canny edges (J. Canny, "A Computational Approach to Edge Detection", 1986).
 *
 * From gradients (dx, dy) to a byte image of edges, 255 on an edge and 0 elsewhere, in three steps:
 *
 * 1. Each pixel gets a magnitude M. It becomes 0 where it is not above lowThreshold.
 * 2. A pixel is kept if M is a maximum across the edge. The gradient's direction is told in sectors of 45 degrees,
 *    which chooses two opposite neighbours of the eight. M must be above the one that comes first (above, or left in
 *    its row); it must be above the other one too, but for a vertical or a horizontal gradient, where it may equal it.
 *    So one pixel of a plateau survives, and none of a diagonal plateau. Pixels beyond the image have M 0.
 * 3. A kept pixel with M above highThreshold is an edge; so is every kept pixel that touches an edge, also by a corner.
 *
 * The forms differ in step 1 and in the last digit of the sectors:
 *
 *   16s8u   M = |dx| + |dy|. Both thresholds are truncated to whole numbers first: with lowThreshold 10.9, 11 survives.
 *           M saturates at 65535 in the first width & ~7 columns. Sectors: down or up if |dy| > |dx| * 2.4142137f,
 *           along the row if |dy| < |dx| * 0.41421357f; in the last width % 4 columns the factors are
 *           2.414213562373095 and 0.41421356237309503, the products rounded to single precision
 *   32f8u   M = |dx| + |dy| in single precision, and M equal to lowThreshold survives too. Sectors as in 16s8u, in all
 *           columns alike; of the diagonals that one is taken which the sign bits of dx and dy tell, -0 being negative
 *   Border  M = |dx| + |dy| (orvNormL1) or the root of dx * dx + dy * dy (orvNormL2), in single precision. Sectors:
 *           |dy| > (|dx| + |dx|) + |dx| * 0.41421357f, |dy| < |dx| * 0.41421357f
 *
 * Scratch. `buffer` has the size that the size function reports for the same region (and mask), at any address. Sizes
 * are 32-bit numbers and wrap.
 *
 * Threads. The calling thread only; any number of threads may call at once, with one buffer each. Results do not depend
 * on the processor or the variant.
 */
#ifndef ORVCV_CANNY_H
#define ORVCV_CANNY_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Scratch of the forms with derivatives. With P = (width + 2) * (height + 2): 5 * P + 16 * width + 160, and from a side
 * of 65533 pixels on 9 * P + 16 * width + 160. Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize. */
OrvStatus orviCannyGetSize(OrvSize roiSize, int32_t* bufferSize);

/* Edges from derivatives. `dst` must not overlap them. Thresholds are 0 or more and may be equal.
 * Returns, in order: orvStatusNullPtr (srcDx, srcDy, dst, buffer), orvStatusSize, orvStatusStep (a step below a row),
 * orvStatusStepAlign (a source step that isn't a whole number of elements), orvStatusBadArg (lowThreshold below 0 or
 * above highThreshold). */
OrvStatus orviCanny_16s8u_C1R(const int16_t* srcDx, int32_t srcDxStep, const int16_t* srcDy, int32_t srcDyStep,
                              uint8_t* dst, int32_t dstStep, OrvSize roiSize, float lowThreshold, float highThreshold,
                              uint8_t* buffer);
OrvStatus orviCanny_32f8u_C1R(const float* srcDx, int32_t srcDxStep, const float* srcDy, int32_t srcDyStep,
                              uint8_t* dst, int32_t dstStep, OrvSize roiSize, float lowThreshold, float highThreshold,
                              uint8_t* buffer);

/* Scratch of orviCannyBorder_8u_C1R. With W and H the sides plus 2 (mask 33) or 4 (mask 55):
 * W * (H + 16) + 4 * W * H + 64. The arguments without a use are not looked at.
 * Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize, orvStatusMaskSize. */
OrvStatus orviCannyBorderGetSize(OrvSize roiSize, int32_t unusedA, OrvMaskSize maskSize, int32_t unusedB,
                                 int32_t* bufferSize);

/* Edges of an image. Derivatives: orvFilterKernelSobel with 3x3 or 5x5 pixels, orvFilterKernelScharr with 3x3; dx rises
 * with x, dy with y. Borders: orvBorderConst or orvBorderRepl with flags for the sides that are real memory;
 * orvBorderInMem counts as orvBorderConst here, so it needs its flags. src and dst may be the same image.
 * Returns, in order: orvStatusMaskSize (maskSize, and 55 with Scharr), orvStatusNullPtr (src, dst, buffer),
 * orvStatusSize, orvStatusBadArg (filterType, norm, lowThreshold below 0 or above highThreshold), orvStatusBorder.
 * Steps are not checked. */
OrvStatus orviCannyBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                 OrvFilterKernel filterType, OrvMaskSize maskSize, OrvBorderType borderType,
                                 uint8_t borderValue, float lowThreshold, float highThreshold, OrvNormType norm,
                                 uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

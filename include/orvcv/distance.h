/* Distance transforms: for each pixel of an 8-bit image the distance to the nearest pixel of value 0 (a seed).
 *
 * Chamfer transforms add up the weights of steps between neighbouring pixels (G. Borgefors, "Distance transformations
 * in digital images", 1986); the true transform is Euclidean and exact.
 */
#ifndef ORVCV_DISTANCE_H
#define ORVCV_DISTANCE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Standard weights of the chamfer transforms, by mask size and norm (0 infinity, 1 L1, 2 L2): two for size 3, three for
 * size 5 are written.
 *
 *               32s                                     32f
 *   norm        0         1         2                   0         1         2
 *   3x3         1, 1      1, 2      2, 3                1, 1      1, 2      0.955, 1.3693
 *   5x5         1, 1, 2   1, 2, 3   5, 7, 11            1, 1, 2   1, 2, 3   1, 1.4, 2.1969
 *
 * Returns, in order: orvStatusNullPtr, orvStatusSize (a size other than 3 and 5), orvStatusBadArg (any other norm). */
OrvStatus orviGetDistanceTransformMask_32f(int32_t kerSize, int32_t norm, float* metrics);
OrvStatus orviGetDistanceTransformMask_32s(int32_t kerSize, int32_t norm, int32_t* metrics);

/* The same for maskType = 10 * size + norm. Returns orvStatusBadArg if maskType % 10 is no norm, else what
 * orviGetDistanceTransformMask_32f returns. */
OrvStatus orviGetDistanceTransformMask(int32_t maskType, float* metrics);

/* Chamfer transforms, by a forward and a backward pass with a mask of 3x3 or 5x5 pixels.
 *
 * Weights. metrics holds a, the cost of a step aside or up and down, b, of a diagonal step, and for 5x5 c, of a
 * knight's step (2,1). Any order is allowed. 3x3  A pixel takes the least of its neighbours plus their weights. If a >
 * b, the bottom row also takes two diagonal steps (2,0) at a cost of 2b. 5x5  With m = min(2a, b): c >= a + m gives the
 * 3x3 transform with a and b. Else the weights as they are if m > a, c > 2a and 2c > 3m; if not, steps aside cost A =
 * min(a, 3c), diagonal ones D = min(2c, m), knight's steps c, and steps of two columns or rows T = min(2A, 2D, 2c) and
 * of two diagonals min(c + A, 2D) join. Float weights are compared with a relative tolerance of 1e-7. Images with less
 * than four rows or columns are passed over until nothing changes.
 *
 * Results. 8u saturates at 255, 16u at 65535, floats at 3.4028235e38: what an image without a seed holds everywhere.
 * Float costs are added in single precision along the path, pixel by pixel.
 *
 * In place: the 8u forms, by the _C1IR functions or with equal images. Images must not overlap otherwise.
 *
 * Returns, in order: orvStatusNullPtr (an image, metrics), orvStatusSize, orvStatusStep (srcStep, dstStep below a row),
 * orvStatusStepAlign (dstStep no whole number of elements), orvStatusMetric (a weight below 1; float: not above 0).
 *
 * Threads: one; any number of calls at once. */
OrvStatus orviDistanceTransform_3x3_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const int32_t* metrics);
OrvStatus orviDistanceTransform_3x3_8u16u_C1R(const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, const int32_t* metrics);
OrvStatus orviDistanceTransform_3x3_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, const float* metrics);
OrvStatus orviDistanceTransform_3x3_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize,
                                            const int32_t* metrics);
OrvStatus orviDistanceTransform_5x5_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const int32_t* metrics);
OrvStatus orviDistanceTransform_5x5_8u16u_C1R(const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, const int32_t* metrics);
OrvStatus orviDistanceTransform_5x5_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, const float* metrics);
OrvStatus orviDistanceTransform_5x5_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize,
                                            const int32_t* metrics);

/* Exact Euclidean distances (P. Felzenszwalb and D. Huttenlocher, "Distance Transforms of Sampled Functions", 2004).
 *
 * dst = square root of the least squared distance to a zero pixel, in single precision; with no zero pixel in the
 * image, the root of 3.4028235e38 everywhere.
 *
 * buffer has the reported size, at any address: (24 * max(width, height), both rounded up to a multiple of 4, + 56)
 * times the thread count of the library at the moment of the query, which must not change until the buffer is used.
 *
 * The transform returns, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize, orvStatusStep (srcStep, dstStep
 * below a row), orvStatusStepAlign (dstStep no multiple of 4). The size function: orvStatusNullPtr, orvStatusSize.
 *
 * Threads: rows are worked on by a team; any number of calls at once. Results don't depend on it. */
OrvStatus orviTrueDistanceTransformGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviTrueDistanceTransform_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

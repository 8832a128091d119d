/* Corners by the structure tensor: smaller eigenvalue, eigenvalues with eigenvectors, Harris response.
 *
 * The tensor of a pixel is made of means of products of derivatives over a window around it:
 *
 *   | A C |    A = mean of dx * dx, B = mean of dy * dy, C = mean of dx * dy
 *   | C B |
 *
 * All arithmetic is in single precision (the derivatives of bytes are exact). A mean is the sum of the products, each
 * row of the window from the left, then its rows from the top, times 1.0f / (number of pixels). Roots and divisions are
 * correctly rounded. `buffer` has the size that the size function reports for the same arguments, at any address; for
 * eigenvalues the size depends on the thread count of the library, which must not change until the buffer is used. The
 * images must not overlap. All functions may be called from any number of threads at once, with one buffer each.
 */
#ifndef ORVCV_CORNERS_H
#define ORVCV_CORNERS_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Eigenvalues.
 *
 * kernelType and apertureSize (3 or 5, Scharr 3) choose the derivatives, those of orvcv/filter_fixed.h: SobelVert and
 * SobelHoriz, or ScharrVert and ScharrHoriz. avgWindow (3 or 5) is the window. Pixels beyond the region are replicated,
 * for the products as well as for the source. Results are scaled by
 *
 *   s = 1.0f / (255 << (2 * apertureSize - 2)), times 0.6125f for Scharr
 *
 * which suits bytes, and is the same for float sources. Regions of at least 256 x 256 pixels (and five rows a thread)
 * are worked on by a team; results don't depend on it.
 *
 * Return, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize (region), orvStatusStep (srcStep, dstStep below
 * a row; orviEigenValsVecs_32f_C1R measures dstStep against four bytes a pixel although it writes 24),
 * orvStatusStepAlign (steps of float images), orvStatusBadArg (kernelType), orvStatusSize (apertureSize), orvStatusSize
 * (avgWindow). */
enum { orvKernelSobel = 0, orvKernelScharr = 1 };

/* dst = (A + B - sqrt((A - B)^2 + 4 * C^2)) * (s * 0.5f), the smaller eigenvalue (J. Shi, C. Tomasi, "Good features to
 * track", 1994). In this order: the products first, C * C * 4 from the left. */
OrvStatus orviMinEigenVal_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                    int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer);
OrvStatus orviMinEigenVal_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                  int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer);

/* Six floats a pixel: l1, l2, x1, y1, x2, y2, the larger eigenvalue l1 with its vector (x1, y1), the smaller l2 with
 * (x2, y2). With a = A * s, b = B * s, c = C * s, t = 0.01f * max(a, b):
 *
 *   r = sqrt(4 * c * c + (a - b)^2), l1 = (a + b + r) * 0.5f, l2 = (a + b - r) * 0.5f
 *   t > min(a, b) or t > a * b - c * c   all six are 0: an edge, or nothing
 *   else t > |c|                         vectors (1, 0) and (0, 1)
 *   else                                 vectors (q, l1 - a) and (q, l2 - a), each divided by its length, where q is c
 *                                        for Scharr and -c for Sobel, whose derivative along x falls with x
 *
 * A length below 1.1920929e-7f counts as that; division is multiplication by the reciprocal. */
OrvStatus orviEigenValsVecs_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer);
OrvStatus orviEigenValsVecs_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                    int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer);

/* Scratch sizes. Return, in order: orvStatusNullPtr (bufferSize), orvStatusSize (region, apertureSize, avgWindow). */
OrvStatus orviMinEigenValGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                                 int32_t* bufferSize);
OrvStatus orviMinEigenValGetBufferSize_32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                               int32_t* bufferSize);
OrvStatus orviEigenValsVecsGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                                   int32_t* bufferSize);
OrvStatus orviEigenValsVecsGetBufferSize_32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                                 int32_t* bufferSize);

/* Harris response (C. Harris, M. Stephens, "A combined corner and edge detector", 1988):
 *
 *   dst = (A * B - C * C - (A + B) * (k * (A + B))) * F, F = (float)((double)(n^4) * scale), n^4 modulo 2^32
 *
 * The first width & ~3 columns subtract C * C first, the others the term with k; the difference in the last bit is
 * meant. n = avgWindow is at least 1, 1 is no window; the window covers (n - 1) / 2 pixels before the pixel and n / 2
 * behind it, so an even one lies to the lower right.
 *
 * filterType and maskSize (55 with Sobel only) choose the derivatives:
 *   orvFilterKernelSobel, orvFilterKernelScharr  taps of the Sobel and Scharr filters, columns folded before rows
 *   orvFilterKernelCentralDiff                   right minus left, and above minus below
 *
 * borderType: kind orvBorderConst, orvBorderRepl (low three bits) with any side flags, or orvBorderInMem for four
 * sides. Sides in memory are read avgWindow / 2 + (1 or 2, by the mask) pixels deep, and the products there are
 * computed as everywhere. Beyond other sides the source is borderValue or replicated; products beyond them are 0, or
 * replicated, also at the corners with a side in memory.
 *
 * Calling thread only. Return, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize (region),
 * orvStatusStepAlign (steps of float images), orvStatusFilterType, orvStatusMaskSize, orvStatusBorder, orvStatusSize
 * (avgWindow), orvStatusStep (negative), orvStatusInPlace (32f: src is dst). Steps are not measured. */
enum { orvFilterKernelSobel = 2, orvFilterKernelScharr = 5, orvFilterKernelCentralDiff = 8 };

OrvStatus orviHarrisCorner_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     int32_t filterType, OrvMaskSize maskSize, int32_t avgWindow,
                                     OrvBorderType borderType, uint8_t borderValue, uint8_t* buffer, float k,
                                     float scale);
OrvStatus orviHarrisCorner_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   int32_t filterType, OrvMaskSize maskSize, int32_t avgWindow,
                                   OrvBorderType borderType, uint8_t* buffer, float k, float scale, float borderValue);

/* Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize (region), orvStatusMaskSize, orvStatusDataType
 * (dataType neither orvData8u nor orvData32f), orvStatusChannels (numChannels isn't 1), orvStatusSize (avgWindow 0). */
OrvStatus orviHarrisCornerGetBufferSize(OrvSize roiSize, OrvMaskSize maskSize, int32_t avgWindow, OrvDataType dataType,
                                        int32_t numChannels, int32_t* bufferSize);

#ifdef __cplusplus
}
#endif
#endif

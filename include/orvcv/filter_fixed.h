/* Filters with a fixed mask: Sobel, Scharr, Laplacian and lowpass.
 *
 * All are correlations with a mask of 3x3 or 5x5 pixels that is the product of taps along the row and taps down the
 * column (the Laplacian is a sum of two such products); tap 0 lies on the leftmost or topmost pixel. maskSize is
 * orvMaskSize3x3 or orvMaskSize5x5, Scharr filters are 3x3 and have no such argument.
 *
 *   8u16s  the exact sum
 *   8u8s   the sum divided by `divisor` (not 0; a negative one turns the sign), saturated to -128..127. The first
 *          width & ~15 pixels of a row are rounded to nearest, ties to even, the others truncated. First pixels: the
 *          filtered rows times (column tap * (1.0f / divisor)), added in floats from the top; others, and the 5x5
 *          Laplacian: whole-number sum * (1.0f / divisor)
 *   32f    in single precision: sums along the row from the left, then down the column from the top, taps of 0 left out
 *
 * Borders. Any kind, each with flags for sides that are real memory; orvBorderInMem means all four sides whatever flags
 * stand beside it. Rows are chosen first, then columns inside the row: a row beyond a side of kind orvBorderConst is
 * constant over its whole width. borderValue is read for that kind only. Sides in memory are read one or two pixels
 * deep, by the mask.
 *
 * Scratch. `buffer` has the size that the GetBufferSize function of the same name reports for the same region and mask,
 * at any address. The size depends on the thread count of the library at the moment of the query, which must not change
 * until the buffer is used. src and dst must not overlap.
 *
 * Threads. Regions of at least 256 x 256 pixels (and five rows a thread) are worked on by a team. All functions may be
 * called from any number of threads at once, with one buffer each. Results do not depend on the processor, the variant
 * or the number of threads.
 *
 * Filters return, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize, orvStatusStep (srcStep, then dstStep
 * below a row), orvStatusStepAlign (16-bit dst: odd dstStep; 32f: either), orvStatusBadArg (a kind other than 0 to 4
 * and 6, or one of the bits 4 to 15 set but none of the side flags), orvStatusBadArg (divisor 0), orvStatusMaskSize.
 *
 * Size functions return, in order: orvStatusNullPtr (bufferSize), orvStatusSize, orvStatusMaskSize.
 */
#ifndef ORVCV_FILTER_FIXED_H
#define ORVCV_FILTER_FIXED_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Sobel derivatives (after I. Sobel; R. O. Duda and P. E. Hart, "Pattern Classification and Scene Analysis", 1973).
 *
 *                row taps 3x3, 5x5                column taps 3x3, 5x5
 *   Vert         1 0 -1        1 2 0 -2 -1        1 2 1         1 4 6 4 1          falls with x
 *   NegVert      1 0 -1        1 2 0 -2 -1        -1 -2 -1      -1 -4 -6 -4 -1     rises with x
 *   Horiz        1 2 1         1 4 6 4 1          -1 0 1        -1 -2 0 2 1        rises with y
 *   Cross        1 0 -1        1 2 0 -2 -1        -1 0 1        -1 -2 0 2 1        mixed second derivative, negated
 *   HorizSecond  1 2 1         1 4 6 4 1          1 -2 1        1 0 -2 0 1         second derivative along y
 *   VertSecond   1 -2 1        1 0 -2 0 1         1 2 1         1 4 6 4 1          second derivative along x
 *
 * Vert filters respond to vertical edges: it is the one with Neg in its name whose result rises with x. */
OrvStatus orviFilterSobelVertBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterSobelNegVertBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                 OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                 uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelNegVertBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                                OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterSobelNegVertBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                               float borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelHorizBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterSobelCrossBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                               uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelCrossBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterSobelCrossBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             float borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelHorizSecondBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                     OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                     uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelHorizSecondBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                                    OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                    uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterSobelHorizSecondBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                                   OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                   float borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelVertSecondBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                    OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                    uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelVertSecondBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                                   OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                   uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterSobelVertSecondBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                                  OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                                  float borderValue, uint8_t* buffer);
OrvStatus orviFilterSobelVertGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelNegVertGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelNegVertGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelNegVertGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelHorizGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelCrossGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelCrossGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelCrossGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelHorizSecondGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelHorizSecondGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelHorizSecondGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelVertSecondGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelVertSecondGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterSobelVertSecondGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);

/* Scharr derivatives (H. Scharr, "Optimal Operators in Digital Image Processing", 2000): row taps 3 10 3 and column
 * taps -1 0 1 (Horiz, rises with y), row taps -1 0 1 and column taps 3 10 3 (Vert, rises with x). */
OrvStatus orviFilterScharrHorizBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                                OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                                uint8_t* buffer);
OrvStatus orviFilterScharrHorizBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                               int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterScharrHorizBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                              uint8_t* buffer);
OrvStatus orviFilterScharrVertBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                               OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                               uint8_t* buffer);
OrvStatus orviFilterScharrVertBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                              int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterScharrVertBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                             uint8_t* buffer);
OrvStatus orviFilterScharrHorizGetBufferSize_8u16s_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFilterScharrHorizGetBufferSize_8u8s_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFilterScharrHorizGetBufferSize_32f_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFilterScharrVertGetBufferSize_8u16s_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFilterScharrVertGetBufferSize_8u8s_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFilterScharrVertGetBufferSize_32f_C1R(OrvSize roiSize, int32_t* bufferSize);

/* Laplacian. Mask 3x3: 2 0 2 / 0 -8 0 / 2 0 2, as 2 * (A(y - 1) + A(y + 1)) - B(y) of rows A = s[x - 1] + s[x + 1] and
 * B = 8 * s[x] (8u8s: A(y - 1), B(y), A(y + 1) times 2, -1, 2, scaled and added from the top). Mask 5x5: rows 1 4 6 4 1
 * by columns 1 0 -2 0 1, plus rows 1 0 -2 0 1 by columns 1 4 6 4 1; in 32f the second product is taken as
 * ((r1 + r3) * 4 + r2 * 6) + (r0 + r4) of its rows. */
OrvStatus orviFilterLaplacianBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterLaplacianBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             uint8_t borderValue, int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterLaplacianBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                            float borderValue, uint8_t* buffer);
OrvStatus orviFilterLaplacianGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterLaplacianGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterLaplacianGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);

/* Mean of the mask. 8u, with S the sum of its pixels: 3x3 ((S + 5) * 7280) >> 16, 5x5 (S * 2621) >> 16; a flat image of
 * 255 stays 255 under 3x3 and becomes 254 under 5x5. 32f: the sum times 0.11111111f or 0.04f. */
OrvStatus orviFilterLowpassBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                         uint8_t borderValue, uint8_t* buffer);
OrvStatus orviFilterLowpassBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                          float borderValue, uint8_t* buffer);
OrvStatus orviFilterLowpassGetBufferSize_8u_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);
OrvStatus orviFilterLowpassGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize);

/* Taps of a Sobel kernel of any odd size K = kernelSize and order dx, 0 <= dx < K: the coefficients of
 * (1 + z)^(K - 1 - dx) * (z - 1)^dx, lowest power first, negated if sign < 0. K 3 gives 1 2 1, -1 0 1 and 1 -2 1 for dx
 * 0, 1 and 2. Taps are made by additions in the type of the table: 16-bit ones wrap, floats round. `kernel` may lie at
 * any address.
 * Returns, in order: orvStatusNullPtr (kernel), orvStatusBadArg (kernelSize below 1 or even, dx outside 0..K - 1). */
OrvStatus orviGenSobelKernel_32f(float* kernel, int32_t kernelSize, int32_t dx, int32_t sign);
OrvStatus orviGenSobelKernel_16s(int16_t* kernel, int32_t kernelSize, int32_t dx, int32_t sign);

#ifdef __cplusplus
}
#endif
#endif

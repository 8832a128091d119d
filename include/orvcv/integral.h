/* Integral images, upright and tilted, and the deviation of the pixels in a sliding rectangle, which they give at the
 * cost of a few additions a pixel whatever the rectangle's size (F. C. Crow, "Summed-area tables for texture mapping",
 * 1984; the tilted table: R. Lienhart and J. Maydt, "An extended set of Haar-like features for rapid object detection",
 * 2002).
 *
 * Types in names: source, table of sums, table of squares (two types: sums and squares are both of the second). Tables
 * of int32 wrap. Steps are in bytes, each at least as large as a row of its image or table. Images and tables must not
 * overlap. All functions may be called from any number of threads at once on disjoint outputs. Results do not depend on
 * the processor, the variant or the number of threads.
 */
#ifndef ORVCV_INTEGRAL_H
#define ORVCV_INTEGRAL_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Upright tables. dst and sqr have (width + 1) x (height + 1) entries:
 *
 *   S(y, x) = value + the sum of the pixels above row y and left of column x;  sqr the same of squared pixels
 *
 * so that row 0 and column 0 hold the start value, and the sum over a rectangle of pixels is the difference of four
 * entries. Entry by entry, S(r + 1, c + 1) = S(r, c + 1) + the sum of row r up to column c. The sum of a row of bytes
 * is exact (in 32 bits, where it wraps, for int32 and float tables) and converted to the table's type just before it is
 * added, which rounds once in float and double tables; _32f sums the row in floats from the left, and starts with 0.
 * Calling thread only.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, sqr), orvStatusSize, orvStatusStep (a step below its row),
 * orvStatusStepAlign (a step that is no multiple of its element). */
OrvStatus orviIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, OrvSize roiSize,
                                 int32_t value);
OrvStatus orviIntegral_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                 float value);
OrvStatus orviIntegral_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviSqrIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, int32_t* sqr,
                                    int32_t sqrStep, OrvSize roiSize, int32_t value, int32_t valueSqr);
OrvStatus orviSqrIntegral_8u32s64f_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, double* sqr,
                                       int32_t sqrStep, OrvSize roiSize, int32_t value, double valueSqr);
OrvStatus orviSqrIntegral_8u32f64f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, double* sqr,
                                       int32_t sqrStep, OrvSize roiSize, float value, double valueSqr);

/* Tilted tables. dst and sqr have (width + 2) x (height + 2) entries. Rows 0 and 1 hold the start value; for a source
 * row r, with P(x) = T(r + 1, x), O(x) = T(r, x) and the pixels p of row r,
 *
 *   T(r + 2, 0)         = P(1)
 *   T(r + 2, x)         = p(x - 1) + p(x) + P(x - 1) + P(x + 1) - O(x)     for x from 1 to width - 1
 *   T(r + 2, width)     = p(width - 1) + P(width - 1) + P(width + 1) - O(width)
 *   T(r + 2, width + 1) = P(width)
 *
 * Away from the sides T is the sum over the quadrant that opens upwards from its tip, between pixels x - 1 and x of
 * row r. Sums are taken from left to right in the table's type. The functions with squares use the second line for
 * x = width too, in both tables: THEY READ ONE PIXEL BEHIND EACH ROW of the source, the last one included, and the
 * caller's memory must hold it. Calling thread only.
 *
 * Status as for upright tables. */
OrvStatus orviTiltedIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                       OrvSize roiSize, int32_t value);
OrvStatus orviTiltedIntegral_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                       OrvSize roiSize, float value);
OrvStatus orviTiltedSqrIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                          int32_t* sqr, int32_t sqrStep, OrvSize roiSize, int32_t value,
                                          int32_t valueSqr);
OrvStatus orviTiltedSqrIntegral_8u32s64f_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                             double* sqr, int32_t sqrStep, OrvSize roiSize, int32_t value,
                                             double valueSqr);
OrvStatus orviTiltedSqrIntegral_8u32f64f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             double* sqr, int32_t sqrStep, OrvSize roiSize, float value,
                                             double valueSqr);

/* Deviation. dst(r, c) is the standard deviation of the pixels in `rect`, which slides with the pixel: its place is
 * relative to (r, c), in entries of the tables src (sums) and sqr (sums of squares). roiSize is the size of dst. With
 * x = rect.x + c, y = rect.y + r, w = rect.width, h = rect.height:
 *
 *   upright   sum = S(y + h, x + w) - S(y, x + w) + S(y, x) - S(y + h, x)              n = w * h
 *   tilted    sum = T(+ w + h, + w - h) - T(+ h, - h) - T(+ w, + w) + T(0, 0)          n = 2 * w * h
 *             each entry relative to row rect.x + rect.y + r, column rect.x - rect.y + c
 *
 *   _32s_C1RSfs  mean = (float)sum / (float)n; variance = (float)squares / (float)n - mean * mean in floats, from sums
 *                that wrap in 32 bits; dst = (sqrt(variance) * 2^-scaleFactor + 0.5) in doubles, truncated. Shift
 * counts are taken modulo 32 (2^31 is negative, as an int32); what doesn't fit gives -2^31 _32s32f_C1R  the same mean;
 * variance = squares / n - (double)(mean * mean) in doubles, rounded to float _32f_C1R     sum in floats; mean = sum *
 * (1.0 / n); variance = squares * (1.0 / n) - mean * mean in doubles (tilted: squares / n), rounded to float. Upright:
 * on a team from 2048 pixels on
 *
 * A variance below 0 counts as 0; float results are its square root. Entries are read in the rows and columns that the
 * formulas name, so the tables must reach that far: their height is not known here, and neither are columns left of a
 * tilted table's pointer, which belong to rect.x < rect.y + rect.height.
 *
 * Returns, in order: orvStatusNullPtr (src, sqr, dst), orvStatusSize, orvStatusStep (the step of dst below its row; of
 * src or sqr below rect.x + w + width entries, tilted rect.x + rect.y + w + h + width - 1), orvStatusStepAlign (a step
 * that is no multiple of its element), orvStatusSize (rect.x or rect.y below 0, w or h below 1). */
OrvStatus orviRectStdDev_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* sqr, int32_t sqrStep,
                                    int32_t* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect, int32_t scaleFactor);
OrvStatus orviRectStdDev_32s32f_C1R(const int32_t* src, int32_t srcStep, const double* sqr, int32_t sqrStep, float* dst,
                                    int32_t dstStep, OrvSize roiSize, OrvRect rect);
OrvStatus orviRectStdDev_32f_C1R(const float* src, int32_t srcStep, const double* sqr, int32_t sqrStep, float* dst,
                                 int32_t dstStep, OrvSize roiSize, OrvRect rect);
OrvStatus orviTiltedRectStdDev_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* sqr, int32_t sqrStep,
                                          int32_t* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect,
                                          int32_t scaleFactor);
OrvStatus orviTiltedRectStdDev_32s32f_C1R(const int32_t* src, int32_t srcStep, const double* sqr, int32_t sqrStep,
                                          float* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect);
OrvStatus orviTiltedRectStdDev_32f_C1R(const float* src, int32_t srcStep, const double* sqr, int32_t sqrStep,
                                       float* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect);

#ifdef __cplusplus
}
#endif
#endif

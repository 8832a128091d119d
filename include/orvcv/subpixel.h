/* Sampling between pixels and along lines.
 *
 * All functions run on the calling thread and may be called from any number of threads at once. Images lie at any
 * address; sources and destinations must not overlap. The interpolation is bilinear, the line is J. E. Bresenham's
 * ("Algorithm for computer control of a digital plotter", 1965).
 */
#ifndef ORVCV_SUBPIXEL_H
#define ORVCV_SUBPIXEL_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* A window at a fractional offset: dst(r, c) is the source at row r + fy, column c + fx, where fx and fy are the
 * fractions of dx and dy, counted upwards: dx - trunc(dx), plus 1 if that is below 0. The whole part of an offset is
 * dropped: -0.25 reads at +0.75. Infinite offsets and NaN count as 0.
 *
 * The source is read over width + 1 columns and height + 1 rows, whatever the fractions.
 *
 * With p00, p10, p01 and p11 the pixel, its right, its lower and its diagonal neighbour:
 *
 *   8u        (w00 * p00 + w10 * p10 + w01 * p01 + w11 * p11 + 8192) >> 14 with whole-number weights: wx and wy are fx
 *             and fy in 1/16384, rounded, ix = 16384 - wx, iy = 16384 - wy, w00 = (ix * iy + 16384) >> 14, likewise
 *             w10, w01 and w11 from iy * wx, ix * wy and wy * wx; what their sum exceeds 16384 by is taken from the
 *             largest of them, the first of w00, w01, w10, w11 if several are
 *   8u16u     the same sum, times 2 to the power of -scaleFactor: (sum + (1 << (scaleFactor + 13))) >> (scaleFactor +
 *             14), saturated to 0..65535; the exact value for factors of -14 and below
 *   others    ((w00 * p00 + w10 * p10) + w01 * p01) + w11 * p11 in single precision, with w00 = (1 - fx) * (1 - fy),
 *             w10 = (1 - fy) * fx, w01 = (1 - fx) * fy, w11 = fx * fy. Small fractions are raised: to 1e-6 both in 32f,
 *             fx to 1e-6 and fy to 1e-9 in 8u32f and 16u32f. 16u has no such floor; 0.5 is added, the rest cut off
 *
 * Returns, in order: orvStatusNullPtr (src, dst), orvStatusSize, orvStatusStep (srcStep or dstStep below `width`
 * elements; that the source has one column more is the caller's care), orvStatusStepAlign. */
OrvStatus orviCopySubpix_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                float dx, float dy);
OrvStatus orviCopySubpix_8u16u_C1R_Sfs(const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                       OrvSize roiSize, int32_t scaleFactor, float dx, float dy);
OrvStatus orviCopySubpix_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   float dx, float dy);
OrvStatus orviCopySubpix_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize,
                                 float dx, float dy);
OrvStatus orviCopySubpix_16u32f_C1R(const uint16_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                    float dx, float dy);
OrvStatus orviCopySubpix_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                 float dx, float dy);

/* A window of dstRoiSize whose middle lies at `point` in the source, which need not be a pixel, and may be anywhere:
 * the left column of dst is at point.x - (width - 1) / 2 of the source. Pixels beyond a side are those nearest to it.
 *
 * *min and *max receive the first and last column and row of dst that have four neighbours in the source; they are
 * made as by orviCopySubpix_* of the same types. Outside, two neighbours are left, or one:
 *   rows above and below     (1 - fx) * p + fx * q along the first or last source row, in Q14 (8u, 8u16u) or floats
 *   columns left and right   the same down the first or last source column, with fy
 *   corners                  the corner pixel
 * A window wholly outside gives an empty range: max is -1 if it lies to the right or below, min is the size if it lies
 * to the left or above.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, min, max), orvStatusSize (srcRoiSize, dstRoiSize), orvStatusStep (each
 * step against its own width), orvStatusStepAlign. min and max are filled whenever orvStatusOk is returned. */
OrvStatus orviCopySubpixIntersect_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, uint8_t* dst,
                                         int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                         OrvPoint* max);
OrvStatus orviCopySubpixIntersect_8u16u_C1R_Sfs(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, uint16_t* dst,
                                                int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                                OrvPoint* max, int32_t scaleFactor);
OrvStatus orviCopySubpixIntersect_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                            int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                            OrvPoint* max);
OrvStatus orviCopySubpixIntersect_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoiSize, uint16_t* dst,
                                          int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                          OrvPoint* max);
OrvStatus orviCopySubpixIntersect_16u32f_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                             int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                             OrvPoint* max);
OrvStatus orviCopySubpixIntersect_32f_C1R(const float* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                          int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                          OrvPoint* max);

/* The pixels from pt1 to pt2, both included, one after the other: max(|dx|, |dy|) + 1 pixels of dst. A line that is as
 * wide as high steps along the rows; of two equally near pixels the one further along the minor axis is taken last.
 * Returns, in order: orvStatusNullPtr (src, dst), orvStatusSize, orvStatusStep (below a row), orvStatusStepAlign,
 * orvStatusOutOfRange (pt1 or pt2 outside the region). */
OrvStatus orviSampleLine_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, uint8_t* dst, OrvPoint pt1,
                                OrvPoint pt2);
OrvStatus orviSampleLine_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, uint8_t* dst, OrvPoint pt1,
                                OrvPoint pt2);
OrvStatus orviSampleLine_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize roiSize, uint16_t* dst, OrvPoint pt1,
                                 OrvPoint pt2);
OrvStatus orviSampleLine_16u_C3R(const uint16_t* src, int32_t srcStep, OrvSize roiSize, uint16_t* dst, OrvPoint pt1,
                                 OrvPoint pt2);
OrvStatus orviSampleLine_32f_C1R(const float* src, int32_t srcStep, OrvSize roiSize, float* dst, OrvPoint pt1,
                                 OrvPoint pt2);
OrvStatus orviSampleLine_32f_C3R(const float* src, int32_t srcStep, OrvSize roiSize, float* dst, OrvPoint pt1,
                                 OrvPoint pt2);

#ifdef __cplusplus
}
#endif
#endif

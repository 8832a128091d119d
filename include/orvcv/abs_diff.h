/* Absolute differences of two images, or of an image and a constant. */
#ifndef ORVCV_ABS_DIFF_H
#define ORVCV_ABS_DIFF_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* What all functions of this header have in common
 * Images: sources and dst have one element type, 8-bit unsigned (8u), 16-bit unsigned (16u) or float (32f), and the
 *   same size, in pixels, in roiSize. C1 has one channel, C3 three interleaved ones. Steps are in bytes.
 * Arithmetic: exact for integers. For floats the difference is rounded once to single precision and its sign bit is
 *   cleared, also that of a NaN.
 * In place: dst may be a source, sources may be the same image; images must not overlap otherwise.
 * Status, the first that applies:
 *   orvStatusNullPtr    a pointer is null
 *   orvStatusSize       width or height below 1
 *   orvStatusStep       a step, in argument order, is below width * channels * the bytes of an element
 *   orvStatusStepAlign  16u, 32f: a step isn't a multiple of the bytes of an element
 *   orvStatusOk         done
 * Threads: a team works on regions of 262144 elements and more.
 */

/* dst = |src1 - src2|, element by element. */
OrvStatus orviAbsDiff_8u_C1R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize);
OrvStatus orviAbsDiff_8u_C3R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize);
OrvStatus orviAbsDiff_16u_C1R(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                              uint16_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviAbsDiff_32f_C1R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                              int32_t dstStep, OrvSize roiSize);

/* dst = |src - value|. For integer images, a value that a pixel can't hold works as the nearest one that it can: -5 as
 * 0, and 300 as 255 in 8u. */
OrvStatus orviAbsDiffC_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                              int32_t value);
OrvStatus orviAbsDiffC_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize,
                               int32_t value);
OrvStatus orviAbsDiffC_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                               float value);

#ifdef __cplusplus
}
#endif
#endif

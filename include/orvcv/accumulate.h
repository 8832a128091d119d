/* Accumulation of images into a float image, over time: sums, squares, products and running averages. */
#ifndef ORVCV_ACCUMULATE_H
#define ORVCV_ACCUMULATE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* What all functions of this header have in common
 * Images: srcDst is an accumulator of 32-bit floats, read and written in place; the sources are 8-bit unsigned (8u),
 *   8-bit signed (8s), 16-bit unsigned (16u) or float (32f) images of one channel and of the same size, in pixels, in
 *   roiSize. Steps are in bytes. Source values are taken as they are (0..255, -128..127, 0..65535), without scaling.
 * Masked forms (C1IMR): mask has one byte a pixel; a pixel takes part where it isn't 0, whatever its value. To other
 *   pixels zero is added, so they keep their value, but a stored minus zero becomes plus zero. What a source holds
 *   there has no effect (in products: what src1 holds).
 * Arithmetic: single precision, rounded to nearest after each operation of the formula; sources convert exactly.
 *   Nothing saturates. Infinities and NaNs follow IEEE 754; which NaN comes of two is left open.
 * In place: a source may be the accumulator itself (32f); images must not overlap otherwise.
 * Status, the first that applies:
 *   orvStatusNullPtr    a pointer is null
 *   orvStatusSize       width or height below 1
 *   orvStatusStep       the step of a source is below width * the bytes of its element
 *   orvStatusStepAlign  16u: the step of a source is odd
 *   orvStatusStep       maskStep below width, then srcDstStep below width * 4
 *   orvStatusStepAlign  srcDstStep, or in 32f forms the step of any float image, isn't a multiple of 4
 *   orvStatusOk         done
 * Threads: a team works on regions of 262144 pixels and more.
 */

/* srcDst += src. Sums of images, for means over time; whole numbers stay exact up to 2^24. */
OrvStatus orviAdd_8u32f_C1IR(const uint8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAdd_8u32f_C1IMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst,
                              int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAdd_8s32f_C1IR(const int8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAdd_8s32f_C1IMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst,
                              int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAdd_16u32f_C1IR(const uint16_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAdd_16u32f_C1IMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAdd_32f_C1IMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst,
                            int32_t srcDstStep, OrvSize roiSize);

/* srcDst += src * src. With the plain sum this gives the variance over time (E[x^2] - E[x]^2). The square is rounded
 * before it is added: 65535 adds 4294836224. */
OrvStatus orviAddSquare_8u32f_C1IR(const uint8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize);
OrvStatus orviAddSquare_8u32f_C1IMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddSquare_8s32f_C1IR(const int8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize);
OrvStatus orviAddSquare_8s32f_C1IMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddSquare_16u32f_C1IR(const uint16_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                    OrvSize roiSize);
OrvStatus orviAddSquare_16u32f_C1IMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                     float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddSquare_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddSquare_32f_C1IMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  float* srcDst, int32_t srcDstStep, OrvSize roiSize);

/* srcDst += src1 * src2. Correlation over time; -128 times -128 adds 16384. The product is rounded before it is added.
 * The mask clears src1 alone: an infinite or NaN src2 (32f) makes a masked-out pixel NaN. */
OrvStatus orviAddProduct_8u32f_C1IR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddProduct_8u32f_C1IMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                     const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize);
OrvStatus orviAddProduct_8s32f_C1IR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddProduct_8s32f_C1IMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                     const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize);
OrvStatus orviAddProduct_16u32f_C1IR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                     float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddProduct_16u32f_C1IMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                      const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                      OrvSize roiSize);
OrvStatus orviAddProduct_32f_C1IR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                  float* srcDst, int32_t srcDstStep, OrvSize roiSize);
OrvStatus orviAddProduct_32f_C1IMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize);

/* srcDst += (src - srcDst) * alpha, the exponentially weighted running average of background models. Difference,
 * product and sum are rounded in this order. alpha is the weight of the new image, usually in 0..1; any float is taken.
 * An alpha of 1 gives (src - srcDst) + srcDst, which isn't always src to the last bit. */
OrvStatus orviAddWeighted_8u32f_C1IR(const uint8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_8u32f_C1IMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                      float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_8s32f_C1IR(const int8_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                     OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_8s32f_C1IMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                      float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_16u32f_C1IR(const uint16_t* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                      OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_16u32f_C1IMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                       float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                   OrvSize roiSize, float alpha);
OrvStatus orviAddWeighted_32f_C1IMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    float* srcDst, int32_t srcDstStep, OrvSize roiSize, float alpha);

/* dst = src2 + (src1 - src2) * alpha: the same step, into a third image. dst may be a source. Status in order: null
 * pointer, size, src1Step, src2Step, dstStep below width * 4, any of them no multiple of 4. Runs on the calling thread
 * alone. */
OrvStatus orviAddWeighted_32f_C1R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                                  int32_t dstStep, OrvSize roiSize, float alpha);

#ifdef __cplusplus
}
#endif
#endif

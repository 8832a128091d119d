/* Norms of an image, of the difference of two images, and their ratio, under a mask.
 *
 * Element types: 8u, 8s, 16u, 32f. Forms: C1MR the pixels whose mask byte is not 0; C3CMR the same for one channel of
 * three-channel images, coi 1 to 3. The mask is a byte image, one byte a pixel. Steps are in bytes.
 *
 * With d over the pixels taken: Inf the largest |d|, L1 the sum of |d|, L2 the root of the sum of d * d. An empty mask
 * gives 0.0.
 *
 * Statuses, in this order: orvStatusNullPtr (an image, mask or value), orvStatusSize (width, then height, below 1),
 * orvStatusStep (an image's step below its row, then maskStep below the width), orvStatusStepAlign (16u, 32f: a step of
 * an image is no whole number of elements; in orviNorm_L2_32f_C1MR this comes before the test of maskStep),
 * orvStatusCoi (coi outside 1 to 3). After a failure nothing has been written. Any thread may call.
 *
 * Precision: integers are summed exactly whatever the size. 32f: L1 and L2 sum in single precision, column x of each
 * row in lane x mod 4, the lanes joined as (0 + 2) + (1 + 3), and a band of rows so summed is widened and added to the
 * bands before it in double precision; roots and quotients are taken in double precision. Regions large enough are
 * shared in bands by a team, so the last bits of 32f sums may depend on the number of threads, never on the processor.
 */
#ifndef ORVCV_NORM_H
#define ORVCV_NORM_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* d = src. */
OrvStatus orviNorm_Inf_8u_C1MR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, double* value);
OrvStatus orviNorm_Inf_8u_C3CMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_Inf_8s_C1MR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, double* value);
OrvStatus orviNorm_Inf_8s_C3CMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_Inf_16u_C1MR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, double* value);
OrvStatus orviNorm_Inf_16u_C3CMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                 OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_Inf_32f_C1MR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, double* value);
OrvStatus orviNorm_Inf_32f_C3CMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                 OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L1_8u_C1MR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                              OrvSize roiSize, double* value);
OrvStatus orviNorm_L1_8u_C3CMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L1_8s_C1MR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                              OrvSize roiSize, double* value);
OrvStatus orviNorm_L1_8s_C3CMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L1_16u_C1MR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, double* value);
OrvStatus orviNorm_L1_16u_C3CMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L1_32f_C1MR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, double* value);
OrvStatus orviNorm_L1_32f_C3CMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L2_8u_C1MR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                              OrvSize roiSize, double* value);
OrvStatus orviNorm_L2_8u_C3CMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L2_8s_C1MR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                              OrvSize roiSize, double* value);
OrvStatus orviNorm_L2_8s_C3CMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L2_16u_C1MR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, double* value);
OrvStatus orviNorm_L2_16u_C3CMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNorm_L2_32f_C1MR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                               OrvSize roiSize, double* value);
OrvStatus orviNorm_L2_32f_C3CMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                OrvSize roiSize, int32_t coi, double* value);

/* d = src1 - src2: of integers without wrap-around, of 32f in single precision. */
OrvStatus orviNormDiff_Inf_8u_C1MR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_Inf_8u_C3CMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_Inf_8s_C1MR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_Inf_8s_C3CMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_Inf_16u_C1MR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_Inf_16u_C3CMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                     const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi,
                                     double* value);
OrvStatus orviNormDiff_Inf_32f_C1MR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_Inf_32f_C3CMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                     const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi,
                                     double* value);
OrvStatus orviNormDiff_L1_8u_C1MR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L1_8u_C3CMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L1_8s_C1MR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L1_8s_C3CMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L1_16u_C1MR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L1_16u_C3CMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L1_32f_C1MR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L1_32f_C3CMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L2_8u_C1MR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L2_8u_C3CMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L2_8s_C1MR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L2_8s_C3CMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L2_16u_C1MR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L2_16u_C3CMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormDiff_L2_32f_C1MR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormDiff_L2_32f_C3CMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);

/* N / D with N the norm of src1 - src2 and D that of src2; L2: sqrt(N / D) of the sums of squares. If D is 0 the
 * status is orvStatusDivByZeroWarn and the value NaN (N is 0 too, as under an empty mask) or infinity. */
OrvStatus orviNormRel_Inf_8u_C1MR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_Inf_8u_C3CMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_Inf_8s_C1MR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_Inf_8s_C3CMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_Inf_16u_C1MR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_Inf_16u_C3CMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_Inf_32f_C1MR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_Inf_32f_C3CMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                    const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L1_8u_C1MR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                 const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L1_8u_C3CMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L1_8s_C1MR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                 const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L1_8s_C3CMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L1_16u_C1MR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L1_16u_C3CMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L1_32f_C1MR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L1_32f_C3CMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L2_8u_C1MR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                 const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L2_8u_C3CMR(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L2_8s_C1MR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                 const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L2_8s_C3CMR(const int8_t* src1, int32_t src1Step, const int8_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L2_16u_C1MR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L2_16u_C3CMR(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);
OrvStatus orviNormRel_L2_32f_C1MR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                  const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value);
OrvStatus orviNormRel_L2_32f_C3CMR(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step,
                                   const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, double* value);

#ifdef __cplusplus
}
#endif
#endif

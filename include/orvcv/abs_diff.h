/* Absolute differences of two images, or of an image and a constant. */
#ifndef ORVCV_ABS_DIFF_H
#define ORVCV_ABS_DIFF_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* dst = |src1 - src2|, element by element; exact for integers. */
OrvStatus orviAbsDiff_8u_C1R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize);
OrvStatus orviAbsDiff_8u_C3R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize);

#ifdef __cplusplus
}
#endif
#endif

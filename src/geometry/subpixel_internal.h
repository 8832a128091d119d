// Windows at sub-pixel places for optical flow: like orviCopySubpixIntersect_* of the same types, statuses included,
// but only the pixels from min to max are computed and written.
#pragma once
#include "core/variant.h"

extern "C" {
OrvStatus ownGetRectSubpix_8u16u_C1R_Sfs(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, uint16_t* dst,
                                         int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                         OrvPoint* max, int32_t scaleFactor);
OrvStatus ownGetRectSubpix_16u32f_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                      int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                      OrvPoint* max);
OrvStatus ownGetRectSubpix_32f_C1R(const float* src, int32_t srcStep, OrvSize srcRoiSize, float* dst, int32_t dstStep,
                                   OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min, OrvPoint* max);
}

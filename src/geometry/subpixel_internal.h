// Windows at sub-pixel places for optical flow: like orviCopySubpixIntersect_* of the same types, statuses included,
// but only the pixels from min to max are computed and written.
#pragma once
#include <stddef.h>
#include "geometry/names.h"
#include "core/image.h"

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

namespace ORV_VARIANT {

// Derivatives at sub-pixel places, in the scale of the windows that they belong to: dst is the bilinear interpolation
// of (width + 1) x (height + 1) pixels at the fractions of dx and dy, times 4 and rounded to nearest even (derivatives
// of bytes, windows with 7 fractional bits), or divided by 32 with fractions of at least 1e-6 (floats).
void sampleDerivatives(Plane<const int16_t> src, Plane<int16_t> dst, ptrdiff_t width, ptrdiff_t height, float dx,
                       float dy);
void sampleDerivatives(Plane<const float> src, Plane<float> dst, ptrdiff_t width, ptrdiff_t height, float dx, float dy);

}  // namespace ORV_VARIANT

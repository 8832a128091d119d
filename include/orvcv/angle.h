/* Angles of vectors. */
#ifndef ORVCV_ANGLE_H
#define ORVCV_ANGLE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* dst[i] = angle of the vector (srcX[i], srcY[i]) in degrees, from the positive x axis towards the positive y axis, 0
 * to 360, by a quadratic that is within 0.3 of the true angle.
 *
 * In single precision, in this order, each operation rounded:
 *   m = max(|x|, |y|, 1e-8)
 *   t = min(|x|, |y|) * (1 / m)
 *   r = t * (-15.8131895 * t + 61.094196) - 0.14050041
 *   if |x| < |y|:  r = 90 - r
 *   if x < 0:      r = 180 - r
 *   if y < 0:      r = 360 - r
 *
 * Results are not clamped: the positive x axis gives -0.14050041, and just below it values up to 360.14 occur. A zero
 * of either sign is not negative. Vectors shorter than 1e-8 tend to the angle of the x axis as they vanish. A NaN, or
 * two infinities, gives NaN.
 *
 * srcY, srcX, dst: `length` elements, at any address; dst may be srcY or srcX itself. Calling thread only.
 * Status: orvStatusNullPtr (srcY, srcX or dst), orvStatusSize (length below 1), orvStatusOk.
 */
OrvStatus orvibFastArctan_32f(const float* srcY, const float* srcX, float* dst, int32_t length);

#ifdef __cplusplus
}
#endif
#endif

/* Fast marching: arrival times of a front that moves at unit speed (the eikonal equation |grad d| = 1; J. A. Sethian,
 * "A fast marching level set method for monotonically advancing fronts", 1996).
 */
#ifndef ORVCV_FAST_MARCHING_H
#define ORVCV_FAST_MARCHING_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* dst = distance from the zero pixels of the mask src, pixel by pixel.
 *
 * Times. Zero pixels have time 0. A pixel outside takes its time from the earlier of its vertical neighbours, u, and of
 * its horizontal ones, v, in single precision: min(u, v) + 1 if |u - v| >= 1, else (u + v + sqrt(2 - (u - v)^2)) / 2.
 * The result is the state in which no pixel can become earlier. Without a zero pixel, times start in row 0, at 999999 +
 * x.
 *
 * Band. With a radius above 0, zero pixels hold negative times: those beside a pixel outside -1e-10, those further
 * inside the negative distance to that layer by the same formula, down to -(radius + 1e-5); 0 beyond.
 *
 * buffer has the size that the size function reports, at any address.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize, orvStatusStep (srcStep, dstStep below a row),
 * orvStatusStepAlign (dstStep no multiple of 4), orvStatusBadArg (radius below 0). The size function: orvStatusNullPtr,
 * orvStatusSize.
 *
 * Threads: two where the library may use them; last bits may differ from those of one thread. Any number of calls at
 * once. */
OrvStatus orviFastMarchingGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFastMarching_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     float radius, uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

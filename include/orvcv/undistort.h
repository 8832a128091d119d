/* Lens undistortion (D. C. Brown, "Decentering Distortion of Lenses", 1966).
 *
 * The camera: focal lengths fx, fy in pixels (not 0, negative ones are fine), principal point cx, cy, radial
 * coefficients k1, k2, tangential coefficients p1, p2. With u = x - cx, v = y - cy, r2 = (u / fx)^2 + (v / fy)^2, the
 * pixel (x, y) of the undistorted image lies in the distorted one at
 *
 *   xs = x + u * (k1 * r2 + k2 * r2^2)  [+ fx * (2 * p1 * a * b + p2 * (r2 + 2 * a^2)),  a = u / fx, b = v / fy]
 *   ys = y + v * (k1 * r2 + k2 * r2^2)  [+ fy * (p1 * (r2 + 2 * b^2) + 2 * p2 * a * b)]
 *
 * In single precision, in this order:
 *   radial      X = (u * u) * (1 / (fx * fx)), Y = (v * v) * (1 / (fy * fy)),
 *               K = ((k2 * X + k1) * X + (k2 * Y + k1) * Y) + ((2 * k2) * X) * Y, xs = x + u * K, ys = y + v * K
 *   tangential  a = u * (1 / fx), b = v * (1 / fy), r2 = a * a + b * b,
 *               K = ((k2 * r2 + k1) * r2 + (2 * p2) * a) + (2 * p1) * b,
 *               xs = u * K + ((fx * p2) * r2 + x), ys = v * K + ((fy * p1) * r2 + y)
 *
 * `buffer` may be null; with one of the size that orviUndistortGetSize reports, at any address, what depends on columns
 * only is computed once a call. Results are the same. All functions run on the calling thread.
 */
#ifndef ORVCV_UNDISTORT_H
#define ORVCV_UNDISTORT_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of the optional buffer: 24 for each column, rounded up to a multiple of 4 columns, and 32.
 * Returns, in order: orvStatusNullPtr, orvStatusSize. */
OrvStatus orviUndistortGetSize(OrvSize roiSize, int32_t* bufferSize);

/* The undistorted image by bilinear interpolation, radial terms only. A pixel takes part if xs >= 0, ys >= 0,
 * xs < width - 1 and ys < height - 1; all others keep what dst held. With a and b the fractions of xs and ys and p00,
 * p10, p01, p11 the pixel, its right, its lower and its diagonal neighbour, in single precision:
 *   (p00 * ((1 - a) * (1 - b)) + p01 * ((1 - a) * b)) + (p10 * (a * (1 - b)) + p11 * (a * b))
 * 8u and 16u: plus 0.5, the rest cut off. src and dst must not overlap.
 * Returns, in order: orvStatusNullPtr (src, dst), orvStatusSize, orvStatusStep, orvStatusStepAlign, orvStatusBadArg (fx
 * or fy 0). */
OrvStatus orviUndistortRadial_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                     uint8_t* buffer);
OrvStatus orviUndistortRadial_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                     uint8_t* buffer);
OrvStatus orviUndistortRadial_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                      uint8_t* buffer);
OrvStatus orviUndistortRadial_16u_C3R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                      uint8_t* buffer);
OrvStatus orviUndistortRadial_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      float fx, float fy, float cx, float cy, float k1, float k2, uint8_t* buffer);
OrvStatus orviUndistortRadial_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      float fx, float fy, float cx, float cy, float k1, float k2, uint8_t* buffer);

/* The maps xMap(x, y) = xs, yMap(x, y) = ys of all pixels, for a remapping step. The radial formula if p1 and p2 are
 * both 0, else the tangential one.
 * Returns, in order: orvStatusNullPtr (xMap, yMap), orvStatusSize, orvStatusStep, orvStatusStepAlign, orvStatusBadArg
 * (fx or fy 0). */
OrvStatus orviCreateMapCameraUndistort_32f_C1R(float* xMap, int32_t xStep, float* yMap, int32_t yStep, OrvSize roiSize,
                                               float fx, float fy, float cx, float cy, float k1, float k2, float p1,
                                               float p2, uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

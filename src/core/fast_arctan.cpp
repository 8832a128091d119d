// Angles of vectors in degrees, by a quadratic.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/fast_arctan.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// The reciprocal is the correctly rounded quotient and not a refined hardware estimate: estimates differ between
// makers of processors, and the division hides behind the memory traffic. The order of the operations is contract.
HWY_INLINE float Degrees(float y, float x) {
  const float ax = __builtin_fabsf(x), ay = __builtin_fabsf(y);
  // Each choice takes its second operand if either is NaN, so a NaN of x or y reaches the result.
  const float larger = ax > ay ? ax : ay, smaller = ay < ax ? ay : ax;
  const float m = 1e-8f > larger ? 1e-8f : larger;
  const float c = 1.0f / m;
  const float t = smaller * c;
  float r = t * (-15.8131895f * t + 61.094196f) + -0.14050041f;
  r = ax < ay ? 90.0f - r : r;
  r = x < 0.0f ? 180.0f - r : r;
  return y < 0.0f ? 360.0f - r : r;
}

void FastArctan_32f(const float* srcY, const float* srcX, float* dst, int32_t length) {
  const auto *y = loose(srcY), *x = loose(srcX);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) { d[i] = Degrees(y[i], x[i]); });
}

KERNELS_END

#if HWY_ONCE

OrvStatus orvibFastArctan_32f(const float* srcY, const float* srcX, float* dst, int32_t length) {
  ORV_REQUIRE(allSet(srcY, srcX, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  WIDEST(FastArctan_32f)(srcY, srcX, dst, length);
  return orvStatusOk;
}

#endif

// Angles of vectors in radians.
//
// With n the smaller and m the larger of |x| and |y|, t = n / m lies in [0, 1], and
//
//   atan(t) ~ t + t * z * P(z),   z = t * t,
//
// with P the polynomial of degree 7 whose largest relative error is least (exchange algorithm, each coefficient rounded
// to float in turn with those after it solved anew): 1.7e-8. The octants follow by reflection about pi/4, pi/2 and 0.
// All operations are single precision: the largest relative error met is 1.7e-7 (rounding a float: 6e-8).
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/vector_atan2.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// The bits of a float: signs are moved as bits, so that they also serve for zeros.
HWY_INLINE int32_t Bits(float value) {
  int32_t bits;
  __builtin_memcpy(&bits, &value, sizeof bits);
  return bits;
}
HWY_INLINE float FromBits(int32_t bits) {
  float value;
  __builtin_memcpy(&value, &bits, sizeof value);
  return value;
}

HWY_INLINE float ArcTangent(float t) {
  const float z = t * t;
  float p = 0.00292033004f;
  p = p * z - 0.0163664315f;
  p = p * z + 0.0432093292f;
  p = p * z - 0.0755198896f;
  p = p * z + 0.106658921f;
  p = p * z - 0.142110243f;
  p = p * z + 0.199937686f;
  p = p * z - 0.333331525f;
  return t + t * (z * p);
}

HWY_INLINE float Angle(float y, float x) {
  const float ax = __builtin_fabsf(x), ay = __builtin_fabsf(y);
  // Either choice passes on a NaN of one of its operands, and the quotient then has it.
  const float smaller = ay < ax ? ay : ax, larger = ax > ay ? ax : ay;
  // Equal sides have the quotient 1 also where they are infinite; two zeros have 0.
  const float m = ax == ay ? 1.0f : larger;
  const float n = ax == ay ? (ax > 0.0f ? 1.0f : 0.0f) : smaller;
  float r = ArcTangent(n / m);
  r = ay > ax ? 1.57079637f - r : r;
  r = Bits(x) < 0 ? 3.14159274f - r : r;
  return FromBits(Bits(r) | (Bits(y) & INT32_MIN));
}

void Atan2_32f(const float* srcY, const float* srcX, float* dst, int32_t length) {
  const auto *y = loose(srcY), *x = loose(srcX);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) { d[i] = Angle(y[i], x[i]); });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

OrvStatus orvsAtan2_32f_A21(const float* srcY, const float* srcX, float* dst, int32_t length) {
  ORV_REQUIRE(allSet(srcY, srcX, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  WIDEST(Atan2_32f)(srcY, srcX, dst, length);
  return orvStatusOk;
}

#endif

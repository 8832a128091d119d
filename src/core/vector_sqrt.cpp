// Square roots of a vector.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/vector_sqrt.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

void Sqrt_32f(const float* src, float* dst, int32_t length) {
  const auto* s = loose(src);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) { d[i] = __builtin_sqrtf(s[i]); });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

OrvStatus orvsSqrt_32f(const float* src, float* dst, int32_t length) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  const auto kernel = WIDEST(Sqrt_32f);
  runBands(length >= 4096, length, [&](int32_t first, int32_t count) { kernel(src + first, dst + first, count); });
  return orvStatusOk;
}

#endif

// Lengths of vectors (re, im).
//
// The integer form rounds the exact root once, so its result depends on no order of float operations. n = re^2 + im^2
// is at most 2^31; only n = 2^31 itself leaves the range of int32.
//
// Scale 0: r, the truncated float root of n, is at most one below the nearest whole number. Whether r + 1 is nearer is
// decided in whole numbers: sqrt(n) > r + 1/2 is n > r * r + r. There are no ties.
//
// Other scales: in double precision. A root that is no tie of its scale differs from any by more than 2^-34 of itself,
// far above the error of 2^-53, so rounding the scaled root is right; true ties come from exact roots.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/vector_magnitude.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

void Magnitude_32f(const float* srcRe, const float* srcIm, float* dst, int32_t length) {
  const auto *re = loose(srcRe), *im = loose(srcIm);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) {
        const float a = re[i], b = im[i];
        d[i] = __builtin_sqrtf(a * a + b * b);
      });
}

// n, with 2^31 (wrapped to the lowest int32) lowered by one: either is far above the range of the result.
HWY_INLINE int32_t SquaredLength(int32_t re, int32_t im) {
  const int32_t n = re * re + im * im;
  return n ^ (n >> 31);
}

void Magnitude_16s(const int16_t* srcRe, const int16_t* srcIm, int16_t* dst, int32_t length) {
  const auto *re = loose(srcRe), *im = loose(srcIm);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) {
        const int32_t n = SquaredLength(re[i], im[i]);
        int32_t r = (int32_t)__builtin_sqrtf((float)n);
        r += n > r * r + r;
        d[i] = (int16_t)(r < 32767 ? r : 32767);
      });
}

void ScaledMagnitude_16s(const int16_t* srcRe, const int16_t* srcIm, int16_t* dst, int32_t length, double scale) {
  const double nearest = 6755399441055744.0;  // 3 * 2^51: adding it leaves no bits below the units
  const auto *re = loose(srcRe), *im = loose(srcIm);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) {
        const double a = re[i], b = im[i];
        const double v = __builtin_sqrt(a * a + b * b) * scale;
        d[i] = (int16_t)(int32_t)((v < 32767.0 ? v : 32767.0) + nearest - nearest);
      });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

OrvStatus orvsMagnitude_32f(const float* srcRe, const float* srcIm, float* dst, int32_t length) {
  ORV_REQUIRE(allSet(srcRe, srcIm, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  WIDEST(Magnitude_32f)(srcRe, srcIm, dst, length);
  return orvStatusOk;
}

OrvStatus orvsMagnitude_16s_Sfs(const int16_t* srcRe, const int16_t* srcIm, int16_t* dst, int32_t length,
                                int32_t scaleFactor) {
  ORV_REQUIRE(allSet(srcRe, srcIm, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  const auto plain = WIDEST(Magnitude_16s);
  const auto scaled = WIDEST(ScaledMagnitude_16s);
  // From -15 on every length but 0 saturates, from 17 on every one rounds to 0.
  const int32_t exponent = scaleFactor < -16 ? -16 : scaleFactor > 17 ? 17 : scaleFactor;
  const double scale = exponent < 0 ? (double)(1 << -exponent) : 1.0 / (1 << exponent);
  runBands(length >= 2048, length, [&](int32_t first, int32_t count) {
    if (exponent == 0) return plain(srcRe + first, srcIm + first, dst + first, count);
    scaled(srcRe + first, srcIm + first, dst + first, count, scale);
  });
  return orvStatusOk;
}

#endif

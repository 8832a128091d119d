// Plain forms of the accumulations and absolute differences.
#pragma once
#include <math.h>
#include "reference/pointwise.h"

namespace reference {

// What an accumulation makes of a pixel: sources s and t, accumulator d, weight, and whether the mask lets it take
// part.
struct Pixel {
  float s, t, d, alpha;
  bool kept;
};
inline float add(Pixel p) { return p.d + (p.kept ? p.s : 0.f); }
inline float addProduct(Pixel p) { return p.d + (p.kept ? p.s : 0.f) * p.t; }
inline float addSquare(Pixel p) {
  p.t = p.kept ? p.s : 0.f;
  return addProduct(p);
}
inline float addWeighted(Pixel p) {
  const float difference = p.s - p.d, part = difference * p.alpha;
  return p.d + (p.kept ? part : 0.f);
}

// Accumulations of one source, of two, of either under a mask; `Alpha` is nothing or the weight. No source or mask:
// null.
template <float (*next)(Pixel), class T, class... Alpha>
void accumulate(const T* src, int32_t srcStep, const T* src2, int32_t src2Step, const uint8_t* mask, int32_t maskStep,
                float* srcDst, int32_t srcDstStep, OrvSize roi, Alpha... alpha) {
  forEachElement(roi, 1, [&](int y, int x) {
    const float s = (float)load(src, srcStep, y, x), t = src2 ? (float)load(src2, src2Step, y, x) : 0;
    const Pixel p = {s, t, load(srcDst, srcDstStep, y, x), (0.f + ... + alpha),
                     !mask || load(mask, maskStep, y, x) != 0};
    store(srcDst, srcDstStep, y, x, next(p));
  });
}
template <float (*next)(Pixel), class T, class... Alpha>
void plain(const T* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roi, Alpha... alpha) {
  accumulate<next, T>(src, srcStep, nullptr, 0, nullptr, 0, srcDst, srcDstStep, roi, alpha...);
}
template <float (*next)(Pixel), class T, class... Alpha>
void masked(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
            OrvSize roi, Alpha... alpha) {
  accumulate<next, T>(src, srcStep, nullptr, 0, mask, maskStep, srcDst, srcDstStep, roi, alpha...);
}
template <class T>
void product(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, float* srcDst, int32_t srcDstStep,
             OrvSize roi) {
  accumulate<addProduct, T>(src1, src1Step, src2, src2Step, nullptr, 0, srcDst, srcDstStep, roi);
}

template <class T>
T distance(T a, T b) {
  if constexpr (std::is_floating_point<T>::value) return copysignf(a - b, 1.f);
  else return (T)(a > b ? a - b : b - a);
}
template <class T, class Value>
void absDiffC(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, Value value) {
  if constexpr (std::is_integral<T>::value) {
    if (value < 0) value = 0;
    if (value > (T)-1) value = (T)-1;
  }
  unary(1, [=](T v) { return distance(v, (T)value); })(src, srcStep, dst, dstStep, roi);
}

}  // namespace reference

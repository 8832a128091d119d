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

// Images of one source, of one and a mask, of two sources, and of all; `Alpha` is nothing or the weight.
template <float (*next)(Pixel), class T, class... Alpha>
void plain(const T* src, int32_t srcStep, float* srcDst, int32_t srcDstStep, OrvSize roi, Alpha... alpha) {
  forEachElement(roi, 1, [&](int y, int x) {
    const float s = (float)load(src, srcStep, y, x), d = load(srcDst, srcDstStep, y, x);
    store(srcDst, srcDstStep, y, x, next({s, 0, d, (0.f + ... + alpha), true}));
  });
}
template <float (*next)(Pixel), class T, class... Alpha>
void masked(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, float* srcDst, int32_t srcDstStep,
            OrvSize roi, Alpha... alpha) {
  forEachElement(roi, 1, [&](int y, int x) {
    const float s = (float)load(src, srcStep, y, x), d = load(srcDst, srcDstStep, y, x);
    store(srcDst, srcDstStep, y, x, next({s, 0, d, (0.f + ... + alpha), load(mask, maskStep, y, x) != 0}));
  });
}
template <class T>
void product(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, float* srcDst, int32_t srcDstStep,
             OrvSize roi) {
  forEachElement(roi, 1, [&](int y, int x) {
    const float s = (float)load(src1, src1Step, y, x), t = (float)load(src2, src2Step, y, x);
    store(srcDst, srcDstStep, y, x, addProduct({s, t, load(srcDst, srcDstStep, y, x), 0, true}));
  });
}
template <class T>
void productMasked(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, const uint8_t* mask,
                   int32_t maskStep, float* srcDst, int32_t srcDstStep, OrvSize roi) {
  forEachElement(roi, 1, [&](int y, int x) {
    const float s = (float)load(src1, src1Step, y, x), t = (float)load(src2, src2Step, y, x);
    const bool kept = load(mask, maskStep, y, x) != 0;
    store(srcDst, srcDstStep, y, x, addProduct({s, t, load(srcDst, srcDstStep, y, x), 0, kept}));
  });
}
// The weighted step from src2 towards src1 into a third image.
inline void weightedInto(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                         int32_t dstStep, OrvSize roi, float alpha) {
  forEachElement(roi, 1, [&](int y, int x) {
    const float s = load(src1, src1Step, y, x), d = load(src2, src2Step, y, x);
    store(dst, dstStep, y, x, addWeighted({s, 0, d, alpha, true}));
  });
}

template <class T>
T distance(T a, T b) {
  if constexpr (std::is_floating_point<T>::value) return copysignf(a - b, 1.f);
  else return (T)(a > b ? a - b : b - a);
}
template <class T, int channels = 1>
void absDiff(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, T* dst, int32_t dstStep, OrvSize roi) {
  forEachElement(roi, channels, [&](int y, int x) {
    store(dst, dstStep, y, x, distance(load(src1, src1Step, y, x), load(src2, src2Step, y, x)));
  });
}
template <class T, class Value>
void absDiffC(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, Value value) {
  if constexpr (std::is_integral<T>::value) {
    if (value < 0) value = 0;
    if (value > (T)-1) value = (T)-1;
  }
  forEachElement(roi, 1,
                 [&](int y, int x) { store(dst, dstStep, y, x, distance(load(src, srcStep, y, x), (T)value)); });
}

}  // namespace reference

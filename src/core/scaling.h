// Scale factors of integer results: the exact value times 2^-factor, rounded to nearest with halves to even, saturated.
#pragma once
#include <stdint.h>
#include "core/variant.h"

namespace ORV_VARIANT {

// A factor as shifts. Exact values are below 2^31 in amount, so a factor above 31 gives 0 like 31; results have at most
// 16 bits, so a factor below -16 saturates whatever -16 saturates: all but 0.
struct Scaling {
  int32_t right;  // 0 to 31
  int32_t left;   // 0 to 16
};

static inline Scaling makeScaling(int32_t factor) {
  if (factor >= 0) return {factor < 31 ? factor : 31, 0};
  return {0, factor > -16 ? -factor : 16};
}

// The ends of an integer type of 8 or 16 bits.
template <class T>
constexpr int32_t lowestOf = (T)-1 < 0 ? -(1 << (8 * sizeof(T) - 1)) : 0;
template <class T>
constexpr int32_t highestOf = (T)-1 < 0 ? (1 << (8 * sizeof(T) - 1)) - 1 : (1 << 8 * sizeof(T)) - 1;

__attribute__((always_inline)) static inline int32_t clamp(int32_t v, int32_t low, int32_t high) {
  v = v < low ? low : v;
  return v > high ? high : v;
}

// v * 2^-right for right > 0 and |v| <= 2^30. The bit that becomes the lowest is added: of two equally near numbers it
// is the even one that is reached.
template <class T>
__attribute__((always_inline)) static inline T scaleDown(int32_t v, int32_t right) {
  const int32_t rounded = (v + (1 << (right - 1)) - 1 + ((v >> right) & 1)) >> right;
  return (T)clamp(rounded, lowestOf<T>, highestOf<T>);
}

// v * 2^left. A value just beyond the range serves for all that lie further out, so nothing overflows.
template <class T>
__attribute__((always_inline)) static inline T scaleUp(int32_t v, int32_t left) {
  v = clamp(v, (lowestOf<T> >> left) - 1, (highestOf<T> >> left) + 1);
  return (T)clamp((int32_t)((uint32_t)v << left), lowestOf<T>, highestOf<T>);
}

}  // namespace ORV_VARIANT

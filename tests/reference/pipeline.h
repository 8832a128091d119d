// Plain forms of the separable row and column stages, one output at a time.
#pragma once
#include <math.h>
#include <algorithm>
#include <limits>
#include "reference/pointwise.h"

namespace reference {

// Stands for the border value.
constexpr int borderValuePixel = INT32_MIN;

// The pixel of a line of n that stands at p. Reflections walk until they are inside.
inline int borderPixel(int p, int n, int borderType) {
  const int kind = borderType & 15;
  if (p < 0 && (kind == orvBorderInMem || borderType & orvBorderInMemLeft)) return p;
  if (p >= n && (kind == orvBorderInMem || borderType & orvBorderInMemRight)) return p;
  while (p < 0 || p >= n) {
    if (kind == orvBorderConst) return borderValuePixel;
    if (kind == orvBorderRepl) p = p < 0 ? 0 : n - 1;
    if (kind == orvBorderWrap) p = p < 0 ? p + n : p - n;
    if (kind == orvBorderMirr) p = n == 1 ? 0 : p < 0 ? -p : 2 * (n - 1) - p;
    if (kind == orvBorderMirrR) p = p < 0 ? -p - 1 : 2 * n - 1 - p;
  }
  return p;
}

template <class T>
T clampTo(float value) {
  const float low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
  return (T)std::min(std::max(value, low), high);  // the conversion truncates
}
template <class T>
T nearestTo(float value) {
  return clampTo<T>(nearbyintf(std::min(std::max(value, -40000.f), 70000.f)));
}

enum class Rounding { nearest, truncated };
enum class Arithmetic { scaled, low };

// Element i of `size` that a window sees, for i = 0 .. size - 1.
template <class Pixel, class Tap, class Element>
int32_t wrappedSum(const Tap* taps, int size, const Element& element) {
  uint32_t sum = 0;
  for (int i = 0; i < size; ++i) sum += (uint32_t)((int32_t)taps[i] * (int32_t)(Pixel)element(i));
  return (int32_t)sum;
}

template <class Dst>
Dst lowResult(int32_t sum, int32_t divisor, Rounding rounding) {
  const auto m = (int16_t)(16384.0f / (float)divisor);
  const int32_t value = (int32_t)((uint32_t)sum * (uint32_t)(int32_t)m) >> 14;
  return rounding == Rounding::truncated ? (Dst)value : (Dst)std::min(std::max(value, -32768), 32767);
}

template <class Element>
uint16_t unsignedResult(const uint16_t* taps, int size, int32_t divisor, const Element& element) {
  int64_t sum = 0;
  for (int i = 0; i < size; ++i) sum += (int64_t)taps[i] * element(i);
  return clampTo<uint16_t>((float)sum * (1.0f / (float)divisor));
}

template <class Element>
float risingSum(const float* taps, int size, const Element& element) {
  float sum = taps[0] * element(0);
  for (int i = 1; i < size; ++i) sum += taps[i] * element(i);
  return sum;
}

// One output of a row stage.
template <class Pixel, class Dst, class Tap, class Element>
Dst rowOutput(const Tap* k, int size, int32_t divisor, Arithmetic arithmetic, Rounding rounding, const Element& e) {
  if constexpr (std::is_same<Pixel, float>::value) {
    if (size == 3 && k[0] == k[2]) return k[0] * (e(0) + e(2)) + k[1] * e(1);
    if (size == 5 && k[0] == k[4] && k[1] == k[3]) return (k[0] * (e(0) + e(4)) + k[1] * (e(1) + e(3))) + k[2] * e(2);
    return risingSum(k, size, e);
  } else if constexpr (std::is_same<Pixel, uint16_t>::value) {
    return unsignedResult(k, size, divisor, e);
  } else {
    const int32_t sum = wrappedSum<Pixel>(k, size, e);
    if (arithmetic == Arithmetic::low) return lowResult<Dst>(sum, divisor, rounding);
    const float value = (float)sum * (1.0f / (float)divisor);
    return rounding == Rounding::nearest ? nearestTo<Dst>(value) : clampTo<Dst>(value);
  }
}

// Element x of the filtered row at `row`; x counts elements.
template <class Pixel, class Dst, class Tap>
Dst filteredRow(const Pixel* row, int width, int channels, int x, const Tap* taps, int size, int anchor, int borderType,
                const Pixel* borderValue, int32_t divisor, Arithmetic arithmetic) {
  const int pixel = x / channels, channel = x % channels;
  const bool end = pixel < anchor || pixel >= width - (size - 1 - anchor);
  const auto element = [&](int i) {
    const int p = borderPixel(pixel - anchor + i, width, borderType);
    return p == borderValuePixel ? load(borderValue, 0, 0, channel) : load(row, 0, 0, p * channels + channel);
  };
  return rowOutput<Pixel, Dst>(taps, size, divisor, arithmetic, end ? Rounding::truncated : Rounding::nearest, element);
}

// Element x of a column stage's row that is made of rows[0 .. size - 1].
template <class Src, class Dst>
Dst filteredColumn(const Src* const* rows, int width, int channels, int x, const Src* taps, int size, int32_t divisor,
                   Arithmetic arithmetic) {
  const bool whole = x / channels < (width & ~15);
  const auto element = [&](int j) { return load(rows[j], 0, 0, x); };
  if constexpr (std::is_same<Src, float>::value) {
    return risingSum(taps, size, element);
  } else if constexpr (std::is_same<Src, uint16_t>::value) {
    return unsignedResult(taps, size, divisor, element);
  } else {
    const float scale = 1.0f / (float)divisor;
    if (arithmetic == Arithmetic::scaled && whole) {
      float sum = 0;
      for (int j = 0; j < size; ++j) sum += (float)element(j) * ((float)taps[j] * scale);
      return nearestTo<Dst>(sum);
    }
    const int32_t sum = wrappedSum<Src>(taps, size, element);
    if (arithmetic == Arithmetic::low)
      return lowResult<Dst>(sum, divisor, whole ? Rounding::nearest : Rounding::truncated);
    return clampTo<Dst>((float)sum * scale);
  }
}

}  // namespace reference

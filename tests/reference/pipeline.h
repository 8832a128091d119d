// Plain forms of the separable row and column stages, one output at a time; e(i) is what tap i sees.
#pragma once
#include <math.h>
#include <algorithm>
#include <limits>
#include <vector>
#include "reference/border.h"

namespace reference {

enum class Arithmetic { scaled, low };

template <class T>
T clampTo(float value) {
  const float low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
  return (T)std::min(std::max(value, low), high);  // the conversion truncates
}
template <class T>
T nearestTo(float value) {
  return clampTo<T>(nearbyintf(std::min(std::max(value, -40000.f), 70000.f)));
}

// A sum by the divisor, to nearest or towards zero. The low form saturates or wraps instead.
template <class Dst>
Dst divided(int32_t sum, int32_t divisor, Arithmetic arithmetic, bool nearest) {
  if (arithmetic == Arithmetic::low) {
    const auto m = (int16_t)(16384.0f / (float)divisor);
    const int32_t value = (int32_t)((uint32_t)sum * (uint32_t)(int32_t)m) >> 14;
    return (Dst)(nearest ? std::min(std::max(value, -32768), 32767) : value);
  }
  const float value = (float)sum * (1.0f / (float)divisor);
  return nearest ? nearestTo<Dst>(value) : clampTo<Dst>(value);
}

// The sum of the taps: in 32 bits that wrap, exact for 16u, in rising order for floats.
template <class Pixel, class Tap, class Element>
auto foldTaps(const std::vector<Tap>& taps, const Element& e) {
  const int size = (int)taps.size();
  if constexpr (std::is_same<Pixel, float>::value) {
    float sum = taps[0] * e(0);
    for (int i = 1; i < size; ++i) sum += taps[(size_t)i] * e(i);
    return sum;
  } else if constexpr (std::is_same<Pixel, uint16_t>::value) {
    int64_t sum = 0;
    for (int i = 0; i < size; ++i) sum += (int64_t)taps[(size_t)i] * e(i);
    return sum;
  } else {
    uint32_t sum = 0;
    for (int i = 0; i < size; ++i) sum += (uint32_t)((int32_t)taps[(size_t)i] * (int32_t)(Pixel)e(i));
    return (int32_t)sum;
  }
}

// One output of a row stage. Symmetric float taps are paired.
template <class Pixel, class Dst, class Tap, class Element>
Dst rowOutput(const std::vector<Tap>& k, int32_t divisor, Arithmetic arithmetic, bool nearest, const Element& e) {
  const auto sum = foldTaps<Pixel>(k, e);
  if constexpr (std::is_same<Pixel, float>::value) {
    if (k.size() == 3 && k[0] == k[2]) return k[0] * (e(0) + e(2)) + k[1] * e(1);
    if (k.size() == 5 && k[0] == k[4] && k[1] == k[3])
      return (k[0] * (e(0) + e(4)) + k[1] * (e(1) + e(3))) + k[2] * e(2);
    return sum;
  } else if constexpr (std::is_same<Pixel, uint16_t>::value) {
    return clampTo<Dst>((float)sum * (1.0f / (float)divisor));
  } else {
    return divided<Dst>(sum, divisor, arithmetic, nearest);
  }
}

// Element x of the filtered row at `row`; x counts elements. Windows that reach beyond the row are truncated.
template <class Dst, class Pixel, class Tap>
Dst filteredRow(const Pixel* row, int width, int channels, int x, const std::vector<Tap>& taps, int anchor, int type,
                const Pixel* borderValue, int32_t divisor, Arithmetic arithmetic) {
  const int pixel = x / channels, channel = x % channels, size = (int)taps.size();
  const bool inside = pixel >= anchor && pixel < width - (size - 1 - anchor);
  return rowOutput<Pixel, Dst>(taps, divisor, arithmetic, inside, [&](int i) {
    const int p = borderPixel(type, pixel - anchor + i, width);
    return p == noPixel ? load(borderValue, 0, 0, channel) : load(row, 0, 0, p * channels + channel);
  });
}

// One output of a column stage; `whole` for the first width & ~15 pixels.
template <class Src, class Dst, class Element>
Dst columnOutput(const std::vector<Src>& taps, int32_t divisor, Arithmetic arithmetic, bool whole, const Element& e) {
  const auto sum = foldTaps<Src>(taps, e);
  const float scale = 1.0f / (float)divisor;
  if constexpr (std::is_same<Src, float>::value) {
    return sum;
  } else if constexpr (std::is_same<Src, uint16_t>::value) {
    return clampTo<Dst>((float)sum * scale);
  } else {
    if (arithmetic == Arithmetic::low || !whole) return divided<Dst>(sum, divisor, arithmetic, whole);
    float rising = 0;
    for (int j = 0; j < (int)taps.size(); ++j) rising += (float)e(j) * ((float)taps[(size_t)j] * scale);
    return nearestTo<Dst>(rising);
  }
}

}  // namespace reference

// Sub-pixel windows in plain form, pixel by pixel.
#pragma once
#include <math.h>
#include <algorithm>
#include <limits>
#include <type_traits>
#include "orvcv/types.h"

namespace reference {

// A pixel from its neighbours; `across` and `down` tell whether it has two in a row and in a column.
template <class S, class D>
struct Subpixel {
  int scaleFactor = 0;
  float floorX = 0, floorY = 0;

  D operator()(const S p[4], float fx, float fy, bool across, bool down) const {
    if (!across && !down) fx = fy = 0;
    if constexpr (std::is_same<S, uint8_t>::value && std::is_integral<D>::value) {
      const int64_t wx = (int64_t)(fx * 16384.0f + 0.5f), wy = (int64_t)(fy * 16384.0f + 0.5f);
      const int64_t ix = 16384 - wx, iy = 16384 - wy;
      int64_t w[4] = {(ix * iy + 16384) >> 14, (iy * wx + 16384) >> 14, (ix * wy + 16384) >> 14,
                      (wy * wx + 16384) >> 14};  // of p00, p10, p01, p11
      const int64_t d = 16384 - w[0] - w[2] - w[1] - w[3];
      if (d < 0) {
        if (w[0] >= std::max({w[1], w[2], w[3]})) w[0] += d;
        else if (w[2] >= std::max({w[0], w[1], w[3]})) w[2] += d;
        else if (w[1] >= std::max({w[0], w[2], w[3]})) w[1] += d;
        else w[3] += d;
      }
      int64_t sum = w[0] * p[0] + w[1] * p[1] + w[2] * p[2] + w[3] * p[3];
      if (!across || !down) sum = across ? ix * p[0] + wx * p[1] : iy * p[0] + wy * p[2];
      if (!across && !down) sum = 16384 * p[0];
      const double scaled = floor((double)sum / ldexp(1.0, scaleFactor + 14) + (scaleFactor > -14 ? 0.5 : 0));
      return (D)std::min(scaled, (double)std::numeric_limits<D>::max());
    } else {
      fx = std::max(fx, floorX), fy = std::max(fy, floorY);
      const float q[4] = {(float)p[0], (float)p[1], (float)p[2], (float)p[3]};
      float v = (((1 - fx) * (1 - fy)) * q[0] + ((1 - fy) * fx) * q[1]) + ((1 - fx) * fy) * q[2];
      v += (fx * fy) * q[3];
      if (!across || !down) v = across ? (1 - fx) * q[0] + fx * q[1] : (1 - fy) * q[0] + fy * q[2];
      if (!across && !down) v = q[0];
      if (std::is_integral<D>::value) v = std::min(std::max(v + 0.5f, 0.f), 65535.f);
      return (D)v;
    }
  }
};

// The place of a window: source column or row of its first pixel, the fraction, and what has two neighbours.
struct Place {
  int64_t first;
  float fraction;
  int32_t low = 0, high;

  Place(float centre, int size, int length) : high(size - 1) {
    const float begin = centre - (float)(size - 1) * 0.5f;
    first = (int64_t)truncf((float)size + begin) - size;
    fraction = begin - (float)first;
    for (int i = 0; i < size; ++i) {
      low += first + i < 0;
      high -= first + i + 1 > length - 1;
    }
  }
  bool inside(int i) const { return i >= low && i <= high; }
};

}  // namespace reference

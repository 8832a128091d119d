// The whole-number weights of sub-pixel copies of bytes.
#pragma once
#include <stdint.h>
#include "geometry/names.h"

namespace ORV_VARIANT {

// A result is min((sum + round) >> right, 65535) << left, saturated; sum is 16384 times the exact value at most.
struct Q14Weights {
  static constexpr int32_t one = 16384;
  int32_t wx, wy;        // of the right and of the lower neighbour, 0 to 16384
  int32_t upper, lower;  // the weights of a row's two pixels, left one in the low half
  int32_t round, right, left;
  int32_t start;  // `round`, less 32768 after the shift where results may reach beyond 32767
  int16_t flip;   // what takes that back
};

// The products are pushed up by as much as one each, so that their sum always exceeds 16384; the largest weight gives
// back what is too much, the first of equally large ones.
static inline Q14Weights makeQ14Weights(float fx, float fy, int32_t scaleFactor) {
  constexpr int32_t one = Q14Weights::one;
  // In very wide windows a rounded place may lie just beyond its fraction's range.
  const int32_t wx = (int32_t)((fx > 0 ? fx : 0) * 16384.0f + 0.5f);
  const int32_t wy = (int32_t)((fy > 0 ? fy : 0) * 16384.0f + 0.5f);
  const int32_t ix = one - wx, iy = one - wy;
  int32_t weight[4] = {(ix * iy + one) >> 14, (ix * wy + one) >> 14, (iy * wx + one) >> 14, (wy * wx + one) >> 14};
  int32_t largest = 0;
  for (int32_t i = 1; i < 4; ++i)
    if (weight[i] > weight[largest]) largest = i;
  weight[largest] += one - (weight[0] + weight[1] + weight[2] + weight[3]);

  Q14Weights w;
  w.wx = wx, w.wy = wy;
  w.upper = weight[0] | weight[2] << 16;
  w.lower = weight[1] | weight[3] << 16;
  // Sums are below 2^22: a shift of 23 gives 0 like all longer ones, and 16 to the left saturates all but 0.
  const int32_t shift = scaleFactor > 9 ? 23 : scaleFactor < -30 ? -16 : scaleFactor + 14;
  w.right = shift > 0 ? shift : 0;
  w.left = shift < 0 ? -shift : 0;
  w.round = shift > 0 ? 1 << (shift - 1) : 0;
  const bool large = w.right < 7;
  w.start = w.round - (large ? 32768 << w.right : 0);
  w.flip = large ? INT16_MIN : 0;
  return w;
}

}  // namespace ORV_VARIANT

// Plain form of the rank filters: the window itself, around each pixel.
#pragma once
#include <algorithm>
#include "reference/pointwise.h"

namespace reference {

template <class T>
T rank(const T* src, int32_t step, OrvSize roi, int channels, int x, int y, OrvSize mask, OrvPoint anchor, bool max) {
  T result = T();
  const int c = x % channels;
  for (int i = 0; i < mask.height; ++i)
    for (int j = 0; j < mask.width; ++j) {
      const int row = std::clamp(y - anchor.y + i, 0, roi.height - 1);
      const int column = std::clamp(x / channels - anchor.x + j, 0, roi.width - 1);
      const T other = load(src, step, row, column * channels + c);
      if (i + j == 0 || (max ? other > result : other < result)) result = other;
    }
  return result;
}

}  // namespace reference

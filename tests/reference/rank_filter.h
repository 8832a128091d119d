// Plain form of the rank filters: the window itself, around each pixel.
#pragma once
#include <algorithm>
#include "reference/pointwise.h"

namespace reference {

template <class T>
void rankFilter(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int channels, OrvSize mask,
                OrvPoint anchor, bool max) {
  forEachElement(roi, channels, [&](int y, int x) {
    T result = T();
    for (int i = 0; i < mask.height; ++i)
      for (int j = 0; j < mask.width; ++j) {
        const int row = std::clamp(y - anchor.y + i, 0, roi.height - 1);
        const int column = std::clamp(x / channels - anchor.x + j, 0, roi.width - 1);
        const T other = load(src, srcStep, row, column * channels + x % channels);
        if (i + j == 0 || (max ? other > result : other < result)) result = other;
      }
    store(dst, dstStep, y, x, result);
  });
}

}  // namespace reference

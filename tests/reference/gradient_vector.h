// Plain gradients and box means, a pixel at a time.
#pragma once
#include <functional>
#include "reference/fixed_filter.h"

namespace reference {

enum class GradientForm { sobel3, sobel5, scharr3 };

// gx and gy of one pixel; r(i, c) is the pixel of row i of the neighbourhood from the top, c columns to the right.
template <class R, class Pixel>
void gradient(GradientForm form, const Pixel& r, R* gx, R* gy) {
  if (form == GradientForm::sobel3) {
    const auto s = [&](int c) { return (R)(r(0, c) + 2 * r(1, c) + r(2, c)); };
    const auto d = [&](int c) { return (R)(r(2, c) - r(0, c)); };
    *gx = (R)(s(-1) - s(1));
    *gy = (R)(d(-1) + 2 * d(0) + d(1));
  } else if (form == GradientForm::sobel5) {
    const auto s = [&](int c) { return (R)(r(0, c) + 4 * r(1, c) + 6 * r(2, c) + 4 * r(3, c) + r(4, c)); };
    const auto d = [&](int c) { return (R)(r(4, c) - r(0, c) + 2 * (r(3, c) - r(1, c))); };
    *gx = (R)(s(-2) + 2 * s(-1) - 2 * s(1) - s(2));
    *gy = (R)(d(-2) + 4 * d(-1) + 6 * d(0) + 4 * d(1) + d(2));
  } else {
    const auto s = [&](int c) { return (R)(3 * r(0, c) + 10 * r(1, c) + 3 * r(2, c)); };
    const auto d = [&](int c) { return (R)(r(2, c) - r(0, c)); };
    *gx = (R)(s(1) - s(-1));
    *gy = (R)(10 * d(0) + 3 * (d(-1) + d(1)));
  }
}

inline float boxMean(const float* src, int32_t step, OrvSize roi, OrvSize box, int x, int y, int borderType,
                     float value) {
  const int left = (box.width - 1) / 2, above = (box.height - 1) / 2;
  float sum = 0;
  for (int i = 0; i < box.height; ++i) {
    float row = 0;
    for (int j = 0; j < box.width; ++j)
      row += borderedPixel(src, step, roi, x - left + j, y - above + i, borderType, value);
    sum += row;
  }
  return sum * (1.0f / (float)(box.width * box.height));
}

}  // namespace reference

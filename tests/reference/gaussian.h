// Plain form of Gaussian smoothing: all rows filtered, then all columns.
#pragma once
#include <math.h>
#include <vector>
#include "reference/pipeline.h"

namespace reference {

inline std::vector<float> gaussianWeights(int size, float sigma, float* sum) {
  std::vector<float> w;
  const float q = (sigma + sigma) * sigma;
  *sum = 0;
  for (int i = 0; i < size; ++i) {
    const float j = (float)(i - size / 2);
    w.push_back(j == 0 ? 1.0f : (float)exp((double)(-(j * j) / q)));
    *sum += w.back();
  }
  return w;
}

// The taps of an image type; shift 0 is for floats.
template <class Tap>
std::vector<Tap> gaussianTaps(int size, float sigma, int shift) {
  float sum;
  std::vector<Tap> taps;
  for (const float w : gaussianWeights(size, sigma, &sum)) {
    if (shift == 0) taps.push_back((Tap)(w / sum));
    else taps.push_back((Tap)(int32_t)((double)((w / sum) * (float)(1 << shift)) + 0.5));
  }
  return taps;
}

// The whole filter; `rowBorder` says what lies above and below, `borderType` what lies beside.
template <class T, class Row, class Tap>
void gaussian(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int channels, int borderType,
              int rowBorder, const T* borderValue, const std::vector<Tap>& taps, int shift) {
  const int size = (int)taps.size(), half = size / 2, width = roi.width * channels;
  const int32_t divisor = (int32_t)(1u << shift);
  const bool kind6 = (rowBorder & 15) == orvBorderInMem;
  // borderPixel speaks of the left and right: the top is a line's left, the bottom its right.
  const int sides = (rowBorder & 15) | (kind6 || rowBorder & orvBorderInMemTop ? orvBorderInMemLeft : 0) |
                    (kind6 || rowBorder & orvBorderInMemBottom ? orvBorderInMemRight : 0);
  std::vector<std::vector<Row>> rows;
  std::vector<const Row*> pointers;
  for (int y = -half; y < roi.height + half; ++y) {
    const int source = borderPixel(y, roi.height, sides);
    const T* const from = (const T*)((const uint8_t*)src + (ptrdiff_t)source * srcStep);
    std::vector<Row> row;
    for (int x = 0; x < width; ++x)
      row.push_back(source == borderValuePixel
                        ? (Row)borderValue[x % channels]
                        : filteredRow<T, Row>(from, roi.width, channels, x, taps.data(), size, half, borderType,
                                              borderValue, divisor, Arithmetic::scaled));
    rows.push_back(row);
  }
  for (const auto& row : rows) pointers.push_back(row.data());
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < width; ++x)
      store(dst, dstStep, y, x,
            filteredColumn<Row, T>(pointers.data() + y, roi.width, channels, x, taps.data(), size, divisor,
                                   Arithmetic::scaled));
}

}  // namespace reference

// Plain form of Gaussian smoothing: all rows filtered, then all columns.
#pragma once
#include "reference/pipeline.h"

namespace reference {

// The taps of an image type; shift 0 is for floats.
template <class Tap>
std::vector<Tap> gaussianTaps(int size, float sigma, int shift) {
  std::vector<float> weights;
  std::vector<Tap> taps;
  const float q = (sigma + sigma) * sigma;
  float sum = 0;
  for (int i = 0; i < size; ++i) {
    const float j = (float)(i - size / 2);
    weights.push_back(j == 0 ? 1.0f : (float)exp((double)(-(j * j) / q)));
    sum += weights.back();
  }
  for (const float w : weights)
    taps.push_back(shift ? (Tap)(int32_t)((double)((w / sum) * (float)(1 << shift)) + 0.5) : (Tap)(w / sum));
  return taps;
}

// The whole filter; `rowType` says what lies above and below, `type` what lies beside.
template <class T, class Tap>
void gaussian(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int channels, int type, int rowType,
              const T* borderValue, const std::vector<Tap>& taps, int shift) {
  using Row = std::conditional_t<std::is_same<T, uint8_t>::value, int16_t, T>;
  const int half = (int)taps.size() / 2, width = roi.width * channels;
  const auto divisor = (int32_t)(1u << shift);
  std::vector<std::vector<Row>> rows;
  for (int y = -half; y < roi.height + half; ++y) {
    const int source = borderRow(rowType, y, roi.height);
    const T* const from = (const T*)((const uint8_t*)src + (ptrdiff_t)source * srcStep);
    rows.emplace_back();
    for (int x = 0; x < width; ++x)
      rows.back().push_back(source == noPixel ? (Row)borderValue[x % channels]
                                              : filteredRow<Row>(from, roi.width, channels, x, taps, half, type,
                                                                 borderValue, divisor, Arithmetic::scaled));
  }
  forEachElement(roi, channels, [&](int y, int x) {
    const auto row = [&](int j) { return rows[(size_t)(y + j)][(size_t)x]; };
    const bool whole = x / channels < (roi.width & ~15);
    store(dst, dstStep, y, x, columnOutput<Row, T>(taps, divisor, Arithmetic::scaled, whole, row));
  });
}

}  // namespace reference

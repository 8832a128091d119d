// Plain forms of the fixed filters: whole images of filtered rows first, then the columns.
#pragma once
#include <functional>
#include <map>
#include <string>
#include "reference/pipeline.h"

namespace reference {

using Taps = std::vector<int>;
template <class T>
using RowOf = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;

inline const Taps& fixedTaps(const std::string& name) {
  static const std::map<std::string, Taps> tables = {{"Dx3", {-1, 0, 1}},         {"DxNeg3", {1, 0, -1}},
                                                     {"Dx5", {-1, -2, 0, 2, 1}},  {"DxNeg5", {1, 2, 0, -2, -1}},
                                                     {"D2x3", {1, -2, 1}},        {"D2x5", {1, 0, -2, 0, 1}},
                                                     {"Sobel3", {1, 2, 1}},       {"Sobel5", {1, 4, 6, 4, 1}},
                                                     {"SobelNeg3", {-1, -2, -1}}, {"SobelNeg5", {-1, -4, -6, -4, -1}},
                                                     {"Scharr3", {3, 10, 3}},     {"Avr3", {1, 1, 1}},
                                                     {"Avr5", {1, 1, 1, 1, 1}},   {"Lap3", {1, 0, 1}},
                                                     {"Eight3", {0, 8, 0}}};
  return tables.at(name);
}

// A float sum, or an exact one, of taps that aren't 0.
template <class R, class Element>
R tapSum(const Taps& taps, const Element& element) {
  R sum = 0;
  for (int i = 0; i < (int)taps.size(); ++i)
    if (taps[(size_t)i] != 0) sum = (R)(sum + (R)((R)taps[(size_t)i] * (R)element(i)));
  return sum;
}

// Rows -K / 2 .. height + K / 2 - 1, filtered. A constant row is the tap sum times the value, all over.
template <class T, class R = RowOf<T>>
std::vector<std::vector<R>> fixedRows(const T* src, int32_t step, OrvSize roi, const Taps& taps, int type, T value) {
  const int half = (int)taps.size() / 2;
  std::vector<std::vector<R>> rows;
  for (int y = -half; y < roi.height + half; ++y) {
    const int from = borderRow(type, y, roi.height);
    const R constant = (R)(tapSum<R>(taps, [](int) { return 1; }) * (R)value) + 0;
    rows.emplace_back((size_t)roi.width, constant);
    for (int x = 0; x < roi.width && from != noPixel; ++x)
      rows.back()[(size_t)x] =
          tapSum<R>(taps, [&](int i) { return borderedPixel(src, step, roi, x - half + i, from, type, value); });
  }
  return rows;
}

// All plain forms take the same arguments; a divisor counts for bytes with a sign alone.
template <class T, class D>
using FixedForm = std::function<void(const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, int32_t mask,
                                     int32_t type, T value, int32_t divisor, uint8_t* buffer)>;

// The filter with the named tables: "DxNeg" stands for DxNeg3 or DxNeg5, by the mask.
template <class T, class D>
FixedForm<T, D> separable(std::string rowTaps, std::string columnTaps) {
  return [=](const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, int32_t mask, int32_t type, T value,
             int32_t divisor, uint8_t*) {
    const std::string digit = mask == orvMaskSize5x5 ? "5" : "3";
    const Taps& taps = fixedTaps(columnTaps + digit);
    const auto rows = fixedRows(src, srcStep, roi, fixedTaps(rowTaps + digit), type, value);
    forEachElement(roi, 1, [&](int y, int x) {
      const auto row = [&](int i) { return rows[(size_t)(y + i)][(size_t)x]; };
      const bool whole = x < (roi.width & ~15);
      if constexpr (std::is_same<D, int8_t>::value)
        store(dst, dstStep, y, x,
              columnOutput<int16_t, D>({taps.begin(), taps.end()}, divisor, Arithmetic::scaled, whole, row));
      else store(dst, dstStep, y, x, tapSum<D>(taps, row));
    });
  };
}

template <class T, class D, class R = RowOf<T>>
void laplacian(const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, int32_t mask, int32_t type, T value,
               int32_t divisor, uint8_t*) {
  const bool small = mask == orvMaskSize3x3, isByte = std::is_same<D, int8_t>::value;
  const auto a = fixedRows(src, srcStep, roi, fixedTaps(small ? "Lap3" : "Sobel5"), type, value);
  const auto b = fixedRows(src, srcStep, roi, fixedTaps(small ? "Eight3" : "D2x5"), type, value);
  forEachElement(roi, 1, [&](int y, int x) {
    const auto p = [&](int i) { return a[(size_t)(y + i)][(size_t)x]; };
    const auto q = [&](int i) { return b[(size_t)(y + i)][(size_t)x]; };
    const bool whole = x < (roi.width & ~15);
    R sum;
    if (small) {
      sum = (R)(2 * (p(0) + p(2)) - q(1));
    } else {
      const R added = (R)((R)((R)((q(1) + q(3)) * 4) + (R)(q(2) * 6)) + (R)(q(0) + q(4)));
      sum = (R)(tapSum<R>(fixedTaps("D2x5"), p) + added);
    }
    if (!isByte) return store(dst, dstStep, y, x, (D)sum);
    const auto planes = [&](int i) { return (int16_t)(i == 1 ? q(1) : p(i)); };
    store(dst, dstStep, y, x,
          small ? columnOutput<int16_t, D>({2, -1, 2}, divisor, Arithmetic::scaled, whole, planes)
                : divided<D>((int32_t)sum, divisor, Arithmetic::scaled, whole));
  });
}

template <class T, class R = RowOf<T>>
void lowpass(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int32_t mask, int32_t type, T value,
             int32_t, uint8_t*) {
  const bool small = mask == orvMaskSize3x3;
  const Taps& taps = fixedTaps(small ? "Avr3" : "Avr5");
  const auto rows = fixedRows(src, srcStep, roi, taps, type, value);
  forEachElement(roi, 1, [&](int y, int x) {
    const R sum = tapSum<R>(taps, [&](int i) { return rows[(size_t)(y + i)][(size_t)x]; });
    if constexpr (std::is_same<T, float>::value) store(dst, dstStep, y, x, sum * (small ? 0.11111111f : 0.04f));
    else store(dst, dstStep, y, x, (T)std::min(255, small ? ((sum + 5) * 7280) >> 16 : (sum * 2621) >> 16));
  });
}

}  // namespace reference

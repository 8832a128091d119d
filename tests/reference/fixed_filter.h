// Plain forms of the fixed filters: whole images of filtered rows first, then the columns.
#pragma once
#include <map>
#include <string>
#include <vector>
#include "reference/pipeline.h"

namespace reference {

inline std::vector<int> fixedTaps(const std::string& name) {
  static const std::map<std::string, std::vector<int>> tables = {
      {"Dx3", {-1, 0, 1}},         {"DxNeg3", {1, 0, -1}},
      {"Dx5", {-1, -2, 0, 2, 1}},  {"DxNeg5", {1, 2, 0, -2, -1}},
      {"D2x3", {1, -2, 1}},        {"D2x5", {1, 0, -2, 0, 1}},
      {"Sobel3", {1, 2, 1}},       {"Sobel5", {1, 4, 6, 4, 1}},
      {"SobelNeg3", {-1, -2, -1}}, {"SobelNeg5", {-1, -4, -6, -4, -1}},
      {"Scharr3", {3, 10, 3}},     {"Avr3", {1, 1, 1}},
      {"Avr5", {1, 1, 1, 1, 1}},   {"Lap3", {1, 0, 1}},
      {"Eight3", {0, 8, 0}}};
  return tables.at(name);
}

// What a line of n pixels shows at p, for the sides `before` and `behind` of a border type.
inline int fixedPixel(int p, int n, int borderType, int before, int behind) {
  const bool all = (borderType & 15) == orvBorderInMem;
  if ((p < 0 && (all || borderType & before)) || (p >= n && (all || borderType & behind))) return p;
  return borderPixel(p, n, borderType & 15);
}

// The pixel (x, y) of an image with its border: rows first, then columns inside the row.
template <class T>
T borderedPixel(const T* src, int32_t step, OrvSize roi, int x, int y, int borderType, T value) {
  const int row = fixedPixel(y, roi.height, borderType, orvBorderInMemTop, orvBorderInMemBottom);
  const int column = fixedPixel(x, roi.width, borderType, orvBorderInMemLeft, orvBorderInMemRight);
  return row == borderValuePixel || column == borderValuePixel ? value : load(src, step, row, column);
}

// A float sum, or an exact one, of taps that aren't 0.
template <class R, class Element>
R tapSum(const std::vector<int>& taps, const Element& element) {
  R sum = 0;
  for (int i = 0; i < (int)taps.size(); ++i)
    if (taps[(size_t)i] != 0) sum = (R)(sum + (R)((R)taps[(size_t)i] * (R)element(i)));
  return sum;
}

// Rows -K / 2 .. height + K / 2 - 1, filtered. A constant row is the tap sum times the value, all over.
template <class T, class R>
std::vector<std::vector<R>> fixedRows(const T* src, int32_t step, OrvSize roi, const std::vector<int>& taps,
                                      int borderType, T value) {
  const int half = (int)taps.size() / 2;
  std::vector<std::vector<R>> rows;
  for (int y = -half; y < roi.height + half; ++y) {
    const int source = fixedPixel(y, roi.height, borderType, orvBorderInMemTop, orvBorderInMemBottom);
    std::vector<R> row;
    for (int x = 0; x < roi.width; ++x)
      row.push_back(tapSum<R>(taps, [&](int i) {
        return source == borderValuePixel ? value
                                          : borderedPixel(src, step, roi, x - half + i, source, borderType, value);
      }));
    if (source == borderValuePixel) {
      int sum = 0;
      for (const int tap : taps) sum += tap;
      for (R& r : row) r = (R)((R)sum * (R)value) + 0;
    }
    rows.push_back(row);
  }
  return rows;
}

// A whole number times 1 / divisor: to nearest in the first width & ~15 pixels, towards zero in the rest.
inline int8_t dividedByte(int sum, int divisor, bool whole) {
  const float value = (float)sum * (1.0f / (float)divisor);
  return whole ? nearestTo<int8_t>(value) : clampTo<int8_t>(value);
}

template <class D, class R>
D fixedColumn(const std::vector<std::vector<R>>& rows, const std::vector<int>& taps, int x, int y, int width,
              int divisor) {
  if constexpr (std::is_same<D, int8_t>::value) {
    std::vector<int16_t> shortTaps(taps.begin(), taps.end());
    std::vector<const int16_t*> pointers;
    for (size_t i = 0; i < taps.size(); ++i) pointers.push_back(rows[(size_t)y + i].data());
    return filteredColumn<int16_t, int8_t>(pointers.data(), width, 1, x, shortTaps.data(), (int)taps.size(), divisor,
                                           Arithmetic::scaled);
  } else {
    return tapSum<R>(taps, [&](int i) { return rows[(size_t)(y + i)][(size_t)x]; });
  }
}

// A filter with row taps and column taps.
template <class T, class R, class D>
void separable(const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, const std::vector<int>& rowTaps,
               const std::vector<int>& columnTaps, int borderType, T value, int divisor) {
  const auto rows = fixedRows<T, R>(src, srcStep, roi, rowTaps, borderType, value);
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x)
      store(dst, dstStep, y, x, fixedColumn<D>(rows, columnTaps, x, y, roi.width, divisor));
}

template <class T, class R, class D>
void laplacian3(const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, int borderType, T value,
                int divisor) {
  const auto a = fixedRows<T, R>(src, srcStep, roi, fixedTaps("Lap3"), borderType, value);
  const auto b = fixedRows<T, R>(src, srcStep, roi, fixedTaps("Eight3"), borderType, value);
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x) {
      const size_t r = (size_t)y, c = (size_t)x;
      if constexpr (std::is_same<D, int8_t>::value)
        store(dst, dstStep, y, x,
              fixedColumn<D>(std::vector<std::vector<R>>{a[r], b[r + 1], a[r + 2]}, {2, -1, 2}, x, 0, roi.width,
                             divisor));
      else store(dst, dstStep, y, x, (D)(2 * (a[r][c] + a[r + 2][c]) - b[r + 1][c]));
    }
}

template <class T, class R, class D>
void laplacian5(const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, int borderType, T value,
                int divisor) {
  const auto smooth = fixedRows<T, R>(src, srcStep, roi, fixedTaps("Sobel5"), borderType, value);
  const auto second = fixedRows<T, R>(src, srcStep, roi, fixedTaps("D2x5"), borderType, value);
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x) {
      const auto r = [&](int i) { return second[(size_t)(y + i)][(size_t)x]; };
      const R added = (R)((R)((R)((r(1) + r(3)) * 4) + (R)(r(2) * 6)) + (R)(r(0) + r(4)));
      const R sum = (R)(fixedColumn<R>(smooth, fixedTaps("D2x5"), x, y, roi.width, 1) + added);
      if constexpr (std::is_same<D, int8_t>::value)
        store(dst, dstStep, y, x, dividedByte(sum, divisor, x < (roi.width & ~15)));
      else store(dst, dstStep, y, x, (D)sum);
    }
}

template <class T, class R>
void lowpass(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int size, int borderType, T value) {
  const auto taps = fixedTaps(size == 3 ? "Avr3" : "Avr5");
  const auto rows = fixedRows<T, R>(src, srcStep, roi, taps, borderType, value);
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x) {
      const R sum = fixedColumn<R>(rows, taps, x, y, roi.width, 1);
      if constexpr (std::is_same<T, float>::value) store(dst, dstStep, y, x, sum * (size == 3 ? 0.11111111f : 0.04f));
      else store(dst, dstStep, y, x, (T)std::min(255, size == 3 ? ((sum + 5) * 7280) >> 16 : (sum * 2621) >> 16));
    }
}

}  // namespace reference

// Plain forms of the integral tables and of the deviation in a rectangle.
#pragma once
#include <math.h>
#include "reference/pointwise.h"

namespace reference {

// A pixel's part in a table of sums or squares.
inline int32_t itself(int32_t p) { return p; }
inline int32_t square(int32_t p) { return p * p; }

// Row sums are of type Sum (uint32_t wraps) and read back as Exact before they meet the table.
template <class Sum, class Exact, class S, class T, class Weight>
void upright(const S* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, T value, Weight weight) {
  for (int x = 0; x <= roi.width; ++x) store(dst, dstStep, 0, x, value);
  for (int y = 0; y < roi.height; ++y) {
    Sum sum = 0;
    store(dst, dstStep, y + 1, 0, value);
    for (int x = 0; x < roi.width; ++x) {
      sum += (Sum)weight(load(src, srcStep, y, x));
      store(dst, dstStep, y + 1, x + 1, (T)(load(dst, dstStep, y, x + 1) + (T)(Exact)sum));
    }
  }
}
template <class T, class Weight>
void uprightBytes(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, T value, Weight weight) {
  if constexpr (sizeof(T) == 8) upright<double, double>(src, srcStep, dst, dstStep, roi, value, weight);
  else upright<uint32_t, int32_t>(src, srcStep, dst, dstStep, roi, value, weight);
}

template <class T>
void integral(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, T value) {
  uprightBytes(src, srcStep, dst, dstStep, roi, value, itself);
}
inline void integralOfFloats(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roi) {
  upright<float, float>(src, srcStep, dst, dstStep, roi, 0.f, [](float p) { return p; });
}
template <class T, class Q>
void sqrIntegral(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, Q* sqr, int32_t sqrStep, OrvSize roi,
                 T value, Q valueSqr) {
  uprightBytes(src, srcStep, dst, dstStep, roi, value, itself);
  uprightBytes(src, srcStep, sqr, sqrStep, roi, valueSqr, square);
}

// `beyond`: the pixel behind the row's end takes part in the last but one column.
template <class T, class Weight>
void tilted(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, T value, Weight weight,
            bool beyond) {
  for (int x = 0; x < roi.width + 2; ++x)
    for (int y = 0; y < 2; ++y) store(dst, dstStep, y, x, value);
  for (int y = 2; y < roi.height + 2; ++y) {
    const auto t = [&](int up, int x) { return load(dst, dstStep, y - up, x); };
    store(dst, dstStep, y, 0, t(1, 1));
    for (int x = 1; x <= roi.width; ++x) {
      T sum = (T)weight(load(src, srcStep, y - 2, x - 1));
      if (x < roi.width || beyond) sum += (T)weight(load(src, srcStep, y - 2, x));
      store(dst, dstStep, y, x, (T)(sum + t(1, x - 1) + t(1, x + 1) - t(2, x)));
    }
    store(dst, dstStep, y, roi.width + 1, t(1, roi.width));
  }
}
template <class T>
void tiltedIntegral(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, T value) {
  tilted(src, srcStep, dst, dstStep, roi, value, itself, false);
}
template <class T, class Q>
void tiltedSqrIntegral(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, Q* sqr, int32_t sqrStep,
                       OrvSize roi, T value, Q valueSqr) {
  tilted(src, srcStep, dst, dstStep, roi, value, itself, true);
  tilted(src, srcStep, sqr, sqrStep, roi, valueSqr, square, true);
}

// Sum of a table over the rectangle that belongs to pixel (r, c).
template <bool isTilted, class T>
T rectangleSum(const T* table, int32_t step, int r, int c, OrvRect k) {
  const auto at = [&](int row, int column) { return load(table, step, row, column); };
  if (!isTilted) {
    const int x = k.x + c, y = k.y + r;
    return at(y + k.height, x + k.width) - at(y, x + k.width) + at(y, x) - at(y + k.height, x);
  }
  const int row = k.x + k.y + r, column = k.x - k.y + c, w = k.width, h = k.height;
  return at(row + w + h, column + w - h) - at(row + h, column - h) - at(row + w, column + w) + at(row, column);
}

template <bool isTilted>
void integerDeviation(const int32_t* src, int32_t srcStep, const int32_t* sqr, int32_t sqrStep, int32_t* dst,
                      int32_t dstStep, OrvSize roi, OrvRect rect, int32_t scaleFactor) {
  const float n = (float)((isTilted ? 2 : 1) * rect.width * rect.height);
  const int shift = (scaleFactor < 0 ? -scaleFactor : scaleFactor) % 32;
  const double power = shift == 31 ? -2147483648.0 : ldexp(1.0, shift), f = scaleFactor < 0 ? power : 1 / power;
  forEachElement(roi, 1, [&](int r, int c) {
    const float mean = (float)rectangleSum<isTilted>(src, srcStep, r, c, rect) / n;
    const float squares = (float)rectangleSum<isTilted>(sqr, sqrStep, r, c, rect) / n, product = mean * mean;
    const double v = trunc(sqrt((double)fmaxf(0.f, squares - product)) * f + 0.5);
    store(dst, dstStep, r, c, v < 2147483648.0 && v >= -2147483648.0 ? (int32_t)v : INT32_MIN);
  });
}

template <bool isTilted, class T>
void floatDeviation(const T* src, int32_t srcStep, const double* sqr, int32_t sqrStep, float* dst, int32_t dstStep,
                    OrvSize roi, OrvRect rect) {
  const int area = (isTilted ? 2 : 1) * rect.width * rect.height;
  const double inverse = 1.0 / area;
  forEachElement(roi, 1, [&](int r, int c) {
    const T sum = rectangleSum<isTilted>(src, srcStep, r, c, rect);
    const double squares = rectangleSum<isTilted>(sqr, sqrStep, r, c, rect);
    double variance;
    if (std::is_same<T, int32_t>::value) {
      const float mean = (float)sum / (float)area, product = mean * mean;
      variance = squares / area - (double)product;
    } else {
      const double mean = (double)sum * inverse;
      variance = (isTilted ? squares / area : squares * inverse) - mean * mean;
    }
    store(dst, dstStep, r, c, sqrtf(variance <= 0 ? 0.f : (float)variance));
  });
}

}  // namespace reference

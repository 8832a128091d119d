// Plain forms of the pyramid steps.
#pragma once
#include <math.h>
#include <algorithm>
#include <type_traits>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

template <class T>
using PyramidSum = std::conditional_t<std::is_floating_point<T>::value, float, int>;

// The sum at place x of a line of n elements, down (x even) and up (x of the doubled line).
template <class At>
auto lineDown(const At& p, int n, int x) {
  if (x == 0) return 6 * p(0) + 8 * p(std::min(1, n - 1)) + 2 * p(n < 3 ? 0 : 2);
  if (x == n - 1) return 6 * p(x) + 8 * p(x - 1) + 2 * p(x - 2);
  if (x == n - 2) return 7 * p(x) + 4 * (p(x - 1) + p(x + 1)) + p(x - 2);
  return p(x - 2) + 4 * p(x - 1) + 6 * p(x) + 4 * p(x + 1) + p(x + 2);
}
template <class At>
auto lineUp(const At& p, int n, int x) {
  const int i = x / 2;
  if (i == n - 1) return x % 2 || n == 1 ? 8 * p(i) : 7 * p(i) + p(i - 1);
  if (x % 2) return 4 * (p(i) + p(i + 1));
  return i == 0 ? 6 * p(0) + 2 * p(1) : p(i - 1) + 6 * p(i) + p(i + 1);
}

// sum / 2^bits, rounded.
template <class T, class S>
T pyramidLevel(S sum, int bits) {
  if constexpr (std::is_floating_point<T>::value) return sum * (1.f / (float)(1 << bits));
  else return (T)((sum + (1 << bits >> 1)) >> bits);
}

template <class T>
void pyrDown(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int C) {
  using S = PyramidSum<T>;
  const int w = roi.width, h = roi.height;
  forEachElement({(w + 1) / 2, (h + 1) / 2}, C, [&](int y, int x) {
    const auto at = [&](int row, int column) { return (S)load(src, srcStep, row, column * C + x % C); };
    const int px = 2 * (x / C), py = 2 * y;
    const auto along = [&](int row) { return lineDown([&](int c) { return at(row, c); }, w, px); };
    const auto down = [&](int column) { return lineDown([&](int r) { return at(r, column); }, h, py); };
    const auto mirrored = [&](int r) { return along(r < 0 ? -r : r >= h ? 2 * (h - 1) - r : r); };
    T value;
    if (h < 3) value = pyramidLevel<T>((S)(along(0) + along(h - 1)), 5);
    else if (w < 3) value = pyramidLevel<T>((S)(down(0) + down(w - 1)), 5);
    else
      value = pyramidLevel<T>(
          (S)(6 * along(py) + 4 * (mirrored(py - 1) + mirrored(py + 1)) + mirrored(py - 2) + mirrored(py + 2)), 8);
    store(dst, dstStep, y, x, value);
  });
}

template <class T>
void pyrUp(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int C) {
  using S = PyramidSum<T>;
  const int w = roi.width, h = roi.height;
  forEachElement({2 * w, 2 * h}, C, [&](int y, int x) {
    const auto at = [&](int row, int column) { return (S)load(src, srcStep, row, column * C + x % C); };
    const int px = x / C, i = y / 2;
    const auto along = [&](int row) { return lineUp([&](int c) { return at(row, c); }, w, px); };
    T value;
    if (h == 1) value = pyramidLevel<T>(along(0), 3);
    else if (w == 1) value = pyramidLevel<T>(lineUp([&](int r) { return at(r, 0); }, h, y), 3);
    else if (y % 2) value = pyramidLevel<T>(along(i) + along(std::min(i + 1, h - 1)), 4);
    else value = pyramidLevel<T>(along(i ? i - 1 : 1) + 6 * along(i) + along(std::min(i + 1, h - 1)), 6);
    store(dst, dstStep, y, x, value);
  });
}

}  // namespace reference

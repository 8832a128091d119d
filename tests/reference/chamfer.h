// Chamfer transforms, pixel by pixel with the whole half mask.
#pragma once
#include <algorithm>
#include <limits>
#include <type_traits>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

struct Step {
  int dx, dy;
  double cost;
};

// Lowers each pixel in turn to its neighbours of the half mask plus their costs; tells whether one fell. Integers add
// up exactly and saturate, floats in single precision.
template <class T>
bool chamferPass(T* dst, int32_t step, OrvSize roi, const std::vector<Step>& half, double bottomTwo, int direction) {
  bool fell = false;
  for (int i = 0; i < roi.width * roi.height; ++i) {
    const int k = direction > 0 ? i : roi.width * roi.height - 1 - i, x = k % roi.width, y = k / roi.width;
    T v = load(dst, step, y, x);
    const auto take = [&](int dx, int dy, double cost) {
      const int nx = x + direction * dx, ny = y + direction * dy;
      if (nx < 0 || nx >= roi.width || ny < 0 || ny >= roi.height) return;
      const T n = load(dst, step, ny, nx);
      if constexpr (std::is_floating_point<T>::value) v = std::min(v, n + (float)cost);
      else v = (T)std::min<double>(v, n + cost);
    };
    for (const Step& s : half) take(s.dx, s.dy, s.cost);
    if (y == roi.height - 1 && bottomTwo > 0) take(-2, 0, bottomTwo);
    fell |= v < load(dst, step, y, x);
    store(dst, step, y, x, v);
  }
  return fell;
}

template <class T, class Metric, int size>
void chamfer(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, const Metric* metrics) {
  using W = std::conditional_t<std::is_same<Metric, float>::value, float, double>;
  const W a = (W)metrics[0], b = (W)metrics[1], c = size == 5 ? (W)metrics[2] : 0, m = std::min<W>(2 * a, b);
  const W slack = std::is_same<Metric, float>::value ? (W)1e-7f : 0;
  const auto above = [&](W p, W q, W scale) { return p - q > slack * scale; };
  const bool three = size == 3 || (slack > 0 ? c - a - m > -slack * (a + m) : c >= a + m);
  const bool plain = above(m, a, m) && above(c, 2 * a, c) && above(2 * c, 3 * m, c);
  std::vector<Step> half = {{-1, 0, a}, {0, -1, a}, {-1, -1, b}, {1, -1, b}};
  if (!three) {
    const W one = plain ? a : std::min<W>(a, 3 * c), diagonal = plain ? b : std::min<W>(2 * c, m);
    half = {{-1, 0, one}, {0, -1, one}, {-1, -1, diagonal}, {1, -1, diagonal}};
    for (const int side : {-1, 1}) half.push_back({2 * side, -1, c}), half.push_back({side, -2, c});
    const W two = std::min({2 * one, 2 * diagonal, 2 * c}), corner = std::min<W>(c + one, 2 * diagonal);
    if (!plain) half.insert(half.end(), {{-2, 0, two}, {0, -2, two}, {-2, -2, corner}, {2, -2, corner}});
  }
  forEachElement(roi, 1, [&](int y, int x) {
    const bool seed = load(src, srcStep, y, x) == 0;
    const T most = std::is_integral<T>::value ? std::numeric_limits<T>::max() : (T)3.4028235e38f;
    store(dst, dstStep, y, x, seed ? (T)0 : most);
  });
  const W bottom = three && a > b && std::min(roi.width, roi.height) >= 2 ? 2 * b : 0;
  bool again = true;
  while (again) {
    again = chamferPass(dst, dstStep, roi, half, bottom, 1);
    again |= chamferPass(dst, dstStep, roi, half, bottom, -1);
    again &= !three && (roi.width < 4 || roi.height < 4);
  }
}

}  // namespace reference

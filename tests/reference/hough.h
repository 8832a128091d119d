// Plain line detection: the whole accumulator, one vote at a time, and the random walk with unpacked lists.
#pragma once
#include <math.h>
#include <algorithm>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

struct HoughGrid {
  int numRho, numAngle, center;
  HoughGrid(OrvSize roi, OrvPointPolar delta)
      : numRho((int)((float)(2 * (roi.width + roi.height) + 1) / delta.rho)),
        numAngle((int)(3.14159 / (double)delta.theta) + 1),
        center((std::max(numRho, 1) - 1) >> 1) {}
};

// `region` is null for the unlimited form.
inline std::vector<OrvPointPolar> houghLines(const uint8_t* src, int32_t step, OrvSize roi, OrvPointPolar delta,
                                             int32_t threshold, int32_t most, const OrvPointPolar* region) {
  const HoughGrid g(roi, delta);
  std::vector<std::vector<int>> votes((size_t)g.numAngle + 2, std::vector<int>((size_t)g.numRho + 2));
  const double scale = (double)(1.0f / delta.rho) * 1024.0;
  const auto counts = [&](int i) {
    const float theta = (float)i * delta.theta;
    const auto bound = [&](int k) { return std::min(std::max(region[k].theta, 0.f), 3.14159f); };
    return !region || (theta >= bound(0) && theta <= bound(1));
  };
  float angle = 0;
  for (int i = 0; i < g.numAngle; ++i, angle += delta.theta) {
    const int c = (int)(cos((double)angle) * scale), s = (int)(sin((double)angle) * scale);
    forEachElement(roi, 1, [&](int y, int x) {
      if (!load(src, step, y, x) || !counts(i)) return;
      int r = (((int)lrintf((float)x * (float)c + (float)y * (float)s) + 512) >> 10) + g.center;
      if (region) {
        r = ((c * x + 512 + s * y) >> 10) + g.center;
        const float center = (float)g.center;
        if (r < (int)(region[0].rho / delta.rho + center) || r > (int)(center + region[1].rho / delta.rho)) return;
      }
      if (r >= 0 && r < g.numRho) ++votes[(size_t)i + 1][(size_t)r + 1];
    });
  }
  struct Peak {
    int votes, rho, angle;
  };
  std::vector<Peak> peaks;
  for (int i = 1; i <= g.numAngle; ++i)
    for (int r = 1; r <= g.numRho; ++r) {
      const auto at = [&](int a, int b) { return votes[(size_t)(i + a)][(size_t)(r + b)]; };
      const int m = at(0, 0);
      if (m > threshold && m > at(0, -1) && m >= at(0, 1) && m > at(-1, 0) && m >= at(1, 0))
        peaks.push_back({m, r - 1, i - 1});
    }
  std::stable_sort(peaks.begin(), peaks.end(), [](const Peak& a, const Peak& b) { return a.votes > b.votes; });
  std::vector<OrvPointPolar> lines;
  for (size_t i = 0; i < peaks.size() && (int)i < most; ++i)
    lines.push_back({(float)(peaks[i].rho - g.center) * delta.rho, (float)peaks[i].angle * delta.theta});
  return lines;
}

// All segments, in order.
inline std::vector<std::vector<int>> houghSegments(const uint8_t* src, int32_t step, OrvSize roi, OrvPointPolar delta,
                                                   int32_t threshold, int32_t length, int32_t gap) {
  const HoughGrid g(roi, delta);
  std::vector<float> cosine, sine;
  float angle[2] = {0, delta.theta};
  for (int i = 0; i < g.numAngle; ++i) {
    cosine.push_back((float)(cos((double)angle[i % 2]) * (double)(1.0f / delta.rho)));
    sine.push_back((float)(sin((double)angle[i % 2]) * (double)(1.0f / delta.rho)));
    angle[i % 2] += 2 * delta.theta;
  }
  std::vector<int> votes((size_t)(g.numAngle * g.numRho)), mask((size_t)(roi.width * roi.height));
  std::vector<OrvPoint> list;
  forEachElement(roi, 1, [&](int y, int x) {
    if (load(src, step, y, x)) mask[(size_t)(y * roi.width + x)] = 1, list.push_back({x, y});
  });
  const auto cell = [&](int i, int x, int y) -> int* {
    const int r = (int)(cosine[(size_t)i] * (float)x + sine[(size_t)i] * (float)y) + g.center;
    return r >= 0 && r < g.numRho ? &votes[(size_t)(i * g.numRho + r)] : nullptr;
  };
  std::vector<std::vector<int>> found;
  uint64_t state = ~0ull;
  for (; !list.empty(); list.pop_back()) {
    state = (state >> 32) + (state & 0xFFFFFFFFu) * 0xF83F630Aull;
    const size_t pick = (uint32_t)state % list.size();
    const OrvPoint p = list[pick];
    list[pick] = list.back();
    if (!mask[(size_t)(p.y * roi.width + p.x)]) continue;
    int best = -1, largest = threshold - 1;
    for (int i = 0; i < g.numAngle; ++i)
      if (int* const v = cell(i, p.x, p.y)) {
        if (++*v > largest) largest = *v, best = i;
      }
    if (best < 0) continue;
    const float a = cosine[(size_t)best], b = -sine[(size_t)best];
    const bool mainX = fabsf(b) > fabsf(a);
    const int dx = mainX ? (b > 0 ? 1 : -1) : (int)(b * 65536.0f / fabsf(a));
    const int dy = mainX ? (int)(a * 65536.0f / fabsf(b)) : (a > 0 ? 1 : -1);
    // visit(x, y, mask) until it says stop
    const auto walk = [&](int sign, auto visit) {
      for (int k = 0;; ++k) {
        const int x = mainX ? p.x + sign * k * dx : (((p.x << 16) | 0x8000) + sign * k * dx) >> 16;
        const int y = mainX ? (((p.y << 16) | 0x8000) + sign * k * dy) >> 16 : p.y + sign * k * dy;
        if (x < 0 || y < 0 || x >= roi.width || y >= roi.height) return;
        if (visit(x, y, mask[(size_t)(y * roi.width + x)])) return;
      }
    };
    int end[4] = {};
    for (int side = 0; side < 2; ++side) {
      int missing = 0;
      walk(side ? -1 : 1, [&](int x, int y, int& set) {
        if (set) end[2 * side] = x, end[2 * side + 1] = y, missing = 0;
        return !set && ++missing > gap;
      });
    }
    const bool good = abs(end[2] - end[0]) >= length || abs(end[3] - end[1]) >= length;
    for (int side = 0; side < 2; ++side)
      walk(side ? -1 : 1, [&](int x, int y, int& set) {
        for (int i = 0; i < g.numAngle && set && good; ++i)
          if (int* const v = cell(i, x, y)) --*v;
        set = 0;
        return x == end[2 * side] && y == end[2 * side + 1];
      });
    if (good) found.push_back({end[0], end[1], end[2], end[3]});
  }
  return found;
}

}  // namespace reference

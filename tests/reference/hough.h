// Plain line detection: the whole accumulator, one vote at a time.
#pragma once
#include <math.h>
#include <algorithm>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

// `region` is null for the unlimited form.
inline std::vector<OrvPointPolar> houghLines(const uint8_t* src, int32_t step, OrvSize roi, OrvPointPolar delta,
                                             int32_t threshold, int32_t most, const OrvPointPolar* region) {
  const int numRho = (int)((float)(2 * (roi.width + roi.height) + 1) / delta.rho);
  const int numAngle = (int)(3.14159 / (double)delta.theta) + 1, middle = (std::max(numRho, 1) - 1) >> 1;
  std::vector<std::vector<int>> votes((size_t)numAngle + 2, std::vector<int>((size_t)numRho + 2));
  const double scale = (double)(1.0f / delta.rho) * 1024.0;
  const auto counts = [&](int i) {
    const float theta = (float)i * delta.theta;
    return !region || (theta >= std::max(region[0].theta, 0.f) && theta <= std::min(region[1].theta, 3.14159f));
  };
  float angle = 0;
  for (int i = 0; i < numAngle; ++i, angle += delta.theta) {
    const int c = (int)(cos((double)angle) * scale), s = (int)(sin((double)angle) * scale);
    forEachElement(roi, 1, [&](int y, int x) {
      if (!load(src, step, y, x) || !counts(i)) return;
      int r = (((int)lrintf((float)x * (float)c + (float)y * (float)s) + 512) >> 10) + middle;
      if (region) {
        r = ((c * x + 512 + s * y) >> 10) + middle;
        const float center = (float)middle;
        if (r < (int)(region[0].rho / delta.rho + center) || r > (int)(center + region[1].rho / delta.rho)) return;
      }
      if (r >= 0 && r < numRho) ++votes[(size_t)i + 1][(size_t)r + 1];
    });
  }
  struct Peak {
    int votes, rho, angle;
  };
  std::vector<Peak> peaks;
  for (int i = 1; i <= numAngle; ++i)
    for (int r = 1; r <= numRho; ++r) {
      const auto at = [&](int a, int b) { return votes[(size_t)(i + a)][(size_t)(r + b)]; };
      const int m = at(0, 0);
      if (m > threshold && m > at(0, -1) && m >= at(0, 1) && m > at(-1, 0) && m >= at(1, 0))
        peaks.push_back({m, r - 1, i - 1});
    }
  std::stable_sort(peaks.begin(), peaks.end(), [](const Peak& a, const Peak& b) { return a.votes > b.votes; });
  std::vector<OrvPointPolar> lines;
  for (size_t i = 0; i < peaks.size() && (int)i < most; ++i)
    lines.push_back({(float)(peaks[i].rho - middle) * delta.rho, (float)peaks[i].angle * delta.theta});
  return lines;
}

}  // namespace reference

// Plain Canny edges: whole images of magnitudes and directions, edges grown until nothing changes.
#pragma once
#include <math.h>
#include <vector>
#include "reference/border.h"
#include "reference/gradient_vector.h"
#include "reference/pointwise.h"

namespace reference {

enum CannySector { along, rising, down, falling };
struct CannyPixel {
  double magnitude = 0;  // 0 if it doesn't survive the low threshold
  CannySector sector = along;
};

template <class Pixel>
void cannyEdges(OrvSize roi, double high, uint8_t* dst, int32_t dstStep, const Pixel& pixel) {
  const int w = roi.width, h = roi.height;
  std::vector<CannyPixel> all((size_t)((w + 2) * (h + 2)));
  const auto at = [&](int x, int y) -> CannyPixel& { return all[(size_t)((y + 1) * (w + 2) + x + 1)]; };
  for (int i = 0; i < w * h; ++i) at(i % w, i / w) = pixel(i % w, i / w);
  const int first[4][2] = {{-1, 0}, {1, -1}, {0, -1}, {-1, -1}};
  std::vector<uint8_t> weak(all.size()), edge(all.size());
  for (int i = 0; i < w * h; ++i) {
    const int x = i % w, y = i / w, *d = first[at(x, y).sector];
    const double m = at(x, y).magnitude, a = at(x + d[0], y + d[1]).magnitude, b = at(x - d[0], y - d[1]).magnitude;
    const bool straight = d[0] == 0 || d[1] == 0, kept = m != 0 && m > a && (straight ? m >= b : m > b);
    weak[(size_t)i] = kept;
    edge[(size_t)i] = kept && m > high;
  }
  for (bool grown = true; grown;) {
    grown = false;
    for (int i = 0; i < w * h; ++i)
      for (int k = 0; k < 9 && weak[(size_t)i] && !edge[(size_t)i]; ++k) {
        const int x = i % w + k % 3 - 1, y = i / w + k / 3 - 1;
        if (x < 0 || y < 0 || x >= w || y >= h || !edge[(size_t)(y * w + x)]) continue;
        edge[(size_t)i] = 1, grown = true;
      }
  }
  for (int i = 0; i < w * h; ++i) store(dst, dstStep, i / w, i % w, (uint8_t)(edge[(size_t)i] ? 255 : 0));
}

inline CannySector cannySector(bool isDown, bool isAlong, bool sameSign) {
  return isDown ? down : isAlong ? along : sameSign ? falling : rising;
}

inline void cannyShorts(const int16_t* dx, int32_t dxStep, const int16_t* dy, int32_t dyStep, uint8_t* dst,
                        int32_t dstStep, OrvSize roi, float low, float high, uint8_t*) {
  cannyEdges(roi, trunc(high), dst, dstStep, [&](int x, int y) -> CannyPixel {
    const int gx = load(dx, dxStep, y, x), gy = load(dy, dyStep, y, x);
    int m = abs(gx) + abs(gy);
    if (x < roi.width / 8 * 8 && m > 65535) m = 65535;
    const float ax = (float)abs(gx), ay = (float)abs(gy);
    bool isDown = ax * 2.4142137f < ay, isAlong = ay < ax * 0.41421357f;
    if (x >= roi.width / 4 * 4) {
      isDown = ay > (float)(2.414213562373095 * ax);
      isAlong = (float)(ax * 0.41421356237309503) > ay;
    }
    return {m > trunc(low) ? m : 0.0, cannySector(isDown, isAlong, (gx < 0) == (gy < 0))};
  });
}

inline void cannyFloats(const float* dx, int32_t dxStep, const float* dy, int32_t dyStep, uint8_t* dst, int32_t dstStep,
                        OrvSize roi, float low, float high, uint8_t*) {
  cannyEdges(roi, high, dst, dstStep, [&](int x, int y) -> CannyPixel {
    const float gx = load(dx, dxStep, y, x), gy = load(dy, dyStep, y, x), ax = fabsf(gx), ay = fabsf(gy), m = ax + ay;
    return {m < low ? 0 : m,
            cannySector(ax * 2.4142137f < ay, ay < ax * 0.41421357f, std::signbit(gx) == std::signbit(gy))};
  });
}

inline void cannyImage(const uint8_t* src, int32_t step, uint8_t* dst, int32_t dstStep, OrvSize roi, GradientForm form,
                       int32_t borderType, uint8_t value, float low, float high, bool squared) {
  const int kind = borderType & 1 ? orvBorderRepl : orvBorderConst, half = form == GradientForm::sobel5 ? 2 : 1;
  cannyEdges(roi, high, dst, dstStep, [&](int x, int y) -> CannyPixel {
    const auto r = [&](int i, int c) -> int {
      return borderedPixel(src, step, roi, x + c, y + i - half, kind | (borderType & 240), value);
    };
    int gx, gy;
    gradient<int>(form, r, &gx, &gy);
    if (form != GradientForm::scharr3) gx = -gx;
    const float ax = (float)abs(gx), ay = (float)abs(gy), m = squared ? sqrtf(ax * ax + ay * ay) : ax + ay;
    return {m > low ? m : 0, cannySector(ay > ax + ax + 0.41421357f * ax, 0.41421357f * ax > ay, (gx < 0) == (gy < 0))};
  });
}

}  // namespace reference

// Structure tensors and what is made of them, a pixel at a time.
#pragma once
#include <math.h>
#include "reference/filter_plan.h"
#include "reference/gradient_vector.h"

namespace reference {

// Means xx, yy, xy of the products of derivatives over windows. derivatives(x, y, &dx, &dy) is asked inside the region
// and its sides in memory only; beyond other sides products are repeated or 0.
struct Tensor {
  int n, left, top, width, height;  // of the window; the columns and rows that are computed
  bool repeated;
  std::vector<float> dx, dy;

  template <class F>
  Tensor(OrvSize roi, int window, bool replicated, int sides, const F& derivatives) : n(window), repeated(replicated) {
    const int lo = (n - 1) / 2, hi = n / 2;
    left = sides & orvBorderInMemLeft ? -lo : 0;
    top = sides & orvBorderInMemTop ? -lo : 0;
    width = roi.width - left + (sides & orvBorderInMemRight ? hi : 0);
    height = roi.height - top + (sides & orvBorderInMemBottom ? hi : 0);
    dx.resize((size_t)(width * height)), dy.resize(dx.size());
    for (int i = 0; i < width * height; ++i)
      derivatives(left + i % width, top + i / width, &dx[(size_t)i], &dy[(size_t)i]);
  }
  void means(int x, int y, float* xx, float* yy, float* xy) const {
    float sums[3] = {0, 0, 0};
    for (int i = 0; i < n; ++i) {
      float row[3] = {0, 0, 0};
      for (int j = 0; j < n; ++j) {
        const int column = x - (n - 1) / 2 + j - left, line = y - (n - 1) / 2 + i - top;
        const int u = std::min(std::max(column, 0), width - 1), v = std::min(std::max(line, 0), height - 1);
        if (!repeated && (u != column || v != line)) continue;
        const float a = dx[(size_t)(v * width + u)], b = dy[(size_t)(v * width + u)];
        row[0] += a * a, row[1] += b * b, row[2] += a * b;
      }
      for (int p = 0; p < 3; ++p) sums[p] += row[p];
    }
    const float scale = 1.0f / (float)(n * n);
    *xx = sums[0] * scale, *yy = sums[1] * scale, *xy = sums[2] * scale;
  }
};

template <class T>
Tensor harrisTensor(const T* src, int32_t step, OrvSize roi, const FilterPlan& plan) {
  using R = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  return {roi, plan.window, plan.kind() == orvBorderRepl, plan.sides(), [&](int x, int y, float* dx, float* dy) {
            const auto pixel = [&](int i, int c) {
              return (R)borderedPixel(src, step, roi, x + c, y - plan.half() + i, plan.kind() | plan.sides(),
                                      (T)plan.value);
            };
            R gx = (R)(pixel(1, 1) - pixel(1, -1)), gy = (R)(pixel(0, 0) - pixel(2, 0));
            if (plan.filter != orvFilterKernelCentralDiff) gradient(plan.form(), pixel, &gx, &gy);
            *dx = (float)gx, *dy = (float)gy;
          }};
}

// The Harris response; in the last width & 3 columns the terms are subtracted the other way round.
template <class T>
void harris(const T* src, int32_t step, FilterPlan plan, float* dst, int32_t dstStep, OrvSize roi, uint8_t*, float k,
            float scale) {
  const Tensor tensor = harrisTensor(src, step, roi, plan);
  const auto f = (float)(pow(plan.window, 4) * (double)scale);
  forEachElement(roi, 1, [&](int y, int x) {
    float a, b, c;
    tensor.means(x, y, &a, &b, &c);
    const float square = (a + b) * (k * (a + b));
    store(dst, dstStep, y, x, (x < (roi.width & ~3) ? a * b - c * c - square : a * b - square - c * c) * f);
  });
}

inline void lineSuppression(const uint8_t* src, int32_t step, FilterPlan plan, const uint8_t* feature,
                            int32_t featureStep, uint8_t* dst, int32_t dstStep, OrvSize roi, uint8_t*,
                            float threshold) {
  const Tensor tensor = harrisTensor(src, step, roi, plan);
  forEachElement(roi, 1, [&](int y, int x) {
    float a, b, c;
    tensor.means(x, y, &a, &b, &c);
    const bool line = (a + b) * (a + b) > (a * b - c * c) * threshold;
    store(dst, dstStep, y, x, line ? (uint8_t)0 : load(feature, featureStep, y, x));
  });
}

// The smaller eigenvalue, or the record of both and of their vectors; derivatives by the plain filters.
template <bool records, class T>
void eigen(const T* src, int32_t step, float* dst, int32_t dstStep, OrvSize roi, int kernel, int aperture, int window,
           uint8_t*) {
  using R = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  const bool scharr = kernel == orvKernelScharr;
  std::vector<R> dx((size_t)(roi.width * roi.height)), dy = dx;
  const auto filter = [&](const std::string& row, const std::string& column, std::vector<R>& to) {
    separable<T, R>(row, column)(src, step, to.data(), roi.width * (int32_t)sizeof(R), roi, aperture * 11,
                                 orvBorderRepl, 0, 1, nullptr);
  };
  filter(scharr ? "Dx" : "DxNeg", scharr ? "Scharr" : "Sobel", dx);
  filter(scharr ? "Scharr" : "Sobel", "Dx", dy);
  const Tensor tensor(roi, window, true, 0, [&](int x, int y, float* gx, float* gy) {
    *gx = (float)dx[(size_t)(y * roi.width + x)], *gy = (float)dy[(size_t)(y * roi.width + x)];
  });
  const float scale = 1.0f / (float)(255 << (2 * aperture - 2)), s = scharr ? scale * 0.6125f : scale;
  forEachElement(roi, 1, [&](int y, int x) {
    float a, b, c, out[6] = {};
    tensor.means(x, y, &a, &b, &c);
    if (!records) return store(dst, dstStep, y, x, (a + b - sqrtf((a - b) * (a - b) + c * c * 4.0f)) * (s * 0.5f));
    a *= s, b *= s, c *= s;
    const float t = std::max(a, b) * 0.01f, r = sqrtf(4.0f * c * c + (a - b) * (a - b));
    if (t <= std::min(a, b) && t <= a * b - c * c) {
      out[0] = (a + b + r) * 0.5f, out[1] = (a + b - r) * 0.5f, out[2] = out[5] = 1;
      for (int i = 0; i < 2 && t <= fabsf(c); ++i) {
        const float e = out[i] - a, q = scharr ? c : -c, inverse = 1.0f / std::max(1.1920929e-7f, sqrtf(e * e + q * q));
        out[2 + 2 * i] = q * inverse, out[3 + 2 * i] = e * inverse;
      }
    }
    for (int i = 0; i < 6; ++i) store(dst, dstStep, y, 6 * x + i, out[i]);
  });
}

}  // namespace reference

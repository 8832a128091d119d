// Structure tensors and what is made of them, a pixel at a time.
#pragma once
#include <math.h>
#include "reference/gradient_vector.h"

namespace reference {

struct Derivatives {
  float dx, dy;
};

// Means A, B, C of the products over windows. derivatives(x, y) is asked inside the region and its sides in memory
// only; beyond other sides products are repeated or 0.
struct Tensor {
  int n, left, top, width, height;  // of the window; the columns and rows that are computed
  bool repeated;
  std::vector<Derivatives> computed;

  template <class F>
  Tensor(OrvSize roi, int window, bool replicated, int sides, const F& derivatives) : n(window), repeated(replicated) {
    const int lo = (n - 1) / 2, hi = n / 2;
    left = sides & orvBorderInMemLeft ? -lo : 0;
    top = sides & orvBorderInMemTop ? -lo : 0;
    width = roi.width - left + (sides & orvBorderInMemRight ? hi : 0);
    height = roi.height - top + (sides & orvBorderInMemBottom ? hi : 0);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) computed.push_back(derivatives(left + x, top + y));
  }
  Derivatives at(int x, int y) const {
    const int column = std::min(std::max(x - left, 0), width - 1), row = std::min(std::max(y - top, 0), height - 1);
    if (!repeated && (column != x - left || row != y - top)) return {0, 0};
    return computed[(size_t)row * (size_t)width + (size_t)column];
  }
  void means(int x, int y, float* a, float* b, float* c) const {
    float sums[3] = {0, 0, 0};
    for (int i = 0; i < n; ++i) {
      float row[3] = {0, 0, 0};
      for (int j = 0; j < n; ++j) {
        const Derivatives d = at(x - (n - 1) / 2 + j, y - (n - 1) / 2 + i);
        row[0] += d.dx * d.dx, row[1] += d.dy * d.dy, row[2] += d.dx * d.dy;
      }
      for (int p = 0; p < 3; ++p) sums[p] += row[p];
    }
    const float scale = 1.0f / (float)(n * n);
    *a = sums[0] * scale, *b = sums[1] * scale, *c = sums[2] * scale;
  }
};

// The derivatives of the eigenvalue detectors, by the plain filters with replicated sides.
template <class T>
Tensor eigenTensor(const T* src, int32_t step, OrvSize roi, bool scharr, int aperture, int window) {
  using R = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  std::vector<R> dx((size_t)(roi.width * roi.height)), dy = dx;
  const auto filter = [&](const std::string& row, const std::string& column, std::vector<R>& dst) {
    separable<T, R>(row, column)(src, step, dst.data(), roi.width * (int32_t)sizeof(R), roi, aperture * 11,
                                 orvBorderRepl, 0, 1, nullptr);
  };
  filter(scharr ? "Dx" : "DxNeg", scharr ? "Scharr" : "Sobel", dx);
  filter(scharr ? "Scharr" : "Sobel", "Dx", dy);
  return Tensor(roi, window, true, 0, [&](int x, int y) {
    const auto i = (size_t)(y * roi.width + x);
    return Derivatives{(float)dx[i], (float)dy[i]};
  });
}

inline float smallerEigenvalue(float a, float b, float c, float s) {
  return (a + b - sqrtf((a - b) * (a - b) + c * c * 4.0f)) * (s * 0.5f);
}

inline void eigenRecord(float a, float b, float c, float s, bool scharr, float* out) {
  a *= s, b *= s, c *= s;
  const float t = std::max(a, b) * 0.01f, r = sqrtf(4.0f * c * c + (a - b) * (a - b));
  std::fill(out, out + 6, 0.f);
  if (t > std::min(a, b) || t > a * b - c * c) return;
  out[0] = (a + b + r) * 0.5f, out[1] = (a + b - r) * 0.5f;
  if (t > fabsf(c)) {
    out[2] = out[5] = 1;
    return;
  }
  const float q = scharr ? c : -c;
  for (int i = 0; i < 2; ++i) {
    const float e = out[i] - a, inverse = 1.0f / std::max(1.1920929e-7f, sqrtf(e * e + q * q));
    out[2 + 2 * i] = q * inverse, out[3 + 2 * i] = e * inverse;
  }
}

// The Harris response of a pixel; in the last width & 3 columns the terms are subtracted the other way round.
inline float harris(float a, float b, float c, float k, float f, bool last) {
  const float square = (a + b) * (k * (a + b));
  return last ? (a * b - square - c * c) * f : (a * b - c * c - square) * f;
}

}  // namespace reference

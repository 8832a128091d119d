// Plain forms of the layer steps: the whole image at each stage, as the steps are defined.
#pragma once
#include <math.h>
#include <algorithm>
#include <type_traits>
#include <vector>
#include "framework/subject.h"

namespace reference {

// One channel of an image, elements of any stage.
template <class V>
struct Sheet {
  int width, height;
  std::vector<V> at;
  Sheet(int w, int h) : width(w), height(h), at((size_t)w * (size_t)h) {}
  template <class Value>
  Sheet(int w, int h, const Value& value) : Sheet(w, h) {
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) (*this)(y, x) = value(y, x);
  }
  V& operator()(int y, int x) { return at[(size_t)y * (size_t)width + (size_t)x]; }
  Sheet turned() {
    return {height, width, [&](int y, int x) { return (*this)(x, y); }};
  }
};

inline int mirrored(int p, int n) {
  while (p < 0 || p >= n) p = n == 1 ? 0 : p < 0 ? -p : 2 * (n - 1) - p;
  return p;
}

// T: the type of pixels. K: of the kernel. V: of intermediate values down, W: up.
template <class T, class K>
struct PyramidLayerPlain {
  static constexpr bool floats = std::is_floating_point<T>::value;
  using V = std::conditional_t<floats, float, int>;
  using W = std::conditional_t<sizeof(T) == 1, int, float>;
  std::vector<K> k;
  float rate;

  PyramidLayerPlain(std::vector<K> kernel, float r, bool up) : k(kernel), rate(r) {
    const int half = (int)k.size() / 2;
    V sum = 0;
    for (int i = 0; i < half; ++i) sum += kernel[(size_t)i];
    sum = kernel[(size_t)half] + 2 * sum;
    for (int i = 0; i <= half; ++i) {
      V v = kernel[(size_t)i];
      if (floats) v = fabsf((float)sum) > 1.1754944e-38f ? v / sum : v;
      else if (sum != 0 && up) v = (V)floor((double)(int)((float)v / (float)sum * 16384.f + 0.5f) / 2);
      else if (sum != 0) v = (V)floor((double)((int)v * 16384 / (int)sum) / (sizeof(T) == 1 ? 2 : 4));
      k[(size_t)i] = k[k.size() - 1 - (size_t)i] = (K)v;
    }
  }
  float tap(int i) const { return (float)k[(size_t)i]; }
  int half() const { return (int)k.size() / 2; }

  // Sums along the rows; `each` shifts every product.
  Sheet<V> filtered(Sheet<V> in, int shift, int round, bool each, bool narrow) const {
    return {in.width, in.height, [&](int y, int x) {
              const auto pixel = [&](int i) { return in(y, mirrored(x + i, in.width)); };
              V sum = floats ? (V)k[(size_t)half()] * pixel(0) : (V)round;
              if constexpr (floats) {
                for (int i = 1; i <= half(); ++i) sum += (V)k[(size_t)(half() - i)] * (pixel(-i) + pixel(i));
              } else {
                for (int i = -half(); i <= half(); ++i)
                  sum += (k[(size_t)(half() + i)] * pixel(i)) >> (each ? shift : 0);
                sum >>= each ? 0 : shift;
              }
              return narrow ? (V)std::clamp(sum, (V)-32768, (V)32767) : sum;
            }};
  }

  // Rows sampled at `width` places.
  Sheet<V> resampled(Sheet<V> in, int width) const {
    return {width, in.height, [&](int y, int i) {
              const float pos = (float)i * rate, f = pos - (float)(int)pos;
              const int x = std::min((int)pos, in.width - 1);
              if (x == in.width - 1) return in(y, x);
              const float next = (float)in(y, x + 1) * f, rounded = floats ? next : next + 0.5f;
              return (V)(rounded + (float)in(y, x) * (1.f - f));
            }};
  }

  // `single`: an image of one channel.
  Sheet<V> down(Sheet<V> src, OrvSize size, bool single) const {
    constexpr bool bytes = sizeof(T) == 1;
    const bool small = std::min(src.width, src.height) <= (int)k.size();
    const bool halved = rate >= 1.99998f && rate <= 2.00002f;
    const bool close = rate > 1.99998f && rate < 2.00002f;
    const bool quick = bytes && single && close && !small && k.size() == 5;
    Sheet<V> out = filtered(src, bytes ? 8 : 10, 0, small, bytes).turned();
    if (quick) out = filtered(out, 18, 3 << 16, false, false).turned();
    else out = filtered(out, bytes ? 15 : 11, bytes ? 1 << 14 : 1 << 10, false, bytes).turned();
    if (!halved) out = resampled(resampled(out, size.width).turned(), size.height).turned();
    return {size.width, size.height, [&](int y, int x) {
              V v =
                  halved ? out(2 * std::min(y, (src.height - 1) / 2), 2 * std::min(x, (src.width - 1) / 2)) : out(y, x);
              if constexpr (!floats) v = std::clamp(quick ? v : (v + 4) >> 3, 0, bytes ? 255 : 65535);
              return v;
            }};
  }

  // visit(place, weight, landed) of source pixel p.
  template <class Visit>
  void spread(int p, int places, const Visit& visit) const {
    const float pos = (float)p * rate;
    const int i = (int)(100 + pos) - 100, c = k[0] == 0 ? half() - 1 : half();
    const float f = pos - (float)i;
    const bool landed = fabsf(f) <= 1.1754944e-38f;
    for (int j = landed ? i - c : i - half() + 1; j <= i + (landed ? c : half()) && j < places; ++j) {
      const int m = j - i + half() - (landed ? 0 : 1);
      if (j >= 0) visit(j, landed ? tap(m) : tap(m) * f + tap(m + 1) * (1.f - f), landed);
    }
  }
  // One pass along the rows: 1 or 2.
  Sheet<W> spreadRows(Sheet<W> in, int width, const std::vector<float>& norm, int pass) const {
    Sheet<W> out(width, in.height);
    const int q = (int)((double)half() / (double)rate + 0.5);
    for (int y = 0; y < in.height; ++y) {
      for (int p = -q; p < in.width + q; ++p) {
        const W v = in(y, mirrored(p, in.width));
        spread(p, width, [&](int j, float weight, bool landed) {
          if (sizeof(T) > 1) out(y, j) += (W)((float)v * weight);
          else if (landed) out(y, j) += v * (W)weight;
          else out(y, j) += (W)((double)((float)v * weight) + (pass == 1 ? 0.5 : 0));
        });
      }
      for (int x = 0; x < width; ++x) {
        const float sum = (float)out(y, x) * norm[(size_t)x];
        if (sizeof(T) == 2 && pass == 2) out(y, x) = (W)(int)std::clamp(sum, 0.f, 65535.f);
        else if (sizeof(T) > 1) out(y, x) = (W)sum;
        else if (pass == 1) out(y, x) = (W)((int)(sum + 128.f) >> 8);
        else out(y, x) = (W)std::clamp((int)(sum + 2097152.f) >> 22, 0, 255);
      }
    }
    return out;
  }
  Sheet<W> up(Sheet<W> src, OrvSize size) const {
    const int larger = std::max(size.width, size.height), q = (int)((double)half() / (double)rate + 0.5);
    std::vector<float> norm((size_t)larger);
    for (int p = -q; p < larger + q; ++p)
      spread(p, larger, [&](int j, float weight, bool) { norm[(size_t)j] += weight; });
    for (float& v : norm)
      if (fabsf(v) > 1.1754944e-38f) v = (sizeof(T) == 1 ? 32768.f : 1.f) / v;
    return spreadRows(spreadRows(src, size.width, norm, 1).turned(), size.height, norm, 2).turned();
  }
};

}  // namespace reference

// Plain forms of the statistics: one loop over the pixels that take part, integers summed exactly.
#pragma once
#include <math.h>
#include <type_traits>
#include "reference/pointwise.h"

namespace reference {

// The pixels that take part. One-channel images have 1 channel and channel of interest 1; no mask takes all.
template <class T>
struct Pixels {
  const T* src;
  int32_t srcStep;
  const uint8_t* mask;
  int32_t maskStep;
  OrvSize roi;
  int channels = 1, coi = 1;

  T at(int x, int y) const { return load(src, srcStep, y, x * channels + coi - 1); }
  // body(x, y) in the order of rows.
  template <class Body>
  void forEach(const Body& body) const {
    forEachElement(roi, 1, [&](int y, int x) {
      if (!mask || load(mask, maskStep, y, x)) body(x, y);
    });
  }
};

// body(pixels, output...) as a function with the arguments of a member: an image, perhaps a mask, the region, perhaps
// the channel of interest, then what it writes.
template <class T, class Body, class First, class... Rest>
void callMember(Pixels<T> p, const Body& body, First first, Rest... rest) {
  if constexpr (std::is_same<First, OrvSize>::value) {
    p.roi = first, callMember(p, body, rest...);
  } else if constexpr (std::is_convertible<First, const uint8_t*>::value) {
    p.mask = first, callMember(p, body, rest...);
  } else if constexpr (std::is_same<First, int32_t>::value) {
    (p.mask && !p.maskStep ? p.maskStep : p.coi) = first, callMember(p, body, rest...);
  } else {
    body(p, first, rest...);
  }
}
template <class T, class Body>
auto member(int channels, Body body) {
  return [=](const T* src, int32_t step, auto... rest) {
    callMember(Pixels<T>{src, step, nullptr, 0, {}, channels}, body, rest...);
  };
}

template <class T>
constexpr bool isFloat = std::is_floating_point<T>::value;

// A sum: exact for integers; for 32f in 64 bits, column x in lane x mod 16, lanes joined from 0 up.
template <class T>
struct Sum {
  std::conditional_t<isFloat<T>, double, int64_t> lanes[16] = {};
  template <class Value>
  void add(int x, Value v) {
    lanes[isFloat<T> ? x % 16 : 0] += v;
  }
  double total() const {
    auto sum = lanes[0];
    for (int i = 1; i < 16; ++i) sum += lanes[i];
    return (double)sum;
  }
};

template <class T>
void meanStdDev(const Pixels<T>& p, double* mean, double* stdDev = nullptr) {
  using Wide = std::conditional_t<isFloat<T>, double, int64_t>;
  int64_t n = 0;
  Sum<T> sum, squares, deviations;
  p.forEach([&](int x, int y) {
    const Wide v = p.at(x, y);
    ++n, sum.add(x, v), squares.add(x, v * v);
  });
  const double m = n ? sum.total() / (double)n : 0, d = n ? sqrt(fabs(squares.total() / (double)n - m * m)) : 0;
  *mean = m;
  if (!stdDev) return;
  *stdDev = d;
  if (!isFloat<T> || !(0.05 * m * m > d * d)) return;
  p.forEach([&](int x, int y) { deviations.add(x, ((double)p.at(x, y) - m) * ((double)p.at(x, y) - m)); });
  *stdDev = sqrt(deviations.total() / (double)n);
}

// The first of the smallest and of the largest; all 0 if there is no pixel.
template <class T>
void extrema(const Pixels<T>& p, float* minVal, float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex) {
  bool found = false;
  T low{}, high{};
  *minIndex = *maxIndex = {0, 0};
  p.forEach([&](int x, int y) {
    const T v = p.at(x, y);
    if (v != v) return;
    if (!found || v < low) low = v, *minIndex = {x, y};
    if (!found || v > high) high = v, *maxIndex = {x, y};
    found = true;
  });
  *minVal = (float)low, *maxVal = (float)high;
}

// A norm before the root: over d(x, y), a magnitude. 32f sums run in four lanes of single precision, joined crosswise.
enum class Kind { inf, l1, l2 };
template <class T, class D>
double norm(Kind kind, const Pixels<T>& p, const D& d) {
  int64_t sum = 0;
  float lanes[4] = {};
  double most = 0;
  p.forEach([&](int x, int y) {
    const auto v = d(x, y);
    if ((double)v > most) most = (double)v;
    if constexpr (isFloat<T>) lanes[x % 4] += kind == Kind::l1 ? v : v * v;
    else sum += kind == Kind::l1 ? v : v * v;
  });
  if (kind == Kind::inf) return most;
  return isFloat<T> ? (double)((lanes[0] + lanes[2]) + (lanes[1] + lanes[3])) : (double)sum;
}

// |a| and |a - b|: exact for integers, in single precision for 32f.
template <class T>
auto magnitude(T a, T b = 0) {
  if constexpr (isFloat<T>) return fabsf(a - b);
  else return a > b ? (int64_t)a - b : (int64_t)b - a;
}

}  // namespace reference

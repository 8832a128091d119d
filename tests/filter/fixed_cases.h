// The fixed filters as one table: each with its function, its size function and its plain form.
#pragma once
#include <functional>
#include "framework/sweep.h"
#include "reference/fixed_filter.h"

namespace test {

template <class T, class D>
struct FixedArguments {
  const T* src;
  int32_t srcStep;
  D* dst;
  int32_t dstStep;
  OrvSize roi;
  OrvMaskSize mask;
  OrvBorderType border;
  T value;
  int32_t divisor;
  uint8_t* buffer;
};

template <class T, class D>
struct FixedFilterCase {
  const char* name;
  std::function<OrvStatus(const FixedArguments<T, D>&)> run;
  std::function<OrvStatus(OrvSize, OrvMaskSize, int32_t*)> size;
  std::function<void(const FixedArguments<T, D>&)> plain;
  bool masked = true;  // takes a mask size; others are 3x3
};

// The functions of each signature as functions of the arguments.
template <class T, class D>
auto byArguments(OrvStatus (*f)(const T*, int32_t, D*, int32_t, OrvSize, OrvMaskSize, OrvBorderType, T, uint8_t*)) {
  return [=](const FixedArguments<T, D>& a) {
    return f(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.mask, a.border, a.value, a.buffer);
  };
}
template <class T, class D>
auto byArguments(OrvStatus (*f)(const T*, int32_t, D*, int32_t, OrvSize, OrvMaskSize, OrvBorderType, T, int32_t,
                                uint8_t*)) {
  return [=](const FixedArguments<T, D>& a) {
    return f(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.mask, a.border, a.value, a.divisor, a.buffer);
  };
}
template <class T, class D>
auto byArguments(OrvStatus (*f)(const T*, int32_t, D*, int32_t, OrvSize, OrvBorderType, T, uint8_t*)) {
  return [=](const FixedArguments<T, D>& a) {
    return f(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.border, a.value, a.buffer);
  };
}
inline auto byArguments(OrvStatus (*f)(const uint8_t*, int32_t, int8_t*, int32_t, OrvSize, OrvBorderType, uint8_t,
                                       int32_t, uint8_t*)) {
  return [=](const FixedArguments<uint8_t, int8_t>& a) {
    return f(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.border, a.value, a.divisor, a.buffer);
  };
}

// The plain form with the named tables: "DxNeg" stands for DxNeg3 or DxNeg5, by the mask.
template <class T, class D>
std::function<void(const FixedArguments<T, D>&)> plainSeparable(std::string row, std::string column) {
  using Row = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  return [=](const FixedArguments<T, D>& a) {
    const std::string digit = a.mask == orvMaskSize5x5 ? "5" : "3";
    reference::separable<T, Row, D>(a.src, a.srcStep, a.dst, a.dstStep, a.roi, reference::fixedTaps(row + digit),
                                    reference::fixedTaps(column + digit), a.border, a.value, a.divisor);
  };
}
template <class T, class D>
void plainLaplacian(const FixedArguments<T, D>& a) {
  using Row = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  (a.mask == orvMaskSize5x5
       ? reference::laplacian5<T, Row, D>
       : reference::laplacian3<T, Row, D>)(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.border, a.value, a.divisor);
}
template <class T>
void plainLowpass(const FixedArguments<T, T>& a) {
  using Row = std::conditional_t<std::is_same<T, float>::value, float, int16_t>;
  reference::lowpass<T, Row>(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.mask / 11, a.border, a.value);
}

// An image with readable pixels just where a border type says so.
inline Margin fixedMargin(OrvBorderType border, int half) {
  const auto side = [&](int flag) { return (border & 15) == orvBorderInMem || border & flag ? half : 0; };
  return {side(orvBorderInMemLeft), side(orvBorderInMemTop), side(orvBorderInMemRight), side(orvBorderInMemBottom)};
}

inline int32_t someFixedDivisor(Random& r) {
  const int32_t divisors[] = {1, 2, 4, 8, 16, 64, 1024, -1, -8, 3, 5, 7, 10, -6, 100, INT32_MAX, INT32_MIN};
  return divisors[r.in(0, 16)];
}

// One case at every vector width and, if `threaded`, every thread count, with a buffer of exactly the reported size.
template <class T, class D>
void checkFixed(const FixedFilterCase<T, D>& filter, Random& r, const Shape& shape, OrvMaskSize mask,
                OrvBorderType border) {
  const OrvSize roi = {shape.width, shape.height};
  const int32_t divisor = someFixedDivisor(r);
  const Context context(std::string(filter.name) + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) +
                        " mask " + std::to_string(mask) + " border " + std::to_string(border) + " divisor " +
                        std::to_string(divisor));
  Image<T> src(r, roi.width, roi.height, 1, fixedMargin(border, mask / 22));
  Image<D> dst(r, roi.width, roi.height, 1), expected(r, roi.width, roi.height, 1);
  src.fill(r, false);
  const T value = randomElement<T>(r, false);
  FixedArguments<T, D> a = {src.data(), src.step(), expected.data(), expected.step(), roi,
                            mask,       border,     value,           divisor,         nullptr};
  filter.plain(a);
  a.dst = dst.data(), a.dstStep = dst.step();
  forEachSetting(shape.threaded, [&] {
    int32_t bytes = -1;
    if (filter.size(roi, mask, &bytes) != orvStatusOk) return fail("no size");
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 70));
    a.buffer = buffer.data();
    dst.restore();
    const OrvStatus status = filter.run(a);
    if (status != orvStatusOk) return fail("status %d", (int)status);
    CHECK(buffer.intact() && src.unchanged() && dst.onlyRegionChanged(), "written outside");
    for (int y = 0; y < roi.height; ++y)
      for (int x = 0; x < roi.width; ++x)
        if (!same(dst.at(x, y), expected.at(x, y)))
          return fail("column %d of row %d is %.9g, not %.9g", x, y, (double)dst.at(x, y), (double)expected.at(x, y));
  });
}

inline OrvBorderType someFixedBorder(Random& r, const std::vector<int>& kinds) {
  return kinds[(size_t)r.in(0, (int)kinds.size() - 1)] | (r.one(3) ? 0 : r.in(0, 15) * 16);
}

// Every size with several borders, then a threaded one with each kind.
template <class T, class D>
void sweepFixed(const FixedFilterCase<T, D>& filter, const std::vector<int>& kinds) {
  Random r(seed());
  const auto mask = [&] { return filter.masked && r.one(2) ? orvMaskSize5x5 : orvMaskSize3x3; };
  steerThreads(1);  // the smallest buffers
  for (int i = 0; i < (quick() ? 1 : 3); ++i)
    for (const Shape& shape : shapes()) checkFixed(filter, r, shape, mask(), someFixedBorder(r, kinds));
  for (const int kind : kinds) checkFixed(filter, r, {257, 397, true}, mask(), kind);
  checkFixed(filter, r, {259, 261, true}, mask(), orvBorderRepl | orvBorderInMemTop | orvBorderInMemLeft);
}

}  // namespace test

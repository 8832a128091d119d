// The fixed filters as one table: each with its function, its size function and its plain form.
#pragma once
#include "framework/sweep.h"
#include "reference/fixed_filter.h"

namespace test {

template <class T, class D>
struct FixedFilter {
  const char* name;
  std::function<OrvStatus(const T*, int32_t, D*, int32_t, OrvSize, OrvMaskSize, OrvBorderType, T, int32_t, uint8_t*)>
      run;
  std::function<OrvStatus(OrvSize, OrvMaskSize, int32_t*)> size;
  reference::FixedForm<T, D> plain;
  bool masked = true;  // takes a mask size; others are 3x3

  // The functions take a mask size or none, a divisor if the results are bytes with a sign.
  template <class Function, class Size>
  FixedFilter(const char* filter, Function f, Size report, reference::FixedForm<T, D> form)
      : name(filter), plain(std::move(form)) {
    constexpr bool divided = std::is_same<D, int8_t>::value;
    masked = std::is_invocable<Size, OrvSize, OrvMaskSize, int32_t*>::value;
    run = [f](auto src, auto srcStep, auto dst, auto dstStep, auto roi, auto mask, auto border, auto value,
              auto divisor, auto buffer) {
      const auto call = [&](auto... rest) {
        if constexpr (divided) return f(src, srcStep, dst, dstStep, roi, rest..., border, value, divisor, buffer);
        else return f(src, srcStep, dst, dstStep, roi, rest..., border, value, buffer);
      };
      if constexpr (std::is_invocable<Size, OrvSize, OrvMaskSize, int32_t*>::value) return call(mask);
      else return call();
    };
    size = [report](OrvSize roi, OrvMaskSize mask, int32_t* bytes) {
      if constexpr (std::is_invocable<Size, OrvSize, OrvMaskSize, int32_t*>::value) return report(roi, mask, bytes);
      else return report(roi, bytes);
    };
  }
};

// A filter with its functions by name; its plain form is made of the named tables, or given.
#define NAMED(filter, type) \
#filter "_" #type, orviFilter##filter##Border_##type##_C1R, orviFilter##filter##GetBufferSize_##type##_C1R
#define SEPARABLE(filter, type, T, D, row, column) \
  { NAMED(filter, type), reference::separable<T, D>(row, column) }

// All sizes, so many times (once in quick runs), and those behind.
inline std::vector<Shape> repeated(int times, const std::vector<Shape>& then = {}) {
  std::vector<Shape> all;
  for (int i = 0; i < (quick() ? 1 : times); ++i)
    for (const Shape& shape : shapes()) all.push_back(shape);
  all.insert(all.end(), then.begin(), then.end());
  return all;
}

// One row of a table of checks, which rows of badValue() may follow on a line.
inline Told at(int position, Fault fault) { return {fault, position}; }

// Readable pixels just where a border type says so.
inline Margin marginOf(OrvBorderType border, int reach) {
  const auto side = [&](int flag) { return (border & 15) == orvBorderInMem || border & flag ? reach : 0; };
  return {side(orvBorderInMemLeft), side(orvBorderInMemTop), side(orvBorderInMemRight), side(orvBorderInMemBottom)};
}

// One of the kinds, alone or with any of the side flags.
inline OrvBorderType someBorder(Random& r, const std::vector<int>& kinds) {
  return kinds[(size_t)r.in(0, (int)kinds.size() - 1)] | (r.one(3) ? 0 : r.in(0, 15) * 16);
}

template <class T>
Value<T> AnyPixel() {
  return DrawnBy<T>([](Random& r) { return randomElement<T>(r, false); });
}

// Every size with several masks and borders; if `threaded`, large images too.
template <class T, class D>
void sweepFixed(const FixedFilter<T, D>& filter, const std::vector<int>& kinds, bool threaded) {
  Random r(seed());
  OrvMaskSize mask = 0;
  OrvBorderType border = 0;
  const auto margin = [&](Random& draw, const Shape&) {
    mask = filter.masked && draw.one(2) ? orvMaskSize5x5 : orvMaskSize3x3;
    border = someBorder(draw, kinds);
    return marginOf(border, mask / 22);
  };
  const auto large = threaded ? std::vector<Shape>{{257, 397, true}, {259, 261, true}} : std::vector<Shape>();
  steerThreads(1);  // the smallest buffers
  sweepShapes(filter.name, filter.run, filter.plain, repeated(3, large), r, around(In<T>(), margin), Out<D>(), Roi(),
              The(mask), The(border), AnyPixel<T>(),
              Value<int32_t>({1, 2, 4, 8, 16, 64, 1024, -1, -8, 3, 5, 7, 10, -6, 100, INT32_MAX, INT32_MIN}),
              Scratch([&](OrvSize roi, int32_t* bytes) { return filter.size(roi, mask, bytes); }));
}

// The checks of a filter; those behind the sizes differ.
template <class T, class D>
void walkFixed(const FixedFilter<T, D>& filter, OrvBorderType border, const std::vector<Told>& then) {
  walkArguments(filter.name, filter.run, pointersThenSizes({0, 1, 7}, 2) + then, In<T>(), Out<D>(), Roi(),
                Value<OrvMaskSize>({orvMaskSize3x3}), Value<OrvBorderType>({border}), AnyPixel<T>(),
                Value<int32_t>({1}),
                Scratch([&](OrvSize roi, int32_t* bytes) { return filter.size(roi, orvMaskSize3x3, bytes); }));
}

}  // namespace test

// Roles of the row and column stages: arrays of row pointers, kernels, divisors; and the sweep of all row stages.
#pragma once
#include "filter/fixed_cases.h"

namespace test {

using SizeFunction = OrvStatus (*)(OrvSize, int32_t, int32_t*);

// An image that is passed as an array of pointers to its rows: in any order, and some of them more than once if it is
// only read, with `more` rows than the region.
template <class T>
struct Rows : ImageRole<T> {
  using ImageRole<T>::candidate, ImageRole<T>::expected;
  std::function<int(Random&)> more;
  std::shared_ptr<Guarded> list[2];
  explicit Rows(ImageRole<T> role, std::function<int(Random&)> moreRows = {})
      : ImageRole<T>(role), more(std::move(moreRows)) {}
  void prepare(Random& r, const Shape& shape) {
    const int count = shape.height + (more ? more(r) : 0);
    ImageRole<T>::prepare(r, {shape.width, count});
    std::vector<int> order;
    for (int y = 0; y < count; ++y) order.push_back(!this->writes && r.one(3) ? r.in(0, count - 1) : y);
    for (int& y : order) std::swap(y, order[(size_t)r.in(0, count - 1)]);
    for (const Side side : {Side::candidate, Side::reference}) {
      auto& pointers = list[(int)side] = std::make_shared<Guarded>(order.size() * sizeof(T*), true, 0);
      const Image<T>& image = side == Side::reference && this->writes ? *expected : *candidate;
      for (size_t y = 0; y < order.size(); ++y)
        ((uintptr_t*)(void*)pointers->data())[y] =
            (uintptr_t)image.data() + (uintptr_t)((ptrdiff_t)order[y] * image.step());
    }
  }
  std::tuple<T* const*> arguments(Side side) { return {(T* const*)(void*)list[(int)side]->data()}; }
};

// A number of taps that takes every form of the kernels, often above the width.
inline int someKernelSize(Random& r) { return r.one(8) ? r.in(10, 40) : r.in(1, 9); }

// Taps before a protected page, of all magnitudes: small ones (many ties), Gaussian-like ones (sums near 2^15 and
// 2^16), the ends of the range, any; one in three symmetric.
template <class Tap>
struct Kernel : Plain {
  const int& size;
  std::shared_ptr<Guarded> memory;
  explicit Kernel(const int& count) : size(count) {}
  void prepare(Random& r, const Shape&) {
    std::vector<Tap> taps((size_t)size);
    const int mode = r.in(0, 5), even = 32768 / size + 1;
    for (Tap& tap : taps) {
      if (std::is_same<Tap, float>::value) tap = (Tap)(r.in(-999, 999) / (mode < 3 ? 100.0f : 1.0f));
      else if (mode < 2) tap = (Tap)r.in(std::is_signed<Tap>::value ? -4 : 0, 4);
      else if (mode < 4) tap = (Tap)r.in(0, (mode - 1) * even);
      else if (mode == 4) tap = r.one(2) ? lowest<Tap>() : highest<Tap>();
      else tap = (Tap)r.next();
    }
    if (r.one(3)) std::copy(taps.begin(), taps.begin() + size / 2, taps.rbegin());
    memory = std::make_shared<Guarded>(taps.size() * sizeof(Tap), true, 0);
    memcpy((void*)memory->data(), taps.data(), taps.size() * sizeof(Tap));
  }
  std::tuple<const Tap*> arguments(Side) { return {(const Tap*)(void*)memory->data()}; }
};
template <class Tap>
std::vector<Tap> tapsAt(const Tap* taps, int size) {
  return {taps, taps + size};
}

template <class Pixel>
Value<int32_t> Divisor() {
  if (std::is_same<Pixel, uint16_t>::value) return Value<int32_t>({1, 1, 2, 3, 9, 64, 100, 32768, 1 << 24, INT32_MAX});
  return Value<int32_t>({1,    1,    2,     2,     -1,     -2,         3,       -7, 64,        100,
                         4096, 8192, 16384, 32768, 100000, -(1 << 30), 1 << 24, 9,  INT32_MAX, INT32_MIN});
}

// One border value of each channel.
template <class T>
struct BorderValue : ImageRole<T> {
  explicit BorderValue(int channels) : ImageRole<T>(In<T>(channels)) {}
  void prepare(Random& r, const Shape&) { ImageRole<T>::prepare(r, {1, 1}); }
  std::tuple<const T*> arguments(Side side) { return {std::get<0>(ImageRole<T>::arguments(side))}; }
};

// All row stages as one form: run(src, step, dstRows, roi, kernel, size, anchor, type, value, divisor, buffer).
template <class P, class T, class D, class Run, class Size>
void sweepRows(const char* name, Run run, Size bufferSize, int channels, const std::vector<int>& types,
               const std::vector<Shape>& list, reference::Arithmetic arithmetic) {
  Random r(seed());
  int size = 1, anchor = 0;
  OrvBorderType type = 0;
  const auto margin = [&](Random& draw, const Shape&) -> Margin {
    size = someKernelSize(draw), anchor = draw.in(0, size - 1);
    type = types[(size_t)draw.in(0, (int)types.size() - 1)];
    const Margin flagged = marginOf(type, 1);
    return {flagged.left * anchor, 0, flagged.right * (size - 1 - anchor), 0};
  };
  const auto plain = [=](const P* src, int32_t step, D* const* dst, OrvSize roi, const T* kernel, int32_t count,
                         int32_t from, OrvBorderType border, const P* value, int32_t divisor, uint8_t*) {
    const auto taps = tapsAt(kernel, count);
    reference::forEachElement(roi, channels, [&](int y, int x) {
      const P* row = (const P*)((uintptr_t)src + (uintptr_t)((ptrdiff_t)y * step));
      reference::store(
          dst[y], 0, 0, x,
          reference::filteredRow<D>(row, roi.width, channels, x, taps, from, border, value, divisor, arithmetic));
    });
  };
  sweepShapes(name, run, plain, list, r, around(In<P>(channels), margin), Rows<D>(Out<D>(channels)), Roi(),
              Kernel<T>(size), The(size), The(anchor), The(type), BorderValue<P>(channels), Divisor<P>(),
              Scratch([&](OrvSize roi, int32_t* bytes) { return bufferSize(roi, size, bytes); }));
}

// A size function against want(width, kernel size, threads) for regions of 11 rows, in 32 bits that wrap; its checks.
template <class Want>
void checkSizes(SizeFunction function, const Want& want) {
  for (const int threads : threadCounts()) {
    steerThreads(threads);
    for (const uint32_t width : {1u, 4u, 5u, 9u, 2000000000u})
      for (const uint32_t k : {1u, 3u, 8u, 100000000u}) {
        int32_t got = 0;
        const OrvStatus status = function({(int32_t)width, 11}, (int32_t)k, &got);
        CHECK(status == orvStatusOk && got == (int32_t)want(width, k, (uint32_t)threads), "%u %u: %d", width, k, got);
      }
  }
  steerThreads(1);
  walkArguments("size", function, pointersThenSizes({2}, 0) + std::vector<Told>{badValue(1, 0, orvStatusSize)}, Roi(),
                Value<int32_t>({1}), Result<int32_t>());
}

}  // namespace test

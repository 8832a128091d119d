// The driver of the structure tensor, and its kernels but for gradients and results.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/tensor.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"

#ifndef ORV_TENSOR_PLANES
#define ORV_TENSOR_PLANES
namespace ORV_VARIANT {
enum : int32_t { planes = 3 };
}
#endif

KERNELS_BEGIN

// dx * dx, dx * dy, dy * dy, a plane each.
template <class R>
void Products(const R* dx, const R* dy, float* planes, ptrdiff_t pitch, ptrdiff_t n) {
  const auto *const x = loose(dx), *const y = loose(dy);
  float *const xx = planes, *const xy = planes + pitch, *const yy = planes + 2 * pitch;
  Columns(
      0, n, PIXEL(i) {
        const float a = (float)x[i], b = (float)y[i];
        xx[i] = a * a;
        xy[i] = a * b;
        yy[i] = b * b;
      });
}

// out[x] = s[x] + ... + s[x + size - 1]. N is the size, or 0.
template <int N>
HWY_INLINE void SumWindows(const float* s, float* out, ptrdiff_t n, int32_t size) {
  const ptrdiff_t count = N ? N : size;
  OverlappedVectors<float, HWY_MAX_BYTES / sizeof(float)>(
      0, n, [&](Count<1>, auto d, ptrdiff_t x) __attribute__((always_inline)) {
        auto sum = hn::LoadU(d, s + x);
        for (ptrdiff_t i = 1; i < count; ++i) sum = hn::Add(sum, hn::LoadU(d, s + x + i));
        hn::StoreU(sum, d, out + x);
      });
}
void WindowSums(const float* s, ptrdiff_t pitch, float* out, ptrdiff_t outPitch, ptrdiff_t n, int32_t size) {
  for (ptrdiff_t p = 0; p < planes; ++p, s += pitch, out += outPitch) {
    if (size == 3) SumWindows<3>(s, out, n, size);
    else if (size == 5) SumWindows<5>(s, out, n, size);
    else SumWindows<0>(s, out, n, size);
  }
}

// out[x] = (sum of `size` rows) * scale, from row `first` of a ring on, whose rows are `step` elements apart.
template <int N>
HWY_INLINE void MeanOfRing(const float* ring, ptrdiff_t step, int32_t first, float* out, ptrdiff_t n, int32_t size,
                           float scale) {
  const ptrdiff_t count = N ? N : size;
  const float* rows[N ? N : 1];
  for (int i = 0; i < N; ++i) rows[i] = ring + (first + i < size ? first + i : first + i - size) * step;
  OverlappedVectors<float, HWY_MAX_BYTES / sizeof(float)>(
      0, n, [&](Count<1>, auto d, ptrdiff_t x) __attribute__((always_inline)) {
        const auto row = [&](ptrdiff_t i) __attribute__((always_inline)) {
          if constexpr (N) return hn::LoadU(d, rows[i] + x);
          else return hn::LoadU(d, ring + (first + i < size ? first + i : first + i - size) * step + x);
        };
        auto sum = row(0);
        for (ptrdiff_t i = 1; i < count; ++i) sum = hn::Add(sum, row(i));
        hn::StoreU(hn::Mul(sum, hn::Set(d, scale)), d, out + x);
      });
}
void RingMeans(const float* ring, ptrdiff_t pitch, int32_t first, float* out, ptrdiff_t outPitch, ptrdiff_t n,
               int32_t size) {
  const float scale = 1.0f / (float)wrapMul(size, size);
  const ptrdiff_t step = planes * pitch;
  for (ptrdiff_t p = 0; p < planes; ++p, ring += pitch, out += outPitch) {
    if (size == 3) MeanOfRing<3>(ring, step, first, out, n, size, scale);
    else if (size == 5) MeanOfRing<5>(ring, step, first, out, n, size, scale);
    else MeanOfRing<0>(ring, step, first, out, n, size, scale);
  }
}

KERNELS_END

#if HWY_ONCE
#include "core/scratch.h"
#include "features/tensor.h"
#include "filter/copy_window.h"

namespace {

enum : int32_t { mostGradientRows = 5 };
constexpr int64_t leastStrip = 256, cacheBytes = 32 << 10;

template <class R>
struct TensorKernels {
  void (*products)(const R* dx, const R* dy, float* planes, ptrdiff_t pitch, ptrdiff_t n);
  void (*windowSums)(const float* s, ptrdiff_t pitch, float* out, ptrdiff_t outPitch, ptrdiff_t n, int32_t size);
  void (*ringMeans)(const float* ring, ptrdiff_t pitch, int32_t first, float* out, ptrdiff_t outPitch, ptrdiff_t n,
                    int32_t size);
};

// Elements of a row of scratch: whole cache lines, of short rows half lines, as their scratch is scant.
enum : ptrdiff_t { line = 64, shortRowBytes = 256 };
template <class E>
constexpr ptrdiff_t pitchOf(ptrdiff_t elements) {
  const ptrdiff_t bytes = elements * (ptrdiff_t)sizeof(E), piece = bytes < shortRowBytes ? line / 2 : line;
  return ((bytes + piece - 1) & -piece) / (ptrdiff_t)sizeof(E);
}

// Scratch of a strip of `columns` columns.
template <class T, class R>
int64_t tensorBytes(const TensorCall<T, R>& call, int64_t columns) {
  const int64_t n = call.window, wide = columns + n - 1;
  const int64_t ring = n == 1 ? 0 : n * planes * pitchOf<float>(columns) * (int64_t)sizeof(float);
  return line - 1 + planes * pitchOf<float>(wide) * (int64_t)sizeof(float) + ring +
         2 * pitchOf<R>(wide) * (int64_t)sizeof(R) + call.maskRows * (wide + call.maskRows - 1) * (int64_t)sizeof(T);
}

// Columns of a strip: strips of about the same width, by the cache's share, if the scratch has room for them.
template <class T, class R>
int32_t stripColumns(const TensorCall<T, R>& call, int64_t bytes) {
  const int64_t fitting = cacheBytes * 64 / tensorBytes(call, 64), most = fitting > leastStrip ? fitting : leastStrip;
  const int64_t strips = (call.roi.width + most - 1) / most;
  int64_t columns = strips == 1 ? call.roi.width : ((call.roi.width + strips - 1) / strips + 63) & ~63;
  while (columns > 0 && tensorBytes(call, columns) > bytes) columns /= 2;
  return (int32_t)columns;
}

// One strip: its columns, what is computed of the products, and the rows in scratch.
template <class T, class R>
struct TensorStrip {
  const TensorCall<T, R>& call;
  TensorKernels<R> kernels;
  int32_t left, columns;  // of the results
  int32_t wide;           // columns of products, from left - lo on
  int32_t from, to;       // columns of the computed products
  bool inPlace;           // the source around them can be read where it is
  float *product, *ring;  // three planes each; rows of the ring are three planes
  ptrdiff_t productPitch, ringPitch;
  R *dx, *dy;
  T* extended;  // source rows with borders
  const T* rows[mostGradientRows];
  int32_t nextRow;  // the product row that the source rows lead to when they move on by one

  int32_t half() const { return call.maskRows / 2; }

  TensorStrip(const TensorCall<T, R>& whole, const TensorKernels<R>& forms, int32_t x, int32_t count, uint8_t* memory)
      : call(whole), kernels(forms), left(x), columns(count), nextRow(INT32_MIN) {
    const int32_t n = call.window, lo = (n - 1) / 2, h = n / 2, width = call.roi.width;
    wide = columns + n - 1;
    const bool memoryLeft = call.sides & orvBorderInMemLeft, memoryRight = call.sides & orvBorderInMemRight;
    from = memoryLeft || left > lo ? left - lo : 0;
    to = memoryRight || left + columns + h < width ? left + columns + h : width;
    inPlace = (memoryLeft || from >= half()) && (memoryRight || to + half() <= width);
    Scratch scratch{memory};
    productPitch = pitchOf<float>(wide);
    ringPitch = pitchOf<float>(columns);
    product = scratch.take<float>(planes * productPitch, line);
    ring = scratch.take<float>(n == 1 ? 0 : n * planes * ringPitch, 32);
    dx = scratch.take<R>(pitchOf<R>(wide), 32);
    dy = scratch.take<R>(pitchOf<R>(wide), 32);
    extended = scratch.take<T>(call.maskRows * (wide + call.maskRows - 1), sizeof(T));
  }

  // The source row y from column from - half on: where it is, or a copy with its border in its slot.
  const T* sourceRow(int32_t y) const {
    const ptrdiff_t source =
        borderIndex(call.kind, y, call.roi.height, call.sides & orvBorderInMemTop, call.sides & orvBorderInMemBottom);
    if (inPlace && source != borderNoPixel) return raw(call.src.row(source)) + (from - half());
    const int32_t count = to - from + 2 * half();
    const int32_t slot = y % call.maskRows;  // of any K neighbouring rows each has another one
    T* const row = extended + (ptrdiff_t)(slot < 0 ? slot + call.maskRows : slot) * (wide + call.maskRows - 1);
    copyWindow({call.src.data,
                call.src.step,
                call.roi,
                row,
                0,
                {count, 1},
                {from - half(), y},
                call.kind,
                call.sides,
                &call.borderValue,
                sizeof(T)});
    return row;
  }

  // The products of row y with their margins.
  void makeProducts(int32_t y) {
    const int32_t size = call.maskRows;
    if (y == nextRow) {
      memmove(rows, rows + 1, (size_t)(size - 1) * sizeof rows[0]);
      rows[size - 1] = sourceRow(y + half());
    } else {
      for (int32_t i = 0; i < size; ++i) rows[i] = sourceRow(y - half() + i);
    }
    nextRow = y + 1;
    const ptrdiff_t count = to - from, before = from - (left - (call.window - 1) / 2), behind = wide - count - before;
    for (ptrdiff_t x = 0; x < count; x += gradientBlock) {
      const T* shifted[mostGradientRows];
      for (int32_t i = 0; i < size; ++i) shifted[i] = rows[i] + x;
      call.gradient(shifted, count - x < gradientBlock ? count - x : (ptrdiff_t)gradientBlock, dx + x, dy + x);
    }
    kernels.products(dx, dy, product + before, productPitch, count);
    for (int32_t p = 0; p < planes && before + behind > 0; ++p) {
      float* const plane = product + p * productPitch;
      const bool replicated = call.kind == orvBorderRepl;
      const float first = replicated ? plane[before] : 0, last = replicated ? plane[before + count - 1] : 0;
      for (ptrdiff_t x = 0; x < before; ++x) plane[x] = first;
      for (ptrdiff_t x = wide - behind; x < wide; ++x) plane[x] = last;
    }
  }

  float* slot(int32_t y) const { return ring + (ptrdiff_t)(y % call.window) * planes * ringPitch; }

  // Rows y0 .. y0 + rows - 1 of the results. Rows of the ring are numbered from the first one needed on.
  void run(int32_t y0, int32_t count) {
    const int32_t n = call.window, lo = (n - 1) / 2;
    const int32_t top = call.sides & orvBorderInMemTop ? -lo : 0;
    const int32_t bottom = call.sides & orvBorderInMemBottom ? call.roi.height + n / 2 : call.roi.height;
    int32_t made = INT32_MIN;  // the row of the newest sums
    for (int32_t i = 0; i < count + n - 1; ++i) {
      const int32_t wanted = y0 - lo + i, y = wanted < top ? top : wanted >= bottom ? bottom - 1 : wanted;
      float* const sums = n == 1 ? nullptr : slot(i);
      const size_t slotBytes = (size_t)(planes * ringPitch) * sizeof(float);
      if (y != wanted && call.kind != orvBorderRepl) {
        memset(sums, 0, slotBytes);
      } else if (y == made) {
        memcpy(sums, slot(i - 1), slotBytes);
      } else {
        makeProducts(y);
        made = y;
        if (n > 1) kernels.windowSums(product, productPitch, sums, ringPitch, columns, n);
      }
      if (i < n - 1) continue;
      // The means take the place of the products.
      if (n > 1) kernels.ringMeans(ring, ringPitch, (i + 1) % n, product, productPitch, columns, n);
      float* const dst = raw(call.dst.row(y0 + i - (n - 1))) + (ptrdiff_t)left * call.channels;
      call.result(product, productPitch, dst, columns, left, call.work);
    }
  }
};

template <class T, class R>
void runStrips(const TensorCall<T, R>& call, int32_t first, int32_t rows, uint8_t* memory, int64_t bytes) {
  const TensorKernels<R> kernels = {WIDEST(Products<R>), WIDEST(WindowSums), WIDEST(RingMeans)};
  const int32_t width = call.roi.width, columns = stripColumns(call, bytes);
  for (int32_t x = 0; x < width && columns > 0; x += columns) {
    const int32_t count = width - x < columns ? width - x : columns;
    TensorStrip<T, R>(call, kernels, x, count, memory).run(first, rows);
  }
}

}  // namespace

void ORV_VARIANT::tensorRows(const TensorCall<uint8_t, int16_t>& call, int32_t first, int32_t rows, uint8_t* memory,
                             int64_t bytes) {
  runStrips(call, first, rows, memory, bytes);
}
void ORV_VARIANT::tensorRows(const TensorCall<float, float>& call, int32_t first, int32_t rows, uint8_t* memory,
                             int64_t bytes) {
  runStrips(call, first, rows, memory, bytes);
}

#endif

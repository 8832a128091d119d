// The border of one row, for row filters with kernels of K taps.
//
// A filter reads the interior of a row in place. Only the ends are staged in a strip, from which the first `anchor` and
// the last K - 1 - anchor outputs are computed. With m = min(K - 1, width) the strip holds, in pixels:
//
//   | anchor left border | first m of the row | last m of the row | K - 1 - anchor right border |
//
// Limitation: below K - 1 pixels of width the windows of the first outputs reach beyond the right end as well, and no
// longer lie in one piece of the strip. Such rows are short: extend them whole by extendRow() and filter that.
//
// In both, a side in memory is read as it is (orvBorderInMem: both sides, whatever flags stand beside it), each other
// side is made by the kind from the pixels of the row alone; a value that is no kind leaves its part untouched.
#pragma once
#include "filter/names.h"
#include "filter/border_pixels.h"

namespace ORV_VARIANT {

// Pixels of the strip.
static constexpr ptrdiff_t borderStripPixels(int32_t width, int32_t kernelSize) {
  const ptrdiff_t ends = kernelSize - 1;
  return ends + 2 * (ends < width ? ends : width);
}

// The `anchor` pixels before the row, to dst.
template <int N>
static inline void fillLeft(uint8_t* dst, const uint8_t* row, ptrdiff_t width, ptrdiff_t anchor, int32_t borderType,
                            const uint8_t* value) {
  if (sidesInMemoryByKind(borderType) & orvBorderInMemLeft) return copyRun(dst, row - anchor * N, anchor * N);
  fillBeyond<N>(dst, row, width, -anchor, anchor, borderKind(borderType), value);
}

// The `count` pixels behind the row, to dst.
template <int N>
static inline void fillRight(uint8_t* dst, const uint8_t* row, ptrdiff_t width, ptrdiff_t count, int32_t borderType,
                             const uint8_t* value) {
  if (sidesInMemoryByKind(borderType) & orvBorderInMemRight) return copyRun(dst, row + width * N, count * N);
  fillBeyond<N>(dst, row, width, width, count, borderKind(borderType), value);
}

// The strip of a row. T is the element, `value` points to C elements; all three at any address.
template <class T, int C>
static inline void fillBorder(const T* src, T* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                              int32_t borderType, const T* value) {
  constexpr int N = C * sizeof(T);
  const auto* row = (const uint8_t*)src;
  auto* dst = (uint8_t*)strip;
  const ptrdiff_t ends = kernelSize - 1 < width ? kernelSize - 1 : width;
  fillLeft<N>(dst, row, width, anchor, borderType, (const uint8_t*)value);
  dst += anchor * (ptrdiff_t)N;
  copyRun(dst, row, ends * N);
  dst += ends * N;
  copyRun(dst, row + (width - ends) * N, ends * N);
  dst += ends * N;
  fillRight<N>(dst, row, width, kernelSize - 1 - anchor, borderType, (const uint8_t*)value);
}

// The whole row with its borders: anchor + width + K - 1 - anchor pixels.
template <class T, int C>
static inline void extendRow(const T* src, T* dst, int32_t width, int32_t kernelSize, int32_t anchor,
                             int32_t borderType, const T* value) {
  constexpr int N = C * sizeof(T);
  const auto* row = (const uint8_t*)src;
  auto* to = (uint8_t*)dst;
  fillLeft<N>(to, row, width, anchor, borderType, (const uint8_t*)value);
  to += anchor * (ptrdiff_t)N;
  copyRun(to, row, (ptrdiff_t)width * N);
  fillRight<N>(to + (ptrdiff_t)width * N, row, width, kernelSize - 1 - anchor, borderType, (const uint8_t*)value);
}

}  // namespace ORV_VARIANT

// The strip of a row by element type; 16u rows go through the 16s forms. The border value is one element, or points to
// three in the C3 forms. Pointers need not be aligned.
extern "C" {
void FillBorder_8u_C1(const uint8_t* src, uint8_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                      int32_t borderType, uint8_t borderValue);
void FillBorder_16s_C1(const int16_t* src, int16_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, int16_t borderValue);
void FillBorder_32f_C1(const float* src, float* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, float borderValue);
void FillBorder_8u_C3(const uint8_t* src, uint8_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                      int32_t borderType, const uint8_t* borderValue);
void FillBorder_16s_C3(const int16_t* src, int16_t* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, const int16_t* borderValue);
void FillBorder_32f_C3(const float* src, float* strip, int32_t width, int32_t kernelSize, int32_t anchor,
                       int32_t borderType, const float* borderValue);
}

// Smoothing by the row and column stages of an element type.
#pragma once
#include "filter/names.h"
#include "core/scratch.h"
#include "filter/column_stage.h"
#include "filter/row_ring.h"
#include "filter/row_stage.h"
#include "filter/smoothing.h"

namespace ORV_VARIANT {

// The stages of an element type. Row is the element of filtered rows; all integer passes divide by 2^shift.
template <class T>
struct Stages;

template <>
struct Stages<uint8_t> {
  using Row = int16_t;
  using Tap = int16_t;
  static constexpr auto row = RowStage_8u16s;
  static constexpr auto column = ColumnStage_16s8u;
};
template <>
struct Stages<uint16_t> {
  using Row = uint16_t;
  using Tap = uint16_t;  // a tap of 32768 is itself
  static constexpr auto row = RowStage_16u;
  static constexpr auto column = ColumnStage_16u;
};
template <>
struct Stages<int16_t> {
  using Row = int16_t;
  using Tap = int16_t;  // a tap of 32768 is -32768
  static constexpr auto row = RowStage_16s;
  static constexpr auto column = ColumnStage_16s;
};
template <>
struct Stages<float> {
  using Row = float;
  using Tap = float;
  static constexpr auto row = RowStage_32f;
  static constexpr auto column = ColumnStage_32f;
};

// Smooths with a ring of K rows and the same taps in both directions. The scratch holds the ring, the stages' own
// memory, and nothing that grows with the height.
template <class T>
static void smoothWhole(const Smoothing<T>& work, const typename Stages<T>::Tap* taps, int32_t size, int32_t divisor,
                        Scratch scratch) {
  using Row = typename Stages<T>::Row;
  Row** const rows = scratch.take<Row*>(size);
  for (int32_t i = 0; i < size; ++i) rows[i] = scratch.take<Row>(work.elements(), 64);
  float* const scaledTaps = scratch.take<float>(size);
  const RowFilter<T, typename Stages<T>::Tap> rowFilter = {
      taps, size, size / 2, work.channels, work.borderType, work.borderValue, divisor};
  const ColumnFilter<typename Stages<T>::Tap> columnFilter = {taps, size, work.channels, divisor, scaledTaps};
  runRing(
      work.roi.height, size, rows,
      [&](int32_t y, Row* row) {
        const ptrdiff_t source = work.sourceRow(y);
        if (source == borderNoPixel) return work.fillConstant(row);
        const Plane<const T> line{raw(work.src.row(source)), 0};
        Stages<T>::row(line, &row, work.roi.width, 1, rowFilter, scratch.next);
      },
      [&](int32_t y, Row** folded) {
        const Plane<T> line{raw(work.dst.row(y)), 0};
        Stages<T>::column(folded, line, work.roi.width, 1, columnFilter);
      });
}

// Pixels of a vertical strip whose ring, source and destination rows stay in the first cache, and which is wider than
// any reflection at its sides.
static inline int32_t stripWidth(int32_t size, int32_t channels) {
  constexpr int32_t cacheElements = 6144, least = 256;
  const int32_t fitting = cacheElements / (size + 2) / channels & ~63;
  return fitting > least ? fitting : size > least ? size : least;
}

// The same in vertical strips where that is legal and pays: every pixel of a float image is computed alike, so inner
// sides are sides in memory. Integer images round the ends of a row differently, and a wrapped row needs its far end.
template <class T>
static void smooth(const Smoothing<T>& work, const typename Stages<T>::Tap* taps, int32_t size, int32_t divisor,
                   Scratch scratch) {
  const int32_t width = work.roi.width, step = stripWidth(size, work.channels);
  const bool inStrips = std::is_same<T, float>::value && borderKind(work.borderType) != orvBorderWrap;
  if (!inStrips || width / 2 < step) return smoothWhole(work, taps, size, divisor, scratch);
  for (int32_t x = 0; x < width;) {
    const int32_t end = width - x < 2 * step ? width : x + step;  // the last strip is no narrower than the others
    Smoothing<T> strip = work;
    strip.src.data = raw(work.src.row(0) + (ptrdiff_t)x * work.channels);
    strip.dst.data = raw(work.dst.row(0) + (ptrdiff_t)x * work.channels);
    strip.roi.width = end - x;
    if (x > 0) strip.borderType |= orvBorderInMemLeft;
    if (end < width) strip.borderType |= orvBorderInMemRight;
    smoothWhole(strip, taps, size, divisor, scratch);
    x = end;
  }
}

}  // namespace ORV_VARIANT

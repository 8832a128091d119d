// Smoothing by the row and column stages of an element type.
#pragma once
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
static void smooth(const Smoothing<T>& work, const typename Stages<T>::Tap* taps, int32_t size, int32_t divisor,
                   Scratch scratch) {
  using Row = typename Stages<T>::Row;
  Row** const rows = scratch.take<Row*>(size);
  for (int32_t i = 0; i < size; ++i) rows[i] = scratch.take<Row>(work.elements());
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

}  // namespace ORV_VARIANT

// The K rows around each row of an image, extended by their borders, for filters that walk down an image.
//
//   ExtendedRows<uint8_t> around(src, roi, 3, borderType, borderValue, memory);
//   for (y = 0; y < roi.height; ++y) filter(around.next());   // rows[0..2], whose columns begin at x = -1
//
// `memory` holds K rows of width + K - 1 elements, at any address; rows that lie in memory on both sides are not
// copied.
#pragma once
#include <string.h>
#include "filter/names.h"
#include "core/image.h"
#include "filter/row_border.h"

namespace ORV_VARIANT {

template <class T>
struct ExtendedRows {
  Plane<const T> src;
  OrvSize roi;
  int32_t size, half, borderType, sides;
  T value;
  T* memory;
  int32_t following = 0;  // the row that comes in next
  const T* rows[5];

  ExtendedRows(Plane<const T> image, OrvSize region, int32_t maskRows, int32_t border, T borderValue, T* scratch)
      : src(image),
        roi(region),
        size(maskRows),
        half(maskRows / 2),
        borderType(border),
        sides(sidesInMemoryByKind(border)),
        value(borderValue),
        memory(scratch) {
    for (int32_t i = 1; i < size; ++i) rows[i] = rowAt(i - 1 - half);
    following = half;
  }

  // The rows around the first row of the image, then around the second ...
  const T* const* next() {
    memmove(rows, rows + 1, (size_t)(size - 1) * sizeof rows[0]);
    rows[size - 1] = rowAt(following++);
    return rows;
  }

 private:
  const T* rowAt(int32_t y) const {
    const ptrdiff_t extended = (ptrdiff_t)roi.width + 2 * half;
    const ptrdiff_t source =
        borderIndex(borderKind(borderType), y, roi.height, sides & orvBorderInMemTop, sides & orvBorderInMemBottom);
    T* const slot = memory + (y + half) % size * extended;
    if (source == borderNoPixel) {
      fillRun<sizeof(T)>((uint8_t*)slot, (const uint8_t*)&value, extended);
      return slot;
    }
    const T* const row = raw(src.row(source));
    if ((sides & orvBorderInMemLeft) && (sides & orvBorderInMemRight)) return row - half;
    extendRow<T, 1>(row, slot, roi.width, size, half, borderType, &value);
    return slot;
  }
};

}  // namespace ORV_VARIANT

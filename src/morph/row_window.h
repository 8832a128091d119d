// The rows under a mask, row of the result after row of the result.
//
// Theory. Each row of the image is prepared once, in a slot of a ring that has at least one slot a row of the mask;
// with more, rows are prepared before they are needed, so that what was just written has left the store queue when it's
// read. Rows beyond a side that isn't in memory stand for the nearest row, whose slot is named again. So the rows of a
// window are a rising sequence of image rows, and two that differ never share a slot.
#pragma once
#include "morph/names.h"
#include "filter/border.h"

namespace ORV_VARIANT {

struct RowWindow {
  int32_t height;     // of the region
  int32_t top, rows;  // of the mask; top from the row of the result
  int32_t ahead;      // rows that are prepared before they are needed
  int32_t slots;      // of the ring: those, the window's, and one more for each earlier result whose rows must stay
  bool memoryAbove, memoryBelow;

  ptrdiff_t imageRow(ptrdiff_t y) const { return borderIndex(orvBorderRepl, y, height, memoryAbove, memoryBelow); }

  // make(row, slot) prepares an image row, place(i, row, slot) names row i of the window, fold(y, slot) makes a result.
  // Windows inside the image have their rows in one slot after the other, round the ring; fold() gets the first of
  // them, and their rows aren't named if `skipInside`. Other windows have slot -1.
  template <class Make, class Place, class Fold>
  void forEachRow(bool skipInside, const Make& make, const Place& place, const Fold& fold) const {
    const ptrdiff_t first = imageRow(top), end = imageRow((ptrdiff_t)height - 1 + top + rows - 1);
    ptrdiff_t made = first - 1, madeSlot = -1, slot = 0, row = first;
    for (ptrdiff_t y = 0; y < height; ++y) {
      const ptrdiff_t wanted = y + top;
      const bool inside = wanted >= 0 && wanted + rows + ahead <= height;
      const ptrdiff_t lastRow = (inside ? wanted + rows - 1 : imageRow(wanted + rows - 1)) + ahead;
      for (const ptrdiff_t last = lastRow < end ? lastRow : end; made < last;) {
        if (++madeSlot == slots) madeSlot = 0;
        make(++made, madeSlot);
      }
      // The window's first row moves on by one row or none.
      const ptrdiff_t firstRow = inside ? wanted : imageRow(wanted);
      if (firstRow != row && ++slot == slots) slot = 0;
      row = firstRow;
      if (inside && skipInside) {
        fold(y, slot);
        continue;
      }
      ptrdiff_t at = row, atSlot = slot;
      for (ptrdiff_t i = 0; i < rows; ++i) {
        const ptrdiff_t next = imageRow(wanted + i);
        if (next != at && ++atSlot == slots) atSlot = 0;
        at = next;
        place(i, at, atSlot);
      }
      fold(y, -1);
    }
  }
};

}  // namespace ORV_VARIANT

// The rows under a mask, row of the result after row of the result.
//
// Theory. Each row of the image is prepared once, in a slot of a ring that has one slot a row of the mask. Rows beyond
// a side that isn't in memory stand for the nearest row, whose slot is named again. So the rows of a window are a
// rising sequence of image rows, and two that differ never share a slot.
#pragma once
#include "filter/border.h"

namespace ORV_VARIANT {

struct RowWindow {
  int32_t height;     // of the region
  int32_t top, rows;  // of the mask; top from the row of the result
  bool memoryAbove, memoryBelow;

  ptrdiff_t imageRow(ptrdiff_t y) const { return borderIndex(orvBorderRepl, y, height, memoryAbove, memoryBelow); }

  // make(row, slot) prepares an image row, place(i, row, slot) names row i of the window, fold(y) makes a result.
  template <class Make, class Place, class Fold>
  void forEachRow(const Make& make, const Place& place, const Fold& fold) const {
    const ptrdiff_t first = imageRow(top);
    ptrdiff_t made = first - 1, madeSlot = -1, slot = 0, row = first;
    for (ptrdiff_t y = 0; y < height; ++y) {
      for (const ptrdiff_t last = imageRow(y + top + rows - 1); made < last;) {
        if (++madeSlot == rows) madeSlot = 0;
        make(++made, madeSlot);
      }
      // The window's first row moves on by one row or none.
      if (imageRow(y + top) != row && ++slot == rows) slot = 0;
      row = imageRow(y + top);
      ptrdiff_t at = row, atSlot = slot;
      for (ptrdiff_t i = 0; i < rows; ++i) {
        const ptrdiff_t next = imageRow(y + top + i);
        if (next != at && ++atSlot == rows) atSlot = 0;
        at = next;
        place(i, at, atSlot);
      }
      fold(y);
    }
  }
};

}  // namespace ORV_VARIANT

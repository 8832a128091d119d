// The ring of filtered rows behind a column pass.
//
// Theory. Row y of the result is folded from the K filtered rows y - K / 2 .. y + K / 2 of the image. The ring holds
// just these, as K pointers in order: for the next row the oldest memory moves to the end and takes the one new row.
// The working set is K rows, however high the image is, and no row is filtered twice but those beyond the region, which
// are made anew from the row that the border names.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include "filter/names.h"

namespace ORV_VARIANT {

// makeRow(y, row) filters what stands for row y, -K / 2 <= y < height + (K - 1) / 2. fold(y, rows) makes row y of the
// result. `rows` has the memory of the K rows; it is permuted.
template <class T, class MakeRow, class Fold>
static inline void runRing(int32_t height, int32_t kernelSize, T** rows, const MakeRow& makeRow, const Fold& fold) {
  const int32_t half = kernelSize / 2;
  for (int32_t i = 1; i < kernelSize; ++i) makeRow(i - 1 - half, rows[i]);
  for (int32_t y = 0; y < height; ++y) {
    T* const oldest = rows[0];
    memmove(rows, rows + 1, (size_t)(kernelSize - 1) * sizeof rows[0]);
    rows[kernelSize - 1] = oldest;
    makeRow(y + kernelSize - 1 - half, oldest);
    fold(y, rows);
  }
}

}  // namespace ORV_VARIANT

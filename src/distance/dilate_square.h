// Dilation of a small mask by a full square: what inpainting's ring is made from.
#pragma once
#include <stdint.h>
#include "core/variant.h"

namespace ORV_VARIANT {

// Sets dst to 255 where a pixel of `mask` that isn't 0 lies within `reach` rows and columns, else to 0. Rows of both
// lie `stride` bytes apart. `since` has room for a number a column.
static inline void dilateSquare(const uint8_t* mask, uint8_t* dst, ptrdiff_t stride, OrvSize size, int32_t reach,
                                int32_t* since) {
  const ptrdiff_t width = size.width, height = size.height;
  const int32_t never = reach < INT32_MAX / 2 ? reach + 1 : INT32_MAX / 2;
  for (ptrdiff_t y = 0; y < height; ++y) {
    const uint8_t* const m = mask + y * stride;
    uint8_t* const d = dst + y * stride;
    int32_t steps = never;
    for (ptrdiff_t x = 0; x < width; ++x) {
      steps = m[x] ? 0 : steps < never ? steps + 1 : never;
      d[x] = steps <= reach ? 255 : 0;
    }
    steps = never;
    for (ptrdiff_t x = width - 1; x >= 0; --x) {
      steps = m[x] ? 0 : steps < never ? steps + 1 : never;
      if (steps <= reach) d[x] = 255;
    }
  }
  // Down the columns the same, row by row: 1 marks what was reached from above, so that the way up starts from the
  // rows' own pixels only.
  for (int direction = 1; direction >= -1; direction -= 2) {
    for (ptrdiff_t x = 0; x < width; ++x) since[x] = never;
    for (ptrdiff_t i = 0; i < height; ++i) {
      uint8_t* const d = dst + (direction > 0 ? i : height - 1 - i) * stride;
      for (ptrdiff_t x = 0; x < width; ++x) {
        const int32_t steps = since[x] < never ? since[x] + 1 : never;
        since[x] = d[x] == 255 ? 0 : steps;
        d[x] = (uint8_t)(d[x] | (since[x] <= reach ? 1 : 0));
      }
    }
  }
  for (ptrdiff_t i = 0; i < height; ++i)
    for (ptrdiff_t x = 0; x < width; ++x) dst[i * stride + x] = dst[i * stride + x] ? 255 : 0;
}

}  // namespace ORV_VARIANT

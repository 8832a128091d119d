// Finds the few bytes of a row that are set.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include "features/names.h"

namespace ORV_VARIANT {

// visit(x) for each x of first <= x < end with row[x] != 0, in rising order, until it returns false. Eight bytes are
// looked at at a time; visit may change the byte that it is told.
template <class Visit>
static inline void scanCorners(const uint8_t* row, ptrdiff_t first, ptrdiff_t end, const Visit& visit) {
  ptrdiff_t x = first;
  for (; x + 8 <= end; x += 8) {
    uint64_t word;
    memcpy(&word, row + x, sizeof word);
    for (; word; word &= ~((uint64_t)0xFF << (__builtin_ctzll(word) & ~7)))
      if (!visit(x + __builtin_ctzll(word) / 8)) return;
  }
  for (; x < end; ++x)
    if (row[x] && !visit(x)) return;
}

}  // namespace ORV_VARIANT

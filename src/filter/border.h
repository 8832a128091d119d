// What lies beyond the sides of a region: the index rule that all families share.
//
// A border type holds a kind (low four bits), which says how missing pixels are made, and a flag for each side beyond
// which the pixels are real memory. Along a line of n pixels, for pixel p beyond its ends:
//
//   line 0 1 2:       p = -5 -4 -3 -2 -1 | 0 1 2 | 3 4 5 6 7
//   orvBorderRepl          0  0  0  0  0 | 0 1 2 | 2 2 2 2 2
//   orvBorderWrap          1  2  0  1  2 | 0 1 2 | 0 1 2 0 1
//   orvBorderMirr          1  0  1  2  1 | 0 1 2 | 1 0 1 2 1
//   orvBorderMirrR         1  2  2  1  0 | 0 1 2 | 2 1 0 0 1
//
// Rows are chosen first, then columns inside the row: each side moves only its own coordinate, and a row that is
// constant is so over its whole width.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "filter/names.h"

namespace ORV_VARIANT {

enum : int32_t {
  borderKindBits = 15,
  borderAllSides = orvBorderInMemTop | orvBorderInMemBottom | orvBorderInMemLeft | orvBorderInMemRight
};

static constexpr int32_t borderKind(int32_t borderType) { return borderType & borderKindBits; }

// The sides that are real memory, where only the value orvBorderInMem itself stands for all four: 22, orvBorderInMem
// with the top flag, is the top side alone.
static constexpr int32_t sidesInMemory(int32_t borderType) {
  return borderType == orvBorderInMem ? borderAllSides : borderType & borderAllSides;
}

// The same where the kind alone decides: orvBorderInMem means four sides whatever flags stand beside it.
static constexpr int32_t sidesInMemoryByKind(int32_t borderType) {
  return borderKind(borderType) == orvBorderInMem ? borderAllSides : borderType & borderAllSides;
}

// No pixel of the line: the border value stands there.
static constexpr ptrdiff_t borderNoPixel = PTRDIFF_MIN;

// p modulo n, never negative; without a division within one line of it.
static constexpr ptrdiff_t wrapIndex(ptrdiff_t p, ptrdiff_t n) {
  if (p >= -n && p < 2 * n) return p < 0 ? p + n : p < n ? p : p - n;
  const ptrdiff_t rest = p % n;
  return rest < 0 ? rest + n : rest;
}

// The pixel 0..n-1 that stands at p, at any distance from a line of n >= 1 pixels; p itself inside the line, and
// borderNoPixel beyond it for orvBorderConst and values that are no kind.
static constexpr ptrdiff_t borderIndex(int32_t kind, ptrdiff_t p, ptrdiff_t n) {
  if (p >= 0 && p < n) return p;
  switch (kind) {
    case orvBorderRepl:
      return p < 0 ? 0 : n - 1;
    case orvBorderWrap:
      return wrapIndex(p, n);
    case orvBorderMirr: {
      if (n == 1) return 0;  // the period below would be 0
      const ptrdiff_t q = wrapIndex(p, 2 * n - 2);
      return q < n ? q : 2 * n - 2 - q;
    }
    case orvBorderMirrR: {
      const ptrdiff_t q = wrapIndex(p, 2 * n);
      return q < n ? q : 2 * n - 1 - q;
    }
    default:
      return borderNoPixel;
  }
}

// The same for a line that goes on in memory before its first pixel or behind its last one; there p stands for itself.
static constexpr ptrdiff_t borderIndex(int32_t kind, ptrdiff_t p, ptrdiff_t n, bool memoryBefore, bool memoryBehind) {
  return (p < 0 && memoryBefore) || (p >= n && memoryBehind) ? p : borderIndex(kind, p, n);
}

}  // namespace ORV_VARIANT

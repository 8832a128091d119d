// Copy of a window on an image, with a border where the window sticks out.
//
// Every copy with a border is this one: a border of `left` columns and `top` rows is a window at (-left, -top). A pixel
// is N bytes whatever its type and channels are, so one driver serves them all.
//
//                 left        right
//               +------+-----+-----+    A row is assembled in three pieces: the pixels made at its left, one run that
//   rows above  |  ^   |  ^  |  ^  |    is read from memory, the pixels made at its right. A side in memory belongs to
//               +------+-----+-----+    the run. Rows above and below are assembled from the row that the rule names,
//   the source  |  <   | run |  >  |    in the same manner; so corners follow the nearest row and column.
//               +------+-----+-----+
//   rows below  |  v   |  v  |  v  |
//               +------+-----+-----+
//
// Limitations: source and window must not overlap, unless each source pixel lies already where the window puts it.
#pragma once
#include "filter/names.h"
#include "core/checks.h"
#include "filter/border.h"

namespace ORV_VARIANT {

struct WindowCopy {
  const void* src;  // first pixel of the region
  int32_t srcStep;
  OrvSize srcSize;
  void* dst;  // first pixel of the window
  int32_t dstStep;
  OrvSize dstSize;
  OrvPoint offset;     // of the window, from the first pixel of the region
  int32_t kind;        // of the sides that aren't in memory
  int32_t sides;       // in memory
  const void* value;   // one pixel, for orvBorderConst
  int32_t pixelBytes;  // 1, 2, 3, 4, 6, 12 or 16
};

// Writes every pixel of the window, and nothing else.
void copyWindow(const WindowCopy& copy);

// One direction of a window: pixels p .. p + before - 1 are made, then `run` pixels are read from memory, then `behind`
// pixels are made.
struct WindowSpan {
  ptrdiff_t p, before, run, behind;
};

// The split of `length` pixels from p on along a line of n.
static inline WindowSpan splitWindow(ptrdiff_t p, ptrdiff_t length, ptrdiff_t n, bool memoryBefore, bool memoryBehind) {
  const ptrdiff_t end = p + length;
  const ptrdiff_t wantedFirst = memoryBefore || p > 0 ? p : 0;
  const ptrdiff_t first = wantedFirst < end ? wantedFirst : end;
  const ptrdiff_t wantedLast = memoryBehind || end < n ? end : n;
  const ptrdiff_t last = wantedLast > first ? wantedLast : first;
  return {p, first - p, last - first, end - last};
}

// The checks of all copies of an image into a larger one, in their order. A step is not measured against the width.
static inline OrvStatus checkBorderCopy(const void* src, int32_t srcStep, OrvSize srcSize, const void* dst,
                                        int32_t dstStep, OrvSize dstSize, int32_t top, int32_t left) {
  ORV_REQUIRE(src && dst, orvStatusNullPtr);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  ORV_REQUIRE(validRoi(srcSize) && validRoi(dstSize) && top >= 0 && left >= 0, orvStatusSize);
  ORV_REQUIRE(dstSize.width - left >= srcSize.width && dstSize.height - top >= srcSize.height, orvStatusSize);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

// What the dyadic steps share: their checks and the lines at which a side ends.
#pragma once
#include "core/checks.h"
#include "core/image.h"
#include "core/scratch.h"
#include "filter/border.h"

namespace ORV_VARIANT {

// The checks of a step whose rows have `dstWidth` pixels.
template <class T>
static inline OrvStatus checkDyadic(const T* src, int32_t srcStep, const T* dst, int32_t dstStep, OrvSize roi,
                                    int32_t dstWidth, int32_t channels, const uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<T>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(dstStep >= rowBytes<T>(dstWidth, channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(srcStep, dstStep), orvStatusStepAlign);
  return orvStatusOk;
}

// A row of n sums with `margin` elements before it and twice that many behind. Rows that are long enough for it to pay,
// and for the buffer to have room, begin at a cache line.
static inline uint16_t* takeRow(Scratch& scratch, ptrdiff_t n, ptrdiff_t margin) {
  if (n < 64) return scratch.take<uint16_t>(n + 3 * margin, 2) + margin;
  return scratch.take<uint16_t>(n + 2 * margin + 32, 64) + 32;
}

// Half of a side, rounded up.
static inline int32_t halved(int32_t side) { return side / 2 + (side & 1); }

// Down: the line that stands at p, mirrored about the outermost one.
static inline ptrdiff_t lineBelow(ptrdiff_t p, ptrdiff_t n) { return borderIndex(orvBorderMirr, p, n); }

// Up: a mirror in the doubled grid with zeros between the lines. Its last line is a zero one, so the second line stands
// before the first, but behind the last it is the last itself.
static inline ptrdiff_t lineAbove(ptrdiff_t p, ptrdiff_t n) {
  if (p < 0) return n > 1 ? 1 : 0;
  return p < n ? p : n - 1;
}

}  // namespace ORV_VARIANT

// What all flood fills share: the work of a fill, the stack of spans, the record of the result.
//
// Theory of operation. A fill takes whole runs of a row. A filled run is pushed as a span; a span that is popped looks
// for further runs in the two rows beside it, first in the row away from its parent (the row ahead), then in the row
// of its parent (the row behind), each from left to right. Where a capacity ends a fill early, this order decides what
// has been taken.
//
// Limitations. A span is packed into 8 bytes, so that the reported sizes hold for every shape: two runs of a row have a
// pixel between them (or, in fills by gradient, at least one of their own), which leaves room for all runs of an image.
// The columns of the parent needn't be kept: they are filled, hence refused when the row behind is scanned. Places are
// 31 bits, which is more than a size of 32 bits can report.
#pragma once
#include "segment/names.h"
#include "core/checks.h"
#include "core/image.h"

namespace ORV_VARIANT {

// Columns left to right of row y; `toParent` is +1 or -1: row y + toParent is the one it was reached from.
struct Span {
  int32_t y, left, right, toParent;
};

class SpanStack {
 public:
  // `capacity`: the count at which all pending spans are dropped; 0: none.
  SpanStack(uint8_t* memory, int32_t width, int32_t capacity)
      : next_(memory), bottom_(memory), width_((uint32_t)width), capacity_(capacity) {}

  __attribute__((always_inline)) bool empty() const { return next_ == bottom_; }
  __attribute__((always_inline)) void push(Span s) {
    const uint32_t place = (uint32_t)s.y * width_ + (uint32_t)s.left;
    loose((uint32_t*)(void*)next_)[0] = place * 2 + (s.toParent > 0);
    loose((uint32_t*)(void*)next_)[1] = (uint32_t)(s.right - s.left);
    next_ += 8;
    if (next_ - bottom_ == 8 * (ptrdiff_t)capacity_) next_ = bottom_;
  }
  __attribute__((always_inline)) Span pop() {
    next_ -= 8;
    const uint32_t word = loose((uint32_t*)(void*)next_)[0], more = loose((uint32_t*)(void*)next_)[1];
    const uint32_t place = word >> 1, y = place / width_, left = place - y * width_;
    return {(int32_t)y, (int32_t)left, (int32_t)(left + more), (word & 1) != 0 ? 1 : -1};
  }

 private:
  uint8_t *next_, *bottom_;
  uint32_t width_;
  int32_t capacity_;
};

// What a fill has taken: the pixels, and the box of its spans.
struct Filled {
  double area;
  int32_t left, top, right, bottom;

  __attribute__((always_inline)) void include(const Span& s) {
    left = s.left < left ? s.left : left;
    right = s.right > right ? s.right : right;
    top = s.y < top ? s.y : top;
    bottom = s.y > bottom ? s.y : bottom;
  }
};

// One fill. `low` and `high` are the accepted bounds, or the deltas of a fill by gradient; `reach` is 1 where pixels
// also touch at corners. `capacity` as for the stack; with 1 just the run of the seed is filled.
template <class T>
struct FloodJob {
  Plane<T> image;
  OrvSize size;
  OrvPoint seed;
  T low[3], high[3], value[3];
  int32_t reach, capacity;
  uint8_t* buffer;
};

// The bytes that fills of a bounded or equal rule report.
static inline int32_t floodBytes(OrvSize size) {
  return (int32_t)(uint32_t)((((uint64_t)(uint32_t)size.height * 24 * (uint32_t)size.width) >> 2) + 32);
}

static inline OrvStatus reportSize(OrvSize roiSize, int32_t* bufferSize, int32_t (*bytes)(OrvSize)) {
  ORV_REQUIRE(bufferSize != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  *bufferSize = bytes(roiSize);
  return orvStatusOk;
}

// The arguments of a public fill, after the image. Values have one element or three.
template <class T>
struct FloodCall {
  T* srcDst;
  int32_t step;
  OrvSize size;
  OrvPoint seed;
  const T *value, *minDelta, *maxDelta;
  OrvConnectedComp* region;
  uint8_t* buffer;
};

// The checks that all fills begin with. Fills without deltas give `value` in their place.
template <class T>
static inline OrvStatus checkFlood(const FloodCall<T>& c, int32_t channels) {
  ORV_REQUIRE(allSet(c.srcDst, c.region, c.buffer, c.value, c.minDelta, c.maxDelta), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(c.size), orvStatusSize);
  ORV_REQUIRE(c.step >= rowBytes<T>(c.size.width, channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(c.step), orvStatusStepAlign);
  ORV_REQUIRE(c.seed.x >= 0 && c.seed.x < c.size.width && c.seed.y >= 0 && c.seed.y < c.size.height,
              orvStatusOutOfRange);
  return orvStatusOk;
}

template <class T>
static inline void writeRegion(const FloodCall<T>& c, int32_t channels, const Filled& f) {
  OrvConnectedComp comp = {f.area, {0, 0, 0}, {f.left, f.top, f.right - f.left + 1, f.bottom - f.top + 1}};
  for (int32_t k = 0; k < channels; ++k) comp.value[k] = (double)loose(c.value)[k];
  *loose(c.region) = comp;
}

}  // namespace ORV_VARIANT

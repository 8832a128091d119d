// Flood fills whose pixels lie near the neighbour from which they are reached.
//
// Theory of operation. Tests compare pixels with pixels, so all keep their values until their span is finished; a map
// of the pixels already taken stands for the filled ones, with a ring around it that is always taken. A run is entered
// where it is near a touching pixel of the popped span; it grows to the left from pixel to pixel, to the right also
// from the popped span.
//
//     columns        left-1   left          right   right+1
//     popped span             [s   s   s   s   s]
//     4: touching             |x-th of x   |
//     8: touching    left     x-1, x, x+1 within the span     right
//
// Limitation. The map needs a pass over the whole region, also where the fill is small.
//
// Read once a width like core/kernels.h, in its place.
#include "core/kernels.h"
#include "segment/flood.h"
#include "segment/flood_runs.h"
#include <math.h>
#include <string.h>

#if defined(ORV_FLOOD_GRAD_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_FLOOD_GRAD_TOGGLE
#undef ORV_FLOOD_GRAD_TOGGLE
#else
#define ORV_FLOOD_GRAD_TOGGLE
#endif
KERNELS_BEGIN

// Whether pixels lie within the deltas of their references: a block, and one.
template <class T, int C>
struct Nearness {
  using V = hn::VFromD<FloodTag<T, C>>;
  const FloodJob<T>* job;
  // Integers: minDelta, maxDelta. Floats: (minDelta - maxDelta) / 2, (minDelta + maxDelta) / 2.
  T first[C], second[C];

  HWY_INLINE explicit Nearness(const FloodJob<T>& j) : job(&j) {
    for (int k = 0; k < C; ++k) {
      first[k] = j.low[k], second[k] = j.high[k];
      if constexpr (std::is_same<T, float>::value) {
        first[k] = (j.low[k] - j.high[k]) * 0.5f;
        second[k] = 0.5f * (j.low[k] + j.high[k]);
      }
    }
  }
  // Bits of the pixels that are near the reference pixels.
  HWY_INLINE uint64_t bits(const T* pixel, const T* reference) const {
    if constexpr (C == 1) return inlined(pixel, reference);
    else return shared(pixel, reference);
  }
  // Interleaved pixels take many instructions: one copy for all scans.
  HWY_NOINLINE uint64_t shared(const T* pixel, const T* reference) const { return inlined(pixel, reference); }
  HWY_INLINE uint64_t inlined(const T* pixel, const T* reference) const {
    const FloodTag<T, C> d;
    const Pixels<T, C> p(pixel), r(reference);
    if constexpr (std::is_same<T, float>::value) {
      uint64_t far = 0;  // a NaN isn't far
      for (int k = 0; k < C; ++k) {
        const V distance = hn::Abs(hn::Sub(hn::Add(p.v[k], hn::Set(d, first[k])), r.v[k]));
        far |= MaskBits(d, hn::Gt(distance, hn::Set(d, second[k])));
      }
      return ~far & kAll<kBlock<T, C>>;
    } else {
      V far = hn::Zero(d);
      for (int k = 0; k < C; ++k) {
        const V below = hn::SaturatedSub(hn::SaturatedSub(r.v[k], p.v[k]), hn::Set(d, first[k]));
        const V above = hn::SaturatedSub(hn::SaturatedSub(p.v[k], r.v[k]), hn::Set(d, second[k]));
        far = hn::Or(far, hn::Or(below, above));
      }
      return MaskBits(d, hn::Eq(far, hn::Zero(d)));
    }
  }
  HWY_INLINE bool one(const T* pixel, const T* reference) const {
    for (int k = 0; k < C; ++k) {
      const T p = loose(pixel)[k], r = loose(reference)[k];
      if constexpr (std::is_same<T, float>::value) {
        if (fabsf((p + first[k]) - r) > second[k]) return false;
      } else {
        if ((uint32_t)(p + first[k] - r) > (uint32_t)first[k] + (uint32_t)second[k]) return false;
      }
    }
    return true;
  }
};

// One scan of a row beside a popped span (or of the seed's own row, with an empty span).
template <class T, int C>
struct GradRow {
  static constexpr ptrdiff_t N = kBlock<T, C>;
  const Nearness<T, C>& near;
  const T *row, *parent;
  uint8_t* taken;                // of the row; -1 and width are taken too
  ptrdiff_t width, left, right;  // right: of the popped span
  ptrdiff_t reach;

  HWY_INLINE GradRow(const Nearness<T, C>& n, const T* r, const T* p, uint8_t* t, ptrdiff_t w, ptrdiff_t spanLeft,
                     ptrdiff_t spanRight, ptrdiff_t touch)
      : near(n), row(r), parent(p), taken(t), width(w), left(spanLeft), right(spanRight), reach(touch) {}

  HWY_INLINE uint64_t free(ptrdiff_t x) const {
    const hn::Simd<uint8_t, (size_t)N, 0> d;
    return MaskBits(d, hn::Eq(hn::LoadU(d, taken + x), hn::Zero(d)));
  }
  // Near a pixel of the popped span that touches column x.
  HWY_INLINE bool entersOne(ptrdiff_t x) const {
    const ptrdiff_t from = x - reach < left ? left : x - reach, to = x + reach > right ? right : x + reach;
    for (ptrdiff_t k = from; k <= to; ++k)
      if (near.one(row + C * x, parent + C * k)) return true;
    return false;
  }
  // The same for a block whose columns all have their full number of touching pixels.
  HWY_INLINE uint64_t enters(ptrdiff_t x) const {
    const T* const p = row + C * x;
    uint64_t bits = near.bits(p, parent + C * x);
    if (reach != 0) bits |= near.bits(p, parent + C * (x - 1)) | near.bits(p, parent + C * (x + 1));
    return bits;
  }
  // Near the left neighbour.
  HWY_INLINE uint64_t follows(ptrdiff_t x) const { return near.bits(row + C * x, row + C * (x - 1)); }

  // The first column of [x, end) where the fill enters this row.
  HWY_INLINE ptrdiff_t entry(ptrdiff_t x, ptrdiff_t end) const {
    const auto one = PIXEL(i) { return taken[i] == 0 && entersOne(i); };
    for (; x < left + reach && x < end; ++x)
      if (one(x)) return x;
    const ptrdiff_t inner = right - reach + 1;  // behind the columns with full touch
    if (x < inner) {
      x = FirstColumn<N>(
          x, inner < end ? inner : end, left + reach, inner,
          PIXEL(i) {
            const uint64_t open = free(i);
            return open != 0 ? open & enters(i) : 0;
          },
          one);
      if (x < inner) return x;
    }
    while (x < end && !one(x)) ++x;
    return x;
  }

  // The last column of the run that holds column x, grown to the right.
  HWY_INLINE ptrdiff_t grownRight(ptrdiff_t x) const {
    const auto refused = PIXEL(i) {
      return taken[i] != 0 || !(near.one(row + C * i, row + C * (i - 1)) || entersOne(i));
    };
    for (++x; x < left + reach && x < width; ++x)
      if (refused(x)) return x - 1;
    const ptrdiff_t inner = right - reach + 1;
    if (x < inner) {
      x = FirstColumn<N>(
          x, inner, left + reach > 1 ? left + reach : 1, inner,
          PIXEL(i) { return ~(free(i) & (follows(i) | enters(i))) & kAll<N>; }, refused);
      if (x < inner) return x - 1;
    }
    for (; x <= right + reach && x < width; ++x)
      if (refused(x)) return x - 1;
    return FirstColumn<N>(
               x, width, 1, width, PIXEL(i) { return ~(free(i) & follows(i)) & kAll<N>; }, refused) -
           1;
  }

  // The first column of the run that holds column x, grown to the left.
  HWY_INLINE ptrdiff_t grownLeft(ptrdiff_t x) const {
    return 1 + LastColumn<N>(
                   x - 1, 0, width - 1,
                   PIXEL(i) { return ~(free(i) & near.bits(row + C * i, row + C * (i + 1))) & kAll<N>; },
                   PIXEL(i) { return taken[i] != 0 || !near.one(row + C * i, row + C * (i + 1)); });
  }
};

template <class T, int C>
HWY_INLINE void FloodGrad(const FloodJob<T>& job, Filled& filled) {
  const ptrdiff_t width = job.size.width, height = job.size.height, stride = width + 2;
  uint8_t* const map = job.buffer;
  memset(map, 1, (size_t)stride);
  for (ptrdiff_t y = 1; y <= height; ++y) {
    map[y * stride] = 1;
    memset(map + y * stride + 1, 0, (size_t)width);
    map[y * stride + width + 1] = 1;
  }
  memset(map + (height + 1) * stride, 1, (size_t)stride);
  const auto takenRow = [&](ptrdiff_t y) { return map + (y + 1) * stride + 1; };

  const Nearness<T, C> near(job);
  const int32_t x0 = job.seed.x, y0 = job.seed.y;
  const T* const seedRow = raw(job.image.row(y0));
  // The seed's row has no span beside it: an empty one to the left of the image.
  const GradRow<T, C> seedRun(near, seedRow, seedRow, takenRow(y0), width, -8, -9, 0);
  const int32_t left = (int32_t)seedRun.grownLeft(x0), right = (int32_t)seedRun.grownRight(x0);
  memset(takenRow(y0) + left, 1, (size_t)(right - left + 1));
  filled = {0, left, y0, right, y0};

  SpanStack stack(map + (height + 2) * stride, job.size.width, 0);
  stack.push({y0, left, right, 1});
  int64_t area = 0;
  while (!stack.empty()) {
    const Span s = stack.pop();
    filled.include(s);
    T* const spanRow = raw(job.image.row(s.y));
    const ptrdiff_t from = s.left - job.reach < 0 ? 0 : s.left - job.reach;
    const ptrdiff_t end = s.right + job.reach + 1 > width ? width : s.right + job.reach + 1;
    for (int32_t side = -1; side <= 1; side += 2) {  // the row ahead, the row behind
      const int32_t toward = side * s.toParent, y = s.y + toward;
      if ((uint32_t)y >= (uint32_t)height) continue;
      uint8_t* const taken = takenRow(y);
      const GradRow<T, C> beside(near, raw(job.image.row(y)), spanRow, taken, width, s.left, s.right, job.reach);
      for (ptrdiff_t x = from;;) {
        x = beside.entry(x, end);
        if (x >= end) break;
        const ptrdiff_t first = beside.grownLeft(x), last = beside.grownRight(x);
        memset(taken + first, 1, (size_t)(last - first + 1));
        stack.push({y, (int32_t)first, (int32_t)last, -toward});
        x = last + 2;
      }
    }
    SetPixels<T, C>(spanRow, s.left, s.right, job.value);
    area += s.right - s.left + 1;
  }
  filled.area = (double)area;
}

template <class T>
void FloodGradC1(const FloodJob<T>& job, Filled& filled) {
  FloodGrad<T, 1>(job, filled);
}
template <class T>
void FloodGradC3(const FloodJob<T>& job, Filled& filled) {
  FloodGrad<T, 3>(job, filled);
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

template <class T>
static inline OrvStatus floodGrad(const FloodCall<T>& call, int32_t channels, int32_t reach,
                                  void (*kernel)(const FloodJob<T>&, Filled&)) {
  const OrvStatus status = checkFlood(call, channels);
  ORV_REQUIRE(status == orvStatusOk, status);
  FloodJob<T> job = {{call.srcDst, call.step}, call.size, call.seed, {}, {}, {}, reach, 0, call.buffer};
  for (int32_t k = 0; k < channels; ++k) {
    job.low[k] = loose(call.minDelta)[k];
    job.high[k] = loose(call.maxDelta)[k];
    job.value[k] = loose(call.value)[k];
    ORV_REQUIRE(!(job.low[k] < 0 || job.high[k] < 0), orvStatusOutOfRange);
  }
  Filled filled;
  kernel(job, filled);
  writeRegion(call, channels, filled);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT
#endif
#endif

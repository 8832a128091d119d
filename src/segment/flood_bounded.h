// Flood fills whose accepted pixels lie between two bounds; equality is the case of two equal bounds.
//
// A filled pixel holds the new value. Where that lies between the bounds itself, it could not be told from a pixel yet
// to be filled, and a fill would go round a hole for ever: such fills run on a map of the accepted pixels.
//
// Read once a width like core/kernels.h, in its place.
#include "core/kernels.h"
#include "segment/flood.h"
#include "segment/flood_runs.h"

#if defined(ORV_FLOOD_BOUNDED_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_FLOOD_BOUNDED_TOGGLE
#undef ORV_FLOOD_BOUNDED_TOGGLE
#else
#define ORV_FLOOD_BOUNDED_TOGGLE
#endif
KERNELS_BEGIN

// Lanes between the bounds. 32s is filled by equality alone.
template <class D, class V>
HWY_INLINE auto Between(D d, V v, V low, V high) {
  (void)d;
  using T = hn::TFromD<D>;
  if constexpr (std::is_same<T, float>::value) return hn::And(hn::Ge(v, low), hn::Ge(high, v));
  else if constexpr (std::is_same<T, int32_t>::value) return hn::Eq(v, low);
  else return hn::Eq(v, hn::Min(hn::Max(v, low), high));
}

// Pixels between the bounds of a job: a block, and one.
template <class T, int C>
struct Bounds {
  hn::VFromD<FloodTag<T, C>> low[C], high[C];
  const FloodJob<T>* job;

  HWY_INLINE explicit Bounds(const FloodJob<T>& j) : job(&j) {
    for (int k = 0; k < C; ++k) {
      low[k] = hn::Set(FloodTag<T, C>(), j.low[k]);
      high[k] = hn::Set(FloodTag<T, C>(), j.high[k]);
    }
  }
  HWY_INLINE uint64_t bits(const T* row, ptrdiff_t x) const {
    const FloodTag<T, C> d;
    const Pixels<T, C> p(row + C * x);
    auto inside = Between(d, p.v[0], low[0], high[0]);
    for (int k = 1; k < C; ++k) inside = hn::And(inside, Between(d, p.v[k], low[k], high[k]));
    return MaskBits(d, inside);
  }
  HWY_INLINE bool one(const T* row, ptrdiff_t x) const {
    bool inside = true;
    for (int k = 0; k < C; ++k) {
      const T v = loose(row)[C * x + k];
      inside &= v >= job->low[k] && job->high[k] >= v;
    }
    return inside;
  }
};

template <class T, int C>
HWY_INLINE void FloodBounded(const FloodJob<T>& job, Filled& filled) {
  constexpr ptrdiff_t N = kBlock<T, C>;
  const ptrdiff_t width = job.size.width;
  const Bounds<T, C> bounds(job);
  // The ends of the run of accepted pixels around column x of a row, which counts as one.
  const auto runLeft = [&](const T* row, ptrdiff_t x) __attribute__((always_inline)) {
    return 1 + LastColumn<N>(
                   x - 1, 0, width, PIXEL(i) { return ~bounds.bits(row, i) & kAll<N>; },
                   PIXEL(i) { return !bounds.one(row, i); });
  };
  const auto runRight = [&](const T* row, ptrdiff_t x) __attribute__((always_inline)) {
    return FirstColumn<N>(
               x + 1, width, 0, width, PIXEL(i) { return ~bounds.bits(row, i) & kAll<N>; },
               PIXEL(i) { return !bounds.one(row, i); }) -
           1;
  };

  T* const seedRow = raw(job.image.row(job.seed.y));
  const int32_t left = (int32_t)runLeft(seedRow, job.seed.x), right = (int32_t)runRight(seedRow, job.seed.x);
  SetPixels<T, C>(seedRow, left, right, job.value);
  filled = {(double)(right - left + 1), left, job.seed.y, right, job.seed.y};
  if (job.size.height == 1 || job.capacity == 1) return;

  SpanStack stack(job.buffer, job.size.width, job.capacity);
  stack.push({job.seed.y, left, right, job.seed.y == job.size.height - 1 ? -1 : 1});
  int64_t area = 0;
  while (!stack.empty()) {
    const Span s = stack.pop();
    filled.include(s);
    const ptrdiff_t from = s.left - job.reach < 0 ? 0 : s.left - job.reach;
    const ptrdiff_t end = s.right + job.reach + 1 > width ? width : s.right + job.reach + 1;
    for (int32_t side = -1; side <= 1; side += 2) {  // the row ahead, the row behind
      const int32_t toward = side * s.toParent, y = s.y + toward;
      if ((uint32_t)y >= (uint32_t)job.size.height) continue;
      T* const row = raw(job.image.row(y));
      for (ptrdiff_t x = from; x < end;) {
        x = FirstColumn<N>(
            x, end, 0, width, PIXEL(i) { return bounds.bits(row, i); }, PIXEL(i) { return bounds.one(row, i); });
        if (x >= end) break;
        const ptrdiff_t first = x == from ? runLeft(row, x) : x, last = runRight(row, x);
        SetPixels<T, C>(row, first, last, job.value);
        stack.push({y, (int32_t)first, (int32_t)last, -toward});
        area += last - first + 1;
        x = last + 2;
      }
    }
  }
  filled.area += (double)area;
}

template <class T>
void FloodC1(const FloodJob<T>& job, Filled& filled) {
  FloodBounded<T, 1>(job, filled);
}
template <class T>
void FloodC3(const FloodJob<T>& job, Filled& filled) {
  FloodBounded<T, 3>(job, filled);
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

template <class T>
using FloodKernel = void (*)(const FloodJob<T>&, Filled&);

// The bounds of a fill around the seed's value: integers saturate, floats are plain sums.
static inline float lowerBound(float s, float delta) { return s - delta; }
static inline float upperBound(float s, float delta) { return s + delta; }
template <class T>
static inline T lowerBound(T s, T delta) {
  return (T)(s > delta ? s - delta : 0);
}
template <class T>
static inline T upperBound(T s, T delta) {
  return (T)(s < (T)~delta ? s + delta : (T) ~(T)0);
}

// Fills a map of the accepted pixels, then the pixels that it has taken. The map lies behind the stack: together they
// take 3 of the 6 bytes a pixel.
template <class T, int C>
static inline void floodOverMap(const FloodJob<T>& job, FloodKernel<uint8_t> kernel, Filled& filled) {
  enum : uint8_t { refused, accepted, taken };
  const int32_t width = job.size.width, height = job.size.height;
  const Plane<uint8_t> map = {job.buffer + 32 + 2 * (ptrdiff_t)width * height, width};
  for (int32_t y = 0; y < height; ++y) {
    const Loose<T>* p = job.image.row(y);
    Loose<uint8_t>* const m = map.row(y);
    for (ptrdiff_t x = 0; x < width; ++x, p += C) {
      bool inside = true;
      for (int k = 0; k < C; ++k) inside &= p[k] >= job.low[k] && job.high[k] >= p[k];
      m[x] = inside ? accepted : refused;
    }
  }
  kernel({map, job.size, job.seed, {accepted}, {accepted}, {taken}, job.reach, job.capacity, job.buffer}, filled);
  for (int32_t y = 0; y < height; ++y) {
    Loose<T>* p = job.image.row(y);
    const Loose<uint8_t>* const m = map.row(y);
    for (ptrdiff_t x = 0; x < width; ++x, p += C)
      if (m[x] == taken)
        for (int k = 0; k < C; ++k) p[k] = job.value[k];
  }
}

// A fill by equality, or, if `ranged`, by the deltas of the call. If the seed has the new value already, nothing is
// written, the record neither.
template <class T, int C>
static inline OrvStatus floodBounded(const FloodCall<T>& call, bool ranged, int32_t reach, FloodKernel<T> kernel,
                                     FloodKernel<uint8_t> mapKernel) {
  const OrvStatus status = checkFlood(call, C);
  ORV_REQUIRE(status == orvStatusOk, status);
  FloodJob<T> job = {{call.srcDst, call.step}, call.size, call.seed, {}, {}, {}, reach, 0, call.buffer};
  if (ranged) job.capacity = wrapMul(call.size.width, call.size.height) / 4;
  const Loose<T>* const seed = job.image.row(call.seed.y) + C * (ptrdiff_t)call.seed.x;
  bool filledBefore = true, accepted = true;
  for (int k = 0; k < C; ++k) {
    const T s = seed[k], v = job.value[k] = loose(call.value)[k];
    job.low[k] = ranged ? lowerBound(s, (T)loose(call.minDelta)[k]) : s;
    job.high[k] = ranged ? upperBound(s, (T)loose(call.maxDelta)[k]) : s;
    filledBefore &= s == v;
    accepted &= v >= job.low[k] && job.high[k] >= v;
  }
  ORV_REQUIRE(!filledBefore, orvStatusOk);
  Filled filled;
  if (accepted) floodOverMap<T, C>(job, mapKernel, filled);
  else kernel(job, filled);
  writeRegion(call, C, filled);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT
#endif
#endif

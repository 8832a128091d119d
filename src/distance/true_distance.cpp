// Exact Euclidean distance transform.
// One body serves both variants.
//
// Theory of operation (P. Felzenszwalb, D. Huttenlocher, "Distance Transforms of Sampled Functions", 2004). Down each
// column: the distance to the nearest zero pixel of the column, squared. Along each row: the lower envelope of the
// parabolas (q - v)^2 + f(v), one standing on each pixel v.
//
// The contract's envelope is built in single precision, parabola by parabola (envelope() below): sequential, and with
// branches that noise makes unpredictable. Where whole numbers stay below 2^24 and rounding can't move a crossing
// across a pixel, its result is the exact least value, however that is found. RowOfLeast finds it without unpredictable
// branches. The parabola that is lowest moves to the right only, so its place at every 16th pixel is found by halving:
// between those of two neighbours that are known. A block of 16 pixels then looks at what lies between its ends:
//
//      pixels      0 . . . . . . . 16 . . . . . . 32          each place is looked for between the
//      order       1                3             2           arrows' ends of its two neighbours
//      lowest at   4               11            19
//
// When is it the same? A crossing at s, of parabolas `apart` pixels apart, is off by at most 1.2e-7 * s, and no
// crossing is nearer to a pixel that it isn't on than 1 / (2 * apart). Parabolas that are mixed up differ by less than
// 4 there, so they are no further apart than twice the root of the largest result.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "distance/true_distance.cpp"
#include "core/kernels.h"
#include "core/primitives.h"
#include "core/scratch.h"

#ifndef ORV_TRUE_DISTANCE
#define ORV_TRUE_DISTANCE
namespace {

constexpr float none = 3.4028235e38f;          // squared distance where the column has no zero pixel
constexpr float mostWhole = 16777216.f;        // whole numbers below are exact
constexpr ptrdiff_t block = 16, padding = 16;  // pixels of a block; elements of `none` behind a row
constexpr int32_t narrow = 64;                 // rows below are built parabola by parabola

using Row = LooseElement<float>*;

// Distances are whole numbers on their way through the columns, kept in the bits of the result's elements.
__attribute__((always_inline)) inline int32_t whole(float bits) { return __builtin_bit_cast(int32_t, bits); }
__attribute__((always_inline)) inline float inBits(int32_t number) { return __builtin_bit_cast(float, number); }

}  // namespace
#endif

KERNELS_BEGIN

// Pixels of a column since its last zero pixel, from the bottom; `below` is null for the last row. A column without one
// counts from the height on.
void CountUp(const LooseElement<uint8_t>* s, Row below, Row d, ptrdiff_t width, int32_t height) {
  if (below)
    Columns(
        0, width, PIXEL(x) { d[x] = inBits((whole(below[x]) + 1) & -(int32_t)(s[x] != 0)); });
  else
    Columns(
        0, width, PIXEL(x) { d[x] = inBits(height & -(int32_t)(s[x] != 0)); });
}
// The same from the top, in `counts`, and the smaller of the two; its square goes to f, which may be d.
void CountDown(int32_t* counts, Row d, Row f, ptrdiff_t width, int32_t height) {
  Columns(
      0, width, PIXEL(x) {
        const int32_t fromAbove = counts[x] + 1, fromBelow = whole(d[x]);
        const int32_t count = fromAbove < fromBelow ? fromAbove : fromBelow;
        counts[x] = count;
        const float square = (float)count * (float)count;
        f[x] = count >= height ? none : square;
      });
}

// The largest square of a row that isn't `none`; `padding` elements of `none` lie behind it.
HWY_INLINE float LargestSquare(const float* f, ptrdiff_t width) {
  const hn::ScalableTag<float> d;
  auto most = hn::Zero(d);
  for (ptrdiff_t x = 0; x < width; x += (ptrdiff_t)hn::Lanes(d)) {
    const auto v = hn::LoadU(d, f + x);
    most = hn::Max(most, hn::IfThenElseZero(hn::Lt(v, hn::Set(d, none)), v));
  }
  return hn::GetLane(hn::MaxOfLanes(d, most));
}

// The leftmost parabola of [low, high], or just behind it, that is lowest at q.
HWY_INLINE int32_t LowestAt(const float* f, const float* rising, ptrdiff_t q, int32_t low, int32_t high) {
  const hn::ScalableTag<float> d;
  const auto step = hn::Set(d, (float)hn::Lanes(d));
  auto at = hn::Add(hn::Set(d, (float)low), hn::LoadU(d, rising));
  auto best = hn::Set(d, none), place = at;
  const auto here = hn::Set(d, (float)q);
  for (ptrdiff_t v = low; v <= high; v += (ptrdiff_t)hn::Lanes(d)) {
    const auto apart = hn::Sub(here, at);
    const auto value = hn::Add(hn::Mul(apart, apart), hn::LoadU(d, f + v));
    place = hn::IfThenElse(hn::Lt(value, best), at, place);
    best = hn::Min(value, best);
    at = hn::Add(at, step);
  }
  const auto least = hn::MinOfLanes(d, best);
  const auto first = hn::MinOfLanes(d, hn::IfThenElse(hn::Eq(best, least), place, hn::Set(d, none)));
  return (int32_t)hn::GetLane(first);
}

// Whether the envelope of a row comes to the exact least values, by the largest column distance and result.
HWY_INLINE bool IsExact(float width, float mostSquare, float mostResult) {
  if (mostSquare + width * width >= mostWhole) return false;
  const float apart = 2 * __builtin_sqrtf(mostResult + 4);
  return mostResult == none || 2 * 1.2e-7f * width * (apart < width ? apart : width) < 0.99f;
}

// Roots of the least values of a row; returns whether they are what the envelope comes to. `padding` elements of `none`
// lie behind f; `lowest` has room for a number a block.
bool RowOfLeast(const float* f, Row out, ptrdiff_t width, int32_t* lowest) {
  const hn::ScalableTag<float> d;
  const ptrdiff_t lanes = (ptrdiff_t)hn::Lanes(d), blocks = (width + block - 1) / block;
  alignas(64) float rising[16], result[block];
  for (int i = 0; i < 16; ++i) rising[i] = (float)i;

  ptrdiff_t stride = 1;
  while (stride < blocks) stride *= 2;
  for (ptrdiff_t i = 0; stride > 0; stride /= 2, i = stride)
    for (; i < blocks; i += 2 * stride) {
      int32_t low = i > 0 ? lowest[i - stride] : 0;
      int32_t high = i > 0 && i + stride < blocks ? lowest[i + stride] : (int32_t)width - 1;
      // None is further away than the parabola that stands here is high.
      const ptrdiff_t q = i * block;
      if (f[q] < mostWhole) {
        const auto most = (int32_t)__builtin_sqrtf(f[q]);
        low = HWY_MAX(low, (int32_t)q - most);
        high = HWY_MIN(high, (int32_t)q + most);
      }
      lowest[i] = LowestAt(f, rising, q, low, high);
      if (i == 0) break;
    }

  auto most = hn::Zero(d);
  for (ptrdiff_t i = 0; i < blocks; ++i) {
    const ptrdiff_t q = i * block, left = HWY_MIN(width - q, block);
    const int32_t low = lowest[i], high = i + 1 < blocks ? lowest[i + 1] : (int32_t)width - 1;
    for (ptrdiff_t k = 0; k < left; k += lanes) {
      const auto here = hn::LoadU(d, f + q + k);
      if (k + lanes <= left && hn::AllTrue(d, hn::Eq(here, hn::Zero(d)))) {
        hn::StoreU(here, d, raw(out + q + k));
        continue;
      }
      // Two at a time, so that they overlap; one behind the last does no harm.
      const auto two = hn::Set(d, 2.f);
      auto apart = hn::Add(hn::Set(d, (float)(q + k - low)), hn::LoadU(d, rising));
      auto apartNext = hn::Sub(apart, hn::Set(d, 1.f));
      auto best = hn::Set(d, none), bestNext = best;
      for (ptrdiff_t v = low; v <= high; v += 2) {
        best = hn::Min(best, hn::Add(hn::Mul(apart, apart), hn::Set(d, f[v])));
        bestNext = hn::Min(bestNext, hn::Add(hn::Mul(apartNext, apartNext), hn::Set(d, f[v + 1])));
        apart = hn::Sub(apart, two);
        apartNext = hn::Sub(apartNext, two);
      }
      best = hn::Min(best, bestNext);
      most = hn::Max(most, best);
      const auto root = hn::Sqrt(best);
      if (k + lanes <= left) hn::StoreU(root, d, raw(out + q + k));
      else {
        hn::StoreU(root, d, result);
        for (ptrdiff_t x = k; x < left; ++x) out[q + x] = result[x - k];
      }
    }
  }
  return IsExact((float)width, LargestSquare(f, width), hn::GetLane(hn::MaxOfLanes(d, most)));
}

KERNELS_END

#if HWY_ONCE
namespace {

// What a thread works a row out in.
struct RowWork {
  float* f;             // the row's values, `padding` elements of `none` behind them if it isn't narrow
  float* from;          // parabola k is lowest between from[k] and from[k + 1]
  int32_t* at;          // where it stands
  const float* halves;  // 0.5 / i: half the reciprocals of differences
};

float square(ptrdiff_t i) { return (float)i * (float)i; }

// The row's envelope, parabola by parabola, in single precision.
void envelope(Row d, ptrdiff_t width, const RowWork& w) {
  ptrdiff_t k = 0;
  w.at[0] = 0;
  w.from[0] = -none;
  w.from[1] = none;
  for (ptrdiff_t q = 1; q < width; ++q) {
    const float top = w.f[q] + square(q);
    float s;
    for (;; --k) {
      const int32_t v = w.at[k];
      s = (top - w.f[v] - square(v)) * w.halves[q - v];
      if (s > w.from[k]) break;
    }
    ++k;
    w.at[k] = (int32_t)q;
    w.from[k] = s;
    w.from[k + 1] = none;
  }
  k = 0;
  for (ptrdiff_t q = 0; q < width; ++q) {
    while ((float)q > w.from[k + 1]) ++k;
    d[q] = square(q - w.at[k]) + w.f[w.at[k]];
  }
  orvsSqrt_32f(raw(d), raw(d), (int32_t)width);
}

int32_t rounded4(int32_t n) { return wrapAdd(n, 3) & ~3; }

}  // namespace

OrvStatus orviTrueDistanceTransformGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  const int32_t width = rounded4(roiSize.width), height = rounded4(roiSize.height);
  *bufferSize = wrapMul(wrapAdd(wrapMul(width > height ? width : height, 24), 56), owncvGetMaxNumThreads());
  return orvStatusOk;
}

OrvStatus orviTrueDistanceTransform_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= roiSize.width && dstStep >= rowBytes<float>(roiSize.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<float>(dstStep), orvStatusStepAlign);
  const ptrdiff_t width = roiSize.width;
  const int32_t height = roiSize.height;
  const Plane<float> result{dst, dstStep};
  const auto countUp = WIDEST(CountUp);
  const auto countDown = WIDEST(CountDown);
  const auto rowOfLeast = WIDEST(RowOfLeast);
  const Plane<const uint8_t> source{src, srcStep};
  for (ptrdiff_t y = height - 1; y >= 0; --y)
    countUp(source.row(y), y + 1 < height ? result.row(y + 1) : nullptr, result.row(y), width, height);

  Scratch scratch{buffer};
  float* const halves = scratch.take<float>(width);
  for (ptrdiff_t i = 1; i < width; ++i) halves[i] = 0.5f / (float)i;
  int32_t* const counts = scratch.take<int32_t>(width, 4);
  for (ptrdiff_t x = 0; x < width; ++x) counts[x] = height - 1;
  uint8_t* const rest = scratch.next;
  const ptrdiff_t behind = width < narrow ? 0 : padding;
  const auto workOf = [&](int32_t thread) {
    Scratch own{rest + thread * 4 * (3 * width + 1 + behind)};
    RowWork work{own.take<float>(width + behind, 4), own.take<float>(width + 1, 4), own.take<int32_t>(width, 4),
                 halves};
    for (ptrdiff_t i = 0; i < behind; ++i) work.f[width + i] = none;
    return work;
  };
  const auto finish = [&](Row d, const RowWork& work) {
    if (width < narrow || !rowOfLeast(work.f, d, width, work.at)) envelope(d, width, work);
  };

  const int32_t threads = owncvGetMaxNumThreads();
  if (threads >= 2 && (runomp() != 0 || (wrapMul(threads, height) >= 256 && width >= 256))) {
    for (ptrdiff_t y = 0; y < height; ++y) countDown(counts, result.row(y), result.row(y), width, height);
    runTeam(threads, height, [&](int32_t first, int32_t rows) {
      const RowWork work = workOf(owncvGetIdThreads());
      for (int32_t y = first; y < first + rows; ++y) {
        memcpy(work.f, raw(result.row(y)), (size_t)width * sizeof(float));
        finish(result.row(y), work);
      }
    });
  } else {
    // On one thread a row is finished while it is in the first cache.
    const RowWork work = workOf(0);
    for (ptrdiff_t y = 0; y < height; ++y) {
      countDown(counts, result.row(y), loose(work.f), width, height);
      finish(result.row(y), work);
    }
  }
  return orvStatusOk;
}

#endif

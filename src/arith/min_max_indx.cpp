// Extrema with their positions.
//
// Theory: the region is cut into blocks of whole rows, or pieces of one row. A block's extremes are found by vectors
// alone; a block that improves strictly on all before it is remembered, and only the remembered block is searched for
// the position at the end. So the first of equal pixels wins at hardly any cost. Signed bytes are ordered by their bits
// with the sign flipped. With nothing taken the extremes keep their neutral values, the minimum above the maximum.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/min_max_indx.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "arith/reduction.h"
#include "arith/strips.h"
#include "arith/totals.h"

#ifndef ORV_EXTREMA
#define ORV_EXTREMA
namespace ORV_VARIANT {

// One extreme: the pixel and its place in the band, then in the region.
template <class T>
struct Extreme {
  T value;
  OrvPoint at;
};
template <class T>
struct Extrema {
  bool taken;
  Extreme<T> low, high;
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

// Pixels of a block: enough to hide the comparison with the best so far, few enough to search twice in a small image.
constexpr ptrdiff_t kBlockPixels = 4096;

// Values from which any pixel is an improvement. Infinities are pixels like others.
template <class B>
HWY_INLINE B Largest() {
  if constexpr (std::is_same<B, float>::value) return __builtin_inff();
  else return (B) ~(B)0;
}
template <class B>
HWY_INLINE B Smallest() {
  if constexpr (std::is_same<B, float>::value) return -__builtin_inff();
  else return 0;
}

// Elements whose order is that of unsigned numbers.
template <class T>
HWY_INLINE hn::VFromD<Tag<T>> Ordered(hn::VFromD<Tag<T>> v) {
  if constexpr (std::is_same<T, int8_t>::value) return hn::Xor(v, hn::Set(Tag<T>(), 0x80));
  else return v;
}

// Rows from `y` on, columns from `x` on.
struct BlockPlace {
  ptrdiff_t y, rows, x, count;
};

// The extremes of a block lane by lane, ranked. The pixel is the first operand: a NaN never replaces anything.
template <class T>
struct LaneExtremes {
  hn::VFromD<Tag<T>> low, high;
};
template <class T, bool Masked>
HWY_INLINE LaneExtremes<T> BlockExtremes(const Sources<T>& s, const BlockPlace& block) {
  const Tag<T> d;
  const auto none = Ranked<Bits<T>>(hn::Set(d, Largest<Bits<T>>()));
  const auto least = Ranked<Bits<T>>(hn::Set(d, Smallest<Bits<T>>()));
  auto lows = none, highs = least;
  for (ptrdiff_t y = block.y; y < block.y + block.rows; ++y)
    RowStrips<T, false>(
        s, y, block.x, block.x + block.count, FEED(const Strip<T>& strip) {
          Feed<T, false, Masked>(
              strip, FEED(auto, auto keep, auto v, auto) {
                v = Ranked<Bits<T>>(Ordered<T>(v));
                lows = Lesser(KeptOr(d, keep, v, none), lows);
                highs = Greater(KeptOr(d, keep, v, least), highs);
              });
        });
  return {lows, highs};
}

// The first pixel of a block that equals `value`.
template <class T, bool Masked>
HWY_INLINE Extreme<T> FirstEqual(const Sources<T>& s, const BlockPlace& block, Bits<T> value) {
  const Tag<T> d;
  const auto wanted = hn::Set(d, value);
  Extreme<T> found{};
  bool searching = true;
  for (ptrdiff_t y = block.y; searching && y < block.y + block.rows; ++y)
    RowStrips<T, false>(
        s, y, block.x, block.x + block.count, FEED(const Strip<T>& strip) {
          ptrdiff_t x = 0;
          Feed<T, false, Masked>(
              strip, FEED(auto, auto keep, auto v, auto) {
                // A lane that is left out counts as another value than the wanted one.
                const auto other = hn::IfThenElse(hn::Eq(wanted, hn::Zero(d)), hn::Set(d, 1), hn::Zero(d));
                const auto equal = hn::Eq(KeptOr(d, keep, Ordered<T>(v), other), wanted);
                if (searching && !hn::AllFalse(d, equal)) {
                  searching = false;
                  const ptrdiff_t at = x + hn::FindFirstTrue(d, equal);
                  found = {(T)loose(strip.a)[at], {(int32_t)(strip.x + at), (int32_t)y}};
                }
                x += kLanes<T>;
              });
        });
  return found;
}

template <class T>
HWY_INLINE bool AllEqual(hn::VFromD<Tag<T>> a, hn::VFromD<Tag<T>> b) {
  return hn::AllTrue(Tag<T>(), hn::Eq(a, b));
}

template <class T, bool Masked>
HWY_INLINE void FindExtrema(const Sources<T>& s, int32_t rows, Extrema<T>* extrema) {
  const bool whole = s.width <= LongestStrip(s);
  const ptrdiff_t longest = whole ? s.width : LongestStrip(s);
  const ptrdiff_t height = whole && s.width < kBlockPixels ? kBlockPixels / s.width : 1;
  BlockPlace lowest{}, highest{};
  Bits<T> low = 0, high = 0;
  auto bestLow = hn::Zero(Tag<T>()), bestHigh = bestLow;
  bool taken = false;
  for (ptrdiff_t y = 0; y < rows; y += height)
    for (ptrdiff_t x = 0; x < s.width; x += longest) {
      const BlockPlace block{y, HWY_MIN(height, rows - y), x, HWY_MIN(longest, s.width - x)};
      const LaneExtremes<T> lanes = BlockExtremes<T, Masked>(s, block);
      // Most blocks improve on nothing, which is seen without reducing their lanes.
      if (taken && AllEqual<T>(Lesser(lanes.low, bestLow), bestLow) &&
          AllEqual<T>(Greater(lanes.high, bestHigh), bestHigh))
        continue;
      const Bits<T> blockLow = LeastLane<Bits<T>>(lanes.low), blockHigh = GreatestLane<Bits<T>>(lanes.high);
      if (!(blockLow <= blockHigh)) continue;
      if (!taken || blockLow < low) low = blockLow, lowest = block;
      if (!taken || blockHigh > high) high = blockHigh, highest = block;
      bestLow = Ranked<Bits<T>>(hn::Set(Tag<T>(), low));
      bestHigh = Ranked<Bits<T>>(hn::Set(Tag<T>(), high));
      taken = true;
    }
  if (!taken) return;
  *extrema = {true, FirstEqual<T, Masked>(s, lowest, low), FirstEqual<T, Masked>(s, highest, high)};
}

template <class T>
void MinMax(const Sources<T>& s, int32_t rows, Extrema<T>* extrema) {
  if (s.mask.data) FindExtrema<T, true>(s, rows, extrema);
  else FindExtrema<T, false>(s, rows, extrema);
}

KERNELS_END

#if HWY_ONCE

namespace {

constexpr int32_t threadedArea = 16384;

// Bands come in order, so the earliest keeps a tie.
template <class T>
void join(Extrema<T>* total, const Extrema<T>& band) {
  if (!band.taken) return;
  if (!total->taken || band.low.value < total->low.value) total->low = band.low;
  if (!total->taken || band.high.value > total->high.value) total->high = band.high;
  total->taken = true;
}

template <class T>
OrvStatus minMaxOf(const Arguments<T>& a, float* minVal, float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex) {
  const OrvStatus status = checkArguments(a, true);
  if (status != orvStatusOk) return status;
  const Sources<T> sources = a.sources();
  const auto kernel = WIDEST(MinMax<T>);
  const auto rows = [&](int32_t first, int32_t count, Extrema<T>* slot) {
    kernel(sources.from(first), count, slot);
    slot->low.at.y += slot->taken ? first : 0;
    slot->high.at.y += slot->taken ? first : 0;
  };
  const Extrema<T> found = reduceBands(areaReaches(a.roi, threadedArea), a.roi.height, Extrema<T>{}, rows, join<T>);
  if (minVal) *minVal = (float)found.low.value;
  if (maxVal) *maxVal = (float)found.high.value;
  if (minIndex) *minIndex = found.low.at;
  if (maxIndex) *maxIndex = found.high.at;
  return orvStatusOk;
}

}  // namespace

// The four members of an element type.
#define MEMBERS(tag, T)                                                                                              \
  OrvStatus orviMinMaxIndx_##tag##_C1R(const T* src, int32_t srcStep, OrvSize roiSize, float* minVal, float* maxVal, \
                                       OrvPoint* minIndex, OrvPoint* maxIndex) {                                     \
    return minMaxOf<T>(withoutMask(src, srcStep, roiSize), minVal, maxVal, minIndex, maxIndex);                      \
  }                                                                                                                  \
  OrvStatus orviMinMaxIndx_##tag##_C3CR(const T* src, int32_t srcStep, OrvSize roiSize, int32_t coi, float* minVal,  \
                                        float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex) {                     \
    return minMaxOf<T>(withoutMask(src, srcStep, roiSize, 3, coi), minVal, maxVal, minIndex, maxIndex);              \
  }                                                                                                                  \
  OrvStatus orviMinMaxIndx_##tag##_C1MR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,        \
                                        OrvSize roiSize, float* minVal, float* maxVal, OrvPoint* minIndex,           \
                                        OrvPoint* maxIndex) {                                                        \
    return minMaxOf<T>({src, srcStep, mask, maskStep, roiSize}, minVal, maxVal, minIndex, maxIndex);                 \
  }                                                                                                                  \
  OrvStatus orviMinMaxIndx_##tag##_C3CMR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,       \
                                         OrvSize roiSize, int32_t coi, float* minVal, float* maxVal,                 \
                                         OrvPoint* minIndex, OrvPoint* maxIndex) {                                   \
    return minMaxOf<T>({src, srcStep, mask, maskStep, roiSize, 3, coi}, minVal, maxVal, minIndex, maxIndex);         \
  }

MEMBERS(8u, uint8_t)
MEMBERS(8s, int8_t)
MEMBERS(16u, uint16_t)
MEMBERS(32f, float)

#endif

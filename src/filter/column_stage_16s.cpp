// Column stages of 16-bit signed rows.
//
// The sums are told in float, tap by tap. Where no product and no sum can round, which needs a divisor of +-2^n and
// sums below 2^24, they are taken in integers by pairs of rows and scaled once: the same bits in half the time.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/column_stage_16s.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/column_stage.h"
#include "filter/pair_taps.h"

KERNELS_BEGIN

// Sums in float of one vector of columns. An element in the high half of a lane is 2^16 times its value, which the taps
// make good exactly.
template <class D16>
HWY_INLINE Halves<D16> FloatSums(D16 d, const LooseElement<float>* taps, int32_t size, const int16_t* const* rows,
                                 ptrdiff_t x) {
  const Wide<D16> d32;
  const hn::Rebind<float, Wide<D16>> df;
  auto lo = hn::Zero(df), hi = lo;
  for (int32_t j = 0; j < size; ++j) {
    const auto tap = hn::Set(df, (float)taps[j]);
    const auto s = hn::LoadU(d, rows[j] + x);
    lo = hn::Add(lo, hn::Mul(ToFloat(d32, hn::BitCast(d32, LowerPairs(d, hn::Zero(d), s))), tap));
    if constexpr (kTwoHalves<D16>)
      hi = hn::Add(hi, hn::Mul(ToFloat(d32, hn::BitCast(d32, UpperPairs(d, hn::Zero(d), s))), tap));
  }
  const auto limit = hn::Set(df, 32767.0f);
  return {Nearest(hn::Min(lo, limit)), Nearest(hn::Min(hi, limit))};
}

template <int Size, class D16, class Finish>
HWY_INLINE hn::VFromD<D16> IntegerColumns(D16 d, const PairTaps<Size>& taps, const int16_t* const* rows, ptrdiff_t x,
                                          const Finish& finish) {
  const auto row = [&](ptrdiff_t j) __attribute__((always_inline)) { return rows[j] + x; };
  return NarrowSaturated(d, Finished(d, InterleavedSums(d, taps, 0, row), finish));
}

// The columns behind the last whole 16 pixels of a row.
struct Split {
  ptrdiff_t whole, end;
};
HWY_INLINE Split SplitOf(int32_t width, int32_t channels) {
  return {(ptrdiff_t)(width & ~15) * channels, (ptrdiff_t)width * channels};
}

// Each row by `bulk` for whole 16 pixels and by `rest` for the others.
template <int Size, class T, class Bulk, class Rest>
HWY_INLINE void IntegerRows(const int16_t* const* rows, Plane<T> dst, Split columns, int32_t height,
                            const ColumnFilter<int16_t>& f, Bulk bulk, Rest rest) {
  const PairTaps<Size> taps(f.taps, f.size);
  for (int32_t y = 0; y < height; ++y, ++rows) {
    T* out = raw(dst.row(y));
    Vectors<int16_t>(
        0, columns.whole, VECTOR(d, x) { StoreResult(d, IntegerColumns(d, taps, rows, x, bulk), out + x); });
    Vectors<int16_t>(
        columns.whole, columns.end, VECTOR(d, x) { StoreResult(d, IntegerColumns(d, taps, rows, x, rest), out + x); });
  }
}

template <class T, class Bulk, class Rest>
HWY_INLINE void IntegerRows(const int16_t* const* rows, Plane<T> dst, Split columns, int32_t height,
                            const ColumnFilter<int16_t>& f, Bulk bulk, Rest rest) {
  if (f.size == 3) IntegerRows<3>(rows, dst, columns, height, f, bulk, rest);
  else if (f.size == 5) IntegerRows<5>(rows, dst, columns, height, f, bulk, rest);
  else IntegerRows<0>(rows, dst, columns, height, f, bulk, rest);
}

template <class T>
HWY_INLINE void FloatRows(const int16_t* const* rows, Plane<T> dst, Split columns, int32_t height,
                          const ColumnFilter<int16_t>& f, float scale) {
  const auto* tap = (const LooseElement<int16_t>*)f.taps;
  auto* scaled = (LooseElement<float>*)f.scaledTaps;
  for (ptrdiff_t j = 0; j < f.size; ++j) scaled[j] = (float)tap[j] * scale * 0x1p-16f;
  const PairTaps<0> taps(f.taps, f.size);
  const ScaledToZero rest{scale};
  for (int32_t y = 0; y < height; ++y, ++rows) {
    T* out = raw(dst.row(y));
    Vectors<int16_t>(
        0, columns.whole,
        VECTOR(d, x) { StoreResult(d, NarrowSaturated(d, FloatSums(d, scaled, f.size, rows, x)), out + x); });
    Vectors<int16_t>(
        columns.whole, columns.end, VECTOR(d, x) { StoreResult(d, IntegerColumns(d, taps, rows, x, rest), out + x); });
  }
}

// Whether float arithmetic can't round: all terms are multiples of 1 / |divisor|, a power of two, and no sum of them
// needs more than 24 bits.
static inline bool sumsAreExact(const ColumnFilter<int16_t>& f) {
  const uint32_t magnitude = f.divisor < 0 ? 0u - (uint32_t)f.divisor : (uint32_t)f.divisor;
  if (magnitude & (magnitude - 1)) return false;
  const auto* tap = (const LooseElement<int16_t>*)f.taps;
  int64_t sum = 0;
  for (ptrdiff_t j = 0; j < f.size; ++j) sum += tap[j] < 0 ? -(int32_t)tap[j] : (int32_t)tap[j];
  return sum * f.bound <= 1 << 24;
}

template <class T>
void ScaledColumns(const int16_t* const* rows, Plane<T> dst, int32_t width, int32_t height,
                   const ColumnFilter<int16_t>& f) {
  const float scale = 1.0f / (float)f.divisor;
  const Split columns = SplitOf(width, f.channels);
  if (!sumsAreExact(f)) FloatRows(rows, dst, columns, height, f, scale);
  else if (f.divisor == 1) IntegerRows(rows, dst, columns, height, f, Unscaled(), Unscaled());
  else IntegerRows(rows, dst, columns, height, f, ScaledToNearest{scale}, ScaledToZero{scale});
}

void LowColumns(const int16_t* const* rows, Plane<int16_t> dst, int32_t width, int32_t height,
                const ColumnFilter<int16_t>& f) {
  const int32_t m = lowMultiplier(f.divisor);
  IntegerRows(rows, dst, SplitOf(width, f.channels), height, f, LowSaturated{m}, LowWrapped{m});
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

void ColumnStage_16s(const int16_t* const* rows, Plane<int16_t> dst, int32_t width, int32_t height,
                     const ColumnFilter<int16_t>& filter) {
  WIDEST(ScaledColumns<int16_t>)(rows, dst, width, height, filter);
}
void ColumnStage_16s8u(const int16_t* const* rows, Plane<uint8_t> dst, int32_t width, int32_t height,
                       const ColumnFilter<int16_t>& filter) {
  WIDEST(ScaledColumns<uint8_t>)(rows, dst, width, height, filter);
}
void ColumnStage_16s8s(const int16_t* const* rows, Plane<int8_t> dst, int32_t width, int32_t height,
                       const ColumnFilter<int16_t>& filter) {
  WIDEST(ScaledColumns<int8_t>)(rows, dst, width, height, filter);
}
void ColumnStage_Low_16s(const int16_t* const* rows, Plane<int16_t> dst, int32_t width, int32_t height,
                         const ColumnFilter<int16_t>& filter) {
  WIDEST(LowColumns)(rows, dst, width, height, filter);
}

}  // namespace ORV_VARIANT
#endif

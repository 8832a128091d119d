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
#include "filter/column_strips.h"
#include "filter/float_taps.h"
#include "filter/pair_taps.h"

KERNELS_BEGIN

// Sums in float of N vectors of columns, rounded to nearest. An element in the high half of a lane is 2^16 times its
// value, which the taps make good exactly.
template <class D16, int N>
HWY_INLINE void FloatSums(D16 d, Halves<D16> (&result)[N], const FloatTaps<0>& taps, const int16_t* const* rows,
                          ptrdiff_t x) {
  const Wide<D16> d32;
  const hn::Rebind<float, Wide<D16>> df;
  constexpr ptrdiff_t lanes = hn::MaxLanes(d);
  using V = hn::VFromD<decltype(df)>;
  V lo[N], hi[N];
  Repeat<N>(EACH(v) { lo[v] = hi[v] = hn::Zero(df); });
  const auto add = [&](V & sum, Pairs<D16> high, V tap) __attribute__((always_inline)) {
    sum = hn::Add(sum, hn::Mul(ToFloat(d32, hn::BitCast(d32, high)), tap));
  };
  for (int32_t j = 0; j < taps.Count(); ++j) {
    const V tap = hn::Set(df, taps[j]);
    const int16_t* row = rows[j] + x;
    Repeat<N>(EACH(v) {
      const auto s = hn::LoadU(d, row + v * lanes);
      add(lo[v], LowerPairs(d, hn::Zero(d), s), tap);
      if constexpr (kTwoHalves<D16>) add(hi[v], UpperPairs(d, hn::Zero(d), s), tap);
    });
  }
  const V limit = hn::Set(df, 32767.0f);
  Repeat<N>(EACH(v) { result[v] = {Nearest(hn::Min(lo[v], limit)), Nearest(hn::Min(hi[v], limit))}; });
}

template <class D16, int N, class T>
HWY_INLINE void StoreColumns(D16 d, const Halves<D16> (&result)[N], T* out) {
  Repeat<N>(EACH(v) { StoreResult(d, NarrowSaturated(d, result[v]), out + v * (ptrdiff_t)hn::MaxLanes(d)); });
}

template <int N, int Size, class D16, class T, class Finish>
HWY_INLINE void IntegerColumns(Count<N>, D16 d, const PairTaps<Size>& taps, const int16_t* const* rows, ptrdiff_t x,
                               T* out, const Finish& finish) {
  Halves<D16> sums[N];
  InterleavedSums(
      d, sums, taps, 0, EACH(j) { return rows[j] + x; });
  Repeat<N>(EACH(v) { sums[v] = Finished(d, sums[v], finish); });
  StoreColumns(d, sums, out + x);
}

// A row is split behind its last whole 16 pixels.
struct Split {
  ptrdiff_t whole, end;
};
HWY_INLINE Split SplitOf(int32_t width, int32_t channels) {
  return {(ptrdiff_t)(width & ~15) * channels, (ptrdiff_t)width * channels};
}

// The other columns of a row. They are few, so one form serves all kernels.
template <class T, class Finish>
HWY_NOINLINE void RestOfRow(Split columns, PairTaps<0> taps, const int16_t* const* rows, T* out, Finish finish) {
  const auto vector = VECTOR(d, x) { IntegerColumns(Count<1>(), d, taps, rows, x, out, finish); };
  ptrdiff_t x = columns.whole;
  for (; x + 8 <= columns.end; x += 8) vector(hn::Full128<int16_t>(), x);
  LastVectors<int16_t, 4>(x, columns.end, vector);
}

// bulk(Count<N>, d, rows, x, out) for whole 16 pixels, which need no vector of less than 8 lanes; the rest as it is.
template <class T, class Bulk, class Finish>
HWY_INLINE void SplitRows(const int16_t* const* rows, Plane<T> dst, Split columns, int32_t height,
                          const ColumnFilter<int16_t>& f, const Bulk& bulk, const Finish& rest) {
  const auto strip = STRIP(first, end) {
    for (int32_t y = 0; y < height; ++y) {
      T* const out = raw(dst.row(y));
      VectorGroups<int16_t, 2>(
          first, end, VECTOR_GROUP(n, d, x) {
            if constexpr (kTwoHalves<decltype(d)>) bulk(n, d, rows + y, x, out);
          });
    }
  };
  ForStrips(columns.whole, f.size, height, sizeof(int16_t), strip);
  if (columns.whole == columns.end) return;
  for (int32_t y = 0; y < height; ++y) RestOfRow(columns, {f.taps, f.size}, rows + y, raw(dst.row(y)), rest);
}
#define COLUMN_VECTORS(n, d, rows, x, out) \
  [&](auto n, auto d, const int16_t* const* rows, ptrdiff_t x, T* out) __attribute__((always_inline))

template <int Size, class T, class Bulk, class Rest>
HWY_INLINE void IntegerRows(const int16_t* const* rows, Plane<T> dst, Split columns, int32_t height,
                            const ColumnFilter<int16_t>& f, Bulk bulk, Rest rest) {
  const PairTaps<Size> taps(f.taps, f.size);
  SplitRows(
      rows, dst, columns, height, f,
      COLUMN_VECTORS(n, d, window, x, out) { IntegerColumns(n, d, taps, window, x, out, bulk); }, rest);
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
  const FloatTaps<0> taps(f.scaledTaps, f.size);
  SplitRows(
      rows, dst, columns, height, f,
      COLUMN_VECTORS(n, d, window, x, out) {
        Halves<decltype(d)> sums[n.value];
        FloatSums(d, sums, taps, window, x);
        StoreColumns(d, sums, out + x);
      },
      ScaledToZero{scale});
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

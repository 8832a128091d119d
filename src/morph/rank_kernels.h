// Kernels of minimum and maximum over rows and columns (in place of core/kernels.h; read once a width).
//
// Zeros of either sign are equal; of two, the one that the order of the fold meets later stays. The order is the same
// at every width.
#include "core/kernels.h"
#include "core/vectors.h"
#include "morph/rank.h"

#if defined(ORV_RANK_KERNELS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_RANK_KERNELS_TOGGLE
#undef ORV_RANK_KERNELS_TOGGLE
#else
#define ORV_RANK_KERNELS_TOGGLE
#endif
KERNELS_BEGIN

template <Rank R, class V>
HWY_INLINE V Extreme(V a, V b) {
  if constexpr (R == Rank::min) return hn::Min(a, b);
  else return hn::Max(a, b);
}

// store(d, x, value(d, x)) for 0 <= x < n in whole vectors, of which the last may overlap the one before; short rows
// in small vectors, or one element at a time. The last value is taken first: results may go where the values are from.
template <class T, class Value, class Store>
HWY_INLINE void InVectors(ptrdiff_t n, const Value& value, const Store& store) {
  const auto cover = [&](auto d) __attribute__((always_inline)) {
    const ptrdiff_t lanes = (ptrdiff_t)hn::MaxLanes(decltype(d)());
    const auto last = value(d, n - lanes);
    for (ptrdiff_t x = 0; x < n - lanes; x += lanes) store(d, x, value(d, x));
    store(d, n - lanes, last);
  };
  if (n >= (ptrdiff_t)(HWY_MAX_BYTES / sizeof(T))) return cover(hn::ScalableTag<T>());
  if (n >= (ptrdiff_t)(16 / sizeof(T))) return cover(hn::Full128<T>());
  for (ptrdiff_t x = 0; x < n; ++x) store(hn::CappedTag<T, 1>(), x, value(hn::CappedTag<T, 1>(), x));
}

template <Rank R, int taps, class T>
HWY_INLINE void RowTaps(const T* line, T* out, ptrdiff_t n, const ptrdiff_t* offset) {
  const ptrdiff_t o1 = offset[1], o2 = offset[taps > 2 ? 2 : 1], o3 = offset[taps - 1];
  InVectors<T>(
      n,
      VECTOR(d, x) {
        const auto a = Extreme<R>(hn::LoadU(d, line + x), hn::LoadU(d, line + x + o1));
        if constexpr (taps == 2) return a;
        else if constexpr (taps == 3) return Extreme<R>(a, hn::LoadU(d, line + x + o2));
        else return Extreme<R>(a, Extreme<R>(hn::LoadU(d, line + x + o2), hn::LoadU(d, line + x + o3)));
      },
      [&](auto d, ptrdiff_t x, auto v) __attribute__((always_inline)) { hn::StoreU(v, d, out + x); });
}

template <Rank R, class T>
void FoldRow(const T* line, T* out, ptrdiff_t n, const ptrdiff_t* offset, int32_t taps) {
  if (taps == 2) RowTaps<R, 2>(line, out, n, offset);
  else if (taps == 3) RowTaps<R, 3>(line, out, n, offset);
  else RowTaps<R, 4>(line, out, n, offset);
}

// K rows of results share the rows that all their windows have, and the extrema above and below those:
//
//   K = 2, height 3:   row 0 | a        out 0 = min(a, core)
//                      row 1 | core
//                      row 2 | core
//                      row 3 | b        out 1 = min(core, b)
template <Rank R, int K, class T>
void FoldColumns(const T* const* rows, int32_t height, T* const* out, ptrdiff_t n, int32_t touch) {
  const T* above[K];  // the pointers in registers: a store to `out` might change the table, for all the compiler knows
  const T* below[K];
  T* result[K];
  for (int k = 0; k < K; ++k) above[k] = rows[k], below[k] = rows[height + k - 1], result[k] = out[k];
  const T* const* const ahead = rows + height + K - 1;
  const auto fold = VECTOR(d, x) {
    for (int32_t i = 0; i < touch; ++i) __builtin_prefetch(ahead[i] + x);
    hn::VFromD<decltype(d)> v[K];
    v[K - 1] = hn::LoadU(d, above[K - 1] + x);
    if (height > K) {
      v[K - 1] = Extreme<R>(v[K - 1], hn::LoadU(d, below[0] + x));
      for (int32_t i = K; i < height - 1; ++i) v[K - 1] = Extreme<R>(v[K - 1], hn::LoadU(d, rows[i] + x));
    }
    Repeat<K - 1>(EACH(i) { v[K - 2 - i] = Extreme<R>(v[K - 1 - i], hn::LoadU(d, above[K - 2 - i] + x)); });
    hn::StoreU(v[0], d, result[0] + x);
    if constexpr (K > 1) {
      auto under = hn::LoadU(d, below[1] + x);
      hn::StoreU(Extreme<R>(v[1], under), d, result[1] + x);
      Repeat<K - 2>(EACH(i) {
        under = Extreme<R>(under, hn::LoadU(d, below[i + 2] + x));
        hn::StoreU(Extreme<R>(v[i + 2], under), d, result[i + 2] + x);
      });
    }
  };
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(T), few = 16 / sizeof(T);
  ptrdiff_t x = 0;
  if (n >= lanes) {
    for (; x + lanes <= n; x += lanes) fold(hn::ScalableTag<T>(), x);
    if (x < n) fold(hn::ScalableTag<T>(), n - lanes);
  } else if (n >= few) {
    for (; x + few <= n; x += few) fold(hn::Full128<T>(), x);
    if (x < n) fold(hn::Full128<T>(), n - few);
  } else {
    for (; x < n; ++x) fold(hn::CappedTag<T, 1>(), x);
  }
}

template <Rank R, class T>
RankKernels<T> KernelsOf(T neutral) {
  return {
      {FoldColumns<R, 1, T>, FoldColumns<R, 2, T>, FoldColumns<R, 4, T>, FoldColumns<R, 8, T>}, FoldRow<R, T>, neutral};
}
template <class T>
RankKernels<T> RankKernelsFor(Rank rank, T lowest, T highest) {
  return rank == Rank::min ? KernelsOf<Rank::min>(highest) : KernelsOf<Rank::max>(lowest);
}

KERNELS_END
#endif

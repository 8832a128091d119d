// Fold of rows of packed bits: see bit_rows.h.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/bit_rows.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "morph/bit_rows.h"

KERNELS_BEGIN

template <class D>
HWY_INLINE hn::VFromD<D> LoadWords(D d, const uint8_t* p) {
  return hn::LoadU(d, (const uint64_t*)(const void*)p);
}

template <bool dilate, class V>
HWY_INLINE V FoldWords(V a, V b) {
  return dilate ? hn::Or(a, b) : hn::And(a, b);
}
template <bool dilate>
HWY_INLINE uint8_t FoldWords(uint8_t a, uint8_t b) {
  return dilate ? a | b : a & b;
}

// A word as the first of a vector, and the words of a and b from the second on.
template <size_t N>
HWY_INLINE hn::Vec128<uint64_t, N> FirstWord(hn::Simd<uint64_t, N, 0>, hn::Vec128<uint64_t, 1> v) {
  return hn::Vec128<uint64_t, N>{v.raw};
}
HWY_INLINE hn::Vec128<uint64_t, 1> NextWords(hn::Vec128<uint64_t, 1>, hn::Vec128<uint64_t, 1> b) { return b; }
HWY_INLINE hn::Vec128<uint64_t> NextWords(hn::Vec128<uint64_t> a, hn::Vec128<uint64_t> b) {
  return hn::Vec128<uint64_t>{_mm_alignr_epi8(b.raw, a.raw, 8)};
}
#if HWY_TARGET <= HWY_AVX2
HWY_INLINE hn::Vec256<uint64_t> FirstWord(hn::Simd<uint64_t, 4, 0>, hn::Vec128<uint64_t, 1> v) {
  return hn::Vec256<uint64_t>{_mm256_castsi128_si256(v.raw)};
}
HWY_INLINE hn::Vec256<uint64_t> NextWords(hn::Vec256<uint64_t> a, hn::Vec256<uint64_t> b) {
  return hn::Vec256<uint64_t>{_mm256_alignr_epi8(_mm256_permute2x128_si256(a.raw, b.raw, 0x21), a.raw, 8)};
}
#endif
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE hn::Vec512<uint64_t> FirstWord(hn::Simd<uint64_t, 8, 0>, hn::Vec128<uint64_t, 1> v) {
  return hn::Vec512<uint64_t>{_mm512_castsi128_si512(v.raw)};
}
HWY_INLINE hn::Vec512<uint64_t> NextWords(hn::Vec512<uint64_t> a, hn::Vec512<uint64_t> b) {
  return hn::Vec512<uint64_t>{_mm512_alignr_epi64(b.raw, a.raw, 1)};
}
#endif

// out[r][n] = the fold of row r of the results in the bits from byte k + n vectors on, in words of 64. A word takes the
// bits that a shift moves in from the next word; behind the last vector just that word is read.
template <bool dilate, int R, int N, class D>
HWY_INLINE void WordsAt(D d, const BitFold& f, ptrdiff_t k, hn::VFromD<D> (*out)[N]) {
  const hn::Simd<uint64_t, 1, 0> one;
  const ptrdiff_t bytes = 8 * (ptrdiff_t)hn::MaxLanes(D());
  Repeat<R>(EACH(r) { Repeat<N>(EACH(n) { out[r][n] = hn::Set(d, dilate ? 0 : ~(uint64_t)0); }); });
  for (const BitGroup *g = f.groups, *end = g + f.groupCount; g < end; ++g) {
    hn::VFromD<D> here[R][N], next[R][N];
    Repeat<R>(EACH(r) {
      const uint8_t* const* rows = f.rows[r] + g->firstRow;
      const uint8_t* row = rows[0] + k;
      Repeat<N>(EACH(n) { here[r][n] = LoadWords(d, row + n * bytes); });
      auto behind = LoadWords(one, row + N * bytes);
      for (int32_t i = 1; i < g->rowCount; ++i) {
        row = rows[i] + k;
        Repeat<N>(EACH(n) { here[r][n] = FoldWords<dilate>(here[r][n], LoadWords(d, row + n * bytes)); });
        behind = FoldWords<dilate>(behind, LoadWords(one, row + N * bytes));
      }
      Repeat<N - 1>(EACH(n) { next[r][n] = NextWords(here[r][n], here[r][n + 1]); });
      next[r][N - 1] = NextWords(here[r][N - 1], FirstWord(d, behind));
    });
    const uint8_t* const shifts = f.shifts + g->firstShift;
    for (int32_t i = 0; i < g->shiftCount; ++i) {
      const int shift = shifts[i];
      Repeat<R>(EACH(r) {
        Repeat<N>(EACH(n) {
          const auto moved = hn::Or(hn::ShiftRightSame(here[r][n], shift), hn::ShiftLeftSame(next[r][n], 64 - shift));
          out[r][n] = FoldWords<dilate>(out[r][n], moved);
        });
      });
    }
  }
}

// Takes the fold of the bytes from k on into dst there.
template <bool dilate, int R, int N, class D>
HWY_INLINE void FoldInto(D d, const BitFold& f, uint8_t* const* dst, ptrdiff_t k, bool combine) {
  const ptrdiff_t bytes = 8 * (ptrdiff_t)hn::MaxLanes(D());
  hn::VFromD<D> words[R][N];
  WordsAt<dilate, R, N>(d, f, k, words);
  Repeat<R>(EACH(r) {
    uint8_t* const to = dst[r] + k;
    if (combine) Repeat<N>(EACH(n) { words[r][n] = FoldWords<dilate>(words[r][n], LoadWords(d, to + n * bytes)); });
    Repeat<N>(EACH(n) { hn::StoreU(words[r][n], d, (uint64_t*)(void*)(to + n * bytes)); });
  });
}

// The first `bytes` bytes, by the largest vectors that fit into them, two at a time; the last ones overlap their
// predecessors, since no row lies in dst and a fold may be taken in twice.
template <bool dilate, int R, int Lanes>
HWY_INLINE void FoldBytes(const BitFold& f, uint8_t* const* dst, ptrdiff_t bytes, bool combine) {
  constexpr ptrdiff_t one = 8 * Lanes, two = 2 * one;
  const hn::Simd<uint64_t, Lanes, 0> d;
  if (bytes >= two) {
    for (ptrdiff_t k = 0; k < bytes; k += two)
      FoldInto<dilate, R, 2>(d, f, dst, k < bytes - two ? k : bytes - two, combine);
  } else if constexpr (Lanes > 1) {
    FoldBytes<dilate, R, Lanes / 2>(f, dst, bytes, combine);
  } else {
    uint8_t words[R][16];
    uint8_t* word[R];
    Repeat<R>(EACH(r) { word[r] = words[r]; });
    FoldInto<dilate, R, 2>(d, f, word, 0, false);
    for (int r = 0; r < R; ++r)
      for (ptrdiff_t k = 0; k < bytes; ++k) dst[r][k] = combine ? FoldWords<dilate>(word[r][k], dst[r][k]) : word[r][k];
  }
}

// Whole bytes are folded; the bits beside the region are put back then.
template <bool dilate, int R>
HWY_INLINE void FoldRows(const BitFold& f, uint8_t* const* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  const ptrdiff_t end = firstBit + bits, last = (end - 1) >> 3;
  uint32_t head = 0xFFu << firstBit & 0xFF;
  const uint32_t tail = 0xFFu >> (-end & 7);
  if (last == 0) head &= tail;
  uint8_t atHead[R], atTail[R];
  Repeat<R>(EACH(r) { atHead[r] = dst[r][0], atTail[r] = dst[r][last]; });
  FoldBytes<dilate, R, HWY_MAX_BYTES / 8>(f, dst, last + 1, combine);
  Repeat<R>(EACH(r) {
    dst[r][0] = (uint8_t)((atHead[r] & ~head) | (dst[r][0] & head));
    if (last > 0) dst[r][last] = (uint8_t)((atTail[r] & ~tail) | (dst[r][last] & tail));
  });
}

template <bool dilate>
HWY_INLINE void FoldOneOrTwo(const BitFold& f, uint8_t* const* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  if (f.results == 2) FoldRows<dilate, 2>(f, dst, firstBit, bits, combine);
  else FoldRows<dilate, 1>(f, dst, firstBit, bits, combine);
}
void AndRows(const BitFold& f, uint8_t* const* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  FoldOneOrTwo<false>(f, dst, firstBit, bits, combine);
}
void OrRows(const BitFold& f, uint8_t* const* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  FoldOneOrTwo<true>(f, dst, firstBit, bits, combine);
}

KERNELS_END

#if HWY_ONCE

FoldBits ORV_VARIANT::foldBitsOf(bool dilate) { return dilate ? WIDEST(OrRows) : WIDEST(AndRows); }

#endif

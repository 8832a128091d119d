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

// out[n] = the fold of the bits from byte k + n vectors on, in words of 64. A word takes the bits that a shift moves in
// from the next word; behind the last vector just that word is read.
template <bool dilate, int N, class D>
HWY_INLINE void WordsAt(D d, const BitFold& f, ptrdiff_t k, hn::VFromD<D>* out) {
  const hn::Simd<uint64_t, 1, 0> one;
  const ptrdiff_t bytes = 8 * (ptrdiff_t)hn::MaxLanes(D());
  Repeat<N>(EACH(n) { out[n] = hn::Set(d, dilate ? 0 : ~(uint64_t)0); });
  for (const BitGroup *g = f.groups, *end = g + f.groupCount; g < end; ++g) {
    const uint8_t* const* rows = f.rows + g->firstRow;
    hn::VFromD<D> here[N + 1];
    const uint8_t* row = rows[0] + k;
    Repeat<N>(EACH(n) { here[n] = LoadWords(d, row + n * bytes); });
    auto behind = LoadWords(one, row + N * bytes);
    for (int32_t i = 1; i < g->rowCount; ++i) {
      row = rows[i] + k;
      Repeat<N>(EACH(n) { here[n] = FoldWords<dilate>(here[n], LoadWords(d, row + n * bytes)); });
      behind = FoldWords<dilate>(behind, LoadWords(one, row + N * bytes));
    }
    here[N] = FirstWord(d, behind);
    hn::VFromD<D> next[N];
    Repeat<N>(EACH(n) { next[n] = NextWords(here[n], here[n + 1]); });
    const uint8_t* const shifts = f.shifts + g->firstShift;
    for (int32_t i = 0; i < g->shiftCount; ++i) {
      const int shift = shifts[i];
      Repeat<N>(EACH(n) {
        const auto moved = hn::Or(hn::ShiftRightSame(here[n], shift), hn::ShiftLeftSame(next[n], 64 - shift));
        out[n] = FoldWords<dilate>(out[n], moved);
      });
    }
  }
}

// Takes the fold of the bytes from k on into dst there.
template <bool dilate, int N, class D>
HWY_INLINE void FoldInto(D d, const BitFold& f, uint8_t* dst, ptrdiff_t k, bool combine) {
  const ptrdiff_t bytes = 8 * (ptrdiff_t)hn::MaxLanes(D());
  hn::VFromD<D> words[N];
  WordsAt<dilate, N>(d, f, k, words);
  if (combine) Repeat<N>(EACH(n) { words[n] = FoldWords<dilate>(words[n], LoadWords(d, dst + k + n * bytes)); });
  Repeat<N>(EACH(n) { hn::StoreU(words[n], d, (uint64_t*)(void*)(dst + k + n * bytes)); });
}

// The first `bytes` bytes, by the largest vectors that fit into them, two at a time; the last ones overlap their
// predecessors, since no row lies in dst and a fold may be taken in twice.
template <bool dilate, int Lanes>
HWY_INLINE void FoldBytes(const BitFold& f, uint8_t* dst, ptrdiff_t bytes, bool combine) {
  constexpr ptrdiff_t one = 8 * Lanes, two = 2 * one;
  const hn::Simd<uint64_t, Lanes, 0> d;
  if (bytes >= two) {
    for (ptrdiff_t k = 0; k + two <= bytes; k += two) FoldInto<dilate, 2>(d, f, dst, k, combine);
    const ptrdiff_t rest = bytes % two;
    if (rest > one) FoldInto<dilate, 2>(d, f, dst, bytes - two, combine);
    else if (rest > 0) FoldInto<dilate, 1>(d, f, dst, bytes - one, combine);
  } else if constexpr (Lanes > 1) {
    FoldBytes<dilate, Lanes / 2>(f, dst, bytes, combine);
  } else {
    uint8_t word[16];
    FoldInto<dilate, 1>(d, f, word, 0, false), FoldInto<dilate, 1>(d, f, word, 8, false);
    for (ptrdiff_t k = 0; k < bytes; ++k) dst[k] = combine ? FoldWords<dilate>(word[k], dst[k]) : word[k];
  }
}

// Whole bytes are folded; the bits beside the region are put back then.
template <bool dilate>
HWY_INLINE void FoldRow(const BitFold& f, uint8_t* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  const ptrdiff_t end = firstBit + bits, last = (end - 1) >> 3;
  const uint32_t head = 0xFFu << firstBit & 0xFF, tail = 0xFFu >> (-end & 7);
  const uint8_t atHead = dst[0], atTail = dst[last];
  FoldBytes<dilate, HWY_MAX_BYTES / 8>(f, dst, last + 1, combine);
  if (last == 0) {
    dst[0] = (uint8_t)((atHead & ~(head & tail)) | (dst[0] & head & tail));
  } else {
    dst[0] = (uint8_t)((atHead & ~head) | (dst[0] & head));
    dst[last] = (uint8_t)((atTail & ~tail) | (dst[last] & tail));
  }
}

void AndRow(const BitFold& f, uint8_t* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  FoldRow<false>(f, dst, firstBit, bits, combine);
}
void OrRow(const BitFold& f, uint8_t* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  FoldRow<true>(f, dst, firstBit, bits, combine);
}

KERNELS_END

#if HWY_ONCE

FoldBits ORV_VARIANT::foldBitsOf(bool dilate) { return dilate ? WIDEST(OrRow) : WIDEST(AndRow); }

#endif

// Fold of rows of packed bits: see bit_rows.h.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/bit_rows.cpp"
#include "core/kernels.h"
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

// The fold of the bits from byte k on, in words of 64. A word takes the bits that a shift moves in from the next word.
template <bool dilate, class D>
HWY_INLINE hn::VFromD<D> WordsAt(D d, const BitFold& f, ptrdiff_t k) {
  auto all = hn::Set(d, dilate ? 0 : ~(uint64_t)0);
  for (const BitGroup *g = f.groups, *end = g + f.groupCount; g < end; ++g) {
    const uint8_t* const* rows = f.rows + g->firstRow;
    auto here = LoadWords(d, rows[0] + k), next = LoadWords(d, rows[0] + k + 8);
    for (int32_t i = 1; i < g->rowCount; ++i) {
      here = FoldWords<dilate>(here, LoadWords(d, rows[i] + k));
      next = FoldWords<dilate>(next, LoadWords(d, rows[i] + k + 8));
    }
    const uint8_t* const shifts = f.shifts + g->firstShift;
    for (int32_t i = 0; i < g->shiftCount; ++i) {
      const int shift = shifts[i];
      all = FoldWords<dilate>(all, hn::Or(hn::ShiftRightSame(here, shift), hn::ShiftLeftSame(next, 64 - shift)));
    }
  }
  return all;
}

// Some bits of one byte.
template <bool dilate>
HWY_INLINE void MergeByte(const BitFold& f, uint8_t* dst, ptrdiff_t k, uint32_t mask, bool combine) {
  uint32_t bits = (uint32_t)hn::GetLane(WordsAt<dilate>(hn::Simd<uint64_t, 1, 0>(), f, k));
  if (combine) bits = dilate ? bits | dst[k] : bits & dst[k];
  dst[k] = (uint8_t)((dst[k] & ~mask) | (bits & mask));
}

// Bytes first .. end - 1, by the largest vectors that fit into them; the last one overlaps its predecessor, since no
// row lies in dst and a fold may be taken in twice.
template <bool dilate, int Lanes>
HWY_INLINE void FoldBytes(const BitFold& f, uint8_t* dst, ptrdiff_t first, ptrdiff_t end, bool combine) {
  const hn::Simd<uint64_t, Lanes, 0> d;
  if (end - first >= 8 * Lanes) {
    for (ptrdiff_t k = first; k < end; k += 8 * Lanes) {
      const ptrdiff_t at = k < end - 8 * Lanes ? k : end - 8 * Lanes;
      auto words = WordsAt<dilate>(d, f, at);
      if (combine) words = FoldWords<dilate>(words, LoadWords(d, dst + at));
      hn::StoreU(words, d, (uint64_t*)(void*)(dst + at));
    }
  } else if constexpr (Lanes > 1) {
    FoldBytes<dilate, Lanes / 2>(f, dst, first, end, combine);
  } else {
    for (ptrdiff_t k = first; k < end; ++k) MergeByte<dilate>(f, dst, k, 255, combine);
  }
}

template <bool dilate>
HWY_INLINE void FoldRow(const BitFold& f, uint8_t* dst, int32_t firstBit, ptrdiff_t bits, bool combine) {
  const ptrdiff_t end = firstBit + bits, lastByte = end >> 3;
  const uint32_t head = 0xFFu << firstBit & 0xFF, tail = (1u << (end & 7)) - 1;
  if (lastByte == 0) return MergeByte<dilate>(f, dst, 0, head & tail, combine);
  if (firstBit) MergeByte<dilate>(f, dst, 0, head, combine);
  FoldBytes<dilate, HWY_MAX_BYTES / 8>(f, dst, firstBit != 0, lastByte, combine);
  if (tail) MergeByte<dilate>(f, dst, lastByte, tail, combine);
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

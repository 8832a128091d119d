// Gaussian smoothing of bytes in 16-bit sums.
//
// Theory. Both passes compute round(S / 4096) with S = sum(k[i] * p[i]), rounded to the nearest even number (truncated
// at the ends of rows), and the result of the row pass is a byte again. So both are one kernel over K byte pointers:
// neighbours along a row, or rows above each other. A tap is split, k = 32 * h + l, and the two sums
//
//   H = sum(h[i] * p[i])       L = sum(l[i] * p[i])       S = 32 * H + L
//
// are formed by the multiply-and-add-pairs of unsigned by signed bytes. With L' = L + 2048 for rounding,
//
//   T = H + (L' >> 5) = floor((S + 2048) / 32):  8 bits of the result above 7 bits of fraction
//
// and T >> 7 is S / 4096 with halves rounded up. A half shows as T and L' with their low 7 and 5 bits all zero; it
// clears the lowest bit of the result. The 2048 costs nothing: K is odd, so the last tap lacks a partner and gets a
// constant pixel of 64 with l = 32, h = 0.
//
// Limits, from the widths of the sums; a Gaussian that breaks them takes the general path:
//   0 <= k[i] <= 4095             h fits a signed byte
//   sum(k) <= 4104                results of both passes are bytes: 255 * 4104 < 255.5 * 4096; H and T fit 15 bits
//   sum(l) <= 248                 L' fits 16 bits: 255 * 248 + 2048 < 65536
//   K <= mostTaps                 the split taps fit a small record
//
// The ends of a row are extended by their border into a strip, the rest is read in place. Vectors run over whole
// blocks: strip and ring have room for the last one, source and dst have not.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/gaussian_bytes.cpp"
#include "core/kernels.h"
#include "core/scratch.h"
#include "filter/gaussian_bytes.h"
#include "filter/row_border.h"
#include "filter/row_ring.h"

#ifndef ORV_GAUSSIAN_BYTES
#define ORV_GAUSSIAN_BYTES
namespace ORV_VARIANT {

enum : int32_t { mostTaps = 31, blockBytes = 64 };

// Taps, whole and split in pairs, each pair as two signed bytes of a 16-bit word; the last pair is the last tap and the
// constant.
struct SplitTaps {
  int32_t count, pairs;
  const int16_t* whole;
  uint16_t high[(mostTaps + 1) / 2], low[(mostTaps + 1) / 2];
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

using Bytes = hn::ScalableTag<uint8_t>;
using Words = hn::ScalableTag<uint16_t>;
using WordVector = hn::Vec<Words>;

// a[2i] * b[2i] + a[2i + 1] * b[2i + 1] of unsigned bytes a and signed bytes b.
HWY_INLINE WordVector MultiplyAddPairs(hn::Vec<Bytes> a, WordVector b) {
#if HWY_TARGET == HWY_AVX3
  return WordVector{_mm512_maddubs_epi16(a.raw, b.raw)};
#elif HWY_TARGET == HWY_AVX2
  return WordVector{_mm256_maddubs_epi16(a.raw, b.raw)};
#else
  return WordVector{_mm_maddubs_epi16(a.raw, b.raw)};
#endif
}

// Bytes a then b of each 128-bit block, from words 0..255: undoes the order of InterleaveLower and InterleaveUpper.
HWY_INLINE hn::Vec<Bytes> PackBlocks(WordVector a, WordVector b) {
#if HWY_TARGET == HWY_AVX3
  return hn::Vec<Bytes>{_mm512_packus_epi16(a.raw, b.raw)};
#elif HWY_TARGET == HWY_AVX2
  return hn::Vec<Bytes>{_mm256_packus_epi16(a.raw, b.raw)};
#else
  return hn::Vec<Bytes>{_mm_packus_epi16(a.raw, b.raw)};
#endif
}

// The taps of a pair in all lanes.
struct PairTaps {
  WordVector high, low;
};

// The sums H and L of one block, for its lower and upper halves.
struct Sums {
  WordVector highLower, highUpper, lowLower, lowUpper;
};

HWY_INLINE PairTaps SetPair(const SplitTaps& taps, int32_t pair) {
  return {hn::Set(Words(), taps.high[pair]), hn::Set(Words(), taps.low[pair])};
}

HWY_INLINE Sums PairSums(hn::Vec<Bytes> a, hn::Vec<Bytes> b, const PairTaps& taps) {
  const auto lower = hn::InterleaveLower(Bytes(), a, b), upper = hn::InterleaveUpper(Bytes(), a, b);
  return {MultiplyAddPairs(lower, taps.high), MultiplyAddPairs(upper, taps.high), MultiplyAddPairs(lower, taps.low),
          MultiplyAddPairs(upper, taps.low)};
}

HWY_INLINE Sums Add(const Sums& a, const Sums& b) {
  return {hn::Add(a.highLower, b.highLower), hn::Add(a.highUpper, b.highUpper), hn::Add(a.lowLower, b.lowLower),
          hn::Add(a.lowUpper, b.lowUpper)};
}

// 1 where T and L' say that the sum was an exact half, else 0.
HWY_INLINE WordVector HalfBit(WordVector t, WordVector low) {
  const Words d;
  const auto one = hn::Set(d, 1), maskT = hn::Set(d, 127), maskLow = hn::Set(d, 31);
#if HWY_TARGET == HWY_AVX3
  const __mmask32 zeroT = _mm512_testn_epi16_mask(t.raw, maskT.raw);
  return WordVector{_mm512_maskz_mov_epi16(_mm512_mask_testn_epi16_mask(zeroT, low.raw, maskLow.raw), one.raw)};
#else
  const auto fraction = hn::Or(hn::And(t, maskT), hn::And(low, maskLow));
  return hn::And(hn::VecFromMask(d, hn::Eq(fraction, hn::Zero(d))), one);
#endif
}

// T >> 7, with an exact half rounded to even.
template <bool Round>
HWY_INLINE WordVector Finish(WordVector high, WordVector low) {
  const auto t = hn::Add(high, hn::ShiftRight<5>(low));
  const auto result = hn::ShiftRight<7>(t);
  return Round ? hn::AndNot(HalfBit(t, low), result) : result;
}

template <bool Round>
HWY_INLINE hn::Vec<Bytes> FinishBlock(const Sums& s) {
  return PackBlocks(Finish<Round>(s.highLower, s.lowLower), Finish<Round>(s.highUpper, s.lowUpper));
}

// Whole blocks from `from` (a multiple of the block) on while they start before `end`, for a number of pairs known at
// compile time: pointers and taps stay in registers, which the stores to bytes would else make the compiler doubt.
template <int Pairs, bool Round>
HWY_INLINE void FoldFew(const uint8_t* const* rows, uint8_t* dst, ptrdiff_t from, ptrdiff_t end,
                        const SplitTaps& taps) {
  const Bytes d;
  const auto constant = hn::Set(d, (uint8_t)(Round ? 64 : 0));
  const PairTaps tap0 = SetPair(taps, 0), tap1 = SetPair(taps, 1), tap2 = SetPair(taps, Pairs - 1);
  const uint8_t *const row0 = rows[0], *const row1 = rows[1], *const row2 = rows[2];
  const uint8_t *const row3 = rows[Pairs], *const row4 = rows[2 * Pairs - 2];
  for (ptrdiff_t x = from; x < end; x += (ptrdiff_t)hn::Lanes(d)) {
    Sums s = PairSums(hn::LoadU(d, row0 + x), hn::LoadU(d, row1 + x), tap0);
    if (Pairs == 3) s = Add(s, PairSums(hn::LoadU(d, row2 + x), hn::LoadU(d, row3 + x), tap1));
    s = Add(s, PairSums(hn::LoadU(d, row4 + x), constant, tap2));
    hn::StoreU(FinishBlock<Round>(s), d, dst + x);
  }
}

// The same for any number of pairs.
template <bool Round>
HWY_INLINE void FoldMany(const uint8_t* const* rows, uint8_t* dst, ptrdiff_t from, ptrdiff_t end,
                         const SplitTaps& taps) {
  const Bytes d;
  const int32_t last = taps.pairs - 1;
  PairTaps pair[(mostTaps + 1) / 2];
  for (int32_t i = 0; i <= last; ++i) pair[i] = SetPair(taps, i);
  for (ptrdiff_t x = from; x < end; x += (ptrdiff_t)hn::Lanes(d)) {
    Sums s = PairSums(hn::LoadU(d, rows[2 * last] + x), hn::Set(d, (uint8_t)(Round ? 64 : 0)), pair[last]);
    for (int32_t i = 0; i < last; ++i)
      s = Add(s, PairSums(hn::LoadU(d, rows[2 * i] + x), hn::LoadU(d, rows[2 * i + 1] + x), pair[i]));
    hn::StoreU(FinishBlock<Round>(s), d, dst + x);
  }
}

template <bool Round>
HWY_INLINE void FoldBlocks(const uint8_t* const* rows, uint8_t* dst, ptrdiff_t from, ptrdiff_t end,
                           const SplitTaps& taps) {
  if (taps.pairs == 2) return FoldFew<2, Round>(rows, dst, from, end, taps);
  if (taps.pairs == 3) return FoldFew<3, Round>(rows, dst, from, end, taps);
  FoldMany<Round>(rows, dst, from, end, taps);
}

// Whole blocks, rounded.
void FoldRounded(const uint8_t* const* rows, uint8_t* dst, ptrdiff_t from, ptrdiff_t end, const SplitTaps& taps) {
  FoldBlocks<true>(rows, dst, from, end, taps);
}

// dst[from, end), the only bytes written, rounded or truncated.
void FoldExactly(const uint8_t* const* rows, uint8_t* dst, ptrdiff_t from, ptrdiff_t end, bool round,
                 const SplitTaps& taps) {
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES;
  alignas(lanes) uint8_t block[lanes];
  while (from < end) {
    const ptrdiff_t base = from - from % lanes, stop = end < base + lanes ? end : base + lanes;
    const uint8_t* shifted[mostTaps];
    for (int32_t i = 0; i < taps.count; ++i) shifted[i] = rows[i] + base;
    (round ? FoldBlocks<true> : FoldBlocks<false>)(shifted, block, 0, lanes, taps);
    memcpy(dst + from, block + (from - base), (size_t)(stop - from));
    from = stop;
  }
}

KERNELS_END

#if HWY_ONCE

namespace ORV_VARIANT {

bool gaussianBytesFit(const int16_t* taps, int32_t kernelSize) {
  if (kernelSize > mostTaps) return false;
  int32_t sum = 0, sumLow = 0;
  for (int32_t i = 0; i < kernelSize; ++i) {
    if (taps[i] < 0 || taps[i] > 4095) return false;
    sum += taps[i];
    sumLow += taps[i] & 31;
  }
  return sum <= 4104 && sumLow <= 248;
}

static SplitTaps splitTaps(const int16_t* taps, int32_t kernelSize) {
  SplitTaps split{kernelSize, (kernelSize + 1) / 2, taps, {}, {}};
  for (int32_t i = 0; i < kernelSize; ++i) {
    const int32_t shift = i % 2 * 8;
    split.high[i / 2] |= (uint16_t)((taps[i] >> 5) << shift);
    split.low[i / 2] |= (uint16_t)((taps[i] & 31) << shift);
  }
  split.low[kernelSize / 2] |= 32 << 8;
  return split;
}

// The kernels of this processor.
struct Folds {
  void (*rounded)(const uint8_t* const*, uint8_t*, ptrdiff_t, ptrdiff_t, const SplitTaps&);
  void (*exactly)(const uint8_t* const*, uint8_t*, ptrdiff_t, ptrdiff_t, bool, const SplitTaps&);
};

// A stretch of a row with its borders, and pointers to its K shifts, such that element x of the row is at x of each.
struct Strip {
  uint8_t* bytes;
  const uint8_t* shifts[mostTaps];

  // Holds the pixels from `first` on; `extraSides` are sides where the row goes on.
  void hold(const Smoothing<uint8_t>& work, const uint8_t* row, ptrdiff_t first, ptrdiff_t pixels, int32_t extraSides,
            int32_t kernelSize) {
    const int32_t c = work.channels;
    const auto extend = c == 1 ? extendRow<uint8_t, 1> : extendRow<uint8_t, 3>;
    extend(row + first * c, bytes, (int32_t)pixels, kernelSize, kernelSize / 2, work.borderType | extraSides,
           work.borderValue);
    aim(bytes - first * c, c, kernelSize);
  }
  void aim(const uint8_t* start, int32_t channels, int32_t kernelSize) {
    for (int32_t i = 0; i < kernelSize; ++i) shifts[i] = start + (ptrdiff_t)i * channels;
  }
};

// The truncated bytes [from, end) of `out`: at most K / 2 pixels. Few enough are made one by one.
static void truncate(const uint8_t* const* shifts, uint8_t* out, ptrdiff_t from, ptrdiff_t end, const SplitTaps& taps,
                     const Folds& fold) {
  if ((end - from) * taps.count > 32) return fold.exactly(shifts, out, from, end, false, taps);
  for (ptrdiff_t x = from; x < end; ++x) {
    int32_t sum = 0;
    for (int32_t i = 0; i < taps.count; ++i) sum += taps.whole[i] * shifts[i][x];
    out[x] = (uint8_t)(sum >> 12);
  }
}

// Filters one row into `out`: the ends, where windows reach beyond the row, by way of the strip, the rest in place. The
// first and last `ends` bytes are truncated. Writes whole blocks.
static void rowPass(const Smoothing<uint8_t>& work, const uint8_t* row, uint8_t* out, Strip strip,
                    const SplitTaps& taps, const Folds& fold) {
  const int32_t c = work.channels, size = taps.count;
  const ptrdiff_t bytes = work.elements(), ends = (ptrdiff_t)(size / 2) * c;
  const ptrdiff_t right = (bytes - ends) & ~(ptrdiff_t)(blockBytes - 1);
  const ptrdiff_t left =
      right > blockBytes ? (ptrdiff_t)blockBytes : bytes;  // a short row goes through the strip whole
  const ptrdiff_t leftPixels = left < bytes ? (left + c - 1) / c : work.roi.width;
  strip.hold(work, row, 0, leftPixels, left < bytes ? orvBorderInMemRight : 0, size);
  fold.rounded(strip.shifts, out, 0, left, taps);
  truncate(strip.shifts, out, 0, ends < bytes ? ends : bytes, taps, fold);
  if (left < bytes) {
    Strip inPlace;
    inPlace.aim(row - ends, c, size);
    fold.rounded(inPlace.shifts, out, left, right, taps);
    strip.hold(work, row, right / c, work.roi.width - right / c, orvBorderInMemLeft, size);
    fold.rounded(strip.shifts, out, right, bytes, taps);
  }
  truncate(strip.shifts, out, bytes > ends ? bytes - ends : 0, bytes, taps, fold);
}

void gaussianBytes(const Smoothing<uint8_t>& work, const int16_t* kernel, int32_t kernelSize) {
  const Folds fold = {WIDEST(FoldRounded), WIDEST(FoldExactly)};
  const SplitTaps taps = splitTaps(kernel, kernelSize);
  const ptrdiff_t bytes = work.elements(), split = (ptrdiff_t)(work.roi.width & ~15) * work.channels;
  const ptrdiff_t whole = split & ~(ptrdiff_t)(blockBytes - 1);
  const ptrdiff_t pitch = (bytes + blockBytes - 1) & ~(ptrdiff_t)(blockBytes - 1);

  // What vectors read of strip and ring behind the row's end is whatever was there; it reaches no pixel.
  Scratch scratch{work.buffer};
  uint8_t* rows[mostTaps];
  for (int32_t i = 0; i < kernelSize; ++i) rows[i] = scratch.take<uint8_t>(pitch, blockBytes);
  Strip strip;
  strip.bytes = scratch.take<uint8_t>(pitch + (ptrdiff_t)(kernelSize - 1) * work.channels);

  runRing(
      work.roi.height, kernelSize, rows,
      [&](int32_t y, uint8_t* row) {
        const ptrdiff_t source = work.sourceRow(y);
        if (source == borderNoPixel) return work.fillConstant(row);
        rowPass(work, raw(work.src.row(source)), row, strip, taps, fold);
      },
      [&](int32_t y, uint8_t** folded) {
        uint8_t* const dst = raw(work.dst.row(y));
        fold.rounded(folded, dst, 0, whole, taps);
        fold.exactly(folded, dst, whole, split, true, taps);
        fold.exactly(folded, dst, split, bytes, false, taps);
      });
}

}  // namespace ORV_VARIANT

#endif

// Exact sums and sums of squares of unsigned 8- and 16-bit lanes, and the count of a mask (include after
// core/kernels.h; read once a width).
//
//   Totals<uint8_t, true, true> t;
//   ... t.Add(v) for up to kVectorsHeld vectors, t.Flush() ... t.sum, t.squares
//
// Constructors are spelled out: implied ones would lack the instruction set of their members.
//
// Budget, for each vector added: a 32-bit lane of 8u takes at most two squares of 255 twice, so 16512 vectors fit; 16u
// are taken as their distance b from 32768, whose pair sums are at most 2^16 in amount. Squares of b go to 64 bits at
// once, since a pair of them may be 2^31. From sum(b), sum(b^2) and the number of lanes n the sums of x = b + 32768 are
// sum(b) + 2^15 n and sum(b^2) + 2^16 sum(b) + 2^30 n; a lane that is left out is 0 and falls out of both.
#if defined(ORV_TOTALS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_TOTALS_TOGGLE
#undef ORV_TOTALS_TOGGLE
#else
#define ORV_TOTALS_TOGGLE
#endif
KERNELS_BEGIN

using D32 = hn::ScalableTag<int32_t>;
using D64 = hn::ScalableTag<uint64_t>;
constexpr ptrdiff_t kVectorsHeld = 8192;

// The sum of 32-bit lanes in 64 bits.
HWY_INLINE int64_t SumWide(hn::VFromD<D32> v) {
  alignas(HWY_MAX_BYTES) int32_t lanes[hn::MaxLanes(D32())];
  hn::Store(v, D32(), lanes);
  int64_t sum = 0;
  for (const int32_t lane : lanes) sum += lane;
  return sum;
}

HWY_INLINE uint64_t SumWide(hn::VFromD<D64> v) {
  return Fold(
      D64(), v, [](auto a, auto b) __attribute__((always_inline)) { return hn::Add(a, b); });
}

template <class T, bool WantSum, bool WantSquares>
struct Totals;

template <bool WantSum, bool WantSquares>
struct Totals<uint8_t, WantSum, WantSquares> {
  uint64_t sum = 0, squares = 0;
  hn::VFromD<D64> sums;
  hn::VFromD<D32> lower, upper;

  HWY_INLINE Totals() : sums(hn::Zero(D64())), lower(hn::Zero(D32())), upper(hn::Zero(D32())) {}

  HWY_INLINE void Add(hn::VFromD<hn::ScalableTag<uint8_t>> v) {
    if constexpr (WantSum) sums = hn::Add(sums, hn::SumsOf8(v));
    if constexpr (WantSquares) {
      const hn::ScalableTag<uint8_t> d;
      const hn::ScalableTag<int16_t> d16;
      const auto lo = hn::BitCast(d16, hn::InterleaveLower(d, v, hn::Zero(d)));
      const auto hi = hn::BitCast(d16, hn::InterleaveUpper(d, v, hn::Zero(d)));
      lower = AddPairProducts(D32(), lower, lo, lo);
      upper = AddPairProducts(D32(), upper, hi, hi);
    }
  }
  HWY_INLINE void Flush(ptrdiff_t) {
    if constexpr (WantSum) sum += SumWide(sums), sums = hn::Zero(D64());
    if constexpr (WantSquares) {
      squares += (uint64_t)(SumWide(lower) + SumWide(upper));
      lower = upper = hn::Zero(D32());
    }
  }
};

template <bool WantSum, bool WantSquares>
struct Totals<uint16_t, WantSum, WantSquares> {
  uint64_t sum = 0, squares = 0;
  hn::VFromD<D32> sums;
  hn::VFromD<D64> even, odd;

  HWY_INLINE Totals() : sums(hn::Zero(D32())), even(hn::Zero(D64())), odd(hn::Zero(D64())) {}

  HWY_INLINE void Add(hn::VFromD<hn::ScalableTag<uint16_t>> v) {
    const hn::ScalableTag<int16_t> d16;
    const auto b = hn::Xor(hn::BitCast(d16, v), hn::Set(d16, INT16_MIN));
    sums = AddPairProducts(D32(), sums, b, hn::Set(d16, 1));
    if constexpr (WantSquares) {
      const auto pairs = hn::BitCast(D64(), AddPairProducts(D32(), hn::Zero(D32()), b, b));
      even = hn::Add(even, hn::And(pairs, hn::Set(D64(), 0xFFFFFFFFu)));
      odd = hn::Add(odd, hn::ShiftRight<32>(pairs));
    }
  }
  HWY_INLINE void Flush(ptrdiff_t vectors) {
    const int64_t n = (int64_t)vectors * (int64_t)hn::MaxLanes(hn::ScalableTag<uint16_t>());
    const int64_t b = SumWide(sums);
    sum += (uint64_t)(b + (n << 15));
    sums = hn::Zero(D32());
    if constexpr (WantSquares) {
      squares += SumWide(even) + SumWide(odd) + (uint64_t)((b << 16) + (n << 30));
      even = odd = hn::Zero(D64());
    }
  }
};

// Adds a strip by strip sum, and flushes before a lane could overflow.
template <class Sums>
struct Held {
  Sums totals;
  ptrdiff_t vectors = 0;

  HWY_INLINE Held() {}
  // After `count` elements were added in vectors of `lanes`.
  HWY_INLINE void Tally(ptrdiff_t count, ptrdiff_t lanes) {
    vectors += (count + lanes - 1) / lanes;
    if (vectors > kVectorsHeld) Flush();
  }
  HWY_INLINE void Flush() {
    totals.Flush(vectors);
    vectors = 0;
  }
};

// How many mask bytes are not zero.
struct MaskCount {
  hn::VFromD<D64> ones;

  HWY_INLINE MaskCount() : ones(hn::Zero(D64())) {}
  HWY_INLINE void Add(const uint8_t* mask, ptrdiff_t count) {
    const hn::ScalableTag<uint8_t> d;
    const auto add = [&](auto bytes) __attribute__((always_inline)) {
      const auto set = hn::VecFromMask(d, hn::Ne(bytes, hn::Zero(d)));
      ones = hn::Add(ones, hn::SumsOf8(hn::And(set, hn::Set(d, 1))));
    };
    ptrdiff_t x = 0;
    for (; x + HWY_MAX_BYTES <= count; x += HWY_MAX_BYTES) add(hn::LoadU(d, mask + x));
    if (x < count) add(LoadRest(d, mask + x, count - x));
  }
  HWY_INLINE uint64_t Total() const { return SumWide(ones); }
};

KERNELS_END
#endif

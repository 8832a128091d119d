// Sums along a row of bytes or their squares, in 32-bit lanes (read once a width, after core/kernels.h).
//
// Theory. Moving lanes is what sums along a row cost, so as much as possible is done within lanes. Four vectors of
// columns are loaded as one of bytes; a lane holds a group of four neighbouring columns, and groups stand so that
// block b, lane k has group k * blocks + b. The sums up to each group's end then take few moves, those up to its other
// columns three subtractions, and a transposition of blocks of 4 x 4 lanes puts all columns into their order:
//
//   up to column 3 of each group   e - - -      transposed     b c d e | ...    vector 0: first lanes of all blocks
//   less p3, p3 + p2, ...          d, c, b      ---------->    ...              vector 1: second lanes, and so on
//
// The rest of a row is summed a vector at a time. What the columns before add up to comes from a carry of equal lanes;
// its update is one addition of a total that does not depend on it, so steps follow each other without waiting.
#if defined(ORV_PREFIX_SUMS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_PREFIX_SUMS_TOGGLE
#undef ORV_PREFIX_SUMS_TOGGLE
#else
#define ORV_PREFIX_SUMS_TOGGLE
#endif
KERNELS_BEGIN

using Lanes32 = hn::ScalableTag<int32_t>;
using Vector32 = hn::VFromD<Lanes32>;
constexpr ptrdiff_t kLanes32 = HWY_MAX_BYTES / 4;

// Adds to each lane the last lane of its own kind in all blocks before.
HWY_INLINE Vector32 AddBlocksBefore(Vector32 v) {
#if HWY_TARGET == HWY_AVX2
  v = hn::Add(v, Vector32{_mm256_permute2x128_si256(v.raw, v.raw, 0x08)});  // 0, first block
#elif HWY_TARGET == HWY_AVX3
  v = hn::Add(v, Vector32{_mm512_maskz_shuffle_i32x4(0xFFF0, v.raw, v.raw, 0x90)});  // 0, blocks 0, 1, 2
  v = hn::Add(v, Vector32{_mm512_maskz_shuffle_i32x4(0xFF00, v.raw, v.raw, 0x40)});  // 0, 0, blocks 0, 1
#endif
  return v;
}

// The last block, in all blocks.
HWY_INLINE Vector32 LastBlock(Vector32 v) {
#if HWY_TARGET == HWY_AVX2
  return Vector32{_mm256_permute2x128_si256(v.raw, v.raw, 0x11)};
#elif HWY_TARGET == HWY_AVX3
  return Vector32{_mm512_shuffle_i32x4(v.raw, v.raw, 0xFF)};
#else
  return v;
#endif
}

// Adds to each lane all before it in its block.
HWY_INLINE Vector32 SumsInBlocks(Vector32 v) {
  const Lanes32 d;
  v = hn::Add(v, hn::ShiftLeftLanes<1>(d, v));
  return hn::Add(v, hn::ShiftLeftLanes<2>(d, v));
}

// Adds to each lane all before it.
HWY_INLINE Vector32 PrefixSums(Vector32 v) {
  const Vector32 inBlocks = SumsInBlocks(v), ends = hn::Broadcast<3>(inBlocks);
  return hn::Add(inBlocks, hn::Sub(AddBlocksBefore(ends), ends));
}

// Pixels and their squares as 32-bit lanes.
HWY_INLINE Vector32 LoadPixels(const uint8_t* p) {
  const Lanes32 d;
  return hn::PromoteTo(d, hn::LoadU(hn::Rebind<uint8_t, Lanes32>(), p));
}
HWY_INLINE Vector32 LoadSquares(const uint8_t* p) {
  const Lanes32 d;
  const hn::Rebind<uint16_t, Lanes32> d16;
  const auto v = hn::PromoteTo(d16, hn::LoadU(hn::Rebind<uint8_t, Lanes32>(), p));
  return hn::PromoteTo(d, hn::Mul(v, v));
}

// The same of four columns a lane: even columns in the lower halves of `even`, columns 0 and 2, and the odd ones
// likewise. Groups stand in the order of the theory above.
struct Groups {
  Vector32 even, odd;
  HWY_INLINE Groups(Vector32 e, Vector32 o) : even(e), odd(o) {}
};

HWY_INLINE Groups LoadPixelGroups(const uint8_t* p) {
  const Lanes32 d;
  const hn::Repartition<uint8_t, Lanes32> d8;
  auto v = hn::BitCast(d, hn::LoadU(d8, p));
#if HWY_TARGET == HWY_AVX2
  alignas(32) static constexpr int32_t order[] = {0, 2, 4, 6, 1, 3, 5, 7};
  v = Vector32{_mm256_permutevar8x32_epi32(v.raw, hn::Load(d, order).raw)};
#elif HWY_TARGET == HWY_AVX3
  alignas(64) static constexpr int32_t order[] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
  v = Vector32{_mm512_permutexvar_epi32(hn::Load(d, order).raw, v.raw)};
#endif
  const auto halves = hn::Set(d, 0x00FF00FF);
  return Groups(hn::And(v, halves), hn::And(hn::ShiftRight<8>(v), halves));
}
HWY_INLINE Groups LoadSquareGroups(const uint8_t* p) {
  const Lanes32 d;
  const hn::Repartition<uint16_t, Lanes32> d16;
  const Groups g = LoadPixelGroups(p);
  const auto e = hn::BitCast(d16, g.even), o = hn::BitCast(d16, g.odd);
  return Groups(hn::BitCast(d, hn::Mul(e, e)), hn::BitCast(d, hn::Mul(o, o)));
}

// Sums of the columns of four vectors up to each, `carry` included; the result is the total without it, in all lanes.
HWY_INLINE Vector32 GroupSums(const Groups& g, Vector32 carry, Vector32& s0, Vector32& s1, Vector32& s2, Vector32& s3) {
  const Lanes32 d;
  const hn::Repartition<uint32_t, Lanes32> du;
  const hn::Repartition<uint64_t, Lanes32> d64;
  const auto low = hn::Set(d, 0xFFFF);
  const auto upper = [&](Vector32 v) HWY_ATTR { return hn::BitCast(d, hn::ShiftRight<16>(hn::BitCast(du, v))); };
  const Vector32 p0 = hn::And(g.even, low), p1 = hn::And(g.odd, low), p2 = upper(g.even), p3 = upper(g.odd);
  // Lane k of the last block ends a run of groups; the runs before it are the sums of its lanes before.
  const Vector32 inRun = AddBlocksBefore(hn::Add(hn::Add(p0, p1), hn::Add(p2, p3)));
  const Vector32 runs = LastBlock(inRun), upToRun = SumsInBlocks(runs);
  const Vector32 v3 = hn::Add(hn::Add(carry, hn::Sub(upToRun, runs)), inRun);
  const Vector32 v2 = hn::Sub(v3, p3), v1 = hn::Sub(v2, p2), v0 = hn::Sub(v1, p1);
  const auto a = hn::BitCast(d64, hn::InterleaveLower(d, v0, v1)), b = hn::BitCast(d64, hn::InterleaveLower(d, v2, v3));
  const auto c = hn::BitCast(d64, hn::InterleaveUpper(d, v0, v1)), e = hn::BitCast(d64, hn::InterleaveUpper(d, v2, v3));
  s0 = hn::BitCast(d, hn::InterleaveLower(d64, a, b)), s1 = hn::BitCast(d, hn::InterleaveUpper(d64, a, b));
  s2 = hn::BitCast(d, hn::InterleaveLower(d64, c, e)), s3 = hn::BitCast(d, hn::InterleaveUpper(d64, c, e));
  return hn::Broadcast<3>(upToRun);
}

// A running sum over the row; Add() makes columns of the table from it, of a vector or of four. Sums of a table of T
// are exact integers: in 32 bits, where they wrap, for int32 and float; for double in doubles, whose 53 bits no row can
// exceed.
template <class T>
struct RunningSum {
  Vector32 carry;
  HWY_INLINE RunningSum() : carry(hn::Zero(Lanes32())) {}

  static HWY_INLINE void Store(Vector32 sums, const T* above, T* out) {
    const hn::Rebind<T, Lanes32> d;
    if constexpr (std::is_same<T, float>::value)
      hn::StoreU(hn::Add(hn::LoadU(d, above), hn::ConvertTo(d, sums)), d, out);
    else hn::StoreU(hn::Add(hn::LoadU(d, above), sums), d, out);
  }
  HWY_INLINE void Add(Vector32 v, const T* above, T* out) {
    const Vector32 sums = PrefixSums(v);
    Store(hn::Add(sums, carry), above, out);
    carry = hn::Add(carry, hn::Broadcast<3>(LastBlock(sums)));
  }
  HWY_INLINE void Add(const Groups& groups, const T* above, T* out) {
    Vector32 s0, s1, s2, s3;
    const Vector32 total = GroupSums(groups, carry, s0, s1, s2, s3);
    Store(s0, above, out), Store(s1, above + kLanes32, out + kLanes32);
    Store(s2, above + 2 * kLanes32, out + 2 * kLanes32), Store(s3, above + 3 * kLanes32, out + 3 * kLanes32);
    carry = hn::Add(carry, total);
  }
  HWY_INLINE int32_t Last() const { return hn::GetLane(carry); }
};

template <>
struct RunningSum<double> {
  using Lanes64 = hn::Repartition<double, Lanes32>;
  using Half32 = hn::Rebind<int32_t, Lanes64>;
  hn::VFromD<Lanes64> carry;
  HWY_INLINE RunningSum() : carry(hn::Zero(Lanes64())) {}

  HWY_INLINE void Store(Vector32 sums, const double* above, double* out) const {
    const Lanes64 d;
    const Half32 half;
    const auto low = hn::PromoteTo(d, hn::LowerHalf(half, sums)), high = hn::PromoteTo(d, hn::UpperHalf(half, sums));
    const size_t n = hn::Lanes(d);
    hn::StoreU(hn::Add(hn::LoadU(d, above), hn::Add(low, carry)), d, out);
    hn::StoreU(hn::Add(hn::LoadU(d, above + n), hn::Add(high, carry)), d, out + n);
  }
  HWY_INLINE void Advance(Vector32 total) {
    carry = hn::Add(carry, hn::PromoteTo(Lanes64(), hn::LowerHalf(Half32(), total)));
  }
  HWY_INLINE void Add(Vector32 v, const double* above, double* out) {
    const Vector32 sums = PrefixSums(v);
    Store(sums, above, out);
    Advance(hn::Broadcast<3>(LastBlock(sums)));
  }
  HWY_INLINE void Add(const Groups& groups, const double* above, double* out) {
    Vector32 s0, s1, s2, s3;
    const Vector32 total = GroupSums(groups, hn::Zero(Lanes32()), s0, s1, s2, s3);
    Store(s0, above, out), Store(s1, above + kLanes32, out + kLanes32);
    Store(s2, above + 2 * kLanes32, out + 2 * kLanes32), Store(s3, above + 3 * kLanes32, out + 3 * kLanes32);
    Advance(total);
  }
  HWY_INLINE double Last() const { return hn::GetLane(carry); }
};

KERNELS_END
#endif

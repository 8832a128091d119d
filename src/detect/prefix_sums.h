// Sums along a row, a vector of columns at a time (read once a width, after core/kernels.h).
//
//   columns   p0   p1      p2         p3            | p4 ...     blocks of four lanes
//   + 1 lane  p0   p0+p1   p1+p2      p2+p3         |
//   + 2 lanes p0   p0+p1   p0+p1+p2   p0+p1+p2+p3   |            then each block gets the last lane of those before it
//
// What the columns before the vector add up to comes from a carry of equal lanes. Its update is one addition of a
// total that does not depend on it, so vectors follow each other without waiting.
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

// Adds to each lane all before it.
HWY_INLINE Vector32 PrefixSums(Vector32 v) {
  const Lanes32 d;
  v = hn::Add(v, hn::ShiftLeftLanes<1>(d, v));
  v = hn::Add(v, hn::ShiftLeftLanes<2>(d, v));
#if HWY_TARGET == HWY_AVX2
  const __m256i ends = _mm256_shuffle_epi32(v.raw, 0xFF);
  v = hn::Add(v, Vector32{_mm256_permute2x128_si256(ends, ends, 0x08)});  // 0, first block
#elif HWY_TARGET == HWY_AVX3
  const __m512i one = _mm512_shuffle_epi32(v.raw, _MM_PERM_DDDD);
  v = hn::Add(v, Vector32{_mm512_maskz_shuffle_i32x4(0xFFF0, one, one, 0x90)});  // 0, blocks 0, 1, 2
  const __m512i two = _mm512_shuffle_epi32(v.raw, _MM_PERM_DDDD);
  v = hn::Add(v, Vector32{_mm512_maskz_shuffle_i32x4(0xFF00, two, two, 0x40)});  // 0, 0, blocks 0, 1
#endif
  return v;
}

// The last lane, in all lanes.
HWY_INLINE Vector32 LastLane(Vector32 v) {
#if HWY_TARGET == HWY_AVX2
  return hn::Broadcast<3>(Vector32{_mm256_permute2x128_si256(v.raw, v.raw, 0x11)});
#elif HWY_TARGET == HWY_AVX3
  return hn::Broadcast<3>(Vector32{_mm512_shuffle_i32x4(v.raw, v.raw, 0xFF)});
#else
  return hn::Broadcast<3>(v);
#endif
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

// A running sum over the row; Add() makes a row of the table from it. Sums of a table of T are exact integers: in 32
// bits, where they wrap, for int32 and float; for double in doubles, whose 53 bits no row can exceed.
template <class T>
struct RunningSum {
  Vector32 carry;
  HWY_INLINE RunningSum() : carry(hn::Zero(Lanes32())) {}

  HWY_INLINE void Add(Vector32 v, const T* above, T* out) {
    const hn::Rebind<T, Lanes32> d;
    const Vector32 sums = PrefixSums(v), total = hn::Add(sums, carry);
    if constexpr (std::is_same<T, float>::value)
      hn::StoreU(hn::Add(hn::LoadU(d, above), hn::ConvertTo(d, total)), d, out);
    else hn::StoreU(hn::Add(hn::LoadU(d, above), total), d, out);
    carry = hn::Add(carry, LastLane(sums));
  }
  HWY_INLINE int32_t Last() const { return hn::GetLane(carry); }
};

template <>
struct RunningSum<double> {
  using Lanes64 = hn::Repartition<double, Lanes32>;
  using Half32 = hn::Rebind<int32_t, Lanes64>;
  hn::VFromD<Lanes64> carry;
  HWY_INLINE RunningSum() : carry(hn::Zero(Lanes64())) {}

  HWY_INLINE void Add(Vector32 v, const double* above, double* out) {
    const Lanes64 d;
    const Half32 half;
    const Vector32 sums = PrefixSums(v);
    const auto low = hn::PromoteTo(d, hn::LowerHalf(half, sums)), high = hn::PromoteTo(d, hn::UpperHalf(half, sums));
    const size_t n = hn::Lanes(d);
    hn::StoreU(hn::Add(hn::LoadU(d, above), hn::Add(low, carry)), d, out);
    hn::StoreU(hn::Add(hn::LoadU(d, above + n), hn::Add(high, carry)), d, out + n);
    carry = hn::Add(carry, hn::PromoteTo(d, hn::LowerHalf(half, LastLane(sums))));
  }
  HWY_INLINE double Last() const { return hn::GetLane(carry); }
};

KERNELS_END
#endif

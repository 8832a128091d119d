// Vector helpers with the meaning of their formulas, for kernels (include after core/kernels.h; read once a width).
//
// Two layouts of 32-bit results are used for one vector of N 16-bit lanes. From 8 lanes on they fill two vectors, `lo`
// and `hi`, in the order of the processor's interleave and pack instructions, which undo each other within blocks of
// 16 bytes. With 1, 2 or 4 lanes, as at row ends, `lo` holds all of them in order and `hi` is unused.
#if defined(ORV_VECTORS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_VECTORS_TOGGLE
#undef ORV_VECTORS_TOGGLE
#else
#define ORV_VECTORS_TOGGLE
#endif
KERNELS_BEGIN

// body(0), body(1), ... body(N - 1), unrolled: arrays indexed so stay in registers.
template <int N, class Body>
HWY_INLINE void Repeat(const Body& body) {
  if constexpr (N > 0) Repeat<N - 1>(body), body((ptrdiff_t)(N - 1));
}
#define EACH(i) [&](ptrdiff_t i) __attribute__((always_inline))

// How many vectors a kernel works on at a time, as an argument.
template <int N>
struct Count {
  static constexpr int value = N;
};

// As Vectors() of core/kernels.h, but full vectors come in groups of N, which share what a kernel loads for all
// columns: vector(Count<N>, d, x), then vector(Count<1>, d, x).
template <class T, int N, class Vector>
HWY_INLINE void VectorGroups(ptrdiff_t first, ptrdiff_t end, const Vector& vector) {
  constexpr ptrdiff_t group = N * (HWY_MAX_BYTES / sizeof(T));
  ptrdiff_t x = first;
  for (; x + group <= end; x += group) vector(Count<N>(), hn::ScalableTag<T>(), x);
  Vectors<T>(
      x, end, VECTOR(d, i) { vector(Count<1>(), d, i); });
}
#define VECTOR_GROUP(n, d, x) [&](auto n, auto d, ptrdiff_t x) __attribute__((always_inline))

// vector(Count<1>, d, x) from column x to n, with the largest vectors of at most Lanes that fit into n. The last one
// overlaps its predecessor, so the results must not lie where the sources do.
template <class T, int Lanes, class Vector>
HWY_INLINE void OverlappedVectors(ptrdiff_t x, ptrdiff_t n, const Vector& vector) {
  if (n >= Lanes) {
    while (x < n) {
      const ptrdiff_t last = n - Lanes;
      vector(Count<1>(), hn::Simd<T, Lanes, 0>(), x < last ? x : last);
      x += Lanes;
    }
  } else if constexpr (Lanes > 1) {
    OverlappedVectors<T, (Lanes > 4 ? Lanes / 2 : 1)>(x, n, vector);
  }
}

// vector(d, x) for 0 <= x < n over lanes of R; the results must not lie where the sources do.
template <class R, class Vector>
HWY_INLINE void ForLanes(ptrdiff_t n, const Vector& vector) {
  const auto one = [&](Count<1>, auto d, ptrdiff_t x) __attribute__((always_inline)) { vector(d, x); };
  OverlappedVectors<R, HWY_MAX_BYTES / sizeof(R)>(0, n, one);
}

// Raw conversions. Beyond the range of 32 bits they give -2^31: bound the value from above first, and a saturating
// narrowing makes the rest right.
template <size_t N>
HWY_INLINE hn::Vec128<int32_t, N> Nearest(hn::Vec128<float, N> v) {
  return hn::Vec128<int32_t, N>{_mm_cvtps_epi32(v.raw)};
}
template <size_t N>
HWY_INLINE hn::Vec128<int32_t, N> Truncate(hn::Vec128<float, N> v) {
  return hn::Vec128<int32_t, N>{_mm_cvttps_epi32(v.raw)};
}
#if HWY_TARGET <= HWY_AVX2
HWY_INLINE hn::Vec256<int32_t> Nearest(hn::Vec256<float> v) { return hn::Vec256<int32_t>{_mm256_cvtps_epi32(v.raw)}; }
HWY_INLINE hn::Vec256<int32_t> Truncate(hn::Vec256<float> v) { return hn::Vec256<int32_t>{_mm256_cvttps_epi32(v.raw)}; }
#endif
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE hn::Vec512<int32_t> Nearest(hn::Vec512<float> v) { return hn::Vec512<int32_t>{_mm512_cvtps_epi32(v.raw)}; }
HWY_INLINE hn::Vec512<int32_t> Truncate(hn::Vec512<float> v) { return hn::Vec512<int32_t>{_mm512_cvttps_epi32(v.raw)}; }
#endif

template <class D>
HWY_INLINE auto ToFloat(D, hn::VFromD<D> v) {
  return hn::ConvertTo(hn::Rebind<float, D>(), v);
}

// The tag of the 32-bit lanes that belong to a vector of 16-bit lanes: a whole vector, or as many as there are.
template <class D16, size_t N = hn::MaxLanes(D16())>
using Wide = hn::Simd<int32_t, (N >= 8 ? N / 2 : N), 0>;

template <class D16>
constexpr bool kTwoHalves = hn::MaxLanes(D16()) >= 8;

// Two vectors of 32-bit lanes for one of 16-bit lanes.
template <class D16>
struct Halves {
  hn::VFromD<Wide<D16>> lo, hi;
};

// Pairs of neighbouring lanes, for PairProducts: (a0, b0), (a1, b1), ...
template <class D16>
using Pairs = hn::VFromD<hn::Repartition<int16_t, Wide<D16>>>;
template <class D16>
HWY_INLINE Pairs<D16> LowerPairs(D16 d, hn::VFromD<D16> a, hn::VFromD<D16> b) {
  if constexpr (kTwoHalves<D16>) return hn::InterleaveLower(d, a, b);
  else return Pairs<D16>{_mm_unpacklo_epi16(a.raw, b.raw)};
}
template <class D16>
HWY_INLINE Pairs<D16> UpperPairs(D16 d, hn::VFromD<D16> a, hn::VFromD<D16> b) {
  return hn::InterleaveUpper(d, a, b);
}

// sum + a0 * b0 + a1 * b1 over the pairs of 16-bit lanes, wrapping in 32 bits.
template <class D32, class V16>
HWY_INLINE hn::VFromD<D32> AddPairProducts(D32 d, hn::VFromD<D32> sum, V16 a, V16 b) {
  hn::VFromD<D32> unused = sum;
  return hn::ReorderWidenMulAccumulate(d, a, b, sum, unused);
}

// The two taps of a pair, in all pairs of lanes: `low` bits 0 to 15 for the first.
template <class D32>
HWY_INLINE auto TapPair(D32 d, int32_t pair) {
  return hn::BitCast(hn::Repartition<int16_t, D32>(), hn::Set(d, pair));
}

// Narrows to 16 bits with saturation. For results of Halves the order becomes that of the pixels.
template <class D16>
HWY_INLINE hn::VFromD<D16> NarrowSaturated(D16 d, Halves<D16> v) {
  if constexpr (kTwoHalves<D16>) return hn::ReorderDemote2To(d, v.lo, v.hi);
  else return hn::VFromD<D16>{_mm_packs_epi32(v.lo.raw, v.lo.raw)};
}

// The same for sums of even columns in `lo` and of odd columns in `hi`.
template <class D16>
HWY_INLINE hn::VFromD<D16> NarrowAlternating(D16 d, Halves<D16> v) {
  const hn::Repartition<uint8_t, D16> d8;
  alignas(16) static constexpr uint8_t order[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
  const auto blocks = hn::BitCast(d8, hn::ReorderDemote2To(d, v.lo, v.hi));
  return hn::BitCast(d, hn::TableLookupBytes(blocks, hn::LoadDup128(d8, order)));
}

// Elements as signed 16-bit lanes; of 16u their distance from 32768.
template <class D16>
HWY_INLINE hn::VFromD<D16> LoadSigned(D16 d, const uint8_t* p) {
  return hn::PromoteTo(d, hn::LoadU(hn::Rebind<uint8_t, D16>(), p));
}
template <class D16>
HWY_INLINE hn::VFromD<D16> LoadSigned(D16 d, const int16_t* p) {
  return hn::LoadU(d, p);
}
template <class D16>
HWY_INLINE hn::VFromD<D16> LoadSigned(D16 d, const uint16_t* p) {
  return hn::Xor(hn::LoadU(d, (const int16_t*)(const void*)p), hn::Set(d, INT16_MIN));
}

// Stores 16-bit lanes, saturated to the type of the destination.
template <class D16>
HWY_INLINE void StoreSaturated(D16 d, hn::VFromD<D16> v, int16_t* p) {
  hn::StoreU(v, d, p);
}
template <class D16, class T8>
HWY_INLINE void StoreSaturated(D16, hn::VFromD<D16> v, T8* p) {
  const hn::Rebind<T8, D16> d8;
  hn::StoreU(hn::DemoteTo(d8, v), d8, p);
}

KERNELS_END
#endif

// Sums of 16-bit taps by pairs of products, shared by the row and the column stage (include after core/vectors.h; read
// once a width).
//
// Unsigned 16-bit rows are read as their distance from 32768, and start(sum of taps) puts the missing part back. The
// whole sum wraps in 32 bits, so a sum below 2^32 is right as an unsigned number.
#if defined(ORV_PAIR_TAPS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_PAIR_TAPS_TOGGLE
#undef ORV_PAIR_TAPS_TOGGLE
#else
#define ORV_PAIR_TAPS_TOGGLE
#endif
KERNELS_BEGIN

// A kernel of Size taps, or of `size` taps for Size 0. Taps may lie at any address.
template <int Size>
struct PairTaps {
  int32_t pairs[Size / 2 + 1];

  HWY_INLINE PairTaps(const void* taps, int32_t) {
    for (int32_t& pair : pairs) pair = 0;
    memcpy(pairs, taps, Size * sizeof(int16_t));
  }
  HWY_INLINE int32_t Count() const { return Size; }
  // Taps i and i + 1.
  HWY_INLINE int32_t Pair(int32_t i) const { return pairs[i / 2]; }
  // The last tap of an odd kernel, beside a zero.
  HWY_INLINE int32_t Last() const { return pairs[Size / 2]; }
};
template <>
struct PairTaps<0> {
  const uint8_t* taps;
  int32_t size;

  HWY_INLINE PairTaps(const void* memory, int32_t count) : taps((const uint8_t*)memory), size(count) {}
  HWY_INLINE int32_t Count() const { return size; }
  HWY_INLINE int32_t Pair(int32_t i) const {
    int32_t pair;
    memcpy(&pair, taps + 2 * (ptrdiff_t)i, sizeof pair);
    return pair;
  }
  HWY_INLINE int32_t Last() const {
    uint16_t tap;
    memcpy(&tap, taps + 2 * (ptrdiff_t)(size - 1), sizeof tap);
    return tap;
  }
};

// body(i) for each whole pair of taps.
template <int I, int Size, class Body>
HWY_INLINE void UnrolledPairs(const Body& body) {
  if constexpr (I + 1 < Size) body(I), UnrolledPairs<I + 2, Size>(body);
}
template <int Size, class Body>
HWY_INLINE void ForPairs(const PairTaps<Size>& taps, const Body& body) {
  if constexpr (Size > 0) UnrolledPairs<0, Size>(body);
  else
    for (int32_t i = 0; i + 1 < taps.size; i += 2) body(i);
}
#define TAP_PAIR(i) [&](int32_t i) __attribute__((always_inline))

// Sums of N vectors of columns that lie side by side; row(i) points to the elements that tap i multiplies.
template <class D16, int N, int Size, class Row>
HWY_INLINE void InterleavedSums(D16 d, Halves<D16> (&sum)[N], const PairTaps<Size>& taps, int32_t start,
                                const Row& row) {
  const Wide<D16> d32;
  constexpr ptrdiff_t lanes = hn::MaxLanes(d);
  const auto add = [&](ptrdiff_t v, hn::VFromD<D16> a, hn::VFromD<D16> b, Pairs<D16> tap)
      __attribute__((always_inline)) {
    sum[v].lo = AddPairProducts(d32, sum[v].lo, LowerPairs(d, a, b), tap);
    if constexpr (kTwoHalves<D16>) sum[v].hi = AddPairProducts(d32, sum[v].hi, UpperPairs(d, a, b), tap);
  };
  Repeat<N>(EACH(v) { sum[v].lo = sum[v].hi = hn::Set(d32, start); });
  ForPairs(
      taps, TAP_PAIR(i) {
        const auto tap = TapPair(d32, taps.Pair(i));
        const auto *a = row(i), *b = row(i + 1);
        Repeat<N>(EACH(v) { add(v, LoadSigned(d, a + v * lanes), LoadSigned(d, b + v * lanes), tap); });
      });
  if (taps.Count() & 1) {
    const auto tap = TapPair(d32, taps.Last());
    const auto* a = row(taps.Count() - 1);
    Repeat<N>(EACH(v) { add(v, LoadSigned(d, a + v * lanes), hn::Zero(d), tap); });
  }
}

// The same for taps that multiply neighbours s[0], s[1], ...: no lanes need be interleaved, since the pairs that begin
// at even columns lie side by side, and so do those that begin at odd ones.
//
//   load s + i      (0 1)(2 3)(4 5)...   taps i, i + 1 of columns 0, 2, 4, ...    lo
//   load s + i + 1  (1 2)(3 4)(5 6)...   taps i, i + 1 of columns 1, 3, 5, ...    hi
//
// The single last tap is put in the first place of its pair for even columns, in the second for odd ones.
template <class D16, int N, int Size, class Pixel>
HWY_INLINE void AlternatingSums(D16 d, Halves<D16> (&sum)[N], const PairTaps<Size>& taps, int32_t start,
                                const Pixel* s) {
  const Wide<D16> d32;
  constexpr ptrdiff_t lanes = hn::MaxLanes(d);
  Repeat<N>(EACH(v) { sum[v].lo = sum[v].hi = hn::Set(d32, start); });
  ForPairs(
      taps, TAP_PAIR(i) {
        const auto tap = TapPair(d32, taps.Pair(i));
        Repeat<N>(EACH(v) {
          sum[v].lo = AddPairProducts(d32, sum[v].lo, LoadSigned(d, s + i + v * lanes), tap);
          sum[v].hi = AddPairProducts(d32, sum[v].hi, LoadSigned(d, s + i + 1 + v * lanes), tap);
        });
      });
  if (taps.Count() & 1) {
    const auto even = TapPair(d32, taps.Last()), odd = TapPair(d32, (int32_t)((uint32_t)taps.Last() << 16));
    Repeat<N>(EACH(v) {
      const auto last = LoadSigned(d, s + (taps.Count() - 1) + v * lanes);
      sum[v].lo = AddPairProducts(d32, sum[v].lo, last, even);
      sum[v].hi = AddPairProducts(d32, sum[v].hi, last, odd);
    });
  }
}

// What is made of a sum before it is narrowed with saturation to 16 bits. A product with the scale is bounded from
// above only: below the range of 32 bits the conversion gives -2^31, which saturates as it should.

// Divisor 1: rounding through float would change nothing.
struct Unscaled {
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D, hn::VFromD<D> sum) const {
    return sum;
  }
};

struct ScaledToNearest {
  float scale;
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D d, hn::VFromD<D> sum) const {
    const hn::Rebind<float, D> df;
    return Nearest(hn::Min(hn::Mul(ToFloat(d, sum), hn::Set(df, scale)), hn::Set(df, 32767.0f)));
  }
};

struct ScaledToZero {
  float scale;
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D d, hn::VFromD<D> sum) const {
    const hn::Rebind<float, D> df;
    return Truncate(hn::Min(hn::Mul(ToFloat(d, sum), hn::Set(df, scale)), hn::Set(df, 32767.0f)));
  }
};

// The low-accuracy families: (S * m) >> 14.
struct LowSaturated {
  int32_t multiplier;
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D d, hn::VFromD<D> sum) const {
    return hn::ShiftRight<14>(hn::Mul(sum, hn::Set(d, multiplier)));
  }
};
struct LowWrapped {
  int32_t multiplier;
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D d, hn::VFromD<D> sum) const {
    return hn::ShiftRight<16>(hn::ShiftLeft<2>(hn::Mul(sum, hn::Set(d, multiplier))));
  }
};
static inline int32_t lowMultiplier(int32_t divisor) { return (int16_t)(16384.0f / (float)divisor); }

// 16u: clamped to 0..65535, truncated, and moved to the range of signed 16 bits; FlipSign moves it back. `Signed` sums
// are below 2^31, others below 2^32: their halves are exact in float, so that their sum is rounded once.
template <bool Signed>
struct ScaledUnsigned {
  float scale;
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D d, hn::VFromD<D> sum) const {
    const hn::Rebind<float, D> df;
    const hn::RebindToUnsigned<D> du;
    auto value = ToFloat(d, sum);
    if constexpr (!Signed) {
      const auto high = hn::BitCast(d, hn::ShiftRight<16>(hn::BitCast(du, sum)));
      const auto low = hn::And(sum, hn::Set(d, 0xFFFF));
      value = hn::Add(hn::Mul(ToFloat(d, high), hn::Set(df, 65536.0f)), ToFloat(d, low));
    }
    const auto scaled = hn::Mul(value, hn::Set(df, scale));
    const auto clamped = hn::Min(hn::Max(scaled, hn::Zero(df)), hn::Set(df, 65535.0f));
    return hn::Sub(Truncate(clamped), hn::Set(d, 32768));
  }
};

template <class D16, class Finish>
HWY_INLINE Halves<D16> Finished(D16, Halves<D16> sums, const Finish& finish) {
  const Wide<D16> d32;
  sums.lo = finish(d32, sums.lo);
  if constexpr (kTwoHalves<D16>) sums.hi = finish(d32, sums.hi);
  return sums;
}

// Stores narrowed results; those of 16u by the distance from 32768.
template <class D16, class T>
HWY_INLINE void StoreResult(D16 d, hn::VFromD<D16> v, T* p) {
  StoreSaturated(d, v, p);
}
template <class D16>
HWY_INLINE void StoreResult(D16 d, hn::VFromD<D16> v, uint16_t* p) {
  hn::StoreU(hn::Xor(v, hn::Set(d, INT16_MIN)), d, (int16_t*)(void*)p);
}

// The range of the sums of a 16u kernel decides on its arithmetic. Taps above 32767 have no signed form.
enum class Range16u { kSigned, kUnsigned, kWide };
static inline Range16u rangeOf(const uint16_t* taps, int32_t size, uint32_t* tapSum) {
  uint64_t sum = 0;
  uint16_t all = 0;
  const auto* tap = (const LooseElement<uint16_t>*)taps;
  for (ptrdiff_t i = 0; i < size; ++i) sum += tap[i], all |= tap[i];
  *tapSum = (uint32_t)sum;
  if (all > 32767 || sum > 65537) return Range16u::kWide;
  return sum > 32768 ? Range16u::kUnsigned : Range16u::kSigned;
}
// What the distances from 32768 miss.
static inline int32_t start16u(uint32_t tapSum) { return (int32_t)(tapSum * 32768u); }

// 16u sums of any size for Count columns. Sums of doubles are exact below 2^53; above, the result is clamped in any
// case. row(i) points to the elements that tap i multiplies.
template <int Count, class Row>
HWY_INLINE void WideSums(const uint16_t* taps, int32_t size, float scale, const Row& row, uint16_t* dst) {
  const auto* tap = (const LooseElement<uint16_t>*)taps;
  auto* out = (LooseElement<uint16_t>*)dst;
  double sum[Count] = {};
  for (int32_t i = 0; i < size; ++i) {
    const auto* s = (const LooseElement<uint16_t>*)row(i);
    const double k = tap[i];
    for (int x = 0; x < Count; ++x) sum[x] += k * (double)(int32_t)s[x];
  }
  for (int x = 0; x < Count; ++x) {
    float value = (float)sum[x] * scale;
    value = value > 0.0f ? value : 0.0f;
    value = value < 65535.0f ? value : 65535.0f;
    out[x] = (uint16_t)(int32_t)value;
  }
}

KERNELS_END
#endif

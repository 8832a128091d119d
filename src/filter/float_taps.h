// Float taps (include after core/kernels.h; read once a width).
#if defined(ORV_FLOAT_TAPS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_FLOAT_TAPS_TOGGLE
#undef ORV_FLOAT_TAPS_TOGGLE
#else
#define ORV_FLOAT_TAPS_TOGGLE
#endif
KERNELS_BEGIN

// A kernel of Size taps, kept in registers: stores of results could change the caller's taps as far as the compiler
// knows. Size 0: any number of taps, read where they are, at any address.
template <int Size>
struct FloatTaps {
  float copy[Size];
  HWY_INLINE FloatTaps(const float* taps, int32_t) { memcpy(copy, (const void*)taps, sizeof copy); }
  HWY_INLINE int32_t Count() const { return Size; }
  HWY_INLINE float operator[](ptrdiff_t i) const { return copy[i]; }
};
template <>
struct FloatTaps<0> {
  const LooseElement<float>* taps;
  int32_t size;
  HWY_INLINE FloatTaps(const float* memory, int32_t count) : taps((const LooseElement<float>*)memory), size(count) {}
  HWY_INLINE int32_t Count() const { return size; }
  HWY_INLINE float operator[](ptrdiff_t i) const { return taps[i]; }
};

// body(i) for the second to the last tap.
template <int I, int Size, class Body>
HWY_INLINE void UnrolledTaps(const Body& body) {
  if constexpr (I < Size) body((ptrdiff_t)I), UnrolledTaps<I + 1, Size>(body);
}
template <int Size, class Body>
HWY_INLINE void ForLaterTaps(const FloatTaps<Size>& taps, const Body& body) {
  if constexpr (Size > 0) UnrolledTaps<1, Size>(body);
  else
    for (ptrdiff_t i = 1; i < taps.size; ++i) body(i);
}

// N vectors of columns that lie side by side, summed in rising order; pixels(i, v) is what tap i multiplies in vector
// v.
template <class D, int N, int Size, class Pixels>
HWY_INLINE void RisingSums(D d, hn::VFromD<D> (&sum)[N], const FloatTaps<Size>& taps, const Pixels& pixels) {
  const auto first = hn::Set(d, taps[0]);
  Repeat<N>(EACH(v) { sum[v] = hn::Mul(first, pixels((ptrdiff_t)0, v)); });
  ForLaterTaps(
      taps, EACH(i) {
        const auto tap = hn::Set(d, taps[i]);
        Repeat<N>(EACH(v) { sum[v] = hn::Add(sum[v], hn::Mul(tap, pixels(i, v))); });
      });
}

KERNELS_END
#endif

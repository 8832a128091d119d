// Scans of a row for runs of pixels, for the kernels of flood fills (include after core/kernels.h; read once a width).
//
// A scan is given two forms of one test: bits(x), a mask of the kBlock pixels from x on, and one(x). Blocks lie in
// [first, width): where the last one would leave it, it is moved back and the pixels already seen are shifted out, so
// no pixel beyond is read and rows of at least a block need no single tests.
#if defined(ORV_FLOOD_RUNS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_FLOOD_RUNS_TOGGLE
#undef ORV_FLOOD_RUNS_TOGGLE
#else
#define ORV_FLOOD_RUNS_TOGGLE
#endif
KERNELS_BEGIN

// The vectors that a block of pixels is held in: one for each channel.
template <class T, int C>
using FloodTag = hn::Simd<T, (C == 1 ? HWY_MAX_BYTES : 16) / sizeof(T), 0>;
template <class T, int C>
constexpr ptrdiff_t kBlock = (ptrdiff_t)hn::MaxLanes(FloodTag<T, C>());
// All bits of a block.
template <ptrdiff_t N>
constexpr uint64_t kAll = ~(uint64_t)0 >> (64 - N);

template <class D, class M>
HWY_INLINE uint64_t MaskBits(D d, M mask) {
  uint64_t bits = 0;
  hn::StoreMaskBits(d, mask, (uint8_t*)&bits);
  return bits;
}

// The kBlock pixels from p on, channel by channel.
template <class T, int C>
struct Pixels {
  hn::VFromD<FloodTag<T, C>> v[C];
  HWY_INLINE explicit Pixels(const T* p) {
    const FloodTag<T, C> d;
    if constexpr (C == 1) v[0] = hn::LoadU(d, p);
    else hn::LoadInterleaved3(d, p, v[0], v[1], v[2]);
  }
};

// The first column of [x, end) that passes; `end` if none does.
template <ptrdiff_t N, class Bits, class One>
HWY_INLINE ptrdiff_t FirstColumn(ptrdiff_t x, ptrdiff_t end, ptrdiff_t first, ptrdiff_t width, const Bits& bits,
                                 const One& one) {
  for (; x + N <= width && x < end; x += N)
    if (const uint64_t found = bits(x)) {
      x += __builtin_ctzll(found);
      return x < end ? x : end;
    }
  if (x >= end) return end;
  if (const ptrdiff_t last = width - N; last >= first) {
    const uint64_t found = bits(last) >> (x - last);
    if (found == 0) return end;
    x += __builtin_ctzll(found);
    return x < end ? x : end;
  }
  while (x < end && !one(x)) ++x;
  return x;
}

// The last column of [first, x] that passes; first - 1 if none does.
template <ptrdiff_t N, class Bits, class One>
HWY_INLINE ptrdiff_t LastColumn(ptrdiff_t x, ptrdiff_t first, ptrdiff_t width, const Bits& bits, const One& one) {
  for (; x + 1 - N >= first; x -= N)
    if (const uint64_t found = bits(x + 1 - N) << (64 - N)) return x - __builtin_clzll(found);
  if (x < first) return first - 1;
  if (first + N <= width) {
    const uint64_t found = bits(first) << (63 - (x - first));
    return found == 0 ? first - 1 : x - __builtin_clzll(found);
  }
  while (x >= first && !one(x)) --x;
  return x;
}

// Sets `count` elements from p on.
template <class T, size_t Lanes>
HWY_INLINE void SetElements(T* p, ptrdiff_t count, T value) {
  constexpr ptrdiff_t lanes = (ptrdiff_t)Lanes;
  if constexpr (lanes > 1) {
    if (count < lanes) return SetElements<T, Lanes / 2>(p, count, value);
    const hn::Simd<T, Lanes, 0> d;
    const auto v = hn::Set(d, value);
    for (ptrdiff_t i = 0; i < count - lanes; i += lanes) hn::StoreU(v, d, p + i);
    hn::StoreU(v, d, p + count - lanes);
  } else {
    if (count > 0) *loose(p) = value;
  }
}

// Writes the value into columns left to right.
template <class T, int C>
HWY_INLINE void SetPixels(T* row, ptrdiff_t left, ptrdiff_t right, const T* value) {
  if constexpr (C == 1) return SetElements<T, HWY_MAX_BYTES / sizeof(T)>(row + left, right - left + 1, value[0]);
  constexpr ptrdiff_t lanes = 16 / sizeof(T);
  const hn::Simd<T, lanes, 0> d;
  Loose<T>* const p = loose(row);
  ptrdiff_t x = left;
  if constexpr (C == 3) {
    if (right - left + 1 >= lanes) {
      HWY_ALIGN T pattern[3 * lanes];
      for (ptrdiff_t i = 0; i < 3 * lanes; ++i) pattern[i] = value[i % 3];
      const auto a = hn::Load(d, pattern), b = hn::Load(d, pattern + lanes), c = hn::Load(d, pattern + 2 * lanes);
      for (; x + lanes <= right + 1; x += lanes) {
        hn::StoreU(a, d, row + 3 * x);
        hn::StoreU(b, d, row + 3 * x + lanes);
        hn::StoreU(c, d, row + 3 * x + 2 * lanes);
      }
    }
    for (; x <= right; ++x)
      for (ptrdiff_t k = 0; k < 3; ++k) p[3 * x + k] = value[k];
  }
}

KERNELS_END
#endif

// Row stage of 32f. The order of the additions is part of the contract: rising, but symmetric kernels of 3 and 5 taps
// add the two pixels of a tap first.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/row_stage_32f.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"

KERNELS_BEGIN

// Forms of the window sum; k(i) is tap i and s(i) the vector that it multiplies.
struct Rising {
  template <class K, class S>
  HWY_INLINE auto operator()(int32_t size, const K& k, const S& s) const {
    auto sum = hn::Mul(k(0), s(0));
    for (int32_t i = 1; i < size; ++i) sum = hn::Add(sum, hn::Mul(k(i), s(i)));
    return sum;
  }
};
struct Rising3 {
  template <class K, class S>
  HWY_INLINE auto operator()(int32_t, const K& k, const S& s) const {
    return hn::Add(hn::Add(hn::Mul(k(0), s(0)), hn::Mul(k(1), s(1))), hn::Mul(k(2), s(2)));
  }
};
struct Rising5 {
  template <class K, class S>
  HWY_INLINE auto operator()(int32_t, const K& k, const S& s) const {
    return hn::Add(hn::Add(Rising3()(3, k, s), hn::Mul(k(3), s(3))), hn::Mul(k(4), s(4)));
  }
};
struct Symmetric3 {
  template <class K, class S>
  HWY_INLINE auto operator()(int32_t, const K& k, const S& s) const {
    return hn::Add(hn::Mul(k(0), hn::Add(s(0), s(2))), hn::Mul(k(1), s(1)));
  }
};
struct Symmetric5 {
  template <class K, class S>
  HWY_INLINE auto operator()(int32_t, const K& k, const S& s) const {
    const auto outer = hn::Mul(k(0), hn::Add(s(0), s(4))), inner = hn::Mul(k(1), hn::Add(s(1), s(3)));
    return hn::Add(hn::Add(outer, inner), hn::Mul(k(2), s(2)));
  }
};

template <int C, int Size, class Form>
HWY_INLINE void RowsOf(Plane<const float> src, float* const* dst, int32_t width, int32_t rows,
                       const RowFilter<float, float>& f, void* strip, const Form& form) {
  const auto* taps = (const LooseElement<float>*)f.taps;
  // Stores could change the caller's taps as far as the compiler knows; these it keeps in registers.
  float copy[Size + 1];
  for (int i = 0; i < Size; ++i) copy[i] = taps[i];
  const auto vector = ROW_VECTOR(d, s, out) {
    const auto k = [&](ptrdiff_t i) __attribute__((always_inline)) {
      return hn::Set(d, Size > 0 ? copy[i] : (float)taps[i]);
    };
    const auto pixels = [&](ptrdiff_t i) __attribute__((always_inline)) { return hn::LoadU(d, s + i * C); };
    hn::StoreU(form(f.size, k, pixels), d, out);
  };
  FilterRows<float, C>(src, dst, width, rows, f, strip, vector, vector);
}

template <int C>
HWY_INLINE void RowsByForm(Plane<const float> src, float* const* dst, int32_t width, int32_t rows,
                           const RowFilter<float, float>& f, void* strip) {
  const auto* k = (const LooseElement<float>*)f.taps;
  const bool ends = k[0] == k[f.size - 1];
  if (f.size == 3) {
    if (ends) return RowsOf<C, 3>(src, dst, width, rows, f, strip, Symmetric3());
    return RowsOf<C, 3>(src, dst, width, rows, f, strip, Rising3());
  }
  if (f.size == 5) {
    if (ends && k[1] == k[3]) return RowsOf<C, 5>(src, dst, width, rows, f, strip, Symmetric5());
    return RowsOf<C, 5>(src, dst, width, rows, f, strip, Rising5());
  }
  RowsOf<C, 0>(src, dst, width, rows, f, strip, Rising());
}

void FloatRows(Plane<const float> src, float* const* dst, int32_t width, int32_t rows, const RowFilter<float, float>& f,
               void* strip) {
  if (f.channels == 3) RowsByForm<3>(src, dst, width, rows, f, strip);
  else RowsByForm<1>(src, dst, width, rows, f, strip);
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

void RowStage_32f(Plane<const float> src, float* const* dst, int32_t width, int32_t rows,
                  const RowFilter<float, float>& filter, void* strip) {
  WIDEST(FloatRows)(src, dst, width, rows, filter, strip);
}

}  // namespace ORV_VARIANT
#endif

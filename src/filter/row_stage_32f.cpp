// Row stage of 32f. The order of the additions is part of the contract: rising, but symmetric kernels of 3 and 5 taps
// add the two pixels of a tap first.
#include <string.h>
#include <type_traits>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/row_stage_32f.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/float_taps.h"
#include "filter/row_strip.h"

KERNELS_BEGIN

// Forms of the window sum of N vectors of outputs; pixels(i, v) is what tap i multiplies in vector v.
struct Rising {
  template <class D, int N, int Size, class Window>
  HWY_INLINE void operator()(D d, hn::VFromD<D> (&sum)[N], const FloatTaps<Size>& k, const Window& pixels) const {
    RisingSums(d, sum, k, pixels);
  }
};
struct Symmetric3 {
  template <class D, int N, class Window>
  HWY_INLINE void operator()(D d, hn::VFromD<D> (&sum)[N], const FloatTaps<3>& k, const Window& pixels) const {
    Repeat<N>(EACH(v) {
      const auto s = EACH(i) { return pixels(i, v); };
      sum[v] = hn::Add(hn::Mul(hn::Set(d, k[0]), hn::Add(s(0), s(2))), hn::Mul(hn::Set(d, k[1]), s(1)));
    });
  }
};
struct Symmetric5 {
  template <class D, int N, class Window>
  HWY_INLINE void operator()(D d, hn::VFromD<D> (&sum)[N], const FloatTaps<5>& k, const Window& pixels) const {
    Repeat<N>(EACH(v) {
      const auto s = EACH(i) { return pixels(i, v); };
      const auto outer = hn::Mul(hn::Set(d, k[0]), hn::Add(s(0), s(4)));
      const auto inner = hn::Mul(hn::Set(d, k[1]), hn::Add(s(1), s(3)));
      sum[v] = hn::Add(hn::Add(outer, inner), hn::Mul(hn::Set(d, k[2]), s(2)));
    });
  }
};

// Pixels of N vectors of windows that begin at s, for a kernel of Size taps, or of any size.
template <int N, int C, class D>
struct MovedPixels {
  const float* s;

  HWY_INLINE auto operator()(ptrdiff_t i, ptrdiff_t v) const {
    return hn::LoadU(D(), s + i * C + v * (ptrdiff_t)hn::MaxLanes(D()));
  }
};
#if HWY_TARGET <= HWY_AVX3
// Nearly every load of 64 bytes at a moved address touches two cache lines and takes twice as long. For small kernels
// each vector is loaded once, and the windows are cut out of neighbours. The last load is masked: nothing behind the
// row is read.
//
// The lane numbers come from a table: the vector header's own counting stays a call where its tuning isn't the
// kernel's.
alignas(64) constexpr int32_t counting[32] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                                              16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31};
template <int N, int C, int Size>
struct CutPixels {
  hn::Vec512<float> part[N + 1];

  HWY_INLINE explicit CutPixels(const float* s) {
    constexpr int behind = (Size - 1) * C;
    static_assert(behind <= 16, "the windows reach into one more vector");
    Repeat<N>(EACH(v) { part[v].raw = _mm512_loadu_ps(s + 16 * v); });
    part[N].raw = _mm512_maskz_loadu_ps((__mmask16)((1 << behind) - 1), s + 16 * N);
  }
  HWY_INLINE hn::Vec512<float> operator()(ptrdiff_t i, ptrdiff_t v) const {
    if (i == 0) return part[v];
    const __m512i lanes = _mm512_loadu_si512(counting + i * C);
    return hn::Vec512<float>{_mm512_permutex2var_ps(part[v].raw, lanes, part[v + 1].raw)};
  }
};
template <int N, int C, int Size, class D>
using Pixels = std::conditional_t<(N > 1 && Size > 0), CutPixels<N, C, Size>, MovedPixels<N, C, D>>;
#else
template <int N, int C, int Size, class D>
using Pixels = MovedPixels<N, C, D>;
#endif

// The taps and the order of their sum, as FilterRows() takes them.
template <int C, int Size, class Form>
struct FloatRow {
  FloatTaps<Size> taps;
  Form form;

  template <int N, class D>
  HWY_INLINE void operator()(Count<N>, D d, const float* s, float* out) const {
    constexpr ptrdiff_t lanes = hn::MaxLanes(d);
    hn::VFromD<D> sum[N];
    form(d, sum, taps, Pixels<N, C, Size, D>{s});
    Repeat<N>(EACH(v) { hn::StoreU(sum[v], d, out + v * lanes); });
  }
};

template <int C, int Size, class Form>
HWY_INLINE void RowsOf(Plane<const float> src, float* const* dst, int32_t width, int32_t rows,
                       const RowFilter<float, float>& f, void* strip, const Form& form) {
  const FloatRow<C, Size, Form> ends{{f.taps, f.size}, form}, middle = ends;
  FilterRows<float, 4, C>(src, dst, width, rows, f, strip, ends, middle);
}

template <int C>
HWY_INLINE void RowsByForm(Plane<const float> src, float* const* dst, int32_t width, int32_t rows,
                           const RowFilter<float, float>& f, void* strip) {
  const auto* k = (const LooseElement<float>*)f.taps;
  const bool ends = k[0] == k[f.size - 1];
  if (f.size == 3) {
    if (ends) return RowsOf<C, 3>(src, dst, width, rows, f, strip, Symmetric3());
    return RowsOf<C, 3>(src, dst, width, rows, f, strip, Rising());
  }
  if (f.size == 5) {
    if (ends && k[1] == k[3]) return RowsOf<C, 5>(src, dst, width, rows, f, strip, Symmetric5());
    return RowsOf<C, 5>(src, dst, width, rows, f, strip, Rising());
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

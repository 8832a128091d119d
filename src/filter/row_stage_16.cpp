// Row stages with 16-bit taps: sums in 32 bits by pairs of products.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/row_stage_16.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/pair_taps.h"
#include "filter/row_strip.h"

KERNELS_BEGIN

// N vectors of outputs whose windows begin at s.
template <int N, int C, int Size, class D16, class Pixel, class Dst, class Finish>
HWY_INLINE void RowVectors(D16 d, const PairTaps<Size>& taps, int32_t start, const Pixel* s, Dst* out,
                           const Finish& finish) {
  constexpr bool alternating = C == 1 && kTwoHalves<D16>;
  Halves<D16> sums[N];
  if constexpr (alternating) AlternatingSums(d, sums, taps, start, s);
  else
    InterleavedSums(
        d, sums, taps, start, EACH(i) { return s + i * C; });
  Repeat<N>(EACH(v) {
    const auto results = Finished(d, sums[v], finish);
    Dst* const to = out + v * (ptrdiff_t)hn::MaxLanes(d);
    if constexpr (alternating) StoreResult(d, NarrowAlternating(d, results), to);
    else StoreResult(d, NarrowSaturated(d, results), to);
  });
}

// The taps and what is made of their sums, as FilterRows() takes them.
template <int C, int Size, class Finish>
struct PairRow {
  PairTaps<Size> taps;
  int32_t start;
  Finish finish;

  template <int N, class D16, class Pixel, class Dst>
  HWY_INLINE void operator()(Count<N>, D16 d, const Pixel* s, Dst* out) const {
    RowVectors<N, C>(d, taps, start, s, out, finish);
  }
};

// Kernels of any size share their taps among two vectors.
template <int C, int Size, class Pixel, class Tap, class Dst, class Edge, class Interior>
HWY_INLINE void RowsOf(Plane<const Pixel> src, Dst* const* dst, int32_t width, int32_t rows,
                       const RowFilter<Pixel, Tap>& f, void* strip, int32_t start, Edge edge, Interior interior) {
  const PairRow<C, 0, Edge> ends{{f.taps, f.size}, start, edge};
  const PairRow<C, Size, Interior> middle{{f.taps, f.size}, start, interior};
  FilterRows<int16_t, (Size > 0 ? 1 : 2), C>(src, dst, width, rows, f, strip, ends, middle);
}

template <class Pixel, class Tap, class Dst, class Edge, class Interior>
HWY_INLINE void Rows(Plane<const Pixel> src, Dst* const* dst, int32_t width, int32_t rows,
                     const RowFilter<Pixel, Tap>& f, void* strip, int32_t start, Edge edge, Interior interior) {
  if (f.channels == 3) return RowsOf<3, 0>(src, dst, width, rows, f, strip, start, edge, interior);
  if (f.size == 3) return RowsOf<1, 3>(src, dst, width, rows, f, strip, start, edge, interior);
  if (f.size == 5) return RowsOf<1, 5>(src, dst, width, rows, f, strip, start, edge, interior);
  RowsOf<1, 0>(src, dst, width, rows, f, strip, start, edge, interior);
}

template <class Pixel>
void SignedRows(Plane<const Pixel> src, int16_t* const* dst, int32_t width, int32_t rows,
                const RowFilter<Pixel, int16_t>& f, void* strip) {
  if (f.divisor == 1) return Rows(src, dst, width, rows, f, strip, 0, Unscaled(), Unscaled());
  const float scale = 1.0f / (float)f.divisor;
  Rows(src, dst, width, rows, f, strip, 0, ScaledToZero{scale}, ScaledToNearest{scale});
}

void LowRows(Plane<const int16_t> src, int16_t* const* dst, int32_t width, int32_t rows,
             const RowFilter<int16_t, int16_t>& f, void* strip) {
  const int32_t m = lowMultiplier(f.divisor);
  Rows(src, dst, width, rows, f, strip, 0, LowWrapped{m}, LowSaturated{m});
}

template <int C>
struct WideRow {
  const uint16_t* taps;
  int32_t size;
  float scale;

  template <class D16>
  HWY_INLINE void operator()(Count<1>, D16 d, const uint16_t* s, uint16_t* out) const {
    WideSums<hn::MaxLanes(d)>(
        taps, size, scale, EACH(i) { return s + i * C; }, out);
  }
};

template <int C>
HWY_INLINE void WideRows(Plane<const uint16_t> src, uint16_t* const* dst, int32_t width, int32_t rows,
                         const RowFilter<uint16_t, uint16_t>& f, void* strip, float scale) {
  const WideRow<C> row{f.taps, f.size, scale};
  FilterRows<int16_t, 1, C>(src, dst, width, rows, f, strip, row, row);
}

void UnsignedRows(Plane<const uint16_t> src, uint16_t* const* dst, int32_t width, int32_t rows,
                  const RowFilter<uint16_t, uint16_t>& f, void* strip) {
  const float scale = 1.0f / (float)f.divisor;
  uint32_t tapSum;
  switch (rangeOf(f.taps, f.size, &tapSum)) {
    case Range16u::kSigned: {
      const ScaledUnsigned<true> finish{scale};
      return Rows(src, dst, width, rows, f, strip, start16u(tapSum), finish, finish);
    }
    case Range16u::kUnsigned: {
      const ScaledUnsigned<false> finish{scale};
      return Rows(src, dst, width, rows, f, strip, start16u(tapSum), finish, finish);
    }
    case Range16u::kWide:
      if (f.channels == 3) WideRows<3>(src, dst, width, rows, f, strip, scale);
      else WideRows<1>(src, dst, width, rows, f, strip, scale);
  }
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

void RowStage_8u16s(Plane<const uint8_t> src, int16_t* const* dst, int32_t width, int32_t rows,
                    const RowFilter<uint8_t, int16_t>& filter, void* strip) {
  WIDEST(SignedRows<uint8_t>)(src, dst, width, rows, filter, strip);
}
void RowStage_16s(Plane<const int16_t> src, int16_t* const* dst, int32_t width, int32_t rows,
                  const RowFilter<int16_t, int16_t>& filter, void* strip) {
  WIDEST(SignedRows<int16_t>)(src, dst, width, rows, filter, strip);
}
void RowStage_Low_16s(Plane<const int16_t> src, int16_t* const* dst, int32_t width, int32_t rows,
                      const RowFilter<int16_t, int16_t>& filter, void* strip) {
  WIDEST(LowRows)(src, dst, width, rows, filter, strip);
}
void RowStage_16u(Plane<const uint16_t> src, uint16_t* const* dst, int32_t width, int32_t rows,
                  const RowFilter<uint16_t, uint16_t>& filter, void* strip) {
  WIDEST(UnsignedRows)(src, dst, width, rows, filter, strip);
}

}  // namespace ORV_VARIANT
#endif

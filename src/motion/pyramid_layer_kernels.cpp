// The arithmetic of a layer step down.
//
// Bytes: sums of 32 bits by pairs of products, narrowed to 16 bits with saturation. 16 bits: sums of 32 bits, which
// wrap, from pixels added in pairs around the centre; floats in the same order.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/pyramid_layer_kernels.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/pair_taps.h"
#include "motion/pyramid_layer_kernels.h"

KERNELS_BEGIN

template <int Bits>
struct Shifted {
  template <class D>
  HWY_INLINE hn::VFromD<D> operator()(D, hn::VFromD<D> sum) const {
    return hn::ShiftRight<Bits>(sum);
  }
};

// (start + sum of taps[i] * row(i)[x]) >> Bits for 0 <= x < n.
template <int Size, int Bits, class T, class Row>
HWY_INLINE void SumPairs(const LayerTaps& t, int32_t start, T* out, ptrdiff_t n, const Row& row) {
  const PairTaps<Size> taps(t.taps, t.size);
  ForLanes<int16_t>(
      n, VECTOR(d, x) {
        Halves<decltype(d)> sums[1];
        InterleavedSums(
            d, sums, taps, start, EACH(i) { return row(i) + x; });
        StoreSaturated(d, NarrowSaturated(d, Finished(d, sums[0], Shifted<Bits>())), out + x);
      });
}

void RowBytes(const uint8_t* strip, int16_t* out, ptrdiff_t n, const LayerTaps& taps) {
  const auto row = EACH(i) { return strip + i * taps.channels; };
  if (taps.size == 5) SumPairs<5, 8>(taps, 0, out, n, row);
  else SumPairs<0, 8>(taps, 0, out, n, row);
}
void ColumnBytes(const int16_t* const* rows, int16_t* out, ptrdiff_t n, const LayerTaps& taps) {
  const auto row = EACH(i) { return rows[i]; };
  if (taps.size == 5) SumPairs<5, 15>(taps, 1 << 14, out, n, row);
  else SumPairs<0, 15>(taps, 1 << 14, out, n, row);
}
// Rounded by three quarters, which makes up for the rows' truncation.
void FinishedColumnBytes(const int16_t* const* rows, uint8_t* dst, ptrdiff_t n, const LayerTaps& taps) {
  SumPairs<5, 18>(
      taps, 3 << 16, dst, n, EACH(i) { return rows[i]; });
}

// Elements as lanes of R.
template <class D>
HWY_INLINE hn::VFromD<D> LoadWide(D d, const hn::TFromD<D>* p) {
  return hn::LoadU(d, p);
}
template <class D>
HWY_INLINE hn::VFromD<D> LoadWide(D d, const uint16_t* p) {
  return hn::PromoteTo(d, hn::LoadU(hn::Rebind<uint16_t, D>(), p));
}

template <class Tap, class R, class Row>
HWY_INLINE void SumAroundCentre(const LayerTaps& t, R* out, ptrdiff_t n, const Row& row) {
  const auto* taps = (const Tap*)t.taps;
  const ptrdiff_t half = t.size / 2;
  ForLanes<R>(
      n, VECTOR(d, x) {
        auto sum = hn::Mul(hn::Set(d, (R)taps[half]), LoadWide(d, row(half) + x));
        for (ptrdiff_t i = 1; i <= half; ++i) {
          const auto pair = hn::Add(LoadWide(d, row(half - i) + x), LoadWide(d, row(half + i) + x));
          sum = hn::Add(sum, hn::Mul(hn::Set(d, (R)taps[half - i]), pair));
        }
        hn::StoreU(sum, d, out + x);
      });
}
// An arithmetic shift of each element, rounded by `round`.
HWY_INLINE void ShiftAll(int32_t* p, ptrdiff_t n, int32_t round, int bits) {
  Columns(
      0, n, PIXEL(x) { p[x] = (p[x] + round) >> bits; });
}

void RowWords(const uint16_t* strip, int32_t* out, ptrdiff_t n, const LayerTaps& taps) {
  SumAroundCentre<int16_t>(
      taps, out, n, EACH(i) { return strip + i * taps.channels; });
  ShiftAll(out, n, 0, 10);
}
void ColumnWords(const int32_t* const* rows, int32_t* out, ptrdiff_t n, const LayerTaps& taps) {
  SumAroundCentre<int16_t>(
      taps, out, n, EACH(i) { return rows[i]; });
  ShiftAll(out, n, 1 << 10, 11);
}
void RowFloats(const float* strip, float* out, ptrdiff_t n, const LayerTaps& taps) {
  SumAroundCentre<float>(
      taps, out, n, EACH(i) { return strip + i * taps.channels; });
}
void ColumnFloats(const float* const* rows, float* out, ptrdiff_t n, const LayerTaps& taps) {
  SumAroundCentre<float>(
      taps, out, n, EACH(i) { return rows[i]; });
}

// Whole numbers are rounded by half and truncated.
template <class R>
HWY_INLINE void Between(const R* a, const R* b, const float* f, R* out, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { out[x] = (R)(int32_t)(((float)b[x] * f[x] + 0.5f) + (float)a[x] * (1.f - f[x])); });
}
void BetweenBytes(const int16_t* a, const int16_t* b, const float* f, int16_t* out, ptrdiff_t n) {
  Between(a, b, f, out, n);
}
void BetweenWords(const int32_t* a, const int32_t* b, const float* f, int32_t* out, ptrdiff_t n) {
  Between(a, b, f, out, n);
}
void BetweenFloats(const float* a, const float* b, const float* f, float* out, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { out[x] = b[x] * f[x] + a[x] * (1.f - f[x]); });
}

// Interpolated, then a whole number's three fractional bits rounded away.
template <class T, class R>
HWY_INLINE void BlendRows(const R* a, const R* b, float f, T* dst, ptrdiff_t n) {
  auto* const out = (LooseElement<T>*)(void*)dst;
  const float rest = 1.f - f;
  constexpr int32_t most = (T)-1;
  const auto store = [=](ptrdiff_t x, int32_t v) __attribute__((always_inline)) {
    v = (v + 4) >> 3;
    v = v > 0 ? v : 0;
    out[x] = (T)(v < most ? v : most);
  };
  if (b == nullptr)
    Columns(
        0, n, PIXEL(x) { store(x, a[x]); });
  else
    Columns(
        0, n, PIXEL(x) { store(x, (int32_t)(((float)b[x] * f + 0.5f) + (float)a[x] * rest)); });
}
void BlendBytes(const int16_t* a, const int16_t* b, float f, uint8_t* dst, ptrdiff_t n) { BlendRows(a, b, f, dst, n); }
void BlendWords(const int32_t* a, const int32_t* b, float f, uint16_t* dst, ptrdiff_t n) { BlendRows(a, b, f, dst, n); }
void BlendFloats(const float* a, const float* b, float f, float* dst, ptrdiff_t n) {
  const float rest = 1.f - f;
  auto* const out = (LooseElement<float>*)(void*)dst;
  if (b == nullptr) memcpy(dst, a, (size_t)n * sizeof(float));
  else
    Columns(
        0, n, PIXEL(x) { out[x] = b[x] * f + a[x] * rest; });
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

LayerKernels<uint8_t, int16_t> layerKernels8u() {
  return {WIDEST(RowBytes), WIDEST(ColumnBytes), WIDEST(FinishedColumnBytes), WIDEST(BetweenBytes), WIDEST(BlendBytes)};
}
LayerKernels<uint16_t, int32_t> layerKernels16u() {
  return {WIDEST(RowWords), WIDEST(ColumnWords), nullptr, WIDEST(BetweenWords), WIDEST(BlendWords)};
}
LayerKernels<float, float> layerKernels32f() {
  return {WIDEST(RowFloats), WIDEST(ColumnFloats), nullptr, WIDEST(BetweenFloats), WIDEST(BlendFloats)};
}

}  // namespace ORV_VARIANT
#endif

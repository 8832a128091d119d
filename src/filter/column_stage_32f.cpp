// Column stage of 32f: products and sums in rising order.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/column_stage_32f.cpp"
#include "core/kernels.h"
#include "filter/column_stage.h"

KERNELS_BEGIN

// The vectors at x and, with Count 2 or 4, behind it: they share the taps and the row pointers.
template <int Count, class D>
HWY_INLINE void FloatColumns(D d, const LooseElement<float>* taps, int32_t size, const float* const* rows, ptrdiff_t x,
                             float* out) {
  constexpr ptrdiff_t lanes = hn::MaxLanes(d);
  hn::VFromD<D> sum[Count];
  const auto first = hn::Set(d, (float)taps[0]);
  for (int v = 0; v < Count; ++v) sum[v] = hn::Mul(first, hn::LoadU(d, rows[0] + x + v * lanes));
  for (int32_t j = 1; j < size; ++j) {
    const auto tap = hn::Set(d, (float)taps[j]);
    for (int v = 0; v < Count; ++v) sum[v] = hn::Add(sum[v], hn::Mul(tap, hn::LoadU(d, rows[j] + x + v * lanes)));
  }
  for (int v = 0; v < Count; ++v) hn::StoreU(sum[v], d, out + x + v * lanes);
}

void FloatRows(const float* const* rows, Plane<float> dst, int32_t width, int32_t height,
               const ColumnFilter<float>& f) {
  constexpr ptrdiff_t block = 4 * (HWY_MAX_BYTES / sizeof(float));
  const auto* taps = (const LooseElement<float>*)f.taps;
  const ptrdiff_t end = (ptrdiff_t)width * f.channels;
  for (int32_t y = 0; y < height; ++y, ++rows) {
    float* out = raw(dst.row(y));
    ptrdiff_t x = 0;
    for (; x + block <= end; x += block) FloatColumns<4>(hn::ScalableTag<float>(), taps, f.size, rows, x, out);
    Vectors<float>(
        x, end, VECTOR(d, i) { FloatColumns<1>(d, taps, f.size, rows, i, out); });
  }
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

void ColumnStage_32f(const float* const* rows, Plane<float> dst, int32_t width, int32_t height,
                     const ColumnFilter<float>& filter) {
  WIDEST(FloatRows)(rows, dst, width, height, filter);
}

}  // namespace ORV_VARIANT
#endif

// Column stage of 32f: products and sums in rising order.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/column_stage_32f.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/column_stage.h"
#include "filter/column_strips.h"
#include "filter/float_taps.h"

KERNELS_BEGIN

template <int N, int Size, class D>
HWY_INLINE void FloatColumns(Count<N>, D d, const FloatTaps<Size>& taps, const float* const* rows, ptrdiff_t x,
                             float* out) {
  constexpr ptrdiff_t lanes = hn::MaxLanes(d);
  hn::VFromD<D> sum[N];
  const auto pixels = [&](ptrdiff_t j, ptrdiff_t v) __attribute__((always_inline)) {
    return hn::LoadU(d, rows[j] + x + v * lanes);
  };
  RisingSums(d, sum, taps, pixels);
  Repeat<N>(EACH(v) { hn::StoreU(sum[v], d, out + x + v * lanes); });
}

template <int Size>
HWY_INLINE void FloatRows(const float* const* rows, Plane<float> dst, int32_t width, int32_t height,
                          const ColumnFilter<float>& f) {
  const FloatTaps<Size> taps(f.taps, f.size);
  const auto strip = STRIP(first, end) {
    for (int32_t y = 0; y < height; ++y) {
      const float* const* window = rows + y;
      float* const out = raw(dst.row(y));
      VectorGroups<float, 4>(
          first, end, VECTOR_GROUP(n, d, x) { FloatColumns(n, d, taps, window, x, out); });
    }
  };
  ForStrips((ptrdiff_t)width * f.channels, f.size, height, sizeof(float), strip);
}

void AnyFloatRows(const float* const* rows, Plane<float> dst, int32_t width, int32_t height,
                  const ColumnFilter<float>& f) {
  if (f.size == 3) FloatRows<3>(rows, dst, width, height, f);
  else if (f.size == 5) FloatRows<5>(rows, dst, width, height, f);
  else FloatRows<0>(rows, dst, width, height, f);
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

void ColumnStage_32f(const float* const* rows, Plane<float> dst, int32_t width, int32_t height,
                     const ColumnFilter<float>& filter) {
  WIDEST(AnyFloatRows)(rows, dst, width, height, filter);
}

}  // namespace ORV_VARIANT
#endif

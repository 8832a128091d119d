// Column stage of 16-bit unsigned rows: exact sums, by pairs of rows where 32 bits hold them.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/column_stage_16u.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/column_stage.h"
#include "filter/column_strips.h"
#include "filter/pair_taps.h"

KERNELS_BEGIN

template <int Size, class Finish>
HWY_INLINE void PairRows(const uint16_t* const* rows, Plane<uint16_t> dst, ptrdiff_t columns, int32_t height,
                         const ColumnFilter<uint16_t>& f, int32_t start, Finish finish) {
  const PairTaps<Size> taps(f.taps, f.size);
  const auto strip = STRIP(first, end) {
    for (int32_t y = 0; y < height; ++y) {
      const uint16_t* const* window = rows + y;
      uint16_t* const out = raw(dst.row(y));
      VectorGroups<int16_t, 2>(
          first, end, VECTOR_GROUP(n, d, x) {
            Halves<decltype(d)> sums[n.value];
            InterleavedSums(
                d, sums, taps, start, EACH(j) { return window[j] + x; });
            Repeat<n.value>(EACH(v) {
              const auto narrow = NarrowSaturated(d, Finished(d, sums[v], finish));
              StoreResult(d, narrow, out + x + v * (ptrdiff_t)hn::MaxLanes(d));
            });
          });
    }
  };
  ForStrips(columns, f.size, height, sizeof(uint16_t), strip);
}

template <class Finish>
HWY_INLINE void PairRows(const uint16_t* const* rows, Plane<uint16_t> dst, ptrdiff_t columns, int32_t height,
                         const ColumnFilter<uint16_t>& f, int32_t start, Finish finish) {
  if (f.size == 3) PairRows<3>(rows, dst, columns, height, f, start, finish);
  else if (f.size == 5) PairRows<5>(rows, dst, columns, height, f, start, finish);
  else PairRows<0>(rows, dst, columns, height, f, start, finish);
}

HWY_INLINE void WideRows(const uint16_t* const* rows, Plane<uint16_t> dst, ptrdiff_t columns, int32_t height,
                         const ColumnFilter<uint16_t>& f, float scale) {
  for (int32_t y = 0; y < height; ++y, ++rows) {
    uint16_t* out = raw(dst.row(y));
    Vectors<int16_t>(
        0, columns, VECTOR(d, x) {
          const auto row = [&](ptrdiff_t j) __attribute__((always_inline)) { return rows[j] + x; };
          WideSums<hn::MaxLanes(decltype(d)())>(f.taps, f.size, scale, row, out + x);
        });
  }
}

void UnsignedColumns(const uint16_t* const* rows, Plane<uint16_t> dst, int32_t width, int32_t height,
                     const ColumnFilter<uint16_t>& f) {
  const float scale = 1.0f / (float)f.divisor;
  const ptrdiff_t columns = (ptrdiff_t)width * f.channels;
  uint32_t tapSum;
  switch (rangeOf(f.taps, f.size, &tapSum)) {
    case Range16u::kSigned:
      return PairRows(rows, dst, columns, height, f, start16u(tapSum), ScaledUnsigned<true>{scale});
    case Range16u::kUnsigned:
      return PairRows(rows, dst, columns, height, f, start16u(tapSum), ScaledUnsigned<false>{scale});
    case Range16u::kWide:
      WideRows(rows, dst, columns, height, f, scale);
  }
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

void ColumnStage_16u(const uint16_t* const* rows, Plane<uint16_t> dst, int32_t width, int32_t height,
                     const ColumnFilter<uint16_t>& filter) {
  WIDEST(UnsignedColumns)(rows, dst, width, height, filter);
}

}  // namespace ORV_VARIANT
#endif

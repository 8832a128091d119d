// Column stage of separable filters, for drivers inside the library: no checks, no threads.
//
// Theory. `rows` points to height + size - 1 rows; destination row y is the correlation of rows y .. y + size - 1:
//
//   sum(j = 0 .. size-1) taps[j] * rows[y + j][x]
//
// Each column depends on itself alone, so pointers may repeat and a destination row may be one of the source rows.
// `width` counts pixels of `channels` elements. 16s sources round to nearest even in the first width & ~15 pixels of a
// row and truncate in the rest; this difference is meant.
#pragma once
#include "filter/names.h"
#include "core/image.h"

namespace ORV_VARIANT {

template <class Tap>
struct ColumnFilter {
  const Tap* taps;
  int32_t size;           // of the kernel, at least 1
  int32_t channels;       // 1 or 3
  int32_t divisor;        // not 0; unused for 32f
  float* scaledTaps;      // 16s, 16s8u, 16s8s: memory for `size` floats, at any address
  int32_t bound = 32768;  // 16s, 16s8u, 16s8s: the largest magnitude in the rows. A known bound saves time, no more
};

// Filters to `height` rows.
//   16s, 16s8u, 16s8s  first width & ~15 pixels: float sum of source * (taps[j] * (1.0f / divisor)) in rising order,
//                      nearest even, saturated. Rest: S in 32 bits, S * (1.0f / divisor) clamped and truncated
//   16u                exact sum, times 1.0f / divisor, clamped to 0..65535, truncated
//   32f                float sum in rising order
//   Low_16s            S and S * m wrap in 32 bits; (S * m) >> 14 with m = 16384 / divisor; saturated in the first
//                      width & ~15 pixels, wrapped in the rest
void ColumnStage_16s(const int16_t* const* rows, Plane<int16_t> dst, int32_t width, int32_t height,
                     const ColumnFilter<int16_t>& filter);
void ColumnStage_16s8u(const int16_t* const* rows, Plane<uint8_t> dst, int32_t width, int32_t height,
                       const ColumnFilter<int16_t>& filter);
void ColumnStage_16s8s(const int16_t* const* rows, Plane<int8_t> dst, int32_t width, int32_t height,
                       const ColumnFilter<int16_t>& filter);
void ColumnStage_Low_16s(const int16_t* const* rows, Plane<int16_t> dst, int32_t width, int32_t height,
                         const ColumnFilter<int16_t>& filter);
void ColumnStage_16u(const uint16_t* const* rows, Plane<uint16_t> dst, int32_t width, int32_t height,
                     const ColumnFilter<uint16_t>& filter);
void ColumnStage_32f(const float* const* rows, Plane<float> dst, int32_t width, int32_t height,
                     const ColumnFilter<float>& filter);

}  // namespace ORV_VARIANT

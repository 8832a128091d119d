// Row stage of separable filters, for drivers inside the library: no checks, no threads.
//
// Theory. Row y of the source is extended by its border and correlated with the taps; the result goes to dst[y]:
//
//   S = sum(i = 0 .. size-1) taps[i] * extended(x - anchor + i)          neighbours are of the same channel
//
// The first `anchor` and the last `size - 1 - anchor` outputs are computed from a strip that holds the ends of the row
// and their borders, all others in place from the row. Integer results of the strip are truncated, the others rounded
// to nearest even; this difference is meant.
//
// Limitations. A destination row doesn't overlap its source row. Each running stage needs a strip of its own.
#pragma once
#include "filter/names.h"
#include "core/image.h"

namespace ORV_VARIANT {

template <class Pixel, class Tap>
struct RowFilter {
  const Tap* taps;
  int32_t size;              // of the kernel, at least 1
  int32_t anchor;            // 0 .. size - 1
  int32_t channels;          // 1 or 3
  int32_t borderType;        // kinds 0 to 4 and 6, with flags for the left and right side
  const Pixel* borderValue;  // one element a channel; read for the constant kind only
  int32_t divisor;           // not 0; unused for 32f
};

// Bytes of the strip, wherever it starts: the ends and the borders, and what a vector may read behind them.
template <class Pixel>
static constexpr ptrdiff_t rowStripBytes(int32_t kernelSize, int32_t channels) {
  return 3 * (kernelSize - (ptrdiff_t)1) * channels * (ptrdiff_t)sizeof(Pixel) + 68;
}

// Filters `rows` rows of `width` pixels.
//   8u16s, 16s  S wraps in 32 bits; S * (1.0f / divisor), rounded, saturated to 16 bits
//   16u         S is exact for all taps; S * (1.0f / divisor) clamped to 0..65535 and truncated everywhere; divisor >=
//   1 32f         float sum in rising order; for symmetric kernels k0*(a+c) + k1*b and (k0*(a+e) + k1*(b+d)) + k2*c
//   Low_16s     S and S * m wrap in 32 bits; (S * m) >> 14 with m = 16384 / divisor; saturated in place, wrapped in the
//               strip
void RowStage_8u16s(Plane<const uint8_t> src, int16_t* const* dst, int32_t width, int32_t rows,
                    const RowFilter<uint8_t, int16_t>& filter, void* strip);
void RowStage_16s(Plane<const int16_t> src, int16_t* const* dst, int32_t width, int32_t rows,
                  const RowFilter<int16_t, int16_t>& filter, void* strip);
void RowStage_Low_16s(Plane<const int16_t> src, int16_t* const* dst, int32_t width, int32_t rows,
                      const RowFilter<int16_t, int16_t>& filter, void* strip);
void RowStage_16u(Plane<const uint16_t> src, uint16_t* const* dst, int32_t width, int32_t rows,
                  const RowFilter<uint16_t, uint16_t>& filter, void* strip);
void RowStage_32f(Plane<const float> src, float* const* dst, int32_t width, int32_t rows,
                  const RowFilter<float, float>& filter, void* strip);

}  // namespace ORV_VARIANT

// The arithmetic of a layer step down, for each element type T. Filtered rows hold elements of R: int16_t for bytes,
// int32_t for 16 bits, float for floats; fully filtered ones are 8 times the pixel, of floats the pixel itself.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "core/variant.h"

namespace ORV_VARIANT {

struct LayerTaps {
  const void* taps;  // int16_t, for floats float
  int32_t size;
  int32_t channels;
};

template <class T, class R>
struct LayerKernels {
  // out[x] from the elements strip[x], strip[x + channels] ... for 0 <= x < n.
  void (*row)(const T* strip, R* out, ptrdiff_t n, const LayerTaps& taps);
  // out[x] from taps.size rows.
  void (*column)(const R* const* rows, R* out, ptrdiff_t n, const LayerTaps& taps);
  // The same to the end, for decimated bytes and five taps; null for other types.
  void (*finishedColumn)(const R* const* rows, T* dst, ptrdiff_t n, const LayerTaps& taps);
  // out[x] between a[x] and b[x], f[x] of the way.
  void (*between)(const R* a, const R* b, const float* f, R* out, ptrdiff_t n);
  // Pixels between two rows, f of the way from a to b; of row a itself if b is null.
  void (*blend)(const R* a, const R* b, float f, T* dst, ptrdiff_t n);
};

LayerKernels<uint8_t, int16_t> layerKernels8u();
LayerKernels<uint16_t, int32_t> layerKernels16u();
LayerKernels<float, float> layerKernels32f();

}  // namespace ORV_VARIANT

// The passes of a layer step up over rows, for each element type T; sums are of type S, int32_t for bytes, else float.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "core/variant.h"

namespace ORV_VARIANT {

template <class T, class S>
struct SpreadKernels {
  // sums[x] += pixels[x] * weights[x]; bytes: rounded by round[x] and truncated.
  void (*addEach)(S* sums, const float* pixels, const float* weights, const float* round, ptrdiff_t n);
  // row[x] from sums[x] and what undoes the weights' sum.
  void (*divide)(const S* sums, const float* norms, S* row, ptrdiff_t n);
  // sums[x] += row[x] * weight, by whole numbers if the weight is a tap itself (bytes only).
  void (*add)(S* sums, const S* row, float weight, bool isTap, ptrdiff_t n);
  // dst[x] from sums[x] and what undoes the weights' sum.
  void (*finish)(const S* sums, float norm, T* dst, ptrdiff_t n);
};

SpreadKernels<uint8_t, int32_t> spreadKernels8u();
SpreadKernels<uint16_t, float> spreadKernels16u();
SpreadKernels<float, float> spreadKernels32f();

}  // namespace ORV_VARIANT

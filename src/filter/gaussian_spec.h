// The record of a prepared Gaussian filter, at any address.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include "filter/names.h"

namespace ORV_VARIANT {

enum : int32_t { gaussianHeaderSize = 20 };

static inline OrvFilterGaussianSpec readSpec(const OrvFilterGaussianSpec* spec) {
  OrvFilterGaussianSpec copy;
  memcpy(&copy, (const void*)spec, sizeof copy);
  return copy;
}

// The first 16-byte aligned address at or after the header's end.
template <class Tap>
static inline Tap* specTaps(const OrvFilterGaussianSpec* spec) {
  return (Tap*)(((uintptr_t)spec + gaussianHeaderSize + 15) & ~(uintptr_t)15);
}

static inline bool validGaussianSize(uint32_t kernelSize) { return kernelSize >= 3 && kernelSize % 2 == 1; }

// Any of the three kinds with any flags for sides in memory.
static inline bool validGaussianBorder(int32_t borderType) {
  const int32_t kind = borderType & ~0xF0;
  return kind == orvBorderConst || kind == orvBorderRepl || kind == orvBorderInMem;
}

}  // namespace ORV_VARIANT

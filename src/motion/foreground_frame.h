// What foreground models share: checks of a frame, memory, images of their own.
#pragma once
#include <string.h>
#include "core/checks.h"
#include "core/image.h"
#include "core/orvcore_contract.h"

namespace ORV_VARIANT {

// The tests of a frame after those of pointers. `most` is the size that a state has memory for.
static inline OrvStatus checkFrame(OrvSize roi, OrvSize most, int32_t srcStep, int32_t channels) {
  ORV_REQUIRE(validRoi(roi) && roi.width <= most.width && roi.height <= most.height, orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<uint8_t>(roi.width, channels), orvStatusStep);
  return orvStatusOk;
}

// Memory for `count` elements, or null. The core library can be asked for less than 2 GiB at a time.
template <class T>
static inline T* allocateArray(int64_t count) {
  if (count > INT32_MAX / (int64_t)sizeof(T)) return nullptr;
  return (T*)orvMalloc((int32_t)(count * (int64_t)sizeof(T)));
}

// An image that a state owns, its rows on cache lines.
static inline Plane<uint8_t> allocateImage(OrvSize roi, int32_t channels) {
  const int64_t step = ((int64_t)roi.width * channels + 63) & ~(int64_t)63;
  if (step > INT32_MAX) return {nullptr, 0};
  return {allocateArray<uint8_t>(step * roi.height), (int32_t)step};
}

static inline void copyImage(Plane<const uint8_t> from, Plane<uint8_t> to, OrvSize roi, int32_t channels) {
  const size_t bytes = (size_t)roi.width * (size_t)channels;
  for (ptrdiff_t y = 0; y < roi.height; ++y) memcpy(to.row(y), from.row(y), bytes);
}
// The same out of an image of a state.
static inline void copyImage(Plane<uint8_t> from, Plane<uint8_t> to, OrvSize roi, int32_t channels) {
  copyImage(Plane<const uint8_t>{from.data, from.step}, to, roi, channels);
}

}  // namespace ORV_VARIANT

// The states of the layer steps, and the checks that both directions share.
#pragma once
#include <stddef.h>
#include "core/checks.h"
#include "core/image.h"
#include "core/variant.h"
#include "motion/pyramid_size.h"

namespace ORV_VARIANT {

// What both directions keep. A state is one piece of memory: the record, the kernel, and what follows.
struct PyramidLayer {
  void* kernel;         // kerSize taps, normalised and symmetric: int16_t, for 32f float
  uint8_t* work;        // down only: scratch for one call
  OrvSize* levelSizes;  // down only: from maxRoi to 1x1; null unless both sides are larger than the kernel
  int32_t levelCount;   // steps in levelSizes
  int32_t kerSize;
  int32_t dataType;
  OrvSize maxRoi;
  int32_t mode;
  float rate;
  int32_t threads;  // down only: for which `work` has room
};

// Rates around 2 are plain decimation, with a rounding of its own for some; the bounds belong to the former only.
static inline bool halves(float rate) { return rate >= 1.99998f && rate <= 2.00002f; }
static inline bool halvesClosely(float rate) { return rate > 1.99998f && rate < 2.00002f; }

// The piece of memory that a state is carved from; a null one only counts, up to `limit`.
struct LayerMemory {
  uint8_t* next;
  int64_t bytes = 0;
  static constexpr int64_t limit = (int64_t)1 << 60;

  template <class T>
  T* take(int64_t count) {
    T* const piece = (T*)(void*)(next == nullptr ? nullptr : next + bytes);
    const auto size = (int64_t)sizeof(T);
    bytes += count < limit / size ? (count * size + 63) & ~(int64_t)63 : limit;
    if (bytes > limit) bytes = limit;
    return piece;
  }
};

template <class T>
static inline OrvStatus checkLayerImages(const T* src, int32_t srcStep, OrvSize srcRoi, const T* dst, int32_t dstStep,
                                         OrvSize dstRoi, const PyramidLayer* state, int32_t channels) {
  ORV_REQUIRE(allSet(src, dst, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(srcRoi), orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<T>(srcRoi.width, channels), orvStatusStep);
  ORV_REQUIRE(dstStep >= rowBytes<T>(dstRoi.width, channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(srcStep, dstStep), orvStatusStepAlign);
  ORV_REQUIRE(validRate(state->rate), orvStatusBadArg);
  return orvStatusOk;
}

// What one thread needs of `work`, in bytes, for regions of at most maxRoi.
int64_t layerBandBytes(OrvDataType type, int32_t channels, int32_t kerSize, OrvSize maxRoi);

}  // namespace ORV_VARIANT

// Two types for the caller's sake.
struct OrvPyramidDownState : PyramidLayer {};
struct OrvPyramidUpState : PyramidLayer {};

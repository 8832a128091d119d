// The classifier in memory: one block of the header, the features in the order of their evaluation, and all rectangles.
//
// The block may lie at any address, so its records are packed. V is the type of weights, thresholds and votes, int32_t
// or float, and the same size.
#pragma once
#include "detect/names.h"
#include "core/checks.h"

struct __attribute__((packed)) OrvHaarClassifier {
  int32_t featureCount;
  int32_t rectCount;
  void* features;
  OrvRect bound;     // of the rectangles as they are made
  int32_t tilted;    // bit 0: some features are
  int32_t count[3];  // see HaarCounts
  int32_t firstWeightMinusOne;
  int32_t unused;
};

namespace ORV_VARIANT {

template <class V>
struct __attribute__((packed)) HaarRect {
  OrvPoint corner[4];  // the sum is S(0) - S(1) - S(2) + S(3)
  V weight;
};

template <class V>
struct __attribute__((packed)) HaarFeature {
  int32_t numRects;
  int32_t unused;
  HaarRect<V>* rects;
  V threshold, valueBelow, valueAbove;
  int32_t tag;  // place in the input << 8, and bit 0 for a tilted feature
};

static_assert(sizeof(OrvHaarClassifier) == 56 && sizeof(HaarFeature<float>) == 32 && sizeof(HaarRect<float>) == 36,
              "sizes of the block");

// Places of the three counts: features with two rectangles, with two or three, and rectangles in all.
template <class V>
struct HaarCounts {
  static constexpr int two = 0, twoOrThree = 1, placed = 2;
};
template <>
struct HaarCounts<int32_t> {
  static constexpr int placed = 0, two = 1, twoOrThree = 2;
};

template <class V>
static inline HaarFeature<V>* featuresOf(const OrvHaarClassifier* state) {
  return (HaarFeature<V>*)state->features;
}

}  // namespace ORV_VARIANT

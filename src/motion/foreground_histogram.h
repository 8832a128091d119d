// The state of the histogram model: what each pixel has shown, and two images to compare a frame with.
//
//   pixels[i]   priors, ready flags
//     .shortList   25 values            [ w, back | v0 v1 v2 ]                     the largest weight first;
//     .longList    40 changes           [ w, back | previous..., current... ]      weight 0: none
//
// A weight is the share of the pixel's life in which it showed the value, and old values fade; `backWeight` is the same
// among the frames in which it was background. C1 values fill one byte, or two; what is left is always 0.
#pragma once
#include "motion/foreground_frame.h"

namespace ORV_VARIANT {

template <int Bytes>
struct HistogramEntry {
  float weight, backWeight;
  uint8_t value[Bytes];
};
using ShortEntry = HistogramEntry<3>;
using LongEntry = HistogramEntry<6>;
static_assert(sizeof(ShortEntry) == 12 && sizeof(LongEntry) == 16, "");

struct HistogramPixel {
  float shortPrior, longPrior;  // probability of background
  ShortEntry* shortList;
  LongEntry* longList;
  uint8_t shortReady, longReady;
};

}  // namespace ORV_VARIANT

// The numbers are fixed; the flags and `last` are used by nothing.
struct OrvForegroundHistogramState {
  Plane<uint8_t> reference, changeMask, referenceMask, previous;
  HistogramPixel* pixels;
  int32_t shortLevels, shortUsed, shortCapacity;  // `used`: entries from the first that count for a decision
  int32_t longLevels, longUsed, longCapacity;
  int32_t flags[2];
  float referenceRate, slowRate, fastRate, quantFactor, readyLevel, last;
  OrvSize roi;
  ShortEntry* shortLists;  // of all pixels
  LongEntry* longLists;
};

namespace ORV_VARIANT {

static inline HistogramPixel* pixelsOf(const OrvForegroundHistogramState& s, ptrdiff_t y) {
  return s.pixels + y * s.roi.width;
}

// By how much a byte of an entry may differ from a value: 4 in short lists, 8 in long ones.
static inline int32_t nearness(const OrvForegroundHistogramState& s, int32_t levels) {
  return (int32_t)(256 * s.quantFactor / (float)levels);
}

// Whether the first N bytes of an entry are near those of a value.
template <int N, class Entry>
static inline bool isNear(const Entry& entry, const uint8_t* value, int32_t limit) {
  for (int i = 0; i < N; ++i) {
    const int32_t d = entry.value[i] - value[i];
    if (d > limit || d < -limit) return false;
  }
  return true;
}

}  // namespace ORV_VARIANT

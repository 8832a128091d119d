// The state record of FastN, and the checks that its functions share.
#pragma once
#include <string.h>
#include "features/names.h"
#include "core/checks.h"
#include "features/fastn_ring.h"

namespace ORV_VARIANT {

enum : uint32_t { fastNId = 0x4B617390 };

// The record lies at the first multiple of 8 behind the caller's first byte, which holds the distance. Behind the
// record: sines and cosines of the ring's angles, with orvFastNOrientation, and behind the place for them the bins a
// radian; all floats.
struct FastNState {
  uint32_t id;
  OrvDataType dataType;
  int32_t channels;
  OrvSize image;
  int32_t radius, arc, bins, mode, reserved;
  float threshold;
  int32_t intThreshold;
  const RingPoint* ring;
};
static_assert(sizeof(FastNState) == 56, "with 8 bytes of alignment and one float, 68 bytes beside the tables");

// A copy of the record, so that it need not be aligned. What is no state has another id.
static inline FastNState readState(const uint8_t* state) {
  FastNState record = {};
  if (state[0] >= 1 && state[0] <= 8) memcpy(&record, state + state[0], sizeof record);
  return record;
}

static inline OrvStatus checkFastNType(OrvDataType dataType, int32_t channels) {
  ORV_REQUIRE(dataType == orvData8u, orvStatusDataType);
  ORV_REQUIRE(channels == 1, orvStatusChannels);
  return orvStatusOk;
}

static inline OrvStatus checkFastNMode(int32_t mode, int32_t bins) {
  constexpr int32_t all = orvFastNOrientation | orvFastNNms | orvFastNCorner | orvFastNScore;
  ORV_REQUIRE((mode & ~all) == 0 && (mode & orvFastNCorner), orvStatusBadArg);
  ORV_REQUIRE(!(mode & orvFastNNms) || (mode & orvFastNScore), orvStatusBadArg);
  ORV_REQUIRE(!(mode & orvFastNOrientation) || (bins >= 1 && bins <= 64), orvStatusOutOfRange);
  return orvStatusOk;
}

// An arc is longer than half of the ring, and shorter than the ring.
static inline OrvStatus checkFastNRing(int32_t radius, int32_t arc) {
  int32_t points = 0;
  ORV_REQUIRE(fastNRing(radius, &points), orvStatusBadArg);
  ORV_REQUIRE(arc > points / 2 && arc < points, orvStatusOutOfRange);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

// Flood fills of 32-bit integers that equal the seed.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "segment/flood_fill_32s.cpp"
#include "segment/flood_bounded.h"

#if HWY_ONCE

namespace {

// Never over a map: a new value that equals the seed is no fill.
OrvStatus fill(const FloodCall<int32_t>& call, int32_t reach) {
  return floodBounded<int32_t, 1>(call, false, reach, WIDEST(FloodC1<int32_t>), nullptr);
}

}  // namespace

OrvStatus orviFloodFill_4Con_32s_C1IR(int32_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      int32_t newValue, OrvConnectedComp* region, uint8_t* buffer) {
  return fill({srcDst, srcDstStep, roiSize, seed, &newValue, &newValue, &newValue, region, buffer}, 0);
}

OrvStatus orviFloodFill_8Con_32s_C1IR(int32_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      int32_t newValue, OrvConnectedComp* region, uint8_t* buffer) {
  return fill({srcDst, srcDstStep, roiSize, seed, &newValue, &newValue, &newValue, region, buffer}, 1);
}

#endif

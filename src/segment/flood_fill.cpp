// Flood fills of pixels that equal the seed, or lie within a fixed range around it.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "segment/flood_fill.cpp"
#include "segment/flood_bounded.h"

#if HWY_ONCE

namespace {

template <class T, int C>
OrvStatus fill(const FloodCall<T>& call, bool ranged, int32_t reach) {
  const FloodKernel<uint8_t> mapKernel = WIDEST(FloodC1<uint8_t>);
  if constexpr (C == 1) return floodBounded<T, C>(call, ranged, reach, WIDEST(FloodC1<T>), mapKernel);
  else return floodBounded<T, C>(call, ranged, reach, WIDEST(FloodC3<T>), mapKernel);
}

}  // namespace

OrvStatus orviFloodFillGetSize(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, floodBytes);
}

// The forms of one connectivity; `reach` is 1 where corners connect. One channel takes values, three take pointers.
#define C1_FORMS(con, tag, T, reach)                                                                               \
  OrvStatus orviFloodFill_##con##_##tag##_C1IR(T* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,      \
                                               T newValue, OrvConnectedComp* region, uint8_t* buffer) {            \
    return fill<T, 1>({srcDst, srcDstStep, roiSize, seed, &newValue, &newValue, &newValue, region, buffer}, false, \
                      reach);                                                                                      \
  }                                                                                                                \
  OrvStatus orviFloodFill_Range##con##_##tag##_C1IR(T* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed, \
                                                    T newValue, T minDelta, T maxDelta, OrvConnectedComp* region,  \
                                                    uint8_t* buffer) {                                             \
    return fill<T, 1>({srcDst, srcDstStep, roiSize, seed, &newValue, &minDelta, &maxDelta, region, buffer}, true,  \
                      reach);                                                                                      \
  }
#define C3_FORMS(con, tag, T, reach)                                                                                   \
  OrvStatus orviFloodFill_##con##_##tag##_C3IR(T* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,          \
                                               const T* newValue, OrvConnectedComp* region, uint8_t* buffer) {         \
    return fill<T, 3>({srcDst, srcDstStep, roiSize, seed, newValue, newValue, newValue, region, buffer}, false,        \
                      reach);                                                                                          \
  }                                                                                                                    \
  OrvStatus orviFloodFill_Range##con##_##tag##_C3IR(T* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,     \
                                                    const T* newValue, const T* minDelta, const T* maxDelta,           \
                                                    OrvConnectedComp* region, uint8_t* buffer) {                       \
    return fill<T, 3>({srcDst, srcDstStep, roiSize, seed, newValue, minDelta, maxDelta, region, buffer}, true, reach); \
  }
#define FORMS(tag, T)       \
  C1_FORMS(4Con, tag, T, 0) \
  C1_FORMS(8Con, tag, T, 1) \
  C3_FORMS(4Con, tag, T, 0) \
  C3_FORMS(8Con, tag, T, 1)
FORMS(8u, uint8_t)
FORMS(16u, uint16_t)
FORMS(32f, float)

#endif

// Flood fills by gradient of all types but bytes of one channel.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "segment/flood_fill_grad.cpp"
#include "segment/flood_grad.h"

#if HWY_ONCE

OrvStatus orviFloodFillGetSize_Grad(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, [](OrvSize s) {
    const uint64_t w = (uint32_t)s.width, h = (uint32_t)s.height;
    return (int32_t)(uint32_t)((w + 2) * (h + 2) + h * 48 * w / 3 + 64);
  });
}

// The two connectivities; `reach` is 1 where corners connect. One channel takes values, three take pointers.
#define C1_FORM(con, tag, T, reach)                                                                               \
  OrvStatus orviFloodFill_Grad##con##_##tag##_C1IR(T* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed, \
                                                   T newValue, T minDelta, T maxDelta, OrvConnectedComp* region,  \
                                                   uint8_t* buffer) {                                             \
    return floodGrad<T>({srcDst, srcDstStep, roiSize, seed, &newValue, &minDelta, &maxDelta, region, buffer}, 1,  \
                        reach, WIDEST(FloodGradC1<T>));                                                           \
  }
#define C3_FORM(con, tag, T, reach)                                                                                  \
  OrvStatus orviFloodFill_Grad##con##_##tag##_C3IR(T* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,    \
                                                   const T* newValue, const T* minDelta, const T* maxDelta,          \
                                                   OrvConnectedComp* region, uint8_t* buffer) {                      \
    return floodGrad<T>({srcDst, srcDstStep, roiSize, seed, newValue, minDelta, maxDelta, region, buffer}, 3, reach, \
                        WIDEST(FloodGradC3<T>));                                                                     \
  }
C1_FORM(4Con, 16u, uint16_t, 0)
C1_FORM(8Con, 16u, uint16_t, 1)
C1_FORM(4Con, 32f, float, 0)
C1_FORM(8Con, 32f, float, 1)
C3_FORM(4Con, 8u, uint8_t, 0)
C3_FORM(8Con, 8u, uint8_t, 1)
C3_FORM(4Con, 16u, uint16_t, 0)
C3_FORM(8Con, 16u, uint16_t, 1)
C3_FORM(4Con, 32f, float, 0)
C3_FORM(8Con, 32f, float, 1)

#endif

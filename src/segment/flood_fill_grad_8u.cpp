// Flood fills of byte images by gradient.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "segment/flood_fill_grad_8u.cpp"
#include "segment/flood_grad.h"

#if HWY_ONCE

OrvStatus orviFloodFill_Grad4Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                         uint8_t newValue, uint8_t minDelta, uint8_t maxDelta, OrvConnectedComp* region,
                                         uint8_t* buffer) {
  return floodGrad<uint8_t>({srcDst, srcDstStep, roiSize, seed, &newValue, &minDelta, &maxDelta, region, buffer}, 1, 0,
                            WIDEST(FloodGradC1<uint8_t>));
}

OrvStatus orviFloodFill_Grad8Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                         uint8_t newValue, uint8_t minDelta, uint8_t maxDelta, OrvConnectedComp* region,
                                         uint8_t* buffer) {
  return floodGrad<uint8_t>({srcDst, srcDstStep, roiSize, seed, &newValue, &minDelta, &maxDelta, region, buffer}, 1, 1,
                            WIDEST(FloodGradC1<uint8_t>));
}

#endif

// Sizes and construction of the record in the caller's memory.
#include "morph/morph_state.h"

namespace {

bool validSizes(int32_t roiWidth, OrvSize maskSize) { return roiWidth >= 1 && validRoi(maskSize); }

OrvStatus reportSizes(int32_t dataType, int32_t channels, int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                      int32_t* bufferSize) {
  ORV_REQUIRE(allSet(specSize, bufferSize), orvStatusNullPtr);
  ORV_REQUIRE(validSizes(roiWidth, maskSize), orvStatusSize);
  *specSize = morphStateBytes(dataType, channels, roiWidth, maskSize);
  *bufferSize = morphScratchBytes(dataType, channels, roiWidth, maskSize);
  return orvStatusOk;
}

OrvStatus build(int32_t dataType, int32_t channels, int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                OrvMorphState* state, uint8_t* buffer) {
  ORV_REQUIRE(allSet(mask, state, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validSizes(roiWidth, maskSize), orvStatusSize);
  buildMorphState(borderSetup(dataType, channels, roiWidth, mask, maskSize, centreAnchor(maskSize)), state, buffer);
  return orvStatusOk;
}

}  // namespace

#define MORPHOLOGY_BORDER(tag, type, C)                                                              \
  OrvStatus orviMorphologyBorderGetSize_##tag(int32_t roiWidth, OrvSize maskSize, int32_t* specSize, \
                                              int32_t* bufferSize) {                                 \
    return reportSizes(type, C, roiWidth, maskSize, specSize, bufferSize);                           \
  }                                                                                                  \
  OrvStatus orviMorphologyBorderInit_##tag(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,  \
                                           OrvMorphState* state, uint8_t* buffer) {                  \
    return build(type, C, roiWidth, mask, maskSize, state, buffer);                                  \
  }
MORPHOLOGY_BORDER(1u_C1R, packedBits, 1)
MORPHOLOGY_BORDER(8u_C1R, orvData8u, 1)
MORPHOLOGY_BORDER(8u_C3R, orvData8u, 3)
MORPHOLOGY_BORDER(8u_C4R, orvData8u, 4)
MORPHOLOGY_BORDER(16u_C1R, orvData16u, 1)
MORPHOLOGY_BORDER(16s_C1R, orvData16s, 1)
MORPHOLOGY_BORDER(32f_C1R, orvData32f, 1)
MORPHOLOGY_BORDER(32f_C3R, orvData32f, 3)
MORPHOLOGY_BORDER(32f_C4R, orvData32f, 4)

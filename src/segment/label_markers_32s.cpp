// Labelling of 8-bit images into 32-bit ones.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "segment/label_markers_32s.cpp"
#include "segment/labelling.h"

#if HWY_ONCE

OrvStatus orviLabelMarkersGetBufferSize_8u32s_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, floodBytes);
}

OrvStatus orviLabelMarkers_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                     OrvSize roiSize, int32_t minLabel, int32_t maxLabel, int32_t norm,
                                     int32_t* numLabels, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer, numLabels), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= roiSize.width && dstStep / 4 >= roiSize.width, orvStatusStep);
  ORV_REQUIRE(stepsAligned<int32_t>(dstStep), orvStatusStepAlign);
  const OrvStatus status = checkLabels(minLabel, maxLabel, INT32_MAX, norm);
  ORV_REQUIRE(status == orvStatusOk, status);
  *numLabels = labelRegions<uint8_t, int32_t>({src, srcStep}, {dst, dstStep}, roiSize, minLabel, maxLabel, norm == 0,
                                              buffer, WIDEST(RunsOfRow<uint8_t>), WIDEST(WriteRuns<int32_t>));
  return orvStatusOk;
}

#endif

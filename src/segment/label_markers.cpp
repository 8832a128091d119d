// Labelling of 8-bit and 16-bit images in place.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "segment/label_markers.cpp"
#include "segment/labelling.h"

#if HWY_ONCE

namespace {

template <class T>
OrvStatus label(T* markers, int32_t step, OrvSize size, int32_t minLabel, int32_t maxLabel, int32_t norm,
                int32_t* numLabels, uint8_t* buffer) {
  ORV_REQUIRE(allSet(markers, buffer, numLabels), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(size), orvStatusSize);
  ORV_REQUIRE(step >= rowBytes<T>(size.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(step), orvStatusStepAlign);
  const OrvStatus status = checkLabels(minLabel, maxLabel, (T) ~(T)0, norm);
  ORV_REQUIRE(status == orvStatusOk, status);
  *numLabels = labelRegions<T, T>({markers, step}, {markers, step}, size, minLabel, maxLabel, norm == 0, buffer,
                                  WIDEST(RunsOfRow<T>), WIDEST(WriteRuns<T>));
  return orvStatusOk;
}

}  // namespace

OrvStatus orviLabelMarkersGetBufferSize_8u_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, floodBytes);
}
OrvStatus orviLabelMarkersGetBufferSize_16u_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, floodBytes);
}

OrvStatus orviLabelMarkers_8u_C1IR(uint8_t* markers, int32_t markerStep, OrvSize roiSize, int32_t minLabel,
                                   int32_t maxLabel, int32_t norm, int32_t* numLabels, uint8_t* buffer) {
  return label(markers, markerStep, roiSize, minLabel, maxLabel, norm, numLabels, buffer);
}
OrvStatus orviLabelMarkers_16u_C1IR(uint16_t* markers, int32_t markerStep, OrvSize roiSize, int32_t minLabel,
                                    int32_t maxLabel, int32_t norm, int32_t* numLabels, uint8_t* buffer) {
  return label(markers, markerStep, roiSize, minLabel, maxLabel, norm, numLabels, buffer);
}

#endif

// Sizes and initialisation of FastN.
#include <math.h>
#include "features/fastn_state.h"

namespace {

OrvStatus checkSetup(int32_t radius, int32_t arc, int32_t bins, int32_t mode, OrvDataType dataType, int32_t channels) {
  if (const OrvStatus status = checkFastNType(dataType, channels)) return status;
  if (const OrvStatus status = checkFastNMode(mode, bins)) return status;
  return checkFastNRing(radius, arc);
}

}  // namespace

OrvStatus orviFastNGetSize(OrvSize roiSize, int32_t radius, int32_t N, int32_t numOrient, int32_t mode,
                           OrvDataType dataType, int32_t numChannels, int32_t* stateSize) {
  ORV_REQUIRE(stateSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  if (const OrvStatus status = checkSetup(radius, N, numOrient, mode, dataType, numChannels)) return status;
  int32_t points;
  fastNRing(radius, &points);
  *stateSize = 8 * points + 68;
  return orvStatusOk;
}

OrvStatus orviFastNInit(OrvSize roiSize, int32_t radius, int32_t N, int32_t numOrient, float threshold, int32_t mode,
                        OrvDataType dataType, int32_t numChannels, uint8_t* state) {
  ORV_REQUIRE(state, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(threshold >= 0, orvStatusThreshold);
  if (const OrvStatus status = checkSetup(radius, N, numOrient, mode, dataType, numChannels)) return status;
  int32_t points;
  const RingPoint* const ring = fastNRing(radius, &points);
  const int32_t whole = threshold < 2147483648.f ? (int32_t)threshold : INT32_MAX;
  const FastNState record = {fastNId,   dataType, numChannels, roiSize,   radius, N,
                             numOrient, mode,     0,           threshold, whole,  ring};
  state[0] = (uint8_t)(8 - ((uintptr_t)state & 7));
  uint8_t* const at = state + state[0];
  memcpy(at, &record, sizeof record);
  float tables[2 * mostRingPoints + 1] = {};
  const float step = 6.2831855f / (float)points;
  for (int32_t i = 0; i < points && (mode & orvFastNOrientation); ++i) {
    tables[i] = sinf((float)i * step);
    tables[points + i] = cosf((float)i * step);
  }
  tables[2 * points] = (float)numOrient * 0.15915494f;
  memcpy(at + sizeof record, tables, (size_t)(2 * points + 1) * sizeof tables[0]);
  return orvStatusOk;
}

OrvStatus orviFastNGetBufferSize(const uint8_t* state, OrvSize dstRoiSize, int32_t* bufferSize) {
  ORV_REQUIRE(allSet(state, bufferSize), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(dstRoiSize), orvStatusSize);
  *bufferSize = wrapAdd(wrapMul(6, wrapAdd(dstRoiSize.width, 2)), 624);
  return orvStatusOk;
}

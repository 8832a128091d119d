// Sizes and state of the probabilistic line detector.
#include <math.h>
#include <string.h>
#include "core/image.h"
#include "features/hough.h"
#include "features/hough_state.h"

namespace {

OrvStatus checkSetup(OrvSize roi, OrvPointPolar delta) {
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(delta.rho > 0 && delta.theta > 0, orvStatusBadArg);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviHoughProbLineGetSize_8u_C1R(OrvSize roiSize, OrvPointPolar delta, int32_t* stateSize,
                                          int32_t* bufferSize) {
  ORV_REQUIRE(allSet(stateSize, bufferSize), orvStatusNullPtr);
  if (const OrvStatus status = checkSetup(roiSize, delta)) return status;
  const HoughGeometry g = houghGeometry(roiSize, delta);
  *stateSize = wrapAdd(wrapMul(8, g.numAngle), 16);
  *bufferSize = wrapAdd(wrapMul(9, roiSize.width, roiSize.height), wrapMul(4, g.numRho, g.numAngle));
  return orvStatusOk;
}

// Angles are added up in floats, even and odd ones each on their own by twice the step.
OrvStatus orviHoughProbLineInit_8u32f_C1R(OrvSize roiSize, OrvPointPolar delta, int32_t hint,
                                          OrvHoughProbState* state) {
  if (const OrvStatus status = checkSetup(roiSize, delta)) return status;
  ORV_REQUIRE(state, orvStatusNullPtr);
  const HoughProbHeader header = {delta.rho, delta.theta, hint};
  memcpy((void*)state, &header, sizeof header);
  auto* const table = (LooseElement<float>*)((uint8_t*)state + sizeof header);
  const int32_t numAngle = houghGeometry(roiSize, delta).numAngle;
  const double inverse = (double)(1.0f / delta.rho);
  const float twice = 2 * delta.theta;
  float angle[2] = {0, delta.theta};
  for (ptrdiff_t i = 0; i < numAngle; ++i) {
    table[2 * i] = (float)(cos((double)angle[i & 1]) * inverse);
    table[2 * i + 1] = (float)(sin((double)angle[i & 1]) * inverse);
    angle[i & 1] += twice;
  }
  return orvStatusOk;
}

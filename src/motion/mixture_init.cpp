// Gaussian mixture: size and start of its buffer.
#include "motion/mixture_state.h"
#include <string.h>

OrvStatus orviFGMMGetBufferSize_8u_C3R(OrvSize roiSize, int32_t maxNGauss, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(maxNGauss >= 1, orvStatusBadArg);
  *bufferSize = mixtureBytes(roiSize, maxNGauss);
  return orvStatusOk;
}

OrvStatus orviFGMMInit_8u_C3R(OrvSize roiSize, int32_t maxNGauss, const OrvFGMMModel* model, OrvFGMMState* state) {
  ORV_REQUIRE(allSet(model, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(maxNGauss >= 1, orvStatusBadArg);
  const MixtureSizes sizes(roiSize, maxNGauss);
  memset(state, 0, (uint32_t)mixtureBytes(roiSize, maxNGauss));
  OrvFGMMState* const s = mixtureIn(state);
  uint8_t* piece = (uint8_t*)s + mixtureRecordBytes;
  s->rowBuffer = (float*)piece;
  s->means = (MixtureMean*)(piece += sizes.row);
  s->modes = (MixtureMode*)(piece += sizes.means);
  s->modeCount = piece + sizes.modes;
  takeModel(s, model);
  s->numGauss = s->maxNGauss = maxNGauss;
  return orvStatusOk;
}

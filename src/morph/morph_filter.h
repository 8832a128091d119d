// Erosion and dilation of a region: the checks that all mask filters share, and the choice of the path.
#pragma once
#include "morph/names.h"
#include "core/image.h"
#include "filter/border.h"
#include "morph/mask_fold.h"

namespace ORV_VARIANT {

// The arguments of a filter.
template <class T>
struct MorphCall {
  const T* src;
  int32_t srcStep;
  T* dst;
  int32_t dstStep;
  OrvSize roi;
  int32_t borderType;
  uint8_t* buffer;
};

static inline bool validMorphBorder(int32_t borderType) {
  return borderKind(borderType) == orvBorderRepl || borderKind(borderType) == orvBorderInMem;
}

// The checks up to the border kind.
template <class T, class State>
static inline OrvStatus checkMorph(const MorphCall<T>& call, int32_t channels, const State* state) {
  ORV_REQUIRE(allSet(call.src, call.dst, state, call.buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  const int32_t row = rowBytes<T>(call.roi.width, channels);
  ORV_REQUIRE(call.srcStep >= row && call.dstStep >= row, orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(call.srcStep, call.dstStep), orvStatusStepAlign);
  ORV_REQUIRE(validMorphBorder(call.borderType), orvStatusBorder);
  return orvStatusOk;
}

// Scratch that was reported for a record.
static inline int32_t scratchOf(const OrvMorphState& state) {
  return morphScratchBytes(state.dataType, state.channels, state.roiWidth, {state.maskWidth, state.maskHeight});
}

// Filters a region by the path of the mask: a copy, the separable filter, or the fold of mask_fold.h.
void filterUnderMask(const MaskFold& call, const OrvMorphState& state);

}  // namespace ORV_VARIANT

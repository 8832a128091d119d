// The arguments and checks that all mask filters of packed bits share.
#pragma once
#include "morph/names.h"
#include "morph/bit_fold.h"
#include "morph/morph_filter.h"

namespace ORV_VARIANT {

struct BitCall {
  const uint8_t* src;
  int32_t srcStep, srcBit;
  uint8_t* dst;
  int32_t dstStep, dstBit;
  OrvSize roi;
  int32_t borderType;
  uint8_t* buffer;
};

// The checks up to the border kind. A step is measured against the bits of a row alone, without its bit offset.
template <class State>
static inline OrvStatus checkBits(const BitCall& call, const State* state) {
  ORV_REQUIRE(allSet(call.src, call.dst, state, call.buffer), orvStatusNullPtr);
  ORV_REQUIRE(call.srcBit >= 0 && call.dstBit >= 0, orvStatusSize);
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  const int32_t row = wrapAdd(call.roi.width, 7) >> 3;
  ORV_REQUIRE(call.srcStep >= row && call.dstStep >= row, orvStatusStep);
  ORV_REQUIRE(validMorphBorder(call.borderType), orvStatusBorder);
  return orvStatusOk;
}

static inline BitMaskFold bitFoldOf(const BitCall& call, bool dilate, uint8_t* scratch, ptrdiff_t scratchBytes) {
  return {call.src,     call.srcStep, call.srcBit, call.dst,
          call.dstStep, call.dstBit,  call.roi,    sidesInMemoryByKind(call.borderType),
          dilate,       scratch,      scratchBytes};
}

}  // namespace ORV_VARIANT

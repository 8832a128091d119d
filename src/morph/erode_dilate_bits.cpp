// Erosion and dilation of packed bits.
#include "morph/bit_filter.h"

namespace {

OrvStatus erodeOrDilate(const BitCall& call, const OrvMorphState* state, bool dilate) {
  const OrvStatus status = checkBits(call, state);
  ORV_REQUIRE(status == orvStatusOk, status);
  ORV_REQUIRE(call.src != call.dst, orvStatusInPlace);
  const OrvMorphState mask = readMorphState(state);
  foldBitsUnderMask(bitFoldOf(call, dilate, call.buffer, scratchOf(mask)), mask);
  return orvStatusOk;
}

}  // namespace

#define FILTER(name, dilate)                                                                                           \
  OrvStatus name(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst, int32_t dstStep,             \
                 int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType, uint8_t, const OrvMorphState* state, \
                 uint8_t* buffer) {                                                                                    \
    return erodeOrDilate({src, srcStep, srcBitOffset, dst, dstStep, dstBitOffset, roiSize, borderType, buffer}, state, \
                         dilate);                                                                                      \
  }
FILTER(orviErodeBorder_1u_C1R, false)
FILTER(orviDilateBorder_1u_C1R, true)

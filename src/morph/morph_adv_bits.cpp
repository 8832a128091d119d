// Opening, closing, top-hat, black-hat and gradient of packed bits.
#include "morph/morph_adv.h"

namespace {

OrvStatus openOrCloseBits(const BitCall& call, const OrvMorphAdvState* state, bool close, Hat hat) {
  OrvStatus status = checkBits(call, state);
  ORV_REQUIRE(status == orvStatusOk, status);
  const AdvMasks masks(state);
  AdvPlan plan;
  status = planPair(masks, call.roi, call.borderType, 1, call.buffer, plan);
  ORV_REQUIRE(status == orvStatusOk, status);
  // The offset into the source may become negative: it then leads to the bytes before.
  const uint8_t* const above = raw(Plane<const uint8_t>{call.src, call.srcStep}.row(-(ptrdiff_t)plan.shiftY));
  foldBitsUnderMask({above, call.srcStep, call.srcBit - plan.shiftX, plan.temp, plan.tempStep, 0, plan.wide, plan.sides,
                     close, plan.scratch[0], plan.scratchBytes},
                    masks.forward);
  foldBitsUnderMask({plan.temp + (ptrdiff_t)plan.shiftY * plan.tempStep, plan.tempStep, plan.shiftX, call.dst,
                     call.dstStep, call.dstBit, call.roi, plan.sides, !close, plan.scratch[1], plan.scratchBytes},
                    masks.turned);
  for (ptrdiff_t y = 0; hat != Hat::none && y < call.roi.height; ++y) {
    const uint8_t* const s = raw(Plane<const uint8_t>{call.src, call.srcStep}.row(y));
    uint8_t* const d = raw(Plane<uint8_t>{call.dst, call.dstStep}.row(y));
    if (hat == Hat::srcMinusResult) subtractBits(s, call.srcBit, d, call.dstBit, d, call.dstBit, call.roi.width);
    else subtractBits(d, call.dstBit, s, call.srcBit, d, call.dstBit, call.roi.width);
  }
  return orvStatusOk;
}

OrvStatus gradientBits(const BitCall& call, const OrvMorphAdvState* state) {
  OrvStatus status = checkBits(call, state);
  ORV_REQUIRE(status == orvStatusOk, status);
  const AdvMasks masks(state);
  AdvPlan plan;
  status = planGradient(masks, call.roi, call.borderType, 1, call.buffer, plan);
  ORV_REQUIRE(status == orvStatusOk, status);
  ORV_REQUIRE(call.src != call.dst, orvStatusInPlace);
  BitMaskFold fold = bitFoldOf(call, true, plan.scratch[0], plan.scratchBytes);
  foldBitsUnderMask(fold, masks.forward);
  // The bits of both images line up.
  fold.dst = plan.temp, fold.dstStep = plan.tempStep, fold.dstBit = call.dstBit & 7, fold.dilate = false;
  foldBitsUnderMask(fold, masks.forward);
  for (ptrdiff_t y = 0; y < call.roi.height; ++y) {
    uint8_t* const d = raw(Plane<uint8_t>{call.dst, call.dstStep}.row(y));
    subtractBits(d, call.dstBit, plan.temp + y * plan.tempStep, fold.dstBit, d, call.dstBit, call.roi.width);
  }
  return orvStatusOk;
}

}  // namespace

#define FILTER(name, ...)                                                                                           \
  OrvStatus name(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst, int32_t dstStep,          \
                 int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType, uint8_t, OrvMorphAdvState* state, \
                 uint8_t* buffer) {                                                                                 \
    const BitCall call = {src, srcStep, srcBitOffset, dst, dstStep, dstBitOffset, roiSize, borderType, buffer};     \
    return __VA_ARGS__;                                                                                             \
  }
ORV_ADV_SETUP(1u_C1R, packedBits, 1)
FILTER(orviMorphOpenBorder_1u_C1R, openOrCloseBits(call, state, false, Hat::none))
FILTER(orviMorphCloseBorder_1u_C1R, openOrCloseBits(call, state, true, Hat::none))
FILTER(orviMorphTophatBorder_1u_C1R, openOrCloseBits(call, state, false, Hat::srcMinusResult))
FILTER(orviMorphBlackhatBorder_1u_C1R, openOrCloseBits(call, state, true, Hat::resultMinusSrc))
FILTER(orviMorphGradientBorder_1u_C1R, gradientBits(call, state))

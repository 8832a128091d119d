// The record of opening, closing and their kin: sizes, construction, and the plan of a pair of folds.
#include "morph/morph_adv.h"

namespace {

// Turns a mask by 180 degrees.
void turn(uint8_t* mask, OrvSize size) {
  const ptrdiff_t positions = (ptrdiff_t)size.width * size.height;
  for (ptrdiff_t i = 0, k = positions - 1; i < k; ++i, --k) {
    const uint8_t first = mask[i];
    mask[i] = mask[k], mask[k] = first;
  }
}

bool validSizes(OrvSize roi, OrvSize maskSize) { return validRoi(roi) && validRoi(maskSize); }

// Bytes of an intermediate image that a first fold may fill from sides in memory.
int32_t imageBytes(int32_t dataType, int32_t channels, OrvSize roi, OrvSize maskSize) {
  const int32_t width = wrapAdd(roi.width, maskSize.width - 1), height = wrapAdd(roi.height, maskSize.height - 1);
  return wrapMul(tempRowBytes(width, channels * morphElementBytes(dataType)), height);
}

int32_t atLeast0(int32_t reach) { return reach > 0 ? reach : 0; }

}  // namespace

OrvStatus ORV_VARIANT::reportAdvSizes(int32_t dataType, int32_t channels, OrvSize roi, OrvSize maskSize,
                                      int32_t* specSize, int32_t* bufferSize) {
  ORV_REQUIRE(allSet(specSize, bufferSize), orvStatusNullPtr);
  ORV_REQUIRE(validSizes(roi, maskSize), orvStatusSize);
  const int32_t stateBytes = morphStateBytes(dataType, channels, roi.width, maskSize);
  const int32_t scratchBytes = morphScratchBytes(dataType, channels, roi.width, maskSize);
  *specSize = wrapAdd(wrapMul(2, stateBytes), (int32_t)sizeof(OrvMorphAdvState));
  *bufferSize = wrapAdd(wrapMul(2, scratchBytes), imageBytes(dataType, channels, roi, maskSize));
  return orvStatusOk;
}

OrvStatus ORV_VARIANT::buildAdvState(int32_t dataType, int32_t channels, OrvSize roi, const uint8_t* mask,
                                     OrvSize maskSize, OrvMorphAdvState* state, uint8_t* buffer) {
  ORV_REQUIRE(allSet(mask, state, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validSizes(roi, maskSize), orvStatusSize);
  const OrvPoint anchor = centreAnchor(maskSize);
  const OrvPoint turnedAnchor = {maskSize.width - 1 - anchor.x, maskSize.height - 1 - anchor.y};
  const int32_t stateBytes = morphStateBytes(dataType, channels, roi.width, maskSize);
  const int32_t scratchBytes = morphScratchBytes(dataType, channels, roi.width, maskSize);

  OrvMorphAdvState record = {};
  auto* const forward = (uint8_t*)(void*)state + sizeof record;
  record.forwardState = (OrvMorphState*)(void*)forward;
  record.turnedState = (OrvMorphState*)(void*)(forward + stateBytes);
  // The first fold may be wider than the region, by what the second one reads in memory beside it.
  const int32_t wide = wrapAdd(roi.width, maskSize.width - 1);
  buildMorphState(borderSetup(dataType, channels, wide, mask, maskSize, anchor), record.forwardState, buffer);
  // The turned mask is made in place of the copy and turned back.
  uint8_t* const copy = readMorphState(record.forwardState).maskCopy;
  turn(copy, maskSize);
  buildMorphState(borderSetup(dataType, channels, roi.width, copy, maskSize, turnedAnchor), record.turnedState, buffer);
  turn(copy, maskSize);

  record.tempImage = buffer + 2 * (ptrdiff_t)scratchBytes;
  record.tempSize = imageBytes(dataType, channels, roi, maskSize);
  record.bufferHalf = scratchBytes;
  if (record.tempSize > 0) memset(record.tempImage, 0, (size_t)record.tempSize);
  memcpy((void*)state, (const void*)&record, sizeof record);
  return orvStatusOk;
}

OrvStatus ORV_VARIANT::planPair(const AdvMasks& masks, OrvSize roi, int32_t borderType, int32_t pixelBytes,
                                uint8_t* buffer, AdvPlan& plan) {
  const OrvMorphState& turned = masks.turned;
  ORV_REQUIRE(roi.width <= masks.forward.roiWidth, orvStatusSize);
  plan = {roi, 0, 0, sidesInMemoryByKind(borderType), 0, nullptr, {}, 0};
  // An anchor beside the box of an allocated rectangle: nothing is read on that side.
  if (plan.sides & orvBorderInMemLeft) plan.shiftX = atLeast0(turned.anchorX);
  if (plan.sides & orvBorderInMemTop) plan.shiftY = atLeast0(turned.anchorY);
  plan.wide.width += plan.shiftX;
  plan.wide.height += plan.shiftY;
  if (plan.sides & orvBorderInMemRight) plan.wide.width += atLeast0(turned.maskWidth - turned.anchorX - 1);
  if (plan.sides & orvBorderInMemBottom) plan.wide.height += atLeast0(turned.maskHeight - turned.anchorY - 1);
  plan.tempStep = tempRowBytes(plan.wide.width, pixelBytes);
  ORV_REQUIRE((int64_t)plan.tempStep * plan.wide.height <= masks.record.tempSize, orvStatusSize);
  // The folds' own tests of the width; packed bits have none.
  if (masks.forward.dataType != packedBits)
    ORV_REQUIRE(plan.wide.width <= masks.forward.roiWidth && roi.width <= turned.roiWidth, orvStatusSize);
  const int32_t half = masks.record.bufferHalf;
  const ptrdiff_t image = (ptrdiff_t)plan.tempStep * plan.wide.height;
  plan.temp = half > 0 ? buffer + 2 * (ptrdiff_t)half : buffer;
  plan.scratch[0] = half > 0 ? buffer : buffer + image;
  plan.scratch[1] = half > 0 ? buffer + half : buffer + image;
  plan.scratchBytes = half > 0 ? half : scratchOf(turned);
  return orvStatusOk;
}

OrvStatus ORV_VARIANT::planGradient(const AdvMasks& masks, OrvSize roi, int32_t borderType, int32_t pixelBytes,
                                    uint8_t* buffer, AdvPlan& plan) {
  ORV_REQUIRE(roi.width <= masks.forward.roiWidth, orvStatusSize);
  const int32_t half = masks.record.bufferHalf;
  plan = {roi,
          0,
          0,
          sidesInMemoryByKind(borderType),
          tempRowBytes(roi.width, pixelBytes),
          masks.record.tempImage,
          {buffer, buffer},
          half > 0 ? half : scratchOf(masks.forward)};
  ORV_REQUIRE((int64_t)plan.tempStep * roi.height <= masks.record.tempSize, orvStatusSize);
  return orvStatusOk;
}

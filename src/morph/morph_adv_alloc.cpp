// Records of opening, closing and their kin in memory of the library's own.
// One body serves both variants.
#include "core/primitives.h"
#include "morph/morph_adv.h"
#include "morph/morph_alloc.h"

namespace {

void release(const OrvMorphAdvState& record) {
  if (record.forwardState) orvsFree(record.forwardState);
  if (record.turnedState) orvsFree(record.turnedState);
  if (record.tempImage) orvsFree(record.tempImage);
}

// The record under the caller's mask, then the one under the turned mask.
bool allocateMasks(MorphSetup setup, OrvMorphAdvState& record) {
  record.forwardState = allocateMorphState(setup);
  if (!record.forwardState) return false;
  const ptrdiff_t positions = (ptrdiff_t)setup.maskSize.width * setup.maskSize.height;
  uint8_t* const turned = orvsMalloc_8u((int32_t)positions);
  if (!turned) return false;
  for (ptrdiff_t i = 0; i < positions; ++i) turned[i] = setup.mask[positions - 1 - i];
  setup.mask = turned;
  setup.anchor = {setup.maskSize.width - 1 - setup.anchor.x, setup.maskSize.height - 1 - setup.anchor.y};
  record.turnedState = allocateMorphState(setup);
  orvsFree(turned);
  return record.turnedState != nullptr;
}

// Rows of the intermediate image count bytes as pixels, of every type: it holds no wider ones of larger pixels.
OrvStatus allocateAdv(int32_t dataType, int32_t channels, OrvMorphAdvState** state, OrvSize roi, const uint8_t* mask,
                      OrvSize maskSize, OrvPoint anchor) {
  ORV_REQUIRE(allSet(state, mask), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi) && validRoi(maskSize), orvStatusSize);
  ORV_REQUIRE(anchor.x >= 0 && anchor.x < maskSize.width && anchor.y >= 0 && anchor.y < maskSize.height,
              orvStatusAnchor);
  OrvMorphAdvState record = {};
  record.tempSize = wrapMul(roi.height, tempRowBytes(roi.width, 1));
  uint8_t* memory = nullptr;
  if (allocateMasks({dataType, channels, roi.width, maskSize, mask, anchor, 0, true}, record)) {
    record.tempImage = orvsMalloc_8u(record.tempSize);
    if (record.tempImage) memory = orvsMalloc_8u((int32_t)sizeof record);
  }
  if (!memory) {
    release(record);
    return orvStatusNoMem;
  }
  memcpy(memory, (const void*)&record, sizeof record);
  *state = (OrvMorphAdvState*)(void*)memory;
  return orvStatusOk;
}

}  // namespace

#define INIT_ALLOC(tag, type, C)                                                                        \
  OrvStatus orviMorphAdvInitAlloc_##tag(OrvMorphAdvState** state, OrvSize roiSize, const uint8_t* mask, \
                                        OrvSize maskSize, OrvPoint anchor) {                            \
    return allocateAdv(type, C, state, roiSize, mask, maskSize, anchor);                                \
  }
INIT_ALLOC(8u_C1R, orvData8u, 1)
INIT_ALLOC(8u_C3R, orvData8u, 3)
INIT_ALLOC(8u_C4R, orvData8u, 4)
INIT_ALLOC(32f_C1R, orvData32f, 1)
INIT_ALLOC(32f_C3R, orvData32f, 3)
INIT_ALLOC(32f_C4R, orvData32f, 4)

OrvStatus orviMorphAdvFree(OrvMorphAdvState* state) {
  ORV_REQUIRE(allSet(state), orvStatusNullPtr);
  release(readAdv(state));
  orvsFree(state);
  return orvStatusOk;
}

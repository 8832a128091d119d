// Records built with memory of the library.
//
// One body serves both variants.
#include "morph/morph_alloc.h"
#include "core/primitives.h"

OrvStatus ORV_VARIANT::initMorphState(const MorphSetup& setup, OrvMorphState* block) {
  uint8_t* const work = orvsMalloc_8u(wrapMul(24, setup.maskSize.height));
  ORV_REQUIRE(work != nullptr, orvStatusNoMem);
  buildMorphState(setup, block, work);
  orvsFree(work);
  return orvStatusOk;
}

OrvStatus ORV_VARIANT::allocMorphState(const MorphSetup& setup, OrvMorphState** state) {
  uint8_t* const block = orvsMalloc_8u(morphStateBytes(setup.dataType, setup.channels, setup.roiWidth, setup.maskSize));
  ORV_REQUIRE(block != nullptr, orvStatusNoMem);
  const OrvStatus status = initMorphState(setup, (OrvMorphState*)(void*)block);
  if (status != orvStatusOk) orvsFree(block);
  else *state = (OrvMorphState*)(void*)block;
  return status;
}

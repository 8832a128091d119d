// Records that the library builds with memory of its own.
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

OrvMorphState* ORV_VARIANT::allocateMorphState(const MorphSetup& setup) {
  uint8_t* const block = orvsMalloc_8u(morphStateBytes(setup.dataType, setup.channels, setup.roiWidth, setup.maskSize));
  if (!block) return nullptr;
  auto* const state = (OrvMorphState*)(void*)block;
  if (initMorphState(setup, state) == orvStatusOk) return state;
  orvsFree(block);
  return nullptr;
}

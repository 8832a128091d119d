// Records in memory of the library's own.
// One body serves both variants.
#include "morph/morph_alloc.h"
#include "core/primitives.h"

OrvMorphState* ORV_VARIANT::allocateMorphState(const MorphSetup& setup) {
  uint8_t* const work = orvsMalloc_8u(wrapMul(24, setup.maskSize.height));
  if (!work) return nullptr;
  auto* const state = (OrvMorphState*)(void*)orvsMalloc_8u(
      morphStateBytes(setup.dataType, setup.channels, setup.roiWidth, setup.maskSize));
  if (state) buildMorphState(setup, state, work);
  orvsFree(work);
  return state;
}

// Records of prepared masks that the library builds with work memory of its own, or allocates.
#pragma once
#include "morph/morph_state.h"

namespace ORV_VARIANT {

// The record of the replicate-border family: its anchor is told, its shapes are counted from no violation, and a
// rectangle's record speaks of its box.
static inline MorphSetup replicateSetup(int32_t dataType, int32_t channels, int32_t roiWidth, const uint8_t* mask,
                                        OrvSize maskSize, OrvPoint anchor) {
  return {dataType, channels, roiWidth, maskSize, mask, anchor, 0, true};
}

// Builds the record in a block of morphStateBytes(); orvStatusNoMem if there is no work memory.
OrvStatus initMorphState(const MorphSetup& setup, OrvMorphState* block);

// The same in a block from orvsMalloc_8u, to be released by orvsFree. `*state` is written on success only.
OrvStatus allocMorphState(const MorphSetup& setup, OrvMorphState** state);

}  // namespace ORV_VARIANT

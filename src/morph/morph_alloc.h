// Records that the library builds with memory of its own.
#pragma once
#include "morph/names.h"
#include "morph/morph_state.h"

namespace ORV_VARIANT {

// Builds a record in a block of morphStateBytes(); orvStatusNoMem if there is no work memory.
OrvStatus initMorphState(const MorphSetup& setup, OrvMorphState* block);

// A new record, to be released with orvsFree; null if the memory isn't to be had.
OrvMorphState* allocateMorphState(const MorphSetup& setup);

}  // namespace ORV_VARIANT

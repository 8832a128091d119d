// Records in memory of the library's own.
#pragma once
#include "morph/morph_state.h"

namespace ORV_VARIANT {

// A new record, to be released with orvsFree; null if the memory isn't to be had.
OrvMorphState* allocateMorphState(const MorphSetup& setup);

}  // namespace ORV_VARIANT

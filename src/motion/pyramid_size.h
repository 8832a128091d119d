// Sizes of neighbouring levels.
#pragma once
#include "core/checks.h"
#include "core/variant.h"

namespace ORV_VARIANT {

struct SizeRange {
  OrvSize least, most;
};

// A rate that isn't a number is none.
static inline bool validRate(float rate) { return rate > 1 && rate <= 10; }

// The size of the next level down, the one from which an up step reaches `src`; and the sizes that an up step reaches.
OrvSize sizeBelow(OrvSize src, float rate);
SizeRange sizesAbove(OrvSize src, float rate);

}  // namespace ORV_VARIANT

// The extreme of a rectangle around each pixel, with sides in memory: the separable path of the mask filters.
#pragma once
#include "morph/names.h"
#include "morph/mask_fold.h"

namespace ORV_VARIANT {

// Folds under a rectangle of `box` positions whose anchor lies in it. False, and nothing is written, if the scratch
// memory is too small for that.
bool foldRectangle(const MaskFold& call, int32_t dataType, int32_t channels, OrvSize box, OrvPoint anchor);

}  // namespace ORV_VARIANT

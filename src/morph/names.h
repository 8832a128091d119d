// The names of morphology and rank filters, renamed for the variant and declared. A source has those of its own
// directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "morph/names.def"
#include "core/renamed.h"
#include "orvcv/morphology.h"
#include "orvcv/rank_filter.h"
#include "orvcv/morphology_replicate.h"
#include "orvcv/reconstruct.h"

// The names of distances and inpainting, renamed for the variant and declared. A source has those of its own
// directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "distance/names.def"
#include "core/renamed.h"
#include "orvcv/distance.h"
#include "orvcv/fast_marching.h"
#include "orvcv/inpaint.h"

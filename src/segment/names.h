// The names of segmentation and connected regions, renamed for the variant and declared. A source has those of its
// own directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "segment/names.def"
#include "core/renamed.h"
#include "orvcv/segmentation.h"
#include "orvcv/flood_fill.h"
#include "orvcv/labelling.h"

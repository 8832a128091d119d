// The names of borders and linear filters, renamed for the variant and declared. A source has those of its own
// directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "filter/names.def"
#include "core/renamed.h"
#include "orvcv/filter_pipeline.h"
#include "orvcv/filter_gaussian.h"
#include "orvcv/filter_fixed.h"

// The names of image arithmetic and statistics, renamed for the variant and declared. A source has those of its own
// directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "arith/names.def"
#include "core/renamed.h"
#include "orvcv/accumulate.h"
#include "orvcv/abs_diff.h"
#include "orvcv/statistics.h"
#include "orvcv/norm.h"

// The names of pyramids and motion, renamed for the variant and declared. A source has those of its own directory by
// itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "motion/names.def"
#include "core/renamed.h"
#include "orvcv/mixture.h"
#include "orvcv/optical_flow.h"
#include "orvcv/motion_history.h"
#include "orvcv/foreground.h"
#include "orvcv/pyramid.h"

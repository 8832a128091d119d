// The names of geometry and sub-pixel sampling, renamed for the variant and declared. A source has those of its own
// directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "geometry/names.def"
#include "core/renamed.h"
#include "orvcv/subpixel.h"
#include "orvcv/undistort.h"
#include "orvcv/super_resolution.h"

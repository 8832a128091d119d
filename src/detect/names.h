// The names of integral images and object detection, renamed for the variant and declared. A source has those of its
// own directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "detect/names.def"
#include "core/renamed.h"
#include "orvcv/integral.h"
#include "orvcv/haar.h"

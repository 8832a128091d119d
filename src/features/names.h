// The names of edges, corners and lines, renamed for the variant and declared. A source has those of its own
// directory by itself; headers that other directories read include this one.
#pragma once
#include "core/variant.h"
#include "core/rename.h"
#include "features/names.def"
#include "core/renamed.h"
#include "orvcv/canny.h"
#include "orvcv/hough.h"
#include "orvcv/peaks.h"
#include "orvcv/gradient_color.h"
#include "orvcv/corners.h"
#include "orvcv/line_suppression.h"
#include "orvcv/fastn.h"

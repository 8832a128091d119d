// What a test program tests: the shared library through its public header, or the objects of one variant, whose
// internal routines are visible too and whose vector width can be forced. Each test source is built all three ways.
#pragma once
#ifdef ORV_VARIANT
#include "core/variant.h"
#include "core/width.h"
#else
#include "orvcv.h"
#endif

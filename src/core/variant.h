// Symbol names of a variant.
//
// Every source is compiled twice, with ORV_VARIANT = u8_ and n8_. Sources use plain names; this header renames each
// name of the two lists in the object file, so `orviFoo` becomes the symbol `u8_orviFoo` and is still checked against
// its public prototype. C++ functions live in the namespace ORV_VARIANT or are static. Include this header before
// anything else that declares a listed name.
#pragma once

#define ORV_TEXT_(text) #text
#define ORV_TEXT(text) ORV_TEXT_(text)
#define ORV_GLUE_(left, right) left##right
#define ORV_GLUE(left, right) ORV_GLUE_(left, right)
#define ORV_RENAME(name) _Pragma(ORV_TEXT(redefine_extname name ORV_GLUE(ORV_VARIANT, name)))
#define ONE(name) ORV_RENAME(name)
#define TWO(name) ORV_RENAME(name)
#define SWAP(name) ORV_RENAME(name)
#define INTERNAL(name) ORV_RENAME(name)
#include "dispatch/manifest.def"
#include "dispatch/internal.def"
#undef ONE
#undef TWO
#undef SWAP
#undef INTERNAL

#include "orvcv.h"

// All C++ code that a variant shares between files stands in its namespace.
namespace ORV_VARIANT {}
using namespace ORV_VARIANT;

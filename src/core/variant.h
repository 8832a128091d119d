// Symbol names of a variant.
//
// Every source is compiled twice, with ORV_VARIANT = u8_ and n8_. Sources use plain names; the names of a directory,
// listed in its names.def, are renamed in the object file, so `orviFoo` becomes the symbol `u8_orviFoo` and is still
// checked against its public prototype. A source sees the names of core/ and of its own directory, and those of
// others whose headers it includes: so a new name recompiles one directory. C++ functions live in the namespace
// ORV_VARIANT or are static. Include this header before anything else that declares a listed name.
#pragma once

#define ORV_TEXT_(text) #text
#define ORV_TEXT(text) ORV_TEXT_(text)
#define ORV_GLUE_(left, right) left##right
#define ORV_GLUE(left, right) ORV_GLUE_(left, right)
#define ORV_RENAME(name) _Pragma(ORV_TEXT(redefine_extname name ORV_GLUE(ORV_VARIANT, name)))

#include "core/names.h"
#ifdef ORV_OWN_NAMES  // of the directory that is compiled or tested
#include ORV_OWN_NAMES
#endif

// All C++ code that a variant shares between files stands in its namespace.
namespace ORV_VARIANT {}
using namespace ORV_VARIANT;

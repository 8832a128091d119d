/* The widest vectors of this processor: 0 SSSE3 (16 bytes), 1 AVX2 (32), 2 AVX-512 (64). The word is filled while the
   library is relocated (width.c), before any of its code runs, and is read-only from then on. Test programs link
   width_forced.c in place of width.c and set it as they like. */
#pragma once
#include <stdint.h>
#ifdef __cplusplus
extern "C" {
#endif
extern intptr_t ownVectorWidth;
#ifdef __cplusplus
}
#endif

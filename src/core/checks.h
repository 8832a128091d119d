// Argument checks. A body states them in the contract's order; the first that fails returns its status from the body,
// before anything is written. All helpers are static: a weak symbol could be taken from the other variant.
#pragma once
#include <stdint.h>
#include "orvcv/types.h"

#define ORV_REQUIRE(condition, status) \
  do {                                 \
    if (!(condition)) return status;   \
  } while (0)

// Whether no pointer of the list is null.
template <class... Pointer>
static inline bool allSet(const Pointer*... pointer) {
  return (... && (pointer != nullptr));
}

// Sizes and products of sizes are 32 bits and wrap; comparisons with them are signed.
static inline int32_t wrapMul(int32_t a, int32_t b) { return (int32_t)((uint32_t)a * (uint32_t)b); }
static inline int32_t wrapAdd(int32_t a, int32_t b) { return (int32_t)((uint32_t)a + (uint32_t)b); }
template <class... Rest>
static inline int32_t wrapMul(int32_t a, int32_t b, Rest... rest) {
  return wrapMul(wrapMul(a, b), rest...);
}

// Bytes of a row of `width` pixels.
template <class T>
static inline int32_t rowBytes(int32_t width, int32_t channels = 1) {
  return wrapMul(width, channels, (int32_t)sizeof(T));
}

static inline bool validRoi(OrvSize roi) { return roi.width >= 1 && roi.height >= 1; }

// Whether each step is a whole number of elements of type T.
template <class T, class... Step>
static inline bool stepsAligned(Step... step) {
  return ((uint32_t)(... | step) & (sizeof(T) - 1)) == 0;
}

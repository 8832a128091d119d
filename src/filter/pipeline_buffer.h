// Buffers of the separable stages.
//
// A stage that can be threaded has, for each thread of the library, a work area of its own size, a slice of row
// pointers and a cache line. Our stages touch the work area or the slice alone, and less of them than there is: rows
// are reached through the caller's array.
#pragma once
#include <stddef.h>
#include "filter/names.h"
#include "core/bands.h"

namespace ORV_VARIANT {

// A size that grows by `slope` bytes a step. All sizes are 32-bit and wrap.
struct LinearSize {
  int32_t slope, rest;
  int32_t operator()(int32_t n) const { return wrapAdd(wrapMul(slope, n), rest); }
};

// Bytes of the slice of row pointers of one thread.
static inline int32_t pointerSlice(int32_t height, int32_t kernelSize) {
  return wrapMul(8, wrapAdd(height, kernelSize));
}

static inline int32_t threadedBufferSize(int32_t workArea, int32_t height, int32_t kernelSize) {
  return wrapMul(owncvGetMaxNumThreads(), wrapAdd(32, wrapAdd(pointerSlice(height, kernelSize), workArea)));
}

// When a stage works with a team.
enum class Team { never, byArea, byAreaAndKernel };
static inline bool usesTeam(Team team, OrvSize roi, int32_t kernelSize) {
  if (team == Team::never) return false;
  if (!areaReaches(roi, (int32_t)((uint32_t)owncvGetMaxNumThreads() << 15))) return false;
  return team == Team::byArea || runsepomp(kernelSize) != 0;
}

// Whether one of the first `count` entries of an array of row pointers is null.
template <class T>
static inline bool anyNull(const T* const* rows, int32_t count) {
  for (ptrdiff_t i = 0; i < count; ++i)
    if (!rows[i]) return true;
  return false;
}

}  // namespace ORV_VARIANT

// Thread and cache queries of the call frame.
#pragma once
#include "core/variant.h"
#include "core/checks.h"

extern "C" {
// Threads that the library may use.
int32_t owncvGetMaxNumThreads(void);
// Team size of the current parallel region, and the caller's number in it.
int32_t owncvGetNumThreads(void);
int32_t owncvGetIdThreads(void);
// Largest cache in bytes.
int32_t owncvGetCacheSize(void);
// Non-zero where threads are worthwhile: the processor cores, or 0 for one core.
int32_t runomp(void);
// The same for a separable filter: kernels of other sizes than 3 and 5 thread even on one core.
int32_t runsepomp(int32_t kernelSize);
}

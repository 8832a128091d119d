/* A core library for tests: it keeps the contract that the vision library needs and does what a test tells it.
 *
 * The target steered_core builds it as tests/lib/liborvcore.so.8.2, so a program that links it, or that is started with
 * tests/lib in LD_LIBRARY_PATH, gets it in place of the real one.
 *
 * Environment, read once when the library is loaded (numbers in C notation):
 *   STEER_FEATURES    word of orvGetEnabledCpuFeatures; default 0x10 (SSSE3 without MOVBE, hence the u8 variant)
 *   STEER_THREADS     library-wide thread count; default 2
 *   STEER_CORES       core count; default 2
 *   STEER_CACHE       largest cache in bytes; default 32 MiB; negative: the query fails and writes nothing
 *   STEER_FAIL_ALLOC  index of the allocation that fails, counted from 1; default none
 *
 * Memory: a block ends at a protected page, so an overrun faults at once. Its size decides its address: multiples of 64
 * are 64-byte aligned, odd sizes stand at odd addresses. It is filled with a pattern, the bytes between the page start
 * and the block are verified by orvFree, the page before that is protected, and a freed block is unmapped. A fault that
 * orvFree finds is reported on the standard error stream and aborts.
 *
 * All functions may be called from any thread.
 */
#ifndef STEERED_CORE_H
#define STEERED_CORE_H
#include <stdint.h>
#ifdef __cplusplus
extern "C" {
#endif

/* What ownGetNumThreads and orvGetNumCoresOnDie return from now on; a value below 1 counts as 1. */
void steerThreads(int32_t threads);
void steerCores(int32_t cores);

/* What orvGetMaxCacheSizeB stores from now on; negative: it returns an error and writes nothing. */
void steerCache(int32_t bytes);

/* Restarts the count of allocations and lets the kth one from here fail, once; 0: none. */
void steerFailAllocation(int32_t kth);

/* Blocks given and not freed. */
int32_t steeredLiveAllocations(void);

/* Calls of orvMalloc since the start or the last steerFailAllocation, failed ones included. */
int32_t steeredAllocations(void);

/* The thread count that STEER_THREADS gives, 0 if it is unset. */
int32_t steeredThreadsFromEnvironment(void);

/* Calls of this library since its start, in order, for example
 * "orvGetCpuFeatures(null, null); orvGetEnabledCpuFeatures(); ". Calls that no longer fit are left out. */
const char* steeredCallLog(void);

#ifdef __cplusplus
}
#endif
#endif

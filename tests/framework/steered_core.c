#define _GNU_SOURCE
#include "steered_core.h"
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#define API __attribute__((visibility("default")))
#pragma GCC visibility push(default)
int32_t orvGetCpuFeatures(uint64_t* features, uint32_t* registers);
uint64_t orvGetEnabledCpuFeatures(void);
int32_t ownGetNumThreads(void);
int32_t orvGetNumCoresOnDie(void);
int32_t orvGetMaxCacheSizeB(int32_t* size);
void* orvMalloc(int32_t bytes);
void orvFree(void* memory);
#pragma GCC visibility pop

enum { statusOk = 0, statusError = -2, pattern = 0xA5, registerCount = 4 };

static uint64_t featureWord;
static int32_t environmentThreads;
static _Atomic int32_t threadCount, coreCount, cacheBytes;
static _Atomic int32_t allocations, failing, live;

/* ---- environment ---- */

static long long numberOf(const char* name, long long otherwise) {
  const char* text = getenv(name);
  return text && *text ? strtoll(text, NULL, 0) : otherwise;
}

/* Runs before the vision library's init entry, because that library depends on this one. */
__attribute__((constructor)) static void readEnvironment(void) {
  featureWord = (uint64_t)numberOf("STEER_FEATURES", 0x10);
  environmentThreads = (int32_t)numberOf("STEER_THREADS", 0);
  steerThreads(environmentThreads ? environmentThreads : 2);
  steerCores((int32_t)numberOf("STEER_CORES", 2));
  steerCache((int32_t)numberOf("STEER_CACHE", 32 << 20));
  steerFailAllocation((int32_t)numberOf("STEER_FAIL_ALLOC", 0));
}

/* ---- call log ---- */

static char callLog[4096];
static _Atomic size_t callLogLength;

/* Each call takes its place in the text first; places beyond the end are left out. */
static void logCall(const char* call) {
  if (callLogLength >= sizeof callLog) return;
  const size_t length = strlen(call), place = atomic_fetch_add(&callLogLength, length);
  if (place + length < sizeof callLog) memcpy(callLog + place, call, length);
}

API const char* steeredCallLog(void) { return callLog; }

/* ---- answers ---- */

int32_t orvGetCpuFeatures(uint64_t* features, uint32_t* registers) {
  char call[64];
  snprintf(call, sizeof call, "orvGetCpuFeatures(%s, %s); ", features ? "features" : "null",
           registers ? "registers" : "null");
  logCall(call);
  if (features) *features = featureWord;
  if (registers) memset(registers, 0, registerCount * sizeof *registers);
  return statusOk;
}

uint64_t orvGetEnabledCpuFeatures(void) {
  logCall("orvGetEnabledCpuFeatures(); ");
  return featureWord;
}

int32_t ownGetNumThreads(void) {
  logCall("ownGetNumThreads(); ");
  return threadCount;
}

int32_t orvGetNumCoresOnDie(void) {
  logCall("orvGetNumCoresOnDie(); ");
  return coreCount;
}

int32_t orvGetMaxCacheSizeB(int32_t* size) {
  logCall("orvGetMaxCacheSizeB(size); ");
  const int32_t bytes = cacheBytes;
  if (bytes < 0) return statusError;
  *size = bytes;
  return statusOk;
}

/* ---- steering ---- */

API void steerThreads(int32_t threads) { threadCount = threads < 1 ? 1 : threads; }
API void steerCores(int32_t cores) { coreCount = cores < 1 ? 1 : cores; }
API void steerCache(int32_t bytes) { cacheBytes = bytes; }
API void steerFailAllocation(int32_t kth) {
  failing = kth;
  allocations = 0;
}
API int32_t steeredLiveAllocations(void) { return live; }
API int32_t steeredAllocations(void) { return allocations; }
API int32_t steeredThreadsFromEnvironment(void) { return environmentThreads; }

/* ---- memory ---- */

/* One mapping a block:
 *
 *   | record page, protected | slack (pattern) | block, `bytes` long | protected page |
 *   ^ record                 ^ page start                            ^ page end
 *
 * The slack is shorter than a page, so the record is found from the block's address alone. */
typedef struct {
  const void* block;
  size_t mapped;
} Record;

static void fault(const char* what, const void* block) {
  fprintf(stderr, "steered core library: %s, block %p\n", what, block);
  abort();
}

void* orvMalloc(int32_t bytes) {
  logCall("orvMalloc(bytes); ");
  if (atomic_fetch_add(&allocations, 1) + 1 == failing || bytes <= 0) return NULL;
  const size_t page = (size_t)sysconf(_SC_PAGESIZE);
  const size_t data = ((size_t)bytes + page - 1) / page * page;
  uint8_t* base = mmap(NULL, data + 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (base == MAP_FAILED) return NULL;
  uint8_t* const end = base + page + data;
  uint8_t* const block = end - bytes;
  memset(base + page, pattern, data);
  *(Record*)(void*)base = (Record){block, data + 2 * page};
  if (mprotect(base, page, PROT_NONE) || mprotect(end, page, PROT_NONE)) {
    munmap(base, data + 2 * page);
    return NULL;
  }
  atomic_fetch_add(&live, 1);
  return block;
}

void orvFree(void* memory) {
  logCall("orvFree(memory); ");
  if (!memory) return;
  const size_t page = (size_t)sysconf(_SC_PAGESIZE);
  uint8_t* const block = memory;
  uint8_t* const start = block - (uintptr_t)block % page;
  if (mprotect(start - page, page, PROT_READ)) fault("orvFree of a pointer that isn't a live block", memory);
  const Record record = *(const Record*)(const void*)(start - page);
  if (record.block != memory) fault("orvFree of a pointer that isn't the start of a block", memory);
  for (const uint8_t* slack = start; slack < block; slack++) {
    if (*slack != pattern) fault("bytes before a block were overwritten", memory);
  }
  munmap(start - page, record.mapped);
  atomic_fetch_sub(&live, 1);
}

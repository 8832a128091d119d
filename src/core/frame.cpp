#include "core/frame.h"
#include <omp.h>
#include "core/orvcore_contract.h"

int32_t owncvGetMaxNumThreads(void) { return ownGetNumThreads(); }

int32_t owncvGetNumThreads(void) { return omp_get_num_threads(); }

int32_t owncvGetIdThreads(void) { return omp_get_thread_num(); }

int32_t owncvGetCacheSize(void) {
  int32_t size = 0;
  orvGetMaxCacheSizeB(&size);
  return size;
}

int32_t runomp(void) {
  const int32_t cores = orvGetNumCoresOnDie();
  return cores == 1 ? 0 : cores;
}

int32_t runsepomp(int32_t kernelSize) { return (kernelSize == 3 || kernelSize == 5 ? 0 : 1) | runomp(); }

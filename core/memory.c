/* Memory that starts on a cache line. */
#include <stdlib.h>
#include "orvcore.h"

enum { cacheLine = 64 };

void* orvMalloc(int32_t bytes) {
  void* memory = NULL;
  if (bytes < 1 || posix_memalign(&memory, cacheLine, (size_t)bytes)) return NULL;
  return memory;
}

void orvFree(void* memory) { free(memory); }

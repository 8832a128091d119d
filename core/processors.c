/* Number of processors that the process may run on. */
#define _GNU_SOURCE
#include <sched.h>
#include <stdatomic.h>
#include <unistd.h>
#include "orvcore.h"

/* Room for the affinity mask: the kernel refuses a mask that is shorter than its own, and none has this many bits. */
enum { processorsAtMost = 65536 };

/* 0 until counted. */
static _Atomic int32_t processors;

/* Processors in the affinity mask of the process; where it can't be read, those that are online. */
static int32_t count(void) {
  cpu_set_t mask[processorsAtMost / CPU_SETSIZE];
  long n = sched_getaffinity(getpid(), sizeof mask, mask) == 0 ? CPU_COUNT_S(sizeof mask, mask) : 0;
  if (n < 1) n = sysconf(_SC_NPROCESSORS_ONLN);
  return n < 1 ? 1 : (int32_t)n;
}

/* The mask is read before any other library is initialised (the linker marks this one so): an OpenMP runtime that is
   told to bind its threads pins the first thread while it is loaded, and the mask would show one processor then. */
__attribute__((constructor)) static void countAtLoad(void) { atomic_store(&processors, count()); }

int32_t orvGetNumCoresOnDie(void) {
  int32_t n = atomic_load(&processors);
  if (!n) { /* called by an initialiser that ran even earlier */
    n = count();
    atomic_store(&processors, n);
  }
  return n;
}

/* The library-wide thread count. */
#include <stdatomic.h>
#include "orvcore.h"

/* 0 until the program sets it. */
static _Atomic int32_t chosen;

OrvStatus orvSetNumThreads(int32_t threads) {
  if (threads < 1 || threads > orvMaxThreads) return orvStatusBadArg;
  atomic_store(&chosen, threads);
  return orvStatusOk;
}

int32_t orvGetNumThreads(void) {
  int32_t threads = atomic_load(&chosen);
  if (!threads) threads = orvGetNumCoresOnDie();
  return threads < orvMaxThreads ? threads : orvMaxThreads;
}

int32_t ownGetNumThreads(void) { return orvGetNumThreads(); }

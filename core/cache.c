/* Size of the largest data cache. The processor is asked first: that works in every container and emulator. Where it
   doesn't tell (old or virtual processors), the operating system is asked. */
#include <cpuid.h>
#include <stdatomic.h>
#include <stdio.h>
#include <unistd.h>
#include "orvcore.h"

enum { levelsAtMost = 16, extendedFeatures = 0x80000001u, topologyExtensions = 1u << 22 };

static int64_t larger(int64_t a, int64_t b) { return a > b ? a : b; }

/* Largest of the caches that a leaf enumerates, one a sub-leaf; leaf 4 and its counterpart have the same layout:
 *   eax  4:0 kind: 0 end of list, 1 data, 2 instructions, 3 both
 *   ebx  31:22 ways - 1, 21:12 partitions - 1, 11:0 line bytes - 1
 *   ecx  sets - 1 */
static int64_t largestOfLeaf(uint32_t leaf) {
  int64_t largest = 0;
  for (uint32_t level = 0; level < levelsAtMost; level++) {
    uint32_t a, b, c, d;
    if (!__get_cpuid_count(leaf, level, &a, &b, &c, &d) || (a & 31) == 0) break;
    if ((a & 31) == 2) continue;
    const int64_t ways = (b >> 22) + 1, partitions = (b >> 12 & 0x3FF) + 1, line = (b & 0xFFF) + 1;
    largest = larger(largest, ways * partitions * line * ((int64_t)c + 1));
  }
  return largest;
}

/* Intel and its followers fill leaf 4; AMD fills leaf 0x8000001D if it says that it has it, older ones 0x80000006
   (second level in units of 1 KiB, third in units of 512 KiB). */
static int64_t fromProcessor(void) {
  uint32_t a, b, c, d;
  const int64_t largest = largestOfLeaf(4);
  if (largest > 0) return largest;
  if (__get_cpuid(extendedFeatures, &a, &b, &c, &d) && (c & topologyExtensions)) {
    const int64_t extended = largestOfLeaf(0x8000001Du);
    if (extended > 0) return extended;
  }
  if (!__get_cpuid(0x80000006u, &a, &b, &c, &d)) return 0;
  return larger((int64_t)(c >> 16) << 10, (int64_t)(d >> 18) << 19);
}

/* Largest of the caches of processor 0 in the files of the kernel, written as "32768K". */
static int64_t fromKernel(void) {
  int64_t largest = 0;
  for (int level = 0; level < levelsAtMost; level++) {
    char name[64];
    snprintf(name, sizeof name, "/sys/devices/system/cpu/cpu0/cache/index%d/size", level);
    FILE* file = fopen(name, "re");
    if (!file) break;
    long size = 0;
    char unit = 0;
    if (fscanf(file, "%ld%c", &size, &unit) >= 1) {
      largest = larger(largest, (int64_t)size << (unit == 'K' ? 10 : unit == 'M' ? 20 : 0));
    }
    fclose(file);
  }
  return largest;
}

static int64_t fromSystem(void) {
  int64_t largest = fromKernel();
  if (largest > 0) return largest;
  static const int names[] = {_SC_LEVEL1_DCACHE_SIZE, _SC_LEVEL2_CACHE_SIZE, _SC_LEVEL3_CACHE_SIZE,
                              _SC_LEVEL4_CACHE_SIZE};
  for (size_t i = 0; i < sizeof names / sizeof *names; i++) largest = larger(largest, sysconf(names[i]));
  return largest;
}

/* 0 until asked, -1 if nobody knows. */
static _Atomic int32_t cacheBytes;

OrvStatus orvGetMaxCacheSizeB(int32_t* size) {
  if (!size) return orvStatusNullPtr;
  int32_t bytes = atomic_load(&cacheBytes);
  if (!bytes) {
    int64_t largest = fromProcessor();
    if (largest <= 0) largest = fromSystem();
    bytes = largest <= 0 ? -1 : largest > INT32_MAX ? INT32_MAX : (int32_t)largest;
    atomic_store(&cacheBytes, bytes);
  }
  if (bytes < 0) return orvStatusError;
  *size = bytes;
  return orvStatusOk;
}

/* The core library of orvCV: what the processor is, how many threads to use, memory, and texts for statuses.
 *
 * The vision library asks these functions and no others. Programs use them to choose the number of threads, to narrow
 * the processor features, to allocate images on cache lines and to print statuses:
 *
 *   orvSetNumThreads(4);
 *   OrvStatus status = orviAbsDiff_8u_C1R(...);
 *   if (status != orvStatusOk) fprintf(stderr, "%s\n", orvGetStatusString(status));
 *
 * Every function may be called from any thread at any time, also several at once; none takes a lock. Nothing here
 * writes files or reads the environment.
 */
#ifndef ORVCORE_H
#define ORVCORE_H
#include <stdint.h>
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* ---- Processor features ---- */

/* Bits of a feature word. The bits of AVX and of all that builds on it are set only where the operating system saves
 * the wide registers, so a set bit always means that the instructions can be used. Bits not named here are zero. */
enum {
  orvCpuSse2 = 0x1,
  orvCpuSse3 = 0x2,
  orvCpuPopcnt = 0x4,
  orvCpuLzcnt = 0x8,
  orvCpuSsse3 = 0x10, /* needed by the vision library */
  orvCpuMovbe = 0x20, /* with orvCpuSsse3: the vision library takes its n8 variant, else u8 */
  orvCpuSse41 = 0x40,
  orvCpuSse42 = 0x80,
  orvCpuAes = 0x100,
  orvCpuPclmul = 0x200,
  orvCpuSha = 0x400,
  orvCpuBmi1 = 0x800,
  orvCpuBmi2 = 0x1000,
  orvCpuAvx = 0x2000,
  orvCpuF16c = 0x4000,
  orvCpuFma = 0x8000,
  orvCpuAvx2 = 0x10000,
  orvCpuVaes = 0x20000,
  orvCpuVpclmul = 0x40000,
  orvCpuAvx512f = 0x80000,
  orvCpuAvx512cd = 0x100000,
  orvCpuAvx512dq = 0x200000,
  orvCpuAvx512bw = 0x400000,
  orvCpuAvx512vl = 0x800000,
  orvCpuAvx512vbmi = 0x1000000,
  orvCpuAvx512vnni = 0x2000000
};

/* Tells what the processor offers. The processor is asked at the first call of a function that needs to know it; the
 * answer holds for the life of the process.
 *   features   receives the feature word; may be null
 *   registers  receives eax, ebx, ecx and edx of the processor's identification leaf 1, as they are; may be null
 * Returns orvStatusOk. */
OrvStatus orvGetCpuFeatures(uint64_t* features, uint32_t registers[4]);

/* Returns the features that are enabled: those the processor offers, without those that orvSetEnabledCpuFeatures left
 * out. */
uint64_t orvGetEnabledCpuFeatures(void);

/* Enables the features in a word and disables all others. Bits that the processor doesn't offer stay disabled; ~0 lifts
 * every restriction. Later calls of orvGetEnabledCpuFeatures see the change.
 *
 * The vision library chooses its variant once, while it is loaded. To steer that choice call this function before: from
 * a program that opens the vision library by dlopen, or from an initialiser of a library that is loaded earlier. A
 * vision library that is already loaded doesn't change. The width of its vectors doesn't depend on this word.
 * Returns orvStatusOk. */
OrvStatus orvSetEnabledCpuFeatures(uint64_t features);

/* ---- Threads ---- */

/* Largest thread count. Thresholds of the vision library are products of the count in 32 bits: this keeps them exact.
 */
enum { orvMaxThreads = 1024 };

/* Sets the largest number of threads that a call of the vision library uses, the caller's included.
 *
 * Sizes of scratch buffers depend on this number: don't change it between a GetBufferSize call and the call that uses
 * the buffer. Results never depend on it, unless a function says so.
 *   threads  1 .. orvMaxThreads
 * Returns orvStatusBadArg if threads is out of its range (the count stays as it was), else orvStatusOk. */
OrvStatus orvSetNumThreads(int32_t threads);

/* Returns the number of threads: the one set last or else the number of processors, as orvGetNumCoresOnDie tells, but
 * no more than orvMaxThreads. */
int32_t orvGetNumThreads(void);

/* The same, under the name by which the vision library asks. */
int32_t ownGetNumThreads(void);

/* Returns the number of processors that the process may run on, at least 1: those of the affinity mask, where hardware
 * threads of one core count one each. The mask is read once, when the library is loaded; later changes of it don't
 * matter. A program that opens the library by dlopen after its own threads were bound to processors sees the mask of
 * its first thread: it may set the thread count itself. */
int32_t orvGetNumCoresOnDie(void);

/* ---- Memory ---- */

/* Stores the size of the processor's largest data cache in bytes, at most 2^31 - 1.
 *   size  receives the size; isn't written on failure
 * Returns orvStatusNullPtr if size is null, orvStatusError if neither the processor nor the operating system tells a
 * cache, else orvStatusOk. */
OrvStatus orvGetMaxCacheSizeB(int32_t* size);

/* Allocates memory that starts on a multiple of 64 bytes. Its content is undefined; release it by orvFree.
 *   bytes  size; below 1 nothing is allocated
 * Returns the memory, or null if bytes is below 1 or memory is short. */
void* orvMalloc(int32_t bytes);

/* Releases memory that orvMalloc gave; null is allowed and does nothing. */
void orvFree(void* memory);

/* ---- Statuses ---- */

/* Returns a short English text, without a full stop or a line end, for a status of any function of either library, and
 * "unknown status" for any other value. The text is constant; it is never null. */
const char* orvGetStatusString(OrvStatus status);

#ifdef __cplusplus
}
#endif
#endif

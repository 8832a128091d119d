/* Processor features: what cpuid tells, as far as the operating system lets it be used, and the part of it that the
   program has enabled. */
#include <cpuid.h>
#include <stdatomic.h>
#include <stddef.h>
#include "orvcore.h"

/* The words of cpuid that hold feature bits. */
enum { leaf1Ecx, leaf1Edx, leaf7Ebx, leaf7Ecx, extendedEcx, wordCount };

/* Register sets that the operating system must save, as bits of the extended control register 0. */
enum { always = 0, ymm = 0x06, zmm = 0xE6 };

typedef struct {
  uint32_t feature;
  uint8_t word, bit; /* where cpuid tells it */
  uint8_t saved;     /* register sets without which it is useless */
} Feature;

static const Feature featureTable[] = {
    {orvCpuSse2, leaf1Edx, 26, always},    {orvCpuSse3, leaf1Ecx, 0, always},     {orvCpuPopcnt, leaf1Ecx, 23, always},
    {orvCpuLzcnt, extendedEcx, 5, always}, {orvCpuSsse3, leaf1Ecx, 9, always},    {orvCpuMovbe, leaf1Ecx, 22, always},
    {orvCpuSse41, leaf1Ecx, 19, always},   {orvCpuSse42, leaf1Ecx, 20, always},   {orvCpuAes, leaf1Ecx, 25, always},
    {orvCpuPclmul, leaf1Ecx, 1, always},   {orvCpuSha, leaf7Ebx, 29, always},     {orvCpuBmi1, leaf7Ebx, 3, always},
    {orvCpuBmi2, leaf7Ebx, 8, always},     {orvCpuAvx, leaf1Ecx, 28, ymm},        {orvCpuF16c, leaf1Ecx, 29, ymm},
    {orvCpuFma, leaf1Ecx, 12, ymm},        {orvCpuAvx2, leaf7Ebx, 5, ymm},        {orvCpuVaes, leaf7Ecx, 9, ymm},
    {orvCpuVpclmul, leaf7Ecx, 10, ymm},    {orvCpuAvx512f, leaf7Ebx, 16, zmm},    {orvCpuAvx512cd, leaf7Ebx, 28, zmm},
    {orvCpuAvx512dq, leaf7Ebx, 17, zmm},   {orvCpuAvx512bw, leaf7Ebx, 30, zmm},   {orvCpuAvx512vl, leaf7Ebx, 31, zmm},
    {orvCpuAvx512vbmi, leaf7Ecx, 1, zmm},  {orvCpuAvx512vnni, leaf7Ecx, 11, zmm},
};

/* Zero until the first detection; no 64-bit processor lacks SSE2, so a detected word is never zero. */
static _Atomic uint64_t detected;
static _Atomic uint64_t enabledMask = UINT64_MAX;

/* Register sets that the operating system saves; none if it doesn't use the instruction that tells. */
static uint32_t savedRegisters(uint32_t leaf1EcxWord) {
  uint32_t low, high;
  if (!(leaf1EcxWord & bit_OSXSAVE)) return 0;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

/* Asks the processor. A leaf that it doesn't have leaves its words zero. */
static uint64_t detect(void) {
  uint32_t words[wordCount] = {0};
  uint32_t a, b, c, d;
  if (__get_cpuid(1, &a, &b, &c, &d)) {
    words[leaf1Ecx] = c;
    words[leaf1Edx] = d;
  }
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d)) {
    words[leaf7Ebx] = b;
    words[leaf7Ecx] = c;
  }
  if (__get_cpuid(0x80000001u, &a, &b, &c, &d)) words[extendedEcx] = c;

  const uint32_t saved = savedRegisters(words[leaf1Ecx]);
  uint64_t features = 0;
  for (size_t i = 0; i < sizeof featureTable / sizeof *featureTable; i++) {
    const Feature* f = &featureTable[i];
    if ((words[f->word] >> f->bit & 1) && (saved & f->saved) == f->saved) features |= f->feature;
  }
  return features;
}

/* Several threads may detect at once: each finds and stores the same word. */
static uint64_t offered(void) {
  uint64_t features = atomic_load(&detected);
  if (!features) {
    features = detect();
    atomic_store(&detected, features);
  }
  return features;
}

OrvStatus orvGetCpuFeatures(uint64_t* features, uint32_t registers[4]) {
  const uint64_t word = offered();
  if (features) *features = word;
  if (registers) __cpuid(1, registers[0], registers[1], registers[2], registers[3]);
  return orvStatusOk;
}

uint64_t orvGetEnabledCpuFeatures(void) { return offered() & atomic_load(&enabledMask); }

OrvStatus orvSetEnabledCpuFeatures(uint64_t features) {
  atomic_store(&enabledMask, features);
  return orvStatusOk;
}

/* Fills ownVectorWidth by an indirect-function relocation: the word's "address" is what the resolver returns.

   The resolver runs while the library is being relocated: it may touch nothing but registers and stack, so it asks the
   processor directly and sanitizers stay out of it. The bfd linker and mold put the resolver's result in the word; gold
   and lld would put the address of a PLT entry there. */
#include <cpuid.h>
#include <stdint.h>

#define HAS_ALL(word, bits) (((word) & (bits)) == (bits))

enum { stateAvx = 0x06, stateAvx512 = 0xE6 }; /* registers that the operating system saves, as xgetbv tells */

__attribute__((used, no_sanitize("address", "thread", "undefined"))) static void (*resolveWidth(void))(void) {
  unsigned a, b, c, d, saved, high;
  uintptr_t width = 0;
  const unsigned avx2Base = bit_OSXSAVE | bit_AVX | bit_FMA | bit_F16C | bit_SSE4_1 | bit_SSE4_2 | bit_AES | bit_PCLMUL;
  const unsigned avx2 = bit_AVX2 | bit_BMI | bit_BMI2;
  const unsigned avx512 = bit_AVX512F | bit_AVX512VL | bit_AVX512DQ | bit_AVX512BW;
  if (__get_cpuid(1, &a, &b, &c, &d) && HAS_ALL(c, avx2Base)) {
    __asm__("xgetbv" : "=a"(saved), "=d"(high) : "c"(0));
    if (HAS_ALL(saved, stateAvx) && __get_cpuid_count(7, 0, &a, &b, &c, &d) && HAS_ALL(b, avx2)) {
      width = 1;
      if (HAS_ALL(saved, stateAvx512) && HAS_ALL(b, avx512)) width = 2;
    }
  }
  return (void (*)(void))width;
}

static void widthSymbol(void) __attribute__((ifunc("resolveWidth")));

extern void (*const ownVectorWidth)(void);
void (*const ownVectorWidth)(void) = widthSymbol;

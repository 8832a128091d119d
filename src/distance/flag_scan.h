// Search in rows of flag bytes, eight at a glance.
#pragma once
#include <stdint.h>
#include <string.h>
#include "distance/names.h"

namespace ORV_VARIANT {

// Bits of the eight bytes at `flags`.
static inline uint64_t eightFlags(const uint8_t* flags, uint8_t bits) {
  uint64_t word;
  memcpy(&word, flags, 8);
  return word & (bits * 0x0101010101010101u);
}

// The first index in [i, end), or the last in [0, end), whose byte has a bit of `bits`; else `end`, or -1.
static inline ptrdiff_t nextWith(uint8_t bits, const uint8_t* flags, ptrdiff_t i, ptrdiff_t end) {
  for (; i + 8 <= end; i += 8)
    if (const uint64_t word = eightFlags(flags + i, bits)) return i + __builtin_ctzll(word) / 8;
  while (i < end && !(flags[i] & bits)) ++i;
  return i;
}
static inline ptrdiff_t lastWith(uint8_t bits, const uint8_t* flags, ptrdiff_t end) {
  for (; end >= 8; end -= 8)
    if (const uint64_t word = eightFlags(flags + end - 8, bits)) return end - 1 - __builtin_clzll(word) / 8;
  while (--end >= 0 && !(flags[end] & bits)) {
  }
  return end;
}

}  // namespace ORV_VARIANT

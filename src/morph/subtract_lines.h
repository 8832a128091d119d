// Differences of lines and of rows of packed bits.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "morph/names.h"

namespace ORV_VARIANT {

// dst[x] = a[x] - b[x] for 0 <= x < elements, at any addresses: saturated in integers, at least +0 in floats. dst may
// be a or b.
using SubtractLines = void (*)(const uint8_t* a, const uint8_t* b, uint8_t* dst, ptrdiff_t elements);
SubtractLines subtractLinesOf(int32_t dataType);

// The same of `count` bits from the given ones on: a and not b. Other bits of dst keep their value; dst may be a or b
// at the same bit.
void subtractBits(const uint8_t* a, ptrdiff_t aBit, const uint8_t* b, ptrdiff_t bBit, uint8_t* dst, ptrdiff_t dstBit,
                  ptrdiff_t count);

}  // namespace ORV_VARIANT

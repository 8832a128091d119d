// The vector kernel of packed bits: the AND or OR of shifted rows.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "core/variant.h"

namespace ORV_VARIANT {

// Positions of a mask whose columns select the same rows: the rows are folded first, then the result is shifted right
// by each of the shifts, 0 to 63 bits.
struct BitGroup {
  int32_t firstRow, rowCount;
  int32_t firstShift, shiftCount;
};

struct BitFold {
  const BitGroup* groups;
  int32_t groupCount;
  const uint8_t* const* rows;  // byte 0 of each row of each group; 8 bytes are read beyond the bits that count
  const uint8_t* shifts;
};

// Bits firstBit .. firstBit + bits - 1 of dst become the fold; 0 <= firstBit < 8. Other bits keep their value.
// `combine`: the fold takes in what stands in dst.
using FoldBits = void (*)(const BitFold& fold, uint8_t* dst, int32_t firstBit, ptrdiff_t bits, bool combine);

// The form for this processor: AND, or OR to dilate.
FoldBits foldBitsOf(bool dilate);

}  // namespace ORV_VARIANT

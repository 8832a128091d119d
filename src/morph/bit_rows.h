// The vector kernel of packed bits: the AND or OR of shifted rows.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "morph/names.h"

namespace ORV_VARIANT {

// Positions of a mask whose columns select the same rows: the rows are folded first, then the result is shifted right
// by each of the shifts, 0 to 63 bits.
struct BitGroup {
  int32_t firstRow, rowCount;
  int32_t firstShift, shiftCount;
};

// One or two rows of results, whose positions lie at the same place of each their rows: two share half of the work.
struct BitFold {
  const BitGroup* groups;
  int32_t groupCount;
  const uint8_t* const* rows[2];  // for each result, byte 0 of each row of each group; up to 24 bytes are read behind
                                  // the last that counts
  const uint8_t* shifts;
  int32_t results;
};

// Bits firstBit .. firstBit + bits - 1 of each dst become the fold; 0 <= firstBit < 8. Other bits keep their value.
// `combine`: the fold takes in what stands in dst.
using FoldBits = void (*)(const BitFold& fold, uint8_t* const* dst, int32_t firstBit, ptrdiff_t bits, bool combine);

// The form for this processor: AND, or OR to dilate.
FoldBits foldBitsOf(bool dilate);

}  // namespace ORV_VARIANT

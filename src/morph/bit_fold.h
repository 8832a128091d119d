// The fold of a region of packed bits under a mask.
//
// Theory of operation. Pixel p of a row is bit (offset + p) & 7 of byte (offset + p) >> 3, the least significant first.
// A column of the mask is a shift of the row, the same for all words of it, so a word of 64 results takes a few
// operations a position. Rows are staged in a ring with the pixels beyond the sides of the region filled in; whole
// bytes are copied, so a row keeps its bit phase, and the difference to the phase of the destination goes into the
// shifts. Columns of the mask that select the same rows share the fold of these rows: a rectangle takes one fold of
// each row and one shift of each column.
//
// The region is worked on in strips of whole bytes of the destination, as wide as the scratch memory allows.
//
// Limitations. src and dst don't overlap. Not more than scratchBytes bytes are touched, wherever they start.
#pragma once
#include "morph/names.h"
#include "morph/morph_state.h"

namespace ORV_VARIANT {

struct BitMaskFold {
  const uint8_t* src;
  int32_t srcStep, srcBit;
  uint8_t* dst;
  int32_t dstStep, dstBit;
  OrvSize roi;
  int32_t sides;  // in memory; the others repeat the nearest pixel
  bool dilate;
  uint8_t* scratch;
  ptrdiff_t scratchBytes;
};

// Folds under the mask of a record of packed bits. An empty mask copies.
void foldBitsUnderMask(const BitMaskFold& call, const OrvMorphState& state);

}  // namespace ORV_VARIANT

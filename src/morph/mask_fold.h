// The fold of a region under any mask: the driver of erosion and dilation where the separable filter doesn't serve.
//
// Theory of operation. A mask is a set of runs of selected positions. The rows around the row of the result stand in a
// ring, each extended beyond the sides of the region; a result is the fold of one line for each position, each line a
// row of the ring from a column on. Where several rows of the mask have runs of one length, the fold of every window of
// that length is worth a line of its own, made once a row:
//
//     mask        lines of a row            the fold of a row
//     . x x x .   s  the row                t[1] of row 0
//     x x x x x   t  windows of 3, from s   u[0] of rows 1, 2, 3
//     x x x x x   u  windows of 5, from t   t[1] of row 4
//     x x x x x
//     . x x x .   5 lines in place of 21
//
// A line is made from the longest shorter one, by at most four overlapping windows; so long runs cost the logarithm of
// their length. The driver moves bytes; elements are known to the kernel of fold_lines.h alone.
//
// The region is worked on in strips of columns, as wide as the scratch memory and the first cache allow. A mask that
// is too wide even for strips of one column is folded pixel by pixel from the image, without scratch.
//
// Limitations. src and dst don't overlap. Not more than scratchBytes bytes are touched, wherever they start.
#pragma once
#include "morph/names.h"
#include "morph/morph_state.h"

namespace ORV_VARIANT {

struct MaskFold {
  const void* src;
  int32_t srcStep;
  void* dst;
  int32_t dstStep;
  OrvSize roi;
  int32_t sides;  // in memory; the others repeat the nearest pixel
  bool dilate;
  uint8_t* scratch;
  ptrdiff_t scratchBytes;
};

// Folds under the mask of a record that selects something, of any type but packed bits.
void foldUnderMask(const MaskFold& call, const OrvMorphState& state);

}  // namespace ORV_VARIANT

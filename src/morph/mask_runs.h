// A mask as runs of selected positions, and which lengths of runs are worth a line of their own.
#pragma once
#include "morph/names.h"
#include "morph/morph_state.h"

namespace ORV_VARIANT {

// The bounding box of what a mask selects; `left` and `top` from the pixel of the result.
struct MaskBox {
  int32_t left, top, columns, rows;
  const uint8_t* mask;  // its first position, null where all is selected
  int32_t maskWidth;

  // The first run of a row at or behind column `from`: first column and end; end is `from` if there is none.
  struct Run {
    int32_t start, end;
  };
  Run runFrom(int32_t row, int32_t from) const {
    if (!mask) return {from, columns};
    const uint8_t* const line = mask + (ptrdiff_t)row * maskWidth;
    int32_t start = from;
    while (start < columns && !line[start]) ++start;
    if (start == columns) return {from, from};
    int32_t end = start;
    while (end < columns && line[end]) ++end;
    return {start, end};
  }
};

static inline MaskBox boxOf(const OrvMorphState& state) {
  if (state.shapeKind == orvMorphRectangle && state.shapeDesc) {
    const OrvMorphShape shape = readMorphShape(state);
    return {-shape.boxAnchorX, -shape.boxAnchorY, shape.boxWidth, shape.boxHeight, nullptr, 0};
  }
  int32_t left = state.maskWidth, right = 0, top = state.maskHeight, bottom = 0;
  for (int32_t y = 0; y < state.maskHeight; ++y)
    for (int32_t x = 0; x < state.maskWidth; ++x) {
      if (!state.maskCopy[(ptrdiff_t)y * state.maskWidth + x]) continue;
      if (x < left) left = x;
      if (x >= right) right = x + 1;
      if (y < top) top = y;
      bottom = y + 1;
    }
  return {left - state.anchorX,
          top - state.anchorY,
          right - left,
          bottom - top,
          state.maskCopy + (ptrdiff_t)top * state.maskWidth + left,
          state.maskWidth};
}

// Lengths of runs that have a line of their own, rising; each line is made from the one before, the first from the row
// itself, which is a line of length 1.
struct RunLines {
  static constexpr int32_t most = 16;
  int32_t count = 0;
  int32_t length[most];

  int32_t base(int32_t line) const { return line == 0 ? 1 : length[line - 1]; }
  // The line of a length, -1 if it has none.
  int32_t find(int32_t wanted) const {
    for (int32_t i = 0; i < count; ++i)
      if (length[i] == wanted) return i;
    return -1;
  }
};

// Reads and writes of making a line from one of `from`, in half reads; a write counts as a read and a half.
static inline int64_t lineCost(int64_t from, int64_t length) {
  int64_t cost = 3;
  for (; length > 4 * from; from *= 4) cost += 2 * 4 + 3;
  return cost + 2 * ((length + from - 1) / from);
}

// The chain of lines with the least cost in all: of making them, and of reading the runs, a run with a line at once,
// others position by position. Lengths beyond the first few different ones have no line.
static inline RunLines chooseLines(const MaskBox& box) {
  int32_t length[RunLines::most + 1] = {1}, count = 1;
  int64_t uses[RunLines::most + 1] = {0};
  for (int32_t y = 0; y < box.rows; ++y)
    for (MaskBox::Run run = box.runFrom(y, 0); run.end > run.start; run = box.runFrom(y, run.end)) {
      const int32_t wanted = run.end - run.start;
      int32_t i = 0;
      while (i < count && length[i] < wanted) ++i;
      if (i < count && length[i] == wanted) {
        ++uses[i];
      } else if (count <= RunLines::most) {
        for (int32_t k = count++; k > i; --k) length[k] = length[k - 1], uses[k] = uses[k - 1];
        length[i] = wanted, uses[i] = 1;
      }
    }
  // best[i]: the least cost of the lengths up to i if i has a line, before[i] the line that it's made from. Entry 0 is
  // the row itself.
  int64_t best[RunLines::most + 1] = {2 * uses[0]};
  int32_t before[RunLines::most + 1] = {-1}, last = 0;
  int64_t least = INT64_MAX;
  for (int32_t i = 0; i < count; ++i) {
    for (int32_t from = 0; from < i; ++from) {
      int64_t cost = best[from] + lineCost(length[from], length[i]) + 2 * uses[i];
      for (int32_t k = from + 1; k < i; ++k) cost += 2 * uses[k] * length[k];
      if (from == 0 || cost < best[i]) best[i] = cost, before[i] = from;
    }
    int64_t whole = best[i];
    for (int32_t k = i + 1; k < count; ++k) whole += 2 * uses[k] * length[k];
    if (whole < least) least = whole, last = i;
  }
  RunLines lines;
  for (int32_t i = last; i > 0; i = before[i]) ++lines.count;
  for (int32_t i = last, at = lines.count; i > 0; i = before[i]) lines.length[--at] = length[i];
  return lines;
}

}  // namespace ORV_VARIANT

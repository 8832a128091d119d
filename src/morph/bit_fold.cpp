// The driver of the fold of packed bits: see bit_fold.h.
#include "morph/bit_fold.h"
#include "core/scratch.h"
#include "filter/border_copy.h"
#include "filter/border_pixels.h"
#include "filter/copy_window.h"
#include "morph/bit_rows.h"
#include "morph/mask_runs.h"
#include "morph/row_window.h"

namespace {

enum : int32_t { mostGroups = 64, mostRows = 512, mostShifts = 256, rowPadding = 32, rowAlignment = 16 };

// The groups of a mask, or as many as fit at a time.
struct GroupWalk {
  const MaskBox& box;
  ptrdiff_t firstShift;  // of the mask's first column
  int32_t column = 0, row = 0;

  int32_t groupCount, rowCount, shiftCount;
  BitGroup group[mostGroups];
  int32_t groupColumn[mostGroups];  // the first of a group's columns, -1 of one that has not all of its rows
  int32_t maskRow[mostRows];        // the row of each entry of a row list
  ptrdiff_t byte[mostRows];         // where in that row the group's bits begin
  uint8_t shift[mostShifts];

  GroupWalk(const MaskBox& b, ptrdiff_t shiftOfFirst) : box(b), firstShift(shiftOfFirst) {}

  bool ended() const { return column >= box.columns; }
  bool selected(int32_t y, int32_t x) const { return !box.mask || box.mask[(ptrdiff_t)y * box.maskWidth + x]; }
  bool sameRows(int32_t a, int32_t b) const {
    for (int32_t y = 0; box.mask && y < box.rows; ++y)
      if (selected(y, a) != selected(y, b)) return false;
    return true;
  }

  // Adds the present column to the last group if it is whole, of its kind and not too far from it.
  bool joins() {
    if (groupCount == 0 || groupColumn[groupCount - 1] < 0 || !sameRows(groupColumn[groupCount - 1], column))
      return false;
    BitGroup& last = group[groupCount - 1];
    const ptrdiff_t shiftBy = firstShift + column - 8 * byte[last.firstRow];
    if (shiftBy > 63) return false;
    shift[shiftCount++] = (uint8_t)shiftBy;
    ++last.shiftCount;
    return true;
  }

  void fill() {
    groupCount = rowCount = shiftCount = 0;
    for (; column < box.columns; ++column, row = 0) {
      if (groupCount == mostGroups || shiftCount == mostShifts) return;
      if (row == 0 && joins()) continue;
      const ptrdiff_t at = firstShift + column;
      BitGroup g = {rowCount, 0, shiftCount, 1};
      const bool fromTop = row == 0;
      for (; row < box.rows; ++row) {
        if (!selected(row, column)) continue;
        if (rowCount == mostRows) break;
        maskRow[rowCount] = row, byte[rowCount++] = at >> 3, ++g.rowCount;
      }
      if (g.rowCount > 0) {
        shift[shiftCount++] = (uint8_t)(at & 7);
        groupColumn[groupCount] = fromTop && row == box.rows ? column : -1;
        group[groupCount++] = g;
      }
      if (row < box.rows) return;
    }
  }
};

// Sets `count` bits from bit `first` on; up to 8 bytes behind them are read and written back.
void setBits(uint8_t* row, ptrdiff_t first, ptrdiff_t count, uint32_t value) {
  for (; count > 0; first += 56, count -= 56) {
    const uint64_t mask = ((1ull << (count < 56 ? count : 56)) - 1) << (first & 7);
    uint64_t word;
    memcpy(&word, row + (first >> 3), 8);
    word = value ? word | mask : word & ~mask;
    memcpy(row + (first >> 3), &word, 8);
  }
}

uint32_t bitAt(const uint8_t* row, ptrdiff_t bit) { return (uint32_t)row[bit >> 3] >> (bit & 7) & 1; }

struct BitFolder {
  const BitMaskFold& call;
  const MaskBox box;
  const FoldBits fold;
  const RowWindow window;

  const uint8_t* source(ptrdiff_t y) const { return raw(Plane<const uint8_t>{call.src, call.srcStep}.row(y)); }
  uint8_t* result(ptrdiff_t y) const { return raw(Plane<uint8_t>{call.dst, call.dstStep}.row(y)); }
  ptrdiff_t rowBytesFor(ptrdiff_t width) const {
    return (((15 + width + box.columns) >> 3) + rowPadding + rowAlignment - 1) & -(ptrdiff_t)rowAlignment;
  }

  void foldStrip(ptrdiff_t first, ptrdiff_t width, const uint8_t** slots, const uint8_t** list, uint8_t* ring) const;
  void foldPixels() const;
  void run() const;
};

// Pixels first .. first + width - 1 of each row. `first` is 0 or begins a byte of the destination.
void BitFolder::foldStrip(ptrdiff_t first, ptrdiff_t width, const uint8_t** slots, const uint8_t** list,
                          uint8_t* ring) const {
  const bool left = call.sides & orvBorderInMemLeft, right = call.sides & orvBorderInMemRight;
  const WindowSpan span = splitWindow(first + box.left, width + box.columns - 1, call.roi.width, left, right);
  const int32_t dstPhase = (int32_t)((call.dstBit + first) & 7);
  // The bit of a staged row at which its first pixel stands: in the phase of the source, not below the destination's.
  const ptrdiff_t phase = (call.srcBit + span.p) & 7, start = phase < dstPhase ? phase + 8 : phase;
  const ptrdiff_t runBit = start + span.before, sourceBit = call.srcBit + span.p + span.before;
  const ptrdiff_t runBytes = ((sourceBit + span.run - 1) >> 3) - (sourceBit >> 3) + 1, rowBytes = rowBytesFor(width);

  GroupWalk groups(box, start - dstPhase);
  groups.fill();
  const bool whole = groups.ended();
  window.forEachRow(
      [&](ptrdiff_t row, ptrdiff_t slot) {
        uint8_t* const staged = ring + slot * rowBytes;
        const uint8_t* const s = source(row);
        if (span.run > 0) copyRun(staged + (runBit >> 3), s + (sourceBit >> 3), runBytes);
        setBits(staged, start, span.before, bitAt(s, call.srcBit));
        setBits(staged, runBit + span.run, span.behind, bitAt(s, (ptrdiff_t)call.srcBit + call.roi.width - 1));
      },
      [&](ptrdiff_t i, ptrdiff_t, ptrdiff_t slot) { slots[i] = ring + slot * rowBytes; },
      [&](ptrdiff_t y) {
        uint8_t* const dst = result(y) + ((call.dstBit + first) >> 3);
        for (bool more = false;; more = true) {
          for (int32_t k = 0; k < groups.rowCount; ++k) list[k] = slots[groups.maskRow[k]] + groups.byte[k];
          fold({groups.group, groups.groupCount, list, groups.shift}, dst, dstPhase, width, more);
          if (groups.ended()) break;
          groups.fill();
        }
        if (whole) return;
        groups.column = groups.row = 0;
        groups.fill();
      });
}

// Without scratch: pixel by pixel, up to the first position that decides.
void BitFolder::foldPixels() const {
  const bool left = call.sides & orvBorderInMemLeft, right = call.sides & orvBorderInMemRight;
  const auto pixel = [&](ptrdiff_t x, ptrdiff_t y) {
    for (int32_t i = 0; i < box.rows; ++i)
      for (MaskBox::Run run = box.runFrom(i, 0); run.end > run.start; run = box.runFrom(i, run.end))
        for (ptrdiff_t j = run.start; j < run.end; ++j) {
          const ptrdiff_t column = borderIndex(orvBorderRepl, x + box.left + j, call.roi.width, left, right);
          if (bitAt(source(window.imageRow(y + box.top + i)), call.srcBit + column) == call.dilate) return call.dilate;
        }
    return !call.dilate;
  };
  for (ptrdiff_t y = 0; y < call.roi.height; ++y)
    for (ptrdiff_t x = 0; x < call.roi.width; ++x) {
      const ptrdiff_t bit = call.dstBit + x;
      uint8_t& byte = result(y)[bit >> 3];
      byte = (uint8_t)((byte & ~(1u << (bit & 7))) | (uint32_t)pixel(x, y) << (bit & 7));
    }
}

void BitFolder::run() const {
  const ptrdiff_t tableBytes = (box.rows + (ptrdiff_t)sizeof(uint8_t*)) * (ptrdiff_t)sizeof(uint8_t*);
  const ptrdiff_t bytes = (call.scratchBytes - tableBytes - rowAlignment) / box.rows & -(ptrdiff_t)rowAlignment;
  // The widest strip that the ring has room for: the inverse of rowBytesFor().
  ptrdiff_t strip = 8 * (bytes - rowPadding) - 15 - box.columns;
  if (strip < 8) return foldPixels();
  Scratch scratch{call.scratch};
  const auto** slots = scratch.take<const uint8_t*>(box.rows, alignof(uint8_t*));
  uint8_t* const ring = scratch.take<uint8_t>(0, rowAlignment);
  const uint8_t* list[mostRows];
  const ptrdiff_t width = call.roi.width, toByte = -(ptrdiff_t)call.dstBit & 7;
  strip &= -8;
  for (ptrdiff_t x = 0, next; x < width; x = next) {
    next = x == 0 && strip < width && toByte > 0 ? toByte : x + strip;
    foldStrip(x, (next < width ? next : width) - x, slots, list, ring);
  }
}

}  // namespace

void ORV_VARIANT::foldBitsUnderMask(const BitMaskFold& call, const OrvMorphState& state) {
  if (state.shapeKind == orvMorphEmpty) {
    ownorviCopyReplicateBorder_1u_C1R(call.src, call.srcStep, call.srcBit, call.roi, call.dst, call.dstStep,
                                      call.dstBit, call.roi, 0, 0);
    return;
  }
  const MaskBox box = boxOf(state);
  BitFolder{call,
            box,
            foldBitsOf(call.dilate),
            {call.roi.height, box.top, box.rows, (call.sides & orvBorderInMemTop) != 0,
             (call.sides & orvBorderInMemBottom) != 0}}
      .run();
}

// The driver of the fold under a mask: see mask_fold.h.
#include "morph/mask_fold.h"
#include "core/scratch.h"
#include "filter/border.h"
#include "filter/copy_window.h"
#include "morph/fold_lines.h"
#include "morph/mask_runs.h"
#include "morph/row_window.h"

namespace {

enum : ptrdiff_t { mostEntries = 512, lineAlignment = 64, cachedBytes = 32768, leastStripBytes = 512 };

// A line of a fold: which row or lines of a row, and where in it.
struct Entry {
  int32_t base;
  ptrdiff_t offset;
};

// Walks over all lines of a mask, in pieces.
struct EntryWalk {
  const MaskBox& box;
  const RunLines& lines;
  ptrdiff_t lineBytes, pixelBytes;
  int32_t row = 0, column = 0;

  bool ended() const { return row == box.rows; }

  // As many as fit into the table.
  ptrdiff_t fill(Entry* table) {
    ptrdiff_t count = 0;
    while (row < box.rows) {
      const MaskBox::Run run = box.runFrom(row, column);
      if (run.end == run.start) {
        ++row, column = 0;
        continue;
      }
      const int32_t line = lines.find(run.end - run.start);
      if (count == mostEntries) return count;
      if (line >= 0) {
        table[count++] = {2 * row + 1, line * lineBytes + run.start * pixelBytes};
        column = run.end;
      } else {
        for (column = run.start; column < run.end && count < mostEntries; ++column)
          table[count++] = {2 * row, column * pixelBytes};
      }
      // Behind the last row there's nothing to come back for.
      if (column == box.columns) ++row, column = 0;
    }
    return count;
  }
};

struct Folder {
  const MaskFold& call;
  const OrvMorphState& state;
  const MaskBox box;
  const RowWindow window;
  const FoldLines fold;
  const ptrdiff_t pixelBytes;
  const bool bounded;
  RunLines lines;

  Folder(const MaskFold& c, const OrvMorphState& s)
      : call(c),
        state(s),
        box(boxOf(s)),
        window{c.roi.height, box.top, box.rows, (c.sides & orvBorderInMemTop) != 0,
               (c.sides & orvBorderInMemBottom) != 0},
        fold(foldLinesOf(s.dataType, c.dilate)),
        pixelBytes((ptrdiff_t)s.channels * morphElementBytes(s.dataType)),
        bounded(s.shapeKind == orvMorphArbitrary),
        lines(chooseLines(box)) {}

  ptrdiff_t elements(ptrdiff_t pixels) const { return pixels * state.channels; }
  ptrdiff_t sourceColumn(ptrdiff_t x) const {
    return borderIndex(orvBorderRepl, x, call.roi.width, call.sides & orvBorderInMemLeft,
                       call.sides & orvBorderInMemRight);
  }
  const uint8_t* pixel(ptrdiff_t x, ptrdiff_t y) const {
    return raw(Plane<const uint8_t>{(const uint8_t*)call.src, call.srcStep}.row(y)) + x * pixelBytes;
  }
  uint8_t* result(ptrdiff_t x, ptrdiff_t y) const {
    return raw(Plane<uint8_t>{(uint8_t*)call.dst, call.dstStep}.row(y)) + x * pixelBytes;
  }

  ptrdiff_t stripFor(ptrdiff_t bytes) const {
    const ptrdiff_t lineBytes = bytes / (box.rows * (1 + (ptrdiff_t)lines.count)) & -lineAlignment;
    return lineBytes / pixelBytes - (box.columns - 1);
  }

  void run();
  void foldStrip(ptrdiff_t first, ptrdiff_t width, const uint8_t** bases, uint8_t* ring, ptrdiff_t lineBytes) const;
  void stageRow(ptrdiff_t y, ptrdiff_t first, ptrdiff_t length, uint8_t* dst) const;
  void makeLines(const uint8_t* row, ptrdiff_t length, uint8_t* dst, ptrdiff_t lineBytes) const;
  void foldPixels() const;
};

// The pixels first .. first + length - 1 of what stands for a row.
void Folder::stageRow(ptrdiff_t y, ptrdiff_t first, ptrdiff_t length, uint8_t* dst) const {
  const OrvSize row = {call.roi.width, 1}, staged = {(int32_t)length, 1};
  copyWindow({pixel(0, y),
              call.srcStep,
              row,
              dst,
              call.srcStep,
              staged,
              {(int32_t)first, 0},
              orvBorderRepl,
              call.sides,
              nullptr,
              (int32_t)pixelBytes});
}

// All lines of a row of `length` pixels.
void Folder::makeLines(const uint8_t* row, ptrdiff_t length, uint8_t* dst, ptrdiff_t lineBytes) const {
  for (int32_t i = 0; i < lines.count; ++i, dst += lineBytes) {
    ptrdiff_t from = lines.base(i), wanted = lines.length[i];
    for (; wanted > 4 * from; from *= 4, row = dst) {
      const ptrdiff_t distance = from * pixelBytes;
      const uint8_t* const four[] = {row, row + distance, row + 2 * distance, row + 3 * distance};
      fold(four, 4, dst, elements(length - 4 * from + 1), false);
    }
    const uint8_t* parts[4];
    ptrdiff_t count = 0;
    for (ptrdiff_t at = 0; at < wanted - from; at += from) parts[count++] = row + at * pixelBytes;
    parts[count++] = row + (wanted - from) * pixelBytes;
    fold(parts, count, dst, elements(length - wanted + 1), false);
    row = dst;
  }
}

// Columns first .. first + width - 1 of the region, from top to bottom.
void Folder::foldStrip(ptrdiff_t first, ptrdiff_t width, const uint8_t** bases, uint8_t* ring,
                       ptrdiff_t lineBytes) const {
  const ptrdiff_t from = first + box.left, length = width + box.columns - 1;
  const bool staged = sourceColumn(from) != from || sourceColumn(from + length - 1) != from + length - 1;
  const ptrdiff_t slotBytes = (staged + (ptrdiff_t)lines.count) * lineBytes;
  EntryWalk walk{box, lines, lineBytes, pixelBytes};
  Entry entries[mostEntries];
  ptrdiff_t count = walk.fill(entries);
  const bool whole = walk.ended();
  const uint8_t* list[mostEntries + 1];

  window.forEachRow(
      [&](ptrdiff_t row, ptrdiff_t slot) {
        uint8_t* const held = ring + slot * slotBytes;
        if (staged) stageRow(row, from, length, held);
        makeLines(staged ? held : pixel(from, row), length, held + staged * lineBytes, lineBytes);
      },
      [&](ptrdiff_t i, ptrdiff_t row, ptrdiff_t slot) {
        const uint8_t* const held = ring + slot * slotBytes;
        bases[2 * i] = staged ? held : pixel(from, row);
        bases[2 * i + 1] = held + staged * lineBytes;
      },
      [&](ptrdiff_t y) {
        uint8_t* const dst = result(first, y);
        for (bool more = false;; more = true) {
          ptrdiff_t n = 0;
          if (more) list[n++] = dst;
          for (ptrdiff_t k = 0; k < count; ++k) list[n++] = bases[entries[k].base] + entries[k].offset;
          fold(list, n, dst, elements(width), bounded);
          if (walk.ended()) break;
          count = walk.fill(entries);
        }
        if (whole) return;
        walk.row = walk.column = 0;
        count = walk.fill(entries);
      });
}

// Without scratch: the list of a pixel's window, pixel after pixel.
void Folder::foldPixels() const {
  const RunLines none{};
  Entry entries[mostEntries];
  const uint8_t* list[mostEntries + 1];
  for (ptrdiff_t y = 0; y < call.roi.height; ++y)
    for (ptrdiff_t x = 0; x < call.roi.width; ++x) {
      EntryWalk walk{box, none, 0, 1};
      ptrdiff_t n = 0;
      while (!walk.ended()) {
        const ptrdiff_t count = walk.fill(entries);
        for (ptrdiff_t k = 0; k < count; ++k)
          list[n++] =
              pixel(sourceColumn(x + box.left + entries[k].offset), window.imageRow(y + box.top + entries[k].base / 2));
        fold(list, n, result(x, y), state.channels, bounded);
        list[0] = result(x, y), n = 1;
      }
    }
}

void Folder::run() {
  const ptrdiff_t tableBytes = 2 * (ptrdiff_t)box.rows * (ptrdiff_t)sizeof(uint8_t*) + alignof(uint8_t*) - 1;
  const ptrdiff_t bytes = call.scratchBytes - tableBytes - (lineAlignment - 1), width = call.roi.width;
  const ptrdiff_t leastStrip = width < leastStripBytes / pixelBytes ? width : leastStripBytes / pixelBytes;
  if (bytes < 0) return foldPixels();
  if (stripFor(bytes) < leastStrip) lines.count = 0;
  const ptrdiff_t most = stripFor(bytes);
  if (most < 1) return foldPixels();
  ptrdiff_t strip = stripFor(cachedBytes);
  if (strip < leastStrip) strip = leastStrip;
  if (strip < 4 * (ptrdiff_t)box.columns) strip = 4 * (ptrdiff_t)box.columns;
  if (strip > most) strip = most;
  if (strip > width) strip = width;
  const ptrdiff_t strips = (width + strip - 1) / strip;
  strip = (width + strips - 1) / strips;
  const ptrdiff_t lineBytes = ((strip + box.columns - 1) * pixelBytes + lineAlignment - 1) & -lineAlignment;

  Scratch scratch{call.scratch};
  const auto** bases = scratch.take<const uint8_t*>(2 * (ptrdiff_t)box.rows, alignof(uint8_t*));
  uint8_t* const ring = scratch.take<uint8_t>(0, lineAlignment);
  for (ptrdiff_t x = 0; x < width; x += strip)
    foldStrip(x, width - x < strip ? width - x : strip, bases, ring, lineBytes);
}

}  // namespace

void ORV_VARIANT::foldUnderMask(const MaskFold& call, const OrvMorphState& state) { Folder(call, state).run(); }

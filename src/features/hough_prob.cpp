// Probabilistic line detection: pixels vote in a random order, and where a line shows, its segment is walked and taken
// out of the image at once.
//
// Theory. The order of the pixels comes from a generator of fixed start and depends on nothing else, so the segments
// are always the same. A vote goes to a cell of each angle, in as many different rows of the accumulator: what rules
// the time is the memory that these touch. No cell gets more votes than there are pixels in a strip of the image two
// cells wide, so for all but very large images or cells 16 bits hold it, and half the memory suffices.
//
// Limitations. The buffer holds the accumulator, four bytes a pixel for the list and one for the mask.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/hough_prob.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// The cells of n angles for a pixel: pairs of cosine / rho and sine / rho, the sum truncated.
void RhoCells(const LooseElement<float>* table, ptrdiff_t n, float x, float y, int32_t center, int32_t* cells) {
  Columns(
      0, n, PIXEL(i) { cells[i] = (int32_t)(table[2 * i] * x + table[2 * i + 1] * y) + center; });
}

KERNELS_END

#if HWY_ONCE
#include "core/scratch.h"
#include "features/hough.h"
#include "features/hough_state.h"

namespace {

using Cells = decltype(&N_SSSE3::RhoCells);

constexpr ptrdiff_t angleBlock = 256;

template <class Count>
struct Accumulator {
  Count* count;  // numAngle rows of numRho
  HoughGeometry geometry;
  const LooseElement<float>* table;
  Cells cells;

  // change(cell, angle) for the cell of each angle, but for those outside the accumulator.
  template <class Change>
  __attribute__((always_inline)) void forEachCell(int32_t x, int32_t y, const Change& change) const {
    int32_t cell[angleBlock];
    Count* row = count;
    for (ptrdiff_t first = 0; first < geometry.numAngle; first += angleBlock) {
      const ptrdiff_t rest = geometry.numAngle - first, n = rest < angleBlock ? rest : angleBlock;
      cells(table + 2 * first, n, (float)x, (float)y, geometry.center, cell);
      for (ptrdiff_t i = 0; i < n; ++i, row += geometry.numRho)
        if ((uint32_t)cell[i] < (uint32_t)geometry.numRho) change(row[cell[i]], first + i);
    }
  }
  // Votes; the first angle with the most votes of at least `threshold`, or -1.
  ptrdiff_t vote(int32_t x, int32_t y, int32_t threshold) const {
    int32_t largest = threshold - 1;
    ptrdiff_t best = -1;
    forEachCell(x, y, [&](Count& cell, ptrdiff_t angle) {
      const int32_t votes = ++cell;
      if (votes > largest) largest = votes, best = angle;
    });
    return best;
  }
  // Takes votes back, also those that were never given: a cell may fall below 0.
  void unvote(int32_t x, int32_t y) const {
    forEachCell(x, y, [](Count& cell, ptrdiff_t) { --cell; });
  }
};

// Positions along a line: one axis in whole pixels, the other in 16.16.
struct LineWalk {
  int64_t x, y, stepX, stepY;
  int32_t shiftX, shiftY;

  // Along a line whose normal has cosine a and sine -b (times the same factor). A step of 0 counts as negative.
  LineWalk(OrvPoint from, float a, float b) : x(from.x), y(from.y), shiftX(0), shiftY(0) {
    const float absA = a < 0 ? -a : a, absB = b < 0 ? -b : b;
    if (absB > absA) {
      stepX = 0.0f < b ? 1 : -1;
      stepY = truncateInto32((double)(a * 65536.0f / absB));
      y = y * 65536 | 0x8000, shiftY = 16;
    } else {
      stepY = 0.0f < a ? 1 : -1;
      stepX = truncateInto32((double)(b * 65536.0f / absA));
      x = x * 65536 | 0x8000, shiftX = 16;
    }
  }
  OrvPoint at() const { return {(int32_t)(x >> shiftX), (int32_t)(y >> shiftY)}; }
  void step() { x += stepX, y += stepY; }
  void turn() { stepX = -stepX, stepY = -stepY; }
};

struct PixelMask {
  uint8_t* data;
  OrvSize size;
  bool inside(OrvPoint p) const { return p.x >= 0 && p.y >= 0 && p.x < size.width && p.y < size.height; }
  uint8_t& at(OrvPoint p) const { return data[(ptrdiff_t)p.y * size.width + p.x]; }

  // The last pixel that is set before the image ends or more than `gap` pixels in a row are not set.
  OrvPoint lastSet(LineWalk walk, int32_t gap) const {
    OrvPoint last = {0, 0};
    for (int32_t missing = 0;; walk.step()) {
      const OrvPoint p = walk.at();
      if (!inside(p)) return last;
      if (at(p)) last = p, missing = 0;
      else if (++missing > gap) return last;
    }
  }
};

int32_t distance(int32_t a, int32_t b) { return a < b ? b - a : a - b; }

struct ProbCall {
  Plane<const uint8_t> src;
  OrvSize roi;
  int32_t threshold, lineLength, lineGap;
  int32_t* lines;
  int32_t maxLineCount;
  int32_t* lineCount;
};

template <class Count>
OrvStatus probLines(const ProbCall& call, Accumulator<Count> accumulator, Scratch scratch) {
  const HoughGeometry& g = accumulator.geometry;
  const ptrdiff_t cells = g.numRho > 0 ? (ptrdiff_t)g.numRho * g.numAngle : 0,
                  pixels = (ptrdiff_t)call.roi.width * call.roi.height;
  accumulator.count = scratch.take<Count>(cells, sizeof(Count));
  uint32_t* const list = scratch.take<uint32_t>(pixels, alignof(uint32_t));
  const PixelMask mask = {scratch.take<uint8_t>(pixels, 1), call.roi};
  memset(accumulator.count, 0, (size_t)cells * sizeof(Count));

  const PixelCode code(call.roi.width);
  uint32_t n = 0;
  for (int32_t y = 0; y < call.roi.height; ++y) {
    uint8_t* const row = mask.data + (ptrdiff_t)y * call.roi.width;
    memset(row, 0, (size_t)call.roi.width);
    forEachFeature(raw(call.src.row(y)), call.roi.width, [&](int32_t x) { row[x] = 1, list[n++] = code.code(x, y); });
  }

  uint64_t random = UINT64_MAX;
  for (; n > 0; --n) {
    random = (random >> 32) + (random & 0xFFFFFFFF) * 0xF83F630A;
    const uint32_t k = (uint32_t)random % n;
    const OrvPoint point = {code.x(list[k]), code.y(list[k])};
    list[k] = list[n - 1];
    if (!mask.at(point)) continue;
    const ptrdiff_t angle = accumulator.vote(point.x, point.y, call.threshold);
    if (angle < 0) continue;

    LineWalk walk(point, accumulator.table[2 * angle], -accumulator.table[2 * angle + 1]);
    OrvPoint end[2];
    for (OrvPoint& p : end) p = mask.lastSet(walk, call.lineGap), walk.turn();
    const bool good =
        distance(end[0].x, end[1].x) >= call.lineLength || distance(end[0].y, end[1].y) >= call.lineLength;
    for (const OrvPoint& last : end) {
      for (LineWalk again = walk;; again.step()) {
        const OrvPoint p = again.at();
        if (mask.at(p)) {
          if (good) accumulator.unvote(p.x, p.y);
          mask.at(p) = 0;
        }
        if (p.x == last.x && p.y == last.y) break;
      }
      walk.turn();
    }
    if (!good) continue;
    if (*call.lineCount >= call.maxLineCount) return orvStatusLinesFullWarn;
    int32_t* const line = call.lines + 4 * (ptrdiff_t)(*call.lineCount)++;
    line[0] = end[0].x, line[1] = end[0].y, line[2] = end[1].x, line[3] = end[1].y;
  }
  return orvStatusOk;
}

// The pixels of a cell lie in a strip at most two cells wide, across which a row or a column of the image has at most
// 2 * rho / sin(45 degrees) + 1 of them; one more for the rounding of products.
bool fits16(OrvSize roi, float rho) {
  const int32_t longer = roi.width > roi.height ? roi.width : roi.height;
  return (3 * (double)rho + 2) * longer < 32767;
}

}  // namespace

OrvStatus orviHoughProbLine_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, int32_t threshold,
                                      int32_t lineLength, int32_t lineGap, int32_t* lines, int32_t maxLineCount,
                                      int32_t* lineCount, uint8_t* buffer, const OrvHoughProbState* state) {
  ORV_REQUIRE(allSet(src, lines, buffer, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(threshold >= 1 && lineLength >= 0 && lineGap >= 0, orvStatusBadArg);
  *lineCount = 0;
  HoughProbHeader header;
  memcpy(&header, state, sizeof header);
  const ProbCall call = {{src, srcStep}, roiSize, threshold, lineLength, lineGap, lines, maxLineCount, lineCount};
  const HoughGeometry geometry = houghGeometry(roiSize, {header.rho, header.theta});
  const auto* const table = (const LooseElement<float>*)((const uint8_t*)state + sizeof header);
  const auto cells = WIDEST(RhoCells);
  if (fits16(roiSize, header.rho)) return probLines<int16_t>(call, {nullptr, geometry, table, cells}, {buffer});
  return probLines<int32_t>(call, {nullptr, geometry, table, cells}, {buffer});
}

#endif

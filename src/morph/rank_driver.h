// Driver of the rank filters: the extreme of a rectangle around each pixel, clipped at the sides of the image.
//
// Theory. The image is worked on in strips of columns, from top to bottom. A few lines of the strip at a time get the
// extrema over the rows of their windows, read from the image itself; then each line that of its columns:
//
//   image rows  --column kernel-->  line: | neutral | strip and the columns around it | neutral |  --row kernel-->  dst
//
// Rows beyond the image are the first and last one, which changes no extreme. Neutral elements stand for columns beyond
// it. In rows, windows grow by doubling (foldLine); in columns, results of up to 8 lines share what their windows have
// in common. Windows of more than 32 rows go by running extrema in blocks of as many lines (M. van Herk, "A fast
// algorithm for local minimum and maximum filters", 1992): the extrema of the block's rows from each row to the last,
// and of the rows below it from the first on; a window is one of either. So the time depends little on the window.
//
// A side of the image may have real pixels beyond it; rows and columns are then clipped at the last of these.
//
// Limitations. src and dst don't overlap. Scratch may lie at any address; without real pixels beyond the sides, what
// rankBufferBytes() tells is always enough: narrow strips and few lines at a time make do with it.
#pragma once
#include <string.h>
#include "morph/names.h"
#include "core/checks.h"
#include "core/image.h"
#include "core/scratch.h"
#include "morph/rank.h"

namespace ORV_VARIANT {

// Bytes of scratch for rows of `rowBytes` bytes and windows of `maskRows` rows, in 32 bits, as all sizes.
static inline int32_t rankBufferBytes(int32_t rowBytes, int32_t maskRows) {
  return wrapAdd(wrapAdd(wrapMul(2, maskRows, wrapAdd(rowBytes, 32)), wrapMul(32, maskRows)), 32);
}

// A window around its anchor.
struct Reach {
  ptrdiff_t before, behind;
  ptrdiff_t length() const { return before + 1 + behind; }
};

// Real pixels beyond the sides that windows may meet.
struct RankMargin {
  ptrdiff_t left, top, right, bottom;
};

template <class T>
struct RankCall {
  Plane<const T> src;
  Plane<T> dst;
  ptrdiff_t width, height, channels;
  Reach rows, columns;
  RankMargin margin;
  uint8_t* buffer;
  ptrdiff_t bytes;  // of the buffer

  // Columns that windows may meet.
  ptrdiff_t realWidth() const { return margin.left + width + margin.right; }
};

// How a call divides the image and its scratch memory.
struct RankPlan {
  int32_t level;        // 2^level lines at a time; 0 in blocks of running extrema
  ptrdiff_t block;      // lines of such a block, or 0
  ptrdiff_t strip;      // columns of a strip, in pixels
  ptrdiff_t line;       // elements of a line with its neutral ends
  ptrdiff_t plain;      // elements of a line without, for running extrema
  uintptr_t alignment;  // of lines
  bool touch;           // fetch rows ahead: of images beyond the second cache
};

static constexpr ptrdiff_t rankStripBytes = 4096, rankTouchBytes = 3 << 20;

// The bytes that a plan takes, wherever the buffer starts: pointers to rows or running extrema, then the lines.
template <class T>
static ptrdiff_t rankPlanBytes(const RankCall<T>& call, const RankPlan& plan) {
  const ptrdiff_t lines = (ptrdiff_t)1 << plan.level;
  const ptrdiff_t pointers = plan.block > 0 ? plan.block : call.rows.length() + 3 * lines - 1;
  const ptrdiff_t elements = lines * plan.line + (plan.block > 0 ? (plan.block + 1) * plan.plain : 0);
  return (pointers + 1) * (ptrdiff_t)sizeof(void*) + elements * (ptrdiff_t)sizeof(T) + (ptrdiff_t)plan.alignment;
}

// Strips that stay in the first cache, or else half the image, whose windows need no more than a row of columns beyond
// the strip: that fits into what is reported, with one line at a time.
template <class T>
static RankPlan planRank(const RankCall<T>& call) {
  const ptrdiff_t element = sizeof(T), width = call.width, high = call.rows.length();
  const ptrdiff_t around = call.columns.length() - 1, half = (width + 1) / 2;
  const ptrdiff_t pixels = rankStripBytes / element / call.channels, wide = pixels < 4 * around ? 4 * around : pixels;
  const ptrdiff_t strips[] = {wide < width * 2 / 3 ? wide : width, wide < half ? wide : half};
  static constexpr uintptr_t alignments[] = {64, sizeof(T)};
  const bool running = high > rankMostRows;
  RankPlan plan = {};
  if (running) plan.block = high < call.height ? high : call.height;
  else plan.level = rankMostLevels - 1;
  plan.touch = width * call.height * call.channels * element > rankTouchBytes;
  while ((1 << plan.level) > high || (1 << plan.level) > call.height) --plan.level;
  for (;; --plan.level)
    for (const ptrdiff_t strip : strips)
      for (const uintptr_t alignment : alignments) {
        const ptrdiff_t beyond = strip + call.realWidth() - 2, span = strip + (around < beyond ? around : beyond);
        const ptrdiff_t unit = (ptrdiff_t)alignment / element;
        plan.strip = strip, plan.alignment = alignment;
        plan.line = (span * call.channels + 2 * (unit - 1)) & -unit;
        plan.plain = ((span < call.realWidth() ? span : call.realWidth()) * call.channels + unit - 1) & -unit;
        if (rankPlanBytes(call, plan) <= call.bytes || (plan.level == 0 && strip == strips[1] && unit == 1))
          return plan;
      }
}

// The columns of a strip and of the windows around it, in elements.
struct RankStrip {
  ptrdiff_t first, count;  // of the results
  ptrdiff_t from, real;    // of the image's columns that the windows meet
  ptrdiff_t left, right;   // neutral elements beyond the image
  ptrdiff_t window;        // in pixels
};

// Windows are clipped for the strip as a whole: none keeps more beyond the image than it needs to cover all of it.
template <class T>
static RankStrip rankStrip(const RankCall<T>& call, ptrdiff_t first, ptrdiff_t end) {
  const ptrdiff_t left = call.margin.left, width = call.width + call.margin.right, c = call.channels;
  const ptrdiff_t start = end - 1 + left, rest = width - 1 - first;
  const ptrdiff_t before = call.columns.before < start ? call.columns.before : start;
  const ptrdiff_t behind = call.columns.behind < rest ? call.columns.behind : rest;
  const ptrdiff_t from = first - before > -left ? first - before : -left;
  const ptrdiff_t to = end + behind < width ? end + behind : width;
  return {first * c,          (end - first) * c,           from * c,
          (to - from) * c,    (from - first + before) * c, (end + behind - to) * c,
          before + 1 + behind};
}

// One strip at work.
template <class T>
struct RankWork {
  const RankCall<T>& call;
  const RankPlan& plan;
  const RankKernels<T>& kernels;
  const RankStrip& strip;
  const T** pointers;
  T* lines;

  const T* row(ptrdiff_t y) const {
    const ptrdiff_t first = -call.margin.top, last = call.height - 1 + call.margin.bottom;
    return raw(call.src.row(y < first ? first : y > last ? last : y)) + strip.from;
  }
  T* result(ptrdiff_t y) const { return raw(call.dst.row(y)) + strip.first; }
  // The first column of the image in line i.
  T* real(ptrdiff_t i) const {
    const ptrdiff_t unit = (ptrdiff_t)(plan.alignment / sizeof(T));
    return lines + i * plan.line + ((strip.left + unit - 1) & -unit);
  }
  bool oneColumn() const { return strip.window == 1; }

  // A row of the result from the line whose image columns start at `middle`.
  void finish(T* middle, ptrdiff_t y) const {
    for (ptrdiff_t i = 1; i <= strip.left; ++i) middle[-i] = kernels.neutral;
    for (ptrdiff_t i = 0; i < strip.right; ++i) middle[strip.real + i] = kernels.neutral;
    foldLine(kernels, middle - strip.left, result(y), strip.count, strip.window, call.channels);
  }

  // 2^level rows of the result from y on.
  void rows(ptrdiff_t y, int32_t level) const {
    const ptrdiff_t high = call.rows.length(), lines = (ptrdiff_t)1 << level;
    const ptrdiff_t read = high + 2 * lines - 1;
    for (ptrdiff_t i = 0; i < read; ++i) pointers[i] = row(y - call.rows.before + i);
    for (ptrdiff_t i = 0; i < lines; ++i) pointers[read + i] = result(y + i);
    T* out[1 << (rankMostLevels - 1)];
    for (ptrdiff_t i = 0; i < lines; ++i) out[i] = oneColumn() ? result(y + i) : real(i);
    kernels.columns[level](pointers, (int32_t)high, out, strip.real, plan.touch ? (int32_t)(2 * lines) : 0);
    for (ptrdiff_t i = 0; !oneColumn() && i < lines; ++i) finish(out[i], y + i);
  }

  void fold(const T* a, const T* b, T* out) const {
    const T* const two[] = {a, b};
    kernels.columns[0](two, 2, &out, strip.real, 0);
  }

  // `count` rows of the result from y on, by the extrema of rows 0 .. high - 1 of the block from each row to the last,
  // and of the rows behind it from the first. Rows that repeat beyond the image need no folding.
  void block(ptrdiff_t y, ptrdiff_t count) const {
    const ptrdiff_t high = call.rows.length(), top = y - call.rows.before;
    T *next = lines + plan.line, *const behind = next + plan.block * plan.plain;
    pointers[count - 1] = row(top + high - 1);
    for (ptrdiff_t i = high - 2; i >= 0; --i) {
      const T*& to = pointers[i < count ? i : count - 1];
      const T* const folded = pointers[i + 1 < count ? i + 1 : count - 1];
      to = folded;
      if (row(top + i) == row(top + i + 1)) continue;
      fold(folded, row(top + i), next);
      to = next;
      if (i < count) next += plan.plain;
    }
    const T* below = nullptr;
    for (ptrdiff_t i = 0; i < count; ++i) {
      if (i == 1) below = row(top + high);
      if (i > 1 && row(top + high + i - 1) != row(top + high + i - 2)) {
        fold(below, row(top + high + i - 1), behind);
        below = behind;
      }
      T* const out = oneColumn() ? result(y + i) : real(0);
      fold(pointers[i], i == 0 ? pointers[0] : below, out);
      if (!oneColumn()) finish(out, y + i);
    }
  }

  void run() const {
    if (plan.block > 0) {
      for (ptrdiff_t y = 0; y < call.height; y += plan.block)
        block(y, call.height - y < plan.block ? call.height - y : plan.block);
      return;
    }
    int32_t level = plan.level;
    for (ptrdiff_t y = 0; y < call.height; y += (ptrdiff_t)1 << level) {
      while (y + (1 << level) > call.height) --level;
      rows(y, level);
    }
  }
};

// Whether the buffer was large enough; else nothing is written.
template <class T>
static bool runRank(const RankCall<T>& call, const RankKernels<T>& kernels) {
  const RankPlan plan = planRank(call);
  if (rankPlanBytes(call, plan) > call.bytes) return false;
  Scratch scratch{call.buffer};
  const ptrdiff_t lines = (ptrdiff_t)1 << plan.level;
  auto** const pointers =
      scratch.take<const T*>(plan.block > 0 ? plan.block : call.rows.length() + 3 * lines - 1, sizeof(void*));
  T* const first = scratch.take<T>(0, plan.alignment);
  for (ptrdiff_t x = 0; x < call.width; x += plan.strip) {
    const RankStrip strip = rankStrip(call, x, call.width - x < plan.strip ? call.width : x + plan.strip);
    RankWork<T>{call, plan, kernels, strip, pointers, first}.run();
  }
  return true;
}

// A window of `length` around `anchor`, without what every window on a line of n pixels keeps beyond its ends.
static inline Reach rankReach(int32_t length, int32_t anchor, int32_t n) {
  const int32_t behind = length - 1 - anchor;
  return {anchor < n ? anchor : n - 1, behind < n ? behind : n - 1};
}

// The body of all rank filters.
template <class T>
static OrvStatus rankFilter(Rank rank, int32_t channels, const T* src, int32_t srcStep, T* dst, int32_t dstStep,
                            OrvSize roi, OrvSize mask, OrvPoint anchor, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(validRoi(mask), orvStatusMaskSize);
  ORV_REQUIRE(anchor.x >= 0 && anchor.x < mask.width && anchor.y >= 0 && anchor.y < mask.height, orvStatusAnchor);
  ORV_REQUIRE(srcStep >= rowBytes<T>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(dstStep >= rowBytes<T>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(srcStep, dstStep), orvStatusStepAlign);
  // As rankBufferBytes(), but for the region itself, and in 64 bits.
  const ptrdiff_t row = (ptrdiff_t)roi.width * channels * (ptrdiff_t)sizeof(T);
  const ptrdiff_t bytes = 2 * mask.height * (row + 32) + 32 * (ptrdiff_t)mask.height + 32;
  const RankCall<T> call = {{src, srcStep},
                            {dst, dstStep},
                            roi.width,
                            roi.height,
                            channels,
                            rankReach(mask.height, anchor.y, roi.height),
                            rankReach(mask.width, anchor.x, roi.width),
                            {},
                            buffer,
                            bytes};
  runRank(call, rankKernels<T>(rank));
  return orvStatusOk;
}

// The body of the size functions.
static inline OrvStatus rankBufferSize(int32_t pixelBytes, int32_t roiWidth, OrvSize mask, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(roiWidth >= 1, orvStatusSize);
  ORV_REQUIRE(validRoi(mask), orvStatusMaskSize);
  *bufferSize = rankBufferBytes(wrapMul(roiWidth, pixelBytes), mask.height);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

// Standard line detection: every feature pixel votes for all lines through it.
//
// Theory. Angle after angle the votes are counted in a row of distances; a peak needs the rows of the angles before and
// behind it and no others:
//
//   feature pixels --cells--> row of angle i           rows i - 2, i - 1, i: peaks of i - 1 --> list, sorted by votes
//
// Cells come from whole vectors, votes are added one by one. Neighbours on a contour often vote for the same cell, and
// an addition then has to wait for the one before. Votes commute, so the pixels are listed in another order: sixteen
// parts of the image side by side, a pixel of each in turn.
//
// Limitations. The order of the list changes nothing but time.
// One body serves both variants.
#include <math.h>
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/hough_line.cpp"
#include "core/kernels.h"
#include "core/vectors.h"

#ifndef ORV_HOUGH_VOTES
#define ORV_HOUGH_VOTES
namespace ORV_VARIANT {

// Where the votes of an angle go: cosine and sine times 1024 / rho, the cell of distance 0, and the cells that count.
struct HoughVotes {
  int32_t shift;  // of y in the list
  int32_t cosine, sine, center;
  int32_t first, last;
};
// The cell of votes that don't count; it lies before the cells of a row, next but one.
enum : int32_t { uncounted = -2 };

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

template <class D>
HWY_INLINE hn::VFromD<D> CountedCells(D d, hn::VFromD<D> scaled, const HoughVotes& v) {
  const auto cell = hn::Add(hn::ShiftRight<10>(hn::Add(scaled, hn::Set(d, 512))), hn::Set(d, v.center));
  const auto outside = hn::Or(hn::Lt(cell, hn::Set(d, v.first)), hn::Gt(cell, hn::Set(d, v.last)));
  return hn::IfThenElse(outside, hn::Set(d, (int32_t)uncounted), cell);
}

// The sum is taken in floats and rounded to nearest.
void FloatCells(const uint32_t* pixels, ptrdiff_t n, const HoughVotes& v, int32_t* cells) {
  Vectors<int32_t>(
      0, n, VECTOR(d, i) {
        const hn::RebindToUnsigned<decltype(d)> du;
        const hn::RebindToFloat<decltype(d)> df;
        const auto code = hn::LoadU(du, pixels + i);
        const auto x = hn::BitCast(d, hn::And(code, hn::Set(du, (1u << v.shift) - 1)));
        const auto y = hn::BitCast(d, hn::ShiftRightSame(code, v.shift));
        const auto sum = hn::Add(hn::Mul(hn::ConvertTo(df, x), hn::Set(df, (float)v.cosine)),
                                 hn::Mul(hn::ConvertTo(df, y), hn::Set(df, (float)v.sine)));
        hn::StoreU(CountedCells(d, Nearest(sum), v), d, cells + i);
      });
}

// The sum is taken in integers, which wrap.
void IntegerCells(const uint32_t* pixels, ptrdiff_t n, const HoughVotes& v, int32_t* cells) {
  Vectors<int32_t>(
      0, n, VECTOR(d, i) {
        const hn::RebindToUnsigned<decltype(d)> du;
        const auto code = hn::LoadU(du, pixels + i);
        const auto x = hn::BitCast(d, hn::And(code, hn::Set(du, (1u << v.shift) - 1)));
        const auto y = hn::BitCast(d, hn::ShiftRightSame(code, v.shift));
        const auto sum = hn::Add(hn::Mul(x, hn::Set(d, v.cosine)), hn::Mul(y, hn::Set(d, v.sine)));
        hn::StoreU(CountedCells(d, sum, v), d, cells + i);
      });
}

// The first cell from `first` on with more than `limit` votes, or `end`.
ptrdiff_t NextAbove(const int32_t* row, ptrdiff_t first, ptrdiff_t end, int32_t limit) {
  const hn::ScalableTag<int32_t> d;
  const ptrdiff_t lanes = hn::Lanes(d);
  ptrdiff_t i = first;
  for (; i + lanes <= end && hn::AllFalse(d, hn::Gt(hn::LoadU(d, row + i), hn::Set(d, limit))); i += lanes) {
  }
  while (i < end && row[i] <= limit) ++i;
  return i;
}

KERNELS_END

#if HWY_ONCE
#include "core/scratch.h"
#include "features/hough.h"

namespace {

using Cells = void (*)(const uint32_t* pixels, ptrdiff_t n, const HoughVotes& votes, int32_t* cells);

struct Peak {
  int32_t rho, angle, votes;
};

// The strongest peaks, by votes, equal ones in the order of finding.
struct PeakList {
  Peak* peak;
  int32_t most, count;

  // Votes above this may change the list.
  int32_t limit(int32_t threshold) const {
    return count == most && peak[most - 1].votes > threshold ? peak[most - 1].votes : threshold;
  }
  void insert(const Peak& found) {
    if (count < most) ++count;
    ptrdiff_t at = count - 1;
    for (; at > 0 && peak[at - 1].votes < found.votes; --at) peak[at] = peak[at - 1];
    peak[at] = found;
  }
};

struct HoughCall {
  Plane<const uint8_t> src;
  OrvSize roi;
  OrvPointPolar delta;
  int32_t threshold;
  OrvPointPolar* lines;
  int32_t maxLineCount;
  int32_t* lineCount;
  uint8_t* buffer;
};

// The part of the accumulator that counts.
struct HoughRegion {
  float lowTheta, highTheta;
  int32_t lowRho, highRho;
};

// Lists the feature pixels so that sixteen parts of the image take turns; returns their number.
ptrdiff_t listPixels(const HoughCall& call, PixelCode code, uint32_t* pixels) {
  ptrdiff_t n = 0;
  for (int32_t y = 0; y < call.roi.height; ++y) {
    const uint8_t* const row = raw(call.src.row(y));
    int32_t inRow = 0;
    for (ptrdiff_t x = 0; x < call.roi.width; ++x) inRow += row[x] != 0;
    n += inRow;
  }
  constexpr ptrdiff_t parts = 16;
  const ptrdiff_t length = n / parts, inParts = length * parts;
  ptrdiff_t listed = 0, slot = 0;
  for (int32_t y = 0; y < call.roi.height; ++y)
    forEachFeature(raw(call.src.row(y)), call.roi.width, [&](int32_t x) {
      pixels[listed < inParts ? slot : listed] = code.code(x, y);
      ++listed;
      slot += parts;
      if (slot >= inParts) slot += 1 - inParts;
    });
  return n;
}

void addVotes(Cells cells, const uint32_t* pixels, ptrdiff_t n, const HoughVotes& votes, int32_t* row) {
  constexpr ptrdiff_t block = 1024;
  int32_t cell[block];
  for (ptrdiff_t first = 0; first < n; first += block) {
    const ptrdiff_t count = n - first < block ? n - first : block;
    cells(pixels + first, count, votes, cell);
    for (ptrdiff_t i = 0; i < count; ++i) ++row[cell[i]];
  }
}

// A peak has more votes than its neighbours to the left and of the angle before, and no fewer than those to the right
// and of the angle behind.
template <class Next>
void findPeaks(Next nextAbove, const int32_t* before, const int32_t* row, const int32_t* behind, int32_t numRho,
               int32_t angle, int32_t threshold, PeakList& list) {
  for (ptrdiff_t r = 0;; ++r) {
    r = nextAbove(row, r, numRho, list.limit(threshold));
    if (r >= numRho) return;
    const int32_t m = row[r];
    if (m > row[r - 1] && m >= row[r + 1] && m > before[r] && m >= behind[r]) list.insert({(int32_t)r, angle, m});
  }
}

OrvStatus checkHough(const HoughCall& call) {
  ORV_REQUIRE(allSet(call.src.data, call.lines, call.lineCount, call.buffer), orvStatusNullPtr);
  ORV_REQUIRE(call.src.step > 0, orvStatusStep);
  ORV_REQUIRE(validRoi(call.roi) && call.maxLineCount > 0, orvStatusSize);
  const float sides = (float)wrapAdd(call.roi.width, call.roi.height);
  ORV_REQUIRE(call.delta.rho > 0 && call.delta.rho <= sides, orvStatusBadArg);
  ORV_REQUIRE(call.delta.theta > 0 && call.delta.theta <= 3.14159f, orvStatusBadArg);
  ORV_REQUIRE(call.threshold > 0, orvStatusBadArg);
  return orvStatusOk;
}

// Angles are added up in floats; cosine and sine are taken in doubles.
void houghLines(const HoughCall& call, const HoughGeometry& geometry, const HoughRegion& region, Cells cells) {
  const auto nextAbove = WIDEST(NextAbove);
  const ptrdiff_t numRho = geometry.numRho, pitch = numRho + 8;
  Scratch scratch{call.buffer};
  int32_t* const memory = scratch.take<int32_t>(3 * pitch, 32);
  PeakList list = {scratch.take<Peak>(call.maxLineCount, alignof(Peak)), call.maxLineCount, 0};
  uint32_t* const pixels = scratch.take<uint32_t>(0, alignof(uint32_t));
  // A row has four cells before it: that of uncounted votes and a zero are among them; and a zero behind it.
  memset(memory, 0, (size_t)(3 * pitch) * sizeof(int32_t));
  const auto row = [&](int32_t angle) { return memory + (angle + 3) % 3 * pitch + 4; };

  const PixelCode code(call.roi.width);
  const ptrdiff_t n = listPixels(call, code, pixels);
  const double scale = (double)(1.0f / call.delta.rho) * 1024.0;
  const auto counts = [&](int32_t angle) {
    const float theta = (float)angle * call.delta.theta;
    return theta >= region.lowTheta && theta <= region.highTheta;
  };
  const int32_t first = region.lowRho > 0 ? region.lowRho : 0;
  const int32_t last = region.highRho < geometry.numRho ? region.highRho : geometry.numRho - 1;
  float theta = 0;
  for (int32_t angle = 0; angle <= geometry.numAngle; ++angle, theta += call.delta.theta) {
    memset(row(angle), 0, (size_t)numRho * sizeof(int32_t));
    if (angle < geometry.numAngle && counts(angle)) {
      const int32_t cosine = truncateInto32(cos((double)theta) * scale);
      const int32_t sine = truncateInto32(sin((double)theta) * scale);
      addVotes(cells, pixels, n, {code.shift, cosine, sine, geometry.center, first, last}, row(angle));
    }
    if (angle > 0 && counts(angle - 1))
      findPeaks(nextAbove, row(angle - 2), row(angle - 1), row(angle), geometry.numRho, angle - 1, call.threshold,
                list);
  }
  for (int32_t i = 0; i < list.count; ++i)
    call.lines[i] = {(float)(list.peak[i].rho - geometry.center) * call.delta.rho,
                     (float)list.peak[i].angle * call.delta.theta};
  *call.lineCount = list.count;
}

}  // namespace

OrvStatus orviHoughLineGetSize_8u_C1R(OrvSize roiSize, OrvPointPolar delta, int32_t maxLineCount, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(delta.rho > 0 && delta.theta > 0, orvStatusBadArg);
  const HoughGeometry g = houghGeometry(roiSize, delta);
  const int32_t image = wrapMul(roiSize.height, wrapAdd(wrapMul(4, roiSize.width), 64));
  const int32_t rows = wrapAdd(wrapMul(8, g.numAngle), wrapMul(16, g.numRho));
  *bufferSize = wrapAdd(wrapAdd(image, wrapMul(16, maxLineCount)), wrapAdd(rows, 288));
  const double exact = (double)roiSize.height * (4.0 * roiSize.width + 64) + 16.0 * maxLineCount +
                       8 * (floor(houghAngles(delta.theta)) + 1) +
                       16 * floor((double)houghDistances(roiSize, delta.rho)) + 288;
  return exact > 2147483647.0 ? orvStatusSizeOverflowWarn : orvStatusOk;
}

OrvStatus orviHoughLine_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, OrvPointPolar delta,
                                  int32_t threshold, OrvPointPolar* lines, int32_t maxLineCount, int32_t* lineCount,
                                  uint8_t* buffer) {
  const HoughCall call = {{src, srcStep}, roiSize, delta, threshold, lines, maxLineCount, lineCount, buffer};
  if (const OrvStatus status = checkHough(call)) return status;
  houghLines(call, houghGeometry(roiSize, delta), {0, INFINITY, INT32_MIN, INT32_MAX}, WIDEST(FloatCells));
  return orvStatusOk;
}

OrvStatus orviHoughLine_Region_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, OrvPointPolar* lines,
                                         OrvPointPolar* dstRoi, int32_t maxLineCount, int32_t* lineCount,
                                         OrvPointPolar delta, int32_t threshold, uint8_t* buffer) {
  ORV_REQUIRE(dstRoi, orvStatusNullPtr);
  const HoughCall call = {{src, srcStep}, roiSize, delta, threshold, lines, maxLineCount, lineCount, buffer};
  if (const OrvStatus status = checkHough(call)) return status;
  OrvPointPolar &low = dstRoi[0], &high = dstRoi[1];
  if (high.theta < low.theta || high.rho < low.rho) {
    *lineCount = 0;
    return orvStatusRange;
  }
  for (float* const theta : {&low.theta, &high.theta}) {
    if (*theta < 0) *theta = 0;
    if (*theta > 3.14159f) *theta = 3.14159f;
  }
  const HoughGeometry geometry = houghGeometry(roiSize, delta);
  const float center = (float)geometry.center;
  const int32_t lowRho = truncateInto32((double)(low.rho / delta.rho + center));
  const int32_t highRho = truncateInto32((double)(center + high.rho / delta.rho));
  houghLines(call, geometry, {low.theta, high.theta, lowRho, highRho}, WIDEST(IntegerCells));
  return orvStatusOk;
}

#endif

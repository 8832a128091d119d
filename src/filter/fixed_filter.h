// Driver of the filters with a fixed mask of 3x3 or 5x5 pixels.
//
// Theory. A filter is a row kernel, which makes one or more planes of a filtered row from a source row and its borders,
// and a column kernel, which makes a row of the result from the K filtered rows around it:
//
//   source row --row kernel--> | plane 0 | plane 1 |  one slot of a ring of K   --column kernel--> row of the result
//
// What stands for a row beyond the region is chosen among all rows of the region, whichever band asks, and filtered
// like any other; so a band finds the rows of its neighbours as real memory and results depend on no thread count. A
// row beyond a constant side is the sum of the row taps times the border value, over its whole width.
//
// Row kernels see windows only. The interior of a row is read in place; the ends are staged in a strip with their
// borders, and a short row goes through the strip whole.
//
// Limitations. src and dst don't overlap. A band touches at most bandBytes() of scratch, wherever it starts, which is
// less than any reported size divided by the threads it was reported for.
//
// Example:
//
//   OrvStatus orviFilterFooBorder_8u16s_C1R(...) {
//     return fixedFilter<uint8_t, int16_t, int16_t>({src, srcStep, dst, ...}, sizes, WIDEST(Foo3), WIDEST(Foo5));
//   }
#pragma once
#include "filter/names.h"
#include "core/bands.h"
#include "core/image.h"
#include "core/scratch.h"
#include "filter/fixed_size.h"
#include "filter/row_border.h"
#include "filter/row_ring.h"

namespace ORV_VARIANT {

enum : int32_t { mostMaskRows = 5, shortRow = 64, noShift = -1 };

// The arguments of a call.
template <class T, class D>
struct FixedCall {
  const T* src;
  int32_t srcStep;
  D* dst;
  int32_t dstStep;
  OrvSize roi;
  int32_t maskSize, borderType;
  T borderValue;
  uint8_t* buffer;
  int32_t divisor = 1;
};

// What column kernels need beside the rows.
struct ColumnWork {
  ptrdiff_t plane;  // distance of the planes of a filtered row, in elements
  int32_t divisor;
  int32_t shift;  // of a divisor of +-2^shift, at most 15, else noShift
};

template <class T, class R, class D>
struct FixedFilter {
  int32_t size;     // rows and columns of the mask
  int32_t planes;   // of a filtered row, 1 or 2
  int32_t sums[2];  // of the row taps, a plane each
  // out[x] from the windows s[x .. x + size - 1] for 0 <= x < n.
  void (*row)(const T* s, R* out, ptrdiff_t n, ptrdiff_t plane);
  // A row of the result from `size` filtered rows.
  void (*column)(const R* const* rows, D* dst, ptrdiff_t width, const ColumnWork& work);
};

// Elements between the planes of a filtered row.
template <class R>
static constexpr ptrdiff_t planePitch(int32_t width) {
  constexpr ptrdiff_t block = 64 / sizeof(R);
  return (width + block - 1) & ~(block - 1);
}

static constexpr ptrdiff_t stripPixels = shortRow + 2 * mostMaskRows;

template <class T, class R, class D>
static constexpr ptrdiff_t bandBytes(const FixedFilter<T, R, D>& filter, int32_t width) {
  return 64 + filter.size * filter.planes * planePitch<R>(width) * (ptrdiff_t)sizeof(R) +
         stripPixels * (ptrdiff_t)sizeof(T);
}

// One filtered row of an image.
template <class T, class R, class D>
static void makeRow(const FixedCall<T, D>& call, const FixedFilter<T, R, D>& filter, const T* s, T* strip, R* row,
                    ptrdiff_t plane) {
  const int32_t width = call.roi.width, size = filter.size, half = size / 2;
  if (width <= shortRow) {
    extendRow<T, 1>(s, strip, width, size, half, call.borderType, &call.borderValue);
    return filter.row(strip, row, width, plane);
  }
  fillBorder<T, 1>(s, strip, width, size, half, call.borderType, &call.borderValue);
  filter.row(strip, row, half, plane);
  filter.row(s, row + half, width - 2 * half, plane);
  filter.row(strip + half + size - 1, row + width - half, half, plane);
}

// A filtered row of the border value. Taps that cancel out give +0 for any float.
template <class T, class R>
static void fillConstant(R* row, int32_t width, int32_t tapSum, T value) {
  const R constant = tapSum == 0 ? (R)0 : (R)((R)tapSum * (R)value);
  for (ptrdiff_t x = 0; x < width; ++x) row[x] = constant;
}

// Filters rows `first` to first + rows - 1 of the region with the scratch memory at `memory`.
template <class T, class R, class D>
static void filterBand(const FixedCall<T, D>& call, const FixedFilter<T, R, D>& filter, int32_t first, int32_t rows,
                       uint8_t* memory) {
  const Plane<const T> src{call.src, call.srcStep};
  const Plane<D> dst{call.dst, call.dstStep};
  const int32_t width = call.roi.width, kind = borderKind(call.borderType);
  const bool top = call.borderType & orvBorderInMemTop, bottom = call.borderType & orvBorderInMemBottom;
  const ptrdiff_t plane = planePitch<R>(width);
  Scratch scratch{memory};
  R* ring[mostMaskRows];
  for (int32_t i = 0; i < filter.size; ++i) ring[i] = scratch.take<R>(plane * filter.planes, 64);
  T* const strip = scratch.take<T>(stripPixels);

  ColumnWork work{plane, call.divisor, noShift};
  const uint32_t magnitude = call.divisor < 0 ? 0u - (uint32_t)call.divisor : (uint32_t)call.divisor;
  if ((magnitude & (magnitude - 1)) == 0) work.shift = __builtin_ctz(magnitude) < 15 ? __builtin_ctz(magnitude) : 15;

  runRing(
      rows, filter.size, ring,
      [&](int32_t y, R* row) {
        const ptrdiff_t source = borderIndex(kind, (ptrdiff_t)first + y, call.roi.height, top, bottom);
        if (source != borderNoPixel) return makeRow(call, filter, raw(src.row(source)), strip, row, plane);
        for (int32_t p = 0; p < filter.planes; ++p)
          fillConstant(row + p * plane, width, filter.sums[p], call.borderValue);
      },
      [&](int32_t y, R** folded) { filter.column(folded, raw(dst.row((ptrdiff_t)first + y)), width, work); });
}

// The team of a call, 1 for a call that stays on its thread. `maxThreads` was read before the checks.
static inline int32_t fixedTeam(OrvSize roi, int32_t maxThreads) {
  if (maxThreads < 2 || roi.width < 256 || roi.height < 256 || roi.height < wrapMul(5, maxThreads)) return 1;
  const int32_t cores = runomp();
  if (cores == 0) return 1;
  const int32_t threads = owncvGetMaxNumThreads(), most = cores < threads ? cores : threads;
  return most < roi.height / 128 ? most : roi.height / 128;
}

// The whole region: by bands with a slice of the buffer each, or in one.
template <class T, class R, class D>
static void filterRegion(const FixedCall<T, D>& call, const FixedFilter<T, R, D>& filter, const FixedSize& size,
                         int32_t maxThreads) {
  const int32_t team = fixedTeam(call.roi, maxThreads);
  if (team == 1) return filterBand(call, filter, 0, call.roi.height, call.buffer);
  const ptrdiff_t bytes = fixedBufferSize(size, call.roi, call.maskSize);
  // A size that wrapped has no room for slices.
  if (bytes / team < bandBytes(filter, call.roi.width))
    return filterBand(call, filter, 0, call.roi.height, call.buffer);
  runTeam(team, call.roi.height, [&](int32_t first, int32_t rows) {
    filterBand(call, filter, first, rows, call.buffer + bytes / owncvGetNumThreads() * owncvGetIdThreads());
  });
}

// Kind and flags that these filters take: a kind of 0 to 4 or 6; if one of the bits 4 to 15 is set, one must be a side.
static inline bool validFixedBorder(int32_t borderType) {
  const int32_t kind = borderKind(borderType);
  if (kind > orvBorderMirrR && kind != orvBorderInMem) return false;
  return (borderType & 0xFFF0) == 0 || (borderType & borderAllSides) != 0;
}

// The body of all public filters. The filters are made for this processor; those without a mask argument have one.
template <class T, class R, class D>
static OrvStatus fixedFilter(FixedCall<T, D> call, const FixedSize& size, FixedFilter<T, R, D> (*make3)(),
                             FixedFilter<T, R, D> (*make5)() = nullptr) {
  const int32_t maxThreads = owncvGetMaxNumThreads();
  ORV_REQUIRE(allSet(call.src, call.dst, call.buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  ORV_REQUIRE(call.srcStep >= rowBytes<T>(call.roi.width), orvStatusStep);
  ORV_REQUIRE(call.dstStep >= rowBytes<D>(call.roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(call.srcStep) && stepsAligned<D>(call.dstStep), orvStatusStepAlign);
  ORV_REQUIRE(validFixedBorder(call.borderType), orvStatusBadArg);
  if (borderKind(call.borderType) == orvBorderInMem) call.borderType = borderAllSides;
  ORV_REQUIRE(call.divisor != 0, orvStatusBadArg);
  ORV_REQUIRE(validMask(call.maskSize), orvStatusMaskSize);
  filterRegion(call, call.maskSize == orvMaskSize3x3 ? make3() : make5(), size, maxThreads);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

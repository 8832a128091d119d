// Labelling of connected regions.
//
// Theory of operation. A region gets the number of its first pixel's turn in row order. It is found from the runs of
// pixels above 0 (A. Rosenfeld and J. L. Pfaltz, "Sequential Operations in Digital Picture Processing", 1966): a run is
// a node, runs that touch in neighbouring rows are joined, the first run of a region stays its root. A second pass
// hands out labels in the order of runs and writes them. The time is in proportion to the pixels, whatever the shapes.
//
// Limitation. Scratch holds a number for each run an image may have, and the runs of two rows:
// 2 * height * (width + 1) + 8 * (width + 1) bytes, within the reported 6 * width * height + 32; an image of one row
// has no row above, and needs 4 * (width + 1) fewer.
//
// Read once a width like core/kernels.h, in its place.
#include "core/kernels.h"
#include "core/scratch.h"
#include "segment/flood.h"
#include "segment/flood_runs.h"
#include <string.h>

#if defined(ORV_LABELLING_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_LABELLING_TOGGLE
#undef ORV_LABELLING_TOGGLE
#else
#define ORV_LABELLING_TOGGLE
#endif
KERNELS_BEGIN

// Notes where runs above 0 start and end (one behind), in turn; returns the number of runs.
template <class T>
ptrdiff_t RunsOfRow(const T* row, ptrdiff_t width, Loose<int32_t>* ends) {
  constexpr ptrdiff_t N = kBlock<T, 1>;
  const FloodTag<T, 1> d;
  const auto* const first = ends;
  uint64_t before = 0;  // whether the last pixel seen is above 0
  for (ptrdiff_t x = 0; x < width; x += N) {
    uint64_t above = 0;
    if (x + N <= width) above = ~MaskBits(d, hn::Eq(hn::LoadU(d, row + x), hn::Zero(d))) & kAll<N>;
    else
      for (ptrdiff_t i = x; i < width; ++i) above |= (uint64_t)(loose(row)[i] != 0) << (i - x);
    uint64_t changes = above ^ (above << 1 | before);
    if constexpr (N < 64) changes &= kAll<N>;
    before = above >> (N - 1);
    for (; changes != 0; changes &= changes - 1) *ends++ = (int32_t)(x + __builtin_ctzll(changes));
  }
  if (before != 0) *ends++ = (int32_t)width;
  return (ends - first) / 2;
}

// Writes the label of each run.
template <class T>
void WriteRuns(T* row, const Loose<int32_t>* ends, ptrdiff_t runs, const Loose<int32_t>* labels) {
  for (ptrdiff_t i = 0; i < runs; ++i)
    SetElements<T, 16 / sizeof(T)>(row + ends[2 * i], ends[2 * i + 1] - ends[2 * i], (T)labels[i]);
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

// The runs of an image as a forest: the parent of a run comes before it.
struct RunForest {
  Loose<int32_t>* parent;

  __attribute__((always_inline)) int32_t root(int32_t run) const {
    while (parent[run] != run) run = parent[run] = parent[parent[run]];
    return run;
  }
  __attribute__((always_inline)) void join(int32_t a, int32_t b) const {
    a = root(a), b = root(b);
    if (a < b) parent[b] = a;
    else parent[a] = b;
  }
  // Joins the `count` runs of a row, numbered from `id` on, with those of the row above. Corners touch if `reach` is 1.
  void joinRows(const Loose<int32_t>* above, ptrdiff_t aboveCount, const Loose<int32_t>* ends, ptrdiff_t count,
                int32_t id, int32_t reach) const {
    const int32_t aboveId = id - (int32_t)aboveCount;
    ptrdiff_t k = 0;
    for (ptrdiff_t i = 0; i < count; ++i) {
      const int32_t left = ends[2 * i] - reach, right = ends[2 * i + 1] + reach;
      parent[id + i] = id + (int32_t)i;
      while (k < aboveCount && above[2 * k + 1] <= left) ++k;
      for (; k < aboveCount && above[2 * k] < right; ++k) {
        join(aboveId + (int32_t)k, id + (int32_t)i);
        if (above[2 * k + 1] >= right) break;  // it may touch the next run too
      }
    }
  }
};

// Labels from `low` up to `high` and again from `low`. Source and destination may be the same image. Returns the number
// of regions.
template <class S, class D>
static inline int32_t labelRegions(Plane<const S> src, Plane<D> dst, OrvSize size, int32_t low, int32_t high,
                                   bool corners, uint8_t* buffer,
                                   ptrdiff_t (*runsOfRow)(const S*, ptrdiff_t, Loose<int32_t>*),
                                   void (*writeRuns)(D*, const Loose<int32_t>*, ptrdiff_t, const Loose<int32_t>*)) {
  const ptrdiff_t width = size.width, height = size.height;
  Scratch scratch = {buffer};
  Loose<int32_t>* ends = loose(scratch.take<int32_t>(2 * ((width + 1) / 2), 1));
  Loose<int32_t>* above = height > 1 ? loose(scratch.take<int32_t>(2 * ((width + 1) / 2), 1)) : ends;
  const RunForest forest = {loose((int32_t*)(void*)scratch.next)};

  int32_t runs = 0;
  ptrdiff_t aboveCount = 0;
  for (ptrdiff_t y = 0; y < height; ++y) {
    const ptrdiff_t count = runsOfRow(raw(src.row(y)), width, ends);
    forest.joinRows(above, aboveCount, ends, count, runs, corners);
    runs += (int32_t)count;
    aboveCount = count;
    Loose<int32_t>* const swap = above;
    above = ends, ends = swap;
  }

  // Parents come first and have their labels already.
  int32_t regions = 0, label = low;
  for (int32_t run = 0; run < runs; ++run) {
    const int32_t parent = forest.parent[run];
    if (parent != run) {
      forest.parent[run] = (int32_t)forest.parent[parent];
      continue;
    }
    forest.parent[run] = label;
    label = label == high ? low : label + 1;
    ++regions;
  }

  const Loose<int32_t>* labels = forest.parent;
  for (ptrdiff_t y = 0; y < height; ++y) {
    const ptrdiff_t count = runsOfRow(raw(src.row(y)), width, ends);
    if ((const void*)src.data != (const void*)dst.data) memset(raw(dst.row(y)), 0, (size_t)width * sizeof(D));
    writeRuns(raw(dst.row(y)), ends, count, labels);
    labels += count;
  }
  return regions;
}

// The checks that follow those of the images: labels from 1 up to below `limit`.
static inline OrvStatus checkLabels(int32_t minLabel, int32_t maxLabel, int32_t limit, int32_t norm) {
  ORV_REQUIRE(minLabel >= 1 && maxLabel < limit && minLabel <= maxLabel, orvStatusBadArg);
  ORV_REQUIRE(norm == 0 || norm == 1, orvStatusBadArg);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT
#endif
#endif

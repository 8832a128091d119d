// The row-band harness: the only place of a parallel region.
//
// It is compiled for the baseline only. Kernels are reached through a pointer that is read before the fork, since a
// function outlined from a wide kernel would lose its instruction set.
#pragma once
#include <omp.h>
#include <stdint.h>
#include "core/frame.h"

// Calls rows(first, count) from each thread of a team for its band. All bands have height / n rows but the last, which
// takes the remainder as well; a thread without rows does nothing.
template <class Rows>
static inline void runTeam(int32_t team, int32_t height, const Rows& rows) {
  int32_t threads, band, rest;
#pragma omp parallel num_threads(team)
  {
#pragma omp master
    {
      threads = owncvGetNumThreads();
      band = height / threads;
      rest = height % threads;
    }
#pragma omp barrier
    const int32_t id = owncvGetIdThreads();
    const int32_t count = id == threads - 1 ? band + rest : band;
    if (count > 0) rows(id * band, count);
  }
}

// The same with the library's thread count, or one plain call for the whole ROI if not `threaded`. The count is read
// only where it is needed: a small image pays for no query.
template <class Rows>
static inline void runBands(bool threaded, int32_t height, const Rows& rows) {
  if (!threaded) return rows(0, height);
  runTeam(owncvGetMaxNumThreads(), height, rows);
}

// Calls row(y) for each row, from a team of the library's thread count that shares the rows in a static loop.
template <class Row>
static inline void runRows(int32_t height, const Row& row) {
#pragma omp parallel for schedule(static) num_threads(owncvGetMaxNumThreads())
  for (int32_t y = 0; y < height; ++y) row(y);
}

// Whether a ROI has `limit` pixels or more. The area is a signed 32-bit product: one that overflows stays on one
// thread.
static inline bool areaReaches(OrvSize roi, int32_t limit) { return wrapMul(roi.width, roi.height) >= limit; }

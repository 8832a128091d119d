// What the undistortion of images and of maps shares: the lens, the terms of columns, and the columns of a row in turn.
//
// Theory. Where the pixel of an undistorted image lies in the distorted one is a polynomial of its distance from the
// principal point. Its parts that depend on the column alone are kept in four arrays: all of them in the caller's
// buffer, made once, or, without a buffer, a block of columns on the stack, made anew for each row. Both hold whole
// parts of the formula as it is rounded, so both give the same bits.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "geometry/names.h"
#include "core/checks.h"
#include "core/scratch.h"

namespace ORV_VARIANT {

struct Lens {
  float fx, fy, cx, cy, k1, k2, p1, p2;
};

// Of each column: its coordinate, its distance u from the principal point, and two parts of the formula.
//   radial      first = (k2 * X + k1) * X, second = (2 * k2) * X, with X = (u * u) * (1 / (fx * fx))
//   tangential  first = a = u * (1 / fx), second = (2 * p2) * a
struct ColumnTerms {
  float *x, *u, *first, *second;

  ColumnTerms from(ptrdiff_t column) const { return {x + column, u + column, first + column, second + column}; }
};

static constexpr ptrdiff_t columnBlock = 256;

// Calls row(terms, y, first column, count) for all rows, in blocks of at most columnBlock columns. fill(terms, first,
// count) makes terms.
template <class Fill, class Row>
static inline void undistortRows(OrvSize roi, uint8_t* buffer, const Fill& fill, const Row& row) {
  const ptrdiff_t width = roi.width, pitch = (width + 3) & ~(ptrdiff_t)3;
  alignas(64) float block[4 * columnBlock];
  ColumnTerms terms{block, block + columnBlock, block + 2 * columnBlock, block + 3 * columnBlock};
  // The size of a wider buffer would have wrapped.
  const bool kept = buffer != nullptr && pitch <= (INT32_MAX - 32) / 24;
  if (kept) {
    Scratch scratch{buffer};
    for (float** array : {&terms.x, &terms.u, &terms.first, &terms.second}) *array = scratch.take<float>(pitch, 16);
    fill(terms, 0, width);
  }
  for (int32_t y = 0; y < roi.height; ++y)
    for (ptrdiff_t x = 0; x < width; x += columnBlock) {
      const ptrdiff_t count = width - x < columnBlock ? width - x : columnBlock;
      if (!kept) fill(terms, x, count);
      row(kept ? terms.from(x) : terms, y, x, count);
    }
}

}  // namespace ORV_VARIANT

// Exact Euclidean distance transform.
// One body serves both variants.
//
// Theory of operation (P. Felzenszwalb, D. Huttenlocher, "Distance Transforms of Sampled Functions", 2004). Down each
// column: the distance to the nearest zero pixel of the column, squared. Along each row: the lower envelope of the
// parabolas (q - v)^2 + f(v), one standing on each pixel v.
#include <string.h>
#include "core/bands.h"
#include "core/checks.h"
#include "core/image.h"
#include "core/primitives.h"
#include "core/scratch.h"

namespace {

constexpr float none = 3.4028235e38f;  // squared distance where the column has no zero pixel

using Row = LooseElement<float>*;

// Distances are whole numbers on their way through the columns, kept in the bits of the result's elements.
int32_t whole(float bits) { return __builtin_bit_cast(int32_t, bits); }
float bits(int32_t number) { return __builtin_bit_cast(float, number); }

void columns(Plane<const uint8_t> src, Plane<float> dst, OrvSize roi) {
  const int32_t height = roi.height;
  const ptrdiff_t width = roi.width;
  for (ptrdiff_t y = height - 1; y >= 0; --y) {
    const auto* const s = src.row(y);
    const Row d = dst.row(y);
    if (y == height - 1) {
      for (ptrdiff_t x = 0; x < width; ++x) d[x] = bits(s[x] ? height : 0);
    } else {
      const Row below = dst.row(y + 1);
      for (ptrdiff_t x = 0; x < width; ++x) d[x] = bits(s[x] ? whole(below[x]) + 1 : 0);
    }
  }
  for (ptrdiff_t y = 1; y < height; ++y) {
    const Row d = dst.row(y), above = dst.row(y - 1);
    for (ptrdiff_t x = 0; x < width; ++x) {
      const int32_t fromAbove = whole(above[x]) + 1, here = whole(d[x]);
      d[x] = bits(fromAbove < here ? fromAbove : here);
    }
  }
}

// Tables of a width: squares, and half the reciprocals of differences.
struct Tables {
  const float *squares, *halves;
};

// What a thread works a row out in.
struct RowWork {
  float *f, *from;  // parabola k is lowest between from[k] and from[k + 1]
  int32_t* at;
};

void row(Row d, ptrdiff_t width, int32_t height, const Tables& t, const RowWork& w) {
  for (ptrdiff_t x = 0; x < width; ++x) {
    const int32_t g = whole(d[x]);
    w.f[x] = g >= height ? none : (float)g * (float)g;
  }
  ptrdiff_t k = 0;
  w.at[0] = 0;
  w.from[0] = -none;
  w.from[1] = none;
  for (ptrdiff_t q = 1; q < width; ++q) {
    const float top = w.f[q] + t.squares[q];
    float s;
    for (;; --k) {
      const int32_t v = w.at[k];
      s = (top - w.f[v] - t.squares[v]) * t.halves[q - v];
      if (s > w.from[k]) break;
    }
    ++k;
    w.at[k] = (int32_t)q;
    w.from[k] = s;
    w.from[k + 1] = none;
  }
  k = 0;
  for (ptrdiff_t q = 0; q < width; ++q) {
    while ((float)q > w.from[k + 1]) ++k;
    const ptrdiff_t apart = q - w.at[k];
    d[q] = t.squares[apart < 0 ? -apart : apart] + w.f[w.at[k]];
  }
  orvsSqrt_32f(raw(d), raw(d), (int32_t)width);
}

int32_t rounded4(int32_t n) { return wrapAdd(n, 3) & ~3; }

}  // namespace

OrvStatus orviTrueDistanceTransformGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  const int32_t width = rounded4(roiSize.width), height = rounded4(roiSize.height);
  *bufferSize = wrapMul(wrapAdd(wrapMul(width > height ? width : height, 24), 56), owncvGetMaxNumThreads());
  return orvStatusOk;
}

OrvStatus orviTrueDistanceTransform_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= roiSize.width && dstStep >= rowBytes<float>(roiSize.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<float>(dstStep), orvStatusStepAlign);
  const ptrdiff_t width = roiSize.width;
  const Plane<float> result{dst, dstStep};
  columns({src, srcStep}, result, roiSize);

  Scratch scratch{buffer};
  float *const squares = scratch.take<float>(width), *const halves = scratch.take<float>(width, 4);
  for (ptrdiff_t i = 0; i < width; ++i)
    squares[i] = (float)((double)i * (double)i), halves[i] = i ? 0.5f / (float)i : 0;
  uint8_t* const rest = scratch.next;
  const auto rows = [&](int32_t first, int32_t count, int32_t thread) {
    Scratch own{rest + thread * (12 * width + 4)};
    RowWork work;
    work.f = own.take<float>(width, 4);
    work.from = own.take<float>(width + 1, 4);
    work.at = own.take<int32_t>(width, 4);
    for (int32_t y = first; y < first + count; ++y) row(result.row(y), width, roiSize.height, {squares, halves}, work);
  };
  const int32_t threads = owncvGetMaxNumThreads();
  const bool threaded =
      threads >= 2 && (runomp() != 0 || (wrapMul(threads, roiSize.height) >= 256 && roiSize.width >= 256));
  if (!threaded) rows(0, roiSize.height, 0);
  else runTeam(threads, roiSize.height, [&](int32_t first, int32_t count) { rows(first, count, owncvGetIdThreads()); });
  return orvStatusOk;
}

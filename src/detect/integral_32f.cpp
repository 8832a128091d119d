// Integral image of floats.
//
// Theory: a float sum must be taken column after column, so a single row would wait for each addition. A vector holds
// as many rows as it has lanes: four columns of them are loaded in blocks of 4 x 4, turned, summed, turned back and
// laid down in the table. A second pass adds to each row the finished one above it. Pieces of rows keep both passes in
// the first cache.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detect/integral_32f.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

constexpr ptrdiff_t kPiece = 512;

// Lays down the sums of a row from column `first` to `end`; *sum is its sum so far.
void SumRow(Plane<const float> src, Plane<float> table, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end, float* sum) {
  const auto* s = src.row(y);
  auto* t = table.row(y + 1) + 1;
  for (ptrdiff_t x = first; x < end; ++x) t[x] = *sum += s[x];
}

// Block b of the vector is four columns of row 4 * b, `step` bytes from row to row.
template <class D>
HWY_INLINE hn::VFromD<D> LoadRows(D d, const uint8_t* p, ptrdiff_t step) {
  constexpr ptrdiff_t rows = hn::MaxLanes(D());
  if constexpr (rows == 4) {
    return hn::LoadU(d, (const float*)(const void*)p);
  } else {
    const hn::Half<D> half;
    return hn::Combine(d, LoadRows(half, p + rows / 2 * step, step), LoadRows(half, p, step));
  }
}
template <class D>
HWY_INLINE void StoreRows(D d, hn::VFromD<D> v, uint8_t* p, ptrdiff_t step) {
  constexpr ptrdiff_t rows = hn::MaxLanes(D());
  if constexpr (rows == 4) {
    hn::StoreU(v, d, (float*)(void*)p);
  } else {
    const hn::Half<D> half;
    StoreRows(half, hn::LowerHalf(half, v), p, step);
    StoreRows(half, hn::UpperHalf(half, v), p + rows / 2 * step, step);
  }
}

// Turns the 4 x 4 lanes of each block.
template <class D>
HWY_INLINE void Turn(D d, hn::VFromD<D>& v0, hn::VFromD<D>& v1, hn::VFromD<D>& v2, hn::VFromD<D>& v3) {
  const hn::Repartition<uint64_t, D> d64;
  const auto a = hn::BitCast(d64, hn::InterleaveLower(d, v0, v1)), b = hn::BitCast(d64, hn::InterleaveLower(d, v2, v3));
  const auto c = hn::BitCast(d64, hn::InterleaveUpper(d, v0, v1)), e = hn::BitCast(d64, hn::InterleaveUpper(d, v2, v3));
  v0 = hn::BitCast(d, hn::InterleaveLower(d64, a, b)), v1 = hn::BitCast(d, hn::InterleaveUpper(d64, a, b));
  v2 = hn::BitCast(d, hn::InterleaveLower(d64, c, e)), v3 = hn::BitCast(d, hn::InterleaveUpper(d64, c, e));
}

// The same for the rows from y on, as many as d has lanes.
template <class D>
void SumRows(D d, Plane<const float> src, Plane<float> table, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end, float* sum) {
  const uint8_t* s = (const uint8_t*)raw(src.row(y));
  uint8_t* t = (uint8_t*)raw(table.row(y + 1) + 1);
  const ptrdiff_t sStep = src.step, tStep = table.step;
  auto sums = hn::LoadU(d, sum);
  ptrdiff_t x = first;
  for (; x + 4 <= end; x += 4) {
    const uint8_t* from = s + 4 * x;
    uint8_t* to = t + 4 * x;
    auto v0 = LoadRows(d, from, sStep), v1 = LoadRows(d, from + sStep, sStep);
    auto v2 = LoadRows(d, from + 2 * sStep, sStep), v3 = LoadRows(d, from + 3 * sStep, sStep);
    Turn(d, v0, v1, v2, v3);
    v0 = hn::Add(sums, v0), v1 = hn::Add(v0, v1), v2 = hn::Add(v1, v2), v3 = hn::Add(v2, v3);
    sums = v3;
    Turn(d, v0, v1, v2, v3);
    StoreRows(d, v0, to, tStep), StoreRows(d, v1, to + tStep, tStep);
    StoreRows(d, v2, to + 2 * tStep, tStep), StoreRows(d, v3, to + 3 * tStep, tStep);
  }
  hn::StoreU(sums, d, sum);
  for (ptrdiff_t i = 0; i < (ptrdiff_t)hn::MaxLanes(d); ++i) SumRow(src, table, y + i, x, end, sum + i);
}

void AddRowAbove(Plane<float> table, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end) {
  const auto* above = table.row(y) + 1;
  auto* t = table.row(y + 1) + 1;
  Columns(
      first, end, PIXEL(x) { t[x] = above[x] + t[x]; });
}

// The rows from y to `end` in groups of as many as d has lanes, then of fewer.
template <class D>
void SumGroups(D d, Plane<const float> src, Plane<float> table, ptrdiff_t y, ptrdiff_t end, ptrdiff_t width) {
  constexpr ptrdiff_t rows = hn::MaxLanes(D());
  for (; y + rows <= end; y += rows) {
    float sum[rows] = {};
    for (ptrdiff_t x = 0; x < width; x += kPiece) {
      const ptrdiff_t next = HWY_MIN(x + kPiece, width);
      if constexpr (rows > 1) SumRows(d, src, table, y, x, next, sum);
      else SumRow(src, table, y, x, next, sum);
      for (ptrdiff_t i = 0; i < rows; ++i) AddRowAbove(table, y + i, x, next);
    }
  }
  if constexpr (rows > 4) SumGroups(hn::Half<D>(), src, table, y, end, width);
  else if constexpr (rows > 1) SumGroups(hn::Simd<float, 1, 0>(), src, table, y, end, width);
}

void FloatSums(Plane<const float> src, Plane<float> dst, OrvSize roi) {
  auto* top = dst.row(0);
  Columns(
      0, (ptrdiff_t)roi.width + 1, PIXEL(x) { top[x] = 0.f; });
  for (ptrdiff_t y = 1; y <= roi.height; ++y) dst.row(y)[0] = 0.f;
  SumGroups(hn::ScalableTag<float>(), src, dst, 0, roi.height, roi.width);
}

KERNELS_END

#if HWY_ONCE
#include "detect/tables.h"

OrvStatus orviIntegral_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize) {
  const OrvStatus status = checkTables(src, srcStep, dst, dstStep, roiSize, 1);
  if (status == orvStatusOk) WIDEST(FloatSums)({src, srcStep}, {dst, dstStep}, roiSize);
  return status;
}

#endif

// Integral image of floats.
//
// Theory: a float sum must be taken column after column, so a single row would wait for each addition. Several rows are
// summed side by side, their sums laid down in the table; a second pass adds to each row the finished one above it.
// Pieces of rows keep both passes in the first cache.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detect/integral_32f.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

constexpr ptrdiff_t kRows = 8, kPiece = 512;

// out[x] = sums over columns `first` to x of kRows rows; `sum` holds their sums so far.
void SumRows(Plane<const float> src, Plane<float> out, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end, float* sum) {
  const uint8_t* s = (const uint8_t*)raw(src.row(y));
  uint8_t* t = (uint8_t*)raw(out.row(y + 1) + 1);
  const ptrdiff_t sStep = src.step, tStep = out.step;
  float a[kRows];
  for (ptrdiff_t i = 0; i < kRows; ++i) a[i] = sum[i];
  for (ptrdiff_t x = first; x < end; ++x)
#pragma GCC unroll 8
    for (ptrdiff_t i = 0; i < kRows; ++i) {
      a[i] += loose((const float*)(const void*)(s + i * sStep))[x];
      loose((float*)(void*)(t + i * tStep))[x] = a[i];
    }
  for (ptrdiff_t i = 0; i < kRows; ++i) sum[i] = a[i];
}

void SumRow(Plane<const float> src, Plane<float> out, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end, float* sum) {
  const auto* s = src.row(y);
  auto* t = out.row(y + 1) + 1;
  for (ptrdiff_t x = first; x < end; ++x) t[x] = *sum += s[x];
}

void AddRowAbove(Plane<float> table, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end) {
  const auto* above = table.row(y) + 1;
  auto* t = table.row(y + 1) + 1;
  Columns(
      first, end, PIXEL(x) { t[x] = above[x] + t[x]; });
}

void FloatSums(Plane<const float> src, Plane<float> dst, OrvSize roi) {
  auto* top = dst.row(0);
  Columns(
      0, (ptrdiff_t)roi.width + 1, PIXEL(x) { top[x] = 0.f; });
  for (ptrdiff_t y = 0; y < roi.height; y += kRows) {
    const ptrdiff_t rows = HWY_MIN(kRows, roi.height - y);
    float sum[kRows] = {};
    for (ptrdiff_t i = 1; i <= rows; ++i) dst.row(y + i)[0] = 0.f;
    for (ptrdiff_t x = 0; x < roi.width; x += kPiece) {
      const ptrdiff_t end = HWY_MIN(x + kPiece, roi.width);
      if (rows == kRows) SumRows(src, dst, y, x, end, sum);
      else
        for (ptrdiff_t i = 0; i < rows; ++i) SumRow(src, dst, y + i, x, end, sum + i);
      for (ptrdiff_t i = 0; i < rows; ++i) AddRowAbove(dst, y + i, x, end);
    }
  }
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

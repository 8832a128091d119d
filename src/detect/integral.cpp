// Integral images of bytes, with and without a table of squares.
//
// Theory: S(r + 1, c + 1) = S(r, c + 1) + the sum of row r up to column c. The row's sum is made by vectors
// (prefix_sums.h), the row above is read back from the table, which still lies in the first cache.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detect/integral.cpp"
#include "core/kernels.h"
#include "detect/tables.h"
#include "detect/prefix_sums.h"

KERNELS_BEGIN

// The last columns of a row, from `x` on; `sum` is that of the columns before.
template <class T, class Sum, class Weight>
HWY_INLINE void LastSums(ptrdiff_t x, ptrdiff_t width, Sum sum, const uint8_t* p, const Loose<T>* above, Loose<T>* out,
                         const Weight& weight) {
  for (; x < width; ++x) {
    sum += (Sum)weight(p[x]);
    out[x] = above[x].value + (T)sum;
  }
}
#define WEIGHT(p) [](int32_t p) __attribute__((always_inline))

// Row 0, and column 0 of each row, hold the start value.
template <class T>
void StartTable(Plane<T> table, OrvSize roi, T value) {
  auto* top = table.row(0);
  Columns(
      0, (ptrdiff_t)roi.width + 1, PIXEL(x) { top[x] = value; });
  for (ptrdiff_t y = 1; y <= roi.height; ++y) table.row(y)[0] = value;
}

template <class T>
void Sums(Plane<const uint8_t> src, Plane<T> dst, OrvSize roi, T value) {
  StartTable(dst, roi, value);
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const uint8_t* p = raw(src.row(y));
    auto *above = dst.row(y) + 1, *out = dst.row(y + 1) + 1;
    RunningSum<T> sum;
    ptrdiff_t x = 0;
    for (; x + 4 * kLanes32 <= roi.width; x += 4 * kLanes32)
      sum.Add(LoadPixelGroups(p + x), raw(above + x), raw(out + x));
    for (; x + kLanes32 <= roi.width; x += kLanes32) sum.Add(LoadPixels(p + x), raw(above + x), raw(out + x));
    LastSums<T>(
        x, roi.width, sum.Last(), p, above, out, WEIGHT(v) { return v; });
  }
}

template <class Types, class T = typename Types::Sum, class Q = typename Types::Square>
void SumsAndSquares(Plane<const uint8_t> src, Plane<T> dst, Plane<Q> sqr, OrvSize roi, T value, Q valueSqr) {
  StartTable(dst, roi, value);
  StartTable(sqr, roi, valueSqr);
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const uint8_t* p = raw(src.row(y));
    auto *above = dst.row(y) + 1, *out = dst.row(y + 1) + 1;
    auto *aboveSqr = sqr.row(y) + 1, *outSqr = sqr.row(y + 1) + 1;
    RunningSum<T> sum;
    RunningSum<Q> squares;
    ptrdiff_t x = 0;
    for (; x + 4 * kLanes32 <= roi.width; x += 4 * kLanes32) {
      sum.Add(LoadPixelGroups(p + x), raw(above + x), raw(out + x));
      squares.Add(LoadSquareGroups(p + x), raw(aboveSqr + x), raw(outSqr + x));
    }
    for (; x + kLanes32 <= roi.width; x += kLanes32) {
      sum.Add(LoadPixels(p + x), raw(above + x), raw(out + x));
      squares.Add(LoadSquares(p + x), raw(aboveSqr + x), raw(outSqr + x));
    }
    LastSums<T>(
        x, roi.width, sum.Last(), p, above, out, WEIGHT(v) { return v; });
    LastSums<Q>(
        x, roi.width, squares.Last(), p, aboveSqr, outSqr, WEIGHT(v) { return v * v; });
  }
}

KERNELS_END

#if HWY_ONCE

namespace {

template <class T>
OrvStatus integral(void (*kernel)(Plane<const uint8_t>, Plane<T>, OrvSize, T), const uint8_t* src, int32_t srcStep,
                   T* dst, int32_t dstStep, OrvSize roi, T value) {
  const OrvStatus status = checkTables(src, srcStep, dst, dstStep, roi, 1);
  if (status == orvStatusOk) kernel({src, srcStep}, {dst, dstStep}, roi, value);
  return status;
}

template <class T, class Q>
OrvStatus integral(void (*kernel)(Plane<const uint8_t>, Plane<T>, Plane<Q>, OrvSize, T, Q), const uint8_t* src,
                   int32_t srcStep, T* dst, int32_t dstStep, Q* sqr, int32_t sqrStep, OrvSize roi, T value,
                   Q valueSqr) {
  const OrvStatus status = checkTables(src, srcStep, dst, dstStep, sqr, sqrStep, roi, 1);
  if (status == orvStatusOk) kernel({src, srcStep}, {dst, dstStep}, {sqr, sqrStep}, roi, value, valueSqr);
  return status;
}

}  // namespace

OrvStatus orviIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, OrvSize roiSize,
                                 int32_t value) {
  return integral(WIDEST(Sums<int32_t>), src, srcStep, dst, dstStep, roiSize, value);
}

OrvStatus orviIntegral_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                 float value) {
  return integral(WIDEST(Sums<float>), src, srcStep, dst, dstStep, roiSize, value);
}

OrvStatus orviSqrIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, int32_t* sqr,
                                    int32_t sqrStep, OrvSize roiSize, int32_t value, int32_t valueSqr) {
  return integral(WIDEST(SumsAndSquares<Tables_32s>), src, srcStep, dst, dstStep, sqr, sqrStep, roiSize, value,
                  valueSqr);
}

OrvStatus orviSqrIntegral_8u32s64f_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, double* sqr,
                                       int32_t sqrStep, OrvSize roiSize, int32_t value, double valueSqr) {
  return integral(WIDEST(SumsAndSquares<Tables_32s64f>), src, srcStep, dst, dstStep, sqr, sqrStep, roiSize, value,
                  valueSqr);
}

OrvStatus orviSqrIntegral_8u32f64f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, double* sqr,
                                       int32_t sqrStep, OrvSize roiSize, float value, double valueSqr) {
  return integral(WIDEST(SumsAndSquares<Tables_32f64f>), src, srcStep, dst, dstStep, sqr, sqrStep, roiSize, value,
                  valueSqr);
}

#endif

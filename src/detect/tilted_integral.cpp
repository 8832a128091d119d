// Integral images tilted by 45 degrees, with and without a table of squares.
//
// Theory: T(r + 2, x) is the sum over the pixels of a quadrant that opens upwards with its tip between columns x - 1
// and x of row r. The quadrants left and right above it overlap in the one two rows above, and leave out two pixels:
//
//                     O(x)
//           P(x - 1)       P(x + 1)           T(x) = p(x - 1) + p(x) + P(x - 1) + P(x + 1) - O(x)
//             p(x - 1)   p(x)
//                     T(x)
//
// A row depends on the two above alone, so its columns are vectors. Float sums are taken from left to right.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detect/tilted_integral.cpp"
#include "core/kernels.h"
#include "detect/tables.h"

KERNELS_BEGIN

template <bool squares>
HWY_INLINE int32_t Weight(uint8_t p) {
  return squares ? p * p : p;
}

// Rows 0 and 1 hold the start value.
template <class T>
void StartTilted(Plane<T> table, OrvSize roi, T value) {
  for (ptrdiff_t y = 0; y < 2; ++y) {
    auto* t = table.row(y);
    Columns(
        0, (ptrdiff_t)roi.width + 2, PIXEL(x) { t[x] = value; });
  }
}

// Table row r + 2. With `beyond` the last column takes the pixel behind the row's end as well.
template <bool squares, class T>
HWY_INLINE void TiltedRow(const uint8_t* p, Plane<T> table, ptrdiff_t r, ptrdiff_t width, bool beyond) {
  const auto *o = table.row(r), *above = table.row(r + 1);
  auto* t = table.row(r + 2);
  t[0] = above[1];
  Columns(
      1, beyond ? width + 1 : width, PIXEL(x) {
        const T pair = (T)(Weight<squares>(p[x - 1]) + Weight<squares>(p[x]));
        t[x] = pair + above[x - 1] + above[x + 1] - o[x];
      });
  if (!beyond) t[width] = (T)Weight<squares>(p[width - 1]) + above[width - 1] + above[width + 1] - o[width];
  t[width + 1] = above[width];
}

template <class T>
void TiltedSums(Plane<const uint8_t> src, Plane<T> dst, OrvSize roi, T value) {
  StartTilted(dst, roi, value);
  for (ptrdiff_t y = 0; y < roi.height; ++y) TiltedRow<false>(raw(src.row(y)), dst, y, roi.width, false);
}

template <class Types, class T = typename Types::Sum, class Q = typename Types::Square>
void TiltedSumsAndSquares(Plane<const uint8_t> src, Plane<T> dst, Plane<Q> sqr, OrvSize roi, T value, Q valueSqr) {
  StartTilted(dst, roi, value);
  StartTilted(sqr, roi, valueSqr);
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const uint8_t* p = raw(src.row(y));
    TiltedRow<false>(p, dst, y, roi.width, true);
    TiltedRow<true>(p, sqr, y, roi.width, true);
  }
}

KERNELS_END

#if HWY_ONCE

namespace {

template <class T>
OrvStatus tilted(void (*kernel)(Plane<const uint8_t>, Plane<T>, OrvSize, T), const uint8_t* src, int32_t srcStep,
                 T* dst, int32_t dstStep, OrvSize roi, T value) {
  const OrvStatus status = checkTables(src, srcStep, dst, dstStep, roi, 2);
  if (status == orvStatusOk) kernel({src, srcStep}, {dst, dstStep}, roi, value);
  return status;
}

template <class T, class Q>
OrvStatus tilted(void (*kernel)(Plane<const uint8_t>, Plane<T>, Plane<Q>, OrvSize, T, Q), const uint8_t* src,
                 int32_t srcStep, T* dst, int32_t dstStep, Q* sqr, int32_t sqrStep, OrvSize roi, T value, Q valueSqr) {
  const OrvStatus status = checkTables(src, srcStep, dst, dstStep, sqr, sqrStep, roi, 2);
  if (status == orvStatusOk) kernel({src, srcStep}, {dst, dstStep}, {sqr, sqrStep}, roi, value, valueSqr);
  return status;
}

}  // namespace

OrvStatus orviTiltedIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                       OrvSize roiSize, int32_t value) {
  return tilted(WIDEST(TiltedSums<int32_t>), src, srcStep, dst, dstStep, roiSize, value);
}

OrvStatus orviTiltedIntegral_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                       OrvSize roiSize, float value) {
  return tilted(WIDEST(TiltedSums<float>), src, srcStep, dst, dstStep, roiSize, value);
}

OrvStatus orviTiltedSqrIntegral_8u32s_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                          int32_t* sqr, int32_t sqrStep, OrvSize roiSize, int32_t value,
                                          int32_t valueSqr) {
  return tilted(WIDEST(TiltedSumsAndSquares<Tables_32s>), src, srcStep, dst, dstStep, sqr, sqrStep, roiSize, value,
                valueSqr);
}

OrvStatus orviTiltedSqrIntegral_8u32s64f_C1R(const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep,
                                             double* sqr, int32_t sqrStep, OrvSize roiSize, int32_t value,
                                             double valueSqr) {
  return tilted(WIDEST(TiltedSumsAndSquares<Tables_32s64f>), src, srcStep, dst, dstStep, sqr, sqrStep, roiSize, value,
                valueSqr);
}

OrvStatus orviTiltedSqrIntegral_8u32f64f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                             double* sqr, int32_t sqrStep, OrvSize roiSize, float value,
                                             double valueSqr) {
  return tilted(WIDEST(TiltedSumsAndSquares<Tables_32f64f>), src, srcStep, dst, dstStep, sqr, sqrStep, roiSize, value,
                valueSqr);
}

#endif

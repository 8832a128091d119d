// Eigenvalues and eigenvectors of the structure tensor.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/eigen_vals_vecs.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "features/eigen.h"

KERNELS_BEGIN

// Vectors of pairs of floats (x[i], y[i]) as 64-bit lanes: those of the lower or the upper half of the lanes.
template <class D, class V>
HWY_INLINE auto LowerPairsOf(D, V x, V y) {
  const hn::Repartition<uint64_t, D> d64;
  const hn::Half<hn::RebindToUnsigned<D>> half;
  const auto low = hn::PromoteTo(d64, hn::LowerHalf(half, hn::BitCast(hn::RebindToUnsigned<D>(), x)));
  const auto high = hn::PromoteTo(d64, hn::LowerHalf(half, hn::BitCast(hn::RebindToUnsigned<D>(), y)));
  return hn::Or(low, hn::ShiftLeft<32>(high));
}
template <class D, class V>
HWY_INLINE auto UpperPairsOf(D d, V x, V y) {
  const hn::Half<D> half;
  const auto toLower = [=](V v) __attribute__((always_inline)) {
    return hn::ZeroExtendVector(d, hn::UpperHalf(half, v));
  };
  return LowerPairsOf(d, toLower(x), toLower(y));
}

// Six vectors as the records of six floats of as many pixels.
template <class D, class V>
HWY_INLINE void StoreRecords(D d, V l1, V l2, V x1, V y1, V x2, V y2, float* dst) {
  const hn::Repartition<uint64_t, D> d64;
  constexpr ptrdiff_t lanes = hn::MaxLanes(D());
  uint64_t* const pairs = (uint64_t*)(void*)dst;
  hn::StoreInterleaved3(LowerPairsOf(d, l1, l2), LowerPairsOf(d, x1, y1), LowerPairsOf(d, x2, y2), d64, pairs);
  hn::StoreInterleaved3(UpperPairsOf(d, l1, l2), UpperPairsOf(d, x1, y1), UpperPairsOf(d, x2, y2), d64,
                        pairs + 3 * lanes / 2);
}

// The records of a vector of pixels. Roots and divisions of the general vectors are dear, so they are left out where no
// pixel needs them.
template <class D>
HWY_INLINE void Records(D d, const float* means, ptrdiff_t pitch, const TensorWork& work, float* dst) {
  const auto scale = hn::Set(d, work.scale), zero = hn::Zero(d), one = hn::Set(d, 1.0f), half = hn::Set(d, 0.5f);
  const auto a = hn::Mul(hn::LoadU(d, means), scale), c = hn::Mul(hn::LoadU(d, means + pitch), scale),
             b = hn::Mul(hn::LoadU(d, means + 2 * pitch), scale);
  const auto t = hn::Mul(hn::Max(a, b), hn::Set(d, 0.01f));
  const auto difference = hn::Sub(a, b), sum = hn::Add(a, b);
  const auto r = hn::Sqrt(hn::Add(hn::Mul(hn::Mul(hn::Set(d, 4.0f), c), c), hn::Mul(difference, difference)));
  const auto determinant = hn::Sub(hn::Mul(a, b), hn::Mul(c, c));
  const auto flat = hn::Or(hn::Gt(t, hn::Min(a, b)), hn::Gt(t, determinant));
  const auto l1 = hn::Mul(hn::Add(sum, r), half), l2 = hn::Mul(hn::Sub(sum, r), half);
  const auto axes = hn::Gt(t, hn::Abs(c));
  auto x1 = one, y1 = zero, x2 = zero, y2 = one;
  if (!hn::AllTrue(d, hn::Or(flat, axes))) {
    const auto q = hn::Mul(c, hn::Set(d, work.sign)), qq = hn::Mul(q, q);
    const auto e1 = hn::Sub(l1, a), e2 = hn::Sub(l2, a);
    const auto n1 = hn::Sqrt(hn::Add(hn::Mul(e1, e1), qq)), n2 = hn::Sqrt(hn::Add(qq, hn::Mul(e2, e2)));
    const auto least = hn::Set(d, 1.1920929e-7f);
    const auto i1 = hn::Div(one, hn::Max(n1, least)), i2 = hn::Div(one, hn::Max(n2, least));
    x1 = hn::IfThenElse(axes, one, hn::Mul(q, i1));
    y1 = hn::IfThenElse(axes, zero, hn::Mul(e1, i1));
    x2 = hn::IfThenElse(axes, zero, hn::Mul(q, i2));
    y2 = hn::IfThenElse(axes, one, hn::Mul(e2, i2));
  }
  const auto unlessFlat = [&](auto v) __attribute__((always_inline)) { return hn::IfThenZeroElse(flat, v); };
  StoreRecords(d, unlessFlat(l1), unlessFlat(l2), unlessFlat(x1), unlessFlat(y1), unlessFlat(x2), unlessFlat(y2), dst);
}

// The last pixels of a row go through blocks of a whole vector.
void EigenRecords(const float* means, ptrdiff_t pitch, float* dst, ptrdiff_t n, ptrdiff_t, const TensorWork& work) {
  const hn::ScalableTag<float> d;
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(float);
  ptrdiff_t x = 0;
  for (; x + lanes <= n; x += lanes) Records(d, means + x, pitch, work, dst + 6 * x);
  if (x == n) return;
  HWY_ALIGN float block[3 * lanes] = {}, records[6 * lanes];
  for (int p = 0; p < 3; ++p) memcpy(block + p * lanes, means + p * pitch + x, (size_t)(n - x) * sizeof(float));
  Records(d, block, lanes, work, records);
  memcpy((void*)(dst + 6 * x), records, (size_t)(n - x) * 6 * sizeof(float));
}

KERNELS_END

#if HWY_ONCE
namespace {

TensorResult eigenRecords() { return WIDEST(EigenRecords); }

}  // namespace

OrvStatus orviEigenValsVecs_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer) {
  return eigenCorners(
      EigenCall<uint8_t>{{src, srcStep}, {dst, dstStep}, roiSize, 6, 6, {kernelType, apertureSize, avgWindow}, buffer},
      eigenRecords);
}
// dstStep is measured against one float a pixel; this is meant.
OrvStatus orviEigenValsVecs_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                    int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer) {
  return eigenCorners(
      EigenCall<float>{{src, srcStep}, {dst, dstStep}, roiSize, 6, 1, {kernelType, apertureSize, avgWindow}, buffer},
      eigenRecords);
}

OrvStatus orviEigenValsVecsGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                                   int32_t* bufferSize) {
  return eigenBufferSize(roiSize, apertureSize, avgWindow, true, bufferSize);
}
OrvStatus orviEigenValsVecsGetBufferSize_32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                                 int32_t* bufferSize) {
  return eigenBufferSize(roiSize, apertureSize, avgWindow, false, bufferSize);
}

#endif

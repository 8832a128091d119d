// Tracking windows with 7 fractional bits: sums of 32-bit products along a row, which wrap, added up exactly.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/flow_kernels_q7.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "motion/flow_derive.h"
#include "motion/flow_kernels.h"

KERNELS_BEGIN

using D16 = hn::ScalableTag<int16_t>;
using D32 = hn::Repartition<int32_t, D16>;
using V32 = hn::VFromD<D32>;
using WindowQ7 = FlowWindow<uint16_t, int16_t>;

void DeriveQ7(const uint16_t* first, int16_t* gx, int16_t* gy, ptrdiff_t stride, ptrdiff_t width, ptrdiff_t height) {
  DeriveWindow(first, gx, gy, stride, width, height);
}

// The lower half plus the upper half, down to four lanes.
HWY_INLINE __m128i FoldLanes(hn::Vec128<int32_t> v) { return v.raw; }
#if HWY_TARGET <= HWY_AVX2
HWY_INLINE __m128i FoldLanes(hn::Vec256<int32_t> v) {
  return _mm_add_epi32(_mm256_castsi256_si128(v.raw), _mm256_extracti128_si256(v.raw, 1));
}
#endif
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE __m128i FoldLanes(hn::Vec512<int32_t> v) {
  return FoldLanes(
      hn::Vec256<int32_t>{_mm256_add_epi32(_mm512_castsi512_si256(v.raw), _mm512_extracti64x4_epi64(v.raw, 1))});
}
#endif

// Calls step(offset, keep) for the vectors of a row, where keep(v) blanks the lanes beyond the row's end.
template <class Mask, class Step>
HWY_INLINE void RowVectors(ptrdiff_t offset, ptrdiff_t width, Mask tail, const Step& step) {
  constexpr ptrdiff_t lanes = hn::MaxLanes(D16());
  ptrdiff_t x = 0;
  for (; x + lanes <= width; x += lanes) step(offset + x, [](auto v) HWY_ATTR { return v; });
  if (x < width) step(offset + x, [&](auto v) HWY_ATTR { return hn::IfThenElseZero(tail, v); });
}
HWY_INLINE auto TailMask(ptrdiff_t width) {
  return hn::FirstN(D16(), (size_t)(width % (ptrdiff_t)hn::MaxLanes(D16())));
}

HWY_INLINE V32 AddProducts(V32 sum, hn::VFromD<D16> a, hn::VFromD<D16> b) { return AddPairProducts(D32(), sum, a, b); }
// Adds two whole numbers to two doubles: below 2^53 nothing is lost.
HWY_INLINE __m128d AddExactly(__m128d sum, __m128i pair) { return _mm_add_pd(sum, _mm_cvtepi32_pd(pair)); }

HWY_INLINE hn::VFromD<D16> Distance(const WindowQ7& w, ptrdiff_t i) {
  const hn::RebindToUnsigned<D16> du;
  return hn::BitCast(D16(), hn::Sub(hn::LoadU(du, w.first + i), hn::LoadU(du, w.second + i)));
}

void MatrixQ7(const WindowQ7& w, double sums[3]) {
  const auto tail = TailMask(w.width);
  __m128d xxy = _mm_setzero_pd(), yy = _mm_setzero_pd();
  for (ptrdiff_t y = 0; y < w.height; ++y) {
    V32 a = hn::Zero(D32()), b = a, c = a;
    RowVectors(y * w.stride, w.width, tail, [&](ptrdiff_t i, const auto& keep) HWY_ATTR {
      const auto gx = keep(hn::LoadU(D16(), w.gx + i)), gy = keep(hn::LoadU(D16(), w.gy + i));
      a = AddProducts(a, gx, gx);
      b = AddProducts(b, gx, gy);
      c = AddProducts(c, gy, gy);
    });
    const __m128i cc = _mm_hadd_epi32(FoldLanes(c), FoldLanes(c));
    const __m128i all = _mm_hadd_epi32(_mm_hadd_epi32(FoldLanes(a), FoldLanes(b)), cc);
    xxy = AddExactly(xxy, all);
    yy = AddExactly(yy, _mm_unpackhi_epi64(all, all));
  }
  _mm_storeu_pd(sums, xxy);
  _mm_store_sd(sums + 2, yy);
}

void MismatchQ7(const WindowQ7& w, double sums[2]) {
  const auto tail = TailMask(w.width);
  __m128d total = _mm_setzero_pd();
  for (ptrdiff_t y = 0; y < w.height; ++y) {
    V32 bx = hn::Zero(D32()), by = bx;
    RowVectors(y * w.stride, w.width, tail, [&](ptrdiff_t i, const auto& keep) HWY_ATTR {
      const auto d = keep(Distance(w, i));
      bx = AddProducts(bx, d, hn::LoadU(D16(), w.gx + i));
      by = AddProducts(by, d, hn::LoadU(D16(), w.gy + i));
    });
    const __m128i both = _mm_hadd_epi32(FoldLanes(bx), FoldLanes(by));
    total = AddExactly(total, _mm_hadd_epi32(both, both));
  }
  _mm_storeu_pd(sums, total);
}

// The squares of two distances, at most 32640, fit 32 bits; they are widened at once.
double SquaresQ7(const WindowQ7& w) {
  const hn::Repartition<uint64_t, D16> d64;
  const auto tail = TailMask(w.width);
  auto sum = hn::Zero(d64);
  for (ptrdiff_t y = 0; y < w.height; ++y)
    RowVectors(y * w.stride, w.width, tail, [&](ptrdiff_t i, const auto& keep) HWY_ATTR {
      const auto d = keep(Distance(w, i));
      const auto squares = hn::BitCast(d64, AddProducts(hn::Zero(D32()), d, d));
      sum = hn::Add(sum, hn::Add(hn::And(squares, hn::Set(d64, 0xFFFFFFFFu)), hn::ShiftRight<32>(squares)));
    });
  return (double)hn::GetLane(hn::SumOfLanes(d64, sum));
}

FlowKernels<uint16_t, int16_t> KernelsQ7() { return {DeriveQ7, MatrixQ7, MismatchQ7, SquaresQ7}; }

KERNELS_END

#if HWY_ONCE

FlowKernels<uint16_t, int16_t> ORV_VARIANT::flowKernelsQ7() { return WIDEST(KernelsQ7)(); }

#endif

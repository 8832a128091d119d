// Laplacian filters: sums of two separable kernels, whose row passes share a slot of the ring.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/laplacian.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/pair_taps.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"

KERNELS_BEGIN

// 3x3. Plane A holds s[x - 1] + s[x + 1], plane B 8 * s[x]; the result is 2 * (A(y - 1) + A(y + 1)) - B(y).
using kerEight_3 = Taps<0, 8, 0>;

template <class T, class R>
void Planes3(const T* s, R* out, ptrdiff_t n, ptrdiff_t plane) {
  ForLanes<R>(
      n, VECTOR(d, x) {
        hn::StoreU(FoldWindow<kerLap_3>(d, s + x), d, out + x);
        hn::StoreU(FoldWindow<kerEight_3>(d, s + x), d, out + plane + x);
      });
}

// The planes that the columns of 3x3 meet, from the top.
template <class R>
struct Rows3 {
  const R* row[3];
  HWY_INLINE Rows3(const R* const* rows, ptrdiff_t plane) : row{rows[0], rows[1] + plane, rows[2]} {}
};

template <class D, class R>
HWY_INLINE hn::VFromD<D> Sum3(D d, const Rows3<R>& p, ptrdiff_t x) {
  const auto a = hn::Add(LoadLanes(d, p.row[0] + x), LoadLanes(d, p.row[2] + x));
  return hn::Sub(Times<2>(d, a), LoadLanes(d, p.row[1] + x));
}

template <class R>
void Columns3(const R* const* rows, R* dst, ptrdiff_t width, const ColumnWork& work) {
  const Rows3<R> p(rows, work.plane);
  ForLanes<R>(
      width, VECTOR(d, x) { hn::StoreU(Sum3(d, p, x), d, dst + x); });
}

void ByteColumns3(const int16_t* const* rows, int8_t* dst, ptrdiff_t width, const ColumnWork& work) {
  const Rows3<int16_t> p(rows, work.plane);
  if (work.shift == noShift) return DividedColumns<Taps<2, -1, 2>>(p.row, dst, width, work);
  ShiftedBytes(
      dst, width, work, VECTOR(d, x) { return Sum3(d, p, x); });
}

// 5x5. Plane 0 holds the smoothed row, plane 1 its second difference; each meets the other taps in the columns.
template <class T, class R>
void Planes5(const T* s, R* out, ptrdiff_t n, ptrdiff_t plane) {
  ForLanes<R>(
      n, VECTOR(d, x) {
        hn::StoreU(FoldWindow<kerSobel_5>(d, s + x), d, out + x);
        hn::StoreU(FoldWindow<kerD2x_5>(d, s + x), d, out + plane + x);
      });
}

template <class R>
struct Rows5 {
  const R *smooth[5], *second[5];
  HWY_INLINE Rows5(const R* const* rows, ptrdiff_t plane) {
    for (int i = 0; i < 5; ++i) smooth[i] = rows[i], second[i] = rows[i] + plane;
  }
};

template <class D, class R>
HWY_INLINE hn::VFromD<D> Sum5(D d, const Rows5<R>& p, ptrdiff_t x) {
  const auto second = [&](int i) __attribute__((always_inline)) { return LoadLanes(d, p.second[i] + x); };
  const auto inner = hn::Add(Times<4>(d, hn::Add(second(1), second(3))), Times<6>(d, second(2)));
  return hn::Add(FoldColumns<kerD2x_5>(d, p.smooth, x), hn::Add(inner, hn::Add(second(0), second(4))));
}

template <class R>
void Columns5(const R* const* rows, R* dst, ptrdiff_t width, const ColumnWork& work) {
  const Rows5<R> p(rows, work.plane);
  ForLanes<R>(
      width, VECTOR(d, x) { hn::StoreU(Sum5(d, p, x), d, dst + x); });
}

// The whole sum times 1.0f / divisor, by `finish`.
template <class D, class Finish>
HWY_INLINE void StoreScaled(D d, hn::VFromD<D> sum, const Finish& finish, int8_t* dst) {
  const Wide<D> d32;
  Halves<D> wide;
  wide.lo = finish(d32, hn::ShiftRight<16>(hn::BitCast(d32, LowerPairs(d, hn::Zero(d), sum))));
  wide.hi = wide.lo;
  if constexpr (kTwoHalves<D>)
    wide.hi = finish(d32, hn::ShiftRight<16>(hn::BitCast(d32, UpperPairs(d, hn::Zero(d), sum))));
  StoreSaturated(d, NarrowSaturated(d, wide), dst);
}

void ByteColumns5(const int16_t* const* rows, int8_t* dst, ptrdiff_t width, const ColumnWork& work) {
  const Rows5<int16_t> p(rows, work.plane);
  if (work.shift != noShift) {
    ShiftedBytes(
        dst, width, work, VECTOR(d, x) { return Sum5(d, p, x); });
    return;
  }
  const ptrdiff_t whole = width & ~(ptrdiff_t)15;
  const float scale = 1.0f / (float)work.divisor;
  ForLanes<int16_t>(
      whole, VECTOR(d, x) { StoreScaled(d, Sum5(d, p, x), ScaledToNearest{scale}, dst + x); });
  ForLanes<int16_t>(
      width - whole, VECTOR(d, i) { StoreScaled(d, Sum5(d, p, whole + i), ScaledToZero{scale}, dst + whole + i); });
}

FixedFilter<uint8_t, int16_t, int16_t> Shorts3() { return {3, 2, {2, 8}, Planes3, Columns3}; }
FixedFilter<uint8_t, int16_t, int16_t> Shorts5() { return {5, 2, {16, 0}, Planes5, Columns5}; }
FixedFilter<uint8_t, int16_t, int8_t> Bytes3() { return {3, 2, {2, 8}, Planes3, ByteColumns3}; }
FixedFilter<uint8_t, int16_t, int8_t> Bytes5() { return {5, 2, {16, 0}, Planes5, ByteColumns5}; }
FixedFilter<float, float, float> Floats3() { return {3, 2, {2, 8}, Planes3, Columns3}; }
FixedFilter<float, float, float> Floats5() { return {5, 2, {16, 0}, Planes5, Columns5}; }

KERNELS_END

#if HWY_ONCE
namespace {

constexpr FixedSize sizeBytes{4, 2, 576, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R,
                              orviFilterColumnPipelineGetBufferSize_16s_C1R};
constexpr FixedSize sizeFloats{8, 2, 576, orviFilterRowBorderPipelineGetBufferSize_32f_C1R,
                               orviFilterColumnPipelineGetBufferSize_32f_C1R};

}  // namespace

OrvStatus orviFilterLaplacianBorder_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                              uint8_t borderValue, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int16_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, sizeBytes, WIDEST(Shorts3),
      WIDEST(Shorts5));
}
OrvStatus orviFilterLaplacianGetBufferSize_8u16s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(sizeBytes, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterLaplacianBorder_8u8s_C1R(const uint8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep,
                                             OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                             uint8_t borderValue, int32_t divisor, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, int8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer, divisor}, sizeBytes,
      WIDEST(Bytes3), WIDEST(Bytes5));
}
OrvStatus orviFilterLaplacianGetBufferSize_8u8s_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(sizeBytes, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterLaplacianBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                            float borderValue, uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, sizeFloats, WIDEST(Floats3),
      WIDEST(Floats5));
}
OrvStatus orviFilterLaplacianGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(sizeFloats, roiSize, maskSize, bufferSize);
}

#endif

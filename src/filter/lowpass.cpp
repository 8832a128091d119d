// Lowpass filters: the mean of the mask.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/lowpass.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"

KERNELS_BEGIN

// S / 9 or S / 25 of 16-bit sums S; no result is above 255. The bias of 3x3 keeps a flat image of 255, and that 5x5 has
// none is meant.
template <class K>
void MeanBytes(const int16_t* const* rows, uint8_t* dst, ptrdiff_t width, const ColumnWork&) {
  constexpr bool small = K::size == 3;
  const RowPointers<K::size, int16_t> p(rows);
  ForLanes<int16_t>(
      width, VECTOR(d, x) {
        const hn::RebindToUnsigned<decltype(d)> du;
        const auto sum = hn::BitCast(du, hn::Add(FoldColumns<K>(d, p.row, x), hn::Set(d, small ? 5 : 0)));
        const auto mean = hn::MulHigh(sum, hn::Set(du, small ? 7280 : 2621));
        StoreSaturated(d, hn::BitCast(d, mean), dst + x);
      });
}

template <class K>
void MeanFloats(const float* const* rows, float* dst, ptrdiff_t width, const ColumnWork&) {
  const RowPointers<K::size, float> p(rows);
  ForLanes<float>(
      width, VECTOR(d, x) {
        const auto scale = hn::Set(d, K::size == 3 ? 0.11111111f : 0.04f);
        hn::StoreU(hn::Mul(FoldColumns<K>(d, p.row, x), scale), d, dst + x);
      });
}

template <class K>
FixedFilter<uint8_t, int16_t, uint8_t> Lowpass8u() {
  return {K::size, 1, {K::sum}, ByteRows<K>, MeanBytes<K>};
}
template <class K>
FixedFilter<float, float, float> Lowpass32f() {
  return {K::size, 1, {K::sum}, FloatRows<K>, MeanFloats<K>};
}

KERNELS_END

#if HWY_ONCE
namespace {

constexpr FixedSize size8u{2, 1, 368, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R,
                           orviFilterColumnPipelineGetBufferSize_16s8u_C1R};
constexpr FixedSize size32f{4, 1, 304, orviFilterRowBorderPipelineGetBufferSize_32f_C1R,
                            orviFilterColumnPipelineGetBufferSize_32f_C1R};

}  // namespace

OrvStatus orviFilterLowpassBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                         uint8_t borderValue, uint8_t* buffer) {
  return fixedFilter<uint8_t, int16_t, uint8_t>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size8u,
      WIDEST(Lowpass8u<kerAvr_3>), WIDEST(Lowpass8u<kerAvr_5>));
}
OrvStatus orviFilterLowpassGetBufferSize_8u_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size8u, roiSize, maskSize, bufferSize);
}

OrvStatus orviFilterLowpassBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvMaskSize maskSize, OrvBorderType borderType,
                                          float borderValue, uint8_t* buffer) {
  return fixedFilter<float, float, float>(
      {src, srcStep, dst, dstStep, roiSize, maskSize, borderType, borderValue, buffer}, size32f,
      WIDEST(Lowpass32f<kerAvr_3>), WIDEST(Lowpass32f<kerAvr_5>));
}
OrvStatus orviFilterLowpassGetBufferSize_32f_C1R(OrvSize roiSize, OrvMaskSize maskSize, int32_t* bufferSize) {
  return reportFixedSize(size32f, roiSize, maskSize, bufferSize);
}

#endif

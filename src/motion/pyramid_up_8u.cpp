// The dyadic step up for bytes.
//
// Theory. As down, sums are exact and the order of the passes is free: three rows are folded into the one above and the
// one below, then each folded row is doubled:
//
//   three source rows --FoldRows--> even row, odd row, each with a pixel more at both ends --DoubleRow--> two result
//   rows
//
// Signed bytes are flipped to v + 128 and back; all weights sum up to 64.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/pyramid_up_8u.cpp"
#include "core/kernels.h"
#include "motion/pixel_triples.h"
#include "motion/pyramid_dyadic.h"

KERNELS_BEGIN

// 1 6 1 and 0 4 4 over elements that lie `apart`; at most 8 times the largest.
template <class D>
struct Doubled {
  hn::VFromD<D> even, odd;
  HWY_INLINE Doubled(hn::VFromD<D> before, hn::VFromD<D> here, hn::VFromD<D> behind) {
    const auto twice = hn::Add(here, here);
    even = hn::Add(hn::Add(before, behind), hn::Add(twice, hn::ShiftLeft<1>(twice)));
    odd = hn::ShiftLeft<2>(hn::Add(here, behind));
  }
};

void FoldRows(const uint8_t* const* rows, uint16_t* even, uint16_t* odd, ptrdiff_t n, uint8_t flip) {
  const uint8_t *r0 = rows[0], *r1 = rows[1], *r2 = rows[2];
  Vectors<uint16_t>(
      0, n, VECTOR(d, x) {
        const auto load = [&](const uint8_t* p) __attribute__((always_inline)) {
          return hn::Xor(hn::PromoteTo(d, hn::LoadU(hn::Rebind<uint8_t, decltype(d)>(), p + x)), hn::Set(d, flip));
        };
        const Doubled<decltype(d)> rowsOf(load(r0), load(r1), load(r2));
        hn::StoreU(rowsOf.even, d, even + x);
        hn::StoreU(rowsOf.odd, d, odd + x);
      });
}

// The two pixels that column x makes, rounded.
template <int C, class D>
HWY_INLINE Doubled<D> DoubledColumns(D d, const uint16_t* s) {
  Doubled<D> columns(hn::LoadU(d, s - C), hn::LoadU(d, s), hn::LoadU(d, s + C));
  columns.even = hn::ShiftRight<6>(hn::Add(columns.even, hn::Set(d, 32)));
  columns.odd = hn::ShiftRight<6>(hn::Add(columns.odd, hn::Set(d, 32)));
  return columns;
}

// The row of 2n pixels from a folded row of n; `scratch` of 2n elements is for three channels.
void DoubleRowC1(const uint16_t* folded, uint8_t*, uint8_t* dst, ptrdiff_t n, uint8_t flip) {
  Vectors<uint16_t>(
      0, n, VECTOR(d, x) {
        const auto columns = DoubledColumns<1>(d, folded + x);
        const hn::Repartition<uint8_t, decltype(d)> d8;
        const auto bytes = hn::BitCast(d8, hn::Or(columns.even, hn::ShiftLeft<8>(columns.odd)));
        hn::StoreU(hn::Xor(bytes, hn::Set(d8, flip)), d8, dst + 2 * x);
      });
}
void DoubleRowC3(const uint16_t* folded, uint8_t* scratch, uint8_t* dst, ptrdiff_t n, uint8_t flip) {
  uint8_t *const even = scratch, *const odd = scratch + 3 * n;
  Vectors<uint16_t>(
      0, 3 * n, VECTOR(d, x) {
        const auto columns = DoubledColumns<3>(d, folded + x);
        const hn::RebindToSigned<decltype(d)> di;
        const hn::Rebind<uint8_t, decltype(d)> d8;
        const auto store = [&](hn::VFromD<decltype(d)> v, uint8_t * p) __attribute__((always_inline)) {
          hn::StoreU(hn::Xor(hn::DemoteTo(d8, hn::BitCast(di, v)), hn::Set(d8, flip)), d8, p + x);
        };
        store(columns.even, even);
        store(columns.odd, odd);
      });
  WeaveTriples(even, odd, dst, n);
}

KERNELS_END

#if HWY_ONCE
namespace {

struct UpKernels {
  void (*fold)(const uint8_t* const* rows, uint16_t* even, uint16_t* odd, ptrdiff_t n, uint8_t flip);
  void (*twice)(const uint16_t* folded, uint8_t* scratch, uint8_t* dst, ptrdiff_t n, uint8_t flip);
};

// The body. `flip` turns elements to unsigned bytes and back.
OrvStatus pyramidUp(UpKernels kernels, const void* srcData, int32_t srcStep, void* dstData, int32_t dstStep,
                    OrvSize roi, int32_t channels, uint8_t flip, uint8_t* buffer) {
  const Plane<const uint8_t> src{(const uint8_t*)srcData, srcStep};
  const Plane<uint8_t> dst{(uint8_t*)dstData, dstStep};
  const OrvStatus status =
      checkDyadic(src.data, srcStep, dst.data, dstStep, roi, wrapMul(2, roi.width), channels, buffer);
  ORV_REQUIRE(status == orvStatusOk, status);
  const ptrdiff_t width = roi.width, n = width * channels;
  Scratch scratch{buffer};
  uint16_t* folded[4];
  for (uint16_t*& row : folded) row = takeRow(scratch, n, channels);
  uint8_t* const doubled = scratch.take<uint8_t>(2 * n, 1);

  const auto fold = [&](ptrdiff_t y) {
    const uint8_t* rows[3];
    for (int32_t i = 0; i < 3; ++i) rows[i] = raw(src.row(lineAbove(y + i - 1, roi.height)));
    uint16_t** const pair = folded + 2 * (y & 1);
    kernels.fold(rows, pair[0], pair[1], n, flip);
    for (ptrdiff_t i = 0; i < 2; ++i)
      for (const ptrdiff_t x : {(ptrdiff_t)-1, width})
        for (ptrdiff_t c = 0; c < channels; ++c)
          pair[i][x * channels + c] = pair[i][lineAbove(x, width) * channels + c];
  };
  fold(0);
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    // a row ahead: what has just been stored is slow to load at another place
    if (y + 1 < roi.height) fold(y + 1);
    for (ptrdiff_t i = 0; i < 2; ++i)
      kernels.twice(folded[2 * (y & 1) + i], doubled, raw(dst.row(2 * y + i)), width, flip);
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviPyrUp_Gauss5x5_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer) {
  return pyramidUp({WIDEST(FoldRows), WIDEST(DoubleRowC1)}, src, srcStep, dst, dstStep, roiSize, 1, 0, buffer);
}
OrvStatus orviPyrUp_Gauss5x5_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer) {
  return pyramidUp({WIDEST(FoldRows), WIDEST(DoubleRowC3)}, src, srcStep, dst, dstStep, roiSize, 3, 0, buffer);
}
OrvStatus orviPyrUp_Gauss5x5_8s_C1R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer) {
  return pyramidUp({WIDEST(FoldRows), WIDEST(DoubleRowC1)}, src, srcStep, dst, dstStep, roiSize, 1, 128, buffer);
}
OrvStatus orviPyrUp_Gauss5x5_8s_C3R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer) {
  return pyramidUp({WIDEST(FoldRows), WIDEST(DoubleRowC3)}, src, srcStep, dst, dstStep, roiSize, 3, 128, buffer);
}

#endif

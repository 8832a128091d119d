// The dyadic step down for bytes.
//
// Theory. Sums of whole numbers are exact, so the order of the two passes is free: five rows are folded first, over the
// full width, then every second pixel of the folded row:
//
//   five source rows --FoldRows--> folded row, mirrored at both ends --HalveRow--> a row of the result
//
// The folded row is the only intermediate, and nothing is kept from one result row to the next. Signed bytes are
// flipped to v + 128 on the way in and back on the way out: all weights sum up to 256, so that is exact too.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/pyramid_down_8u.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "motion/pixel_triples.h"
#include "motion/pyramid_dyadic.h"

KERNELS_BEGIN

// 1 4 6 4 1 down the columns; at most 4080.
void FoldRows(const uint8_t* const* rows, uint16_t* sums, ptrdiff_t n, uint8_t flip) {
  const uint8_t *r0 = rows[0], *r1 = rows[1], *r2 = rows[2], *r3 = rows[3], *r4 = rows[4];
  Vectors<uint16_t>(
      0, n, VECTOR(d, x) {
        const auto load = [&](const uint8_t* p) __attribute__((always_inline)) {
          return hn::Xor(hn::PromoteTo(d, hn::LoadU(hn::Rebind<uint8_t, decltype(d)>(), p + x)), hn::Set(d, flip));
        };
        const auto outer = hn::Add(load(r0), load(r4)), middle = load(r2);
        const auto inner = hn::Add(hn::Add(load(r1), load(r3)), middle);
        hn::StoreU(hn::Add(hn::Add(outer, hn::Add(middle, middle)), hn::ShiftLeft<2>(inner)), d, sums + x);
      });
}

// n pixels of one channel, each from folded[2x - 2] to folded[2x + 2]; folded[2n + 1] is read, too. `unused` is scratch
// of the form with three channels.
void HalveRowC1(const uint16_t* folded, uint8_t*, uint8_t* dst, ptrdiff_t n, uint8_t flip) {
  const auto* s = (const int16_t*)folded;
  Vectors<int32_t>(
      0, n, VECTOR(d, x) {
        const hn::Repartition<int16_t, decltype(d)> d16;
        const hn::Rebind<uint8_t, decltype(d)> d8;
        const int16_t* p = s + 2 * x;
        auto sum = hn::Set(d, 128);
        sum = AddPairProducts(d, sum, hn::LoadU(d16, p - 2), TapPair(d, 1 | 4 << 16));
        sum = AddPairProducts(d, sum, hn::LoadU(d16, p), TapPair(d, 6 | 4 << 16));
        sum = AddPairProducts(d, sum, hn::LoadU(d16, p + 2), TapPair(d, 1));
        const auto bytes = hn::DemoteTo(d8, hn::ShiftRight<8>(sum));
        hn::StoreU(hn::Xor(bytes, hn::Set(d8, flip)), d8, dst + x);
      });
}

// n pixels of three channels: all pixels are filtered into `full`, then every second one is taken.
void HalveRowC3(const uint16_t* folded, uint8_t* full, uint8_t* dst, ptrdiff_t n, uint8_t flip) {
  Vectors<uint16_t>(
      0, 6 * n - 3, VECTOR(d, x) {
        const hn::Rebind<uint8_t, decltype(d)> d8;
        const hn::RebindToSigned<decltype(d)> di;
        const auto at = [&](ptrdiff_t i) __attribute__((always_inline)) { return hn::LoadU(d, folded + x + i); };
        const auto outer = hn::Add(at(-6), at(6)), middle = at(0);
        const auto inner = hn::Add(hn::Add(at(-3), at(3)), middle);
        const auto sum = hn::Add(hn::Add(outer, hn::Add(middle, middle)), hn::ShiftLeft<2>(inner));
        const auto level = hn::ShiftRight<8>(hn::Add(sum, hn::Set(d, 128)));  // below 2^16 all the way
        hn::StoreU(hn::Xor(hn::DemoteTo(d8, hn::BitCast(di, level)), hn::Set(d8, flip)), d8, full + x);
      });
  EveryOtherTriple(full, dst, n);
}

KERNELS_END

#if HWY_ONCE
namespace {

struct DownKernels {
  void (*fold)(const uint8_t* const* rows, uint16_t* sums, ptrdiff_t n, uint8_t flip);
  void (*halve)(const uint16_t* folded, uint8_t* full, uint8_t* dst, ptrdiff_t n, uint8_t flip);
};

// The body. `flip` turns elements to unsigned bytes and back.
OrvStatus pyramidDown(DownKernels kernels, const void* srcData, int32_t srcStep, void* dstData, int32_t dstStep,
                      OrvSize roi, int32_t channels, uint8_t flip, uint8_t* buffer) {
  const Plane<const uint8_t> src{(const uint8_t*)srcData, srcStep};
  const Plane<uint8_t> dst{(uint8_t*)dstData, dstStep};
  const OrvStatus status = checkDyadic(src.data, srcStep, dst.data, dstStep, roi, halved(roi.width), channels, buffer);
  ORV_REQUIRE(status == orvStatusOk, status);
  const ptrdiff_t width = roi.width, n = width * channels;
  Scratch scratch{buffer};
  uint16_t* const folded = takeRow(scratch, n, 2 * channels);
  uint8_t* const full = scratch.take<uint8_t>(n, 1);

  for (ptrdiff_t y = 0; y < halved(roi.height); ++y) {
    const uint8_t* rows[5];
    for (int32_t i = 0; i < 5; ++i) rows[i] = raw(src.row(lineBelow(2 * y + i - 2, roi.height)));
    kernels.fold(rows, folded, n, flip);
    for (const ptrdiff_t x : {(ptrdiff_t)-2, (ptrdiff_t)-1, width, width + 1})
      for (ptrdiff_t c = 0; c < channels; ++c) folded[x * channels + c] = folded[lineBelow(x, width) * channels + c];
    folded[n + 2 * channels] = 0;
    kernels.halve(folded, full, raw(dst.row(y)), halved(roi.width), flip);
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviPyrDown_Gauss5x5_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, uint8_t* buffer) {
  return pyramidDown({WIDEST(FoldRows), WIDEST(HalveRowC1)}, src, srcStep, dst, dstStep, roiSize, 1, 0, buffer);
}
OrvStatus orviPyrDown_Gauss5x5_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, uint8_t* buffer) {
  return pyramidDown({WIDEST(FoldRows), WIDEST(HalveRowC3)}, src, srcStep, dst, dstStep, roiSize, 3, 0, buffer);
}
OrvStatus orviPyrDown_Gauss5x5_8s_C1R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                      uint8_t* buffer) {
  return pyramidDown({WIDEST(FoldRows), WIDEST(HalveRowC1)}, src, srcStep, dst, dstStep, roiSize, 1, 128, buffer);
}
OrvStatus orviPyrDown_Gauss5x5_8s_C3R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                      uint8_t* buffer) {
  return pyramidDown({WIDEST(FoldRows), WIDEST(HalveRowC3)}, src, srcStep, dst, dstStep, roiSize, 3, 128, buffer);
}

#endif

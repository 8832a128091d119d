// Sub-pixel copies of bytes, with whole-number weights of 1/16384.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/subpixel_q14.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "geometry/window_columns.h"
#include "geometry/q14_weights.h"

KERNELS_BEGIN

// A bias of 32768 is part of what the sums start from where it is needed: signed narrowing then saturates to 16
// unsigned bits.
template <class D16, class Lanes>
HWY_INLINE void StoreScaled(D16 d, const Lanes& lanes, Halves<D16> v, const Q14Weights& w, uint16_t* dst) {
  const hn::RebindToUnsigned<D16> du;
  auto out = hn::BitCast(du, hn::Xor(NarrowSaturated(d, v), hn::Set(d, w.flip)));
  if (w.left > 0)
    out = hn::IfThenElse(hn::Gt(out, hn::Set(du, (uint16_t)(65535 >> w.left))), hn::Set(du, uint16_t{65535}),
                         hn::ShiftLeftSame(out, w.left));
  lanes.store(du, out, dst);
}
template <class D16, class Lanes>
HWY_INLINE void StoreScaled(D16 d, const Lanes& lanes, Halves<D16> v, const Q14Weights&, uint8_t* dst) {
  const hn::Rebind<uint8_t, D16> d8;
  lanes.store(d8, hn::DemoteTo(d8, NarrowSaturated(d, v)), dst);
}

// Neighbours in a row as pairs of lanes, for the sums of two products.
template <class D16>
struct PixelPairs {
  Pairs<D16> lo, hi;
  template <class Lanes>
  HWY_INLINE PixelPairs(D16 d, const Lanes& lanes, const uint8_t* s) {
    const hn::Rebind<uint8_t, D16> d8;
    const auto a = hn::PromoteTo(d, lanes.load(d8, s)), b = hn::PromoteTo(d, lanes.load(d8, s + 1));
    hi = lo = LowerPairs(d, a, b);
    if constexpr (kTwoHalves<D16>) hi = UpperPairs(d, a, b);
  }
};

// Columns outside, rows inside: a row is widened and paired once and serves as the lower row, then as the upper one.
// Bands keep wide images in the cache.
template <class D>
void WindowQ14(Plane<const uint8_t> src, Plane<D> dst, ptrdiff_t width, ptrdiff_t height, const Q14Weights& w) {
  constexpr ptrdiff_t bandRows = 32;
  for (ptrdiff_t top = 0; top < height; top += bandRows) {
    const ptrdiff_t end = HWY_MIN(height, top + bandRows);
    WindowColumns<int16_t>(
        width, WINDOW_VECTOR(d, lanes, x) {
          const Wide<decltype(d)> d32;
          const auto start = hn::Set(d32, w.start);
          const auto upper = TapPair(d32, w.upper), lower = TapPair(d32, w.lower);
          PixelPairs<decltype(d)> above(d, lanes, raw(src.row(top)) + x);
          for (ptrdiff_t y = top; y < end; ++y) {
            const PixelPairs<decltype(d)> below(d, lanes, raw(src.row(y + 1)) + x);
            Halves<decltype(d)> sum;
            sum.lo = AddPairProducts(d32, AddPairProducts(d32, start, above.lo, upper), below.lo, lower);
            sum.lo = hn::ShiftRightSame(sum.lo, w.right);
            if constexpr (kTwoHalves<decltype(d)>) {
              sum.hi = AddPairProducts(d32, AddPairProducts(d32, start, above.hi, upper), below.hi, lower);
              sum.hi = hn::ShiftRightSame(sum.hi, w.right);
            }
            StoreScaled(d, lanes, sum, w, raw(dst.row(y)) + x);
            above = below;
          }
        });
  }
}

KERNELS_END

#if HWY_ONCE
#include "geometry/subpixel_internal.h"
#include "geometry/subpixel.h"
#include "core/scaling.h"

namespace {

template <class D>
struct BytesForm {
  void (*kernel)(Plane<const uint8_t>, Plane<D>, ptrdiff_t, ptrdiff_t, const Q14Weights&);
  Q14Weights w;

  void window(Plane<const uint8_t> src, Plane<D> dst, ptrdiff_t width, ptrdiff_t height) const {
    kernel(src, dst, width, height, w);
  }
  // A sum of Q14 products as the kernel scales it.
  D scaled(int32_t sum) const { return scaleUp<D>((sum + w.round) >> w.right, w.left); }
  D across(uint8_t p, uint8_t q) const { return scaled((w.one - w.wx) * p + w.wx * q); }
  D down(uint8_t p, uint8_t q) const { return scaled((w.one - w.wy) * p + w.wy * q); }
  D single(uint8_t p) const { return scaled(w.one * p); }
};

auto bytesForm() {
  return [kernel = WIDEST(WindowQ14<uint8_t>)](float fx, float fy) {
    return BytesForm<uint8_t>{kernel, makeQ14Weights(fx, fy, 0)};
  };
}
auto scaledForm(int32_t scaleFactor) {
  return [kernel = WIDEST(WindowQ14<uint16_t>), scaleFactor](float fx, float fy) {
    return BytesForm<uint16_t>{kernel, makeQ14Weights(fx, fy, scaleFactor)};
  };
}

}  // namespace

OrvStatus orviCopySubpix_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                float dx, float dy) {
  return copySubpix<uint8_t, uint8_t>({src, srcStep}, {dst, dstStep}, roiSize, dx, dy, bytesForm());
}

OrvStatus orviCopySubpix_8u16u_C1R_Sfs(const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                       OrvSize roiSize, int32_t scaleFactor, float dx, float dy) {
  return copySubpix<uint8_t, uint16_t>({src, srcStep}, {dst, dstStep}, roiSize, dx, dy, scaledForm(scaleFactor));
}

OrvStatus orviCopySubpixIntersect_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, uint8_t* dst,
                                         int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                         OrvPoint* max) {
  return copyWindow<true, uint8_t, uint8_t>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                            bytesForm());
}

OrvStatus orviCopySubpixIntersect_8u16u_C1R_Sfs(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, uint16_t* dst,
                                                int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                                OrvPoint* max, int32_t scaleFactor) {
  return copyWindow<true, uint8_t, uint16_t>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                             scaledForm(scaleFactor));
}

OrvStatus ownGetRectSubpix_8u16u_C1R_Sfs(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, uint16_t* dst,
                                         int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                         OrvPoint* max, int32_t scaleFactor) {
  return copyWindow<false, uint8_t, uint16_t>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                              scaledForm(scaleFactor));
}

#endif

// Sub-pixel copies of 16-bit and float images, and of bytes to floats, with float weights.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/subpixel_float.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "geometry/window_columns.h"

#ifndef ORV_SUBPIXEL_FLOAT
#define ORV_SUBPIXEL_FLOAT
namespace ORV_VARIANT {

// Of a pixel, its right, its lower and its diagonal neighbour.
struct FloatWeights {
  float w00, w10, w01, w11;
};

template <class S, class D>
struct Elements {
  using Source = S;
  using Dest = D;
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

template <class DF, class Lanes>
HWY_INLINE hn::VFromD<DF> LoadFloat(DF d, const Lanes& lanes, const float* s) {
  return lanes.load(d, s);
}
template <class DF, class Lanes, class T>
HWY_INLINE hn::VFromD<DF> LoadFloat(DF d, const Lanes& lanes, const T* s) {
  const hn::Rebind<int32_t, DF> d32;
  return hn::ConvertTo(d, hn::PromoteTo(d32, lanes.load(hn::Rebind<T, DF>(), s)));
}

template <class DF, class Lanes>
HWY_INLINE void StoreFloat(DF d, const Lanes& lanes, hn::VFromD<DF> v, float* dst) {
  lanes.store(d, v, dst);
}
template <class DF, class Lanes>
HWY_INLINE void StoreFloat(DF, const Lanes& lanes, hn::VFromD<DF> v, int16_t* dst) {
  const hn::Rebind<int16_t, DF> d16;
  lanes.store(d16, hn::DemoteTo(d16, Nearest(v)), dst);
}
template <class DF, class Lanes>
HWY_INLINE void StoreFloat(DF d, const Lanes& lanes, hn::VFromD<DF> v, uint16_t* dst) {
  const hn::Rebind<uint16_t, DF> d16;
  lanes.store(d16, hn::DemoteTo(d16, Truncate(hn::Add(v, hn::Set(d, 0.5f)))), dst);
}

// Columns outside, rows inside: a row is loaded once and serves as the lower row, then as the upper one. Bands keep
// wide images in the cache.
template <class E>
void WindowFloat(Plane<const typename E::Source> src, Plane<typename E::Dest> dst, ptrdiff_t width, ptrdiff_t height,
                 const FloatWeights& w) {
  constexpr ptrdiff_t bandRows = 32;
  for (ptrdiff_t top = 0; top < height; top += bandRows) {
    const ptrdiff_t end = HWY_MIN(height, top + bandRows);
    WindowColumns<float>(
        width, WINDOW_VECTOR(d, lanes, x) {
          const auto w00 = hn::Set(d, w.w00), w10 = hn::Set(d, w.w10), w01 = hn::Set(d, w.w01), w11 = hn::Set(d, w.w11);
          const typename E::Source* s = raw(src.row(top)) + x;
          auto p = LoadFloat(d, lanes, s), right = LoadFloat(d, lanes, s + 1);
          for (ptrdiff_t y = top; y < end; ++y) {
            s = raw(src.row(y + 1)) + x;
            const auto below = LoadFloat(d, lanes, s), diagonal = LoadFloat(d, lanes, s + 1);
            const auto upper = hn::Add(hn::Mul(w00, p), hn::Mul(w10, right));
            StoreFloat(d, lanes, hn::Add(hn::Add(upper, hn::Mul(w01, below)), hn::Mul(w11, diagonal)),
                       raw(dst.row(y)) + x);
            p = below, right = diagonal;
          }
        });
  }
}

KERNELS_END

#if HWY_ONCE
#include "core/scaling.h"
#include "geometry/subpixel_internal.h"
#include "geometry/subpixel.h"

namespace {

// The gain is a power of two: it could as well be that of the source.
FloatWeights bilinear(float fx, float fy, float gain) {
  return {(1 - fx) * (1 - fy) * gain, (1 - fy) * fx * gain, (1 - fx) * fy * gain, fx * fy * gain};
}

template <class S, class D>
struct FloatForm {
  void (*kernel)(Plane<const S>, Plane<D>, ptrdiff_t, ptrdiff_t, const FloatWeights&);
  float fx, fy;

  void window(Plane<const S> src, Plane<D> dst, ptrdiff_t width, ptrdiff_t height) const {
    kernel(src, dst, width, height, bilinear(fx, fy, 1));
  }
  static float rounded(float value, float*) { return value; }
  static uint16_t rounded(float value, uint16_t*) { return (uint16_t)clamp((int32_t)(value + 0.5f), 0, 65535); }
  D across(S p, S q) const { return rounded((1 - fx) * (float)p + fx * (float)q, (D*)nullptr); }
  D down(S p, S q) const { return rounded((1 - fy) * (float)p + fy * (float)q, (D*)nullptr); }
  D single(S p) const { return (D)p; }
};

// No fraction counts as less than its floor.
template <class S, class D>
auto floatForm(float floorX, float floorY) {
  using Types = Elements<S, D>;
  return [kernel = WIDEST(WindowFloat<Types>), floorX, floorY](float fx, float fy) {
    return FloatForm<S, D>{kernel, fx < floorX ? floorX : fx, fy < floorY ? floorY : fy};
  };
}
// The floors of floats and of conversions to floats differ, and stay so. 16-bit results have none; a window's place may
// be rounded to just below 0.
auto floats() { return floatForm<float, float>(1e-6f, 1e-6f); }
template <class S>
auto toFloats() {
  return floatForm<S, float>(1e-6f, 1e-9f);
}
auto words() { return floatForm<uint16_t, uint16_t>(-1, -1); }

}  // namespace

OrvStatus orviCopySubpix_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   float dx, float dy) {
  return copySubpix<uint8_t, float>({src, srcStep}, {dst, dstStep}, roiSize, dx, dy, toFloats<uint8_t>());
}

OrvStatus orviCopySubpix_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize,
                                 float dx, float dy) {
  return copySubpix<uint16_t, uint16_t>({src, srcStep}, {dst, dstStep}, roiSize, dx, dy, words());
}

OrvStatus orviCopySubpix_16u32f_C1R(const uint16_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                    float dx, float dy) {
  return copySubpix<uint16_t, float>({src, srcStep}, {dst, dstStep}, roiSize, dx, dy, toFloats<uint16_t>());
}

OrvStatus orviCopySubpix_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                 float dx, float dy) {
  return copySubpix<float, float>({src, srcStep}, {dst, dstStep}, roiSize, dx, dy, floats());
}

OrvStatus orviCopySubpixIntersect_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                            int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                            OrvPoint* max) {
  return copyWindow<true, uint8_t, float>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                          toFloats<uint8_t>());
}

OrvStatus orviCopySubpixIntersect_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoiSize, uint16_t* dst,
                                          int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                          OrvPoint* max) {
  return copyWindow<true, uint16_t, uint16_t>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                              words());
}

OrvStatus orviCopySubpixIntersect_16u32f_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                             int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                             OrvPoint* max) {
  return copyWindow<true, uint16_t, float>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                           toFloats<uint16_t>());
}

OrvStatus orviCopySubpixIntersect_32f_C1R(const float* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                          int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                          OrvPoint* max) {
  return copyWindow<true, float, float>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                        floats());
}

OrvStatus ownGetRectSubpix_16u32f_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoiSize, float* dst,
                                      int32_t dstStep, OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min,
                                      OrvPoint* max) {
  return copyWindow<false, uint16_t, float>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                            toFloats<uint16_t>());
}

OrvStatus ownGetRectSubpix_32f_C1R(const float* src, int32_t srcStep, OrvSize srcRoiSize, float* dst, int32_t dstStep,
                                   OrvSize dstRoiSize, OrvPoint32f point, OrvPoint* min, OrvPoint* max) {
  return copyWindow<false, float, float>({{src, srcStep}, srcRoiSize, {dst, dstStep}, dstRoiSize, point, min, max},
                                         floats());
}

void ORV_VARIANT::sampleDerivatives(Plane<const int16_t> src, Plane<int16_t> dst, ptrdiff_t width, ptrdiff_t height,
                                    float dx, float dy) {
  using Types = Elements<int16_t, int16_t>;
  WIDEST(WindowFloat<Types>)(src, dst, width, height, bilinear(fractionOf(dx), fractionOf(dy), 4));
}

void ORV_VARIANT::sampleDerivatives(Plane<const float> src, Plane<float> dst, ptrdiff_t width, ptrdiff_t height,
                                    float dx, float dy) {
  const auto form = floats()(fractionOf(dx), fractionOf(dy));
  form.kernel(src, dst, width, height, bilinear(form.fx, form.fy, 0.03125f));
}

#endif

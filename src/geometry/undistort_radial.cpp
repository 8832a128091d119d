// Images with radial lens distortion taken out.
//
// A block of columns goes through three stages: where its pixels lie in the source and how their neighbours weigh
// (vectors), the neighbours side by side (one load a pair), the weighted sums (vectors). Pixels that lie outside the
// source are left out: a block is worked on in runs of pixels inside, and nothing is written between them.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/undistort_radial.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "geometry/undistort_kernels.h"

#ifndef ORV_UNDISTORT_RADIAL
#define ORV_UNDISTORT_RADIAL
namespace ORV_VARIANT {

// The places of a block: source pixel and the weights of it, its right, its lower and its diagonal neighbour. iy is -1
// where the place is outside.
struct Places {
  alignas(64) int32_t ix[columnBlock], iy[columnBlock];
  alignas(64) float w00[columnBlock], w10[columnBlock], w01[columnBlock], w11[columnBlock];
};

// The last column and row of the source.
struct LastPixel {
  float x, y;
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

HWY_INLINE float Masked(int32_t mask, float value) {
  return __builtin_bit_cast(float, __builtin_bit_cast(int32_t, value) & mask);
}

void FindPlaces(const Lens& lens, const ColumnTerms& terms, ptrdiff_t y, ptrdiff_t count, LastPixel last, Places& to) {
  const RadialRow row(lens, y);
  const ColumnTerms t = terms;
  Columns(
      0, count, PIXEL(i) {
        const RadialPlace place(t, row, i);
        const int32_t inside = -(int32_t)((place.x >= 0) & (place.y >= 0) & (place.x < last.x) & (place.y < last.y));
        const float x = Masked(inside, place.x), y = Masked(inside, place.y);
        const int32_t ix = (int32_t)x, iy = (int32_t)y;
        const float a = x - (float)ix, b = y - (float)iy;
        to.ix[i] = ix;
        to.iy[i] = iy | ~inside;
        to.w00[i] = (1 - a) * (1 - b);
        to.w10[i] = a * (1 - b);
        to.w01[i] = (1 - a) * b;
        to.w11[i] = a * b;
      });
}

// Integers are rounded: the sum is within their range.
HWY_INLINE float ToElement(float sum, float*) { return sum; }
template <class T>
HWY_INLINE T ToElement(float sum, T*) {
  return (T)(int32_t)(sum + 0.5f);
}

// The pixels from `first` to `end` of a block, all inside.
template <class T>
void WarpRun1(Plane<const T> src, const Places& at, ptrdiff_t first, ptrdiff_t end, Loose<T>* dst) {
  T upper[2 * columnBlock], lower[2 * columnBlock];
  for (ptrdiff_t i = first; i < end; ++i) {
    const auto* s = src.row(at.iy[i]) + at.ix[i];
    __builtin_memcpy(upper + 2 * i, s, 2 * sizeof(T));
    __builtin_memcpy(lower + 2 * i, (const uint8_t*)s + src.step, 2 * sizeof(T));
  }
  Columns(
      first, end, PIXEL(i) {
        const float left = (float)upper[2 * i] * at.w00[i] + (float)lower[2 * i] * at.w01[i];
        const float right = (float)upper[2 * i + 1] * at.w10[i] + (float)lower[2 * i + 1] * at.w11[i];
        dst[i] = ToElement(left + right, (T*)nullptr);
      });
}

// Four elements as floats: a pixel of three and a neighbour's element.
using Four = hn::Simd<float, 4, 0>;
HWY_INLINE hn::Vec128<float> LoadFour(const float* s) { return hn::LoadU(Four(), s); }
template <class T>
HWY_INLINE hn::Vec128<float> LoadFour(const T* s) {
  const hn::Rebind<int32_t, Four> d32;
  return hn::ConvertTo(Four(), hn::PromoteTo(d32, hn::LoadU(hn::Rebind<T, Four>(), s)));
}
// The pixel to the right of s, loaded with the element before it: nothing behind it is read.
template <class T>
HWY_INLINE hn::Vec128<float> LoadRight(const T* s) {
  return hn::ShiftRightLanes<1>(Four(), LoadFour(s + 2));
}
HWY_INLINE void StoreFour(hn::Vec128<float> v, float* dst) { hn::StoreU(v, Four(), dst); }
template <class T>
HWY_INLINE void StoreFour(hn::Vec128<float> v, T* dst) {
  const hn::Rebind<T, Four> d;
  hn::StoreU(hn::DemoteTo(d, Truncate(hn::Add(v, hn::Set(Four(), 0.5f)))), d, dst);
}

// The same for three channels, a pixel at a time, its channels in the lanes of a vector.
template <class T>
void WarpRun3(Plane<const T> src, const Places& at, ptrdiff_t first, ptrdiff_t end, Loose<T>* dst) {
  const Four d;
  T block[3 * columnBlock + 1];
  for (ptrdiff_t i = first; i < end; ++i) {
    const T *upper = raw(src.row(at.iy[i]) + 3 * (ptrdiff_t)at.ix[i]),
            *lower = raw(src.row((ptrdiff_t)at.iy[i] + 1) + 3 * (ptrdiff_t)at.ix[i]);
    const auto left =
        hn::Add(hn::Mul(LoadFour(upper), hn::Set(d, at.w00[i])), hn::Mul(LoadFour(lower), hn::Set(d, at.w01[i])));
    const auto right =
        hn::Add(hn::Mul(LoadRight(upper), hn::Set(d, at.w10[i])), hn::Mul(LoadRight(lower), hn::Set(d, at.w11[i])));
    StoreFour(hn::Add(left, right), block + 3 * i);
  }
  __builtin_memcpy(dst + 3 * first, block + 3 * first, (size_t)(end - first) * 3 * sizeof(T));
}

KERNELS_END

#if HWY_ONCE
namespace {

template <class T>
OrvStatus undistort(Plane<const T> src, Plane<T> dst, OrvSize roi, int32_t channels, const Lens& lens, uint8_t* buffer,
                    void (*warp)(Plane<const T>, const Places&, ptrdiff_t, ptrdiff_t, Loose<T>*)) {
  ORV_REQUIRE(allSet(src.data, dst.data), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(src.step >= rowBytes<T>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(dst.step >= rowBytes<T>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(src.step, dst.step), orvStatusStepAlign);
  ORV_REQUIRE(lens.fx != 0 && lens.fy != 0, orvStatusBadArg);
  const LastPixel last{(float)(roi.width - 1), (float)(roi.height - 1)};
  const auto terms = WIDEST(RadialTerms);
  const auto find = WIDEST(FindPlaces);
  Places at;
  undistortRows(
      roi, buffer, [&](const ColumnTerms& t, ptrdiff_t x, ptrdiff_t count) { terms(lens, t, x, count); },
      [&](const ColumnTerms& t, ptrdiff_t y, ptrdiff_t x, ptrdiff_t count) {
        find(lens, t, y, count, last, at);
        Loose<T>* d = dst.row(y) + x * channels;
        for (ptrdiff_t i = 0, end; i < count; i = end) {
          const bool inside = at.iy[i] >= 0;
          for (end = i + 1; end < count && (at.iy[end] >= 0) == inside;) ++end;
          if (inside) warp(src, at, i, end, d);
        }
      });
  return orvStatusOk;
}

}  // namespace

OrvStatus orviUndistortGetSize(OrvSize roiSize, int32_t* bufferSize) {
  ORV_REQUIRE(allSet(bufferSize), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  *bufferSize = wrapAdd(wrapMul(wrapAdd(roiSize.width, 3) & ~3, 24), 32);
  return orvStatusOk;
}

OrvStatus orviUndistortRadial_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                     uint8_t* buffer) {
  return undistort<uint8_t>({src, srcStep}, {dst, dstStep}, roiSize, 1, {fx, fy, cx, cy, k1, k2, 0, 0}, buffer,
                            WIDEST(WarpRun1<uint8_t>));
}

OrvStatus orviUndistortRadial_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                     uint8_t* buffer) {
  return undistort<uint8_t>({src, srcStep}, {dst, dstStep}, roiSize, 3, {fx, fy, cx, cy, k1, k2, 0, 0}, buffer,
                            WIDEST(WarpRun3<uint8_t>));
}

OrvStatus orviUndistortRadial_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                      uint8_t* buffer) {
  return undistort<uint16_t>({src, srcStep}, {dst, dstStep}, roiSize, 1, {fx, fy, cx, cy, k1, k2, 0, 0}, buffer,
                             WIDEST(WarpRun1<uint16_t>));
}

OrvStatus orviUndistortRadial_16u_C3R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, float fx, float fy, float cx, float cy, float k1, float k2,
                                      uint8_t* buffer) {
  return undistort<uint16_t>({src, srcStep}, {dst, dstStep}, roiSize, 3, {fx, fy, cx, cy, k1, k2, 0, 0}, buffer,
                             WIDEST(WarpRun3<uint16_t>));
}

OrvStatus orviUndistortRadial_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      float fx, float fy, float cx, float cy, float k1, float k2, uint8_t* buffer) {
  return undistort<float>({src, srcStep}, {dst, dstStep}, roiSize, 1, {fx, fy, cx, cy, k1, k2, 0, 0}, buffer,
                          WIDEST(WarpRun1<float>));
}

OrvStatus orviUndistortRadial_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      float fx, float fy, float cx, float cy, float k1, float k2, uint8_t* buffer) {
  return undistort<float>({src, srcStep}, {dst, dstStep}, roiSize, 3, {fx, fy, cx, cy, k1, k2, 0, 0}, buffer,
                          WIDEST(WarpRun3<float>));
}

#endif

// Differences of two images, the second minus the first. A team shares the rows; a kernel works on one.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/image_sub.cpp"
#include "core/kernels.h"
#include "core/scaling.h"

KERNELS_BEGIN

// In all kernels `width` counts elements.
void Sub_32f(Plane<const float> src1, Plane<const float> src2, Plane<float> dst, int32_t y, ptrdiff_t width, Scaling) {
  const auto *a = src1.row(y), *b = src2.row(y);
  auto* d = dst.row(y);
  Columns(
      0, width, PIXEL(x) { d[x] = b[x] - a[x]; });
}

// Scale 0: saturation alone.
template <class T>
void SubPlain(Plane<const T> src1, Plane<const T> src2, Plane<T> dst, int32_t y, ptrdiff_t width, Scaling) {
  const T *a = raw(src1.row(y)), *b = raw(src2.row(y));
  T* t = raw(dst.row(y));
  Vectors<T>(
      0, width, VECTOR(d, x) { hn::StoreU(hn::SaturatedSub(hn::LoadU(d, b + x), hn::LoadU(d, a + x)), d, t + x); });
}

template <class T>
void SubDown(Plane<const T> src1, Plane<const T> src2, Plane<T> dst, int32_t y, ptrdiff_t width, Scaling scaling) {
  const auto *a = src1.row(y), *b = src2.row(y);
  auto* d = dst.row(y);
  Columns(
      0, width, PIXEL(x) { d[x] = scaleDown<T>(b[x] - a[x], scaling.right); });
}

template <class T>
void SubUp(Plane<const T> src1, Plane<const T> src2, Plane<T> dst, int32_t y, ptrdiff_t width, Scaling scaling) {
  const auto *a = src1.row(y), *b = src2.row(y);
  auto* d = dst.row(y);
  Columns(
      0, width, PIXEL(x) { d[x] = scaleUp<T>(b[x] - a[x], scaling.left); });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

namespace {

template <class T>
using Kernel = void (*)(Plane<const T>, Plane<const T>, Plane<T>, int32_t, ptrdiff_t, Scaling);

template <class T>
OrvStatus subtract(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, T* dst, int32_t dstStep,
                   OrvSize roi, int32_t channels, Kernel<T> kernel, int32_t scaleFactor) {
  ORV_REQUIRE(allSet(src1, src2, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(src1Step >= 1 && src2Step >= 1 && dstStep >= 1, orvStatusStep);
  const Plane<const T> a{src1, src1Step}, b{src2, src2Step};
  const Plane<T> d{dst, dstStep};
  const Scaling scaling = makeScaling(scaleFactor);
  runRows(roi.height, [&](int32_t y) { kernel(a, b, d, y, (ptrdiff_t)roi.width * channels, scaling); });
  return orvStatusOk;
}

template <class T>
Kernel<T> kernelOf(int32_t scaleFactor) {
  return scaleFactor == 0 ? WIDEST(SubPlain<T>) : scaleFactor > 0 ? WIDEST(SubDown<T>) : WIDEST(SubUp<T>);
}

}  // namespace

OrvStatus orviSub_32f_C1R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                          int32_t dstStep, OrvSize roiSize) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 1, WIDEST(Sub_32f), 0);
}

OrvStatus orviSub_32f_C3R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                          int32_t dstStep, OrvSize roiSize) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 3, WIDEST(Sub_32f), 0);
}

OrvStatus orviSub_32f_C4R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                          int32_t dstStep, OrvSize roiSize) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 4, WIDEST(Sub_32f), 0);
}

OrvStatus orviSub_8u_C1RSfs(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                            int32_t dstStep, OrvSize roiSize, int32_t scaleFactor) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 1, kernelOf<uint8_t>(scaleFactor),
                  scaleFactor);
}

OrvStatus orviSub_8u_C3RSfs(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                            int32_t dstStep, OrvSize roiSize, int32_t scaleFactor) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 3, kernelOf<uint8_t>(scaleFactor),
                  scaleFactor);
}

OrvStatus orviSub_8u_C4RSfs(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                            int32_t dstStep, OrvSize roiSize, int32_t scaleFactor) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 4, kernelOf<uint8_t>(scaleFactor),
                  scaleFactor);
}

OrvStatus orviSub_16u_C1RSfs(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                             uint16_t* dst, int32_t dstStep, OrvSize roiSize, int32_t scaleFactor) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 1, kernelOf<uint16_t>(scaleFactor),
                  scaleFactor);
}

OrvStatus orviSub_16s_C1RSfs(const int16_t* src1, int32_t src1Step, const int16_t* src2, int32_t src2Step, int16_t* dst,
                             int32_t dstStep, OrvSize roiSize, int32_t scaleFactor) {
  return subtract(src1, src1Step, src2, src2Step, dst, dstStep, roiSize, 1, kernelOf<int16_t>(scaleFactor),
                  scaleFactor);
}

#endif

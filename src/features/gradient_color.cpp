// One gradient from those of three channels.
// One body serves both variants.
#include <math.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/gradient_color.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

enum class Norm { largest, sum, root };

template <class T>
HWY_INLINE T LargestOf(T a, T b, T c) {
  const T most = a > b ? a : b;
  return most > c ? most : c;
}
HWY_INLINE float Magnitude(float v) { return __builtin_bit_cast(float, __builtin_bit_cast(int32_t, v) & INT32_MAX); }

// The mean of squares is a third of a whole number, and so is nothing within 1/12 of the square of a half: single
// precision rounds the root of a mean up to 255 * 255 like doubles do.
template <Norm norm>
HWY_INLINE uint8_t Gray(uint8_t a, uint8_t b, uint8_t c) {
  if (norm == Norm::largest) return LargestOf(a, b, c);
  if (norm == Norm::sum) return (uint8_t)(((a + b + c) * 1365 + 2048) >> 12);
  return (uint8_t)(int32_t)(sqrtf((float)(a * a + b * b + c * c) / 3.0f) + 0.5f);
}

// The rounded root r of S / 3 has 3 r (r - 1) < S <= 3 r (r + 1). An estimate in single precision is at most one off,
// and the differences that tell are small enough to be right in arithmetic that wraps at 2^32.
template <Norm norm>
HWY_INLINE uint16_t Gray(uint16_t a, uint16_t b, uint16_t c) {
  if (norm == Norm::largest) return LargestOf(a, b, c);
  if (norm == Norm::sum) return (uint16_t)(((a + b + c) * 5461 + 8192) >> 14);
  const float x = (float)a, y = (float)b, z = (float)c;
  const int32_t r = (int32_t)(sqrtf((x * x + y * y + z * z) * (1 / 3.0f)) + 0.5f);
  const uint32_t sum = (uint32_t)a * a + (uint32_t)b * b + (uint32_t)c * c, triple = 3 * (uint32_t)r;
  const int32_t above = (int32_t)(sum - triple * (uint32_t)(r + 1)),
                below = (int32_t)(sum - triple * (uint32_t)(r - 1));
  return (uint16_t)(r + (above > 0) - (below <= 0 && r > 0));
}

// Sums and roots of floats are not divided: this is meant.
template <Norm norm>
HWY_INLINE float Gray(float a, float b, float c) {
  if (norm == Norm::largest) return LargestOf(Magnitude(a), Magnitude(b), Magnitude(c));
  if (norm == Norm::sum) return Magnitude(a) + Magnitude(b) + Magnitude(c);
  return sqrtf(a * a + b * b + c * c);
}

// Channels of n pixels, each to a block of its own.
template <class T, class D>
HWY_INLINE ptrdiff_t SplitVectors(D d, const T* pixels, ptrdiff_t x, ptrdiff_t n, T* a, T* b, T* c) {
  for (; x + (ptrdiff_t)hn::MaxLanes(d) <= n; x += (ptrdiff_t)hn::MaxLanes(d)) {
    hn::VFromD<D> u, v, w;
    hn::LoadInterleaved3(d, pixels + 3 * x, u, v, w);
    hn::StoreU(u, d, a + x), hn::StoreU(v, d, b + x), hn::StoreU(w, d, c + x);
  }
  return x;
}
template <class T>
HWY_NOINLINE void SplitChannels(const T* pixels, ptrdiff_t n, T* a, T* b, T* c) {
  ptrdiff_t x = SplitVectors(hn::ScalableTag<T>(), pixels, 0, n, a, b, c);
  x = SplitVectors(hn::Full128<T>(), pixels, x, n, a, b, c);
  const auto* rest = loose(pixels);
  for (; x < n; ++x) a[x] = rest[3 * x], b[x] = rest[3 * x + 1], c[x] = rest[3 * x + 2];
}

template <class T, Norm norm>
HWY_NOINLINE void GrayRow(const T* src, T* dst, ptrdiff_t width) {
  constexpr ptrdiff_t block = 512;
  HWY_ALIGN T a[block], b[block], c[block];
  for (ptrdiff_t first = 0; first < width; first += block) {
    const ptrdiff_t n = HWY_MIN(block, width - first);
    SplitChannels(src + 3 * first, n, a, b, c);
    auto* out = loose(dst) + first;
    Columns(
        0, n, PIXEL(x) { out[x] = Gray<norm>(a[x], b[x], c[x]); });
  }
}

template <class T>
void GrayRows(Plane<const T> src, Plane<T> dst, ptrdiff_t width, int32_t rows, int32_t norm) {
  constexpr decltype(&GrayRow<T, Norm::sum>) forms[] = {GrayRow<T, Norm::largest>, GrayRow<T, Norm::sum>,
                                                        GrayRow<T, Norm::root>};
  for (ptrdiff_t y = 0; y < rows; ++y) forms[norm](raw(src.row(y)), raw(dst.row(y)), width);
}

KERNELS_END

#if HWY_ONCE
namespace {

int32_t smaller(int32_t a, int32_t b) { return a < b ? a : b; }

template <class T, class Kernel>
OrvStatus gradientColor(Kernel kernel, Plane<const T> src, Plane<T> dst, OrvSize roi, int32_t norm) {
  ORV_REQUIRE(allSet(src.data, dst.data), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(src.step >= rowBytes<T>(roi.width, 3) && dst.step >= rowBytes<T>(roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(src.step, dst.step), orvStatusStepAlign);
  ORV_REQUIRE(norm >= 0 && norm <= 2, orvStatusBadArg);
  // At least 1024 pixels and 16 rows a thread.
  int32_t team = smaller(wrapMul(roi.width, roi.height) >> 10, roi.height >> 4);
  if (team > 1) team = smaller(team, owncvGetMaxNumThreads());
  if (team <= 1) {
    kernel(src, dst, roi.width, roi.height, norm);
    return orvStatusOk;
  }
  runTeam(team, roi.height,
          [&](int32_t first, int32_t rows) { kernel(src.from(first), dst.from(first), roi.width, rows, norm); });
  return orvStatusOk;
}

}  // namespace

OrvStatus orviGradientColorToGray_8u_C3C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, int32_t norm) {
  return gradientColor<uint8_t>(WIDEST(GrayRows<uint8_t>), {src, srcStep}, {dst, dstStep}, roiSize, norm);
}
OrvStatus orviGradientColorToGray_16u_C3C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                            OrvSize roiSize, int32_t norm) {
  return gradientColor<uint16_t>(WIDEST(GrayRows<uint16_t>), {src, srcStep}, {dst, dstStep}, roiSize, norm);
}
OrvStatus orviGradientColorToGray_32f_C3C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, int32_t norm) {
  return gradientColor<float>(WIDEST(GrayRows<float>), {src, srcStep}, {dst, dstStep}, roiSize, norm);
}

#endif

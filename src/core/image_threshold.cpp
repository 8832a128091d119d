// Thresholds: pixels beyond a bound are replaced.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/image_threshold.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

template <class T>
void ReplaceGreater(Plane<const T> src, Plane<T> dst, int32_t width, int32_t height, T threshold, T value) {
  for (int32_t y = 0; y < height; ++y) {
    const auto* s = src.row(y);
    auto* d = dst.row(y);
    Columns(
        0, width, PIXEL(x) {
          const T v = s[x];
          d[x] = v > threshold ? value : v;
        });
  }
}

template <class T>
void ReplaceLess(Plane<const T> src, Plane<T> dst, int32_t width, int32_t height, T threshold, T value) {
  for (int32_t y = 0; y < height; ++y) {
    const auto* s = src.row(y);
    auto* d = dst.row(y);
    Columns(
        0, width, PIXEL(x) {
          const T v = s[x];
          d[x] = v < threshold ? value : v;
        });
  }
}

KERNELS_END

#if HWY_ONCE
#include "core/orvcore_contract.h"
#include "core/primitives.h"

namespace {

// `threads(roi)` tells whether a ROI is worth a team; it is asked after the checks.
template <class T, class Threads>
OrvStatus replace(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, T threshold, T value,
                  int32_t compare, const Threads& threads) {
  ORV_REQUIRE(compare == orvCompareLess || compare == orvCompareGreater, orvStatusNotSupported);
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  const Plane<const T> s{src, srcStep};
  const Plane<T> d{dst, dstStep};
  const auto kernel = compare == orvCompareGreater ? WIDEST(ReplaceGreater<T>) : WIDEST(ReplaceLess<T>);
  runBands(threads(roi), roi.height, [&](int32_t first, int32_t rows) {
    kernel(s.from(first), d.from(first), roi.width, rows, threshold, value);
  });
  return orvStatusOk;
}

bool never(OrvSize) { return false; }

// Above 0x40000 pixels, and only where the core library can tell the cache size.
bool largeWithKnownCache(OrvSize roi) {
  int32_t size = 0;
  return areaReaches(roi, 0x40000 + 1) && orvGetMaxCacheSizeB(&size) == 0;
}

}  // namespace

OrvStatus orviThreshold_Val_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                   uint8_t threshold, uint8_t value, int32_t compare) {
  return replace(src, srcStep, dst, dstStep, roiSize, threshold, value, compare, never);
}

OrvStatus orviThreshold_Val_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                    OrvSize roiSize, uint16_t threshold, uint16_t value, int32_t compare) {
  return replace(src, srcStep, dst, dstStep, roiSize, threshold, value, compare, largeWithKnownCache);
}

OrvStatus orviThreshold_GTVal_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, uint8_t threshold, uint8_t value) {
  return orviThreshold_Val_8u_C1R(src, srcStep, dst, dstStep, roiSize, threshold, value, orvCompareGreater);
}

OrvStatus orviThreshold_GTVal_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, uint16_t threshold, uint16_t value) {
  return orviThreshold_Val_16u_C1R(src, srcStep, dst, dstStep, roiSize, threshold, value, orvCompareGreater);
}

OrvStatus orviThreshold_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                int32_t compare, float threshold) {
  return replace(src, srcStep, dst, dstStep, roiSize, threshold, threshold, compare, never);
}

OrvStatus orviThreshold_LT_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   float threshold) {
  return orviThreshold_32f_C1R(src, srcStep, dst, dstStep, roiSize, orvCompareLess, threshold);
}

#endif

// Absolute difference of two images.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/abs_diff.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

void AbsDiff_8u(Plane<const uint8_t> src1, Plane<const uint8_t> src2, Plane<uint8_t> dst, int32_t width,
                int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    const auto *a = src1.row(y), *b = src2.row(y);
    auto* d = dst.row(y);
    Columns(
        0, width, PIXEL(x) { d[x] = a[x] > b[x] ? a[x] - b[x] : b[x] - a[x]; });
  }
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviAbsDiff_8u_C1R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize) {
  const int32_t bytes = rowBytes<uint8_t>(roiSize.width);
  ORV_REQUIRE(allSet(src1, src2, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(src1Step >= bytes && src2Step >= bytes && dstStep >= bytes, orvStatusStep);
  const Plane<const uint8_t> a{src1, src1Step}, b{src2, src2Step};
  const Plane<uint8_t> d{dst, dstStep};
  const auto kernel = WIDEST(AbsDiff_8u);
  runBands(areaReaches(roiSize, 0x40000), roiSize.height, [&](int32_t first, int32_t rows) {
    kernel(a.from(first), b.from(first), d.from(first), roiSize.width, rows);
  });
  return orvStatusOk;
}

OrvStatus orviAbsDiff_8u_C3R(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                             int32_t dstStep, OrvSize roiSize) {
  roiSize.width = wrapMul(roiSize.width, 3);
  return orviAbsDiff_8u_C1R(src1, src1Step, src2, src2Step, dst, dstStep, roiSize);
}

#endif

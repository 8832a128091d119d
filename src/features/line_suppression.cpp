// Feature pixels that lie on lines and not at corners are cleared.
//
// dst starts as a copy of the features; where the structure tensor tells a line, its pixels are cleared.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/line_suppression.cpp"
#include "core/kernels.h"
#include "features/tensor.h"

KERNELS_BEGIN

// The squared trace against the determinant: along a line the former is large. `row` is one of bytes.
void ClearLines(const float* means, ptrdiff_t pitch, float* row, ptrdiff_t n, ptrdiff_t x, const TensorWork& work) {
  const float *const a = means, *const c = means + pitch, *const b = means + 2 * pitch, threshold = work.scale;
  uint8_t* const d = (uint8_t*)row + x;
  Columns(
      0, n, PIXEL(i) {
        const float trace = a[i] + b[i], determinant = a[i] * b[i] - c[i] * c[i];
        d[i] = (uint8_t)(d[i] & -(int32_t) !(trace * trace > determinant * threshold));
      });
}

KERNELS_END

#if HWY_ONCE
#include "features/harris.h"

OrvStatus orviLineSuppressionGetBufferSize(OrvSize roiSize, OrvMaskSize maskSize, int32_t avgWindow,
                                           OrvDataType dataType, int32_t numChannels, int32_t* bufferSize) {
  return orviHarrisCornerGetBufferSize(roiSize, maskSize, avgWindow, dataType, numChannels, bufferSize);
}

OrvStatus orviLineSuppression_8u_C1R(const uint8_t* src, int32_t srcStep, const uint8_t* feature, int32_t featureStep,
                                     uint8_t* dst, int32_t dstStep, OrvSize roiSize, OrvFilterKernel filterType,
                                     OrvMaskSize maskSize, int32_t avgWindow, OrvBorderType borderType,
                                     uint8_t borderValue, uint8_t* buffer, float threshold) {
  ORV_REQUIRE(allSet(src, dst, feature, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  if (const OrvStatus status = checkHarris(filterType, maskSize, borderType, avgWindow)) return status;
  ORV_REQUIRE(srcStep >= 0 && featureStep >= 0 && dstStep >= 0, orvStatusStep);
  ORV_REQUIRE(feature != dst, orvStatusInPlace);
  const Plane<const uint8_t> from{feature, featureStep};
  const Plane<uint8_t> to{dst, dstStep};
  for (ptrdiff_t y = 0; y < roiSize.height; ++y) memcpy(raw(to.row(y)), raw(from.row(y)), (size_t)roiSize.width);
  harrisTensor<uint8_t, int16_t>({roiSize, maskSize, avgWindow, borderType}, {src, srcStep},
                                 {(float*)(void*)dst, dstStep}, 0, harrisGradients(filterType, maskSize), borderValue,
                                 buffer, WIDEST(ClearLines), {threshold, 0, 0, 0});
  return orvStatusOk;
}

#endif

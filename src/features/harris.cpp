// The Harris response.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/harris.cpp"
#include "core/kernels.h"
#include "features/tensor.h"

KERNELS_BEGIN

// Right minus left, above minus below.
template <class T, class R>
HWY_INLINE void Differences(const T* const* rows, ptrdiff_t n, R* gx, R* gy) {
  const auto *const above = loose(rows[0]), *const row = loose(rows[1]), *const below = loose(rows[2]);
  auto *const x = loose(gx), *const y = loose(gy);
  Columns(
      0, n, PIXEL(i) {
        x[i] = (R)(row[i + 2] - row[i]);
        y[i] = (R)(above[i + 1] - below[i + 1]);
      });
}

void ByteDifferences(const uint8_t* const* rows, ptrdiff_t n, int16_t* gx, int16_t* gy) {
  Differences(rows, n, gx, gy);
}
void FloatDifferences(const float* const* rows, ptrdiff_t n, float* gx, float* gy) { Differences(rows, n, gx, gy); }

// The last columns of the region subtract in another order; the difference in the last bit is meant.
void Responses(const float* means, ptrdiff_t pitch, float* dst, ptrdiff_t n, ptrdiff_t x, const TensorWork& work) {
  const float *const a = means, *const c = means + pitch, *const b = means + 2 * pitch;
  auto* const d = loose(dst);
  const float k = work.k, scale = work.scale;
  const ptrdiff_t rest = work.whole - x, whole = rest < 0 ? 0 : rest < n ? rest : n;
  Columns(
      0, whole, PIXEL(i) {
        const float sum = a[i] + b[i];
        d[i] = (a[i] * b[i] - c[i] * c[i] - sum * (k * sum)) * scale;
      });
  Columns(
      whole, n, PIXEL(i) {
        const float sum = a[i] + b[i];
        d[i] = (a[i] * b[i] - sum * (k * sum) - c[i] * c[i]) * scale;
      });
}

KERNELS_END

#if HWY_ONCE
#include "features/harris_size.h"
#include "filter/border.h"

namespace {

OrvStatus checkHarris(int32_t filterType, OrvMaskSize maskSize, OrvBorderType borderType, int32_t avgWindow) {
  ORV_REQUIRE(filterType == orvFilterKernelSobel || filterType == orvFilterKernelScharr ||
                  filterType == orvFilterKernelCentralDiff,
              orvStatusFilterType);
  ORV_REQUIRE(maskSize == orvMaskSize3x3 || (maskSize == orvMaskSize5x5 && filterType == orvFilterKernelSobel),
              orvStatusMaskSize);
  const int32_t kind = borderType & 7;
  ORV_REQUIRE(kind == orvBorderConst || kind == orvBorderRepl || kind == orvBorderInMem, orvStatusBorder);
  ORV_REQUIRE(avgWindow > 0, orvStatusSize);
  return orvStatusOk;
}

GradientForm formOf(int32_t filterType, OrvMaskSize maskSize) {
  return filterType == orvFilterKernelScharr ? GradientForm::scharr3
         : maskSize == orvMaskSize5x5        ? GradientForm::sobel5
                                             : GradientForm::sobel3;
}

template <class T, class R>
void harris(Plane<const T> src, Plane<float> dst, OrvSize roi, GradientKernel<T, R> gradient, OrvMaskSize maskSize,
            int32_t avgWindow, OrvBorderType borderType, T borderValue, uint8_t* buffer, float k, float scale) {
  const bool inMemory = (borderType & 7) == orvBorderInMem;
  const auto n = (uint32_t)avgWindow;
  const auto factor = (float)((double)(n * n * n * n) * (double)scale);
  const TensorCall<T, R> call = {src,
                                 dst,
                                 1,
                                 roi,
                                 gradient,
                                 maskSize == orvMaskSize5x5 ? 5 : 3,
                                 avgWindow,
                                 inMemory ? (int32_t)orvBorderConst : borderType & 7,
                                 inMemory ? (int32_t)borderAllSides : borderType & borderAllSides,
                                 borderValue,
                                 WIDEST(Responses),
                                 {factor, k, 0, roi.width & ~3}};
  const OrvDataType type = sizeof(T) == 1 ? orvData8u : orvData32f;
  tensorRows(call, 0, roi.height, buffer, harrisBytes(roi, maskSize, avgWindow, type));
}

}  // namespace

OrvStatus orviHarrisCorner_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     int32_t filterType, OrvMaskSize maskSize, int32_t avgWindow,
                                     OrvBorderType borderType, uint8_t borderValue, uint8_t* buffer, float k,
                                     float scale) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(stepsAligned<float>(dstStep), orvStatusStepAlign);
  if (const OrvStatus status = checkHarris(filterType, maskSize, borderType, avgWindow)) return status;
  ORV_REQUIRE(srcStep >= 0 && dstStep >= 0, orvStatusStep);
  const auto gradient =
      filterType == orvFilterKernelCentralDiff ? WIDEST(ByteDifferences) : byteGradients(formOf(filterType, maskSize));
  harris<uint8_t, int16_t>({src, srcStep}, {dst, dstStep}, roiSize, gradient, maskSize, avgWindow, borderType,
                           borderValue, buffer, k, scale);
  return orvStatusOk;
}

OrvStatus orviHarrisCorner_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   int32_t filterType, OrvMaskSize maskSize, int32_t avgWindow,
                                   OrvBorderType borderType, uint8_t* buffer, float k, float scale, float borderValue) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(stepsAligned<float>(srcStep, dstStep), orvStatusStepAlign);
  if (const OrvStatus status = checkHarris(filterType, maskSize, borderType, avgWindow)) return status;
  ORV_REQUIRE(srcStep >= 0 && dstStep >= 0, orvStatusStep);
  ORV_REQUIRE(src != dst, orvStatusInPlace);
  const auto gradient = filterType == orvFilterKernelCentralDiff ? WIDEST(FloatDifferences)
                                                                 : floatGradients(formOf(filterType, maskSize));
  harris<float, float>({src, srcStep}, {dst, dstStep}, roiSize, gradient, maskSize, avgWindow, borderType, borderValue,
                       buffer, k, scale);
  return orvStatusOk;
}

#endif

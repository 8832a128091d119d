// The smaller eigenvalue of the structure tensor.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/min_eigen_val.cpp"
#include "core/kernels.h"
#include "features/eigen.h"

KERNELS_BEGIN

void SmallerValues(const float* means, ptrdiff_t pitch, float* dst, ptrdiff_t n, ptrdiff_t, const TensorWork& work) {
  const float *const a = means, *const c = means + pitch, *const b = means + 2 * pitch;
  auto* const d = loose(dst);
  const float half = work.scale * 0.5f;
  Columns(
      0, n, PIXEL(i) {
        const float difference = a[i] - b[i];
        const float root = __builtin_sqrtf(difference * difference + c[i] * c[i] * 4.0f);
        d[i] = (a[i] + b[i] - root) * half;
      });
}

KERNELS_END

#if HWY_ONCE
namespace {

TensorResult smallerValues() { return WIDEST(SmallerValues); }

}  // namespace

OrvStatus orviMinEigenVal_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                    int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer) {
  return eigenCorners(
      EigenCall<uint8_t>{{src, srcStep}, {dst, dstStep}, roiSize, 1, 1, {kernelType, apertureSize, avgWindow}, buffer},
      smallerValues);
}
OrvStatus orviMinEigenVal_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                  int32_t kernelType, int32_t apertureSize, int32_t avgWindow, uint8_t* buffer) {
  return eigenCorners(
      EigenCall<float>{{src, srcStep}, {dst, dstStep}, roiSize, 1, 1, {kernelType, apertureSize, avgWindow}, buffer},
      smallerValues);
}

OrvStatus orviMinEigenValGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                                 int32_t* bufferSize) {
  return eigenBufferSize(roiSize, apertureSize, avgWindow, true, bufferSize);
}
OrvStatus orviMinEigenValGetBufferSize_32f_C1R(OrvSize roiSize, int32_t apertureSize, int32_t avgWindow,
                                               int32_t* bufferSize) {
  return eigenBufferSize(roiSize, apertureSize, avgWindow, false, bufferSize);
}

#endif

// Gaussian smoothing of float images with a kernel made in the call.
#include "core/checks.h"
#include "filter/gaussian_kernel.h"
#include "filter/gaussian_spec.h"
#include "filter/smooth_stages.h"

OrvStatus orviFilterGaussGetBufferSize_32f_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize) {
  ORV_REQUIRE(allSet(bufferSize), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(kernelSize >= 0 && validGaussianSize((uint32_t)kernelSize), orvStatusBadArg);
  const uint32_t width = (uint32_t)roiSize.width, k = (uint32_t)kernelSize;
  const OrvSize rows = {roiSize.width, kernelSize};
  int32_t rowSize = 0, columnSize = 0;
  orviFilterRowBorderPipelineGetBufferSize_32f_C1R(rows, kernelSize, &rowSize);
  orviFilterColumnPipelineGetBufferSize_32f_C1R(rows, kernelSize, &columnSize);
  uint32_t size = ((width + k + 7) & ~7u) * 4 * k;
  size += (((k + 3) >> 2) << 4) + 32;
  size += (((width + k + 3) >> 2) << 4) * 2 * k + 64;
  size += (uint32_t)rowSize + 32 + (uint32_t)columnSize + 32;
  size += (k + k) * 8 + 32;
  *bufferSize = (int32_t)size;
  return orvStatusOk;
}

OrvStatus orviFilterGaussBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                        int32_t kernelSize, float sigma, OrvBorderType borderType, float borderValue,
                                        uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= roiSize.width && dstStep >= roiSize.width, orvStatusStep);  // in elements, as told
  ORV_REQUIRE(kernelSize >= 0 && validGaussianSize((uint32_t)kernelSize), orvStatusBadArg);
  const int32_t kind = borderType & ~(orvBorderInMemTop | orvBorderInMemBottom);
  ORV_REQUIRE(kind >= orvBorderConst && kind <= orvBorderMirrR, orvStatusBadArg);
  const bool single = roiSize.height == 1 && kind != orvBorderConst;  // has no rows above and below, also if flagged
  const Smoothing<float> work = {{src, srcStep}, {dst, dstStep}, roiSize, 1, kind, single ? orvBorderRepl : borderType,
                                 &borderValue,   buffer};

  Scratch scratch{buffer};
  float* const taps = scratch.take<float>(kernelSize);
  const float sum = gaussianWeights(sigma, kernelSize, taps);
  for (int32_t i = 0; i < kernelSize; ++i) taps[i] = taps[i] / sum;
  smooth(work, taps, kernelSize, 1, scratch);
  return orvStatusOk;
}

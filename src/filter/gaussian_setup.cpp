// Sizes and taps of the prepared Gaussian filter.
#include "core/checks.h"
#include "core/scratch.h"
#include "filter/gaussian_kernel.h"
#include "filter/gaussian_spec.h"

namespace {

// Fixed-point scale of the taps.
int32_t shiftOf(int32_t dataType) {
  if (dataType == orvData32f) return 0;
  return dataType == orvData8u ? 12 : 15;
}

bool validType(int32_t dataType) {
  return dataType == orvData8u || dataType == orvData16u || dataType == orvData16s || dataType == orvData32f;
}

using SizeFunction = OrvStatus (*)(OrvSize, int32_t, int32_t*);

// The size of a pass for blocks of rows.
uint32_t passSize(SizeFunction function, OrvSize block, int32_t kernelSize) {
  int32_t size = 0;
  function(block, kernelSize, &size);
  return (uint32_t)size;
}

SizeFunction rowSize(int32_t dataType, bool c3) {
  if (dataType == orvData8u)
    return c3 ? orviFilterRowBorderPipelineGetBufferSize_8u16s_C3R : orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R;
  if (dataType == orvData16u)
    return c3 ? orviFilterRowBorderPipelineGetBufferSize_16u_C3R : orviFilterRowBorderPipelineGetBufferSize_16u_C1R;
  if (dataType == orvData16s)
    return c3 ? orviFilterRowBorderPipelineGetBufferSize_16s_C3R : orviFilterRowBorderPipelineGetBufferSize_16s_C1R;
  return c3 ? orviFilterRowBorderPipelineGetBufferSize_32f_C3R : orviFilterRowBorderPipelineGetBufferSize_32f_C1R;
}

SizeFunction columnSize(int32_t dataType, bool c3) {
  if (dataType == orvData8u)
    return c3 ? orviFilterColumnPipelineGetBufferSize_16s8u_C3R : orviFilterColumnPipelineGetBufferSize_16s8u_C1R;
  if (dataType == orvData16u)
    return c3 ? orviFilterColumnPipelineGetBufferSize_16u_C3R : orviFilterColumnPipelineGetBufferSize_16u_C1R;
  if (dataType == orvData16s)
    return c3 ? orviFilterColumnPipelineGetBufferSize_16s_C3R : orviFilterColumnPipelineGetBufferSize_16s_C1R;
  return c3 ? orviFilterColumnPipelineGetBufferSize_32f_C3R : orviFilterColumnPipelineGetBufferSize_32f_C1R;
}

}  // namespace

OrvStatus orviFilterGaussianGetBufferSize(OrvSize roiSize, uint32_t kernelSize, OrvDataType dataType,
                                          int32_t numChannels, int32_t* specSize, int32_t* bufferSize) {
  ORV_REQUIRE(allSet(bufferSize, specSize), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validGaussianSize(kernelSize), orvStatusBadArg);
  ORV_REQUIRE(validType(dataType), orvStatusDataType);
  ORV_REQUIRE(numChannels == 1 || numChannels == 3, orvStatusChannelCount);
  const uint32_t width = (uint32_t)roiSize.width, k = kernelSize, c = (uint32_t)numChannels;
  const uint32_t block = (uint32_t)roiSize.height < k ? (uint32_t)roiSize.height : k;  // rows filtered in one go
  uint32_t record, scratch;
  if (dataType == orvData32f) {
    const uint32_t row = ((width + k) * c + 7) & ~7u;
    scratch = k * 4 * row + 32 + (block + k) * 4 * row + 64;
    record = (((k + 3) >> 2) << 4) + 32;
  } else {
    const uint32_t row = (width + k) * c + 7, work = ((width + k - 1) * c + 7) & ~7u;
    scratch = (block + k) * ((row >> 3) << 4) + 64 + (work * (k & ~1u) + 16) * 2;
    record = (((k + 3) >> 2) << 3) + 36;
  }
  const OrvSize rows = {roiSize.width, (int32_t)block};
  scratch += passSize(rowSize(dataType, c == 3), rows, (int32_t)k) + 32;
  scratch += passSize(columnSize(dataType, c == 3), rows, (int32_t)k) + 32;
  scratch += (block + k) * 8 + 32;
  *specSize = (int32_t)record;
  *bufferSize = (int32_t)scratch;
  return orvStatusOk;
}

OrvStatus orviFilterGaussianInit(OrvSize roiSize, uint32_t kernelSize, float sigma, OrvBorderType borderType,
                                 OrvDataType dataType, int32_t numChannels, OrvFilterGaussianSpec* spec,
                                 uint8_t* buffer) {
  ORV_REQUIRE(allSet(spec, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validGaussianSize(kernelSize), orvStatusBadArg);
  ORV_REQUIRE(validType(dataType), orvStatusDataType);
  ORV_REQUIRE(numChannels == 1 || numChannels == 3, orvStatusChannelCount);
  ORV_REQUIRE(sigma > 0, orvStatusBadArg);
  ORV_REQUIRE(validGaussianBorder(borderType), orvStatusBorder);
  const int32_t size = (int32_t)kernelSize, shift = shiftOf(dataType);
  float* const weights = Scratch{buffer}.take<float>(size);
  const float sum = gaussianWeights(sigma, size, weights);
  if (dataType == orvData32f) {
    float* const taps = specTaps<float>(spec);
    for (int32_t i = 0; i < size; ++i) taps[i] = weights[i] / sum;
  } else {
    int16_t* const taps = specTaps<int16_t>(spec);
    const float scale = (float)(1 << shift);
    for (int32_t i = 0; i < size; ++i) taps[i] = (int16_t)(int32_t)((double)((weights[i] / sum) * scale) + 0.5);
  }
  const OrvFilterGaussianSpec header = {size, gaussianHeaderSize, dataType, borderType, shift};
  memcpy((void*)spec, &header, sizeof header);
  return orvStatusOk;
}

// Scratch sizes of the filters with a fixed mask.
#pragma once
#include "filter/names.h"
#include "core/frame.h"

namespace ORV_VARIANT {

using StageSize = OrvStatus (*)(OrvSize roi, int32_t kernelSize, int32_t* bufferSize);

// A family's size: bytes a pixel of the planes that it keeps of a row, and the sizes of the separable stages.
struct FixedSize {
  int32_t pixelBytes, planes, rest;
  StageSize row, column;
};

static inline bool validMask(int32_t maskSize) { return maskSize == orvMaskSize3x3 || maskSize == orvMaskSize5x5; }

// Bytes for all threads of the library, in 32 bits that wrap.
static inline int32_t fixedBufferSize(const FixedSize& size, OrvSize roi, int32_t maskSize) {
  const bool small = maskSize == orvMaskSize3x3;
  const uint32_t pixels = ((uint32_t)roi.width + 15) & ~15u;
  const int32_t k = small ? 3 : 5;
  int32_t row = 0, column = 0;
  size.row(roi, k, &row);
  size.column(roi, k, &column);
  const uint32_t ofThread = pixels * (uint32_t)size.pixelBytes * (small ? 21u : 25u) +
                            (uint32_t)size.planes * (small ? 72u : 120u) + (uint32_t)size.rest + (uint32_t)row +
                            (uint32_t)column + 32;
  return wrapMul(owncvGetMaxNumThreads(), (int32_t)ofThread);
}

// The body of the public size functions.
static inline OrvStatus reportFixedSize(const FixedSize& size, OrvSize roi, int32_t maskSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(validMask(maskSize), orvStatusMaskSize);
  *bufferSize = fixedBufferSize(size, roi, maskSize);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

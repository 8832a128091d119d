// Sizes: scratch of the dyadic steps, levels for any rate, and the record that lists them.
// One body serves both variants.
#include <stddef.h>
#include "motion/pyramid_size.h"
#include "core/orvcore_contract.h"

namespace {

// Truncated; what exceeds 31 bits is the largest number.
int32_t truncated(float v) { return v < 2147483648.f ? (int32_t)v : INT32_MAX; }
int32_t larger(int32_t a, int32_t b) { return a > b ? a : b; }

// The smallest and the largest side that an up step makes of a side of n pixels. The ranges of n and n + 1 follow each
// other without a gap, so each side has exactly one n to come from.
int32_t leastAbove(int32_t n, float rate) {
  return n == 1 ? 1 : larger(wrapAdd(n, 1), wrapAdd(truncated((float)(n - 1) * rate), 1));
}
int32_t mostAbove(int32_t n, float rate) { return larger(wrapAdd(n, 1), truncated((float)n * rate)); }

int32_t below(int32_t n, float rate) {
  int32_t side = larger(truncated((float)n / rate + 0.5f), 1);
  while (n < leastAbove(side, rate)) --side;
  while (n > mostAbove(side, rate)) ++side;
  return side;
}

OrvStatus checkScratch(int32_t roiWidth, OrvDataType dataType, int32_t channels, const int32_t* bufferSize) {
  ORV_REQUIRE(allSet(bufferSize), orvStatusNullPtr);
  ORV_REQUIRE(roiWidth >= 1, orvStatusSize);
  ORV_REQUIRE(channels == 1 || channels == 3, orvStatusChannels);
  ORV_REQUIRE(dataType == orvData8u || dataType == orvData8s || dataType == orvData32f, orvStatusDataType);
  return orvStatusOk;
}

// Rows of `width` elements of `bytes`, each a multiple of 16 bytes, and room to align the first.
int32_t rowBuffers(int32_t width, int32_t bytes, int32_t rows) {
  return wrapAdd(wrapMul(wrapAdd(wrapMul(width, bytes), 15) & ~15, rows), 64);
}

OrvStatus checkLevelSize(const void* dst, OrvSize src, float rate) {
  ORV_REQUIRE(allSet(dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(src), orvStatusSize);
  ORV_REQUIRE(validRate(rate), orvStatusBadArg);
  return orvStatusOk;
}

}  // namespace

namespace ORV_VARIANT {

OrvSize sizeBelow(OrvSize src, float rate) { return {below(src.width, rate), below(src.height, rate)}; }
SizeRange sizesAbove(OrvSize src, float rate) {
  return {{leastAbove(src.width, rate), leastAbove(src.height, rate)},
          {mostAbove(src.width, rate), mostAbove(src.height, rate)}};
}

}  // namespace ORV_VARIANT

OrvStatus orviPyrDownGetBufSize_Gauss5x5(int32_t roiWidth, OrvDataType dataType, int32_t channels,
                                         int32_t* bufferSize) {
  const OrvStatus status = checkScratch(roiWidth, dataType, channels, bufferSize);
  ORV_REQUIRE(status == orvStatusOk, status);
  *bufferSize = rowBuffers(roiWidth, 4 * channels, 6);
  return orvStatusOk;
}
OrvStatus orviPyrUpGetBufSize_Gauss5x5(int32_t roiWidth, OrvDataType dataType, int32_t channels, int32_t* bufferSize) {
  const OrvStatus status = checkScratch(roiWidth, dataType, channels, bufferSize);
  ORV_REQUIRE(status == orvStatusOk, status);
  *bufferSize = rowBuffers(roiWidth, 8 * channels, 3);
  return orvStatusOk;
}

OrvStatus orviGetPyramidDownROI(OrvSize srcRoi, OrvSize* dstRoi, float rate) {
  const OrvStatus status = checkLevelSize(dstRoi, srcRoi, rate);
  ORV_REQUIRE(status == orvStatusOk, status);
  *dstRoi = sizeBelow(srcRoi, rate);
  return orvStatusOk;
}
OrvStatus orviGetPyramidUpROI(OrvSize srcRoi, OrvSize* dstRoiMin, OrvSize* dstRoiMax, float rate) {
  ORV_REQUIRE(allSet(dstRoiMin), orvStatusNullPtr);
  const OrvStatus status = checkLevelSize(dstRoiMax, srcRoi, rate);
  ORV_REQUIRE(status == orvStatusOk, status);
  const SizeRange range = sizesAbove(srcRoi, rate);
  *dstRoiMin = range.least;
  *dstRoiMax = range.most;
  return orvStatusOk;
}

OrvStatus orviPyramidInitAlloc(OrvPyramid** pyramid, int32_t level, OrvSize roiSize, float rate) {
  ORV_REQUIRE(allSet(pyramid), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validRate(rate) && level >= 1, orvStatusBadArg);
  int32_t steps = 0;
  for (OrvSize size = roiSize; steps < level && (size.width > 1 || size.height > 1); ++steps)
    size = sizeBelow(size, rate);

  // the record and its arrays in one piece, each at an address of 32 bytes
  const int64_t entries = (int64_t)steps + 1;
  const auto padded = [](int64_t bytes) { return (bytes + 31) & ~(int64_t)31; };
  const int64_t pointers = padded(8 * entries);
  const int64_t bytes = padded(sizeof(OrvPyramid)) + 3 * pointers + padded(4 * entries) + 32;
  ORV_REQUIRE(bytes <= INT32_MAX, orvStatusNoMem);
  auto* const made = (OrvPyramid*)orvMalloc((int32_t)bytes);
  ORV_REQUIRE(made != nullptr, orvStatusNoMem);
  uint8_t* const arrays = (uint8_t*)(((uintptr_t)(made + 1) + 31) & ~(uintptr_t)31);
  *made = {(void**)(void*)arrays,
           (OrvSize*)(void*)(arrays + pointers),
           (double*)(void*)(arrays + 2 * pointers),
           (int32_t*)(void*)(arrays + 3 * pointers),
           nullptr,
           steps};
  const double inverse = 1.0 / (double)rate;
  double scale = 1.0;
  for (ptrdiff_t i = 0; i < entries; ++i) {
    made->images[i] = nullptr;
    made->steps[i] = 0;
    made->roi[i] = roiSize;
    made->rates[i] = scale;
    scale *= inverse;
    roiSize = sizeBelow(roiSize, rate);
  }
  *pyramid = made;
  return orvStatusOk;
}

OrvStatus orviPyramidFree(OrvPyramid* pyramid) {
  ORV_REQUIRE(allSet(pyramid), orvStatusNullPtr);
  orvFree(pyramid);
  return orvStatusOk;
}

// Copies of images, row by row. The system's memmove knows the widest moves, and takes a source that is the
// destination.
#include "core/primitives.h"
#include <string.h>
#include "core/image.h"

namespace {

template <class T>
OrvStatus copy(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int32_t channels) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  const Plane<const T> s{src, srcStep};
  const Plane<T> d{dst, dstStep};
  const size_t bytes = (size_t)roi.width * (size_t)channels * sizeof(T);
  for (int32_t y = 0; y < roi.height; ++y) memmove(d.row(y), s.row(y), bytes);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviCopy_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 1);
}

OrvStatus orviCopy_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 3);
}

OrvStatus orviCopy_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 4);
}

OrvStatus orviCopy_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 1);
}

OrvStatus orviCopy_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 1);
}

OrvStatus orviCopy_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 1);
}

OrvStatus orviCopy_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 3);
}

OrvStatus orviCopy_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize) {
  return copy(src, srcStep, dst, dstStep, roiSize, 4);
}

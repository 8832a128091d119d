// Copy of a window that may lie anywhere about an image.
#include "filter/border_copy.h"
#include "filter/copy_window.h"

namespace {

template <class T>
OrvStatus copyPart(const T* src, int32_t srcStep, OrvSize srcSize, T* dst, int32_t dstStep, int32_t borderType,
                   OrvPoint offset, OrvSize windowSize, T borderValue) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  ORV_REQUIRE(validRoi(srcSize) && validRoi(windowSize), orvStatusSize);
  copyWindow({src, srcStep, srcSize, dst, dstStep, windowSize, offset, borderKind(borderType),
              sidesInMemoryByKind(borderType), &borderValue, sizeof(T)});
  return orvStatusOk;
}

}  // namespace

OrvStatus CopyWithBorder8u(const uint8_t* src, int32_t srcStep, OrvSize srcSize, uint8_t* dst, int32_t dstStep,
                           int32_t borderType, OrvPoint offset, OrvSize windowSize, uint8_t borderValue) {
  return copyPart(src, srcStep, srcSize, dst, dstStep, borderType, offset, windowSize, borderValue);
}

OrvStatus CopyWithBorder32f(const float* src, int32_t srcStep, OrvSize srcSize, float* dst, int32_t dstStep,
                            int32_t borderType, OrvPoint offset, OrvSize windowSize, float borderValue) {
  return copyPart(src, srcStep, srcSize, dst, dstStep, borderType, offset, windowSize, borderValue);
}

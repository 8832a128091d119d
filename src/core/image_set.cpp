// Images of one value, row by row.
#include "core/image.h"
#include "core/primitives.h"

namespace {

template <class T, class SetRow>
OrvStatus set(T value, T* dst, int32_t dstStep, OrvSize roi, const SetRow& setRow) {
  ORV_REQUIRE(allSet(dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(dstStep >= 1, orvStatusStep);
  const Plane<T> d{dst, dstStep};
  for (int32_t y = 0; y < roi.height; ++y) setRow(value, raw(d.row(y)), roi.width);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviSet_8u_C1R(uint8_t value, uint8_t* dst, int32_t dstStep, OrvSize roiSize) {
  return set(value, dst, dstStep, roiSize, orvsSet_8u);
}

OrvStatus orviSet_16s_C1R(int16_t value, int16_t* dst, int32_t dstStep, OrvSize roiSize) {
  return set(value, dst, dstStep, roiSize, orvsSet_16s);
}

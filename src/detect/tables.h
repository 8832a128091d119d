// Integral tables: their types, and the checks of their arguments.
#pragma once
#include "detect/names.h"
#include "core/checks.h"
#include "core/image.h"

namespace ORV_VARIANT {

// The element types of a table of sums and its table of squares.
template <class SumType, class SquareType>
struct Tables {
  using Sum = SumType;
  using Square = SquareType;
};
using Tables_32s = Tables<int32_t, int32_t>;
using Tables_32s64f = Tables<int32_t, double>;
using Tables_32f64f = Tables<float, double>;

// Pointers, size, steps, alignment of the steps. `extra`: columns of a table beyond those of the image, 1 upright, 2
// tilted.
template <class S, class T>
static inline OrvStatus checkTables(const S* src, int32_t srcStep, const T* dst, int32_t dstStep, OrvSize roi,
                                    int32_t extra) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<S>(roi.width), orvStatusStep);
  ORV_REQUIRE(dstStep >= rowBytes<T>(wrapAdd(roi.width, extra)), orvStatusStep);
  ORV_REQUIRE(stepsAligned<S>(srcStep) && stepsAligned<T>(dstStep), orvStatusStepAlign);
  return orvStatusOk;
}

// The same with a table of squares. All steps are compared with the widths before any alignment is tested.
template <class T, class Q>
static inline OrvStatus checkTables(const uint8_t* src, int32_t srcStep, const T* dst, int32_t dstStep, const Q* sqr,
                                    int32_t sqrStep, OrvSize roi, int32_t extra) {
  ORV_REQUIRE(allSet(src, dst, sqr), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  const int32_t columns = wrapAdd(roi.width, extra);
  ORV_REQUIRE(srcStep >= roi.width, orvStatusStep);
  ORV_REQUIRE(dstStep >= rowBytes<T>(columns) && sqrStep >= rowBytes<Q>(columns), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(dstStep) && stepsAligned<Q>(sqrStep), orvStatusStepAlign);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

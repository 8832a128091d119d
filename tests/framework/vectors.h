// Vector functions as functions of images, so that sweep() can drive them: each row is a vector.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "framework/subject.h"

namespace test {

template <class T>
T* rowOf(T* image, int32_t step, int y) {
  return (T*)((uintptr_t)image + (uintptr_t)((ptrdiff_t)y * step));
}

// f(src, dst, length, more...)
template <class F>
auto unaryRows(F f) {
  return [f](auto* src, int32_t srcStep, auto* dst, int32_t dstStep, OrvSize roi, auto... more) {
    OrvStatus status = orvStatusOk;
    for (int y = 0; y < roi.height && status == orvStatusOk; ++y)
      status = f(rowOf(src, srcStep, y), rowOf(dst, dstStep, y), roi.width, more...);
    return status;
  };
}

// f(src1, src2, dst, length, more...)
template <class F>
auto binaryRows(F f) {
  return
      [f](auto* src1, int32_t step1, auto* src2, int32_t step2, auto* dst, int32_t dstStep, OrvSize roi, auto... more) {
        OrvStatus status = orvStatusOk;
        for (int y = 0; y < roi.height && status == orvStatusOk; ++y)
          status = f(rowOf(src1, step1, y), rowOf(src2, step2, y), rowOf(dst, dstStep, y), roi.width, more...);
        return status;
      };
}

// The same functions of images with the destination in place of a source.
template <class F>
auto inPlace(F f) {
  return [f](auto* dst, int32_t step, OrvSize roi, auto... more) { return f(dst, step, dst, step, roi, more...); };
}
template <class F>
auto inPlaceOfFirst(F f) {
  return [f](auto* src2, int32_t step2, auto* dst, int32_t step, OrvSize roi, auto... more) {
    return f(dst, step, src2, step2, dst, step, roi, more...);
  };
}
template <class F>
auto inPlaceOfSecond(F f) {
  return [f](auto* src1, int32_t step1, auto* dst, int32_t step, OrvSize roi, auto... more) {
    return f(src1, step1, dst, step, dst, step, roi, more...);
  };
}

}  // namespace test

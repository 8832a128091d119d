// Plain forms of the pointwise operations: rows and columns, one expression a pixel.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include "framework/subject.h"

namespace reference {

// Element x of row y, at any address.
template <class T>
T load(const T* image, int32_t step, int y, int x) {
  T value;
  memcpy(&value, (const uint8_t*)image + (ptrdiff_t)y * step + (ptrdiff_t)x * (ptrdiff_t)sizeof(T), sizeof(T));
  return value;
}
template <class T>
void store(T* image, int32_t step, int y, int x, T value) {
  memcpy((uint8_t*)image + (ptrdiff_t)y * step + (ptrdiff_t)x * (ptrdiff_t)sizeof(T), &value, sizeof(T));
}

// body(y, x) for each element of a region.
template <class Body>
void forEachElement(OrvSize roi, int channels, const Body& body) {
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width * channels; ++x) body(y, x);
}

// dst = f(src), dst = f(src1, src2) for each element, as functions of images.
template <class F>
auto unary(int channels, F f) {
  return [=](const auto* src, int32_t srcStep, auto* dst, int32_t dstStep, OrvSize roi) {
    forEachElement(roi, channels, [&](int y, int x) { store(dst, dstStep, y, x, f(load(src, srcStep, y, x))); });
  };
}
template <class F>
auto binary(int channels, F f) {
  return
      [=](const auto* src1, int32_t step1, const auto* src2, int32_t step2, auto* dst, int32_t dstStep, OrvSize roi) {
        forEachElement(roi, channels, [&](int y, int x) {
          store(dst, dstStep, y, x, f(load(src1, step1, y, x), load(src2, step2, y, x)));
        });
      };
}

}  // namespace reference

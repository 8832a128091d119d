// Copies of vectors. The system's memmove knows the widest moves, and takes a source that is the destination.
#include "core/primitives.h"
#include <string.h>
#include "core/checks.h"

namespace {

template <class T>
OrvStatus copy(const T* src, T* dst, int32_t length) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  memmove(dst, src, (size_t)length * sizeof(T));
  return orvStatusOk;
}

}  // namespace

OrvStatus orvsCopy_8u(const uint8_t* src, uint8_t* dst, int32_t length) { return copy(src, dst, length); }
OrvStatus orvsCopy_16s(const int16_t* src, int16_t* dst, int32_t length) { return copy(src, dst, length); }
OrvStatus orvsCopy_32f(const float* src, float* dst, int32_t length) { return copy(src, dst, length); }

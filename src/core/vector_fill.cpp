// Vectors of one value.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/vector_fill.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

template <class T>
void Fill(T value, T* dst, int32_t length) {
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) { d[i] = value; });
}

KERNELS_END

#if HWY_ONCE
#include <string.h>
#include "core/primitives.h"

namespace {

template <class T>
OrvStatus set(T value, T* dst, int32_t length) {
  ORV_REQUIRE(allSet(dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  WIDEST(Fill<T>)(value, dst, length);
  return orvStatusOk;
}

// All zeros are zero bytes, those of floats too, so the system's memset serves every type; bytes of any value as well.
template <class T>
OrvStatus setBytes(int value, T* dst, int32_t length) {
  ORV_REQUIRE(allSet(dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  memset(dst, value, (size_t)length * sizeof(T));
  return orvStatusOk;
}

}  // namespace

OrvStatus orvsZero_8u(uint8_t* dst, int32_t length) { return setBytes(0, dst, length); }
OrvStatus orvsZero_16s(int16_t* dst, int32_t length) { return setBytes(0, dst, length); }
OrvStatus orvsZero_32s(int32_t* dst, int32_t length) { return setBytes(0, dst, length); }
OrvStatus orvsZero_32f(float* dst, int32_t length) { return setBytes(0, dst, length); }

OrvStatus orvsSet_8u(uint8_t value, uint8_t* dst, int32_t length) { return setBytes(value, dst, length); }
OrvStatus orvsSet_16s(int16_t value, int16_t* dst, int32_t length) { return set(value, dst, length); }
OrvStatus orvsSet_32s(int32_t value, int32_t* dst, int32_t length) { return set(value, dst, length); }
OrvStatus orvsSet_32f(float value, float* dst, int32_t length) { return set(value, dst, length); }

#endif

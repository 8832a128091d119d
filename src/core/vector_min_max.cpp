// Elementwise minimum and maximum of two vectors.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/vector_min_max.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// Where neither element is the smaller one (equal zeros, NaN) the second is taken, as the vector instructions do.
template <class T>
void MinEvery(const T* src1, const T* src2, T* dst, int32_t length) {
  const auto *a = loose(src1), *b = loose(src2);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) {
        const T p = a[i], q = b[i];
        d[i] = p < q ? p : q;
      });
}

template <class T>
void MaxEvery(const T* src1, const T* src2, T* dst, int32_t length) {
  const auto *a = loose(src1), *b = loose(src2);
  auto* d = loose(dst);
  Columns(
      0, length, PIXEL(i) {
        const T p = a[i], q = b[i];
        d[i] = p > q ? p : q;
      });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

namespace {

template <class T>
OrvStatus minEvery(const T* src1, const T* src2, T* dst, int32_t length) {
  ORV_REQUIRE(allSet(src1, src2, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  WIDEST(MinEvery<T>)(src1, src2, dst, length);
  return orvStatusOk;
}

template <class T>
OrvStatus maxEvery(const T* src1, const T* src2, T* dst, int32_t length) {
  ORV_REQUIRE(allSet(src1, src2, dst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  WIDEST(MaxEvery<T>)(src1, src2, dst, length);
  return orvStatusOk;
}

}  // namespace

OrvStatus orvsMinEvery_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t length) {
  return minEvery(src1, src2, dst, length);
}
OrvStatus orvsMinEvery_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t length) {
  return minEvery(src1, src2, dst, length);
}
OrvStatus orvsMinEvery_32f(const float* src1, const float* src2, float* dst, int32_t length) {
  return minEvery(src1, src2, dst, length);
}
OrvStatus orvsMinEvery_64f(const double* src1, const double* src2, double* dst, int32_t length) {
  return minEvery(src1, src2, dst, length);
}

OrvStatus orvsMinEvery_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t length) {
  return minEvery<uint8_t>(src, srcDst, srcDst, length);
}
OrvStatus orvsMinEvery_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t length) {
  return minEvery<uint16_t>(src, srcDst, srcDst, length);
}
OrvStatus orvsMinEvery_16s_I(const int16_t* src, int16_t* srcDst, int32_t length) {
  return minEvery<int16_t>(src, srcDst, srcDst, length);
}
OrvStatus orvsMinEvery_32f_I(const float* src, float* srcDst, int32_t length) {
  return minEvery<float>(src, srcDst, srcDst, length);
}
OrvStatus orvsMinEvery_64f_I(const double* src, double* srcDst, int32_t length) {
  return minEvery<double>(src, srcDst, srcDst, length);
}

OrvStatus orvsMaxEvery_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t length) {
  return maxEvery(src1, src2, dst, length);
}
OrvStatus orvsMaxEvery_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t length) {
  return maxEvery(src1, src2, dst, length);
}
OrvStatus orvsMaxEvery_32f(const float* src1, const float* src2, float* dst, int32_t length) {
  return maxEvery(src1, src2, dst, length);
}
OrvStatus orvsMaxEvery_64f(const double* src1, const double* src2, double* dst, int32_t length) {
  return maxEvery(src1, src2, dst, length);
}

OrvStatus orvsMaxEvery_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t length) {
  return maxEvery<uint8_t>(src, srcDst, srcDst, length);
}
OrvStatus orvsMaxEvery_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t length) {
  return maxEvery<uint16_t>(src, srcDst, srcDst, length);
}
OrvStatus orvsMaxEvery_16s_I(const int16_t* src, int16_t* srcDst, int32_t length) {
  return maxEvery<int16_t>(src, srcDst, srcDst, length);
}
OrvStatus orvsMaxEvery_32f_I(const float* src, float* srcDst, int32_t length) {
  return maxEvery<float>(src, srcDst, srcDst, length);
}
OrvStatus orvsMaxEvery_64f_I(const double* src, double* srcDst, int32_t length) {
  return maxEvery<double>(src, srcDst, srcDst, length);
}

#endif

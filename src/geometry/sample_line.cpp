// The pixels along a line.
//
// A step of the walk depends on the error that the step before left, which would bound it to the latency of four
// operations a pixel. So four walks run side by side, each taking every fourth pixel: four plain steps lower the error
// by 4 * b2, of which whole multiples of a2 are as many minor steps.
#include "core/checks.h"
#include "core/image.h"

namespace {

constexpr int32_t walks = 4;

// A walk: the offset of its pixel in bytes and what is left until the next minor step, 0 <= error < a2.
struct Walk {
  ptrdiff_t pixel;
  int64_t error;

  // Lowers the error by at most a2.
  __attribute__((always_inline)) void step(int64_t fall, int64_t a2, ptrdiff_t major, ptrdiff_t minor) {
    error -= fall;
    const int64_t below = error >> 63;
    error += a2 & below;
    pixel += major + (minor & (ptrdiff_t)below);
  }
};

template <size_t Bytes>
void sampleLine(const uint8_t* src, ptrdiff_t rowStep, uint8_t* dst, OrvPoint from, OrvPoint to) {
  const int64_t dx = (int64_t)to.x - from.x, dy = (int64_t)to.y - from.y, ax = dx < 0 ? -dx : dx,
                ay = dy < 0 ? -dy : dy;
  const ptrdiff_t column = dx < 0 ? -(ptrdiff_t)Bytes : (ptrdiff_t)Bytes, row = dy < 0 ? -rowStep : rowStep;
  const bool steep = ax <= ay;  // a diagonal is steep
  const int64_t length = steep ? ay : ax, a2 = 2 * length, b2 = 2 * (steep ? ax : ay);
  const ptrdiff_t major = steep ? row : column, minor = steep ? column : row;

  Walk walk[walks];
  walk[0] = {from.y * rowStep + from.x * (ptrdiff_t)Bytes, length};
  for (int32_t i = 1; i < walks; ++i) {
    walk[i] = walk[i - 1];
    walk[i].step(b2, a2, major, minor);
  }
  const int64_t whole = length > 0 ? walks * b2 / a2 : 0, fall = walks * b2 - whole * a2;
  const ptrdiff_t leap = walks * major + (ptrdiff_t)whole * minor;
  int64_t left = length + 1;
  for (; left >= walks; left -= walks)
#pragma GCC unroll 4
    for (int32_t i = 0; i < walks; ++i, dst += Bytes) {
      __builtin_memcpy(dst, src + walk[i].pixel, Bytes);
      walk[i].step(fall, a2, leap, minor);
    }
  for (int32_t i = 0; i < left; ++i, dst += Bytes) __builtin_memcpy(dst, src + walk[i].pixel, Bytes);
}

bool inside(OrvPoint p, OrvSize roi) { return p.x >= 0 && p.y >= 0 && p.x < roi.width && p.y < roi.height; }

template <class T, int32_t channels>
OrvStatus line(const T* src, int32_t srcStep, OrvSize roi, T* dst, OrvPoint pt1, OrvPoint pt2) {
  ORV_REQUIRE(allSet(src, dst), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<T>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(srcStep), orvStatusStepAlign);
  ORV_REQUIRE(inside(pt1, roi) && inside(pt2, roi), orvStatusOutOfRange);
  sampleLine<sizeof(T) * channels>((const uint8_t*)(const void*)src, srcStep, (uint8_t*)(void*)dst, pt1, pt2);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviSampleLine_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, uint8_t* dst, OrvPoint pt1,
                                OrvPoint pt2) {
  return line<uint8_t, 1>(src, srcStep, roiSize, dst, pt1, pt2);
}

OrvStatus orviSampleLine_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, uint8_t* dst, OrvPoint pt1,
                                OrvPoint pt2) {
  return line<uint8_t, 3>(src, srcStep, roiSize, dst, pt1, pt2);
}

OrvStatus orviSampleLine_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize roiSize, uint16_t* dst, OrvPoint pt1,
                                 OrvPoint pt2) {
  return line<uint16_t, 1>(src, srcStep, roiSize, dst, pt1, pt2);
}

OrvStatus orviSampleLine_16u_C3R(const uint16_t* src, int32_t srcStep, OrvSize roiSize, uint16_t* dst, OrvPoint pt1,
                                 OrvPoint pt2) {
  return line<uint16_t, 3>(src, srcStep, roiSize, dst, pt1, pt2);
}

OrvStatus orviSampleLine_32f_C1R(const float* src, int32_t srcStep, OrvSize roiSize, float* dst, OrvPoint pt1,
                                 OrvPoint pt2) {
  return line<float, 1>(src, srcStep, roiSize, dst, pt1, pt2);
}

OrvStatus orviSampleLine_32f_C3R(const float* src, int32_t srcStep, OrvSize roiSize, float* dst, OrvPoint pt1,
                                 OrvPoint pt2) {
  return line<float, 3>(src, srcStep, roiSize, dst, pt1, pt2);
}

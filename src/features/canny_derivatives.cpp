// Canny edges from derivatives that the caller has.
// One body serves both variants.
#include <math.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/canny_derivatives.cpp"
#include "core/kernels.h"
#include "features/canny_grade.h"

KERNELS_BEGIN

void CannyGradeShorts(const int16_t* dx, const int16_t* dy, float* magnitude, uint8_t* code, ptrdiff_t n, float low,
                      float most) {
  CannyGrade<CannyForm::shorts>(dx, dy, magnitude, code, n, low, most);
}
void CannyGradeFloats(const float* dx, const float* dy, float* magnitude, uint8_t* code, ptrdiff_t n, float low) {
  CannyGrade<CannyForm::floats>(dx, dy, magnitude, code, n, low, 0);
}

KERNELS_END

#if HWY_ONCE
namespace {

template <class T>
OrvStatus checkDerivatives(Plane<const T> dx, Plane<const T> dy, Plane<uint8_t> dst, OrvSize roi, float low, float high,
                           const uint8_t* buffer) {
  ORV_REQUIRE(allSet(dx.data, dy.data, dst.data, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  const int32_t bytes = rowBytes<T>(roi.width);
  ORV_REQUIRE(dx.step >= bytes && dy.step >= bytes && dst.step >= roi.width, orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(dx.step, dy.step), orvStatusStepAlign);
  ORV_REQUIRE(!(low < 0) && !(low > high), orvStatusBadArg);
  return orvStatusOk;
}

// Towards zero. No magnitude of shorts reaches 2^24, so larger thresholds may stay as they are.
float truncated(float threshold) { return threshold < 16777216.f ? (float)(int32_t)threshold : threshold; }

// One of the last width % 4 columns: the direction in doubles, rounded to floats before they are compared.
void gradeLast(int32_t dx, int32_t dy, float low, float* magnitude, uint8_t* code) {
  const int32_t ax = dx < 0 ? -dx : dx, ay = dy < 0 ? -dy : dy;
  const float m = (float)(ax + ay), x = (float)ax, y = (float)ay;
  *magnitude = m > low ? m : 0;
  if (y > (float)(2.414213562373095 * (double)x)) *code = cannyDown;
  else if ((float)((double)x * 0.41421356237309503) > y) *code = cannyAlongRow;
  else *code = (dx ^ dy) < 0 ? cannyRising : cannyFalling;
}

}  // namespace

OrvStatus orviCannyGetSize(OrvSize roiSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  const bool shortStack = roiSize.width < 65533 && roiSize.height < 65533;
  const int32_t pixels = wrapMul(wrapAdd(roiSize.width, 2), wrapAdd(roiSize.height, 2));
  *bufferSize = wrapAdd(wrapMul(pixels, shortStack ? 5 : 9), wrapAdd(wrapMul(roiSize.width, 16), 160));
  return orvStatusOk;
}

OrvStatus orviCanny_16s8u_C1R(const int16_t* srcDx, int32_t srcDxStep, const int16_t* srcDy, int32_t srcDyStep,
                              uint8_t* dst, int32_t dstStep, OrvSize roiSize, float lowThreshold, float highThreshold,
                              uint8_t* buffer) {
  const Plane<const int16_t> dx{srcDx, srcDxStep}, dy{srcDy, srcDyStep};
  const Plane<uint8_t> out{dst, dstStep};
  const OrvStatus status = checkDerivatives(dx, dy, out, roiSize, lowThreshold, highThreshold, buffer);
  ORV_REQUIRE(status == orvStatusOk, status);
  const auto grade = WIDEST(CannyGradeShorts);
  const float low = truncated(lowThreshold);
  const ptrdiff_t width = roiSize.width, saturated = width & ~(ptrdiff_t)7, single = width & ~(ptrdiff_t)3;
  cannyEdges(
      {roiSize, buffer}, roiSize, truncated(highThreshold), out, [&](ptrdiff_t y, float* magnitude, uint8_t* code) {
        const int16_t *const x = raw(dx.row(y)), *const z = raw(dy.row(y));
        grade(x, z, magnitude, code, saturated, low, 65535);
        grade(x + saturated, z + saturated, magnitude + saturated, code + saturated, single - saturated, low, INFINITY);
        for (ptrdiff_t i = single; i < width; ++i) gradeLast(dx.row(y)[i], dy.row(y)[i], low, magnitude + i, code + i);
      });
  return orvStatusOk;
}

OrvStatus orviCanny_32f8u_C1R(const float* srcDx, int32_t srcDxStep, const float* srcDy, int32_t srcDyStep,
                              uint8_t* dst, int32_t dstStep, OrvSize roiSize, float lowThreshold, float highThreshold,
                              uint8_t* buffer) {
  const Plane<const float> dx{srcDx, srcDxStep}, dy{srcDy, srcDyStep};
  const Plane<uint8_t> out{dst, dstStep};
  const OrvStatus status = checkDerivatives(dx, dy, out, roiSize, lowThreshold, highThreshold, buffer);
  ORV_REQUIRE(status == orvStatusOk, status);
  const auto grade = WIDEST(CannyGradeFloats);
  cannyEdges({roiSize, buffer}, roiSize, highThreshold, out, [&](ptrdiff_t y, float* magnitude, uint8_t* code) {
    grade(raw(dx.row(y)), raw(dy.row(y)), magnitude, code, roiSize.width, lowThreshold);
  });
  return orvStatusOk;
}

#endif

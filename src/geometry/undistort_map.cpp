// Coordinate maps that undistort an image: radial terms, and tangential ones where they are given.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/undistort_map.cpp"
#include "core/kernels.h"
#include "geometry/undistort_kernels.h"

KERNELS_BEGIN

void RadialMap(const Lens& lens, const ColumnTerms& terms, ptrdiff_t y, ptrdiff_t count, Loose<float>* xMap,
               Loose<float>* yMap) {
  const RadialRow row(lens, y);
  const ColumnTerms t = terms;
  Columns(
      0, count, PIXEL(i) {
        const RadialPlace place(t, row, i);
        xMap[i] = place.x;
        yMap[i] = place.y;
      });
}

void TangentialTerms(const Lens& lens, const ColumnTerms& t, ptrdiff_t column, ptrdiff_t count) {
  const float cx = lens.cx, p2 = 2 * lens.p2, scale = 1.0f / lens.fx;
  float *const x = t.x, *const u = t.u, *const a = t.first, *const part = t.second;
  Columns(
      0, count, PIXEL(i) {
        x[i] = (float)(int32_t)(column + i);
        u[i] = x[i] - cx;
        a[i] = u[i] * scale;
        part[i] = p2 * a[i];
      });
}

void TangentialMap(const Lens& lens, const ColumnTerms& terms, ptrdiff_t row, ptrdiff_t count, Loose<float>* xMap,
                   Loose<float>* yMap) {
  const float *const x = terms.x, *const u = terms.u, *const a = terms.first, *const part = terms.second;
  const float y = (float)(int32_t)row, v = y - lens.cy, b = v * (1.0f / lens.fy), bb = b * b, k1 = lens.k1,
              k2 = lens.k2, rowPart = (2 * lens.p1) * b, alongX = lens.fx * lens.p2, alongY = lens.fy * lens.p1;
  Columns(
      0, count, PIXEL(i) {
        const float r2 = a[i] * a[i] + bb, k = ((k2 * r2 + k1) * r2 + part[i]) + rowPart;
        xMap[i] = u[i] * k + (alongX * r2 + x[i]);
        yMap[i] = v * k + (alongY * r2 + y);
      });
}

KERNELS_END

#if HWY_ONCE

OrvStatus orviCreateMapCameraUndistort_32f_C1R(float* xMap, int32_t xStep, float* yMap, int32_t yStep, OrvSize roiSize,
                                               float fx, float fy, float cx, float cy, float k1, float k2, float p1,
                                               float p2, uint8_t* buffer) {
  ORV_REQUIRE(allSet(xMap, yMap), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(xStep >= rowBytes<float>(roiSize.width) && yStep >= rowBytes<float>(roiSize.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<float>(xStep, yStep), orvStatusStepAlign);
  ORV_REQUIRE(fx != 0 && fy != 0, orvStatusBadArg);
  const Lens lens{fx, fy, cx, cy, k1, k2, p1, p2};
  const bool radial = p1 == 0 && p2 == 0;
  const auto terms = radial ? WIDEST(RadialTerms) : WIDEST(TangentialTerms);
  const auto map = radial ? WIDEST(RadialMap) : WIDEST(TangentialMap);
  const Plane<float> xPlane{xMap, xStep}, yPlane{yMap, yStep};
  undistortRows(
      roiSize, buffer, [&](const ColumnTerms& t, ptrdiff_t x, ptrdiff_t count) { terms(lens, t, x, count); },
      [&](const ColumnTerms& t, ptrdiff_t y, ptrdiff_t x, ptrdiff_t count) {
        map(lens, t, y, count, xPlane.row(y) + x, yPlane.row(y) + x);
      });
  return orvStatusOk;
}

#endif

// Deviation of the pixels in a sliding rectangle, from integral images, upright and tilted.
//
// Theory: four entries of a table give the sum over a rectangle. With n pixels, the sum s and the sum of squares q the
// variance is q / n - (s / n)^2. That is never negative, but rounding may make it so; then it counts as 0.
//
//   upright   d - b       s = a - b + d - c      tilted        d           s = a - b - c + d
//             |   |                                          b   c
//             c - a                                            a
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detect/rect_std_dev.cpp"
#include "core/kernels.h"

#ifndef ORV_RECT_STD_DEV
#define ORV_RECT_STD_DEV
#include "core/frame.h"

namespace ORV_VARIANT {

// Place of a table's entry, for the pixel in row 0, column 0.
struct Corner {
  ptrdiff_t row, column;
};

// The rectangle: corners a, b, c, d of the drawing, its pixels, and what integer results are multiplied by.
struct Rectangle {
  Corner corner[4];
  int32_t area;
  double scale;
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

// The entries at the four corners for the pixels of row y.
template <class T>
struct CornerRows {
  const Loose<const T>* at[4];
  CornerRows(Plane<const T> table, const Rectangle& rect, ptrdiff_t y) {
    for (int i = 0; i < 4; ++i) at[i] = table.row(rect.corner[i].row + y) + rect.corner[i].column;
  }
  // Left to right, as float sums depend on the order.
  template <bool tilted>
  HWY_INLINE T Sum(ptrdiff_t x) const {
    const T a = at[0][x], b = at[1][x], c = at[2][x], d = at[3][x];
    return tilted ? a - b - c + d : a - b + d - c;
  }
};

HWY_INLINE float RootOrZero(float variance) { return sqrtf(variance <= 0 ? 0.f : variance); }

// Truncated. What doesn't fit becomes the lowest number, as the processor's conversion has it.
HWY_INLINE int32_t Truncated(double v) {
  const double limited = v < 2147483648.0 && v > -2147483649.0 ? v : -2147483648.0;
  return (int32_t)limited;
}

template <bool tilted>
void IntegerDeviation(OrvSize roi, Plane<const int32_t> src, Plane<const int32_t> sqr, Plane<int32_t> dst,
                      const Rectangle& rect) {
  const float n = (float)rect.area;
  const double scale = rect.scale;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const CornerRows<int32_t> s(src, rect, y), q(sqr, rect, y);
    auto* d = dst.row(y);
    Columns(
        0, roi.width, PIXEL(x) {
          const float mean = (float)s.Sum<tilted>(x) / n;
          const float variance = (float)q.Sum<tilted>(x) / n - mean * mean;
          d[x] = Truncated(sqrt((double)(variance < 0 ? 0.f : variance)) * scale + 0.5);
        });
  }
}

// Integer sums: the mean and its square are floats.
template <bool tilted>
void MixedDeviation(OrvSize roi, Plane<const int32_t> src, Plane<const double> sqr, Plane<float> dst,
                    const Rectangle& rect) {
  const float n = (float)rect.area;
  const double area = rect.area;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const CornerRows<int32_t> s(src, rect, y);
    const CornerRows<double> q(sqr, rect, y);
    auto* d = dst.row(y);
    Columns(
        0, roi.width, PIXEL(x) {
          const float mean = (float)s.Sum<tilted>(x) / n;
          d[x] = RootOrZero((float)(q.Sum<tilted>(x) / area - (double)(mean * mean)));
        });
  }
}

// Float sums: the mean is a double. The tilted form divides the squares where the upright one multiplies.
template <bool tilted>
void FloatDeviation(OrvSize roi, Plane<const float> src, Plane<const double> sqr, Plane<float> dst,
                    const Rectangle& rect) {
  const double inverse = 1.0 / (double)(float)rect.area, area = rect.area;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const CornerRows<float> s(src, rect, y);
    const CornerRows<double> q(sqr, rect, y);
    auto* d = dst.row(y);
    Columns(
        0, roi.width, PIXEL(x) {
          const double mean = (double)s.Sum<tilted>(x) * inverse, sum = q.Sum<tilted>(x);
          d[x] = RootOrZero((float)((tilted ? sum / area : sum * inverse) - mean * mean));
        });
  }
}

KERNELS_END

#if HWY_ONCE

namespace {

// A shape of rectangle: its corners, and the columns of a table that a region of a width reaches.
struct Upright {
  static Rectangle corners(OrvRect r);
  static int32_t reach(OrvRect r, int32_t width) { return wrapAdd(wrapAdd(r.x, r.width), width); }
};
struct Tilted {
  static Rectangle corners(OrvRect r);
  static int32_t reach(OrvRect r, int32_t width) {
    return wrapAdd(wrapAdd(wrapAdd(r.width, r.height), wrapAdd(r.x, r.y)), wrapAdd(width, -1));
  }
};

Rectangle Upright::corners(OrvRect r) {
  const ptrdiff_t left = r.x, top = r.y, right = left + r.width, bottom = top + r.height;
  return {{{bottom, right}, {top, right}, {bottom, left}, {top, left}}, wrapMul(r.width, r.height), 1.0};
}

Rectangle Tilted::corners(OrvRect r) {
  const ptrdiff_t row = (ptrdiff_t)r.x + r.y, column = (ptrdiff_t)r.x - r.y, w = r.width, h = r.height;
  return {{{row + w + h, column + w - h}, {row + h, column - h}, {row + w, column + w}, {row, column}},
          wrapMul(2, r.width, r.height),
          1.0};
}

// 2 to the power of -scaleFactor. The shift's count is taken modulo 32, and the 31st bit is a sign.
double scaleOf(int32_t scaleFactor) {
  if (scaleFactor >= 0) return 1.0f / (float)(int32_t)(1u << (scaleFactor & 31));
  return (float)(int32_t)(1u << ((0u - (uint32_t)scaleFactor) & 31));
}

// The checks in their order, then the kernel for the bands of rows. The rectangle is checked last: a step too small for
// its reach is found before it is looked at. A `threaded` form has one thread for each 1024 pixels, 32 at most.
template <class Shape, class T, class Q, class D>
OrvStatus deviation(void (*kernel)(OrvSize, Plane<const T>, Plane<const Q>, Plane<D>, const Rectangle&),
                    Plane<const T> src, Plane<const Q> sqr, Plane<D> dst, OrvSize roi, OrvRect rect, double scale = 1,
                    bool threaded = false) {
  ORV_REQUIRE(allSet(src.data, sqr.data, dst.data), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  const int32_t reach = Shape::reach(rect, roi.width);
  ORV_REQUIRE(src.step >= rowBytes<T>(reach) && dst.step >= rowBytes<D>(roi.width) && sqr.step >= rowBytes<Q>(reach),
              orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(src.step, dst.step) && stepsAligned<Q>(sqr.step), orvStatusStepAlign);
  ORV_REQUIRE(rect.x >= 0 && rect.y >= 0 && rect.width >= 1 && rect.height >= 1, orvStatusSize);
  Rectangle corners = Shape::corners(rect);
  corners.scale = scale;
  const auto rows = [&](int32_t first, int32_t count) {
    kernel({roi.width, count}, src.from(first), sqr.from(first), dst.from(first), corners);
  };
  int32_t team = threaded ? HWY_MIN(wrapMul(roi.width, roi.height) >> 10, 32) : 1;
  if (team > 1) team = HWY_MIN(team, owncvGetMaxNumThreads());
  if (team > 1) runTeam(team, roi.height, rows);
  else rows(0, roi.height);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviRectStdDev_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* sqr, int32_t sqrStep,
                                    int32_t* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect, int32_t scaleFactor) {
  return deviation<Upright, int32_t, int32_t, int32_t>(WIDEST(IntegerDeviation<false>), {src, srcStep}, {sqr, sqrStep},
                                                       {dst, dstStep}, roiSize, rect, scaleOf(scaleFactor));
}

OrvStatus orviRectStdDev_32s32f_C1R(const int32_t* src, int32_t srcStep, const double* sqr, int32_t sqrStep, float* dst,
                                    int32_t dstStep, OrvSize roiSize, OrvRect rect) {
  return deviation<Upright, int32_t, double, float>(WIDEST(MixedDeviation<false>), {src, srcStep}, {sqr, sqrStep},
                                                    {dst, dstStep}, roiSize, rect);
}

OrvStatus orviRectStdDev_32f_C1R(const float* src, int32_t srcStep, const double* sqr, int32_t sqrStep, float* dst,
                                 int32_t dstStep, OrvSize roiSize, OrvRect rect) {
  return deviation<Upright, float, double, float>(WIDEST(FloatDeviation<false>), {src, srcStep}, {sqr, sqrStep},
                                                  {dst, dstStep}, roiSize, rect, 1, true);
}

OrvStatus orviTiltedRectStdDev_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* sqr, int32_t sqrStep,
                                          int32_t* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect,
                                          int32_t scaleFactor) {
  return deviation<Tilted, int32_t, int32_t, int32_t>(WIDEST(IntegerDeviation<true>), {src, srcStep}, {sqr, sqrStep},
                                                      {dst, dstStep}, roiSize, rect, scaleOf(scaleFactor));
}

OrvStatus orviTiltedRectStdDev_32s32f_C1R(const int32_t* src, int32_t srcStep, const double* sqr, int32_t sqrStep,
                                          float* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect) {
  return deviation<Tilted, int32_t, double, float>(WIDEST(MixedDeviation<true>), {src, srcStep}, {sqr, sqrStep},
                                                   {dst, dstStep}, roiSize, rect);
}

OrvStatus orviTiltedRectStdDev_32f_C1R(const float* src, int32_t srcStep, const double* sqr, int32_t sqrStep,
                                       float* dst, int32_t dstStep, OrvSize roiSize, OrvRect rect) {
  return deviation<Tilted, float, double, float>(WIDEST(FloatDeviation<true>), {src, srcStep}, {sqr, sqrStep},
                                                 {dst, dstStep}, roiSize, rect);
}

#endif

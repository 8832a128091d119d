// Chamfer distance transforms.
// One body serves both variants.
#include "core/checks.h"
#include "distance/chamfer_raster.h"

namespace {

using Whole = int64_t;  // sums of told weights don't wrap

// A weight of a pass: larger ones than the maximum act like it.
template <class T, class Weight>
typename Sum<T>::Type limited(Weight weight) {
  return weight < (Weight)Sum<T>::most ? (typename Sum<T>::Type)weight : Sum<T>::most;
}

// How weights compare: integers exactly, floats with a tolerance relative to `scale`.
bool above(Whole a, Whole b, Whole) { return a > b; }
bool above(float a, float b, float scale) { return a - b > 1e-7f * __builtin_fabsf(scale); }
bool reaches(Whole c, Whole a, Whole m) { return c >= a + m; }
bool reaches(float c, float a, float m) { return c - a - m > -1e-7f * __builtin_fabsf(a + m); }

// Weights of up to three steps as they were told, in a type that holds their sums.
template <class Weight>
struct Told {
  Weight one, diagonal, knight;
};

// In the bottom row, where no step leads further down, two diagonal steps over the row above may be cheaper than one
// aside or two: the row takes them as a step of two columns.
template <class T, class Weight>
void transform3x3(const Chamfer<T>& images, Told<Weight> told) {
  Chamfer<T> chamfer = images;
  const auto most = Sum<T>::most;
  const bool wide = told.one > told.diagonal && images.width >= 2 && images.height >= 2;
  chamfer.steps = {
      limited<T>(told.one), limited<T>(told.diagonal), most, most, most, wide ? limited<T>(2 * told.diagonal) : most};
  bothPasses<Mask::three>(chamfer, wide);
}

// The 5x5 transform of an image of one to three rows or columns, where paths turn more often than two passes follow:
// forward and backward in turn, until a pass changes nothing.
template <class T>
void untilCalm(const Chamfer<T>& chamfer) {
  using W = typename Sum<T>::Type;
  const Steps<W>& s = chamfer.steps;
  const struct {
    int dx, dy;  // of the forward half; the backward half is turned by 180 degrees
    W weight;
  } half[] = {{-1, 0, s.one},      {-2, 0, s.two},     {0, -1, s.one},          {-1, -1, s.diagonal},
              {1, -1, s.diagonal}, {-2, -1, s.knight}, {2, -1, s.knight},       {0, -2, s.two},
              {-1, -2, s.knight},  {1, -2, s.knight},  {-2, -2, s.twoDiagonal}, {2, -2, s.twoDiagonal}};
  const ptrdiff_t width = chamfer.width, height = chamfer.height;
  for (ptrdiff_t y = 0; y < height; ++y)
    for (ptrdiff_t x = 0; x < width; ++x) chamfer.dst.row(y)[x] = chamfer.src.row(y)[x] ? (T)Sum<T>::most : (T)0;
  int direction = 1, calm = 0;
  for (; calm < 2; direction = -direction) {
    ++calm;
    for (ptrdiff_t i = 0; i < width * height; ++i) {
      const ptrdiff_t y = direction > 0 ? i / width : height - 1 - i / width;
      const ptrdiff_t x = direction > 0 ? i % width : width - 1 - i % width;
      W v = chamfer.dst.row(y)[x];
      for (const auto& step : half) {
        const ptrdiff_t nx = x + direction * step.dx, ny = y + direction * step.dy;
        if (nx >= 0 && nx < width && ny >= 0 && ny < height) v = least(v, (W)(chamfer.dst.row(ny)[nx] + step.weight));
      }
      if (v < chamfer.dst.row(y)[x]) chamfer.dst.row(y)[x] = (T)v, calm = 0;
    }
  }
}

template <class T, class Weight>
void transform5x5(const Chamfer<T>& images, Told<Weight> told) {
  const Weight a = told.one, b = told.diagonal, c = told.knight, m = least<Weight>(2 * a, b);
  if (reaches(c, a, m)) return transform3x3(images, told);
  Chamfer<T> chamfer = images;
  const auto most = Sum<T>::most;
  const bool plain = above(m, a, m) && above(c, 2 * a, c) && above(2 * c, 3 * m, c);
  if (plain) {
    chamfer.steps = {limited<T>(a), limited<T>(b), limited<T>(c), most, most, most};
  } else {
    // Each step at the least cost of a path of cheaper ones.
    const Weight one = least<Weight>(a, 3 * c), diagonal = least<Weight>(2 * c, m);
    const Weight two = least(least<Weight>(2 * one, 2 * diagonal), (Weight)(2 * c));
    const Weight twoDiagonal = least<Weight>(c + one, 2 * diagonal);
    chamfer.steps = {limited<T>(one), limited<T>(diagonal),    limited<T>(c),
                     limited<T>(two), limited<T>(twoDiagonal), limited<T>(two)};
  }
  if (images.width < 4 || images.height < 4) untilCalm(chamfer);
  else if (plain) bothPasses<Mask::plain>(chamfer, false);
  else bothPasses<Mask::closed>(chamfer, true);
}

template <class Metric>
bool positive(const Metric* metrics, int count) {
  for (int i = 0; i < count; ++i)
    if (!(metrics[i] > 0)) return false;
  return true;
}

// The body of all forms; `count` weights make the mask.
template <class T, class Metric>
OrvStatus transform(const uint8_t* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, const Metric* metrics,
                    int count) {
  ORV_REQUIRE(allSet(src, dst, metrics), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= roi.width && dstStep >= rowBytes<T>(roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(dstStep), orvStatusStepAlign);
  ORV_REQUIRE(positive(metrics, count), orvStatusMetric);
  using Weight = std::conditional_t<std::is_same<Metric, float>::value, float, Whole>;
  const Chamfer<T> images{{src, srcStep}, {dst, dstStep}, roi.width, roi.height, {}};
  if (count == 2) transform3x3<T, Weight>(images, {(Weight)metrics[0], (Weight)metrics[1], 0});
  else transform5x5<T, Weight>(images, {(Weight)metrics[0], (Weight)metrics[1], (Weight)metrics[2]});
  return orvStatusOk;
}

}  // namespace

OrvStatus orviDistanceTransform_3x3_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const int32_t* metrics) {
  return transform(src, srcStep, dst, dstStep, roiSize, metrics, 2);
}
OrvStatus orviDistanceTransform_3x3_8u16u_C1R(const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, const int32_t* metrics) {
  return transform(src, srcStep, dst, dstStep, roiSize, metrics, 2);
}
OrvStatus orviDistanceTransform_3x3_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, const float* metrics) {
  return transform(src, srcStep, dst, dstStep, roiSize, metrics, 2);
}
OrvStatus orviDistanceTransform_3x3_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize,
                                            const int32_t* metrics) {
  return transform(srcDst, srcDstStep, srcDst, srcDstStep, roiSize, metrics, 2);
}

OrvStatus orviDistanceTransform_5x5_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const int32_t* metrics) {
  return transform(src, srcStep, dst, dstStep, roiSize, metrics, 3);
}
OrvStatus orviDistanceTransform_5x5_8u16u_C1R(const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                              OrvSize roiSize, const int32_t* metrics) {
  return transform(src, srcStep, dst, dstStep, roiSize, metrics, 3);
}
OrvStatus orviDistanceTransform_5x5_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep,
                                              OrvSize roiSize, const float* metrics) {
  return transform(src, srcStep, dst, dstStep, roiSize, metrics, 3);
}
OrvStatus orviDistanceTransform_5x5_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize,
                                            const int32_t* metrics) {
  return transform(srcDst, srcDstStep, srcDst, srcDstStep, roiSize, metrics, 3);
}

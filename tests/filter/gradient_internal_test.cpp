// Gradients for callers inside the library: the internal Sobel forms, gradient vectors and box means.
#include "filter/fixed_cases.h"
#include "core/primitives.h"
#include "filter/box.h"
#include "filter/gradient_vector.h"
#include "filter/sobel_internal.h"
#include "reference/gradient_vector.h"

using namespace test;

namespace {

const FixedFilter<uint8_t, int16_t> internalShorts[] = {SEPARABLE(SobelVert, 8u16s, uint8_t, int16_t, "DxNeg", "Sobel"),
                                                        SEPARABLE(SobelHoriz, 8u16s, uint8_t, int16_t, "Sobel", "Dx")};
const FixedFilter<float, float> internalFloats[] = {SEPARABLE(SobelVert, 32f, float, float, "DxNeg", "Sobel"),
                                                    SEPARABLE(SobelHoriz, 32f, float, float, "Sobel", "Dx")};

const std::vector<int> vectorKinds = {orvBorderConst, orvBorderRepl, orvBorderInMem};

}  // namespace

TEST(internalSobel) {
  const std::vector<int> kinds = {orvBorderConst, orvBorderRepl, orvBorderMirr, orvBorderMirrR, orvBorderInMem};
  const std::vector<Told> checks = {at(1, Fault::misalignedStep), badValue(3, 34, orvStatusMaskSize),
                                    badValue(4, orvBorderWrap), badValue(4, 256 | orvBorderInMemTop)};
  for (const auto& filter : internalShorts) sweepFixed(filter, kinds, false), walkFixed(filter, orvBorderMirr, checks);
  for (const auto& filter : internalFloats) sweepFixed(filter, kinds, false);
}

namespace {

void magnitude(const int16_t* x, const int16_t* y, int16_t* mag) { orvsMagnitude_16s_Sfs(x, y, mag, 1, 0); }
void magnitude(const float* x, const float* y, float* mag) { orvsMagnitude_32f(x, y, mag, 1); }

// An image that is asked for by a bit of `wanted`, else null.
template <class T>
struct Optional : ImageRole<T> {
  const int &wanted, bit;
  Optional(const int& mask, int which) : ImageRole<T>(Out<T>()), wanted(mask), bit(which) {}
  std::tuple<T*, int32_t> arguments(Side side) {
    const auto [data, step] = ImageRole<T>::arguments(side);
    return {wanted & bit ? data : nullptr, step};
  }
};

template <class T, class R>
using GradientFunction = OrvStatus (*)(const T*, int32_t, R*, int32_t, R*, int32_t, R*, int32_t, float*, int32_t,
                                       OrvSize, OrvMaskSize, int32_t, OrvBorderType, T, uint8_t*);

template <class T, class R>
void sweepGradient(const char* name, GradientFunction<T, R> function, reference::GradientForm form) {
  using Wide = std::conditional_t<std::is_same<T, float>::value, float, int>;
  Random r(seed());
  const bool wide = form == reference::GradientForm::sobel5;
  const OrvMaskSize mask = wide ? orvMaskSize5x5 : orvMaskSize3x3;
  OrvBorderType border = 0;
  int wanted = 15;
  const auto margin = [&](Random& draw, const Shape&) {
    wanted = draw.one(3) ? draw.in(1, 15) : 15;
    border = someBorder(draw, vectorKinds);
    return marginOf(border, mask / 22);
  };
  const auto plain = [=](const T* src, int32_t step, R* gxs, int32_t xStep, R* gys, int32_t yStep, R* mags,
                         int32_t magStep, float* angles, int32_t angleStep, OrvSize roi, OrvMaskSize, int32_t norm,
                         OrvBorderType type, T value, uint8_t*) {
    reference::forEachElement(roi, 1, [&](int y, int x) {
      R gx, gy, mag;
      reference::gradient(
          form,
          [&](int i, int c) {
            return (Wide)reference::borderedPixel(src, step, roi, x + c, y - (wide ? 2 : 1) + i, type, value);
          },
          &gx, &gy);
      const float fx = (float)gx, fy = (float)gy;
      float angle;
      if (norm == orvGradientNormL2) magnitude(&gx, &gy, &mag);
      else mag = (R)(std::abs((Wide)gx) + std::abs((Wide)gy));
      orvsAtan2_32f_A21(&fy, &fx, &angle, 1);
      if (gxs) reference::store(gxs, xStep, y, x, gx);
      if (gys) reference::store(gys, yStep, y, x, gy);
      if (mags) reference::store(mags, magStep, y, x, mag);
      if (angles) reference::store(angles, angleStep, y, x, angle);
    });
  };
  // the last size is more than two blocks
  sweepShapes(name, function, plain, repeated(1, {{1100, 2}}), r, around(In<T>(), margin), Optional<R>(wanted, 1),
              Optional<R>(wanted, 2), Optional<R>(wanted, 4), Optional<float>(wanted, 8), Roi(), The(mask),
              Value<int32_t>({orvGradientNormL1, orvGradientNormL2}), The(border), AnyPixel<T>(),
              Scratch([=](OrvSize roi, int32_t* bytes) {
                return orviGradientVectorGetBufferSize(roi, mask, sizeof(T) == 1 ? orvData8u : orvData32f, 1, bytes);
              }));
}

}  // namespace

TEST(gradientVectors) {
  using reference::GradientForm;
  for (const auto form : {GradientForm::sobel3, GradientForm::sobel5}) {
    sweepGradient("Sobel_8u16s", orviGradientVectorSobel_8u16s_C1R, form);
    sweepGradient("Sobel_32f", orviGradientVectorSobel_32f_C1R, form);
  }
  sweepGradient("Scharr_8u16s", orviGradientVectorScharr_8u16s_C1R, GradientForm::scharr3);
  sweepGradient("Scharr_32f", orviGradientVectorScharr_32f_C1R, GradientForm::scharr3);
}

TEST(gradientVectorStatuses) {
  const auto walk = [](GradientFunction<float, float> function, double badMask) {
    const auto step = [](int position, double value) { return badValue(position, value, orvStatusStep); };
    const auto order =
        std::vector<Told>{at(0, Fault::null), step(0, 0), at(0, Fault::misalignedStep), at(10, Fault::null),
                          step(1, 0)} +
        std::vector<Told>{at(2, Fault::misalignedStep), step(3, -4), badValue(7, 3), step(4, 0)} +
        std::vector<Told>{at(5, Fault::width), badValue(8, orvBorderMirr), badValue(6, badMask, orvStatusMaskSize)};
    walkArguments("gradient vector", function, order, In<float>(), Out<float>(), Out<float>(), Out<float>(),
                  Out<float>(), Roi(), Value<int32_t>({orvMaskSize3x3}), Value<int32_t>({orvGradientNormL1}),
                  Value<int32_t>({orvBorderRepl}), Value<float>({0}),
                  Scratch([](OrvSize, int32_t* bytes) { return *bytes = 4096, orvStatusOk; }));
  };
  walk(orviGradientVectorSobel_32f_C1R, 77);
  walk(orviGradientVectorScharr_32f_C1R, orvMaskSize5x5);
  // steps of outputs that are null aren't looked at, nor is the norm
  float image[36] = {};
  uint8_t buffer[4096];
  CHECK(orviGradientVectorSobel_32f_C1R(image, 24, nullptr, -1, nullptr, 0, nullptr, 3, nullptr, 1, {6, 6},
                                        orvMaskSize5x5, 9, orvBorderConst, 0, buffer) == orvStatusOk);
}

namespace {

// The means are collected before they are written: the result may replace the source.
void plainMeans(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roi, OrvSize box,
                OrvBorderType border, const float* value, uint8_t*) {
  std::vector<float> means;
  reference::forEachElement(
      roi, 1, [&](int y, int x) { means.push_back(reference::boxMean(src, srcStep, roi, box, x, y, border, *value)); });
  for (int y = 0; y < roi.height; ++y)
    memcpy((uint8_t*)dst + y * dstStep, &means[(size_t)(y * roi.width)], (size_t)roi.width * 4);
}

}  // namespace

TEST(boxMeans) {
  Random r(seed());
  OrvSize box{1, 1};
  OrvBorderType border = 0;
  float value = 0;
  const auto draw = [&](Random& d, const std::vector<int>& kinds) {
    box = {d.in(1, d.one(4) ? 23 : 6), d.in(1, d.one(4) ? 23 : 6)};
    border = someBorder(d, kinds);
    value = randomElement<float>(d, false);
    return marginOf(border, std::max(box.width, box.height) / 2);
  };
  const Scratch scratch(
      [&](OrvSize roi, int32_t* bytes) { return orviFilterBoxBorderGetBufferSize(roi, box, orvData32f, 1, bytes); });
  sweepShapes("box", orviFilterBoxBorder_32f_C1R, plainMeans, shapes(), r,
              around(In<float>(), [&](Random& d, const Shape&) { return draw(d, vectorKinds); }), Out<float>(), Roi(),
              The(box), The(border), Value<const float*>({&value}), scratch);
  const auto inPlace = [](auto function) {
    return [=](float* image, int32_t step, OrvSize roi, OrvSize mask, OrvBorderType type, const float* v, uint8_t* b) {
      return function(image, step, image, step, roi, mask, type, v, b);
    };
  };
  const auto drawn = [&](Random& d, const Shape&) {
    draw(d, {orvBorderConst, orvBorderRepl});
    border &= 15;
    return Margin();
  };
  sweepShapes("box in place", inPlace(orviFilterBoxBorder_32f_C1R), inPlace(plainMeans), shapes(), r,
              around(InOut<float>(), drawn), Roi(), The(box), The(border), Value<const float*>({&value}), scratch);
}

TEST(boxStatuses) {
  const float value = 1;
  const auto call = [](const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roi, int32_t boxWidth,
                       int32_t border, const float* v, uint8_t* buffer) {
    return orviFilterBoxBorder_32f_C1R(src, srcStep, dst, dstStep, roi, {boxWidth, 2}, border, v, buffer);
  };
  walkArguments("box", call,
                eachOf(Fault::null, {0, 1, 6}) +
                    std::vector<Told>{badValue(0, 0, orvStatusStep), badValue(1, -1, orvStatusStep),
                                      at(2, Fault::height), badValue(3, 0, orvStatusMaskSize),
                                      badValue(4, orvBorderMirr, orvStatusBorder), at(5, Fault::null)},
                In<float>(), Out<float>(), Roi(), Value<int32_t>({3}), Value<int32_t>({orvBorderConst}),
                Value<const float*>({&value}), Scratch([](OrvSize roi, int32_t* bytes) {
                  return orviFilterBoxBorderGetBufferSize(roi, {3, 2}, orvData32f, 1, bytes);
                }));
  const auto size = [](OrvSize roi, int32_t boxHeight, OrvDataType type, int32_t channels, int32_t* bytes) {
    return orviFilterBoxBorderGetBufferSize(roi, {3, boxHeight}, type, channels, bytes);
  };
  walkArguments("size", size,
                pointersThenSizes({4}, 0) + std::vector<Told>{badValue(1, 0, orvStatusMaskSize),
                                                              badValue(2, orvData64f, orvStatusDataType),
                                                              badValue(3, 2, orvStatusChannels)},
                Roi(), Value<int32_t>({3}), Value<int32_t>({orvData16u}), Value<int32_t>({1}), Result<int32_t>());
}

// Sizes worked by hand.
TEST(internalSizes) {
  const auto gradient = [](OrvSize roi, OrvMaskSize mask, OrvDataType type, int channels) {
    int32_t bytes = -1;
    orviGradientVectorGetBufferSize(roi, mask, type, channels, &bytes);
    return (int)bytes;
  };
  CHECK(gradient({100, 50}, orvMaskSize3x3, orvData8u, 1) == 102 * 3 + 400);
  CHECK(gradient({100, 3}, orvMaskSize3x3, orvData32f, 1) == 4 * 102 * 5 + 800);
  CHECK(gradient({7, 100}, orvMaskSize5x5, orvData16s, 3) == 2 * 3 * 104 * 11 + 56);
  CHECK(gradient({8, 100}, orvMaskSize5x5, orvData32f, 3) == 4 * 3 * 104 * 6 + 64);
  const auto box = [](OrvSize roi, OrvSize mask, int channels) {
    int32_t bytes = -1;
    orviFilterBoxBorderGetBufferSize(roi, mask, orvData32f, channels, &bytes);
    return (int)bytes;
  };
  // 100 x 50, 5 x 4: W' 105, H' 54, hw 2, hh 1
  CHECK(box({100, 50}, {5, 4}, 1) == (5 * 104 + 6 * 53) * 8 + 106 * 4 + 104 * 53 * 4 + 16);
  CHECK(box({1, 1}, {1, 1}, 3) == 3 * 16 + 12 + 8);
}

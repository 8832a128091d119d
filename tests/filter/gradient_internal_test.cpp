// Gradients for callers inside the library: the internal Sobel forms, gradient vectors and box means.
#include "filter/fixed_cases.h"
#include "core/primitives.h"
#include "filter/box.h"
#include "filter/gradient_vector.h"
#include "filter/sobel_internal.h"
#include "reference/gradient_vector.h"

using namespace test;

namespace {

const FixedFilterCase<uint8_t, int16_t> internalShorts[] = {
    {"SobelVert_8u16s", byArguments(orviFilterSobelVertBorder_8u16s_C1R), orviFilterSobelVertGetBufferSize_8u16s_C1R,
     plainSeparable<uint8_t, int16_t>("DxNeg", "Sobel")},
    {"SobelHoriz_8u16s", byArguments(orviFilterSobelHorizBorder_8u16s_C1R), orviFilterSobelHorizGetBufferSize_8u16s_C1R,
     plainSeparable<uint8_t, int16_t>("Sobel", "Dx")}};
const FixedFilterCase<float, float> internalFloats[] = {
    {"SobelVert_32f", byArguments(orviFilterSobelVertBorder_32f_C1R), orviFilterSobelVertGetBufferSize_32f_C1R,
     plainSeparable<float, float>("DxNeg", "Sobel")},
    {"SobelHoriz_32f", byArguments(orviFilterSobelHorizBorder_32f_C1R), orviFilterSobelHorizGetBufferSize_32f_C1R,
     plainSeparable<float, float>("Sobel", "Dx")}};

}  // namespace

TEST(internalSobel) {
  const std::vector<int> kinds = {orvBorderConst, orvBorderRepl, orvBorderMirr, orvBorderMirrR, orvBorderInMem};
  for (const auto& filter : internalShorts) sweepFixed(filter, kinds);
  for (const auto& filter : internalFloats) sweepFixed(filter, kinds);
}

TEST(internalSobelStatuses) {
  using Arguments = FixedArguments<uint8_t, int16_t>;
  Random r(seed());
  Image<uint8_t> src(r, 9, 5, 1);
  Image<int16_t> dst(r, 9, 5, 1);
  const Guarded buffer(1 << 14, true, 0);
  const std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
      {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
      {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
      {"height", orvStatusSize, [](Arguments& a) { a.roi.height = 0; }},
      {"alignment", orvStatusStepAlign, [](Arguments& a) { a.dstStep += 1; }},
      {"mask", orvStatusMaskSize, [](Arguments& a) { a.mask = 34; }},
      {"wrap", orvStatusBadArg, [](Arguments& a) { a.border = orvBorderWrap; }},
      {"high bit", orvStatusBadArg, [](Arguments& a) { a.border = 256 | orvBorderInMemTop; }}};
  for (const auto& filter : internalShorts)
    walkChecks<Arguments>(
        {src.data(), src.step(), dst.data(), dst.step(), {9, 5}, orvMaskSize5x5, orvBorderMirr, 0, 1, buffer.data()},
        checks, [&](Arguments& a) { return filter.run(a); }, [&] { return dst.unchanged(); });
}

namespace {

template <class T, class R>
using GradientFunction = OrvStatus (*)(const T*, int32_t, R*, int32_t, R*, int32_t, R*, int32_t, float*, int32_t,
                                       OrvSize, OrvMaskSize, int32_t, OrvBorderType, T, uint8_t*);

OrvStatus magnitudes(const int16_t* x, const int16_t* y, int16_t* mag, int n) {
  return orvsMagnitude_16s_Sfs(x, y, mag, n, 0);
}
OrvStatus magnitudes(const float* x, const float* y, float* mag, int n) { return orvsMagnitude_32f(x, y, mag, n); }

// The four results of a region, as plain rows.
template <class R>
struct PlainGradient {
  std::vector<R> gx, gy, mag;
  std::vector<float> angle;
};

template <class T, class R>
PlainGradient<R> plainGradient(reference::GradientForm form, const Image<T>& src, OrvSize roi, int32_t norm, int border,
                               T value) {
  using Wide = std::conditional_t<std::is_same<T, float>::value, float, int>;
  const int half = form == reference::GradientForm::sobel5 ? 2 : 1;
  PlainGradient<R> plain;
  std::vector<float> x, y;
  for (int row = 0; row < roi.height; ++row)
    for (int column = 0; column < roi.width; ++column) {
      const auto pixel = [&](int i, int c) {
        return (Wide)reference::borderedPixel(src.data(), src.step(), roi, column + c, row - half + i, border, value);
      };
      R gx, gy;
      reference::gradient(form, pixel, &gx, &gy);
      plain.gx.push_back(gx), plain.gy.push_back(gy);
      plain.mag.push_back((R)(std::abs((Wide)gx) + std::abs((Wide)gy)));
      x.push_back((float)gx), y.push_back((float)gy);
    }
  plain.angle.resize(x.size());
  const int n = (int)x.size();
  orvsAtan2_32f_A21(y.data(), x.data(), plain.angle.data(), n);
  if (norm == orvGradientNormL2) magnitudes(plain.gx.data(), plain.gy.data(), plain.mag.data(), n);
  return plain;
}

template <class R>
void checkResult(const char* name, const Image<R>& got, const std::vector<R>& want, OrvSize roi) {
  for (int i = 0; i < roi.width * roi.height; ++i) {
    const R value = got.at(i % roi.width, i / roi.width);
    if (!same(value, want[(size_t)i]))
      return fail("%s of pixel %d is %.9g, not %.9g", name, i, (double)value, (double)want[(size_t)i]);
  }
  CHECK(got.onlyRegionChanged(), "%s: written outside the region", name);
}

template <class T, class R>
void sweepGradient(const char* name, GradientFunction<T, R> function, reference::GradientForm form) {
  Random r(seed());
  const OrvMaskSize mask = form == reference::GradientForm::sobel5 ? orvMaskSize5x5 : orvMaskSize3x3;
  std::vector<Shape> all = shapes();
  all.push_back({1100, 2});  // more than two blocks
  for (const Shape& shape : all) {
    const OrvSize roi = {shape.width, shape.height};
    const OrvBorderType border = someFixedBorder(r, {orvBorderConst, orvBorderRepl, orvBorderInMem});
    const int32_t norm = r.one(2) ? orvGradientNormL1 : orvGradientNormL2;
    const int wanted = r.one(3) ? r.in(1, 15) : 15;
    const Context context(std::string(name) + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) +
                          " border " + std::to_string(border) + " norm " + std::to_string(norm) + " outputs " +
                          std::to_string(wanted));
    Image<T> src(r, roi.width, roi.height, 1, fixedMargin(border, mask / 22));
    Image<R> gx(r, roi.width, roi.height, 1), gy(r, roi.width, roi.height, 1), mag(r, roi.width, roi.height, 1);
    Image<float> angle(r, roi.width, roi.height, 1);
    src.fill(r, false);
    const T value = randomElement<T>(r, false);
    const auto plain = plainGradient<T, R>(form, src, roi, norm, border, value);
    int32_t bytes = -1;
    CHECK(orviGradientVectorGetBufferSize(roi, mask, sizeof(T) == 1 ? orvData8u : orvData32f, 1, &bytes) ==
          orvStatusOk);
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 5));
    forEachSetting(false, [&] {
      gx.restore(), gy.restore(), mag.restore(), angle.restore();
      const OrvStatus status =
          function(src.data(), src.step(), wanted & 1 ? gx.data() : nullptr, gx.step(),
                   wanted & 2 ? gy.data() : nullptr, gy.step(), wanted & 4 ? mag.data() : nullptr, mag.step(),
                   wanted & 8 ? angle.data() : nullptr, angle.step(), roi, mask, norm, border, value, buffer.data());
      CHECK(status == orvStatusOk && buffer.intact() && src.unchanged(), "status %d or written outside", (int)status);
      if (wanted & 1) checkResult("gx", gx, plain.gx, roi);
      if (wanted & 2) checkResult("gy", gy, plain.gy, roi);
      if (wanted & 4) checkResult("mag", mag, plain.mag, roi);
      if (wanted & 8) checkResult("angle", angle, plain.angle, roi);
    });
  }
}

}  // namespace

TEST(gradientVectors) {
  using reference::GradientForm;
  sweepGradient("Sobel3_8u16s", orviGradientVectorSobel_8u16s_C1R, GradientForm::sobel3);
  sweepGradient("Sobel5_8u16s", orviGradientVectorSobel_8u16s_C1R, GradientForm::sobel5);
  sweepGradient("Scharr_8u16s", orviGradientVectorScharr_8u16s_C1R, GradientForm::scharr3);
  sweepGradient("Sobel3_32f", orviGradientVectorSobel_32f_C1R, GradientForm::sobel3);
  sweepGradient("Sobel5_32f", orviGradientVectorSobel_32f_C1R, GradientForm::sobel5);
  sweepGradient("Scharr_32f", orviGradientVectorScharr_32f_C1R, GradientForm::scharr3);
}

TEST(gradientVectorStatuses) {
  struct Arguments {
    const float* src;
    int32_t srcStep, xStep, yStep, magStep, angleStep;
    OrvSize roi;
    OrvMaskSize mask;
    int32_t norm;
    OrvBorderType border;
    uint8_t* buffer;
  };
  Random r(seed());
  Image<float> src(r, 6, 6, 1), out(r, 6, 6, 1);
  const Guarded buffer(1 << 12, true, 0);
  std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"srcStep", orvStatusStep, [](Arguments& a) { a.srcStep = 0; }},
      {"srcStep alignment", orvStatusStepAlign, [](Arguments& a) { a.srcStep |= 2; }},
      {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
      {"gxStep", orvStatusStep, [](Arguments& a) { a.xStep = 0; }},
      {"gyStep alignment", orvStatusStepAlign, [](Arguments& a) { a.yStep |= 2; }},
      {"magStep", orvStatusStep, [](Arguments& a) { a.magStep = -4; }},
      {"norm", orvStatusBadArg, [](Arguments& a) { a.norm = 3; }},
      {"angleStep", orvStatusStep, [](Arguments& a) { a.angleStep = 0; }},
      {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
      {"border", orvStatusBadArg, [](Arguments& a) { a.border = orvBorderMirr; }}};
  const Arguments valid = {src.data(), src.step(),     out.step(),        out.step(),    out.step(),   out.step(),
                           {6, 6},     orvMaskSize3x3, orvGradientNormL1, orvBorderRepl, buffer.data()};
  const auto walk = [&](const auto& function) {
    walkChecks<Arguments>(
        valid, checks,
        [&](Arguments& a) {
          return function(a.src, a.srcStep, out.data(), a.xStep, out.data(), a.yStep, out.data(), a.magStep, out.data(),
                          a.angleStep, a.roi, a.mask, a.norm, a.border, 0, a.buffer);
        },
        [&] { return out.unchanged(); });
  };
  checks.push_back({"mask", orvStatusMaskSize, [](Arguments& a) { a.mask = 77; }});
  walk(orviGradientVectorSobel_32f_C1R);
  checks.back().spoil = [](Arguments& a) { a.mask = orvMaskSize5x5; };
  walk(orviGradientVectorScharr_32f_C1R);
  // steps of outputs that are null aren't looked at, nor is the norm
  CHECK(orviGradientVectorSobel_32f_C1R(src.data(), src.step(), nullptr, -1, nullptr, 0, nullptr, 3, nullptr, 1, {6, 6},
                                        orvMaskSize5x5, 9, orvBorderConst, 0, buffer.data()) == orvStatusOk);
}

TEST(boxMeans) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    const OrvSize roi = {shape.width, shape.height};
    const OrvSize box = {r.in(1, r.one(4) ? 23 : 6), r.in(1, r.one(4) ? 23 : 6)};
    const OrvBorderType border = someFixedBorder(r, {orvBorderConst, orvBorderRepl, orvBorderInMem});
    const Context context("box " + std::to_string(box.width) + "x" + std::to_string(box.height) + " of " +
                          std::to_string(roi.width) + "x" + std::to_string(roi.height) + " border " +
                          std::to_string(border));
    const int reach = std::max(box.width, box.height) / 2;
    Image<float> src(r, roi.width, roi.height, 1, fixedMargin(border, reach));
    src.fill(r, false);
    const float value = randomElement<float>(r, false);
    std::vector<float> plain;
    for (int y = 0; y < roi.height; ++y)
      for (int x = 0; x < roi.width; ++x)
        plain.push_back(reference::boxMean(src.data(), src.step(), roi, box, x, y, border, value));
    int32_t bytes = -1;
    CHECK(orviFilterBoxBorderGetBufferSize(roi, box, orvData32f, 1, &bytes) == orvStatusOk);
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 9));
    Image<float> dst(r, roi.width, roi.height, 1);
    forEachSetting(false, [&] {
      dst.restore();
      CHECK(orviFilterBoxBorder_32f_C1R(src.data(), src.step(), dst.data(), dst.step(), roi, box, border, &value,
                                        buffer.data()) == orvStatusOk);
      CHECK(src.unchanged() && buffer.intact(), "written outside");
      checkResult("mean", dst, plain, roi);
      CHECK(orviFilterBoxBorder_32f_C1R(src.data(), src.step(), src.data(), src.step(), roi, box, border, &value,
                                        buffer.data()) == orvStatusOk);
      checkResult("mean in place", src, plain, roi);
      src.restore();
    });
  }
}

TEST(boxStatuses) {
  struct Arguments {
    const float *src, *value;
    int32_t srcStep, dstStep;
    OrvSize roi, box;
    OrvBorderType border;
    uint8_t* buffer;
  };
  Random r(seed());
  Image<float> src(r, 6, 6, 1), dst(r, 6, 6, 1);
  const Guarded buffer(1 << 12, true, 0);
  const float value = 1;
  walkChecks<Arguments>(
      {src.data(), &value, src.step(), dst.step(), {6, 6}, {3, 2}, orvBorderConst, buffer.data()},
      {{"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
       {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
       {"srcStep", orvStatusStep, [](Arguments& a) { a.srcStep = 0; }},
       {"dstStep", orvStatusStep, [](Arguments& a) { a.dstStep = -1; }},
       {"size", orvStatusSize, [](Arguments& a) { a.roi.height = 0; }},
       {"mask", orvStatusMaskSize, [](Arguments& a) { a.box.width = 0; }},
       {"value", orvStatusNullPtr, [](Arguments& a) { a.value = nullptr; }}},
      [&](Arguments& a) {
        return orviFilterBoxBorder_32f_C1R(a.src, a.srcStep, dst.data(), a.dstStep, a.roi, a.box, a.border, a.value,
                                           a.buffer);
      },
      [&] { return dst.unchanged(); });
  CHECK(orviFilterBoxBorder_32f_C1R(src.data(), src.step(), dst.data(), dst.step(), {6, 6}, {3, 3}, orvBorderMirr,
                                    &value, buffer.data()) == orvStatusBorder);
  int32_t bytes = -7;
  CHECK(orviFilterBoxBorderGetBufferSize({4, 4}, {3, 3}, orvData32f, 1, nullptr) == orvStatusNullPtr);
  CHECK(orviFilterBoxBorderGetBufferSize({0, 4}, {0, 3}, orvData64f, 2, &bytes) == orvStatusSize);
  CHECK(orviFilterBoxBorderGetBufferSize({4, 4}, {3, 0}, orvData64f, 2, &bytes) == orvStatusMaskSize);
  CHECK(orviFilterBoxBorderGetBufferSize({4, 4}, {3, 3}, orvData64f, 2, &bytes) == orvStatusDataType);
  CHECK(orviFilterBoxBorderGetBufferSize({4, 4}, {3, 3}, orvData16u, 2, &bytes) == orvStatusChannels && bytes == -7);
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

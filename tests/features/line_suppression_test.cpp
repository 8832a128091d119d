// Line suppression against its definition.
#include "features/roles.h"
#include "reference/tensor.h"

using namespace test;

TEST(everySize) {
  Random r(seed());
  const int kinds[] = {orvBorderConst, orvBorderRepl, orvBorderInMem};
  for (const Shape& shape : shapes({1500, 5})) {
    const OrvSize roi = {shape.width, shape.height};
    const int window = r.in(1, 6), border = kinds[r.in(0, 2)] | (r.one(3) ? 0 : r.in(0, 15) * 16);
    const bool all = (border & 7) == orvBorderInMem, central = r.one(3), wide = !central && r.one(2);
    const int sides = all ? 240 : border & 240, mask = wide ? orvMaskSize5x5 : orvMaskSize3x3, half = mask / 22;
    const Context context(detail::describe("orviLineSuppression_8u_C1R", shape) + " window " + std::to_string(window) +
                          " border " + std::to_string(border));
    const auto depth = [&](int flag, int reach) { return sides & flag ? reach + half : 0; };
    const int before = (window - 1) / 2, behind = window / 2;
    Image<uint8_t> src(r, roi.width, roi.height, 1,
                       {depth(orvBorderInMemLeft, before), depth(orvBorderInMemTop, before),
                        depth(orvBorderInMemRight, behind), depth(orvBorderInMemBottom, behind)});
    Image<uint8_t> feature(r, roi.width, roi.height, 1), dst(r, roi.width, roi.height, 1);
    src.fill(r, false), feature.fill(r, false);
    const auto value = (uint8_t)r.in(0, 255);
    const float threshold = (float)r.in(-1, 40);
    const reference::Tensor tensor(roi, window, !all && border & 1, sides, [&](int x, int y) {
      const auto pixel = [&](int i, int c) {
        return (int)reference::borderedPixel(src.data(), src.step(), roi, x + c, y - half + i,
                                             (all ? 0 : border & 1) | sides, value);
      };
      int dx = 0, dy = 0;
      if (central) dx = pixel(1, 1) - pixel(1, -1), dy = pixel(0, 0) - pixel(2, 0);
      else
        reference::gradient(wide ? reference::GradientForm::sobel5 : reference::GradientForm::sobel3, pixel, &dx, &dy);
      return reference::Derivatives{(float)dx, (float)dy};
    });
    Scratch buffer([&](OrvSize s, int32_t* bytes) {
      return orviLineSuppressionGetBufferSize(s, mask, window, orvData8u, 1, bytes);
    });
    buffer.prepare(r, shape), buffer.reset();
    std::vector<uint8_t> want;
    for (int i = 0; i < roi.width * roi.height; ++i) {
      float a, b, c;
      tensor.means(i % roi.width, i / roi.width, &a, &b, &c);
      const bool line = (a + b) * (a + b) > (a * b - c * c) * threshold;
      want.push_back(line ? 0 : feature.at(i % roi.width, i / roi.width));
    }
    forEachSetting(false, [&] {
      dst.restore();
      CHECK(orviLineSuppression_8u_C1R(src.data(), src.step(), feature.data(), feature.step(), dst.data(), dst.step(),
                                       roi, central ? orvFilterKernelCentralDiff : orvFilterKernelSobel, mask, window,
                                       border, value, buffer.memory->data(), threshold) == orvStatusOk);
      CHECK(src.unchanged() && feature.unchanged() && dst.onlyRegionChanged());
      buffer.verify(0);
      for (int i = 0; i < roi.width * roi.height; ++i)
        if (dst.at(i % roi.width, i / roi.width) != want[(size_t)i])
          return fail("column %d of row %d is not %d", i % roi.width, i / roi.width, want[(size_t)i]);
    });
  }
}

TEST(statuses) {
  struct Arguments {
    const uint8_t *src, *feature;
    uint8_t* dst;
    int32_t steps[3];
    OrvSize roi;
    int32_t filter, mask, window, border;
    uint8_t* buffer;
  };
  std::vector<uint8_t> src(64), feature(64, 9), dst(64, 77), buffer(1 << 14);
  walkChecks<Arguments>(
      {src.data(), feature.data(), dst.data(), {8, 8, 8}, {8, 8}, 2, 33, 3, 1, buffer.data()},
      {{"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
       {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
       {"feature", orvStatusNullPtr, [](Arguments& a) { a.feature = nullptr; }},
       {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
       {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
       {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }},
       {"filter", orvStatusFilterType, [](Arguments& a) { a.filter = 3; }},
       {"mask", orvStatusMaskSize, [](Arguments& a) { a.mask = 35; }},
       {"border", orvStatusBorder, [](Arguments& a) { a.border = orvBorderMirr; }},
       {"window", orvStatusSize, [](Arguments& a) { a.window = 0; }},
       {"srcStep", orvStatusStep, [](Arguments& a) { a.steps[0] = -8; }},
       {"featureStep", orvStatusStep, [](Arguments& a) { a.steps[1] = -8; }},
       {"dstStep", orvStatusStep, [](Arguments& a) { a.steps[2] = -8; }},
       {"in place", orvStatusInPlace, [](Arguments& a) { a.feature = a.dst; }}},
      [](Arguments& a) {
        return orviLineSuppression_8u_C1R(a.src, a.steps[0], a.feature, a.steps[1], a.dst, a.steps[2], a.roi, a.filter,
                                          a.mask, a.window, a.border, 0, a.buffer, 10);
      },
      [&] { return std::count(dst.begin(), dst.end(), 77) == 64; });
}

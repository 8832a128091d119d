// Canny edges of images against their plain form; sizes and statuses.
#include <algorithm>
#include "features/roles.h"
#include "reference/canny.h"

using namespace test;

TEST(images) {
  Random r(seed());
  const struct {
    OrvFilterKernel filter;
    OrvMaskSize mask;
    reference::GradientForm form;
  } forms[] = {{orvFilterKernelSobel, orvMaskSize3x3, reference::GradientForm::sobel3},
               {orvFilterKernelScharr, orvMaskSize3x3, reference::GradientForm::scharr3},
               {orvFilterKernelSobel, orvMaskSize5x5, reference::GradientForm::sobel5}};
  for (int i = 0; i < (quick() ? 1 : 3); ++i)
    for (const Shape& shape : shapes({600, 40})) {
      const auto& f = forms[r.in(0, 2)];
      const int kinds[] = {orvBorderConst, orvBorderRepl, orvBorderInMem},
                border = kinds[r.in(0, 2)] + r.in(0, 15) * 16;
      const auto side = [&](int flag) { return border & flag ? f.mask / 22 : 0; };
      const bool squared = r.one(2);
      const float low = (float)r.in(0, 900) * .7f, high = low + (float)(r.one(3) ? 0 : r.in(0, 900));
      const OrvSize roi = {shape.width, shape.height};
      const Context context(detail::describe("orviCannyBorder_8u_C1R", shape) + " mask " + std::to_string(f.mask) +
                            " filter " + std::to_string(f.filter) + " border " + std::to_string(border));
      Image<uint8_t> src(
          r, roi.width, roi.height, 1,
          {side(orvBorderInMemLeft), side(orvBorderInMemTop), side(orvBorderInMemRight), side(orvBorderInMemBottom)});
      Image<uint8_t> dst(r, roi.width, roi.height, 1);
      src.fill(r, false);
      std::vector<uint8_t> expected((size_t)(roi.width * roi.height));
      const auto value = (uint8_t)r.in(0, 255);
      reference::cannyImage(src.data(), src.step(), expected.data(), roi.width, roi, f.form, border, value, low, high,
                            squared);
      Scratch buffer([&](OrvSize s, int32_t* bytes) { return orviCannyBorderGetSize(s, 7, f.mask, 9, bytes); });
      buffer.prepare(r, shape), buffer.reset();
      forEachSetting(false, [&] {
        dst.restore();
        const OrvStatus status =
            orviCannyBorder_8u_C1R(src.data(), src.step(), dst.data(), dst.step(), roi, f.filter, f.mask, border, value,
                                   low, high, squared ? orvNormL2 : orvNormL1, buffer.memory->data());
        CHECK(status == orvStatusOk && src.unchanged() && dst.onlyRegionChanged());
        buffer.verify(0);
        for (int k = 0; k < roi.width * roi.height; ++k)
          if (dst.at(k % roi.width, k / roi.width) != expected[(size_t)k])
            return fail("column %d of row %d is not %d", k % roi.width, k / roi.width, expected[(size_t)k]);
      });
    }
}

TEST(borderSizes) {
  int32_t bytes = -1;
  CHECK(orviCannyBorderGetSize({100, 50}, 0, 33, 0, &bytes) == orvStatusOk && bytes == 102 * 68 + 4 * 102 * 52 + 64);
  CHECK(orviCannyBorderGetSize({100, 50}, 0, 55, 0, &bytes) == orvStatusOk && bytes == 104 * 70 + 4 * 104 * 54 + 64);
  for (const OrvSize bad : {OrvSize{0, 1}, OrvSize{1, -1}}) {
    CHECK(orviCannyBorderGetSize(bad, 0, 5, 0, &bytes) == orvStatusSize);
    CHECK(orviCannyBorderGetSize(bad, 0, 5, 0, nullptr) == orvStatusNullPtr);
  }
  CHECK(orviCannyBorderGetSize({1, 1}, 0, 5, 0, &bytes) == orvStatusMaskSize);
}

TEST(statuses) {
  struct Arguments {
    const uint8_t* src;
    uint8_t* dst;
    OrvSize roi;
    int32_t filter, mask, border;
    float low, high;
    int32_t norm;
    uint8_t* buffer;
  };
  std::vector<uint8_t> src(64), dst(64, 77), buffer(4096);
  walkChecks<Arguments>(
      {src.data(), dst.data(), {8, 8}, 2, 33, 1, 5, 9, 2, buffer.data()},
      {{"mask", orvStatusMaskSize, [](Arguments& a) { a.mask = 5; }},
       {"Scharr 5x5", orvStatusMaskSize, [](Arguments& a) { a.filter = 5, a.mask = 55; }},
       {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
       {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
       {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
       {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
       {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }},
       {"filter", orvStatusBadArg, [](Arguments& a) { a.filter = 8; }},
       {"norm", orvStatusBadArg, [](Arguments& a) { a.norm = 3; }},
       {"negative", orvStatusBadArg, [](Arguments& a) { a.low = -1; }},
       {"order", orvStatusBadArg, [](Arguments& a) { a.low = 9.5f; }},
       {"border", orvStatusBorder, [](Arguments& a) { a.border = orvBorderMirr; }}},
      [](Arguments& a) {
        return orviCannyBorder_8u_C1R(a.src, 8, a.dst, 8, a.roi, a.filter, a.mask, a.border, 0, a.low, a.high, a.norm,
                                      a.buffer);
      },
      [&] { return std::count(dst.begin(), dst.end(), 77) == 64; });
}

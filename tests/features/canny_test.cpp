// Canny edges against their plain forms; sizes, statuses and cases worked by hand.
#include <algorithm>
#include "features/roles.h"
#include "reference/canny.h"

using namespace test;

TEST(derivatives) {
  const auto order = [] {
    std::vector<Told> told = pointersThenSizes({0, 1, 2, 5}, 3);
    for (int i = 0; i < 3; ++i) told.push_back({Fault::smallStep, i});
    for (int i = 0; i < 2; ++i) told.push_back({Fault::misalignedStep, i});
    return told;
  };
  const Thresholds shorts({{0, 0}, {0.5f, 9}, {10.9f, 11}, {30, 3000.5f}, {999, 32768}, {3e4f, 5e4f}, {65535, 65535}});
  sweep("orviCanny_16s8u_C1R", orviCanny_16s8u_C1R, reference::cannyShorts, {}, In<int16_t>(), In<int16_t>(),
        Out<uint8_t>(), Roi(), shorts, Buffer(orviCannyGetSize));
  walkArguments("orviCanny_16s8u_C1R", orviCanny_16s8u_C1R, order(), In<int16_t>(), In<int16_t>(), Out<uint8_t>(),
                Roi(), shorts, Buffer(orviCannyGetSize));
  const Thresholds floats({{0, 0}, {0.25f, 300}, {255.5f, 255.5f}, {255.5f, 1e4f}, {511, 511}, {1000, INFINITY}});
  sweep("orviCanny_32f8u_C1R", orviCanny_32f8u_C1R, reference::cannyFloats, {}, wild(In<float>()), In<float>(),
        Out<uint8_t>(), Roi(), floats, Buffer(orviCannyGetSize));
  walkArguments("orviCanny_32f8u_C1R", orviCanny_32f8u_C1R, order(), In<float>(), In<float>(), Out<uint8_t>(), Roi(),
                floats, Buffer(orviCannyGetSize));
}

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
      Buffer buffer([&](OrvSize s, int32_t* bytes) { return orviCannyBorderGetSize(s, 7, f.mask, 9, bytes); });
      buffer.prepare(r, shape);
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

TEST(sizes) {
  const auto size = [](int32_t w, int32_t h) {
    int32_t bytes = -1;
    CHECK(orviCannyGetSize({w, h}, &bytes) == orvStatusOk);
    return bytes;
  };
  CHECK(size(100, 50) == 5 * 102 * 52 + 1600 + 160);
  CHECK(size(65532, 1) == 5 * 65534 * 3 + 16 * 65532 + 160 && size(65533, 1) == 9 * 65535 * 3 + 16 * 65533 + 160);
  CHECK(size(1, 65532) == 5 * 3 * 65534 + 176 && size(1, 65533) == 9 * 3 * 65535 + 176);
  CHECK(size(60000, 60000) == (int32_t)(5u * 60002u * 60002u + 960160u), "wraps");
  int32_t bytes = -1;
  CHECK(orviCannyBorderGetSize({100, 50}, 0, 33, 0, &bytes) == orvStatusOk && bytes == 102 * 68 + 4 * 102 * 52 + 64);
  CHECK(orviCannyBorderGetSize({100, 50}, 0, 55, 0, &bytes) == orvStatusOk && bytes == 104 * 70 + 4 * 104 * 54 + 64);
  for (const OrvSize bad : {OrvSize{0, 1}, OrvSize{1, -1}}) {
    CHECK(orviCannyGetSize(bad, &bytes) == orvStatusSize && orviCannyGetSize(bad, nullptr) == orvStatusNullPtr);
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
  int16_t d = 5;
  const auto bad = [&](float low, float high) {
    return orviCanny_16s8u_C1R(&d, 2, &d, 2, dst.data(), 1, {1, 1}, low, high, buffer.data()) == orvStatusBadArg;
  };
  CHECK(bad(-1, 5) && bad(6, 5) && dst[0] == 77);
}

// One strong pixel at the end of a winding path of weak ones, which fills the image.
TEST(longPath) {
  const int w = 61, h = 91;
  std::vector<float> dx(w * h), dy(w * h);
  std::vector<uint8_t> dst(w * h);
  for (int y = 0; y < h; y += 2) {
    for (int x = 0; x < w; ++x) dy[(size_t)(y * w + x)] = 10;
    if (y + 1 < h) dx[(size_t)((y + 1) * w + (y / 2 % 2 ? 0 : w - 1))] = 9;
  }
  Random r(seed());
  Buffer buffer(orviCannyGetSize);
  buffer.prepare(r, {w, h});
  const auto edges = [&] {
    CHECK(orviCanny_32f8u_C1R(dx.data(), w * 4, dy.data(), w * 4, dst.data(), w, {w, h}, 5, 10,
                              buffer.memory->data()) == orvStatusOk);
    return std::count(dst.begin(), dst.end(), 255);
  };
  CHECK(edges() == 0);
  dy.back() = 11;
  const auto path = std::count_if(dy.begin(), dy.end(), [](float v) { return v > 0; }) +
                    std::count_if(dx.begin(), dx.end(), [](float v) { return v > 0; });
  CHECK(edges() == path, "%d of %d", (int)edges(), (int)path);
}

// A direction so near the limit that only the products in doubles make it a vertical one. Above the pixel stands a
// larger one.
TEST(lastColumns) {
  Random r(seed());
  Buffer buffer(orviCannyGetSize);
  buffer.prepare(r, {7, 2});
  for (int x = 0; x < 7; ++x) {
    int16_t dx[14] = {}, dy[14] = {};
    uint8_t dst[14];
    dy[x] = 20000, dx[7 + x] = 3771, dy[7 + x] = 9104;
    CHECK(orviCanny_16s8u_C1R(dx, 14, dy, 14, dst, 7, {7, 2}, 0, 0, buffer.memory->data()) == orvStatusOk);
    CHECK(dst[x] == 255 && dst[7 + x] == (x < 4 ? 255 : 0), "column %d", x);
  }
}

// Canny edges of images against their plain form; sizes and statuses.
#include <algorithm>
#include "features/planned.h"
#include "reference/canny.h"

using namespace test;

TEST(images) {
  reference::FilterPlan plan;
  const auto edges = [](const uint8_t* src, int32_t step, reference::FilterPlan p, uint8_t* dst, int32_t dstStep,
                        OrvSize roi, float low, float high, int32_t norm, uint8_t* buffer) {
    return orviCannyBorder_8u_C1R(src, step, dst, dstStep, roi, p.filter, p.mask, p.border, (uint8_t)p.value, low, high,
                                  norm, buffer);
  };
  for (int i = 0; i < (quick() ? 1 : 3); ++i)
    sweep("orviCannyBorder_8u_C1R", edges, reference::cannyImage, {600, 40}, Planned<uint8_t>(&plan, true),
          Out<uint8_t>(), Roi(),
          Thresholds({{0, 0}, {0, 99.9f}, {30.7f, 30.7f}, {77, 400}, {150.5f, 300}, {250, 250}, {500, 900.3f}}),
          Value<int32_t>({orvNormL1, orvNormL2}),
          Scratch([&](OrvSize s, int32_t* bytes) { return orviCannyBorderGetSize(s, 7, plan.mask, 9, bytes); }));
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

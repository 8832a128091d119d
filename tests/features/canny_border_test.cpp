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
  const auto called = [](const uint8_t* src, int32_t step, uint8_t* dst, int32_t dstStep, OrvSize roi, int32_t filter,
                         int32_t mask, int32_t border, float low, float high, int32_t norm, uint8_t* buffer) {
    return orviCannyBorder_8u_C1R(src, step, dst, dstStep, roi, filter, mask, border, 0, low, high, norm, buffer);
  };
  for (const int mask : {5, 55}) {  // 55 is refused with the valid filter only
    const std::vector<Told> first = {badValue(4, mask, orvStatusMaskSize)};
    walkArguments("orviCannyBorder_8u_C1R", called,
                  first + pointersThenSizes({0, 1, 9}, 2) +
                      std::vector<Told>{mask == 5 ? badValue(3, 8) : badValue(8, 5), badValue(8, 3), badValue(6, -1),
                                        badValue(6, 9.5), badValue(5, orvBorderMirr, orvStatusBorder)},
                  In<uint8_t>(), Out<uint8_t>(), Roi(), Value<int32_t>({orvFilterKernelScharr}), Value<int32_t>({33}),
                  Value<int32_t>({orvBorderRepl}), Value<float>({5}), Value<float>({9}), Value<int32_t>({orvNormL1}),
                  Scratch([](OrvSize s, int32_t* bytes) { return orviCannyBorderGetSize(s, 7, 33, 9, bytes); }));
  }
}

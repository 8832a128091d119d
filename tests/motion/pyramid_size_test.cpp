// Sizes of buffers and levels, and the record of a pyramid.
// One body serves both variants.
#include <math.h>
#include <algorithm>
#include "framework/sweep.h"

using namespace test;

namespace {

const float rates[] = {1.0000002f, 1.001f, 1.1f, 1.5f, 1.99998f, 2.f, 2.5f, 3.3f, 9.99f, 10.f};

}  // namespace

TEST(buffers) {
  int32_t bytes = 0;
  const struct {
    int32_t width, channels, down, up;
  } cases[] = {{1, 1, 160, 112}, {5, 1, 256, 208}, {7, 3, 640, 592}, {1920, 3, 138304, 138304}};
  for (const auto& c : cases)
    for (const OrvDataType type : {orvData8u, orvData8s, orvData32f}) {
      CHECK(orviPyrDownGetBufSize_Gauss5x5(c.width, type, c.channels, &bytes) == orvStatusOk && bytes == c.down);
      CHECK(orviPyrUpGetBufSize_Gauss5x5(c.width, type, c.channels, &bytes) == orvStatusOk && bytes == c.up);
    }
  const std::vector<Told> order = {{Fault::null, 3},
                                   badValue(0, 0, orvStatusSize),
                                   badValue(2, 2, orvStatusChannels),
                                   badValue(2, 4, orvStatusChannels),
                                   badValue(1, orvData16u, orvStatusDataType)};
  for (const auto report : {orviPyrDownGetBufSize_Gauss5x5, orviPyrUpGetBufSize_Gauss5x5})
    walkArguments(
        "buffer",
        [=](int32_t width, int32_t type, int32_t channels, int32_t* size) {
          return report(width, (OrvDataType)type, channels, size);
        },
        order, Value<int32_t>({9}), Value<int32_t>({orvData8u}), Value<int32_t>({3}), Result<int32_t>());
}

// The ranges of neighbouring sizes touch, and each side lies in the range of the one below it.
TEST(levels) {
  for (const float rate : rates) {
    const Context context("rate " + std::to_string(rate));
    OrvSize below, least, most, before{0, 0};
    for (int n = 1; n < 300; ++n) {
      CHECK(orviGetPyramidUpROI({n, n}, &least, &most, rate) == orvStatusOk);
      CHECK(most.height == std::max(n + 1, (int)((float)n * rate)) && least.width == before.width + 1 &&
                least.width == least.height && most.width == most.height,
            "%d", n);
      before = most;
      CHECK(orviGetPyramidDownROI({n, 301 - n}, &below, rate) == orvStatusOk);
      CHECK(orviGetPyramidUpROI(below, &least, &most, rate) == orvStatusOk);
      CHECK(least.width <= n && n <= most.width && least.height <= 301 - n && 301 - n <= most.height, "%d", n);
    }
    CHECK(orviGetPyramidDownROI({INT32_MAX, 16777217}, &below, rate) == orvStatusOk && below.width < INT32_MAX);
  }
  OrvSize size;
  CHECK(orviGetPyramidDownROI({7, 1}, &size, 2) == orvStatusOk && size.width == 4 && size.height == 1);
  const auto wrong = [](int rate) {
    return std::vector<Told>{badValue(rate, 1), badValue(rate, 10.0001), badValue(rate, NAN)};
  };
  walkArguments("down", orviGetPyramidDownROI, pointersThenSizes({1}, 0) + wrong(2), Roi(), Result<OrvSize>(),
                Value<float>({2}));
  walkArguments("up", orviGetPyramidUpROI, pointersThenSizes({1, 2}, 0) + wrong(3), Roi(), Result<OrvSize>(),
                Result<OrvSize>(), Value<float>({2}));
}

TEST(record) {
  OrvPyramid* p = nullptr;
  for (const float rate : rates)
    for (const OrvSize roi : {OrvSize{1, 1}, {1, 2}, {100, 63}, {17, 1}})
      for (const int level : {1, 3, 1000}) {
        CHECK(orviPyramidInitAlloc(&p, level, roi, rate) == orvStatusOk);
        OrvSize size = roi;
        double scale = 1;
        for (int i = 0; i <= p->level; ++i) {
          CHECK(p->roi[i].width == size.width && p->roi[i].height == size.height && p->rates[i] == scale);
          CHECK(!p->images[i] && p->steps[i] == 0 && (i == p->level || size.width > 1 || size.height > 1));
          if (i < p->level) CHECK(orviGetPyramidDownROI(size, &size, rate) == orvStatusOk);
          scale *= 1.0 / (double)rate;
        }
        CHECK(!p->state && p->level <= level && (p->level == level || (size.width == 1 && size.height == 1)));
        CHECK(orviPyramidFree(p) == orvStatusOk);
      }
  walkArguments("record", orviPyramidInitAlloc,
                pointersThenSizes({0}, 2) + std::vector<Told>{badValue(1, 0), badValue(3, 1)}, Result<OrvPyramid*>(),
                Value<int32_t>({1}), Roi(), Value<float>({2}));
  p = nullptr;
  steerFailAllocation(1);
  CHECK(orviPyramidInitAlloc(&p, 1, {9, 9}, 2) == orvStatusNoMem && !p);
  CHECK(orviPyramidFree(nullptr) == orvStatusNullPtr && steeredLiveAllocations() == 0);
}

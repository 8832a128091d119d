// Sizes of buffers and levels, and the record of a pyramid.
// One body serves both variants.
#include <math.h>
#include <algorithm>
#include "framework/harness.h"
#include "framework/settings.h"

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
  for (const auto report : {orviPyrDownGetBufSize_Gauss5x5, orviPyrUpGetBufSize_Gauss5x5}) {
    CHECK(report(0, 0, 2, nullptr) == orvStatusNullPtr);
    CHECK(report(0, 0, 2, &bytes) == orvStatusSize);
    CHECK(report(1, 0, 2, &bytes) == orvStatusChannels && report(1, 0, 4, &bytes) == orvStatusChannels);
    CHECK(report(1, orvData16u, 1, &bytes) == orvStatusDataType);
  }
}

// The ranges of neighbouring sizes touch, and each side lies in the range of the one below it.
TEST(levels) {
  for (const float rate : rates) {
    const Context context("rate " + std::to_string(rate));
    OrvSize below, least, most, before{0, 0};
    for (int n = 1; n < 300; ++n) {
      CHECK(orviGetPyramidUpROI({n, n}, &least, &most, rate) == orvStatusOk);
      CHECK(least.width == (n == 1 ? 1 : std::max(n + 1, (int)((float)(n - 1) * rate) + 1)));
      CHECK(most.height == std::max(n + 1, (int)((float)n * rate)) && least.width == least.height);
      CHECK(least.width == before.width + 1, "%d", n);
      before = most;
      CHECK(orviGetPyramidDownROI({n, 301 - n}, &below, rate) == orvStatusOk);
      CHECK(orviGetPyramidUpROI(below, &least, &most, rate) == orvStatusOk);
      CHECK(least.width <= n && n <= most.width && least.height <= 301 - n && 301 - n <= most.height, "%d", n);
    }
    CHECK(orviGetPyramidDownROI({INT32_MAX, 16777217}, &below, rate) == orvStatusOk && below.width < INT32_MAX);
  }
  OrvSize size{-1, -1};
  CHECK(orviGetPyramidDownROI({7, 1}, &size, 2) == orvStatusOk && size.width == 4 && size.height == 1);
  CHECK(orviGetPyramidDownROI({0, 0}, nullptr, 1) == orvStatusNullPtr);
  CHECK(orviGetPyramidUpROI({0, 0}, nullptr, &size, 1) == orvStatusNullPtr);
  CHECK(orviGetPyramidUpROI({0, 0}, &size, nullptr, 1) == orvStatusNullPtr);
  for (const OrvSize bad : {OrvSize{0, 1}, {1, 0}})
    CHECK(orviGetPyramidDownROI(bad, &size, 1) == orvStatusSize && orviGetPyramidUpROI(bad, &size, &size, 1) == -6);
  for (const float bad : {1.f, 10.0001f, NAN})
    CHECK(orviGetPyramidDownROI({1, 1}, &size, bad) == -5 && orviGetPyramidUpROI({1, 1}, &size, &size, bad) == -5);
  CHECK(size.width == 4 && size.height == 1);
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
  p = nullptr;
  CHECK(orviPyramidInitAlloc(nullptr, 0, {0, 0}, 1) == orvStatusNullPtr);
  CHECK(orviPyramidInitAlloc(&p, 0, {0, 1}, 1) == orvStatusSize && orviPyramidInitAlloc(&p, 0, {1, 0}, 1) == -6);
  CHECK(orviPyramidInitAlloc(&p, 0, {9, 9}, 2) == orvStatusBadArg && orviPyramidInitAlloc(&p, 1, {9, 9}, 1) == -5);
  steerFailAllocation(1);
  CHECK(orviPyramidInitAlloc(&p, 1, {9, 9}, 2) == orvStatusNoMem && !p);
  CHECK(orviPyramidFree(nullptr) == orvStatusNullPtr && steeredLiveAllocations() == 0);
}

// Boundaries by priority.
// One body serves both variants.
#include "segment/boundaries.h"
#include "framework/image.h"
#include "framework/harness.h"
#include "reference/labelling.h"

using namespace test;

// With equal priorities the later pixel loses, as without any.
TEST(equalPriorities) {
  Random r(seed());
  for (int trial = 0; trial < 200; ++trial) {
    const OrvSize size = {r.in(1, 40), r.in(1, 20)};
    Image<uint16_t> got(r, size.width, size.height, 1), want(r, size.width, size.height, 1);
    const std::vector<int32_t> priority((size_t)(size.width * size.height), 5);
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) {
        const auto label = (uint16_t)r.in(0, 3);
        got.set(x, y, label), want.set(x, y, label);
      }
    reference::boundSegments(want.data(), want.step(), size, (uint16_t)3, 1);
    ownBoundSegments_16u(got.data(), got.step(), priority.data(), size.width * 4, size, 3, 1);
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) CHECK(got.at(x, y) == want.at(x, y), "at %d,%d", x, y);
  }
}

// The dearer pixel loses in each direction, and a pixel that has lost is compared no more.
TEST(dearerPixels) {
  const struct {
    uint8_t labels[4], want[4];
    int32_t priority[4], four;
  } cases[] = {
      {{1, 2, 1, 2}, {9, 2, 9, 2}, {8, 1, 8, 1}, 1},  // left of the two
      {{1, 1, 2, 2}, {9, 9, 2, 2}, {8, 8, 1, 1}, 1},  // above
      {{1, 1, 1, 2}, {1, 9, 9, 2}, {1, 8, 8, 1}, 1},  // the corner isn't compared
      {{1, 1, 1, 2}, {9, 9, 9, 2}, {2, 8, 8, 1}, 0},  // upper left and the pixel: the upper one is dearer
      {{1, 1, 1, 2}, {1, 9, 9, 9}, {1, 8, 8, 1}, 0},  // as dear: the lower one
  };
  for (const auto& c : cases) {
    uint8_t labels[4];
    memcpy(labels, c.labels, 4);
    ownBoundSegments_8u(labels, 2, c.priority, 8, {2, 2}, 9, c.four);
    CHECK(memcmp(labels, c.want, 4) == 0, "case %d: %d %d %d %d", (int)(&c - cases), labels[0], labels[1], labels[2],
          labels[3]);
  }
}

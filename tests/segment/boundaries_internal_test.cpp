// Boundaries by priority.
// One body serves both variants.
#include "segment/boundaries.h"
#include "framework/sweep.h"
#include "reference/labelling.h"

using namespace test;

// With equal priorities the later pixel loses, as without any.
TEST(equalPriorities) {
  const auto bound = [](uint16_t* image, int32_t step, OrvSize size, uint16_t border, int32_t norm) {
    const std::vector<int32_t> priority((size_t)(size.width * size.height), 5);
    ownBoundSegments_16u(image, step, priority.data(), size.width * 4, size, border, norm);
    return OrvStatus(orvStatusOk);
  };
  sweep("ownBoundSegments_16u", bound, reference::boundSegments<uint16_t>, {}, InOut<uint16_t>(), Roi(),
        Value<uint16_t>({0, 3, 65535}), Value<int32_t>({1}));
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

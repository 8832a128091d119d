// Rank filters against their plain form, in exactly the reported scratch; statuses.
#pragma once
#include "distance/step_checks.h"
#include "reference/rank_filter.h"

namespace test {

using RankBytes = OrvStatus (*)(int32_t, OrvSize, int32_t*);

// A window, its anchor and its scratch. Small ones, and on the last shapes of a sweep those that the driver cuts
// differently: many rows, strips, one column, one row, more than the image.
struct Window : Scratch {
  RankBytes bytes;
  OrvSize mask{};
  OrvPoint anchor{};
  explicit Window(RankBytes report) : Scratch(nullptr), bytes(report) {}
  void prepare(Random& r, const Shape& shape) {
    static int next = 0;
    const OrvSize high[] = {{3, 33}, {1, 40}, {5, 70}, {2, 95}, {1, 200}};
    const OrvSize wide[] = {{3, 3}, {1, 2}, {64, 1}, {150, 2}, {70, 1}};
    mask = {r.one(3) ? r.in(1, 40) : r.in(1, 9), r.one(3) ? r.in(1, 40) : r.in(1, 5)};
    if (shape.height == 90) mask = high[next++ / 2 % 5];
    if (shape.width > 300) mask = wide[next++ / 2 % 5];
    anchor = {r.in(0, mask.width - 1), r.in(0, mask.height - 1)};
    if (r.one(4)) anchor = {mask.width - 1, 0};
    size = [this](OrvSize roi, int32_t* result) { return bytes(roi.width, mask, result); };
    Scratch::prepare(r, shape);
  }
  std::tuple<OrvSize, OrvPoint, uint8_t*> arguments(Side side) {
    return {mask, anchor, std::get<0>(Scratch::arguments(side))};
  }
};

template <class T>
void checkRank(const char* name,
               OrvStatus (*filter)(const T*, int32_t, T*, int32_t, OrvSize, OrvSize, OrvPoint, uint8_t*),
               RankBytes size, int channels) {
  const bool max = strstr(name, "Max") != nullptr;
  const auto plain = [=](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, OrvSize mask,
                         OrvPoint anchor, uint8_t*) {
    reference::rankFilter(src, srcStep, dst, dstStep, roi, channels, mask, anchor, max);
  };
  for (const Shape& shape : {Shape{37, 90}, {2700 / channels, 3}})
    sweep(name, filter, plain, shape, In<T>(channels), Out<T>(channels), Roi(), Window(size));
  const std::vector<Told> order = pointersThenSizes({0, 1, 3}, 2) + stepsOf<T>({0, 1});
  walkArguments(name, filter, order, In<T>(channels), Out<T>(channels), Roi(), Window(size));

  // What stands between sizes and steps: the window, then its anchor.
  const struct {
    OrvSize roi, mask;
    OrvPoint anchor;
    OrvStatus status;
  } cases[] = {{{0, 5}, {0, 2}, {0, 0}, orvStatusSize},      {{9, 5}, {0, 2}, {-1, 0}, orvStatusMaskSize},
               {{9, 5}, {3, -1}, {3, 0}, orvStatusMaskSize}, {{9, 5}, {3, 2}, {-1, 0}, orvStatusAnchor},
               {{9, 5}, {3, 2}, {3, 0}, orvStatusAnchor},    {{9, 5}, {3, 2}, {0, -1}, orvStatusAnchor},
               {{9, 5}, {3, 2}, {0, 2}, orvStatusAnchor}};
  T pixel = 1;
  uint8_t buffer = 0;
  for (const auto& c : cases)
    CHECK(filter(&pixel, 1, &pixel, 1, c.roi, c.mask, c.anchor, &buffer) == c.status, "%s: %d", name, (int)c.status);
  int32_t bytes = 0;
  CHECK(size(0, {0, 1}, nullptr) == orvStatusNullPtr && size(0, {0, 1}, &bytes) == orvStatusSize);
  CHECK(size(1, {0, 1}, &bytes) == orvStatusMaskSize && size(1, {1, 0}, &bytes) == orvStatusMaskSize);
}

}  // namespace test

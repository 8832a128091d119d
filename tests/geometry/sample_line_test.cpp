// Lines of pixels against a plain walk.
#include "framework/sweep.h"

using namespace test;

namespace {

template <class T>
using Sample = OrvStatus (*)(const T*, int32_t, OrvSize, T*, OrvPoint, OrvPoint);

std::vector<OrvPoint> plainLine(OrvPoint a, OrvPoint b) {
  const int dx = b.x - a.x, dy = b.y - a.y, ax = abs(dx), ay = abs(dy), sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
  const bool steep = ax <= ay;
  std::vector<OrvPoint> points;
  int error = steep ? ay : ax;
  for (int n = std::max(ax, ay) + 1; n > 0; --n) {
    points.push_back(a);
    error -= 2 * (steep ? ax : ay);
    if (error < 0) (steep ? a.x += sx : a.y += sy), error += 2 * (steep ? ay : ax);
    steep ? a.y += sy : a.x += sx;
  }
  return points;
}

template <class T>
void lines(const char* name, int channels, Sample<T> sample) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 100 : 600); ++i) {
    const OrvSize roi{r.in(1, i % 3 ? 7 : 200), r.in(1, i % 5 ? 7 : 150)};
    Image<T> src(r, roi.width, roi.height, channels);
    src.fill(r, true);
    const OrvPoint a{r.in(0, roi.width - 1), r.in(0, roi.height - 1)},
        b{r.in(0, roi.width - 1), r.one(4) ? a.y : r.in(0, roi.height - 1)};
    const Context context(std::string(name) + " " + std::to_string(a.x) + "," + std::to_string(a.y) + " to " +
                          std::to_string(b.x) + "," + std::to_string(b.y));
    const auto points = plainLine(a, b);
    Image<T> dst(r, (int)points.size(), 1, channels);
    CHECK(sample(src.data(), src.step(), roi, dst.data(), a, b) == orvStatusOk);
    CHECK(dst.onlyRegionChanged() && points.back().x == b.x && points.back().y == b.y);
    for (int k = 0; k < dst.elements(); ++k) {
      const OrvPoint p = points[(size_t)(k / channels)];
      CHECK(same(dst.at(k, 0), src.at(p.x * channels + k % channels, p.y)), "element %d", k);
    }
  }

  const auto called = [=](const T* src, int32_t step, OrvSize roi, T* dst, int32_t, int32_t x1, int32_t y1, int32_t x2,
                          int32_t y2) {
    return sample(src, step, roi, dst, {x1, y1}, {x2, y2});
  };
  std::vector<Told> order = pointersThenSizes({0, 2}, 1) + eachOf(Fault::smallStep, {0});
  if (sizeof(T) > 1) order.push_back({Fault::misalignedStep, 0});
  for (const auto& [position, value] : {std::pair(3, -1), {4, 5}, {5, 13}, {6, INT32_MIN}})
    order.push_back(badValue(position, value, orvStatusOutOfRange));
  walkArguments(name, called, order, In<T>(channels), Roi(), Out<T>(channels), Value<int32_t>({0}), Value<int32_t>({0}),
                Value<int32_t>({8}), Value<int32_t>({4}));
}

}  // namespace

TEST(allTypes) {
  lines<uint8_t>("orviSampleLine_8u_C1R", 1, orviSampleLine_8u_C1R);
  lines<uint8_t>("orviSampleLine_8u_C3R", 3, orviSampleLine_8u_C3R);
  lines<uint16_t>("orviSampleLine_16u_C1R", 1, orviSampleLine_16u_C1R);
  lines<uint16_t>("orviSampleLine_16u_C3R", 3, orviSampleLine_16u_C3R);
  lines<float>("orviSampleLine_32f_C1R", 1, orviSampleLine_32f_C1R);
  lines<float>("orviSampleLine_32f_C3R", 3, orviSampleLine_32f_C3R);
}

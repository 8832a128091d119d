// Lines of pixels against a plain walk.
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/walker.h"

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

  struct Arguments {
    const T* src;
    int32_t step;
    OrvSize roi;
    T* dst;
    OrvPoint a, b;
  };
  const Image<T> src(r, 9, 5, channels), dst(r, 9, 1, channels);
  std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& x) { x.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& x) { x.dst = nullptr; }},
      {"width", orvStatusSize, [](Arguments& x) { x.roi.width = 0; }},
      {"height", orvStatusSize, [](Arguments& x) { x.roi.height = 0; }},
      {"step", orvStatusStep, [=](Arguments& x) { x.step = 9 * channels * (int32_t)sizeof(T) - 1; }},
      {"x of pt1", orvStatusOutOfRange, [](Arguments& x) { x.a.x = -1; }},
      {"y of pt1", orvStatusOutOfRange, [](Arguments& x) { x.a.y = 5; }},
      {"x of pt2", orvStatusOutOfRange, [](Arguments& x) { x.b.x = 9; }},
      {"y of pt2", orvStatusOutOfRange, [](Arguments& x) { x.b.y = INT32_MIN; }}};
  if (sizeof(T) > 1)
    checks.insert(checks.begin() + 5, {"alignment", orvStatusStepAlign, [](Arguments& x) { x.step += 1; }});
  walkChecks<Arguments>(
      {src.data(), src.step(), {9, 5}, dst.data(), {0, 0}, {8, 4}}, checks,
      [&](Arguments& x) { return sample(x.src, x.step, x.roi, x.dst, x.a, x.b); }, [&] { return dst.unchanged(); });
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

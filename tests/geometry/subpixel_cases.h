// The sub-pixel functions as records, and what is checked of each of them.
#pragma once
#include <functional>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"
#include "reference/subpixel.h"

namespace test {

template <class S, class D>
struct WindowArguments {
  const S* src;
  int32_t srcStep;
  OrvSize srcRoi;
  D* dst;
  int32_t dstStep;
  OrvSize dstRoi;
  OrvPoint32f point;
  OrvPoint *min, *max;
};

// A function around a centre. Those that aren't `whole` write from min to max only.
template <class S, class D>
struct WindowCase {
  const char* name;
  std::function<OrvStatus(const WindowArguments<S, D>&)> run;
  reference::Subpixel<S, D> plain;
  bool whole = true;
};

template <class S, class D>
WindowCase<S, D> windowCase(const char* name,
                            OrvStatus (*f)(const S*, int32_t, OrvSize, D*, int32_t, OrvSize, OrvPoint32f, OrvPoint*,
                                           OrvPoint*),
                            reference::Subpixel<S, D> plain, bool whole = true) {
  return {name,
          [=](const WindowArguments<S, D>& a) {
            return f(a.src, a.srcStep, a.srcRoi, a.dst, a.dstStep, a.dstRoi, a.point, a.min, a.max);
          },
          plain, whole};
}
inline WindowCase<uint8_t, uint16_t> scaledCase(const char* name,
                                                OrvStatus (*f)(const uint8_t*, int32_t, OrvSize, uint16_t*, int32_t,
                                                               OrvSize, OrvPoint32f, OrvPoint*, OrvPoint*, int32_t),
                                                int scaleFactor, bool whole = true) {
  return {name,
          [=](const WindowArguments<uint8_t, uint16_t>& a) {
            return f(a.src, a.srcStep, a.srcRoi, a.dst, a.dstStep, a.dstRoi, a.point, a.min, a.max, scaleFactor);
          },
          {scaleFactor},
          whole};
}

// One window, at every width.
template <class S, class D>
void checkWindow(const WindowCase<S, D>& c, Random& r, const Image<S>& src, OrvSize srcRoi, OrvSize roi,
                 OrvPoint32f point) {
  const reference::Place x(point.x, roi.width, srcRoi.width), y(point.y, roi.height, srcRoi.height);
  char text[160];
  snprintf(text, sizeof text, "%s %dx%d around (%.9g, %.9g) of %dx%d", c.name, roi.width, roi.height, point.x, point.y,
           srcRoi.width, srcRoi.height);
  const Context context(text);
  Image<D> dst(r, roi.width, roi.height, 1);
  forEachSetting(false, [&] {
    dst.restore();
    OrvPoint min{-9, -9}, max{-9, -9};
    const OrvStatus status = c.run({src.data(), src.step(), srcRoi, dst.data(), dst.step(), roi, point, &min, &max});
    CHECK(status == orvStatusOk && src.unchanged() && dst.onlyRegionChanged());
    CHECK(min.x == x.low && min.y == y.low && max.x == x.high && max.y == y.high, "min %d %d, max %d %d", min.x, min.y,
          max.x, max.y);
    for (int i = 0; i < roi.height; ++i)
      for (int k = 0; k < roi.width; ++k) {
        S p[4];
        for (int n = 0; n < 4; ++n)
          p[n] = src.at((int)std::clamp<int64_t>(x.first + k + n % 2, 0, srcRoi.width - 1),
                        (int)std::clamp<int64_t>(y.first + i + n / 2, 0, srcRoi.height - 1));
        D want = c.plain(p, x.fraction, y.fraction, x.inside(k), y.inside(i));
        if (!c.whole && !(x.inside(k) && y.inside(i))) memset(&want, 0xA5, sizeof want);  // as the memory came
        if (!same(dst.at(k, i), want))
          return fail("(%d, %d): %.9g, not %.9g", k, i, (double)dst.at(k, i), (double)want);
      }
  });
}

// Windows of all sorts: inside, over each side, over all, beside, far away, on whole and half pixels.
template <class S, class D>
void sweepWindows(const WindowCase<S, D>& c) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 60 : 400); ++i) {
    const OrvSize srcRoi{r.in(1, i % 2 ? 8 : 90), r.in(1, i % 3 ? 8 : 50)}, roi{r.in(1, 70), r.in(1, i % 4 ? 7 : 40)};
    Image<S> src(r, srcRoi.width, srcRoi.height, 1);
    src.fill(r, std::is_floating_point<S>::value);
    const auto coordinate = [&](int length, int size) {
      const int mode = r.in(0, 5);
      if (mode == 0) return (float)r.in(-3 * size, length + 3 * size) * 0.5f;
      if (mode == 1) return (float)(r.one(2) ? -1 : 1) * (float)r.in(100, 100000) * 1.25f;
      if (mode == 2) return (float)(size - 1) * 0.5f - (float)r.in(0, 3) * 1e-7f;  // the first pixel, or just before
      return (float)r.in(-1000 * size, 1000 * (length + size)) * 0.001f;
    };
    checkWindow(c, r, src, srcRoi, roi, {coordinate(srcRoi.width, roi.width), coordinate(srcRoi.height, roi.height)});
  }
}

template <class S, class D>
void walkWindow(const WindowCase<S, D>& c) {
  using Arguments = WindowArguments<S, D>;
  const Context context(c.name);
  Random r(seed());
  const Image<S> src(r, 9, 5, 1);
  const Image<D> dst(r, 7, 3, 1);
  OrvPoint points[2] = {{-9, -9}, {-9, -9}};
  std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
      {"min", orvStatusNullPtr, [](Arguments& a) { a.min = nullptr; }},
      {"max", orvStatusNullPtr, [](Arguments& a) { a.max = nullptr; }},
      {"src width", orvStatusSize, [](Arguments& a) { a.srcRoi.width = 0; }},
      {"src height", orvStatusSize, [](Arguments& a) { a.srcRoi.height = -1; }},
      {"dst width", orvStatusSize, [](Arguments& a) { a.dstRoi.width = 0; }},
      {"dst height", orvStatusSize, [](Arguments& a) { a.dstRoi.height = 0; }},
      {"srcStep", orvStatusStep, [](Arguments& a) { a.srcStep = 9 * (int32_t)sizeof(S) - 1; }},
      {"dstStep", orvStatusStep, [](Arguments& a) { a.dstStep = 7 * (int32_t)sizeof(D) - 1; }}};
  if (sizeof(S) > 1) checks.push_back({"src alignment", orvStatusStepAlign, [](Arguments& a) { a.srcStep += 1; }});
  if (sizeof(D) > 1) checks.push_back({"dst alignment", orvStatusStepAlign, [](Arguments& a) { a.dstStep += 1; }});
  walkChecks<Arguments>(
      {src.data(), src.step(), {9, 5}, dst.data(), dst.step(), {7, 3}, {4, 2}, points, points + 1}, checks,
      [&](Arguments& a) { return c.run(a); },
      [&] { return dst.unchanged() && points[0].x == -9 && points[1].y == -9; });
}

template <class S, class D>
void windows(const WindowCase<S, D>& c) {
  sweepWindows(c), walkWindow(c);
}

}  // namespace test

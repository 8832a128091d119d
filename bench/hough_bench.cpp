// Line detection on edge images of full HD and others, two percent of the pixels set: the frames and bars of a drawn
// facade, and the rest noise.
#include "turns.h"

using bench::Frame;

namespace {

bench::Turns<uint8_t> edges(const Frame& f) {
  auto all = bench::turns<uint8_t>(f);
  uint32_t random = 1;
  int shift = 0;
  for (const auto& p : all.pictures) {
    ++shift;
    for (int y = 0; y < f.roi.height; ++y)
      for (int x = 0; x < f.roi.width; ++x) {
        random = random * 1664525u + 1013904223u;
        const int u = 40 * x + 3 * y + 977 * shift, v = 40 * y - 5 * x + 613 * shift;
        const bool frame =
            (u % (40 * 190) < 40 && v % (40 * 260) < 40 * 150) || (v % (40 * 173) < 40 && u % (40 * 310) > 4000);
        p.data[y * p.step + x] = frame || (random >> 24) < 3 ? 255 : 0;
      }
  }
  return all;
}

constexpr OrvPointPolar delta = {1, 0.0174533f};

}  // namespace

static const bool lines = bench::add("orviHoughLine_8u32f_C1R", {1}, [](const Frame& f) {
  auto s = edges(f);
  int32_t bytes = 0;
  orviHoughLineGetSize_8u_C1R(f.roi, delta, 100, &bytes);
  auto buffer = f.scratch(bytes);
  return [=]() mutable {
    const auto& image = s.next();
    OrvPointPolar found[100];
    int32_t count;
    orviHoughLine_8u32f_C1R(image.data, image.step, f.roi, delta, 200, found, 100, &count, buffer.get());
  };
});

static const bool region = bench::add("orviHoughLine_Region_8u32f_C1R", {1}, [](const Frame& f) {
  auto s = edges(f);
  int32_t bytes = 0;
  orviHoughLineGetSize_8u_C1R(f.roi, delta, 100, &bytes);
  auto buffer = f.scratch(bytes);
  return [=]() mutable {
    const auto& image = s.next();
    OrvPointPolar found[100], part[2] = {{-1e4f, 0}, {1e4f, 3.2f}};
    int32_t count;
    orviHoughLine_Region_8u32f_C1R(image.data, image.step, f.roi, found, part, 100, &count, delta, 200, buffer.get());
  };
});

static const bool segments = bench::add("orviHoughProbLine_8u32f_C1R", {1}, [](const Frame& f) {
  auto s = edges(f);
  int32_t bytes = 0, stateBytes = 0;
  orviHoughProbLineGetSize_8u_C1R(f.roi, delta, &stateBytes, &bytes);
  auto buffer = f.scratch(bytes), memory = f.scratch(stateBytes);
  auto* const state = (OrvHoughProbState*)(void*)memory.get();
  orviHoughProbLineInit_8u32f_C1R(f.roi, delta, 0, state);
  auto list = f.scratch(16 * 10000);
  return [=, keep = memory]() mutable {
    const auto& image = s.next();
    int32_t count;
    orviHoughProbLine_8u32f_C1R(image.data, image.step, f.roi, 80, 50, 5, (int32_t*)(void*)list.get(), 10000, &count,
                                buffer.get(), state);
  };
});

// Gaussian mixtures on sixteen frames of a still camera, in turn: a photograph with sensor noise and passing squares.
#include <algorithm>
#include "bench.h"

namespace {

constexpr int frames = 16;

// The frames, and a state that has seen them three times.
struct Stream {
  OrvSize roi;
  bench::Picture<uint8_t> frame[frames], mask, picture;
  std::shared_ptr<uint8_t> memory;
  int turn = 0;

  OrvFGMMState* state() const { return (OrvFGMMState*)(void*)memory.get(); }
  void learn() {
    const auto& f = frame[turn++ % frames];
    orviFGMMForeground_8u_C3R(f.data, f.step, mask.data, mask.step, roi, state(), nullptr, -1);
  }

  Stream(const bench::Frame& f, int32_t gauss, bool shadows)
      : roi(f.roi), mask(f.image<uint8_t>()), picture(f.image<uint8_t>(3)) {
    uint32_t noise = 1;
    for (int i = 0; i < frames; ++i) {
      frame[i] = f.image<uint8_t>(3);
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width * 3; ++x) {
          uint8_t& v = frame[i].data[y * frame[i].step + x];
          // 3 % of the pixels: squares of 48 that pass from the left to the right
          const int place = x / 3 - 9 * i - 70 * (y / 64);
          if ((place % 256 + 256) % 256 < 48 && y % 256 < 48) v = (uint8_t)(255 - v / 2);
          int grain = 0;  // of deviation 2
          for (int k = 0; k < 4; ++k) noise = noise * 1664525u + 1013904223u, grain += (int)(noise >> 24);
          v = (uint8_t)std::min(std::max(v + (grain - 510) / 74, 0), 255);
        }
    }
    const OrvFGMMModel model = {500, gauss, 15, 4, 75, 16, 0.9f, 9, 0.05f, 127, shadows, 0.5f};
    int32_t bytes = 0;
    orviFGMMGetBufferSize_8u_C3R(roi, gauss, &bytes);
    memory = f.scratch(bytes);
    orviFGMMInit_8u_C3R(roi, gauss, &model, state());
    for (int i = 0; i < 3 * frames; ++i) learn();
  }
};

const std::vector<OrvSize> sizes = {{64, 64}, {320, 240}, {1280, 720}, {1920, 1080}};

bool foreground(const char* name, int32_t gauss, bool shadows) {
  return bench::add(name, {3, bench::single, sizes}, [=](const bench::Frame& f) {
    const auto s = std::make_shared<Stream>(f, gauss, shadows);
    return [=] { s->learn(); };
  });
}

const bool lines[] = {
    foreground("orviFGMMForeground_8u_C3R,modes:5", 5, false),
    foreground("orviFGMMForeground_8u_C3R,modes:5,shadows", 5, true),
    foreground("orviFGMMForeground_8u_C3R,modes:1", 1, false),
    bench::add("orviFGMMBackground_8u_C3R,modes:5", {3, bench::single, sizes},
               [](const bench::Frame& f) {
                 const auto s = std::make_shared<Stream>(f, 5, false);
                 return [=] { orviFGMMBackground_8u_C3R(s->picture.data, s->picture.step, s->roi, s->state()); };
               }),
};

}  // namespace

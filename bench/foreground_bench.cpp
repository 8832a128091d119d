// Motion history and foreground models. A model is given eight noisy frames in turn, over which a square moves; it has
// seen them forty times before time is taken, so its Gaussians and lists are as full as they get.
#include <string.h>
#include "bench.h"

using bench::Frame;
using bench::Picture;

namespace {

template <class T, class Update>
bool history(const char* name, Update update) {
  return bench::add(name, {(int)sizeof(T)}, [=](const Frame& f) {
    auto silhouette = f.image<T>();
    const auto mask = f.mask();
    for (ptrdiff_t i = 0; i < (ptrdiff_t)f.roi.width * f.roi.height; ++i) silhouette.data[i] = (T)mask.data[i];
    auto mhi = f.image<float>();
    return [=, now = 256.f]() mutable {
      update(silhouette.data, silhouette.step, mhi.data, mhi.step, f.roi, now, 100.f);
      now += 1.f / 64;
    };
  });
}

constexpr int frames = 8, rounds = 40;

struct Video {
  Picture<uint8_t> frame[frames];
  int turn = 0;

  Video(const Frame& f, int channels) {
    uint32_t noise = 1;
    for (int k = 0; k < frames; ++k) {
      frame[k] = f.image<uint8_t>(channels);
      const int side = f.roi.height / 4, left = k * f.roi.width / 12, top = f.roi.height / 3;
      for (int y = 0; y < f.roi.height; ++y)
        for (int x = 0; x < f.roi.width * channels; ++x) {
          uint8_t& p = frame[k].data[(ptrdiff_t)y * frame[k].step + x];
          const int px = x / channels - left, py = y - top;
          if (px >= 0 && px < side && py >= 0 && py < side) p = (uint8_t)(200 + py % 7);
          noise = noise * 1664525u + 1013904223u;
          const int value = p + (int)(noise >> 24 & 7) - 4 + (int)(noise >> 16 & 7) - 4;
          p = (uint8_t)(value < 0 ? 0 : value > 255 ? 255 : value);
        }
    }
  }
  const Picture<uint8_t>& next() { return frame[turn++ % frames]; }
};

const std::vector<OrvSize> sizes = {{64, 64}, {320, 240}, {1280, 720}};

template <class State, class Init, class Run, class Free>
bool gaussian(const char* name, int channels, Init init, Run run, Free release) {
  return bench::add(name, {channels, bench::single, sizes}, [=](const Frame& f) {
    const auto video = std::make_shared<Video>(f, channels);
    auto background = f.image<uint8_t>(channels), mask = f.image<uint8_t>();
    State* made = nullptr;
    init(video->frame[0].data, video->frame[0].step, f.roi, &made, &made);
    const std::shared_ptr<State> state(made, release);
    const auto one = [=] {
      const auto& src = video->next();
      run(src.data, src.step, background.data, background.step, mask.data, mask.step, f.roi, state.get());
    };
    for (int k = 0; k < rounds * frames; ++k) one();
    return one;
  });
}

// Judging and learning of the same frames, each on its own line.
template <class State, class Init, class Run, class Update, class Free>
bool histogram(const char* name, int channels, bool learns, Init init, Run run, Update update, Free release) {
  return bench::add(name, {channels, bench::single, sizes}, [=](const Frame& f) {
    const auto video = std::make_shared<Video>(f, channels);
    auto background = f.image<uint8_t>(channels), mask = f.image<uint8_t>();
    State* made = nullptr;
    init(video->frame[0].data, video->frame[0].step, f.roi, &made, &made);
    const std::shared_ptr<State> state(made, release);
    const auto judge = [=](const Picture<uint8_t>& src) {
      run(src.data, src.step, mask.data, mask.step, f.roi, state.get());
    };
    const auto learn = [=](const Picture<uint8_t>& src) {
      update(src.data, src.step, mask.data, mask.step, background.data, background.step, f.roi, state.get());
    };
    for (int k = 0; k < rounds * frames; ++k) judge(video->next()), learn(video->frame[k % frames]);
    return std::function<void()>([=] { learns ? learn(video->next()) : judge(video->next()); });
  });
}
#define GAUSSIAN(channels)                                                                                      \
  gaussian<OrvForegroundGaussianState>(                                                                         \
      "orviForegroundGaussian_8u_C" #channels "R", channels, orviForegroundGaussianInitAlloc_8u_C##channels##R, \
      orviForegroundGaussian_8u_C##channels##R, orviForegroundGaussianFree_8u_C##channels##R)
#define HISTOGRAM(channels, suffix, learns)                                                          \
  histogram<OrvForegroundHistogramState>(                                                            \
      "orviForegroundHistogram" suffix "_8u_C" #channels "R", channels, learns,                      \
      orviForegroundHistogramInitAlloc_8u_C##channels##R, orviForegroundHistogram_8u_C##channels##R, \
      orviForegroundHistogramUpdate_8u_C##channels##R, orviForegroundHistogramFree_8u_C##channels##R)

const bool lines[] = {
    history<uint8_t>("orviUpdateMotionHistory_8u32f_C1IR", orviUpdateMotionHistory_8u32f_C1IR),
    history<uint16_t>("orviUpdateMotionHistory_16u32f_C1IR", orviUpdateMotionHistory_16u32f_C1IR),
    history<float>("orviUpdateMotionHistory_32f_C1IR", orviUpdateMotionHistory_32f_C1IR),
    GAUSSIAN(1),
    GAUSSIAN(3),
    HISTOGRAM(1, "", false),
    HISTOGRAM(3, "", false),
    HISTOGRAM(1, "Update", true),
    HISTOGRAM(3, "Update", true),
};

}  // namespace

// Optical flow: 500 points, windows of 15, three levels. The time is that of a call divided by its points: a "pixel" of
// these lines is a point.
#include <string.h>
#include "bench.h"

namespace {

constexpr int32_t points = 500, levels = 3;

template <class T>
struct Sequence {
  bench::Picture<T> picture[2][levels];
  void* images[2][levels];
  OrvSize sizes[levels];
  double rates[levels];
  int32_t steps[levels];
  OrvPyramid pyramid[2];
  OrvPoint32f from[points], to[points];
  int8_t status[points];
  float error[points];
  OrvOptFlowPyrLKState* state = nullptr;
};

// A smooth scene and the same one moved, in full HD.
template <class T, class Make, class Free, class Track>
bool flow(const char* name, Make make, Free release, Track track) {
  return bench::add(name, {(int)sizeof(T), bench::single, {{points, 1}}}, [=](const bench::Frame&) {
    const std::shared_ptr<Sequence<T>> s(new Sequence<T>, [=](Sequence<T>* p) {
      release(p->state);
      delete p;
    });
    for (int32_t l = 0; l < levels; ++l) {
      s->sizes[l] = {1920 >> l, 1080 >> l};
      s->rates[l] = 1.0 / (1 << l);
      s->steps[l] = s->sizes[l].width * (int32_t)sizeof(T);
      for (int i = 0; i < 2; ++i) {
        s->picture[i][l] = bench::Frame{s->sizes[l]}.template image<T>();
        s->images[i][l] = s->picture[i][l].data;
        for (int32_t y = 0; y < s->sizes[l].height; ++y)
          for (int32_t x = 0; x < s->sizes[l].width; ++x) {
            const float u = (float)(x << l) - 4.3f * (float)i, v = (float)(y << l) + 3.1f * (float)i;
            s->picture[i][l].data[y * s->sizes[l].width + x] =
                (T)(128 + 50 * sinf(u * 0.21f + v * 0.05f) + 50 * cosf(v * 0.17f - u * 0.08f));
          }
      }
    }
    for (int i = 0; i < 2; ++i) s->pyramid[i] = {s->images[i], s->sizes, s->rates, s->steps, nullptr, levels - 1};
    for (int32_t i = 0; i < points; ++i)
      s->from[i] = {(float)(60 + i * 617 % 1800) + 0.3f, (float)(60 + i * 331 % 960) + 0.6f};
    make(&s->state, s->sizes[0], 15, 0);
    return [=] {
      memcpy(s->to, s->from, sizeof s->to);
      track(&s->pyramid[0], &s->pyramid[1], s->from, s->to, s->status, s->error, points, 15, levels - 1, 20, 0.03f,
            s->state);
    };
  });
}
#define FLOW(T, type)                                                                                  \
  flow<T>("orviOpticalFlowPyrLK_" #type "_C1R,points:500", orviOpticalFlowPyrLKInitAlloc_##type##_C1R, \
          orviOpticalFlowPyrLKFree_##type##_C1R, orviOpticalFlowPyrLK_##type##_C1R)

const bool lines[] = {FLOW(uint8_t, 8u), FLOW(uint16_t, 16u), FLOW(float, 32f)};

}  // namespace

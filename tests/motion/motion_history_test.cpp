// Motion history against its formula: limits exactly met, NaNs, zeros of both signs; statuses.
// One body serves both variants.
#include "framework/sweep.h"

using namespace test;

namespace {

// The choices make limits that content often meets: highest<float>() and lowest<float>().
template <class T, class Function>
void check(const char* name, Function function) {
  const auto plain = [](const T* s, int32_t sStep, float* m, int32_t mStep, OrvSize roi, float now, float duration) {
    const float limit = now - duration;
    for (ptrdiff_t y = 0; y < roi.height; ++y)
      for (ptrdiff_t x = 0; x < roi.width; ++x) {
        auto* const pixel = (uint8_t*)m + y * mStep + x * 4;
        T silhouette;
        float history;
        memcpy(&silhouette, (const uint8_t*)s + y * sStep + x * (ptrdiff_t)sizeof(T), sizeof(T));
        memcpy(&history, pixel, 4);
        if (silhouette != 0) history = now;
        else if (history < limit) history = 0;
        memcpy(pixel, &history, 4);
      }
  };
  const Value<float> times({255.5f, -1000, 0.1f}), durations({0, 0, 1255.5f, 3, INFINITY, NAN});
  sweep(name, function, plain, {}, wild(In<T>()), wild(InOut<float>()), Roi(), times, durations);

  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  for (const int image : {0, 1}) order.push_back({Fault::smallStep, image});
  if (sizeof(T) > 1) order.push_back({Fault::misalignedStep, 0});
  order.push_back({Fault::misalignedStep, 1});
  for (const float duration : {1.f, -1e-30f})
    walkArguments(name, function, order, In<T>(), InOut<float>(), Roi(), Value<float>({5}), Value<float>({duration}));
  const T silhouette = 1;
  float mhi = 3;
  CHECK(function(&silhouette, 4, &mhi, 4, {1, 1}, 7, -1e-30f) == orvStatusOutOfRange && mhi == 3);
}

}  // namespace

TEST(history) {
  check<uint8_t>("orviUpdateMotionHistory_8u32f_C1IR", orviUpdateMotionHistory_8u32f_C1IR);
  check<uint16_t>("orviUpdateMotionHistory_16u32f_C1IR", orviUpdateMotionHistory_16u32f_C1IR);
  check<float>("orviUpdateMotionHistory_32f_C1IR", orviUpdateMotionHistory_32f_C1IR);
}

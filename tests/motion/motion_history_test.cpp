// Motion history against its formula: limits exactly met, NaNs, zeros of both signs; statuses.
// One body serves both variants.
#include "framework/sweep.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

// The choices make limits that content often meets: highest<float>() and lowest<float>().
template <class T, class Function>
void check(const char* name, Function function) {
  const auto plain = [](const T* s, int32_t sStep, float* m, int32_t mStep, OrvSize roi, float now, float duration) {
    reference::forEachElement(roi, 1, [&](int y, int x) {
      const float limit = now - duration;
      if (reference::load(s, sStep, y, x) != 0) reference::store(m, mStep, y, x, now);
      else if (reference::load(m, mStep, y, x) < limit) reference::store(m, mStep, y, x, 0.f);
    });
  };
  sweep(name, function, plain, {}, wild(In<T>()), wild(InOut<float>()), Roi(), Value<float>({255.5f, -1000, 0.1f}),
        Value<float>({0, 0, 1255.5f, 3, INFINITY, NAN}));
  const std::vector<Told> order = pointersThenSizes({0, 1}, 2) + eachOf(Fault::smallStep, {0, 1}) +
                                  eachOf(Fault::misalignedStep, sizeof(T) > 1 ? std::vector{0, 1} : std::vector{1});
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

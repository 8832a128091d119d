// The dyadic steps against their plain forms.
#pragma once
#include "framework/sweep.h"
#include "reference/pyramid.h"

namespace test {

// A destination of half or twice the size.
template <class T>
struct Scaled : ImageRole<T> {
  bool up;
  Scaled(int channels, bool goesUp) : ImageRole<T>(Out<T>(channels)), up(goesUp) {}
  void prepare(Random& r, const Shape& s) {
    ImageRole<T>::prepare(r, up ? Shape{2 * s.width, 2 * s.height} : Shape{(s.width + 1) / 2, (s.height + 1) / 2});
  }
};

template <class T>
using Step = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, uint8_t*);

template <class T>
void checkDyadic(const char* name, Step<T> step, int channels, bool up) {
  const auto plain = [=](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, uint8_t*) {
    (up ? reference::pyrUp<T> : reference::pyrDown<T>)(src, srcStep, dst, dstStep, roi, channels);
  };
  const Scratch buffer([=](OrvSize roi, int32_t* bytes) {
    const int32_t row = (roi.width * (up ? 8 : 4) * channels + 15) & ~15;
    *bytes = row * (up ? 3 : 6) + 64;  // as the functions for sizes report
    return orvStatusOk;
  });
  sweep(name, step, plain, {0, 0}, In<T>(channels), Scaled<T>(channels, up), Roi(), buffer);
  std::vector<Told> order = pointersThenSizes({0, 1, 3}, 2) + eachOf(Fault::smallStep, {0, 1});
  if (sizeof(T) > 1) order = order + eachOf(Fault::misalignedStep, {0, 1});
  walkArguments(name, step, order, In<T>(channels), Scaled<T>(channels, up), Roi(), buffer);
}
#define CHECK_DYADIC(T, type)                                                                            \
  checkDyadic<T>("orviPyrDown_Gauss5x5_" #type "_C1R", orviPyrDown_Gauss5x5_##type##_C1R, 1, false),     \
      checkDyadic<T>("orviPyrDown_Gauss5x5_" #type "_C3R", orviPyrDown_Gauss5x5_##type##_C3R, 3, false), \
      checkDyadic<T>("orviPyrUp_Gauss5x5_" #type "_C1R", orviPyrUp_Gauss5x5_##type##_C1R, 1, true),      \
      checkDyadic<T>("orviPyrUp_Gauss5x5_" #type "_C3R", orviPyrUp_Gauss5x5_##type##_C3R, 3, true)

}  // namespace test

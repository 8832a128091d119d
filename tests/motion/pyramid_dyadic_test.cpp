// The dyadic steps against their plain forms.
#include "features/roles.h"
#include "reference/pyramid.h"

using namespace test;

namespace {

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
void check(const char* name, Step<T> step, int channels, bool up) {
  const auto plain = [=](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, uint8_t*) {
    (up ? reference::pyrUp<T> : reference::pyrDown<T>)(src, srcStep, dst, dstStep, roi, channels);
  };
  const Buffer buffer([=](OrvSize roi, int32_t* bytes) {
    return (up ? orviPyrUpGetBufSize_Gauss5x5 : orviPyrDownGetBufSize_Gauss5x5)(roi.width, orvData8u, channels, bytes);
  });
  sweep(name, step, plain, {0, 0}, In<T>(channels), Scaled<T>(channels, up), Roi(), buffer);
  std::vector<Told> order = pointersThenSizes({0, 1, 3}, 2);
  for (const int position : {0, 1}) order.push_back({Fault::smallStep, position});
  for (int position = 0; position < 2 && sizeof(T) > 1; ++position) order.push_back({Fault::misalignedStep, position});
  walkArguments(name, step, order, In<T>(channels), Scaled<T>(channels, up), Roi(), buffer);
}
#define STEPS(T, type)                                                                             \
  check<T>("orviPyrDown_Gauss5x5_" #type "_C1R", orviPyrDown_Gauss5x5_##type##_C1R, 1, false),     \
      check<T>("orviPyrDown_Gauss5x5_" #type "_C3R", orviPyrDown_Gauss5x5_##type##_C3R, 3, false), \
      check<T>("orviPyrUp_Gauss5x5_" #type "_C1R", orviPyrUp_Gauss5x5_##type##_C1R, 1, true),      \
      check<T>("orviPyrUp_Gauss5x5_" #type "_C3R", orviPyrUp_Gauss5x5_##type##_C3R, 3, true)

}  // namespace

TEST(bytes) { STEPS(uint8_t, 8u); }
TEST(signed_bytes) { STEPS(int8_t, 8s); }
TEST(floats) { STEPS(float, 32f); }

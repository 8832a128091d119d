// Absolute differences of images, and of an image and a constant.
// One body serves both variants.
#include "arith/stores.h"
#include "framework/sweep.h"
#include "framework/vectors.h"
#include "reference/arith.h"

using namespace test;

namespace {

constexpr Shape threaded = {520, 513};

// Steps in argument order, then one alignment test of all.
std::vector<Told> checks(const std::vector<int>& images, size_t elementBytes) {
  const auto order = pointersThenSizes(images, (int)images.size()) + eachOf(Fault::smallStep, images);
  return elementBytes > 1 ? order + eachOf(Fault::misalignedStep, images) : order;
}

// Two images; the result may replace either.
template <class T, class Function>
void twoImages(const char* name, Function function, int channels = 1) {
  const auto plain = reference::binary(channels, reference::distance<T>);
  const auto in = wild(In<T>(channels));
  forBothStores([&] {
    sweep(name, function, plain, threaded, in, in, Out<T>(channels), Roi());
    const auto both = wild(InOut<T>(channels));
    sweep("dst = src1", inPlaceOfFirst(function), inPlaceOfFirst(plain), {}, in, both, Roi());
    sweep("dst = src2", inPlaceOfSecond(function), inPlaceOfSecond(plain), {}, in, both, Roi());
  });
  walkArguments(name, function, checks({0, 1, 2}, sizeof(T)), in, in, Out<T>(channels), Roi());
}

template <class T, class C, class Function>
void imageAndConstant(const char* name, Function function, std::vector<C> values) {
  const Value<C> value(values);
  forBothStores(
      [&] { sweep(name, function, reference::absDiffC<T, C>, threaded, wild(In<T>()), Out<T>(), Roi(), value); });
  walkArguments(name, function, checks({0, 1}, sizeof(T)), In<T>(), Out<T>(), Roi(), value);
}

}  // namespace

TEST(images) {
  twoImages<uint8_t>("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R);
  twoImages<uint16_t>("orviAbsDiff_16u_C1R", orviAbsDiff_16u_C1R);
  twoImages<float>("orviAbsDiff_32f_C1R", orviAbsDiff_32f_C1R);
  twoImages<uint8_t>("orviAbsDiff_8u_C3R", orviAbsDiff_8u_C3R, 3);
  // Fewer rows than threads: all of them go to the last one.
  sweep("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R, reference::binary(1, reference::distance<uint8_t>), {131077, 2},
        In<uint8_t>(), In<uint8_t>(), Out<uint8_t>(), Roi());
}

TEST(constants) {
  imageAndConstant<uint8_t, int32_t>("orviAbsDiffC_8u_C1R", orviAbsDiffC_8u_C1R,
                                     {0, 1, 77, 128, 255, -5, 256, 300, INT32_MIN, INT32_MAX});
  imageAndConstant<uint16_t, int32_t>("orviAbsDiffC_16u_C1R", orviAbsDiffC_16u_C1R,
                                      {0, 1, 777, 32768, 65535, -5, 65536, 70000, INT32_MIN, INT32_MAX});
  imageAndConstant<float, float>("orviAbsDiffC_32f_C1R", orviAbsDiffC_32f_C1R,
                                 {0.f, -0.f, 1.5f, -1e30f, 1e-40f, INFINITY, NAN});
}

// A comparison of numbers can't see this.
TEST(nanLosesItsSign) {
  const float nan = NAN, negativeNan = copysignf(nan, -1.f);
  std::vector<float> a(67, nan), b(67, 1.f), d(67);
  for (size_t i = 0; i < a.size(); i += 2) a[i] = negativeNan;
  const int32_t step = 67 * 4;
  forEachSetting(false, [&] {
    orviAbsDiff_32f_C1R(a.data(), step, b.data(), step, d.data(), step, {67, 1});
    for (const float v : d) CHECK(isnan(v) && !signbit(v));
    orviAbsDiffC_32f_C1R(b.data(), step, d.data(), step, {67, 1}, negativeNan);
    for (const float v : d) CHECK(isnan(v) && !signbit(v));
  });
}

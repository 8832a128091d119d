// Absolute differences of images, and of an image and a constant.
// One body serves both variants.
#include "arith/stores.h"
#include "framework/sweep.h"
#include "reference/arith.h"

using namespace test;

namespace {

constexpr Shape threaded = {520, 513};

// Steps in argument order, then one alignment test of all.
std::vector<Told> checks(int images, size_t elementBytes) {
  std::vector<int> positions;
  for (int i = 0; i < images; ++i) positions.push_back(i);
  std::vector<Told> order = pointersThenSizes(positions, images);
  for (const int i : positions) order.push_back({Fault::smallStep, i});
  if (elementBytes > 1)
    for (const int i : positions) order.push_back({Fault::misalignedStep, i});
  return order;
}

template <class T, class Function>
void twoImages(const char* name, Function function) {
  forBothStores(
      [&] { sweep(name, function, reference::absDiff<T>, threaded, wild(In<T>()), wild(In<T>()), Out<T>(), Roi()); });
  walkArguments(name, function, checks(3, sizeof(T)), In<T>(), In<T>(), Out<T>(), Roi());
}

template <class T, class Value, class Function>
void imageAndConstant(const char* name, Function function, std::vector<Value> values) {
  forBothStores([&] {
    sweep(name, function, reference::absDiffC<T, Value>, threaded, wild(In<T>()), Out<T>(), Roi(),
          test::Value<Value>(values));
  });
  walkArguments(name, function, checks(2, sizeof(T)), In<T>(), Out<T>(), Roi(), test::Value<Value>(values));
}

// The result may replace either source.
template <class T, class Function>
void inPlace(const char* name, Function function) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    const Context context(detail::describe(name, shape));
    Image<T> a(r, shape.width, shape.height, 1), b(r, shape.width, shape.height, 1);
    a.fill(r, true), b.fill(r, true);
    const OrvSize roi = {shape.width, shape.height};
    std::vector<T> expected;
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) expected.push_back(reference::distance(a.at(x, y), b.at(x, y)));
    forEachSetting(false, [&] {
      for (const Image<T>* dst : {&a, &b}) {
        a.restore(), b.restore();
        function(a.data(), a.step(), b.data(), b.step(), dst->data(), dst->step(), roi);
        for (int i = 0; i < (int)expected.size(); ++i)
          CHECK(same(dst->at(i % shape.width, i / shape.width), expected[(size_t)i]), "pixel %d", i);
        CHECK(dst->onlyRegionChanged());
      }
    });
  }
}

}  // namespace

TEST(bytes) {
  twoImages<uint8_t>("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R);
  imageAndConstant<uint8_t, int32_t>("orviAbsDiffC_8u_C1R", orviAbsDiffC_8u_C1R,
                                     {0, 1, 77, 128, 255, -5, 256, 300, INT32_MIN, INT32_MAX});
}

TEST(words) {
  twoImages<uint16_t>("orviAbsDiff_16u_C1R", orviAbsDiff_16u_C1R);
  imageAndConstant<uint16_t, int32_t>("orviAbsDiffC_16u_C1R", orviAbsDiffC_16u_C1R,
                                      {0, 1, 777, 32768, 65535, -5, 65536, 70000, INT32_MIN, INT32_MAX});
}

TEST(floats) {
  twoImages<float>("orviAbsDiff_32f_C1R", orviAbsDiff_32f_C1R);
  imageAndConstant<float, float>("orviAbsDiffC_32f_C1R", orviAbsDiffC_32f_C1R,
                                 {0.f, -0.f, 1.5f, -1e30f, 1e-40f, INFINITY, NAN});
}

TEST(threeChannels) {
  sweep("orviAbsDiff_8u_C3R", orviAbsDiff_8u_C3R, reference::absDiff<uint8_t, 3>, {320, 277}, In<uint8_t>(3),
        In<uint8_t>(3), Out<uint8_t>(3), Roi());
  walkArguments("orviAbsDiff_8u_C3R", orviAbsDiff_8u_C3R, checks(3, 1), In<uint8_t>(3), In<uint8_t>(3), Out<uint8_t>(3),
                Roi());
}

// Fewer rows than threads: all of them go to the last one.
TEST(fewRows) {
  sweep("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R, reference::absDiff<uint8_t>, {131077, 2}, In<uint8_t>(),
        In<uint8_t>(), Out<uint8_t>(), Roi());
}

TEST(inPlace) {
  forBothStores([&] {
    inPlace<uint8_t>("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R);
    inPlace<uint16_t>("orviAbsDiff_16u_C1R", orviAbsDiff_16u_C1R);
    inPlace<float>("orviAbsDiff_32f_C1R", orviAbsDiff_32f_C1R);
  });
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

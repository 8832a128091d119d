// Accumulations: sums, squares, products and running averages, plain and masked.
// One body serves both variants.
#include "arith/stores.h"
#include "framework/sweep.h"
#include "reference/arith.h"

using namespace test;
using reference::Pixel;

namespace {

constexpr Shape threaded = {520, 513};
const Value<float> weights({0.05f, 0.f, 1.f, -0.75f, 3.f, 1e-30f, INFINITY, NAN});

// The sources' steps; the alignment of 16-bit sources; the mask's step; the accumulator's step; the alignment of the
// accumulator, together with that of float sources.
template <class T>
std::vector<Told> checks(int sources, bool isMasked) {
  std::vector<int> positions;
  const int accumulator = sources + isMasked;
  for (int i = 0; i <= accumulator; ++i) positions.push_back(i);
  std::vector<Told> order = pointersThenSizes(positions, accumulator + 1);
  const auto all = [&](Fault fault) {
    for (int i = 0; i < sources; ++i) order.push_back({fault, i});
  };
  all(Fault::smallStep);
  if (sizeof(T) == 2) all(Fault::misalignedStep);
  if (isMasked) order.push_back({Fault::smallStep, sources});
  order.push_back({Fault::smallStep, accumulator});
  if (sizeof(T) == 4) all(Fault::misalignedStep);
  order.push_back({Fault::misalignedStep, accumulator});
  return order;
}

// Source and accumulator, then whatever follows them: the arguments of a plain form.
template <class T, class Function, class Reference, class... Rest>
void plain(const char* name, Function function, Reference expected, Rest... rest) {
  sweep(name, function, expected, threaded, wild(In<T>()), wild(InOut<float>()), Roi(), rest...);
  walkArguments(name, function, checks<T>(1, false), In<T>(), InOut<float>(), Roi(), rest...);
}
template <class T, class Function, class Reference, class... Rest>
void masked(const char* name, Function function, Reference expected, Rest... rest) {
  forBothStores(
      [&] { sweep(name, function, expected, threaded, wild(In<T>()), Mask(), wild(InOut<float>()), Roi(), rest...); });
  walkArguments(name, function, checks<T>(1, true), In<T>(), Mask(), InOut<float>(), Roi(), rest...);
}

template <float (*next)(Pixel), class T, class Plain, class Masked>
void both(const char* name, Plain plainForm, Masked maskedForm) {
  plain<T>((std::string(name) + "_C1IR").c_str(), plainForm, reference::plain<next, T>);
  masked<T>((std::string(name) + "_C1IMR").c_str(), maskedForm, reference::masked<next, T>);
}

template <class T, class Plain, class Masked>
void bothWeighted(const char* name, Plain plainForm, Masked maskedForm) {
  using reference::addWeighted;
  plain<T>((std::string(name) + "_C1IR").c_str(), plainForm, reference::plain<addWeighted, T, float>, weights);
  masked<T>((std::string(name) + "_C1IMR").c_str(), maskedForm, reference::masked<addWeighted, T, float>, weights);
}

template <class T, class Plain, class Masked>
void bothProducts(const char* name, Plain plainForm, Masked maskedForm) {
  sweep(name, plainForm, reference::product<T>, threaded, wild(In<T>()), wild(In<T>()), wild(InOut<float>()), Roi());
  walkArguments(name, plainForm, checks<T>(2, false), In<T>(), In<T>(), InOut<float>(), Roi());
  forBothStores([&] {
    sweep(name, maskedForm, reference::productMasked<T>, threaded, wild(In<T>()), wild(In<T>()), Mask(),
          wild(InOut<float>()), Roi());
  });
  walkArguments(name, maskedForm, checks<T>(2, true), In<T>(), In<T>(), Mask(), InOut<float>(), Roi());
}

}  // namespace

TEST(sums) {
  using reference::add;
  both<add, uint8_t>("orviAdd_8u32f", orviAdd_8u32f_C1IR, orviAdd_8u32f_C1IMR);
  both<add, int8_t>("orviAdd_8s32f", orviAdd_8s32f_C1IR, orviAdd_8s32f_C1IMR);
  both<add, uint16_t>("orviAdd_16u32f", orviAdd_16u32f_C1IR, orviAdd_16u32f_C1IMR);
  masked<float>("orviAdd_32f_C1IMR", orviAdd_32f_C1IMR, reference::masked<add, float>);
}

TEST(squares) {
  using reference::addSquare;
  both<addSquare, uint8_t>("orviAddSquare_8u32f", orviAddSquare_8u32f_C1IR, orviAddSquare_8u32f_C1IMR);
  both<addSquare, int8_t>("orviAddSquare_8s32f", orviAddSquare_8s32f_C1IR, orviAddSquare_8s32f_C1IMR);
  both<addSquare, uint16_t>("orviAddSquare_16u32f", orviAddSquare_16u32f_C1IR, orviAddSquare_16u32f_C1IMR);
  both<addSquare, float>("orviAddSquare_32f", orviAddSquare_32f_C1IR, orviAddSquare_32f_C1IMR);
}

TEST(products) {
  bothProducts<uint8_t>("orviAddProduct_8u32f", orviAddProduct_8u32f_C1IR, orviAddProduct_8u32f_C1IMR);
  bothProducts<int8_t>("orviAddProduct_8s32f", orviAddProduct_8s32f_C1IR, orviAddProduct_8s32f_C1IMR);
  bothProducts<uint16_t>("orviAddProduct_16u32f", orviAddProduct_16u32f_C1IR, orviAddProduct_16u32f_C1IMR);
  bothProducts<float>("orviAddProduct_32f", orviAddProduct_32f_C1IR, orviAddProduct_32f_C1IMR);
}

TEST(averages) {
  bothWeighted<uint8_t>("orviAddWeighted_8u32f", orviAddWeighted_8u32f_C1IR, orviAddWeighted_8u32f_C1IMR);
  bothWeighted<int8_t>("orviAddWeighted_8s32f", orviAddWeighted_8s32f_C1IR, orviAddWeighted_8s32f_C1IMR);
  bothWeighted<uint16_t>("orviAddWeighted_16u32f", orviAddWeighted_16u32f_C1IR, orviAddWeighted_16u32f_C1IMR);
  bothWeighted<float>("orviAddWeighted_32f", orviAddWeighted_32f_C1IR, orviAddWeighted_32f_C1IMR);
}

TEST(averageIntoThirdImage) {
  const char* const name = "orviAddWeighted_32f_C1R";
  sweep(name, orviAddWeighted_32f_C1R, reference::weightedInto, threaded, wild(In<float>()), wild(In<float>()),
        Out<float>(), Roi(), weights);
  std::vector<Told> order = pointersThenSizes({0, 1, 2}, 3);
  for (const int position : {0, 1, 2}) order.push_back({Fault::smallStep, position});
  for (const int position : {0, 1, 2}) order.push_back({Fault::misalignedStep, position});
  walkArguments(name, orviAddWeighted_32f_C1R, order, In<float>(), In<float>(), Out<float>(), Roi(), weights);
}

// The accumulator may be a source too.
TEST(accumulatorAsSource) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    const Context context(detail::describe("in place", shape));
    Image<float> a(r, shape.width, shape.height, 1);
    a.fill(r, true);
    const OrvSize roi = {shape.width, shape.height};
    std::vector<float> square, step;
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) {
        const float v = a.at(x, y);
        square.push_back(reference::addSquare({v, 0, v, 0, true}));
        step.push_back(reference::addWeighted({v, 0, v, 0.25f, true}));
      }
    const auto expect = [&](const std::vector<float>& expected) {
      for (int i = 0; i < (int)expected.size(); ++i)
        CHECK(same(a.at(i % shape.width, i / shape.width), expected[(size_t)i]), "pixel %d", i);
      CHECK(a.onlyRegionChanged());
      a.restore();
    };
    forEachSetting(false, [&] {
      orviAddSquare_32f_C1IR(a.data(), a.step(), a.data(), a.step(), roi), expect(square);
      orviAddProduct_32f_C1IR(a.data(), a.step(), a.data(), a.step(), a.data(), a.step(), roi), expect(square);
      orviAddWeighted_32f_C1R(a.data(), a.step(), a.data(), a.step(), a.data(), a.step(), roi, 0.25f), expect(step);
    });
  }
}

// Numbers worked out by hand, against an error that the reference would share.
TEST(knownNumbers) {
  const uint16_t word = 65535;
  const int8_t low = -128;
  const uint8_t shut = 0, open = 1;
  const float infinite = INFINITY, nan = NAN, zero = 0;
  const OrvSize one = {1, 1};
  forEachSetting(false, [&] {
    float d = 0;
    orviAddSquare_16u32f_C1IR(&word, 2, &d, 4, one);
    CHECK(d == 4294836224.f, "%.9g", (double)d);
    d = 1;
    orviAddProduct_8s32f_C1IR(&low, 1, &low, 1, &d, 4, one);
    CHECK(d == 16385.f, "%.9g", (double)d);
    d = -0.f;
    orviAdd_32f_C1IMR(&nan, 4, &shut, 1, &d, 4, one);
    CHECK(d == 0.f && !signbit(d), "zero is added where the mask is shut");
    orviAddWeighted_32f_C1IMR(&infinite, 4, &shut, 1, &d, 4, one, 0.5f);
    CHECK(d == 0.f);
    orviAddProduct_32f_C1IMR(&nan, 4, &zero, 4, &shut, 1, &d, 4, one);
    CHECK(d == 0.f, "the mask clears the first factor");
    orviAddProduct_32f_C1IMR(&zero, 4, &infinite, 4, &shut, 1, &d, 4, one);
    CHECK(isnan(d), "the mask leaves the second factor");
    d = 16777216.f;
    orviAdd_8u32f_C1IR(&open, 1, &d, 4, one);
    CHECK(d == 16777216.f, "beyond 2^24 a one is lost");
  });
}

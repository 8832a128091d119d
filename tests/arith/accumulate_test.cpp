// Accumulations: sums, squares, products and running averages, plain and masked.
// One body serves both variants.
#include "arith/stores.h"
#include "framework/sweep.h"
#include "framework/vectors.h"
#include "reference/arith.h"

using namespace test;
using reference::Pixel;

namespace {

constexpr Shape threaded = {520, 513};
const Value<float> weights({0.05f, 0.f, 1.f, -0.75f, 3.f, 1e-30f, INFINITY, NAN});

// The sources' steps; the alignment of 16-bit sources; the mask's step; the accumulator's step; the alignment of the
// accumulator, together with that of float sources.
template <class T>
std::vector<Told> checks(const std::vector<int>& sources, bool isMasked) {
  const int mask = (int)sources.size(), accumulator = mask + isMasked;
  const auto steps = isMasked ? std::vector<int>{mask, accumulator} : std::vector<int>{accumulator};
  std::vector<int> all = sources;
  all.insert(all.end(), steps.begin(), steps.end());
  auto order = pointersThenSizes(all, accumulator + 1) + eachOf(Fault::smallStep, sources);
  if (sizeof(T) == 2) order = order + eachOf(Fault::misalignedStep, sources);
  order = order + eachOf(Fault::smallStep, steps);
  if (sizeof(T) == 4) order = order + eachOf(Fault::misalignedStep, sources);
  order.push_back({Fault::misalignedStep, accumulator});
  return order;
}

template <class Function, class Reference, class... Role>
void check(const std::string& name, Function function, Reference expected, const std::vector<Told>& order,
           Role... roles) {
  sweep(name.c_str(), function, expected, threaded, roles...);
  walkArguments(name.c_str(), function, order, roles...);
}

// Without a mask and with one; `weight` is none or one role.
template <float (*next)(Pixel), class T, class Plain, class Masked, class... Weight>
void both(const std::string& name, Plain plain, Masked masked, Weight... weight) {
  const auto in = wild(In<T>());
  const auto sum = wild(InOut<float>());
  check(name + "_C1IR", plain, reference::plain<next, T, decltype(weight.chosen)...>, checks<T>({0}, false), in, sum,
        Roi(), weight...);
  forBothStores([&] {
    check(name + "_C1IMR", masked, reference::masked<next, T, decltype(weight.chosen)...>, checks<T>({0}, true), in,
          Mask(), sum, Roi(), weight...);
  });
}
template <class T, class Plain, class Masked>
void bothProducts(const std::string& name, Plain plain, Masked masked) {
  const auto in = wild(In<T>());
  const auto sum = wild(InOut<float>());
  const auto expected = reference::accumulate<reference::addProduct, T>;
  check(name + "_C1IR", plain, reference::product<T>, checks<T>({0, 1}, false), in, in, sum, Roi());
  forBothStores([&] { check(name + "_C1IMR", masked, expected, checks<T>({0, 1}, true), in, in, Mask(), sum, Roi()); });
}

}  // namespace

TEST(sums) {
  using reference::add;
  both<add, uint8_t>("orviAdd_8u32f", orviAdd_8u32f_C1IR, orviAdd_8u32f_C1IMR);
  both<add, int8_t>("orviAdd_8s32f", orviAdd_8s32f_C1IR, orviAdd_8s32f_C1IMR);
  both<add, uint16_t>("orviAdd_16u32f", orviAdd_16u32f_C1IR, orviAdd_16u32f_C1IMR);
  forBothStores([&] {
    check("orviAdd_32f_C1IMR", orviAdd_32f_C1IMR, reference::masked<add, float>, checks<float>({0}, true),
          wild(In<float>()), Mask(), wild(InOut<float>()), Roi());
  });
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
  using reference::addWeighted;
  both<addWeighted, uint8_t>("orviAddWeighted_8u32f", orviAddWeighted_8u32f_C1IR, orviAddWeighted_8u32f_C1IMR, weights);
  both<addWeighted, int8_t>("orviAddWeighted_8s32f", orviAddWeighted_8s32f_C1IR, orviAddWeighted_8s32f_C1IMR, weights);
  both<addWeighted, uint16_t>("orviAddWeighted_16u32f", orviAddWeighted_16u32f_C1IR, orviAddWeighted_16u32f_C1IMR,
                              weights);
  both<addWeighted, float>("orviAddWeighted_32f", orviAddWeighted_32f_C1IR, orviAddWeighted_32f_C1IMR, weights);
}

// Into a third image, which may be a source: the step from the second towards the first.
TEST(averageIntoThirdImage) {
  const auto f = orviAddWeighted_32f_C1R;
  const auto step = [](const float* s1, int32_t step1, const float* s2, int32_t step2, float* d, int32_t dStep,
                       OrvSize roi, float alpha) {
    reference::binary(1, [=](float s, float t) {
      return reference::addWeighted({s, 0, t, alpha, true});
    })(s1, step1, s2, step2, d, dStep, roi);
  };
  const auto in = wild(In<float>());
  const auto both = wild(InOut<float>());
  sweep("orviAddWeighted_32f_C1R", f, step, threaded, in, in, Out<float>(), Roi(), weights);
  sweep("dst = src1", inPlaceOfFirst(f), inPlaceOfFirst(step), {}, in, both, Roi(), weights);
  sweep("dst = src2", inPlaceOfSecond(f), inPlaceOfSecond(step), {}, in, both, Roi(), weights);
  walkArguments(
      "orviAddWeighted_32f_C1R", f,
      pointersThenSizes({0, 1, 2}, 3) + eachOf(Fault::smallStep, {0, 1, 2}) + eachOf(Fault::misalignedStep, {0, 1, 2}),
      in, in, Out<float>(), Roi(), weights);
}

// The accumulator may be the source too.
TEST(accumulatorAsSource) {
  const auto square = reference::unary(1, [](float v) { return reference::addSquare({v, 0, v, 0, true}); });
  const auto products = [](const float* src, int32_t step, float* dst, int32_t dstStep, OrvSize roi) {
    return orviAddProduct_32f_C1IR(src, step, src, step, dst, dstStep, roi);
  };
  sweep("square", inPlace(orviAddSquare_32f_C1IR), inPlace(square), {}, wild(InOut<float>()), Roi());
  sweep("product", inPlace(products), inPlace(square), {}, wild(InOut<float>()), Roi());
}

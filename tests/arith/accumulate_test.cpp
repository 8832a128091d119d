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
  std::vector<int> all = sources;
  for (int i = mask; i <= accumulator; ++i) all.push_back(i);
  auto order = pointersThenSizes(all, accumulator + 1) + eachOf(Fault::smallStep, sources);
  if (sizeof(T) == 2) order = order + eachOf(Fault::misalignedStep, sources);
  if (isMasked) order.push_back({Fault::smallStep, mask});
  order.push_back({Fault::smallStep, accumulator});
  if (sizeof(T) == 4) order = order + eachOf(Fault::misalignedStep, sources);
  order.push_back({Fault::misalignedStep, accumulator});
  return order;
}

// Source and accumulator, then whatever follows them: the arguments of a plain form.
template <class T, class Function, class Reference, class... Rest>
void plain(const char* name, Function function, Reference expected, Rest... rest) {
  sweep(name, function, expected, threaded, wild(In<T>()), wild(InOut<float>()), Roi(), rest...);
  walkArguments(name, function, checks<T>({0}, false), In<T>(), InOut<float>(), Roi(), rest...);
}
template <class T, class Function, class Reference, class... Rest>
void masked(const char* name, Function function, Reference expected, Rest... rest) {
  forBothStores(
      [&] { sweep(name, function, expected, threaded, wild(In<T>()), Mask(), wild(InOut<float>()), Roi(), rest...); });
  walkArguments(name, function, checks<T>({0}, true), In<T>(), Mask(), InOut<float>(), Roi(), rest...);
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
  const auto in = wild(In<T>());
  const auto sum = wild(InOut<float>());
  sweep(name, plainForm, reference::product<T>, threaded, in, in, sum, Roi());
  walkArguments(name, plainForm, checks<T>({0, 1}, false), in, in, sum, Roi());
  forBothStores([&] {
    sweep(name, maskedForm, reference::accumulate<reference::addProduct, T>, threaded, in, in, Mask(), sum, Roi());
  });
  walkArguments(name, maskedForm, checks<T>({0, 1}, true), in, in, Mask(), sum, Roi());
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

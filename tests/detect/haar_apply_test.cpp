// Classifier stages against their plain form, on dense, sparse and cleared masks, in tables of exactly the needed size.
// One body serves both variants.
#include "detect/haar_cases.h"
#include "detect/table_roles.h"
#include "reference/haar.h"

using namespace test;

namespace {

constexpr int window = 11;  // of the random features, right and down

int32_t randomValue(Random& r, int32_t) { return r.one(4) ? (int32_t)r.next() : r.in(-9, 9); }
float randomValue(Random& r, float) { return randomElement<float>(r, false) / 1000; }

// Random features. Tilted rectangles of either turn stay in columns and rows 0 to `window`.
template <class V>
reference::Stage<V> randomStage(Random& r, int features, bool tilt) {
  reference::Stage<V> s;
  s.clockwise = r.one(2);
  // Without features the arrays must still be there.
  s.rects.reserve(1), s.counts.reserve(1), s.tilted.reserve(1);
  for (auto* values : {&s.weights, &s.thresholds, &s.below, &s.above}) values->reserve(1);
  for (int i = 0; i < features; ++i) {
    s.counts.push_back(r.one(3) ? r.in(1, 5) : r.in(2, 3));
    s.thresholds.push_back(randomValue(r, V()));
    s.below.push_back(randomValue(r, V())), s.above.push_back(randomValue(r, V()));
    s.tilted.push_back(tilt && r.one(2));
    for (int k = 0; k < s.counts.back(); ++k) {
      const int w = r.in(1, 3), h = r.in(1, 3);
      const OrvRect turned{r.in(h, window - w), r.in(w, window - w - h), w, h};
      s.rects.push_back(s.tilted.back() ? turned : OrvRect{r.in(0, 4), r.in(0, 4), r.in(1, 7), r.in(1, 7)});
      s.weights.push_back(randomValue(r, V()));
    }
  }
  return s;
}

template <class V>
OrvHaarClassifier* make(const reference::Stage<V>& s) {
  OrvHaarClassifier* state = nullptr;
  makeClassifier(false, &state, s.rects.data(), s.weights.data(), s.thresholds.data(), s.below.data(), s.above.data(),
                 s.counts.data(), (int32_t)s.counts.size());
  CHECK(tilt<V>(s.tilted.data(), s.clockwise, state) == orvStatusOk);
  return state;
}

// A mask that is read and cleared, in runs that are dense in some images and sparse in others.
struct CascadeMask : ImageRole<uint8_t> {
  CascadeMask() : ImageRole<uint8_t>(InOut<uint8_t>()) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<uint8_t>::prepare(r, shape);
    const int sparse = r.in(0, 3);  // 0: none cleared
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) {
        const bool set = sparse == 0 || (sparse == 3 ? r.one(20) : (x / 13 + y) % 2 == 0 || r.one(3));
        candidate->set(x, y, (uint8_t)(set ? r.in(1, 255) : 0)), expected->set(x, y, candidate->at(x, y));
      }
    candidate->keep(), expected->keep();
  }
};

// Random stages. call(stage, scale, threshold, table, step, tilted table, step, norm, step, ...) is made of a
// function's own order.
template <class Form, class T, class V, class Call>
void stages(const char* name, bool mixed, std::vector<int32_t> scales, Call call) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 3 : 6); ++i) {
    const reference::Stage<V> s = randomStage<V>(r, i == 0 ? 0 : r.in(1, 9), mixed);
    OrvHaarClassifier* state = make(s);
    OrvSize size{};
    sizeOf<V>(state, &size);
    const Larger<T> src(wild(In<T>()), mixed ? window : size.width, mixed ? window : size.height);
    const Larger<T> turned(wild(In<T>()), window + 1, window + 1);
    const V middle = i == 0 ? V(0) : (V)(s.below[0] + s.above[0]);
    const auto plain = [&](int32_t scale, V threshold, const T* image, int32_t step, const T* tilted,
                           int32_t tiltedStep, auto... rest) {
      reference::applyStage<Form>(s, image, step, mixed ? tilted : nullptr, tiltedStep, rest..., threshold,
                                  -scale & 63);
    };
    const auto called = [&](auto... argument) { return call(state, argument...); };
    sweep(name, called, plain, {}, Value<int32_t>(scales), Value<V>({0, middle, (V)-100}), src, turned, In<V>(),
          CascadeMask(), Roi(), Result<int32_t>());
    release<V>(state);
  }
}

// A function without tilted table and scale.
template <class Form, class T, class V, class Function>
void plainStages(const char* name, Function function) {
  stages<Form, T, V>(name, false, {0},
                     [=](auto* state, int32_t, V threshold, auto* src, int32_t srcStep, auto*, int32_t, auto... rest) {
                       return function(src, srcStep, rest..., threshold, state);
                     });
}

}  // namespace

TEST(plain) {
  using reference::Narrow;
  plainStages<Narrow, int32_t, int32_t>("orviApplyHaarClassifier_32s_C1RSfs", orviApplyHaarClassifier_32s_C1RSfs);
  plainStages<Narrow, int32_t, float>("orviApplyHaarClassifier_32s32f_C1R", orviApplyHaarClassifier_32s32f_C1R);
  plainStages<Narrow, float, float>("orviApplyHaarClassifier_32f_C1R", orviApplyHaarClassifier_32f_C1R);
}

TEST(mixed) {
  const auto floats = [](auto function) {
    return [=](auto* state, int32_t, float threshold, auto... tables) { return function(tables..., state, threshold); };
  };
  stages<reference::Wide, int32_t, int32_t>(
      "orviApplyMixedHaarClassifier_32s_C1RSfs", true, {0, -1, -7, -31, -63, -65, INT32_MIN},
      [](auto* state, int32_t scale, int32_t threshold, auto... tables) {
        return orviApplyMixedHaarClassifier_32s_C1RSfs(tables..., threshold, state, scale);
      });
  stages<reference::Narrow, int32_t, float>("orviApplyMixedHaarClassifier_32s32f_C1R", true, {0},
                                            floats(orviApplyMixedHaarClassifier_32s32f_C1R));
  stages<reference::Narrow, float, float>("orviApplyMixedHaarClassifier_32f_C1R", true, {0},
                                          floats(orviApplyMixedHaarClassifier_32f_C1R));
}

// The order of the checks; the allocation comes last, and its failure leaves mask and count as they were.
TEST(checks) {
  Random r(seed());
  OrvHaarClassifier *upright = make(randomStage<int32_t>(r, 3, false)), *turned = make(randomStage<float>(r, 3, true));
  const Larger<int32_t> src(In<int32_t>(), 0, 0);
  const Larger<float> floats(In<float>(), 0, 0);
  walkArguments(
      "orviApplyHaarClassifier_32s_C1RSfs",
      [&](auto... a) { return orviApplyHaarClassifier_32s_C1RSfs(a..., 0, upright); },
      tableChecks({0, 1, 2}, {0, 1}, 3), src, In<int32_t>(), CascadeMask(), Roi(), Result<int32_t>());
  walkArguments(
      "orviApplyMixedHaarClassifier_32f_C1R",
      [&](auto... a) { return orviApplyMixedHaarClassifier_32f_C1R(a..., turned, 0.f); },
      tableChecks({0, 1, 2, 3}, {0, 1, 2}, 4), floats, floats, In<float>(), CascadeMask(), Roi(), Result<int32_t>());
  int32_t table[32 * 32] = {}, norm = 0, positive = -5;
  uint8_t mask = 7;
  const auto apply = [&](int32_t* count, const OrvHaarClassifier* state) {
    return orviApplyHaarClassifier_32s_C1RSfs(table, 128, &norm, 4, &mask, 1, {1, 1}, count, INT32_MAX, state);
  };
  CHECK(apply(nullptr, upright) == orvStatusNullPtr && apply(&positive, nullptr) == orvStatusNullPtr);
  steerFailAllocation(1);
  CHECK(apply(&positive, upright) == orvStatusNoMem && mask == 7 && positive == -5);
  const auto mixed = [&](int32_t width, int32_t scale) {
    return orviApplyMixedHaarClassifier_32s_C1RSfs(table, 128, table, 128, &norm, 4, &mask, 1, {width, 1}, &positive,
                                                   INT32_MIN, upright, scale);
  };
  CHECK(mixed(1, 1) == orvStatusBadArg && mixed(2, 1) == orvStatusStep && mixed(1, 0) == orvStatusOk && positive == 1);
  release<int32_t>(upright), release<float>(turned);
  CHECK(steeredLiveAllocations() == 0);
}

// Features reach beyond the table from every cleared pixel, behind its end or before its start: only what survivors ask
// for is read.
TEST(clearedMargin) {
  const OrvRect rects[] = {{0, 0, 4, 4}, {4, 4, 4, 4}};
  const int32_t weights[] = {1, -1}, zero = 0, vote = 1, two = 2;
  constexpr int before = 5, rows = 9;
  OrvHaarClassifier* state;
  orviHaarClassifierInitAlloc_32s(&state, rects, weights, &zero, &vote, &vote, &two, 1);
  for (int width = 15; width < 90; width += 7)
    for (const bool atEnd : {true, false}) {
      const Guarded memory((size_t)(width * rows) * 4, atEnd, 0);
      std::vector<uint8_t> mask((size_t)(width * rows), 0);
      std::vector<int32_t> norm(mask.size(), 0);
      const int first = atEnd ? 0 : before, end = width - 8 + first;
      std::fill(mask.begin() + first, mask.begin() + end, (uint8_t)1);
      const auto* table = (const int32_t*)((uintptr_t)memory.data() - (uintptr_t)first * 4);
      int32_t positive;
      forEachSetting(false, [&] {
        orviApplyHaarClassifier_32s_C1RSfs(table, width * 4, norm.data(), width * 4, mask.data(), width,
                                           {width, atEnd ? rows : 1}, &positive, 1, state);
        CHECK(positive == end - first, "width %d: %d", width, (int)positive);
      });
    }
  orviHaarClassifierFree_32s(state);
}

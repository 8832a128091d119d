// Classifier stages of ten features with two and three rectangles in a window of 24 x 24, by the share of pixels that
// survive: all, a tenth in runs, one in a hundred alone. The stage clears nothing, so calls are alike.
#include "bench.h"

using bench::Frame;

namespace {

constexpr int window = 24, features = 10;

template <class V>
std::shared_ptr<OrvHaarClassifier> classifier(bool turned) {
  std::vector<OrvRect> rects;
  std::vector<V> weights, votes(features, 1), thresholds(features, 0);
  std::vector<int32_t> counts;
  std::vector<uint8_t> mask;
  for (int i = 0; i < features; ++i) {
    counts.push_back(i % 2 + 2), mask.push_back(turned && i % 3 == 0);
    for (int k = 0; k < counts.back(); ++k)
      rects.push_back({8 + i % 4, 5 + (i * 5 + k) % 7, 3 + i % 5, 4 + k * 2}), weights.push_back((V)(k == 0 ? -1 : 2));
  }
  OrvHaarClassifier* state = nullptr;
  if constexpr (std::is_same<V, float>::value) {
    orviHaarClassifierInitAlloc_32f(&state, rects.data(), weights.data(), thresholds.data(), votes.data(), votes.data(),
                                    counts.data(), features);
    orviTiltHaarFeatures_32f(mask.data(), 1, state);
    return {state, orviHaarClassifierFree_32f};
  } else {
    orviHaarClassifierInitAlloc_32s(&state, rects.data(), weights.data(), thresholds.data(), votes.data(), votes.data(),
                                    counts.data(), features);
    orviTiltHaarFeatures_32s(mask.data(), 1, state);
    return {state, orviHaarClassifierFree_32s};
  }
}

// call(table, tilted table, norm, mask, roi, positive, classifier)
template <class T, class V, class Call>
bool stages(const std::string& name, bool turned, const Call& call) {
  const char* const shares[] = {"all", "runs", "few"};
  bool added = true;
  for (int share = 0; share < 3; ++share)
    added &= bench::add(name + ",survivors:" + shares[share], {4}, [=](const Frame& f) {
      const Frame larger{{f.roi.width + window + 2, f.roi.height + window + 2}};
      auto table = larger.image<T>(), tilt = larger.image<T>();
      auto norm = f.image<V>();
      auto mask = f.image<uint8_t>();
      for (int y = 0; y < f.roi.height; ++y)
        for (int x = 0; x < f.roi.width; ++x)
          mask.data[y * mask.step + x] =
              share == 0 || (share == 1 ? (x / 24 + y) % 10 == 0 : (x * 31 + y * 17) % 100 == 0);
      auto state = classifier<V>(turned);
      return [=] {
        int32_t positive;
        call(table, tilt, norm, mask, f.roi, &positive, state.get());
      };
    });
  return added;
}

#define PLAIN(function)                                                                                  \
  [](auto& t, auto&, auto& n, auto& m, OrvSize roi, int32_t* positive, const OrvHaarClassifier* state) { \
    function(t.data, t.step, n.data, n.step, m.data, m.step, roi, positive, 0, state);                   \
  }
#define MIXED(function, ...)                                                                               \
  [](auto& t, auto& u, auto& n, auto& m, OrvSize roi, int32_t* positive, const OrvHaarClassifier* state) { \
    function(t.data, t.step, u.data, u.step, n.data, n.step, m.data, m.step, roi, positive, __VA_ARGS__);  \
  }

const bool lines[] = {
    stages<int32_t, int32_t>("orviApplyHaarClassifier_32s_C1RSfs", false, PLAIN(orviApplyHaarClassifier_32s_C1RSfs)),
    stages<int32_t, float>("orviApplyHaarClassifier_32s32f_C1R", false, PLAIN(orviApplyHaarClassifier_32s32f_C1R)),
    stages<float, float>("orviApplyHaarClassifier_32f_C1R", false, PLAIN(orviApplyHaarClassifier_32f_C1R)),
    stages<int32_t, int32_t>("orviApplyMixedHaarClassifier_32s_C1RSfs", true,
                             MIXED(orviApplyMixedHaarClassifier_32s_C1RSfs, 0, state, 0)),
    stages<int32_t, float>("orviApplyMixedHaarClassifier_32s32f_C1R", true,
                           MIXED(orviApplyMixedHaarClassifier_32s32f_C1R, state, 0)),
    stages<float, float>("orviApplyMixedHaarClassifier_32f_C1R", true,
                         MIXED(orviApplyMixedHaarClassifier_32f_C1R, state, 0)),
};

}  // namespace

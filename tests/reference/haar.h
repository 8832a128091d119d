// Plain form of a classifier stage: from the arrays that the classifier is made of, pixel after pixel.
#pragma once
#include <algorithm>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

template <class V>
struct Stage {
  std::vector<OrvRect> rects;
  std::vector<V> weights, thresholds, below, above;
  std::vector<int32_t> counts;  // rectangles of each feature
  std::vector<uint8_t> tilted;  // which features are turned, once they are
  bool clockwise = true;
};

// The sum over a rectangle at a pixel: the entries at its corners, first to last.
template <class T, class At>
T cornerSum(const OrvRect& k, bool tilted, bool clockwise, At at) {
  const int x = k.x, y = k.y, w = k.width, h = k.height;
  if (!tilted) return at(x + w, y + h) - at(x, y + h) - at(x + w, y) + at(x, y);
  if (clockwise) return at(x + w - h, y + w + h) - at(x - h, y + h) - at(x + w, y + w) + at(x, y);
  return at(x, y + h) - at(x - h, y) - at(x + w, y + h - w) + at(x + w - h, y - w);
}

// What differs between the forms. Integers wrap (the tests are compiled so).
struct Narrow {
  template <class V, class T>
  static V product(T sum, V weight) {
    return (V)sum * weight;
  }
  template <class V>
  static bool isBelow(V response, V threshold, V norm, int) {
    return threshold * norm > response;
  }
};
struct Wide {
  static int64_t product(int32_t sum, int32_t weight) { return (int64_t)sum * weight; }
  static bool isBelow(int64_t response, int32_t threshold, int32_t norm, int shift) {
    return (int64_t)((uint64_t)response << shift) < (int64_t)threshold * norm;
  }
};

// `tilt` null: the plain functions, which take no notice of turned features.
template <class Form, class T, class V>
void applyStage(const Stage<V>& stage, const T* src, int32_t srcStep, const T* tilt, int32_t tiltStep, const V* norm,
                int32_t normStep, uint8_t* mask, int32_t maskStep, OrvSize roi, int32_t* positive, V stageThreshold,
                int shift) {
  std::vector<size_t> firsts(1, 0);
  for (const int32_t n : stage.counts) firsts.push_back(firsts.back() + (size_t)n);
  // Features are evaluated by their number of rectangles: two, three, then all others.
  std::vector<size_t> order;
  for (const int group : {2, 3, 0})
    for (size_t f = 0; f < stage.counts.size(); ++f) {
      const int n = stage.counts[f];
      if (group == (n == 2 || n == 3 ? n : 0)) order.push_back(f);
    }
  *positive = 0;
  forEachElement(roi, 1, [&](int r, int c) {
    if (load(mask, maskStep, r, c) == 0) return;
    V sum = 0;
    for (const size_t f : order) {
      decltype(Form::product(T(), V())) response = 0;
      const bool turned = stage.tilted[f];
      for (size_t k = firsts[f]; k < firsts[f + 1]; ++k)
        response += Form::product(cornerSum<T>(stage.rects[k], turned, stage.clockwise,
                                               [&](int x, int y) {
                                                 return turned && tilt ? load(tilt, tiltStep, r + y + 1, c + x + 1)
                                                                       : load(src, srcStep, r + y, c + x);
                                               }),
                                  stage.weights[k]);
      sum += Form::isBelow(response, stage.thresholds[f], load(norm, normStep, r, c), shift) ? stage.below[f]
                                                                                             : stage.above[f];
    }
    if (stageThreshold > sum) store(mask, maskStep, r, c, (uint8_t)0);
    else ++*positive;
  });
}

}  // namespace reference

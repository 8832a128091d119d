// Making and releasing classifiers.
//
// Upright features are laid down by their number of rectangles, two, three, then all others, in input order within each
// group; tilted classifiers keep the input order.
// One body serves both variants.
#include "detect/haar_classifier.h"
#include "core/primitives.h"

namespace {

// The arrays that a classifier is made from.
template <class V>
struct Input {
  const OrvRect* rects;
  const V *weights, *thresholds, *valuesBelow, *valuesAbove;
  const int32_t *rectsPerFeature, featureCount;
};

bool isRectangle(const OrvRect& r) { return r.x >= 0 && r.y >= 0 && r.width >= 1 && r.height >= 1; }

// Whether a weight, truncated to a whole number, is -1.
bool isMinusOne(int32_t weight) { return weight == -1; }
bool isMinusOne(float weight) { return weight > -2 && weight <= -1; }

template <class V>
HaarRect<V> makeRect(const OrvRect& r, V weight, bool tilted) {
  const int32_t x = r.x, y = r.y, w = r.width, h = r.height;
  if (tilted) return {{{x + w - h, y + w + h}, {x - h, y + h}, {x + w, y + w}, {x, y}}, weight};
  return {{{x + w, y + h}, {x, y + h}, {x + w, y}, {x, y}}, weight};
}

// Lays features and rectangles down one after the other.
template <class V>
struct Builder {
  const Input<V>& input;
  OrvHaarClassifier* state;
  bool tilted;
  HaarFeature<V>* feature;
  HaarRect<V>* rect;

  Builder(const Input<V>& in, OrvHaarClassifier* block, int32_t rectCount, bool tilt)
      : input(in), state(block), tilted(tilt), feature((HaarFeature<V>*)(void*)(block + 1)) {
    rect = (HaarRect<V>*)(void*)(feature + input.featureCount);
    *state = {input.featureCount, rectCount, feature, {0, 0, 0, 0}, tilt, {0, 0, 0}, 1, 0};
    if (rectCount == 0) return;
    state->bound = input.rects[0];
    if (tilt) state->bound.width = input.rects[0].width - input.rects[0].height;
    if (tilt) state->bound.height = input.rects[0].width + input.rects[0].height;
  }

  // The bound's width and height are right and lower ends until it is finished.
  void widen(const OrvRect& r, OrvPoint end) {
    OrvRect b = state->bound;
    b.x = r.x < b.x ? r.x : b.x;
    b.y = r.y < b.y ? r.y : b.y;
    if (b.x + b.width < end.x) b.width = end.x;
    if (b.y + b.height < end.y) b.height = end.y;
    state->bound = b;
  }

  // Feature `index` of the input, whose first rectangle is `first`.
  void place(int32_t index, int32_t first) {
    const int32_t count = input.rectsPerFeature[index];
    *feature++ = {count,
                  0,
                  rect,
                  input.thresholds[index],
                  input.valuesBelow[index],
                  input.valuesAbove[index],
                  (int32_t)((uint32_t)index << 8) | (int32_t)tilted};
    for (int32_t i = first; i < first + count; ++i) {
      *rect = makeRect(input.rects[i], input.weights[i], tilted);
      const OrvPoint end = rect++->corner[0];
      widen(input.rects[i], end);
    }
    if (!isMinusOne(input.weights[first])) state->firstWeightMinusOne = 0;
    state->count[HaarCounts<V>::placed] += count;
    if (tilted) return;
    state->count[HaarCounts<V>::two] += count == 2;
    state->count[HaarCounts<V>::twoOrThree] += count == 2 || count == 3;
  }

  // All features of the input of which take(number of rectangles) is true.
  template <class Take>
  void placeAll(const Take& take) {
    for (int32_t i = 0, first = 0; i < input.featureCount; first += input.rectsPerFeature[i++])
      if (take(input.rectsPerFeature[i])) place(i, first);
  }

  void finish() {
    state->bound.width -= state->bound.x;
    state->bound.height -= state->bound.y;
  }
};

template <class V>
OrvStatus create(OrvHaarClassifier** state, const Input<V>& input, bool tilted) {
  ORV_REQUIRE(allSet(state, input.rects, input.weights, input.thresholds, input.valuesBelow, input.valuesAbove,
                     input.rectsPerFeature),
              orvStatusNullPtr);
  ORV_REQUIRE(input.featureCount >= 0, orvStatusSize);
  int64_t rectCount = 0;
  for (int32_t i = 0; i < input.featureCount; rectCount += input.rectsPerFeature[i++])
    ORV_REQUIRE(input.rectsPerFeature[i] >= 1, orvStatusSize);
  for (int64_t i = 0; i < rectCount && !tilted; ++i) ORV_REQUIRE(isRectangle(input.rects[i]), orvStatusBadArg);
  const int64_t bytes = 56 + 32 * (int64_t)input.featureCount + 36 * rectCount;
  void* const block = bytes > INT32_MAX ? nullptr : orvsMalloc_8u((int32_t)bytes);
  ORV_REQUIRE(block != nullptr, orvStatusNoMem);

  Builder<V> builder(input, (OrvHaarClassifier*)block, (int32_t)rectCount, tilted);
  if (tilted) {
    builder.placeAll([](int32_t) { return true; });
  } else {
    builder.placeAll([](int32_t rects) { return rects == 2; });
    builder.placeAll([](int32_t rects) { return rects == 3; });
    builder.placeAll([](int32_t rects) { return rects != 2 && rects != 3; });
  }
  builder.finish();
  // A tilted rectangle also reaches `height` columns to the left of its tip.
  for (int64_t i = 0; i < rectCount && tilted; ++i) {
    const OrvRect& r = input.rects[i];
    if (isRectangle(r) && r.x >= r.height - 1) continue;
    orvsFree(block);
    *state = nullptr;
    return orvStatusBadArg;
  }
  *state = (OrvHaarClassifier*)block;
  return orvStatusOk;
}

OrvStatus release(OrvHaarClassifier* state) {
  ORV_REQUIRE(state != nullptr, orvStatusNullPtr);
  orvsFree(state);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviHaarClassifierInitAlloc_32s(OrvHaarClassifier** state, const OrvRect* rects, const int32_t* weights,
                                          const int32_t* thresholds, const int32_t* valuesBelow,
                                          const int32_t* valuesAbove, const int32_t* rectsPerFeature,
                                          int32_t featureCount) {
  return create<int32_t>(state, {rects, weights, thresholds, valuesBelow, valuesAbove, rectsPerFeature, featureCount},
                         false);
}

OrvStatus orviHaarClassifierInitAlloc_32f(OrvHaarClassifier** state, const OrvRect* rects, const float* weights,
                                          const float* thresholds, const float* valuesBelow, const float* valuesAbove,
                                          const int32_t* rectsPerFeature, int32_t featureCount) {
  return create<float>(state, {rects, weights, thresholds, valuesBelow, valuesAbove, rectsPerFeature, featureCount},
                       false);
}

OrvStatus orviTiltedHaarClassifierInitAlloc_32s(OrvHaarClassifier** state, const OrvRect* rects, const int32_t* weights,
                                                const int32_t* thresholds, const int32_t* valuesBelow,
                                                const int32_t* valuesAbove, const int32_t* rectsPerFeature,
                                                int32_t featureCount) {
  return create<int32_t>(state, {rects, weights, thresholds, valuesBelow, valuesAbove, rectsPerFeature, featureCount},
                         true);
}

OrvStatus orviTiltedHaarClassifierInitAlloc_32f(OrvHaarClassifier** state, const OrvRect* rects, const float* weights,
                                                const float* thresholds, const float* valuesBelow,
                                                const float* valuesAbove, const int32_t* rectsPerFeature,
                                                int32_t featureCount) {
  return create<float>(state, {rects, weights, thresholds, valuesBelow, valuesAbove, rectsPerFeature, featureCount},
                       true);
}

OrvStatus orviHaarClassifierFree_32s(OrvHaarClassifier* state) { return release(state); }
OrvStatus orviHaarClassifierFree_32f(OrvHaarClassifier* state) { return release(state); }

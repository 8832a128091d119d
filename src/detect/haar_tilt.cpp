// Size of a classifier, and the turning of chosen features.
// One body serves both variants.
#include "detect/haar_classifier.h"

namespace {

template <class V>
OrvStatus reach(const OrvHaarClassifier* state, OrvSize* size) {
  ORV_REQUIRE(allSet(state, size), orvStatusNullPtr);
  OrvSize most = {0, 0};
  const HaarFeature<V>* feature = featuresOf<V>(state);
  for (int32_t i = 0; i < state->featureCount; ++i)
    for (int32_t k = 0; k < feature[i].numRects; ++k) {
      const HaarRect<V> rect = feature[i].rects[k];
      most.width = rect.corner[2].x > most.width ? rect.corner[2].x : most.width;
      most.height = rect.corner[0].y > most.height ? rect.corner[0].y : most.height;
    }
  *size = most;
  return orvStatusOk;
}

// About its upper corner clockwise, or about its left side the other way.
template <class V>
void turn(HaarRect<V>* rect, bool clockwise) {
  const HaarRect<V> r = *rect;
  const int32_t x = r.corner[3].x, y = r.corner[3].y, w = r.corner[0].x - x, h = r.corner[0].y - y;
  const OrvPoint right[4] = {{x + w - h, y + h + w}, {x - h, y + h}, {x + w, y + w}, {x, y}};
  const OrvPoint left[4] = {{x, y + h}, {x - h, y}, {x + w, y + h - w}, {x + w - h, y - w}};
  for (int i = 0; i < 4; ++i) rect->corner[i] = clockwise ? right[i] : left[i];
}

// A turned feature loses its place in the input: its tag is 1.
template <class V>
OrvStatus tilt(const uint8_t* mask, int32_t flag, OrvHaarClassifier* state) {
  ORV_REQUIRE(allSet(mask, state), orvStatusNullPtr);
  ORV_REQUIRE(state->tilted == 0, orvStatusBadArg);
  bool any = false;
  HaarFeature<V>* const features = featuresOf<V>(state);
  for (int32_t i = 0; i < state->featureCount; ++i) {
    any |= mask[i] != 0;
    const int32_t index = features[i].tag >> 8;
    if (index < 0 || index >= state->featureCount || mask[index] == 0) continue;
    features[i].tag = 1;
    for (int32_t k = 0; k < features[i].numRects; ++k) turn(features[i].rects + k, flag != 0);
  }
  if (any) state->tilted |= 1;
  return orvStatusOk;
}

}  // namespace

OrvStatus orviGetHaarClassifierSize_32s(const OrvHaarClassifier* state, OrvSize* size) {
  return reach<int32_t>(state, size);
}
OrvStatus orviGetHaarClassifierSize_32f(const OrvHaarClassifier* state, OrvSize* size) {
  return reach<float>(state, size);
}

OrvStatus orviTiltHaarFeatures_32s(const uint8_t* mask, int32_t flag, OrvHaarClassifier* state) {
  return tilt<int32_t>(mask, flag, state);
}
OrvStatus orviTiltHaarFeatures_32f(const uint8_t* mask, int32_t flag, OrvHaarClassifier* state) {
  return tilt<float>(mask, flag, state);
}

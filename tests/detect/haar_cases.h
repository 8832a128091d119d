// The functions of classifiers of either type by one name.
#pragma once
#include <type_traits>
#include "framework/subject.h"

namespace test {

inline OrvStatus makeClassifier(bool tilted, OrvHaarClassifier** state, const OrvRect* rects, const int32_t* weights,
                                const int32_t* thresholds, const int32_t* below, const int32_t* above,
                                const int32_t* counts, int32_t features) {
  return (tilted ? orviTiltedHaarClassifierInitAlloc_32s : orviHaarClassifierInitAlloc_32s)(
      state, rects, weights, thresholds, below, above, counts, features);
}
inline OrvStatus makeClassifier(bool tilted, OrvHaarClassifier** state, const OrvRect* rects, const float* weights,
                                const float* thresholds, const float* below, const float* above, const int32_t* counts,
                                int32_t features) {
  return (tilted ? orviTiltedHaarClassifierInitAlloc_32f : orviHaarClassifierInitAlloc_32f)(
      state, rects, weights, thresholds, below, above, counts, features);
}

template <class V>
constexpr bool isFloat = std::is_same<V, float>::value;
template <class V>
constexpr auto sizeOf = isFloat<V> ? orviGetHaarClassifierSize_32f : orviGetHaarClassifierSize_32s;
template <class V>
constexpr auto tilt = isFloat<V> ? orviTiltHaarFeatures_32f : orviTiltHaarFeatures_32s;
template <class V>
constexpr auto release = isFloat<V> ? orviHaarClassifierFree_32f : orviHaarClassifierFree_32s;

}  // namespace test

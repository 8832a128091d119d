// Labels and boundaries in place.
// One body serves both variants.
#include "segment/label_cases.h"

using namespace test;

namespace {

template <class T>
void labels(const char* name,
            OrvStatus (*function)(T*, int32_t, OrvSize, int32_t, int32_t, int32_t, int32_t*, uint8_t*),
            OrvStatus (*size)(OrvSize, int32_t*), int32_t limit) {
  const auto plain = [](T* image, int32_t step, OrvSize roi, int32_t low, int32_t high, int32_t norm, int32_t* count,
                        uint8_t*) { plainLabels(image, step, image, step, roi, low, high, norm, count); };
  checkLabels(name, function, plain, limit, pointersThenSizes({0, 5, 6}, 1) + stepsOf<T>({0}), size, Markers<T>(true));
}

template <class T>
using Bound = OrvStatus (*)(T*, int32_t, OrvSize, T, int32_t);

template <class T>
void bound(const char* name, Bound<T> function) {
  // Labels of a few values and of many, some of them the border's.
  sweep(name, function, reference::boundSegments<T>, {300, 200}, InOut<T>(), Roi(), Value<T>({0, 1, (T)-1}),
        Value<int32_t>({0, 1}));
  walkArguments(name, function,
                pointersThenSizes({0}, 1) + stepsOf<T>({0}) + std::vector<Told>{badValue(3, -1), badValue(3, 2)},
                InOut<T>(), Roi(), Value<T>({0}), Value<int32_t>({0}));
}

}  // namespace

TEST(labels) {
  labels("LabelMarkers_8u_C1IR", orviLabelMarkers_8u_C1IR, orviLabelMarkersGetBufferSize_8u_C1R, 255);
  labels("LabelMarkers_16u_C1IR", orviLabelMarkers_16u_C1IR, orviLabelMarkersGetBufferSize_16u_C1R, 65535);
}

TEST(boundaries) {
  bound("orviBoundSegments_8u_C1IR", orviBoundSegments_8u_C1IR);
  bound("orviBoundSegments_16u_C1IR", orviBoundSegments_16u_C1IR);
}

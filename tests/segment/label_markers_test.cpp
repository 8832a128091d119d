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
  std::vector<Told> order = pointersThenSizes({0, 5, 6}, 1);
  order.push_back({Fault::smallStep, 0});
  if (sizeof(T) > 1) order.push_back({Fault::misalignedStep, 0});
  checkLabels(name, function, plain, limit, order, size, Markers<T>(true));
  T pixel = 1;
  int32_t count = 7;
  uint8_t buffer[38];
  for (const auto& [low, high, norm] : badLabels(limit))
    CHECK(function(&pixel, 2, {1, 1}, low, high, norm, &count, buffer) == orvStatusBadArg && pixel == 1 && count == 7);
}

template <class T>
using Bound = OrvStatus (*)(T*, int32_t, OrvSize, T, int32_t);

template <class T>
void bound(const char* name, Bound<T> function) {
  // Labels of a few values and of many, some of them the border's.
  sweep(name, function, reference::boundSegments<T>, {300, 200}, InOut<T>(), Roi(), Value<T>({0, 1, (T)-1}),
        Value<int32_t>({0, 1}));
  std::vector<Told> order = pointersThenSizes({0}, 1);
  order.push_back({Fault::smallStep, 0});
  if (sizeof(T) > 1) order.push_back({Fault::misalignedStep, 0});
  walkArguments(name, function, order, InOut<T>(), Roi(), Value<T>({0}), Value<int32_t>({0}));
  T pixel = 0;
  for (const int32_t norm : {-1, 2}) CHECK(function(&pixel, 2, {1, 1}, 1, norm) == orvStatusBadArg);
}

}  // namespace

TEST(labels) {
  labels("LabelMarkers_8u_C1IR", orviLabelMarkers_8u_C1IR, orviLabelMarkersGetBufferSize_8u_C1R, 255);
  labels("LabelMarkers_16u_C1IR", orviLabelMarkers_16u_C1IR, orviLabelMarkersGetBufferSize_16u_C1R, 65535);
}

// Segments of several pixels a side, so that lines meet.
TEST(boundaries) {
  bound("orviBoundSegments_8u_C1IR", orviBoundSegments_8u_C1IR);
  bound("orviBoundSegments_16u_C1IR", orviBoundSegments_16u_C1IR);
  uint8_t image[4 * 4] = {1, 1, 2, 2, 1, 1, 2, 2, 3, 3, 4, 4, 3, 3, 4, 4};
  const uint8_t want[4 * 4] = {1, 1, 9, 2, 1, 1, 9, 2, 9, 9, 4, 9, 3, 3, 9, 4};
  orviBoundSegments_8u_C1IR(image, 4, {4, 4}, 9, 1);
  CHECK(memcmp(image, want, 16) == 0);
}

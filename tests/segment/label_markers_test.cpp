// Labels and boundaries in place.
// One body serves both variants.
#include "segment/label_cases.h"

using namespace test;

namespace {

template <class T>
using Label = OrvStatus (*)(T*, int32_t, OrvSize, int32_t, int32_t, int32_t, int32_t*, uint8_t*);

template <class T>
void labelInPlace(const char* name, Label<T> function, int32_t limit) {
  const Context context(name);
  Random r(seed());
  for (const Shape& shape : shapes()) {
    Image<T> image(r, shape.width, shape.height, 1);
    const Context size(std::to_string(shape.width) + "x" + std::to_string(shape.height));
    checkLabels(r, shape, limit - 1, image, image, [&](const LabelArguments& a) {
      return function(image.data(), image.step(), a.size, a.minLabel, a.maxLabel, a.norm, a.count, a.buffer);
    });
  }
  Image<T> image(r, 9, 5, 1);
  walkLabels(
      limit, image.step(), sizeof(T),
      [&](StepFault& f) {
        return function(f.null ? nullptr : image.data(), f.step, f.a.size, f.a.minLabel, f.a.maxLabel, f.a.norm,
                        f.a.count, f.a.buffer);
      },
      [&] { return image.unchanged(); });
}

template <class T>
using Bound = OrvStatus (*)(T*, int32_t, OrvSize, T, int32_t);

template <class T>
void bound(const char* name, Bound<T> function) {
  const auto plain = [](T* image, int32_t step, OrvSize size, T border, int32_t norm) {
    reference::boundSegments(image, step, size, border, norm);
  };
  // Labels of a few values and of many, some of them the border's.
  sweep(name, function, plain, {300, 200}, InOut<T>(), Roi(), Value<T>({0, 1, (T)-1}), Value<int32_t>({0, 1}));
  std::vector<Told> order = pointersThenSizes({0}, 1);
  order.push_back({Fault::smallStep, 0});
  if (sizeof(T) > 1) order.push_back({Fault::misalignedStep, 0});
  walkArguments(name, function, order, InOut<T>(), Roi(), Value<T>({0}), Value<int32_t>({0}));
  T pixel = 0;
  for (const int32_t norm : {-1, 2}) CHECK(function(&pixel, 2, {1, 1}, 1, norm) == orvStatusBadArg);
}

}  // namespace

TEST(labels) {
  labelInPlace("orviLabelMarkers_8u_C1IR", orviLabelMarkers_8u_C1IR, 255);
  labelInPlace("orviLabelMarkers_16u_C1IR", orviLabelMarkers_16u_C1IR, 65535);
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

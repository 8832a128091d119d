// Labels of 32 bits, and speckles.
#include "segment/label_cases.h"

using namespace test;
using reference::load;
using reference::store;

namespace {

template <class T>
using Mark = OrvStatus (*)(T*, int32_t, OrvSize, T, int32_t, T, int32_t, uint8_t*);

template <class T>
void plainSpeckles(T* image, int32_t step, OrvSize size, T speckle, int32_t most, T difference, int32_t, uint8_t*) {
  const auto at = [&](int i) { return load(image, step, i / size.width, i % size.width); };
  using Wide = std::conditional_t<std::is_same<T, float>::value, float, int>;
  const auto r = reference::regions(
      size, false, [&](int i) { return at(i) != speckle; },
      [&](int i, int k) { return std::abs((Wide)at(i) - (Wide)at(k)) <= (Wide)difference; });
  for (int i = 0; i < size.width * size.height; ++i)
    if (const int n = r.number[(size_t)i])
      if (r.count[(size_t)n] <= most) store(image, step, i / size.width, i % size.width, speckle);
}

// Scratch of exactly 13 bytes a pixel.
struct SpeckleBuffer {
  std::shared_ptr<Guarded> memory;
  void prepare(Random& r, const Shape& s) {
    memory = std::make_shared<Guarded>((size_t)(13 * s.width * s.height), true, (size_t)r.in(0, 3));
  }
  std::tuple<uint8_t*> arguments(Side) { return {memory->data()}; }
  void reset() {}
  bool untouched() const { return true; }
  void verify(int) const { CHECK(memory->intact()); }
};

template <class T>
void speckles(const char* name, Mark<T> function, std::vector<T> values, std::vector<T> differences, bool stepChecked) {
  const Value<int32_t> sizes({0, 1, 2, 5, 1000, -1, INT32_MIN});
  sweep(name, function, plainSpeckles<T>, {60, 60}, wild(InOut<T>()), Roi(), Value<T>(values), sizes,
        Value<T>(differences), Value<int32_t>({1}), SpeckleBuffer());
  std::vector<Told> order = {{Fault::null, 0}, {Fault::null, 6}, {Fault::width, 1}, {Fault::height, 1}};
  if (stepChecked) order.push_back({Fault::smallStep, 0}), order.push_back({Fault::misalignedStep, 0});
  walkArguments(name, function, order, InOut<T>(), Roi(), Value<T>({1}), Value<int32_t>({1}), Value<T>({1}),
                Value<int32_t>({1}), SpeckleBuffer());
  T pixel = 0;
  uint8_t buffer[13];
  CHECK(function(&pixel, sizeof(T), {1, 1}, 1, 1, 1, 0, buffer) == orvStatusNorm && pixel == 0);
}

}  // namespace

TEST(labels) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    Image<uint8_t> image(r, shape.width, shape.height, 1);
    Image<int32_t> labels(r, shape.width, shape.height, 1);
    const Context size(std::to_string(shape.width) + "x" + std::to_string(shape.height));
    checkLabels(r, shape, INT32_MAX - 1, image, labels, [&](const LabelArguments& a) {
      return orviLabelMarkers_8u32s_C1R(image.data(), image.step(), labels.data(), labels.step(), a.size, a.minLabel,
                                        a.maxLabel, a.norm, a.count, a.buffer);
    });
  }
  Image<uint8_t> image(r, 9, 5, 1);
  Image<int32_t> labels(r, 9, 5, 1);
  walkLabels(
      INT32_MAX, labels.step(), 4,
      [&](StepFault& f) {
        return orviLabelMarkers_8u32s_C1R(image.data(), image.step(), f.null ? nullptr : labels.data(), f.step,
                                          f.a.size, f.a.minLabel, f.a.maxLabel, f.a.norm, f.a.count, f.a.buffer);
      },
      [&] { return labels.unchanged(); });
}

TEST(integers) {
  speckles<uint8_t>("orviMarkSpeckles_8u_C1IR", orviMarkSpeckles_8u_C1IR, {0, 3, 255}, {0, 1, 20, 255}, false);
  speckles<uint16_t>("orviMarkSpeckles_16u_C1IR", orviMarkSpeckles_16u_C1IR, {0, 65535}, {0, 1, 300, 65535}, true);
  speckles<int16_t>("orviMarkSpeckles_16s_C1IR", orviMarkSpeckles_16s_C1IR, {-32768, 0}, {-1, 0, 2, 32767}, true);
}
TEST(floats) {
  speckles<float>("orviMarkSpeckles_32f_C1IR", orviMarkSpeckles_32f_C1IR, {0, NAN, 1e30f}, {0, 1, 1e4f, INFINITY, NAN},
                  true);
}

// A pixel of the speckles' own value divides a region.
TEST(dividedRegion) {
  uint8_t image[5] = {7, 7, 0, 7, 8}, buffer[65];
  CHECK(orviMarkSpeckles_8u_C1IR(image, 5, {5, 1}, 0, 2, 0, 1, buffer) == orvStatusOk);
  const uint8_t want[5] = {0, 0, 0, 0, 0};
  CHECK(memcmp(image, want, 5) == 0);
}

TEST(speckleSizes) {
  int32_t bytes = 0;
  CHECK(orviMarkSpecklesGetBufferSize({0, 1}, 0, 2, nullptr) == orvStatusNullPtr);
  CHECK(orviMarkSpecklesGetBufferSize({0, 1}, 0, 2, &bytes) == orvStatusSize);
  CHECK(orviMarkSpecklesGetBufferSize({1, 1}, orvData64f, 2, &bytes) == orvStatusDataType);
  CHECK(orviMarkSpecklesGetBufferSize({1, 1}, orvData8u, 3, &bytes) == orvStatusChannels && bytes == 0);
  for (const OrvDataType type : {orvData8u, orvData16u, orvData16s, orvData32f})
    CHECK(orviMarkSpecklesGetBufferSize({7, 3}, type, 1, &bytes) == orvStatusOk && bytes == 13 * 21);
}

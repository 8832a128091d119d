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

template <class T>
void speckles(const char* name, Mark<T> function, std::vector<T> values, std::vector<T> differences, bool stepChecked) {
  const Scratch buffer(
      [](OrvSize roi, int32_t* bytes) { return orviMarkSpecklesGetBufferSize(roi, orvData8u, 1, bytes); });
  const Value<int32_t> sizes({0, 1, 2, 5, 1000, -1, INT32_MIN});
  sweep(name, function, plainSpeckles<T>, {60, 60}, wild(InOut<T>()), Roi(), Value<T>(values), sizes,
        Value<T>(differences), Value<int32_t>({1}), buffer);
  const std::vector<Told> order = pointersThenSizes({0, 6}, 1) + (stepChecked ? stepsOf<T>({0}) : std::vector<Told>()) +
                                  std::vector<Told>{badValue(5, 0, orvStatusNorm)};
  walkArguments(name, function, order, InOut<T>(), Roi(), Value<T>({1}), Value<int32_t>({1}), Value<T>({1}),
                Value<int32_t>({1}), buffer);
}

}  // namespace

TEST(labels) {
  const auto plain = [](const uint8_t* src, int32_t srcStep, int32_t* dst, int32_t dstStep, OrvSize roi, int32_t low,
                        int32_t high, int32_t norm, int32_t* count,
                        uint8_t*) { plainLabels(src, srcStep, dst, dstStep, roi, low, high, norm, count); };
  checkLabels(
      "LabelMarkers_8u32s_C1R", orviLabelMarkers_8u32s_C1R, plain, INT32_MAX,
      pointersThenSizes({0, 1, 6, 7}, 2) + eachOf(Fault::smallStep, {0, 1}) + eachOf(Fault::misalignedStep, {1}),
      orviLabelMarkersGetBufferSize_8u32s_C1R, Markers<uint8_t>(false), Out<int32_t>());
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

TEST(speckleSizes) {
  int32_t bytes = 0;
  CHECK(orviMarkSpecklesGetBufferSize({0, 1}, 0, 2, nullptr) == orvStatusNullPtr);
  CHECK(orviMarkSpecklesGetBufferSize({0, 1}, 0, 2, &bytes) == orvStatusSize);
  CHECK(orviMarkSpecklesGetBufferSize({1, 1}, orvData64f, 2, &bytes) == orvStatusDataType);
  CHECK(orviMarkSpecklesGetBufferSize({1, 1}, orvData8u, 3, &bytes) == orvStatusChannels && bytes == 0);
  for (const OrvDataType type : {orvData8u, orvData16u, orvData16s, orvData32f})
    CHECK(orviMarkSpecklesGetBufferSize({7, 3}, type, 1, &bytes) == orvStatusOk && bytes == 13 * 21);
}

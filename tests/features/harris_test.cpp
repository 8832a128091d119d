// The Harris response and line suppression against their definitions: windows, filters, every border; sizes, statuses.
#include "features/planned.h"
#include "reference/tensor.h"

using namespace test;
using reference::FilterPlan;

namespace {

OrvStatus harris(const uint8_t* src, int32_t step, FilterPlan p, float* dst, int32_t dstStep, OrvSize roi,
                 uint8_t* buffer, float k, float scale) {
  return orviHarrisCorner_8u32f_C1R(src, step, dst, dstStep, roi, p.filter, p.mask, p.window, p.border,
                                    (uint8_t)p.value, buffer, k, scale);
}
OrvStatus harris(const float* src, int32_t step, FilterPlan p, float* dst, int32_t dstStep, OrvSize roi,
                 uint8_t* buffer, float k, float scale) {
  return orviHarrisCorner_32f_C1R(src, step, dst, dstStep, roi, p.filter, p.mask, p.window, p.border, buffer, k, scale,
                                  p.value);
}
OrvStatus lines(const uint8_t* src, int32_t step, FilterPlan p, const uint8_t* feature, int32_t featureStep,
                uint8_t* dst, int32_t dstStep, OrvSize roi, uint8_t* buffer, float threshold) {
  return orviLineSuppression_8u_C1R(src, step, feature, featureStep, dst, dstStep, roi, p.filter, p.mask, p.window,
                                    p.border, (uint8_t)p.value, buffer, threshold);
}

template <class T>
void responses(const char* name) {
  FilterPlan plan;
  const Scratch buffer([&](OrvSize roi, int32_t* bytes) {
    return orviHarrisCornerGetBufferSize(roi, plan.mask, plan.window, sizeof(T) == 1 ? orvData8u : orvData32f, 1,
                                         bytes);
  });
  for (const Shape wide : {Shape{1500, 5}, Shape{700, 9}})
    sweep(
        name, [](auto... a) { return harris(a...); }, reference::harris<T>, wide, Planned<T>(&plan), Out<float>(),
        Roi(), buffer, Value<float>({0.04f}), Value<float>({1.f, 1e-6f}));
}

}  // namespace

TEST(harris) {
  responses<uint8_t>("orviHarrisCorner_8u32f_C1R");
  responses<float>("orviHarrisCorner_32f_C1R");
}

TEST(lineSuppression) {
  FilterPlan plan;
  const Scratch buffer([&](OrvSize roi, int32_t* bytes) {
    return orviLineSuppressionGetBufferSize(roi, plan.mask, plan.window, orvData8u, 1, bytes);
  });
  sweep("orviLineSuppression_8u_C1R", lines, reference::lineSuppression, {1500, 5}, Planned<uint8_t>(&plan),
        In<uint8_t>(), Out<uint8_t>(), Roi(), buffer, Value<float>({-1, 0, 1, 4, 5, 10, 39}));
}

// Worked by hand; a region that is one piece, and one whose left strip is the largest.
TEST(sizes) {
  const struct {
    OrvSize roi;
    int32_t mask, window, type, bytes;
  } cases[] = {{{4, 4}, orvMaskSize3x3, 3, orvData8u, 1696},
               {{1920, 1080}, orvMaskSize3x3, 3, orvData8u, 251224},
               // planes (3 * 32 + 2 * 32) * 7, gradient 4 * (7 + 4) * 7 + 8 * 7, sums 32 * 7 + 1272
               {{1, 1}, orvMaskSize5x5, 7, orvData32f, 2680}};
  int32_t bytes = 0;
  for (const auto& c : cases)
    CHECK(orviHarrisCornerGetBufferSize(c.roi, c.mask, c.window, c.type, 1, &bytes) == 0 && bytes == c.bytes);
  for (const int window : {-1, -93, -100000, 1 << 28, INT32_MAX, INT32_MIN})
    CHECK(orviHarrisCornerGetBufferSize({640, 480}, orvMaskSize3x3, window, orvData8u, 1, &bytes) == orvStatusOk);
}

namespace {

// The order of the checks. `aligned`: the images whose steps are; what only one function has comes last.
template <class T, class D, class Function, class... Feature>
void statuses(const char* name, Function function, std::vector<int> nulls, const std::vector<int>& aligned,
              const std::vector<int>& images, Feature... feature) {
  std::vector<Told> order =
      pointersThenSizes(nulls, 2) + eachOf(Fault::misalignedStep, aligned) +
      std::vector<Told>{badValue(3, 3, orvStatusFilterType), badValue(4, 35, orvStatusMaskSize),
                        badValue(4, orvMaskSize5x5, orvStatusMaskSize),  // not of this filter
                        badValue(6, orvBorderMirr, orvStatusBorder), badValue(5, 0, orvStatusSize)};
  for (const int i : images) order.push_back(badValue(i, -40, orvStatusStep));
  const auto called = [&](const T* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, int32_t filter,
                          int32_t mask, int32_t window, int32_t border, uint8_t* buffer, auto... more) {
    return function(src, srcStep, FilterPlan{filter, mask, window, border, 0}, dst, dstStep, roi, buffer, more...);
  };
  walkArguments(name, called, order, In<T>(), Out<D>(), Roi(), Value<int32_t>({orvFilterKernelScharr}),
                Value<int32_t>({orvMaskSize3x3}), Value<int32_t>({3}), Value<int32_t>({orvBorderRepl}),
                Scratch([](OrvSize roi, int32_t* bytes) {
                  return orviHarrisCornerGetBufferSize(roi, orvMaskSize3x3, 3, orvData32f, 1, bytes);
                }),
                feature...);
}

}  // namespace

TEST(statuses) {
  const auto response = [](auto... a) { return harris(a..., 0.04f, 1); };
  statuses<uint8_t, float>("orviHarrisCorner_8u32f_C1R", response, {0, 1, 7}, {1}, {0, 1});
  statuses<float, float>("orviHarrisCorner_32f_C1R", response, {0, 1, 7}, {0, 1}, {0, 1});
  const auto suppression = [](const uint8_t* src, int32_t step, FilterPlan p, uint8_t* dst, int32_t dstStep,
                              OrvSize roi, uint8_t* buffer, const uint8_t* feature, int32_t featureStep) {
    return lines(src, step, p, feature, featureStep, dst, dstStep, roi, buffer, 10);
  };
  statuses<uint8_t, uint8_t>("orviLineSuppression_8u_C1R", suppression, {0, 1, 8, 7}, {}, {0, 1, 8}, In<uint8_t>());
  walkArguments("orviHarrisCornerGetBufferSize", orviHarrisCornerGetBufferSize,
                pointersThenSizes({5}, 0) +
                    std::vector<Told>{badValue(1, 35, orvStatusMaskSize), badValue(3, orvData16s, orvStatusDataType),
                                      badValue(4, 3, orvStatusChannels), badValue(2, 0, orvStatusSize)},
                Roi(), Value<int32_t>({orvMaskSize3x3}), Value<int32_t>({3}), Value<int32_t>({orvData8u}),
                Value<int32_t>({1}), Result<int32_t>());
  // In place, which is refused last.
  const FilterPlan plan = {orvFilterKernelSobel, orvMaskSize3x3, 3, orvBorderRepl, 0};
  float image[16] = {};
  uint8_t bytes[16] = {}, buffer[8000];
  for (const int step : {16, -16}) {
    const OrvStatus want = step < 0 ? orvStatusStep : orvStatusInPlace;
    CHECK(harris(image, step, plan, image, 16, {4, 4}, buffer, 0.04f, 1) == want);
    CHECK(lines(bytes, 16, plan, bytes, step, bytes, 16, {1, 1}, buffer, 10) == want);
  }
}

// Standard weights of the chamfer transforms.
// One body serves both variants.
#include "core/variant.h"
#include "core/checks.h"

namespace {

// By size (3, 5) and norm (infinity, L1, L2): steps aside, diagonal and, 5x5 only, knight.
template <class T>
constexpr T weights[2][3][3] = {{{1, 1}, {1, 2}, {2, 3}}, {{1, 1, 2}, {1, 2, 3}, {5, 7, 11}}};
template <>
constexpr float weights<float>[2][3][3] = {
    {{1.f, 1.f}, {1.f, 2.f}, {0.9549999833106995f, 1.3693000078201294f}},
    {{1.f, 1.f, 2.f}, {1.f, 2.f, 3.f}, {1.f, 1.399999976158142f, 2.196899890899658f}}};

template <class T>
OrvStatus standardWeights(int32_t kerSize, int32_t norm, T* metrics) {
  ORV_REQUIRE(metrics, orvStatusNullPtr);
  ORV_REQUIRE(kerSize == 3 || kerSize == 5, orvStatusSize);
  ORV_REQUIRE(norm >= 0 && norm <= 2, orvStatusBadArg);
  for (int32_t i = 0; i < (kerSize == 3 ? 2 : 3); ++i) metrics[i] = weights<T>[kerSize == 5][norm][i];
  return orvStatusOk;
}

}  // namespace

OrvStatus orviGetDistanceTransformMask_32f(int32_t kerSize, int32_t norm, float* metrics) {
  return standardWeights(kerSize, norm, metrics);
}
OrvStatus orviGetDistanceTransformMask_32s(int32_t kerSize, int32_t norm, int32_t* metrics) {
  return standardWeights(kerSize, norm, metrics);
}

OrvStatus orviGetDistanceTransformMask(int32_t maskType, float* metrics) {
  const int32_t norm = maskType % 10;  // with the sign of the type
  ORV_REQUIRE(norm >= 0 && norm <= 2, orvStatusBadArg);
  return standardWeights(maskType / 10, norm, metrics);
}

// Chamfer transforms against their plain form, with weights in every relation to each other.
// One body serves both variants.
#include "distance/distance_roles.h"
#include "reference/chamfer.h"

using namespace test;

namespace {

using Wholes = std::vector<std::vector<int32_t>>;
using Floats = std::vector<std::vector<float>>;

// Usual ones; a > b; b >= 2a; large and saturating ones.
const Wholes two = {{2, 3}, {1, 1}, {1, 2}, {3, 2}, {9, 1}, {1, 9}, {100, 120}, {1, 300}, {2147483647, 2147483647}};
const Floats twoFloats = {{0.955f, 1.3693f}, {1, 2},         {1.3f, 0.9f},  {7.1f, 0.3f},
                          {0.3f, 11.f},      {1e-3f, 2e38f}, {3e38f, 3e38f}};
// Plain (5, 7, 11); reduced to 3x3, exactly at the limit too; closed by m <= a, by c <= 2a, by 2c <= 3m; tiny c.
const Wholes three = {{5, 7, 11},   {1, 2, 3},    {1, 1, 2},   {5, 7, 12}, {7, 5, 9},      {5, 7, 10},
                      {10, 19, 25}, {10, 16, 24}, {10, 14, 2}, {3, 2, 4},  {90, 120, 170}, {2147483647, 2147483647, 3}};
const Floats threeFloats = {{1.f, 1.4f, 2.1969f},   {1, 2, 3},         {1.f, 1.4f, 2.4f}, {1.3f, 0.7f, 1.9f},
                            {1.f, 1.7f, 2.1f},      {1.f, 1.4f, 0.1f}, {0.7f, 1.f, 1.3f}, {3e38f, 3e38f, 1e38f},
                            {1.f, 1.4f, 2.3999999f}};

template <class T, class Metric>
using Transform = OrvStatus (*)(const uint8_t*, int32_t, T*, int32_t, OrvSize, const Metric*);

template <int size, class T, class Metric>
void check(const char* name, Transform<T, Metric> transform, const std::vector<std::vector<Metric>>& choices) {
  // Images higher than the rows that run side by side; few seeds: long chains, far pixels, saturation.
  const Shape large[] = {{301, 40}, {5, 200}, {178, 17}, {161, 33}, {3, 70}, {400, 2}, {2, 90}};
  for (int kind = 0; kind < maskKinds; ++kind)
    sweep(name, transform, reference::chamfer<T, Metric, size>, large[kind], Drawn(kind), Out<T>(), Roi(),
          Weights<Metric>(choices));

  const std::vector<Told> order = pointersThenSizes({0, 1, 3}, 2) + eachOf(Fault::smallStep, {0}) + stepsOf<T>({1});
  walkArguments(name, transform, order, Mask(), Out<T>(), Roi(), Weights<Metric>(choices));

  const Context context(name);
  uint8_t seed = 0;
  T d[2] = {77, 77};
  for (int spoiled = 0; spoiled < (size == 5 ? 3 : 2); ++spoiled)
    for (const double bad : {0., -3., std::is_same<Metric, float>::value ? NAN : -1.}) {
      Metric metrics[3] = {2, 2, 2};
      metrics[spoiled] = (Metric)bad;
      for (const bool step : {false, true})
        CHECK(transform(&seed, 1, d, (int32_t)sizeof(T) - step, {1, 1}, metrics) ==
                  (step ? orvStatusStep : orvStatusMetric) &&
              d[0] == 77);
    }
}

// The in-place form, or the other with equal images, as functions of source and destination.
template <OrvStatus (*run)(uint8_t*, int32_t, OrvSize, const int32_t*), int size>
void checkInPlace(const char* name, const Wholes& choices) {
  const auto plain = [](uint8_t* image, int32_t step, OrvSize roi, const int32_t* metrics) {
    const std::vector<uint8_t> src(image, image + (size_t)step * (size_t)(roi.height - 1) + (size_t)roi.width);
    reference::chamfer<uint8_t, int32_t, size>(src.data(), step, image, step, roi, metrics);
  };
  sweep(name, run, plain, {}, InOut<uint8_t>(), Roi(), Weights<int32_t>(choices));
  walkArguments(name, run, {{Fault::null, 0}, {Fault::null, 2}, {Fault::width, 1}, {Fault::smallStep, 0}},
                InOut<uint8_t>(), Roi(), Weights<int32_t>(choices));
}
OrvStatus equalImages(uint8_t* image, int32_t step, OrvSize roi, const int32_t* metrics) {
  return orviDistanceTransform_5x5_8u_C1R(image, step, image, step, roi, metrics);
}

}  // namespace

TEST(small_bytes) { check<3>("3x3_8u", orviDistanceTransform_3x3_8u_C1R, two); }
TEST(small_words) { check<3>("3x3_8u16u", orviDistanceTransform_3x3_8u16u_C1R, two); }
TEST(small_floats) { check<3>("3x3_8u32f", orviDistanceTransform_3x3_8u32f_C1R, twoFloats); }
TEST(large_bytes) { check<5>("5x5_8u", orviDistanceTransform_5x5_8u_C1R, three); }
TEST(large_words) { check<5>("5x5_8u16u", orviDistanceTransform_5x5_8u16u_C1R, three); }
TEST(large_floats) { check<5>("5x5_8u32f", orviDistanceTransform_5x5_8u32f_C1R, threeFloats); }
TEST(in_place) {
  checkInPlace<orviDistanceTransform_3x3_8u_C1IR, 3>("3x3_8u_C1IR", two);
  checkInPlace<orviDistanceTransform_5x5_8u_C1IR, 5>("5x5_8u_C1IR", three);
  checkInPlace<equalImages, 5>("5x5_8u_C1R, equal images", three);
}

TEST(standard_weights) {
  const float want[] = {1, 1, -7, 1, 2, -7, 0.955f, 1.3693f, -7, 1, 1, 2, 1, 2, 3, 1, 1.4f, 2.1969f};
  const float whole[] = {2, 3, 5, 7, 11};  // for L2 only they differ
  float f[3], g[3];
  int32_t w[3];
  for (int i = 0; i < 18; i += 3) {
    const int size = i < 9 ? 3 : 5, norm = i / 3 % 3;
    for (int k = 0; k < 3; ++k) f[k] = g[k] = -7, w[k] = -7;
    CHECK(orviGetDistanceTransformMask_32f(size, norm, f) == orvStatusOk && memcmp(f, want + i, sizeof f) == 0);
    CHECK(orviGetDistanceTransformMask(10 * size + norm, g) == orvStatusOk && memcmp(f, g, sizeof g) == 0);
    CHECK(orviGetDistanceTransformMask_32s(size, norm, w) == orvStatusOk);
    const float* const same = norm < 2 ? want + i : size == 3 ? whole : whole + 2;
    for (int k = 0; k < (size + 1) / 2; ++k) CHECK((float)w[k] == same[k]);
    CHECK(size == 5 || w[2] == -7);
  }
  const auto plain = orviGetDistanceTransformMask_32f;
  const auto coded = orviGetDistanceTransformMask;
  CHECK(plain(4, 3, nullptr) == orvStatusNullPtr && plain(4, 3, f) == orvStatusSize &&
        plain(3, -1, f) == orvStatusBadArg);
  CHECK(coded(33, nullptr) == orvStatusBadArg && coded(32, nullptr) == orvStatusNullPtr);
  for (const int type : {-31, -1, 59}) CHECK(coded(type, f) == orvStatusBadArg);
  for (const int type : {42, 0, -30}) CHECK(coded(type, f) == orvStatusSize);
}

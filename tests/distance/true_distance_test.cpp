// The exact transform against distances worked out in whole numbers.
// One body serves both variants.
#include <limits>
#include "distance/distance_roles.h"

using namespace test;

namespace {

// Roots of the least squared distances: down the columns first, then each row tries all of them.
void plainDistances(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roi, uint8_t*) {
  constexpr int64_t none = std::numeric_limits<int64_t>::max();
  std::vector<int64_t> column((size_t)roi.width);
  for (int y = 0; y < roi.height; ++y) {
    for (int x = 0; x < roi.width; ++x) {
      column[(size_t)x] = none;
      for (int64_t d = 0; d < roi.height && column[(size_t)x] == none; ++d)
        for (const int64_t row : {y - d, y + d})
          if (row >= 0 && row < roi.height && src[row * srcStep + x] == 0) column[(size_t)x] = d * d;
    }
    for (int x = 0; x < roi.width; ++x) {
      int64_t least = none;
      for (int64_t v = 0; v < roi.width; ++v)
        if (column[(size_t)v] != none) least = std::min(least, column[(size_t)v] + (x - v) * (x - v));
      const float root = sqrtf(least == none ? std::numeric_limits<float>::max() : (float)least);
      memcpy((uint8_t*)dst + y * (ptrdiff_t)dstStep + 4 * x, &root, 4);
    }
  }
}

}  // namespace

TEST(all_contents) {
  const Shape large[] = {{600, 17, true}, {70, 200, true}, {1, 300, true}, {1500, 2, true}, {290, 130, true}};
  for (int kind = 0; kind < maskKinds; ++kind)
    sweep("orviTrueDistanceTransform_8u32f_C1R", orviTrueDistanceTransform_8u32f_C1R, plainDistances, large[kind % 5],
          Drawn(kind), Out<float>(), Roi(), Scratch(orviTrueDistanceTransformGetBufferSize_8u32f_C1R));
}

// Beyond the whole numbers that a float holds the envelope decides, parabola by parabola in single precision.
TEST(wide_images) {
  Random r(seed());
  for (const int width : {2047, 2600, 4090, 9000})
    for (const int sites : {2, 30, 1000}) {
      const size_t n = (size_t)width;
      std::vector<uint8_t> src(3 * n, 1), buffer(n * 24 + 200);
      std::vector<float> dst(3 * n), f(n), from(n + 1);
      for (int i = 0; i < sites; ++i) src[(size_t)r.in(0, 3 * width - 1)] = 0;
      std::vector<int64_t> at(n);
      const auto square = [](int64_t i) { return (float)(i * i); };
      orviTrueDistanceTransform_8u32f_C1R(src.data(), width, dst.data(), width * 4, {width, 3}, buffer.data());
      for (size_t x = 0; x < n; ++x) f[x] = !src[x] ? 0.f : !src[n + x] ? 1.f : !src[2 * n + x] ? 4.f : 3.4028235e38f;
      int k = 0;
      at[0] = 0, from[0] = -3.4028235e38f, from[1] = 3.4028235e38f;
      for (int64_t q = 1; q < width; ++q) {
        const auto crossing = [&](int64_t v) {
          return (f[(size_t)q] + square(q) - f[(size_t)v] - square(v)) * (0.5f / (float)(q - v));
        };
        while (!(crossing(at[(size_t)k]) > from[(size_t)k])) --k;
        const float s = crossing(at[(size_t)k++]);
        at[(size_t)k] = q, from[(size_t)k] = s, from[(size_t)k + 1] = 3.4028235e38f;
      }
      k = 0;
      for (int64_t q = 0; q < width; ++q) {
        while ((float)q > from[(size_t)k + 1]) ++k;
        const float want = sqrtf(square(q - at[(size_t)k]) + f[(size_t)at[(size_t)k]]), got = dst[(size_t)q];
        if (got != want)
          fail("width %d, %d sites: %.9g at %d, not %.9g", width, sites, (double)got, (int)q, (double)want);
      }
    }
}

TEST(arguments) {
  int32_t bytes = -1;
  const auto size = orviTrueDistanceTransformGetBufferSize_8u32f_C1R;
  steerThreads(3);
  CHECK(size({101, 50}, &bytes) == orvStatusOk && bytes == 3 * (104 * 24 + 56));
  steerThreads(1);
  CHECK(size({5, 9}, &bytes) == orvStatusOk && bytes == 12 * 24 + 56);
  CHECK(size({0, 9}, nullptr) == orvStatusNullPtr);
  CHECK(size({0, 9}, &bytes) == orvStatusSize && size({9, -1}, &bytes) == orvStatusSize && bytes == 12 * 24 + 56);
  walkArguments("orviTrueDistanceTransform_8u32f_C1R", orviTrueDistanceTransform_8u32f_C1R,
                pointersThenSizes({0, 1, 3}, 2) + eachOf(Fault::smallStep, {0}) + stepsOf<float>({1}), Mask(),
                Out<float>(), Roi(), Result<uint8_t>(1000));
}

// Undistortion against its plain form, with and without a buffer of exactly the reported size.
// One body serves both variants.
#include <array>
#include "detect/table_roles.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

// The camera's numbers, around the region's middle; some copy, or shift by nothing at all.
using Numbers = std::array<float, 8>;
struct Camera : Value<Numbers> {
  Camera() : Value({Numbers()}) {}
  void prepare(Random& r, const Shape& shape) {
    const auto between = [&](float low, float high) { return low + (high - low) * (float)r.in(0, 10000) * 1e-4f; };
    const float w = (float)shape.width, h = (float)shape.height, strength = r.one(4) ? 0.f : 0.4f;
    chosen = {w * between(0.4f, 2) * (r.one(4) ? -1.f : 1.f),
              h * between(0.4f, 2),
              w * between(-0.2f, 1.2f),
              h * between(-0.2f, 1.2f),
              between(-strength, strength),
              r.one(3) ? 0 : between(-strength, strength),
              r.one(4) ? 0 : between(-0.1f, 0.1f),
              r.one(4) ? 0 : between(-0.1f, 0.1f)};
  }
};

// Scratch for every other shape.
struct PerhapsScratch : Scratch {
  bool given = false;
  PerhapsScratch() : Scratch(orviUndistortGetSize) {}
  void prepare(Random& r, const Shape& shape) { Scratch::prepare(r, shape), given = r.one(2); }
  void reset() {
    Scratch::reset();
    CHECK((int)memory->bytes() == (roi.width + 3) / 4 * 96 + 32);
  }
  std::tuple<uint8_t*> arguments(Side side) { return given ? Scratch::arguments(side) : std::tuple<uint8_t*>(nullptr); }
};

struct Place {
  float x, y;
};
Place radial(int column, int row, const Numbers& n) {
  const float x = (float)column, y = (float)row, u = x - n[2], v = y - n[3], k1 = n[4], k2 = n[5];
  const float X = (u * u) * (1 / (n[0] * n[0])), Y = (v * v) * (1 / (n[1] * n[1]));
  const float k = ((k2 * X + k1) * X + (k2 * Y + k1) * Y) + ((2 * k2) * X) * Y;
  return {x + u * k, y + v * k};
}

template <class T, int channels>
void plainUndistort(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, const Numbers& numbers,
                    uint8_t*) {
  reference::forEachElement(roi, channels, [&](int y, int x) {
    const Place p = radial(x / channels, y, numbers);
    if (!(p.x >= 0 && p.y >= 0 && p.x < (float)(roi.width - 1) && p.y < (float)(roi.height - 1))) return;
    const int ix = (int)p.x, iy = (int)p.y;
    const float a = p.x - (float)ix, b = p.y - (float)iy;
    const auto at = [&](int right, int down) {
      return (float)reference::load(src, srcStep, iy + down, (ix + right) * channels + x % channels);
    };
    const float sum =
        (at(0, 0) * ((1 - a) * (1 - b)) + at(0, 1) * ((1 - a) * b)) + (at(1, 0) * (a * (1 - b)) + at(1, 1) * (a * b));
    reference::store(dst, dstStep, y, x, (T)(std::is_integral<T>::value ? sum + 0.5f : sum));
  });
}

void plainMap(float* xMap, int32_t xStep, float* yMap, int32_t yStep, OrvSize roi, const Numbers& n, uint8_t*) {
  reference::forEachElement(roi, 1, [&](int row, int column) {
    Place p = radial(column, row, n);
    const float fx = n[0], fy = n[1], k1 = n[4], k2 = n[5], p1 = n[6], p2 = n[7];
    if (p1 != 0 || p2 != 0) {
      const float x = (float)column, y = (float)row, u = x - n[2], v = y - n[3], a = u * (1 / fx), b = v * (1 / fy);
      const float r2 = a * a + b * b, k = ((k2 * r2 + k1) * r2 + (2 * p2) * a) + (2 * p1) * b;
      p = {u * k + ((fx * p2) * r2 + x), v * k + ((fy * p1) * r2 + y)};
    }
    reference::store(xMap, xStep, row, column, p.x), reference::store(yMap, yStep, row, column, p.y);
  });
}

template <class T, int channels, class Function>
void images(const char* name, Function function) {
  const auto called = [=](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, const Numbers& n,
                          uint8_t* buffer) {
    return function(src, srcStep, dst, dstStep, roi, n[0], n[1], n[2], n[3], n[4], n[5], buffer);
  };
  for (int round = 0; round < 2; ++round)
    sweep(name, called, plainUndistort<T, channels>, {}, In<T>(channels), InOut<T>(channels), Roi(), Camera(),
          PerhapsScratch());
  walkArguments(name, called, tableChecks({0, 1}, alignedOf<T, T>(), 2), In<T>(channels), InOut<T>(channels), Roi(),
                Camera(), PerhapsScratch());
}

OrvStatus map(float* xMap, int32_t xStep, float* yMap, int32_t yStep, OrvSize roi, const Numbers& n, uint8_t* buffer) {
  return orviCreateMapCameraUndistort_32f_C1R(xMap, xStep, yMap, yStep, roi, n[0], n[1], n[2], n[3], n[4], n[5], n[6],
                                              n[7], buffer);
}

}  // namespace

TEST(images) {
  images<uint8_t, 1>("orviUndistortRadial_8u_C1R", orviUndistortRadial_8u_C1R);
  images<uint8_t, 3>("orviUndistortRadial_8u_C3R", orviUndistortRadial_8u_C3R);
  images<uint16_t, 1>("orviUndistortRadial_16u_C1R", orviUndistortRadial_16u_C1R);
  images<uint16_t, 3>("orviUndistortRadial_16u_C3R", orviUndistortRadial_16u_C3R);
  images<float, 1>("orviUndistortRadial_32f_C1R", orviUndistortRadial_32f_C1R);
  images<float, 3>("orviUndistortRadial_32f_C3R", orviUndistortRadial_32f_C3R);
}

TEST(maps) {
  for (int round = 0; round < 2; ++round)
    sweep("orviCreateMapCameraUndistort_32f_C1R", map, plainMap, {}, Out<float>(), Out<float>(), Roi(), Camera(),
          PerhapsScratch());
  walkArguments("orviCreateMapCameraUndistort_32f_C1R", map, tableChecks({0, 1}, {0, 1}, 2), Out<float>(), Out<float>(),
                Roi(), Camera(), PerhapsScratch());
}

// A focal length of 0 is refused last.
TEST(refusals) {
  uint8_t src[9] = {}, dst[9] = {7};
  uint16_t words[9] = {};
  float map[18] = {};
  CHECK(orviUndistortRadial_8u_C1R(src, 3, dst, 3, {3, 3}, 0, 3, 1, 1, 0, 0, nullptr) == orvStatusBadArg);
  CHECK(orviUndistortRadial_8u_C1R(src, 3, dst, 3, {3, 3}, 3, -0.f, 1, 1, 0, 0, nullptr) == orvStatusBadArg);
  CHECK(orviUndistortRadial_16u_C1R(words, 7, words, 6, {3, 3}, 0, 3, 1, 1, 0, 0, nullptr) == orvStatusStepAlign);
  CHECK(orviCreateMapCameraUndistort_32f_C1R(map, 12, map + 9, 12, {3, 3}, 1, 0, 1, 1, 0, 0, 0, 1, nullptr) ==
        orvStatusBadArg);
  CHECK(dst[0] == 7 && map[0] == 0);
  walkArguments("orviUndistortGetSize", orviUndistortGetSize, pointersThenSizes({1}, 0), Roi(), Result<int32_t>());
}

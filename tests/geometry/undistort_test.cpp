// Undistortion against its plain form, with and without a buffer of exactly the reported size.
// One body serves both variants.
#include "framework/sweep.h"

using namespace test;

namespace {

// The camera's numbers, around the region's middle; the first cases copy, or shift by nothing at all.
struct Camera {
  bool tangential = false;
  float value[8] = {};
  void prepare(Random& r, const Shape& shape) {
    const auto between = [&](float low, float high) { return low + (high - low) * (float)r.in(0, 10000) * 1e-4f; };
    const float w = (float)shape.width, h = (float)shape.height, strength = r.one(4) ? 0.f : 0.4f;
    const float numbers[8] = {w * between(0.4f, 2) * (r.one(4) ? -1.f : 1.f),
                              h * between(0.4f, 2),
                              w * between(-0.2f, 1.2f),
                              h * between(-0.2f, 1.2f),
                              between(-strength, strength),
                              r.one(3) ? 0 : between(-strength, strength),
                              r.one(4) ? 0 : between(-0.1f, 0.1f),
                              r.one(4) ? 0 : between(-0.1f, 0.1f)};
    memcpy(value, numbers, sizeof value);
  }
  std::tuple<float, float, float, float, float, float> arguments(Side) const {
    return {value[0], value[1], value[2], value[3], value[4], value[5]};
  }
  void reset() {}
  bool untouched() const { return true; }
  void verify(int) const {}
};
struct MapCamera : Camera {
  std::tuple<float, float, float, float, float, float, float, float> arguments(Side side) const {
    return std::tuple_cat(Camera::arguments(side), std::make_tuple(value[6], value[7]));
  }
};

// Scratch: none for every other shape.
struct Buffer {
  std::shared_ptr<Guarded> memory;
  void prepare(Random& r, const Shape& shape) {
    int32_t bytes = 0;
    CHECK(orviUndistortGetSize({shape.width, shape.height}, &bytes) == orvStatusOk);
    CHECK(bytes == (shape.width + 3) / 4 * 96 + 32);
    memory = r.one(2) ? nullptr : std::make_shared<Guarded>((size_t)bytes, true, (size_t)r.in(0, 7));
  }
  std::tuple<uint8_t*> arguments(Side) const { return {memory ? memory->data() : nullptr}; }
  void reset() {}
  bool untouched() const { return true; }
  void verify(int) const { CHECK(!memory || memory->intact()); }
};

struct Place {
  float x, y;
};
Place radial(int column, int row, float fx, float fy, float cx, float cy, float k1, float k2) {
  const float x = (float)column, y = (float)row, u = x - cx, v = y - cy;
  const float X = (u * u) * (1 / (fx * fx)), Y = (v * v) * (1 / (fy * fy));
  const float k = ((k2 * X + k1) * X + (k2 * Y + k1) * Y) + ((2 * k2) * X) * Y;
  return {x + u * k, y + v * k};
}

template <class T, int channels>
void plainUndistort(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, float fx, float fy, float cx,
                    float cy, float k1, float k2, uint8_t*) {
  const auto at = [&](const void* image, int32_t step, int64_t x, int64_t y) {
    return (uint8_t*)(uintptr_t)image + y * step + x * (int64_t)sizeof(T);
  };
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x) {
      const Place p = radial(x, y, fx, fy, cx, cy, k1, k2);
      if (!(p.x >= 0 && p.y >= 0 && p.x < (float)(roi.width - 1) && p.y < (float)(roi.height - 1))) continue;
      const int ix = (int)p.x, iy = (int)p.y;
      const float a = p.x - (float)ix, b = p.y - (float)iy;
      for (int c = 0; c < channels; ++c) {
        float v[4];
        for (int n = 0; n < 4; ++n) {
          T element;
          memcpy(&element, at(src, srcStep, (ix + n % 2) * channels + c, iy + n / 2), sizeof(T));
          v[n] = (float)element;
        }
        const float sum = (v[0] * ((1 - a) * (1 - b)) + v[2] * ((1 - a) * b)) + (v[1] * (a * (1 - b)) + v[3] * (a * b));
        const T result = std::is_integral<T>::value ? (T)(sum + 0.5f) : (T)sum;
        memcpy(at(dst, dstStep, x * channels + c, y), &result, sizeof(T));
      }
    }
}

void plainMap(float* xMap, int32_t xStep, float* yMap, int32_t yStep, OrvSize roi, float fx, float fy, float cx,
              float cy, float k1, float k2, float p1, float p2, uint8_t*) {
  for (int row = 0; row < roi.height; ++row)
    for (int column = 0; column < roi.width; ++column) {
      Place p = radial(column, row, fx, fy, cx, cy, k1, k2);
      if (p1 != 0 || p2 != 0) {
        const float x = (float)column, y = (float)row, u = x - cx, v = y - cy, a = u * (1 / fx), b = v * (1 / fy);
        const float r2 = a * a + b * b, k = ((k2 * r2 + k1) * r2 + (2 * p2) * a) + (2 * p1) * b;
        p = {u * k + ((fx * p2) * r2 + x), v * k + ((fy * p1) * r2 + y)};
      }
      memcpy((uint8_t*)xMap + (int64_t)row * xStep + column * 4, &p.x, 4);
      memcpy((uint8_t*)yMap + (int64_t)row * yStep + column * 4, &p.y, 4);
    }
}

template <class T, int channels, class Function>
void images(const char* name, Function function) {
  for (int round = 0; round < 3; ++round)
    sweep(name, function, plainUndistort<T, channels>, {}, In<T>(channels), InOut<T>(channels), Roi(), Camera(),
          Buffer());
  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  for (const int i : {0, 1}) order.push_back({Fault::smallStep, i});
  if (sizeof(T) > 1)
    for (const int i : {0, 1}) order.push_back({Fault::misalignedStep, i});
  walkArguments(name, function, order, In<T>(channels), InOut<T>(channels), Roi(), Camera(), Buffer());
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
  for (int round = 0; round < 3; ++round)
    sweep("orviCreateMapCameraUndistort_32f_C1R", orviCreateMapCameraUndistort_32f_C1R, plainMap, {}, Out<float>(),
          Out<float>(), Roi(), MapCamera(), Buffer());
  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  for (const Fault fault : {Fault::smallStep, Fault::misalignedStep})
    for (const int i : {0, 1}) order.push_back({fault, i});
  walkArguments("orviCreateMapCameraUndistort_32f_C1R", orviCreateMapCameraUndistort_32f_C1R, order, Out<float>(),
                Out<float>(), Roi(), MapCamera(), Buffer());
}

// Without distortion all but the last row and column are copied; a focal length of 0 is refused last.
TEST(edges) {
  const uint8_t src[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  uint8_t dst[9] = {};
  CHECK(orviUndistortRadial_8u_C1R(src, 3, dst, 3, {3, 3}, -2, 3, 1, 1, 0, 0, nullptr) == orvStatusOk);
  const uint8_t want[9] = {1, 2, 0, 4, 5, 0, 0, 0, 0};
  CHECK(memcmp(dst, want, 9) == 0);
  uint16_t words[9] = {};
  float map[18] = {};
  CHECK(orviUndistortRadial_8u_C1R(src, 3, dst, 3, {3, 3}, 0, 3, 1, 1, 0, 0, nullptr) == orvStatusBadArg);
  CHECK(orviUndistortRadial_8u_C1R(src, 3, dst, 3, {3, 3}, 3, -0.f, 1, 1, 0, 0, nullptr) == orvStatusBadArg);
  CHECK(orviUndistortRadial_16u_C1R(words, 7, words, 6, {3, 3}, 0, 3, 1, 1, 0, 0, nullptr) == orvStatusStepAlign);
  CHECK(orviCreateMapCameraUndistort_32f_C1R(map, 12, map + 9, 12, {3, 3}, 1, 0, 1, 1, 0, 0, 0, 1, nullptr) ==
        orvStatusBadArg);
  CHECK(memcmp(dst, want, 9) == 0 && map[0] == 0);
  int32_t bytes = -7;
  CHECK(orviUndistortGetSize({0, 0}, nullptr) == orvStatusNullPtr);
  CHECK(orviUndistortGetSize({0, 5}, &bytes) == orvStatusSize && orviUndistortGetSize({5, 0}, &bytes) == orvStatusSize);
  CHECK(bytes == -7);
}

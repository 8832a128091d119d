// Fast marching: the result is the state in which no pixel can become earlier.
// One body serves both variants.
#include "distance/distance_roles.h"

using namespace test;

namespace {

constexpr float layer = -1e-10f, unreached = 1e30f;

float arrival(float u, float v) {
  return fabsf(u - v) >= 1 ? std::min(u, v) + 1 : (u + v + sqrtf(2 - (u - v) * (u - v))) * 0.5f;
}

struct Case {
  Image<uint8_t> mask;
  Image<float> times;
  float radius;

  Case(Random& r, Shape shape, int kind, float band)
      : mask(r, shape.width, shape.height, 1), times(r, shape.width, shape.height, 1), radius(band) {
    drawMask(r, mask, kind);
  }
  bool in(int x, int y) const { return x >= 0 && y >= 0 && x < mask.elements() && y < mask.height(); }
  // The earliest of the two neighbours in a direction as a pixel inside or outside sees them.
  float earliest(int x, int y, int dx, int dy, bool outside) const {
    float least = unreached;
    for (const int side : {-1, 1}) {
      if (!in(x + side * dx, y + side * dy)) continue;
      const float t = times.at(x + side * dx, y + side * dy);
      least = std::min(least, outside ? std::max(t, 0.f) : t < 0 ? -t : unreached);
    }
    return least;
  }
  float wanted(int x, int y) const {
    const bool outside = mask.at(x, y) != 0;
    const float t = arrival(earliest(x, y, 0, 1, outside), earliest(x, y, 1, 0, outside));
    if (outside) return t;
    if (radius <= 0) return 0;
    for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
      if (in(x + dx, y + dy) && mask.at(x + dx, y + dy) != 0) return layer;
    return t <= radius + 1e-5f ? -t : 0;
  }
  void verify() const {
    bool known = false;
    for (int y = 0; y < mask.height(); ++y)
      for (int x = 0; x < mask.elements(); ++x) known |= mask.at(x, y) == 0;
    for (int y = 0; y < mask.height(); ++y)
      for (int x = 0; x < mask.elements(); ++x) {
        const float got = times.at(x, y), want = !known && y == 0 ? 999999.f + (float)x : wanted(x, y);
        const bool close = fabsf(got - want) <= 2e-6f * fabsf(want), atLimit = fabsf(got + radius) < 1e-3f && want == 0;
        if (!close && !atLimit) return fail("%d, %d: %.9g, not %.9g", x, y, (double)got, (double)want);
      }
  }
  // Runs and verifies, on one thread or, where it makes a difference, on several.
  void check(Random& r, bool threaded) {
    const OrvSize roi = {mask.elements(), mask.height()};
    int32_t bytes = 0;
    CHECK(orviFastMarchingGetBufferSize_8u32f_C1R(roi, &bytes) == orvStatusOk);
    for (const int32_t threads : threaded ? threadCounts() : std::vector<int32_t>{1}) {
      const Context context(std::to_string(roi.width) + "x" + std::to_string(roi.height) + " radius " +
                            std::to_string(radius) + " threads " + std::to_string(threads));
      steerThreads(threads);
      const Guarded buffer((size_t)bytes, true, (size_t)r.in(0, 40));
      times.restore();
      CHECK(orviFastMarching_8u32f_C1R(mask.data(), mask.step(), times.data(), times.step(), roi, radius,
                                       buffer.data()) == orvStatusOk);
      CHECK(mask.unchanged() && times.onlyRegionChanged() && buffer.intact());
      verify();
    }
    steerThreads(1);
  }
};

}  // namespace

TEST(nothing_is_lost) {
  Random r(seed());
  const float radii[] = {0, -0.f, 1e-6f, 1, 2.5f, 7, 1e9f};
  for (int round = 0; round < (quick() ? 1 : 3); ++round)
    for (const Shape& shape : shapes()) Case(r, shape, r.in(0, maskKinds - 1), radii[r.in(0, 6)]).check(r, false);
  for (const Shape shape : {Shape{300, 240}, {8200, 8}, {16, 4100}})
    for (int kind = 0; kind < maskKinds; kind += quick() ? 3 : 1)
      Case(r, shape, kind, radii[r.in(0, 6)]).check(r, true);
}

TEST(arguments) {
  int32_t bytes = -1;
  const auto size = orviFastMarchingGetBufferSize_8u32f_C1R;
  CHECK(size({33, 10}, &bytes) == orvStatusOk && bytes == 44 * 69 + 40);
  CHECK(size({0, 1}, nullptr) == orvStatusNullPtr);
  CHECK(size({0, 9}, &bytes) == orvStatusSize && size({9, -1}, &bytes) == orvStatusSize && bytes == 44 * 69 + 40);
  walkArguments("orviFastMarching_8u32f_C1R", orviFastMarching_8u32f_C1R,
                pointersThenSizes({0, 1, 4}, 2) + eachOf(Fault::smallStep, {0, 1}) +
                    eachOf(Fault::misalignedStep, {1}) + std::vector<Told>{badValue(3, -1e-30)},
                Mask(), Out<float>(), Roi(), Value<float>({0.f}), Result<uint8_t>(4000));
}

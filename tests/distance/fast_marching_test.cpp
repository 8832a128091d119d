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
  OrvSize roi() const { return {mask.elements(), mask.height()}; }
  void run(Random& r) {
    int32_t bytes = 0;
    CHECK(orviFastMarchingGetBufferSize_8u32f_C1R(roi(), &bytes) == orvStatusOk);
    const Guarded buffer((size_t)bytes, true, (size_t)r.in(0, 40));
    times.restore();
    CHECK(orviFastMarching_8u32f_C1R(mask.data(), mask.step(), times.data(), times.step(), roi(), radius,
                                     buffer.data()) == orvStatusOk);
    CHECK(mask.unchanged() && times.onlyRegionChanged() && buffer.intact());
  }
  bool in(int x, int y) const { return x >= 0 && y >= 0 && x < mask.elements() && y < mask.height(); }
  // The earliest of the two neighbours in a direction as a pixel inside or outside sees them.
  float earliest(int x, int y, int dx, int dy, bool outside) const {
    float least = unreached;
    for (const int side : {-1, 1}) {
      const int nx = x + side * dx, ny = y + side * dy;
      if (!in(nx, ny)) continue;
      const float t = times.at(nx, ny);
      least = std::min(least, outside ? std::max(t, 0.f) : t < 0 ? -t : unreached);
    }
    return least;
  }
  float wanted(int x, int y) const {
    const bool outside = mask.at(x, y) != 0;
    const float t = arrival(earliest(x, y, 0, 1, outside), earliest(x, y, 1, 0, outside));
    if (outside) return t;
    if (radius <= 0) return 0;
    bool edge = false;
    for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
      edge |= in(x + dx, y + dy) && mask.at(x + dx, y + dy) != 0;
    return edge ? layer : t <= radius + 1e-5f ? -t : 0;
  }
  void verify(bool known) const {
    for (int y = 0; y < mask.height(); ++y)
      for (int x = 0; x < mask.elements(); ++x) {
        const float got = times.at(x, y), want = !known && y == 0 ? 999999.f + (float)x : wanted(x, y);
        const bool close = fabsf(got - want) <= 2e-6f * fabsf(want), atLimit = fabsf(got + radius) < 1e-3f && want == 0;
        if (!close && !atLimit) return fail("%d, %d: %.9g, not %.9g", x, y, (double)got, (double)want);
      }
  }
};

void check(Random& r, Shape shape, int kind, float radius) {
  Case c(r, shape, kind, radius);
  bool known = false;
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < shape.width; ++x) known |= c.mask.at(x, y) == 0;
  char text[80];
  snprintf(text, sizeof text, "%dx%d kind %d radius %g", shape.width, shape.height, kind, (double)radius);
  const Context context(text);
  forEachSetting(shape.threaded, [&] {
    c.run(r);
    c.verify(known);
  });
}

}  // namespace

TEST(nothing_is_lost) {
  Random r(seed());
  const float radii[] = {0, 0, 1e-6f, 1, 2.5f, 7, 1e9f};
  for (int round = 0; round < (quick() ? 1 : 3); ++round)
    for (const Shape& shape : shapes()) check(r, shape, r.in(0, maskKinds - 1), radii[r.in(0, 6)]);
  for (const Shape shape : {Shape{300, 240, true}, {9000, 8, true}, {16, 4500, true}})
    for (int kind = 0; kind < maskKinds; ++kind) check(r, shape, kind, radii[r.in(0, 6)]);
}

// A corridor that winds through the whole image, across the two fronts and back.
TEST(labyrinth) {
  Random r(seed());
  Case c(r, {280, 260}, 5, 0);
  for (int y = 0; y < 260; ++y)
    for (int x = 0; x < 280; ++x) {
      const bool wall = x % 4 == 3 && (x / 4 % 2 ? y > 0 : y < 259);
      c.mask.set(x, y, wall ? 0 : 1);
    }
  c.mask.keep();
  forEachSetting(true, [&] {
    c.run(r);
    c.verify(true);
  });
}

// One known pixel: 1 beside it, about the Euclidean distance further away; the same bits from any number of threads
// beyond one.
TEST(single_pixel) {
  Random r(seed());
  Case c(r, {401, 301}, 5, 0);
  c.mask.set(200, 100, 0);
  c.mask.keep();
  forEachSetting(true, [&] {
    c.run(r);
    CHECK(c.times.at(199, 100) == 1 && c.times.at(201, 100) == 1 && c.times.at(200, 99) == 1 &&
          c.times.at(200, 101) == 1);
    for (int y = 0; y < 301; ++y)
      for (int x = 0; x < 401; ++x) {
        const float d = hypotf((float)(x - 200), (float)(y - 100)), t = c.times.at(x, y);
        if (t < d - 1e-3f || t > d + 1 + 0.02f * d) return fail("%d, %d: %g", x, y, (double)t);
      }
  });
}

TEST(arguments) {
  int32_t bytes = -1;
  CHECK(orviFastMarchingGetBufferSize_8u32f_C1R({33, 10}, &bytes) == orvStatusOk && bytes == 44 * 69 + 40);
  CHECK(orviFastMarchingGetBufferSize_8u32f_C1R({0, 1}, nullptr) == orvStatusNullPtr);
  for (const OrvSize roi : {OrvSize{0, 9}, {9, -1}})
    CHECK(orviFastMarchingGetBufferSize_8u32f_C1R(roi, &bytes) == orvStatusSize && bytes == 44 * 69 + 40);
  std::vector<Told> order = pointersThenSizes({0, 1, 4}, 2);
  order.insert(order.end(), {{Fault::smallStep, 0}, {Fault::smallStep, 1}, {Fault::misalignedStep, 1}});
  walkArguments("orviFastMarching_8u32f_C1R", orviFastMarching_8u32f_C1R, order, Mask(), Out<float>(), Roi(),
                Value<float>({0.f}), Result<uint8_t>(4000));
  float d[2] = {5, 5};
  uint8_t s[2] = {1, 0}, buffer[1500];
  CHECK(orviFastMarching_8u32f_C1R(s, 2, d, 8, {2, 1}, -1e-30f, buffer) == orvStatusBadArg && d[0] == 5);
  CHECK(orviFastMarching_8u32f_C1R(s, 2, d, 7, {2, 1}, -1, buffer) == orvStatusStep);
  CHECK(orviFastMarching_8u32f_C1R(s, 2, d, 9, {2, 1}, -1, buffer) == orvStatusStepAlign);
  CHECK(orviFastMarching_8u32f_C1R(s, 2, d, 8, {2, 1}, -0.f, buffer) == orvStatusOk && d[0] == 1 && d[1] == 0);
}

// Angles in radians: any polynomial of the accuracy class will do, but one result for every width and tail.
#include "core/primitives.h"
#include "framework/sweep.h"
#include "framework/vectors.h"
#include "reference/pointwise.h"

using namespace test;

TEST(same_bits_in_any_company) {
  const auto alone = [](float y, float x) {
    forceWidth(0);
    float angle = 0;
    orvsAtan2_32f_A21(&y, &x, &angle, 1);
    return angle;
  };
  const auto candidate = binaryRows(orvsAtan2_32f_A21);
  const auto plain = reference::binary(1, alone);
  const auto in = wild(In<float>());
  sweep("orvsAtan2_32f_A21", candidate, plain, {}, in, in, Out<float>(), Roi());
  walkArguments("orvsAtan2_32f_A21", candidate, eachOf(Fault::null, {0, 1, 2}) + std::vector<Told>{{Fault::width, 3}},
                in, in, Out<float>(), Roi());
  sweep("dst = srcY", inPlaceOfFirst(candidate), inPlaceOfFirst(plain), {}, In<float>(), InOut<float>(), Roi());
  sweep("dst = srcX", inPlaceOfSecond(candidate), inPlaceOfSecond(plain), {}, In<float>(), InOut<float>(), Roi());
}

// All around the circle, at many radii, and with ratios down to the least float.
TEST(relative_error) {
  Random r(seed());
  double worst = 0;
  for (int i = 0; i < 500000; ++i) {
    const double turn = i * 4 * 3.14159e-6, radius = ldexp(1.0, r.in(-100, 100));
    float y = (float)(radius * sin(turn)), x = (float)(radius * cos(turn));
    if (i % 4 == 0) y = (float)ldexp(r.in(-1000, 1000), r.in(-120, 20)), x = (float)r.in(-1000, 1000);
    const double want = atan2((double)y, (double)x);
    if (fabs(want) < 1.2e-38) continue;
    float angle = 0;
    orvsAtan2_32f_A21(&y, &x, &angle, 1);
    worst = fmax(worst, fabs(angle - want) / fabs(want));
  }
  CHECK(worst <= 1.0 / (1 << 22), "relative error %g", worst);
}

TEST(zeros_and_infinities) {
  const float values[] = {0.f, -0.f, 1.f, -1.f, INFINITY, -INFINITY, NAN, 1e-45f, 3e38f, -3e38f};
  for (const float y : values)
    for (const float x : values) {
      float angle = 0;
      orvsAtan2_32f_A21(&y, &x, &angle, 1);
      const double want = atan2((double)y, (double)x);
      const bool close = want != want ? angle != angle : fabs(angle - want) <= 3e-7 * fabs(want) + 1e-44;
      CHECK(close && (want != want || signbit(angle) == signbit(want)), "atan2(%g, %g): %.9g, not %.9g", y, x,
            (double)angle, want);
    }
}

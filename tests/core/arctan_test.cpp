// Angles in degrees.
// One body serves both variants.
#include "framework/sweep.h"
#include "framework/vectors.h"
#include "reference/fast_arctan.h"
#include "reference/pointwise.h"

using namespace test;

TEST(every_vector) {
  const auto candidate = binaryRows(orvibFastArctan_32f);
  const auto plain = reference::binary(1, reference::fastArctan);
  sweep("orvibFastArctan_32f", candidate, plain, {}, In<float>(), In<float>(), Out<float>(), Roi());
  sweep("orvibFastArctan_32f", candidate, plain, {}, wild(In<float>()), wild(In<float>()), Out<float>(), Roi());
  sweep("dst = srcY", inPlaceOfFirst(candidate), inPlaceOfFirst(plain), {}, In<float>(), InOut<float>(), Roi());
  sweep("dst = srcX", inPlaceOfSecond(candidate), inPlaceOfSecond(plain), {}, In<float>(), InOut<float>(), Roi());
}

TEST(axes_and_octants) {
  struct Case {
    float y, x, angle;
  };
  const Case cases[] = {{0.f, 1.f, -0.14050041f},   {-0.f, 1.f, -0.14050041f}, {0.f, -0.f, -0.14050041f},
                        {1.f, 0.f, 90.14050041f},   {1.f, -0.f, 90.14050041f}, {1.f, 1.f, 45.140506f},
                        {0.f, -1.f, 180.14050041f}, {-1.f, 0.f, 269.8595f},    {-1e-20f, 1.f, 360.14050041f},
                        {1.f, -1.f, 134.8595f},     {-1.f, -1.f, 225.1405f},   {-1.f, 1.f, 314.8595f}};
  forEachSetting(false, [&] {
    for (const Case& c : cases) {
      float angle = 0;
      CHECK(orvibFastArctan_32f(&c.y, &c.x, &angle, 1) == orvStatusOk);
      CHECK(fabsf(angle - c.angle) < 2e-5f, "(%g, %g): %.9g, not %.9g", c.y, c.x, angle, c.angle);
    }
  });
}

// The documented distance from the true angle, all around.
TEST(near_the_true_angle) {
  double worst = 0;
  for (int i = 0; i < 36000; ++i) {
    const double degrees = i / 100.0 + 0.003;
    const float y = (float)sin(degrees * M_PI / 180), x = (float)cos(degrees * M_PI / 180);
    float angle = 0;
    orvibFastArctan_32f(&y, &x, &angle, 1);
    worst = fmax(worst, fabs(angle - degrees));
  }
  CHECK(worst < 0.3, "off by %g degrees", worst);
}

TEST(arguments) {
  float y[5] = {1, 2, 3, 4, 5}, x[5] = {5, 4, 3, 2, 1}, d[5] = {-7, -7, -7, -7, -7};
  struct Arguments {
    const float *y, *x;
    float* d;
    int32_t length;
  };
  walkChecks<Arguments>(
      {y, x, d, 5},
      {{"srcY", orvStatusNullPtr, [](Arguments& a) { a.y = nullptr; }},
       {"srcX", orvStatusNullPtr, [](Arguments& a) { a.x = nullptr; }},
       {"dst", orvStatusNullPtr, [](Arguments& a) { a.d = nullptr; }},
       {"length", orvStatusSize, [](Arguments& a) { a.length = 0; }}},
      [](Arguments& a) { return orvibFastArctan_32f(a.y, a.x, a.d, a.length); },
      [&] { return d[0] == -7 && d[4] == -7; });
}

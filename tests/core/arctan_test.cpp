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
  const auto in = In<float>();
  sweep("orvibFastArctan_32f", candidate, plain, {}, in, in, Out<float>(), Roi());
  sweep("orvibFastArctan_32f", candidate, plain, {}, wild(in), wild(in), Out<float>(), Roi());
  walkArguments("orvibFastArctan_32f", candidate, eachOf(Fault::null, {0, 1, 2}) + std::vector<Told>{{Fault::width, 3}},
                in, in, Out<float>(), Roi());
  sweep("dst = srcY", inPlaceOfFirst(candidate), inPlaceOfFirst(plain), {}, In<float>(), InOut<float>(), Roi());
  sweep("dst = srcX", inPlaceOfSecond(candidate), inPlaceOfSecond(plain), {}, In<float>(), InOut<float>(), Roi());
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

// Angles in degrees. The kernel has no branch, so the signs of the vectors make no difference.
#include "bench.h"

static const bool degrees = bench::add("orvibFastArctan_32f", {4}, [](const bench::Frame& f) {
  auto y = f.image<float>(), x = f.image<float>(1, 0, 200), d = f.image<float>();
  return [=] { orvibFastArctan_32f(y.data, x.data, d.data, f.roi.width * f.roi.height); };
});

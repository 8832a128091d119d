// Absolute differences.
#include "bench.h"

static const bool bytes = bench::add("orviAbsDiff_8u_C1R", {1, bench::threaded}, [](const bench::Frame& f) {
  auto a = f.image<uint8_t>(), b = f.image<uint8_t>(), d = f.image<uint8_t>();
  return [=] { orviAbsDiff_8u_C1R(a.data, a.step, b.data, b.step, d.data, d.step, f.roi); };
});

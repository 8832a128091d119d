// The dyadic steps on floats.
// One body serves both variants.
#include "motion/pyramid_roles.h"

using namespace test;

TEST(floats) { CHECK_DYADIC(float, 32f); }

// Large results at cache lines go past the cache: the same values, and nothing beyond the rows.
TEST(bypassing_the_cache) {
  Random r(seed());
  const OrvSize roi{2053, 1030};
  const int step = 4112 * 4;
  std::vector<float> src((size_t)(roi.width * roi.height)), got((size_t)(4112 * 2 * roi.height + 16), -1.f), want = got;
  fillRuns<float>(r, src.data(), roi.width * roi.height, false);
  std::vector<uint8_t> buffer(64 * 1024);
  const size_t line = (-(uintptr_t)got.data() & 63) / sizeof(float);
  CHECK(orviPyrUp_Gauss5x5_32f_C1R(src.data(), roi.width * 4, &got[line], step, roi, buffer.data()) == orvStatusOk);
  reference::pyrUp(src.data(), roi.width * 4, &want[line], step, roi, 1);
  CHECK(got == want);
}

// The dyadic steps on floats.
// One body serves both variants.
#include "motion/pyramid_roles.h"

using namespace test;

TEST(floats) { CHECK_DYADIC(float, 32f); }

// Large results at cache lines go past the cache: the same values, and nothing beyond the rows.
TEST(bypassing_the_cache) {
  Random r(seed());
  const int width = 2053, height = 1030, pitch = 4112;
  std::vector<float> src((size_t)(width * height)), results[2];
  fillRuns<float>(r, src.data(), width * height, true);
  std::vector<uint8_t> buffer(64 * 1024);
  for (int way = 0; way < 2; ++way) {
    std::vector<float>& memory = results[way];
    memory.assign((size_t)(pitch * 2 * height + 32), -1.f);
    float* const line = (float*)(((uintptr_t)memory.data() + 63) & ~(uintptr_t)63);
    float* const dst = line + way;  // the first of them
    CHECK(orviPyrUp_Gauss5x5_32f_C1R(src.data(), width * 4, dst, pitch * 4, {width, height}, buffer.data()) == 0);
    memory.erase(memory.begin(), memory.begin() + (dst - memory.data()));
  }
  for (size_t i = 0; i < (size_t)(pitch * 2 * height); ++i)
    if (!same(results[0][i], results[1][i])) return fail("element %d", (int)i);
}

// Opening, closing and their differences of 16-bit images and packed bits.
#include "morph/adv_cases.h"

using namespace test;

namespace {

const auto bits = ADV_FAMILY(uint8_t, 1, true, 1u_C1R);
const auto words = ADV_FAMILY(uint16_t, 1, false, 16u_C1R);
const auto shorts = ADV_FAMILY(int16_t, 1, false, 16s_C1R);

}  // namespace

TEST(words) { sweepMorph(words), sweepMorph(shorts); }
TEST(packedBits) { sweepMorph(bits); }

TEST(statuses) {
  walkMorph(bits, true, {Op::gradient});
  walkMorph(words, true, {Op::gradient}), walkMorph(shorts, true, {Op::gradient});
}

// Opening, closing and their differences against their definition; sizes, the record, statuses.
#include "morph/morph_cases.h"

using namespace test;

namespace {

auto initRun(OrvStatus (*f)(OrvSize, const uint8_t*, OrvSize, OrvMorphAdvState*, uint8_t*)) {
  return [=](OrvSize roi, const uint8_t* mask, OrvSize size, void* state, uint8_t* buffer) {
    return f(roi, mask, size, (OrvMorphAdvState*)state, buffer);
  };
}

#define FILTER(name, tag, op) \
  { "orviMorph" #name "Border_" #tag, Op::op, morphRun(orviMorph##name##Border_##tag) }
#define FAMILY(T, C, packed, tag)                                                      \
  MorphFamily<T> {                                                                     \
    C, packed, orviMorphAdvGetSize_##tag, initRun(orviMorphAdvInit_##tag), {           \
      FILTER(Open, tag, open), FILTER(Close, tag, close), FILTER(Tophat, tag, tophat), \
          FILTER(Blackhat, tag, blackhat), FILTER(Gradient, tag, gradient)             \
    }                                                                                  \
  }
const auto bytes1 = FAMILY(uint8_t, 1, false, 8u_C1R), bytes3 = FAMILY(uint8_t, 3, false, 8u_C3R),
           bytes4 = FAMILY(uint8_t, 4, false, 8u_C4R), bits = FAMILY(uint8_t, 1, true, 1u_C1R);
const auto words = FAMILY(uint16_t, 1, false, 16u_C1R);
const auto shorts = FAMILY(int16_t, 1, false, 16s_C1R);
const auto floats1 = FAMILY(float, 1, false, 32f_C1R), floats3 = FAMILY(float, 3, false, 32f_C3R),
           floats4 = FAMILY(float, 4, false, 32f_C4R);

}  // namespace

TEST(bytes) { sweepMorph(bytes1), sweepMorph(bytes3), sweepMorph(bytes4); }
TEST(shorts) { sweepMorph(words), sweepMorph(shorts); }
TEST(floats) { sweepMorph(floats1), sweepMorph(floats3), sweepMorph(floats4); }
TEST(packedBits) { sweepMorph(bits); }

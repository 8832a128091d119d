// Flood fills of the forms that each variant has a body of.
#include "segment/flood_cases.h"

using namespace test;

TEST(equalIntegers) {
  const FloodForm<int32_t> forms[] = {FLOOD_C1(4Con_32s, int32_t), FLOOD_C1(8Con_32s, int32_t)};
  for (const auto& form : forms) sweepFlood(form), walkFlood(form);
}
TEST(bytesByGradient) {
  const FloodForm<uint8_t> form = FLOOD_DELTAS_C1(Grad, 4Con_8u, uint8_t);
  sweepFlood(form), walkFlood(form);
}

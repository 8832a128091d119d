// Flood fills of the forms with one body.
// One body serves both variants.
#include "segment/flood_cases.h"

using namespace test;

#define BOUNDED(type)                                                                                 \
  FLOOD(4Con_##type##_C1), FLOOD(8Con_##type##_C1), FLOOD(4Con_##type##_C3), FLOOD(8Con_##type##_C3), \
      FLOOD(Range4Con_##type##_C1), FLOOD(Range8Con_##type##_C1), FLOOD(Range4Con_##type##_C3),       \
      FLOOD(Range8Con_##type##_C3), FLOOD(Grad4Con_##type##_C3), FLOOD(Grad8Con_##type##_C3),         \
      FLOOD(Grad8Con_##type##_C1)
TEST(byteImages) { BOUNDED(8u); }
TEST(wordImages) { BOUNDED(16u), FLOOD(Grad4Con_16u_C1); }
TEST(floatImages) { BOUNDED(32f), FLOOD(Grad4Con_32f_C1); }

// Sizes are the low 32 bits.
TEST(sizes) {
  int32_t bytes = 0;
  CHECK(orviFloodFillGetSize({0, 1}, nullptr) == orvStatusNullPtr);
  CHECK(orviFloodFillGetSize_Grad({1, 0}, &bytes) == orvStatusSize && bytes == 0);
  CHECK(orviFloodFillGetSize({7, 3}, &bytes) == orvStatusOk && bytes == 158);
  CHECK(orviFloodFillGetSize_Grad({7, 3}, &bytes) == orvStatusOk && bytes == 9 * 5 + 16 * 21 + 64);
  CHECK(orviFloodFillGetSize({0x10000, 0x10000}, &bytes) == orvStatusOk && bytes == 32);
  CHECK(orviFloodFillGetSize_Grad({0x10000, 0x8000}, &bytes) == orvStatusOk &&
        bytes == (int32_t)(0x10002u * 0x8002u + 64));
}

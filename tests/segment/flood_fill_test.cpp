// Flood fills of the forms with one body.
// One body serves both variants.
#include "segment/flood_cases.h"

using namespace test;

namespace {

#define BOUNDED(tag, T)                                                                               \
  FLOOD_C1(4Con_##tag, T), FLOOD_C1(8Con_##tag, T), FLOOD_C3(4Con_##tag, T), FLOOD_C3(8Con_##tag, T), \
      FLOOD_DELTAS_C1(Range, 4Con_##tag, T), FLOOD_DELTAS_C1(Range, 8Con_##tag, T),                   \
      FLOOD_DELTAS_C3(Range, 4Con_##tag, T), FLOOD_DELTAS_C3(Range, 8Con_##tag, T),                   \
      FLOOD_DELTAS_C3(Grad, 4Con_##tag, T), FLOOD_DELTAS_C3(Grad, 8Con_##tag, T)
const FloodForm<uint8_t> bytes[] = {BOUNDED(8u, uint8_t), FLOOD_DELTAS_C1(Grad, 8Con_8u, uint8_t)};
const FloodForm<uint16_t> words[] = {BOUNDED(16u, uint16_t), FLOOD_DELTAS_C1(Grad, 4Con_16u, uint16_t),
                                     FLOOD_DELTAS_C1(Grad, 8Con_16u, uint16_t)};
const FloodForm<float> floats[] = {BOUNDED(32f, float), FLOOD_DELTAS_C1(Grad, 4Con_32f, float),
                                   FLOOD_DELTAS_C1(Grad, 8Con_32f, float)};

}  // namespace

TEST(byteImages) {
  for (const auto& form : bytes) sweepFlood(form), walkFlood(form);
}
TEST(wordImages) {
  for (const auto& form : words) sweepFlood(form), walkFlood(form);
}
TEST(floatImages) {
  for (const auto& form : floats) sweepFlood(form), walkFlood(form);
}

// Bounds that hold the new value: the fill goes round the hole once and ends.
TEST(newValueWithinTheRange) {
  uint8_t image[24], want[24], buffer[6 * 24 + 32];
  for (int i = 0; i < 24; ++i) {
    const bool hole = i == 8 || i == 9 || i == 14 || i == 15;
    image[i] = (uint8_t)(hole ? 99 : 5 + i % 3), want[i] = hole ? 99 : 7;
  }
  OrvConnectedComp region;
  orviFloodFill_Range4Con_8u_C1IR(image, 6, {6, 4}, {0, 0}, 7, 2, 2, &region, buffer);
  CHECK(memcmp(image, want, sizeof want) == 0 && region.area == 20);
}

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

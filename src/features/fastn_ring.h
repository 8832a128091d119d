// The rings of the FastN test.
#pragma once
#include "features/names.h"

namespace ORV_VARIANT {

enum : int32_t { mostRingPoints = 52 };

struct RingPoint {
  int8_t x, y;
};

// The ring of a radius, or null if there is none; `points` receives the number of its points.
const RingPoint* fastNRing(int32_t radius, int32_t* points);

}  // namespace ORV_VARIANT

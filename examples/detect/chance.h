// Numbers by chance that are the same on every machine.
#pragma once
#include <stdint.h>

namespace detect {

class Chance {
 public:
  explicit Chance(uint32_t seed) : state_(seed * 2654435761u + 12345u) {
    for (int i = 0; i < 4; ++i) next();
  }
  uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }
  // A number in [low, high).
  float in(float low, float high) { return low + (high - low) * (float)(next() >> 8) / 16777216.f; }
  // A whole number in [low, high].
  int whole(int low, int high) { return low + (int)(next() % (uint32_t)(high - low + 1)); }

 private:
  uint32_t state_;
};

}  // namespace detect

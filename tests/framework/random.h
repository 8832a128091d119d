// Random numbers and fills: runs of random length in several modes, which find more than noise alone.
#pragma once
#include <float.h>
#include <math.h>
#include <stdint.h>
#include <string.h>
#include <limits>
#include <type_traits>

namespace test {

class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed * 2654435761u + 88172645463325252u) {}
  uint64_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return state_ * 2685821657736338717u >> 11;
  }
  // A number in [low, high].
  int32_t in(int32_t low, int32_t high) { return low + (int32_t)(next() % (uint64_t)((int64_t)high - low + 1)); }
  bool one(int outOf) { return next() % (uint64_t)outOf == 0; }

 private:
  uint64_t state_;
};

// Integers: the whole range. Floats: a few magnitudes around an image's, and, if `wild`, also infinities, NaNs,
// denormals, huge values and minus zero.
template <class T>
T randomElement(Random& r, bool wild) {
  if constexpr (std::is_floating_point<T>::value) {
    if (wild && r.one(8)) {
      const double special[] = {0, -0.0, INFINITY, -INFINITY, NAN, 1.4e-45, FLT_MAX, -FLT_MAX, 1e-30, 3e19};
      return (T)special[r.in(0, 9)];
    }
    return (T)(r.in(-1000000, 1000000) * ldexp(1.0, r.in(-16, -4)));
  } else {
    return (T)r.next();
  }
}

// The ends of a type's range; for floats two ordinary bounds.
template <class T>
T lowest() {
  return std::is_floating_point<T>::value ? (T)-1000 : std::numeric_limits<T>::lowest();
}
template <class T>
T highest() {
  return std::is_floating_point<T>::value ? (T)255.5 : std::numeric_limits<T>::max();
}

// Fills `count` elements at any address.
template <class T>
void fillRuns(Random& r, void* target, int64_t count, bool wild) {
  auto* bytes = (uint8_t*)target;
  int64_t i = 0;
  while (i < count) {
    const int mode = r.in(0, 7);
    const int64_t end = i + r.in(1, mode < 4 ? 40 : 200);
    const T base = randomElement<T>(r, wild), other = randomElement<T>(r, wild);
    for (int64_t k = 0; i < count && i < end; ++i, ++k) {
      T v = randomElement<T>(r, wild);
      if (mode == 0) v = lowest<T>();
      if (mode == 1) v = highest<T>();
      if (mode == 2) v = (T)(highest<T>() - (T)(r.in(0, 3)));
      if (mode == 3) v = (T)(lowest<T>() + (T)(r.in(0, 3)));
      if (mode == 4) v = k % 2 ? base : other;
      if (mode == 5) v = (T)(base + (T)k);
      memcpy(bytes + i * (int64_t)sizeof(T), &v, sizeof(T));
    }
  }
}

}  // namespace test

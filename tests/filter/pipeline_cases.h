// Kernels, divisors and call forms that the tests of the row and column stages share.
#pragma once
#include <string.h>
#include <vector>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/sizes.h"
#include "framework/walker.h"
#include "reference/pipeline.h"

namespace test {

// An array of exactly its elements before a protected page.
template <class T>
class GuardedArray {
 public:
  explicit GuardedArray(const std::vector<T>& values)
      : memory_(std::make_shared<Guarded>(values.size() * sizeof(T), true, 0)) {
    memcpy((void*)memory_->data(), values.data(), values.size() * sizeof(T));
  }
  T* data() const { return (T*)(void*)memory_->data(); }

 private:
  std::shared_ptr<Guarded> memory_;
};

template <class T>
T* rowAddress(const Image<T>& image, int y) {
  return (T*)((uintptr_t)image.data() + (uintptr_t)((ptrdiff_t)y * image.step()));
}

// A number of taps that takes every form of the kernels, often above the width.
inline int someKernelSize(Random& r) { return r.one(8) ? r.in(10, 40) : r.in(1, 9); }

// Taps of all magnitudes: small ones (many ties), Gaussian-like ones (sums near 2^15 and 2^16), the ends of the range,
// any; one in three symmetric.
template <class Tap>
std::vector<Tap> someTaps(Random& r, int size) {
  std::vector<Tap> taps((size_t)size);
  const int mode = r.in(0, 5);
  const int even = 32768 / size + 1;
  for (Tap& tap : taps) {
    if (std::is_same<Tap, float>::value) tap = (Tap)(r.in(-999, 999) / (mode < 3 ? 100.0f : 1.0f));
    else if (mode < 2) tap = (Tap)r.in(std::is_signed<Tap>::value ? -4 : 0, 4);
    else if (mode == 2) tap = (Tap)(r.in(0, even));
    else if (mode == 3) tap = (Tap)(r.in(0, 2 * even));
    else if (mode == 4) tap = r.one(2) ? lowest<Tap>() : highest<Tap>();
    else tap = (Tap)r.next();
  }
  if (r.one(3))
    for (int i = 0; i < size / 2; ++i) taps[(size_t)(size - 1 - i)] = taps[(size_t)i];
  return taps;
}

template <class Pixel>
int32_t someDivisor(Random& r) {
  static const int32_t list[] = {1,    1,    2,     2,     -1,     -2,       3,       -7, 64,        100,
                                 4096, 8192, 16384, 32768, 100000, -1 << 30, 1 << 24, 9,  INT32_MAX, INT32_MIN};
  for (;;) {
    const int32_t divisor = list[r.in(0, 19)];
    if (divisor > 0 || !std::is_same<Pixel, uint16_t>::value) return divisor;
  }
}

}  // namespace test

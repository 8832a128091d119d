// Arguments of the distance functions, and images that are hard on them.
#pragma once
#include "distance/step_checks.h"

namespace test {

// A list of weights behind a pointer.
template <class T>
struct Weights : Value<std::vector<T>> {
  using Value<std::vector<T>>::Value;
  std::tuple<const T*> arguments(Side) { return {this->chosen.data()}; }
};

// Fills a mask: 0 few zero pixels, 1 few others, 2 blocks, 3 a maze of walls with gaps, 4 all zero, 5 no zero, 6 one
// zero.
inline void drawMask(Random& r, Image<uint8_t>& mask, int kind) {
  const int width = mask.elements(), height = mask.height(), gap = r.in(0, 7);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      bool set = kind == 5 || kind == 6;
      if (kind == 0) set = !r.one(width + 3);
      if (kind == 1) set = r.one(20);
      if (kind == 2) set = ((x / (gap + 1)) ^ (y / 3)) % 3 != 0;
      if (kind == 3) set = y % 4 != 2 || (y / 4 % 2 ? x < 2 : x >= width - 2);
      mask.set(x, y, (uint8_t)(set ? r.in(1, 255) : 0));
    }
  if (kind == 6) mask.set(r.in(0, width - 1), r.in(0, height - 1), 0);
  mask.keep();
}
constexpr int maskKinds = 7;

struct Drawn : ImageRole<uint8_t> {
  explicit Drawn(int maskKind) : ImageRole<uint8_t>(In<uint8_t>()), kind(maskKind) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<uint8_t>::prepare(r, shape);
    drawMask(r, *candidate, kind);
  }
  int kind;
};

}  // namespace test

// The eight neighbours of a pixel in a map with a ring around it, looked at together.
//
// A mask has a bit for each neighbour in the order of the floods: left, right, up, down, then up left, up right, down
// left, down right.
#pragma once
#include <type_traits>
#include "segment/names.h"
#include "core/image.h"

namespace ORV_VARIANT {

template <class T>
struct Neighbours {
  // Four labels; the one behind the right neighbour is read too, and ignored.
  using Word = std::conditional_t<sizeof(T) == 1, uint32_t, uint64_t>;
  static constexpr int bits = 8 * sizeof(T);
  static constexpr Word ones = (Word) ~(Word)0 / (T) ~(T)0, low = (Word)(ones * ((T) ~(T)0 >> 1));
  Word up, here, down;

  __attribute__((always_inline)) Neighbours(const Loose<T>* p, ptrdiff_t stride)
      : up(word(p - stride - 1)), here(word(p - 1)), down(word(p + stride - 1)) {}

  // The neighbours that have a value.
  __attribute__((always_inline)) uint32_t equalTo(T value) const {
    const Word other = ones * value, u = zeros(up ^ other), h = zeros(here ^ other), d = zeros(down ^ other);
    return lane(h, 0) | lane(h, 2) << 1 | lane(u, 1) << 2 | lane(d, 1) << 3 | lane(u, 0) << 4 | lane(u, 2) << 5 |
           lane(d, 0) << 6 | lane(d, 2) << 7;
  }

 private:
  __attribute__((always_inline)) static Word word(const Loose<T>* p) {
    return *(const Loose<const Word>*)(const void*)p;
  }
  // The highest bit of each lane that is zero; exact, without a carry from lane to lane.
  __attribute__((always_inline)) static Word zeros(Word v) { return ~(((v & low) + low) | v | low); }
  __attribute__((always_inline)) static uint32_t lane(Word v, int k) {
    return (uint32_t)(v >> (bits * k + bits - 1)) & 1;
  }
};

}  // namespace ORV_VARIANT

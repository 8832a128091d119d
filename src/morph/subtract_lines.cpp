// Differences of lines: see subtract_lines.h.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/subtract_lines.cpp"
#include "core/kernels.h"
#include "morph/subtract_lines.h"

KERNELS_BEGIN

template <class T>
void SubtractLine(const uint8_t* a, const uint8_t* b, uint8_t* dst, ptrdiff_t elements) {
  const T *p = (const T*)(const void*)a, *q = (const T*)(const void*)b;
  T* const out = (T*)(void*)dst;
  Vectors<T>(
      0, elements, VECTOR(d, x) {
        const auto u = hn::LoadU(d, p + x), v = hn::LoadU(d, q + x);
        // The order of the maximum turns -0 into +0.
        if constexpr (std::is_same<T, float>::value) hn::StoreU(hn::Max(hn::Sub(u, v), hn::Zero(d)), d, out + x);
        else hn::StoreU(hn::SaturatedSub(u, v), d, out + x);
      });
}

KERNELS_END

#if HWY_ONCE

SubtractLines ORV_VARIANT::subtractLinesOf(int32_t dataType) {
  switch (dataType) {
    case orvData16u:
      return WIDEST(SubtractLine<uint16_t>);
    case orvData16s:
      return WIDEST(SubtractLine<int16_t>);
    case orvData32f:
      return WIDEST(SubtractLine<float>);
    default:
      return WIDEST(SubtractLine<uint8_t>);
  }
}

// By 56 bits, which at any bit lie in 8 bytes; of the last bits only the bytes are touched that hold them.
void ORV_VARIANT::subtractBits(const uint8_t* a, ptrdiff_t aBit, const uint8_t* b, ptrdiff_t bBit, uint8_t* dst,
                               ptrdiff_t dstBit, ptrdiff_t count) {
  const auto bits = [](const uint8_t* row, ptrdiff_t bit, ptrdiff_t n, bool inside) {
    uint64_t word = 0;
    if (inside) memcpy(&word, row + (bit >> 3), 8);
    else memcpy(&word, row + (bit >> 3), (size_t)(((bit & 7) + n + 7) >> 3));
    return word;
  };
  for (ptrdiff_t i = 0; i < count; i += 56) {
    const ptrdiff_t n = count - i < 56 ? count - i : 56, to = dstBit + i;
    const bool inside = count - i >= 64;
    const uint64_t mask = ((1ull << n) - 1) << (to & 7);
    const uint64_t minuend = bits(a, aBit + i, n, inside) >> ((aBit + i) & 7);
    const uint64_t subtrahend = bits(b, bBit + i, n, inside) >> ((bBit + i) & 7);
    const uint64_t difference = (minuend & ~subtrahend) << (to & 7);
    uint64_t word = (bits(dst, to, n, inside) & ~mask) | (difference & mask);
    if (inside) memcpy(dst + (to >> 3), &word, 8);
    else memcpy(dst + (to >> 3), &word, (size_t)(((to & 7) + n + 7) >> 3));
  }
}

#endif

// Pixels of three bytes picked apart and put together, for kernels (include after core/kernels.h; read once a width).
// Blocks of 16 bytes do: what these functions move is small beside what made it.
#ifndef ORV_PIXEL_TRIPLES
#define ORV_PIXEL_TRIPLES
#include <stdint.h>
namespace ORV_VARIANT {

// Three result blocks of 16 bytes, each a choice of bytes from two source blocks; 0x80 takes none.
struct TripleTables {
  alignas(16) uint8_t first[3][16], second[3][16];
};

// Every second pixel: result blocks begin at the source bytes 0, 31 and 62, and reach 31 bytes far.
static constexpr TripleTables everyOtherTables = [] {
  TripleTables t{};
  for (int b = 0; b < 48; ++b) {
    const int from = b / 3 * 6 + b % 3 - b / 16 * 31;
    t.first[b / 16][b % 16] = (uint8_t)(from < 16 ? from : 0x80);
    t.second[b / 16][b % 16] = (uint8_t)(from < 16 ? 0x80 : from - 15);
  }
  return t;
}();

// Pixels of two rows in turn: result blocks take bytes from 0, 6 and 8 on of both rows.
static constexpr int weaveStarts[3] = {0, 6, 8};
static constexpr TripleTables weaveTables = [] {
  TripleTables t{};
  for (int b = 0; b < 48; ++b) {
    const int from = b / 6 * 3 + b % 3 - weaveStarts[b / 16];
    const bool odd = b / 3 % 2;
    t.first[b / 16][b % 16] = (uint8_t)(odd ? 0x80 : from);
    t.second[b / 16][b % 16] = (uint8_t)(odd ? from : 0x80);
  }
  return t;
}();

}  // namespace ORV_VARIANT
#endif

#if defined(ORV_TRIPLES_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_TRIPLES_TOGGLE
#undef ORV_TRIPLES_TOGGLE
#else
#define ORV_TRIPLES_TOGGLE
#endif
KERNELS_BEGIN

HWY_INLINE void StoreChoice(const TripleTables& t, int block, const uint8_t* a, const uint8_t* b, uint8_t* dst) {
  const hn::Full128<uint8_t> d;
  const auto first = hn::TableLookupBytesOr0(hn::LoadU(d, a), hn::Load(d, t.first[block]));
  const auto second = hn::TableLookupBytesOr0(hn::LoadU(d, b), hn::Load(d, t.second[block]));
  hn::StoreU(hn::Or(first, second), d, dst);
}

// Pixels 0, 2, 4 ... of a row, n of them.
[[maybe_unused]] HWY_NOINLINE void EveryOtherTriple(const uint8_t* s, uint8_t* dst, ptrdiff_t n) {
  for (; n >= 16; n -= 16, s += 96, dst += 48)
    for (int i = 0; i < 3; ++i) StoreChoice(everyOtherTables, i, s + 31 * i, s + 31 * i + 15, dst + 16 * i);
  for (; n > 0; --n, s += 6, dst += 3) dst[0] = s[0], dst[1] = s[1], dst[2] = s[2];
}

// Pixel 0 of `even`, pixel 0 of `odd`, pixel 1 of `even` ...; n pixels of each.
[[maybe_unused]] HWY_NOINLINE void WeaveTriples(const uint8_t* even, const uint8_t* odd, uint8_t* dst, ptrdiff_t n) {
  for (; n >= 8; n -= 8, even += 24, odd += 24, dst += 48)
    for (int i = 0; i < 3; ++i) StoreChoice(weaveTables, i, even + weaveStarts[i], odd + weaveStarts[i], dst + 16 * i);
  for (; n > 0; --n, even += 3, odd += 3, dst += 6)
    for (int c = 0; c < 3; ++c) dst[c] = even[c], dst[3 + c] = odd[c];
}

KERNELS_END
#endif

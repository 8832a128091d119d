// Copy of a packed one-bit image with its border. Pixel p of a row is bit (offset + p) & 7, counted from the least
// significant, of byte (offset + p) >> 3; bits of a byte that are no pixels of the destination keep their value.
#include <string.h>
#include "core/image.h"
#include "filter/border_copy.h"
#include "filter/copy_window.h"

namespace {

// A bit of a row: a byte and 0..7 in it. Positions before the row's first byte are negative.
template <class Byte>
struct BitCursor {
  Byte* byte;
  int32_t bit;
  BitCursor(Byte* row, ptrdiff_t position) : byte(row + (position >> 3)), bit((int32_t)(position & 7)) {}
};

// Replaces the `count` bits from `bit` on of one byte by the low bits of `bits`.
inline void mergeBits(uint8_t* byte, int32_t bit, int32_t count, uint32_t bits) {
  const uint32_t mask = ((1u << count) - 1) << bit;
  *byte = (uint8_t)((*byte & ~mask) | ((bits << bit) & mask));
}

// At least `count` <= 8 bits from a position on; the second byte is read only if they reach into it.
inline uint32_t takeBits(const uint8_t* row, ptrdiff_t position, int32_t count) {
  const BitCursor<const uint8_t> from(row, position);
  uint32_t bits = (uint32_t)from.byte[0] >> from.bit;
  if (from.bit + count > 8) bits |= (uint32_t)from.byte[1] << (8 - from.bit);
  return bits;
}

// Whole bytes of the destination, at a distance of `shift` bits in the source: words of eight bytes, then single ones.
// With a shift the last bits of each word stand in its ninth byte, so no byte is read that has no wanted bit.
void copyShifted(uint8_t* dst, const uint8_t* src, ptrdiff_t bytes, int32_t shift) {
  if (shift == 0) {
    memcpy(dst, src, (size_t)bytes);
    return;
  }
  ptrdiff_t i = 0;
  for (; i + 8 <= bytes; i += 8) {
    uint64_t word;
    memcpy(&word, src + i, 8);
    word = (word >> shift) | ((uint64_t)src[i + 8] << (64 - shift));
    memcpy(dst + i, &word, 8);
  }
  for (; i < bytes; ++i) dst[i] = (uint8_t)((src[i] >> shift) | (src[i + 1] << (8 - shift)));
}

// The ragged bits up to the first whole byte of the destination, whole bytes, the ragged rest.
template <class Head, class Bytes>
inline void alongBits(uint8_t* row, ptrdiff_t position, ptrdiff_t count, const Head& bitsAt, const Bytes& wholeBytes) {
  const BitCursor<uint8_t> to(row, position);
  const ptrdiff_t ragged = (8 - to.bit) & 7;
  const ptrdiff_t head = ragged < count ? ragged : count;
  if (head) mergeBits(to.byte, to.bit, (int32_t)head, bitsAt(0, (int32_t)head));
  if (head == count) return;
  uint8_t* first = to.byte + (to.bit != 0);
  const ptrdiff_t bytes = (count - head) >> 3, tail = (count - head) & 7;
  if (bytes) wholeBytes(first, head, bytes);
  if (tail) mergeBits(first + bytes, 0, (int32_t)tail, bitsAt(count - tail, (int32_t)tail));
}

void copyBits(uint8_t* dst, ptrdiff_t dstBit, const uint8_t* src, ptrdiff_t srcBit, ptrdiff_t count) {
  alongBits(
      dst, dstBit, count, [&](ptrdiff_t i, int32_t bits) { return takeBits(src, srcBit + i, bits); },
      [&](uint8_t* first, ptrdiff_t i, ptrdiff_t bytes) {
        const BitCursor<const uint8_t> from(src, srcBit + i);
        copyShifted(first, from.byte, bytes, from.bit);
      });
}

void fillBits(uint8_t* dst, ptrdiff_t dstBit, uint32_t value, ptrdiff_t count) {
  alongBits(
      dst, dstBit, count, [&](ptrdiff_t, int32_t) { return 0u - value; },
      [&](uint8_t* first, ptrdiff_t, ptrdiff_t bytes) { memset(first, (int)(0u - value) & 255, (size_t)bytes); });
}

struct BitImage {
  const uint8_t* data;
  int32_t step, offset;
  OrvSize size;
};

// Each row as in copy_window.h: the first pixel repeated, the run in memory, the last pixel repeated.
OrvStatus copyBitImage(BitImage src, uint8_t* dst, int32_t dstStep, int32_t dstOffset, OrvSize dstSize, int32_t sides,
                       int32_t top, int32_t left) {
  const OrvStatus status = checkBorderCopy(src.data, src.step, src.size, dst, dstStep, dstSize, top, left);
  if (status != orvStatusOk) return status;
  const ptrdiff_t width = src.size.width, height = src.size.height, offset = src.offset;
  const auto inMemory = [&](int32_t side) { return (sides & side) != 0; };
  const bool above = inMemory(orvBorderInMemTop), below = inMemory(orvBorderInMemBottom);
  const WindowSpan span =
      splitWindow(-left, dstSize.width, width, inMemory(orvBorderInMemLeft), inMemory(orvBorderInMemRight));
  for (ptrdiff_t y = 0; y < dstSize.height; ++y) {
    const uint8_t* line =
        raw(Plane<const uint8_t>{src.data, src.step}.row(borderIndex(orvBorderRepl, y - top, height, above, below)));
    uint8_t* row = raw(Plane<uint8_t>{dst, dstStep}.row(y));
    ptrdiff_t to = dstOffset;
    if (span.before) fillBits(row, to, takeBits(line, offset, 1) & 1, span.before);
    to += span.before;
    copyBits(row, to, line, offset + span.p + span.before, span.run);
    to += span.run;
    if (span.behind) fillBits(row, to, takeBits(line, offset + width - 1, 1) & 1, span.behind);
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus ownorviCopyReplicateBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset,
                                            OrvSize srcRoiSize, uint8_t* dst, int32_t dstStep, int32_t dstBitOffset,
                                            OrvSize dstRoiSize, int32_t topBorderHeight, int32_t leftBorderWidth) {
  return copyBitImage({src, srcStep, srcBitOffset, srcRoiSize}, dst, dstStep, dstBitOffset, dstRoiSize, 0,
                      topBorderHeight, leftBorderWidth);
}

OrvStatus ownorviCopyInMemBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, OrvSize srcRoiSize,
                                        uint8_t* dst, int32_t dstStep, int32_t dstBitOffset, OrvSize dstRoiSize,
                                        int32_t borderType, int32_t topBorderHeight, int32_t leftBorderWidth) {
  return copyBitImage({src, srcStep, srcBitOffset, srcRoiSize}, dst, dstStep, dstBitOffset, dstRoiSize,
                      sidesInMemory(borderType), topBorderHeight, leftBorderWidth);
}

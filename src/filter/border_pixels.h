// Runs of pixels, the pieces of every border. A pixel is N bytes at any address, whatever its type and channels are.
#pragma once
#include <string.h>
#include "filter/names.h"
#include "filter/border.h"

namespace ORV_VARIANT {

// Copies one block of `Size` bytes at each end of a run of Size..2*Size bytes; both are read before either is written.
template <int Size>
static inline void copyEnds(uint8_t* dst, const uint8_t* src, ptrdiff_t bytes) {
  uint8_t first[Size], last[Size];
  memcpy(first, src, Size);
  memcpy(last, src + bytes - Size, Size);
  memcpy(dst, first, Size);
  memcpy(dst + bytes - Size, last, Size);
}

// memcpy without the call where a border is a few pixels wide.
static inline void copyRun(uint8_t* dst, const uint8_t* src, ptrdiff_t bytes) {
  if (bytes > 32) memcpy(dst, src, (size_t)bytes);
  else if (bytes >= 16) copyEnds<16>(dst, src, bytes);
  else if (bytes >= 8) copyEnds<8>(dst, src, bytes);
  else if (bytes >= 4) copyEnds<4>(dst, src, bytes);
  else if (bytes >= 2) copyEnds<2>(dst, src, bytes);
  else if (bytes == 1) *dst = *src;
}

// Repeats one pixel `count` times: the filled part is doubled until the run is full.
template <int N>
static inline void fillRun(uint8_t* dst, const uint8_t* pixel, ptrdiff_t count) {
  if (count < 1) return;
  memcpy(dst, pixel, N);
  for (ptrdiff_t done = 1; done < count; done *= 2)
    copyRun(dst + done * N, dst, (done < count - done ? done : count - done) * N);
}

// The pixels p .. p + count - 1 beyond one end of a line of n pixels, made by the kind. Where the kind is none, nothing
// is written.
template <int N>
static inline void fillBeyond(uint8_t* dst, const uint8_t* line, ptrdiff_t n, ptrdiff_t p, ptrdiff_t count,
                              int32_t kind, const uint8_t* value) {
  switch (kind) {
    case orvBorderConst:
      return fillRun<N>(dst, value, count);
    case orvBorderRepl:
      return fillRun<N>(dst, line + (p < 0 ? 0 : n - 1) * N, count);
    case orvBorderWrap:
    case orvBorderMirr:
    case orvBorderMirrR:
      for (ptrdiff_t i = 0; i < count; ++i) memcpy(dst + i * N, line + borderIndex(kind, p + i, n) * N, N);
  }
}

}  // namespace ORV_VARIANT

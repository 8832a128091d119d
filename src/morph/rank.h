// Minimum and maximum over rectangles: the kernels that rank filters and the row-length path of morphology share.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "morph/names.h"

namespace ORV_VARIANT {

enum class Rank { min, max };

enum : int32_t {
  rankMostLevels = 4,  // of column kernels: 1, 2, 4 and 8 rows of results at a time
  rankMostTaps = 4,
  rankMostRows = 32  // of a window that column kernels fold from its rows; higher ones go by running extrema
};

// The folds of an element type, for this processor. Rows are plain arrays at any address; lengths are in elements.
template <class T>
struct RankKernels {
  // out[k][x] = the extreme of rows[k .. k + height - 1][x] for 0 <= k < 2^level, height >= 2^level. Height 1 copies.
  // `touch` more pointers follow the rows of all windows: rows that are needed soon, to be fetched meanwhile.
  void (*columns[rankMostLevels])(const T* const* rows, int32_t height, T* const* out, ptrdiff_t n, int32_t touch);
  // out[x] = the extreme of line[x + offset[i]] over 2 to 4 taps, offset[0] = 0 and rising. `out` may be `line`.
  void (*row)(const T* line, T* out, ptrdiff_t n, const ptrdiff_t* offset, int32_t taps);
  T neutral;  // loses against every element, so it fills up windows at the ends of a line
};

template <class T>
RankKernels<T> rankKernels(Rank rank);
template <>
RankKernels<uint8_t> rankKernels<uint8_t>(Rank rank);
template <>
RankKernels<uint16_t> rankKernels<uint16_t>(Rank rank);
template <>
RankKernels<int16_t> rankKernels<int16_t>(Rank rank);
template <>
RankKernels<float> rankKernels<float>(Rank rank);

// out[x] = the extreme of the `window` elements line[x], line[x + pitch], ... for 0 <= x < n. The line has
// n + (window - 1) * pitch elements and is spent.
//
// Windows double, or double twice, in place until four of them cover the whole:
//
//   window 15:  |1|2|3|4|                          in place: windows of 4
//               |   4   |   4   |   4   |  4 |     out: four of those, the last of which overlaps
template <class T>
static inline void foldLine(const RankKernels<T>& kernels, T* line, T* out, ptrdiff_t n, ptrdiff_t window,
                            ptrdiff_t pitch) {
  ptrdiff_t offset[rankMostTaps] = {}, reach = 1;
  while (window > 4 * reach) {
    const int32_t taps = window > 8 * reach ? 4 : 2;
    for (int32_t i = 0; i < taps; ++i) offset[i] = i * reach * pitch;
    reach *= taps;
    kernels.row(line, line, n + (window - reach) * pitch, offset, taps);
  }
  const int32_t taps = (int32_t)((window + reach - 1) / reach);
  for (int32_t i = 0; i < taps - 1; ++i) offset[i] = i * reach * pitch;
  offset[taps - 1] = (window - reach) * pitch;
  kernels.row(line, out, n, offset, taps);
}

}  // namespace ORV_VARIANT

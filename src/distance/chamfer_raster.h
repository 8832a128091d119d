// The two raster passes of the chamfer transforms.
//
// Theory of operation. A pass walks rows towards the far side and takes for each pixel the least of what it holds and
// of neighbours already done plus their weights. Drawn for the forward pass; the backward pass is turned by 180
// degrees:
//
//      up2    [G] [c] [T] [c] [G]        Three:  A, D and, in the last row only, T in the row
//      up1    [c] [D] [A] [D] [c]        Plain:  A, D, c
//      row    [T] [A]  x                 Closed: all
//
// What comes from the rows above is worked out for many columns at once. What comes from the row itself is a chain of
// additions that each wait for the one before, and float additions can't be regrouped. So `lanes` rows run side by
// side, each `lag` columns behind the one above it, in chunks of `chunk` columns; the processor overlaps their chains:
//
//      step s:   row r      . . . . . [s  ]            A row's lane takes the row `lanes` further down as soon as it is
//                row r + 1  . . . [s  ]                through: there is one wavefront over the whole image.
//                row r + 2  . [s  ]
//
// Integers are widened, so that sums don't wrap, and no value above the maximum is ever stored: that is saturation.
// Columns beyond the sides count as the maximum, which no sum is below. No memory but the stack is used.
//
// In place works for bytes: a source pixel is read before its result is stored, a seed is 0 before and after, and any
// other pixel non-zero.
#pragma once
#include "distance/names.h"
#include "core/image.h"

namespace ORV_VARIANT {

enum class Mask { three, plain, closed };

// Wide enough for the maximum plus a weight.
template <class T>
struct Sum;
template <>
struct Sum<uint8_t> {
  using Type = int16_t;
  static constexpr int16_t most = 255;
};
template <>
struct Sum<uint16_t> {
  using Type = int32_t;
  static constexpr int32_t most = 65535;
};
template <>
struct Sum<float> {
  using Type = float;
  static constexpr float most = 3.4028235e38f;
};

// Weights of one step: aside, diagonal, knight, two aside, two diagonal. None is above the maximum. `lastTwo` stands in
// place of `two` in the last row.
template <class W>
struct Steps {
  W one, diagonal, knight, two, twoDiagonal, lastTwo;
};

static constexpr ptrdiff_t lanes = 8, chunk = 16, lag = 2, reach = 2;

// What a lane works on: the terms of a chunk between the results before and after it, in the order of the image.
template <class W>
struct Tile {
  static constexpr ptrdiff_t pitch = chunk + 2 * reach;
  W value[lanes][pitch];
  W two[lanes];

  W* terms(ptrdiff_t lane) { return value[lane] + reach; }
};

template <class W>
static inline W least(W a, W b) {
  return a < b ? a : b;
}

// Lowers the terms to the least of them and of the two rows above, u1 and u2, which reach two columns further.
template <Mask mask, class T, class W>
static inline void fromAbove(const LooseElement<T>* u1, const LooseElement<T>* u2, const Steps<W>& steps, W* terms) {
  for (ptrdiff_t i = 0; i < chunk; ++i) {
    W v = least(terms[i], (W)(u1[i] + steps.one));
    v = least(v, (W)(least<W>(u1[i - 1], u1[i + 1]) + steps.diagonal));
    if constexpr (mask != Mask::three) {
      W knight = least<W>(u1[i - 2], u1[i + 2]);
      knight = least(knight, least<W>(u2[i - 1], u2[i + 1]));
      v = least(v, (W)(knight + steps.knight));
    }
    if constexpr (mask == Mask::closed) {
      v = least(v, (W)(u2[i] + steps.two));
      v = least(v, (W)(least<W>(u2[i - 2], u2[i + 2]) + steps.twoDiagonal));
    }
    terms[i] = v;
  }
}

// Runs the chains of all lanes. `direction` is 1 to the right, -1 to the left; `twoSteps`: with steps of two columns.
template <int direction, bool twoSteps, class W>
static inline void alongRows(Tile<W>& tile, W one) {
  constexpr ptrdiff_t start = direction > 0 ? reach : reach + chunk - 1;
  W last[lanes];
  for (ptrdiff_t i = 0; i < lanes; ++i) last[i] = tile.value[i][start - direction];
  for (ptrdiff_t k = 0; k < chunk; ++k) {
    W* const column = &tile.value[0][start + direction * k];
#pragma GCC unroll 8
    for (ptrdiff_t i = 0; i < lanes; ++i) {
      W* const v = column + i * Tile<W>::pitch;
      W t = *v;
      if constexpr (twoSteps) t = least(t, (W)(v[-2 * direction] + tile.two[i]));
      *v = last[i] = least(t, (W)(last[i] + one));
    }
  }
}

// `count` columns of a row from x on, which may lie beyond its sides: the row itself, or a copy filled up.
template <class T>
static inline const LooseElement<T>* window(const LooseElement<T>* row, ptrdiff_t x, ptrdiff_t count, ptrdiff_t width,
                                            LooseElement<T>* copy) {
  if (row && x >= 0 && x + count <= width) return row + x;
  for (ptrdiff_t i = 0; i < count; ++i)
    copy[i] = row && x + i >= 0 && x + i < width ? row[x + i].value : (T)Sum<T>::most;
  return copy;
}

template <class T>
struct Chamfer {
  using W = typename Sum<T>::Type;
  Plane<const uint8_t> src;
  Plane<T> dst;
  ptrdiff_t width, height;
  Steps<W> steps;

  // One pass. Row r counts from the near side: from the top forward, from the bottom backward.
  template <Mask mask, int direction>
  void pass(bool twoSteps) const {
    const ptrdiff_t chunks = (width + lag * (lanes - 1) + chunk - 1) / chunk;
    // The lane of the row above must be `lag` columns ahead also where it is the last and this one the first.
    constexpr ptrdiff_t leastChunks = lanes + (lag * lanes + chunk - 1) / chunk + 1;
    const ptrdiff_t turn = chunks > leastChunks ? chunks : leastChunks;
    const ptrdiff_t turns = (height + lanes - 1) / lanes;
    Tile<W> tile;
    for (auto& lane : tile.value)
      for (W& v : lane) v = Sum<T>::most;
    for (W& v : tile.two) v = Sum<T>::most;
    ptrdiff_t at[lanes], row[lanes];  // a lane's chunk and row; lanes start one step after each other
    for (ptrdiff_t i = 0; i < lanes; ++i) at[i] = -i, row[i] = i;

    for (ptrdiff_t step = 0; step < turns * turn + lanes - 1; ++step) {
      for (ptrdiff_t i = 0; i < lanes; ++i) begin<mask, direction>(tile, i, at[i], row[i]);
      if (twoSteps) alongRows<direction, true>(tile, steps.one);
      else alongRows<direction, false>(tile, steps.one);
      for (ptrdiff_t i = 0; i < lanes; ++i) {
        end<direction>(tile, i, at[i], row[i]);
        if (++at[i] == turn) at[i] = 0, row[i] += lanes;
      }
    }
  }

 private:
  template <int direction>
  ptrdiff_t left(ptrdiff_t lane, ptrdiff_t at) const {
    const ptrdiff_t ahead = at * chunk - lag * lane;
    return direction > 0 ? ahead : width - chunk - ahead;
  }
  bool outside(ptrdiff_t at, ptrdiff_t row, ptrdiff_t x) const {
    return at < 0 || row >= height || x >= width || x + chunk <= 0;
  }
  template <int direction>
  LooseElement<T>* rowAt(ptrdiff_t row) const {
    return row < 0 ? nullptr : dst.row(direction > 0 ? row : height - 1 - row);
  }

  // Lays the terms of a lane's chunk.
  template <Mask mask, int direction>
  void begin(Tile<W>& tile, ptrdiff_t lane, ptrdiff_t at, ptrdiff_t row) const {
    W* const terms = tile.terms(lane);
    if (at == 0) {
      W* const before = direction > 0 ? terms - reach : terms + chunk;
      before[0] = before[1] = Sum<T>::most;
      tile.two[lane] = row == (direction > 0 ? height - 1 : 0) ? steps.lastTwo : steps.two;
    }
    const ptrdiff_t x = left<direction>(lane, at);
    if (outside(at, row, x)) {
      for (ptrdiff_t i = 0; i < chunk; ++i) terms[i] = Sum<T>::most;
      return;
    }
    // What the pass reads first comes from memory, in more streams than the processor follows by itself.
    if constexpr (direction > 0) __builtin_prefetch(raw(src.row(row)) + x + 512);
    __builtin_prefetch(raw(rowAt<direction>(row)) + x + direction * 512, 1);
    if constexpr (direction > 0) {
      LooseElement<uint8_t> copy[chunk];
      const auto* const s = x >= 0 && x + chunk <= width ? src.row(row) + x : copy;
      if (s == copy)
        for (ptrdiff_t i = 0; i < chunk; ++i)
          copy[i] = x + i < 0 || x + i >= width ? (uint8_t)1 : src.row(row)[x + i].value;
      for (ptrdiff_t i = 0; i < chunk; ++i) terms[i] = s[i] == 0 ? (W)0 : Sum<T>::most;
    } else {
      LooseElement<T> copy[chunk];
      const auto* const d = window(rowAt<direction>(row), x, chunk, width, copy);
      for (ptrdiff_t i = 0; i < chunk; ++i) terms[i] = (W)d[i];
    }
    LooseElement<T> copy1[chunk + 2 * reach], copy2[chunk + 2 * reach];
    const auto* const u1 = window(rowAt<direction>(row - 1), x - reach, chunk + 2 * reach, width, copy1);
    const auto* const u2 =
        mask == Mask::three ? u1 : window(rowAt<direction>(row - 2), x - reach, chunk + 2 * reach, width, copy2);
    fromAbove<mask>(u1 + reach, u2 + reach, steps, terms);
  }

  // Stores the results of a lane's chunk and keeps the last two for the next.
  template <int direction>
  void end(Tile<W>& tile, ptrdiff_t lane, ptrdiff_t at, ptrdiff_t row) const {
    W* const terms = tile.terms(lane);
    const ptrdiff_t x = left<direction>(lane, at);
    if (!outside(at, row, x)) {
      LooseElement<T>* const d = rowAt<direction>(row);
      if (x >= 0 && x + chunk <= width)
        for (ptrdiff_t i = 0; i < chunk; ++i) d[x + i] = (T)terms[i];
      else
        for (ptrdiff_t i = x < 0 ? -x : 0; i < chunk && x + i < width; ++i) d[x + i] = (T)terms[i];
    }
    if (direction > 0) terms[-2] = terms[chunk - 2], terms[-1] = terms[chunk - 1];
    else terms[chunk] = terms[0], terms[chunk + 1] = terms[1];
  }
};

// Both passes. `lastTwo` or `two` below twice `one` call for steps of two columns.
template <Mask mask, class T>
static void bothPasses(const Chamfer<T>& chamfer, bool twoSteps) {
  chamfer.template pass<mask, 1>(twoSteps);
  chamfer.template pass<mask, -1>(twoSteps);
}

}  // namespace ORV_VARIANT

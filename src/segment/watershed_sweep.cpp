// Watershed by sweeps.
//
// Theory of operation. The cost of a pixel is its level times 2^23, or what the cheapest way from a seed costs, if that
// is more: one number orders pixels by level first, then by the length of the way through that level.
//
//   cost(p) = max(src(p) << 23, min over neighbours q of (cost(q) + step(q, p)) + 1)
//
// The first pass goes down the image, the second up; each sweeps a row to the right, then to the left. Further passes,
// down and up in turn, look at the pixels beside a change only, until nothing changes. Each pixel keeps the direction
// that its label came from: when that neighbour's label changes later, the pixel's does too.
//
// The result is defined by these passes, where they leave a pixel dearer than the formula would allow as well: the
// first pixel of a row looks straight up or down alone, and a change marks the four pixels at the sides. That, and ties
// that go to the side reached first, is why the passes stay on one thread: bands of rows would settle on other labels.
//
// With the metric of fast marching (J. N. Tsitsiklis, "Efficient Algorithms for Globally Optimal Trajectories", 1995)
// two fronts that arrive nearly together arrive earlier than either: a whole-number solution of the eikonal equation.
//
// One body serves both variants.
#include "segment/watershed.h"
#include "core/scratch.h"
#include "segment/boundaries.h"
#include <string.h>

namespace {

constexpr int32_t unset = 0x7FC00000;  // above every level
enum Parent : int32_t { seed, right, upRight, up, upLeft, left, downLeft, down, downRight, nobody };
enum Metric { four, eight, marching };

// How much earlier two fronts arrive than the first alone, by the distance between them.
constexpr uint8_t earlier[64] = {19, 18, 18, 17, 17, 16, 16, 15, 15, 14, 14, 14, 13, 13, 12, 12, 11, 11, 11, 10, 10, 9,
                                 9,  9,  8,  8,  8,  7,  7,  7,  6,  6,  6,  5,  5,  5,  4,  4,  4,  4,  3,  3,  3,  3,
                                 2,  2,  2,  2,  2,  1,  1,  1,  1,  1,  1,  1,  0,  0,  0,  0,  0,  0,  0,  0};

struct Candidate {
  int32_t cost, parent;
};

// The neighbouring row that a pass comes from.
struct Side {
  int32_t row;
  int32_t straight, leftward, rightward;
};
constexpr Side above = {-1, up, upLeft, upRight}, below = {1, down, downLeft, downRight};

// Places of bytes that aren't 0: the first of [x, end) or `end`, the last of [0, x] or -1.
ptrdiff_t nextSet(const uint8_t* bytes, ptrdiff_t x, ptrdiff_t end) {
  for (; x + 8 <= end; x += 8)
    if (const uint64_t word = *loose((const uint64_t*)(const void*)(bytes + x))) return x + __builtin_ctzll(word) / 8;
  while (x < end && bytes[x] == 0) ++x;
  return x;
}
ptrdiff_t lastSet(const uint8_t* bytes, ptrdiff_t x) {
  for (; x >= 7; x -= 8)
    if (const uint64_t word = *loose((const uint64_t*)(const void*)(bytes + x - 7)))
      return x - __builtin_clzll(word) / 8;
  while (x >= 0 && bytes[x] == 0) --x;
  return x;
}

template <class T>
class Sweep {
 public:
  explicit Sweep(const WatershedJob<T>& job)
      : src_(job.src), labels_(job.markers), width_(job.size.width), height_(job.size.height) {
    stride_ = (width_ + 31) & ~(ptrdiff_t)31;
    Scratch scratch = {job.buffer};
    cost_ = scratch.take<int32_t>(stride_ * height_, 32);
    parent_ = scratch.take<uint8_t>(stride_ * height_, 1);
    dirty_ = scratch.take<uint8_t>(stride_ * (height_ + 2), 1) + stride_;
    rowDirty_ = scratch.take<uint8_t>(height_ + 2, 1) + 1;
    memset(parent_, nobody, (size_t)(stride_ * height_));
    memset(dirty_ - stride_, 0, (size_t)(stride_ * (height_ + 2)));
    memset(rowDirty_ - 1, 1, (size_t)(height_ + 2));
    constexpr int8_t columns[10] = {0, 1, 1, 0, -1, -1, -1, 0, 1, 0}, rows[10] = {0, 0, -1, -1, -1, 0, 1, 1, 1, 0};
    for (int k = 0; k < 10; ++k) toParent_[k] = rows[k] * (ptrdiff_t)labels_.step + columns[k] * (ptrdiff_t)sizeof(T);
  }

  template <Metric metric>
  void run(int32_t step, int32_t diagonal) {
    step_ = step, diagonal_ = diagonal;
    for (ptrdiff_t y = 0; y < height_; ++y) {
      initialise(y);
      if (y == 0) topRow();
      else wholeRow<metric, false>(y, above);
    }
    bool changed = false;
    for (ptrdiff_t y = height_ - 2; y >= 0; --y) changed |= wholeRow<metric, true>(y, below);
    while (changed) {
      changed = false;
      for (ptrdiff_t y = 1; y < height_; ++y)
        if (rowDirty_[y]) changed |= dirtyRow<metric>(y, above);
      if (!changed) break;
      changed = false;
      for (ptrdiff_t y = height_ - 2; y >= 0; --y)
        if (rowDirty_[y]) changed |= dirtyRow<metric>(y, below);
    }
  }

  const int32_t* cost() const { return cost_; }
  int32_t costStep() const { return (int32_t)(stride_ * 4); }

 private:
  void initialise(ptrdiff_t y) {
    const Loose<T>* const label = labels_.row(y);
    const Loose<const uint8_t>* const relief = src_.row(y);
    int32_t* const cost = cost_ + y * stride_;
    uint8_t* const parent = parent_ + y * stride_;
    for (ptrdiff_t x = 0; x < width_; ++x) {
      const bool isSeed = label[x] != 0;
      cost[x] = isSeed ? relief[x] << 23 : unset;
      parent[x] = isSeed ? seed : nobody;
    }
  }

  // The first row knows its left and right neighbours only.
  void topRow() {
    Loose<T>* const label = labels_.row(0);
    const Loose<const uint8_t>* const relief = src_.row(0);
    for (ptrdiff_t x = 1; x < width_; ++x) {
      if (parent_[x] == seed) continue;
      cost_[x] = atLeast(relief[x], cost_[x - 1] + step_ + 1);
      label[x] = label[x - 1];
      parent_[x] = left;
    }
    for (ptrdiff_t x = width_ - 2; x >= 0; --x) {
      const int32_t cost = atLeast(relief[x], cost_[x + 1] + step_ + 1);
      if (parent_[x] == seed || cost >= cost_[x]) continue;
      cost_[x] = cost;
      label[x] = label[x + 1];
      parent_[x] = right;
    }
  }

  static int32_t atLeast(int32_t level, int32_t cost) { return cost > level << 23 ? cost : level << 23; }

  // b if `second`, without a branch.
  static int32_t choose(bool second, int32_t a, int32_t b) { return a ^ ((a ^ b) & -(int32_t)second); }

  template <Metric metric>
  __attribute__((always_inline)) static Candidate better(Candidate a, Candidate b) {
    const bool second = b.cost < a.cost;
    Candidate best = {choose(second, a.cost, b.cost), choose(second, a.parent, b.parent)};
    if (metric == marching) {
      const int32_t distance = choose(second, b.cost - a.cost, a.cost - b.cost);
      best.cost -= earlier[distance < 63 ? distance : 63];
    }
    return best;
  }

  // The dirty pixels of row y, to the right and back, from the row itself and the row at `side`; tells whether
  // something changed.
  template <Metric metric>
  bool dirtyRow(ptrdiff_t y, const Side& side) {
    const ptrdiff_t w = width_;
    const int32_t* const beside = cost_ + (y + side.row) * stride_;
    int32_t* const cost = cost_ + y * stride_;
    const uint8_t* const parent = parent_ + y * stride_;
    const uint8_t* const dirty = dirty_ + y * stride_;
    const int32_t step = step_, diagonal = diagonal_;
    bool changed = false;
    rowDirty_[y] = 0;
    if (dirty[0] != 0 && parent[0] != seed) changed |= give(y, 0, {beside[0] + step, side.straight});
    for (ptrdiff_t x = nextSet(dirty, 1, w); x < w; x = nextSet(dirty, x + 1, w)) {
      if (parent[x] == seed) continue;
      Candidate best = {cost[x - 1] + step, left};
      if (metric == eight && beside[x - 1] + diagonal < best.cost) best = {beside[x - 1] + diagonal, side.leftward};
      best = better<metric>(best, {beside[x] + step, side.straight});
      if (metric == eight && x + 1 < w && beside[x + 1] + diagonal < best.cost)
        best = {beside[x + 1] + diagonal, side.rightward};
      changed |= give(y, x, best);
    }
    for (ptrdiff_t x = lastSet(dirty, w - 2); x >= 0; x = lastSet(dirty, x - 1)) {
      if (parent[x] == seed) continue;
      Candidate best = {cost[x + 1] + step, right};
      if (metric != four) best = better<metric>(best, {beside[x] + step, side.straight});
      changed |= give(y, x, best);
    }
    return changed;
  }

  // Gives pixel (x, y) a cost and the label of a neighbour if that is cheaper, or the label that its parent has by now.
  // The neighbours of a pixel that changes are marked.
  __attribute__((always_inline)) bool give(ptrdiff_t y, ptrdiff_t x, Candidate best) {
    const ptrdiff_t i = y * stride_ + x;
    Loose<T>* const label = labels_.row(y) + x;
    const int32_t cost = atLeast(src_.row(y)[x], best.cost + 1);
    dirty_[i] = 0;
    if (cost < cost_[i]) {
      cost_[i] = cost;
      parent_[i] = (uint8_t)best.parent;
      *label = labelAt(label, best.parent);
    } else {
      const T wanted = labelAt(label, parent_[i]);
      if (*label == wanted) return false;  // nobody's offset is 0: the pixel itself
      *label = wanted;
    }
    if (x > 0) dirty_[i - 1] = 1;
    if (x + 1 < width_) dirty_[i + 1] = 1;
    dirty_[i - stride_] = dirty_[i + stride_] = 1;
    rowDirty_[y - 1] = rowDirty_[y] = rowDirty_[y + 1] = 1;
    return true;
  }

  // What is known of some pixels before the sweep to the right comes to them: the cheapest way from the other row, the
  // cost that this way leaves, and the lowest cost there may be. Rows are worked on in pieces of this length.
  static constexpr ptrdiff_t piece = 256;
  struct Known {
    int32_t way[piece], from[piece], bound[piece], floor[piece];
  };

  // `All`: each pixel has a cost; else only seeds have one, and all others get their first.
  template <Metric metric, bool All>
  void prepare(Known& k, ptrdiff_t y, ptrdiff_t x0, ptrdiff_t count, const Side& side) const {
    const int32_t* const beside = cost_ + (y + side.row) * stride_ + x0;
    const int32_t* const cost = cost_ + y * stride_ + x0;
    const uint8_t* const parent = parent_ + y * stride_ + x0;
    const Loose<const uint8_t>* const relief = src_.row(y) + x0;
    const int32_t step = step_, diagonal = diagonal_;
    for (ptrdiff_t i = 0; i < count; ++i) k.floor[i] = relief[i] << 23;
    for (ptrdiff_t i = 0; i < count; ++i) k.way[i] = beside[i] + step, k.from[i] = side.straight;
    if (metric == eight) {
      for (ptrdiff_t i = 0; i < count; ++i) {  // in the order left, straight, right
        const int32_t corner = beside[i - 1] + diagonal;
        const bool nearer = corner <= k.way[i];
        k.from[i] = choose(nearer, k.from[i], side.leftward);
        k.way[i] = choose(nearer, k.way[i], corner);
      }
      const ptrdiff_t inner = x0 + count == width_ ? count - 1 : count;
      for (ptrdiff_t i = 0; i < inner; ++i) {
        const int32_t corner = beside[i + 1] + diagonal;
        const bool nearer = corner < k.way[i];
        k.from[i] = choose(nearer, k.from[i], side.rightward);
        k.way[i] = choose(nearer, k.way[i], corner);
      }
    }
    for (ptrdiff_t i = 0; i < count; ++i) k.bound[i] = All ? cost[i] : choose(parent[i] == seed, INT32_MAX, k.floor[i]);
    if (metric != marching)
      for (ptrdiff_t i = 0; i < count; ++i) {
        const int32_t arrival = k.way[i] + 1 > k.floor[i] ? k.way[i] + 1 : k.floor[i];
        k.bound[i] = arrival < k.bound[i] ? arrival : k.bound[i];
      }
  }

  static int32_t larger(int32_t a, int32_t b) { return a > b ? a : b; }
  static int32_t smaller(int32_t a, int32_t b) { return a < b ? a : b; }

  // Row y as a whole, to the right and back. Only the shortest chain of operations goes from a pixel to the next: all
  // that the other row says is prepared, and branches that nobody could predict are masks.
  //
  // Of the marks that the told order would set, those stay that no later look at the same pixel clears: on the pixel to
  // the right of a change on the way back, and on the row that the pass comes from.
  template <Metric metric, bool All>
  bool wholeRow(ptrdiff_t y, const Side& side) {
    const ptrdiff_t w = width_;
    int32_t* const cost = cost_ + y * stride_;
    uint8_t* const parent = parent_ + y * stride_;
    uint8_t* const dirty = dirty_ + y * stride_;
    uint8_t* const behind = dirty + side.row * stride_;
    const int32_t* const beside = cost + side.row * stride_;
    Loose<T>* const label = labels_.row(y);
    const Loose<const uint8_t>* const relief = src_.row(y);
    const int32_t step = step_;
    uint8_t any = 0;
    // Pixel x with a cost that is below its own if `taken`.
    const auto settle = [&](ptrdiff_t x, int32_t now, bool taken, int32_t from) __attribute__((always_inline)) {
      const int32_t parentNow = choose(taken, parent[x], from);
      const T wanted = labelAt(label + x, (uint8_t)parentNow);
      const uint8_t changed = (uint8_t)(taken | (wanted != label[x]));
      cost[x] = now;
      parent[x] = (uint8_t)parentNow;
      label[x] = wanted;
      if (All) behind[x] |= changed;
      any |= changed;
      return changed;
    };

    Known k;
    for (ptrdiff_t x0 = 0; x0 < w; x0 += piece) {
      const ptrdiff_t count = smaller(piece, (int32_t)(w - x0));
      ptrdiff_t i = 0;
      if (x0 == 0) {  // straight from the other row alone
        const int32_t own = cost[0], now = larger(relief[0] << 23, beside[0] + step + 1);
        const bool taken = All ? now < own : parent[0] != seed;
        settle(0, choose(taken, own, now), taken, side.straight);
        i = 1;
      }
      if (i < count) prepare<metric, All>(k, y, x0 + i, count - i, side);
      int32_t before = x0 + i > 0 ? cost[x0 + i - 1] : 0;
      for (ptrdiff_t j = 0; j < count - i; ++j) {
        const ptrdiff_t x = x0 + i + j;
        const int32_t way = before + step;
        int32_t best = metric == marching ? better<marching>({way, left}, {k.way[j], up}).cost : way;
        const int32_t now = smaller(k.bound[j], larger(k.floor[j], best + 1));
        settle(x, now, All ? now < cost[x] : parent[x] != seed, choose(k.way[j] < way, left, k.from[j]));
        before = now;
      }
    }
    int32_t after = cost[w - 1];
    if (All) dirty[w - 1] = 0;
    for (ptrdiff_t x = w - 2; x >= 0; --x) {
      const int32_t way = after + step, own = cost[x], straight = beside[x] + step;
      // The way straight from the other row has been compared already, but for where two fronts help each other.
      const int32_t best = metric == marching ? better<marching>({way, right}, {straight, up}).cost : way;
      const int32_t now = smaller(own, larger(relief[x] << 23, best + 1));
      const int32_t from = metric == marching ? choose(straight < way, right, side.straight) : (int32_t)right;
      const uint8_t changed = settle(x, now, now < own, from);
      if (All) dirty[x + 1] = changed;
      after = now;
    }
    if (All) dirty[0] = 0;
    return any != 0;
  }

  __attribute__((always_inline)) T labelAt(const Loose<T>* label, uint8_t parent) const {
    return *(const Loose<T>*)((uintptr_t)label + (uintptr_t)toParent_[parent]);
  }

  Plane<const uint8_t> src_;
  Plane<T> labels_;
  ptrdiff_t width_, height_, stride_;
  int32_t step_ = 0, diagonal_ = 0;
  int32_t* cost_;
  uint8_t *parent_, *dirty_, *rowDirty_;  // the latter two with a row above and below the image
  ptrdiff_t toParent_[10];                // bytes between labels
};

template <class T>
void floodBySweeps(const WatershedJob<T>& job,
                   void (*bound)(T*, int32_t, const int32_t*, int32_t, OrvSize, T, int32_t)) {
  Sweep<T> sweep(job);
  static constexpr int32_t steps[4] = {0, 0, 10, 63};
  const int32_t step = steps[job.norm];
  if (job.norm == normL1 || job.size.width == 1) sweep.template run<four>(step, 0);
  else if (job.norm == normFastMarching) sweep.template run<marching>(step, 0);
  else sweep.template run<eight>(step, job.norm == normL2 ? 14 : 0);
  if (job.flags & (watershedBorder4 | watershedBorder8))
    bound(job.markers.data, job.markers.step, sweep.cost(), sweep.costStep(), job.size, watershedLine<T>,
          (job.flags & watershedBorder4) != 0 || job.size.width == 1);
}

}  // namespace

void ownSegmentWatershedSweep_8u(const WatershedJob<uint8_t>* job) { floodBySweeps(*job, ownBoundSegments_8u); }
void ownSegmentWatershedSweep_16u(const WatershedJob<uint16_t>* job) { floodBySweeps(*job, ownBoundSegments_16u); }

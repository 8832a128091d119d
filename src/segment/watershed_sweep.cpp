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
enum Parent : uint8_t { seed, right, upRight, up, upLeft, left, downLeft, down, downRight, nobody };
enum Metric { four, eight, marching };
// What a pass does: gives each pixel a first value, looks at all, or at those beside a change.
enum Pass { first, all, dirtyOnly };

// How much earlier two fronts arrive than the first alone, by the distance between them.
constexpr uint8_t earlier[64] = {19, 18, 18, 17, 17, 16, 16, 15, 15, 14, 14, 14, 13, 13, 12, 12, 11, 11, 11, 10, 10, 9,
                                 9,  9,  8,  8,  8,  7,  7,  7,  6,  6,  6,  5,  5,  5,  4,  4,  4,  4,  3,  3,  3,  3,
                                 2,  2,  2,  2,  2,  1,  1,  1,  1,  1,  1,  1,  0,  0,  0,  0,  0,  0,  0,  0};

struct Candidate {
  int32_t cost;
  Parent parent;
};

// The neighbouring row that a pass comes from.
struct Side {
  int32_t row;
  Parent straight, leftward, rightward;
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
      else sweepRow<metric, first>(y, above);
    }
    bool changed = false;
    for (ptrdiff_t y = height_ - 2; y >= 0; --y) changed |= sweepRow<metric, all>(y, below);
    while (changed) {
      changed = false;
      for (ptrdiff_t y = 1; y < height_; ++y)
        if (rowDirty_[y]) changed |= sweepRow<metric, dirtyOnly>(y, above);
      if (!changed) break;
      changed = false;
      for (ptrdiff_t y = height_ - 2; y >= 0; --y)
        if (rowDirty_[y]) changed |= sweepRow<metric, dirtyOnly>(y, below);
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

  template <Metric metric>
  __attribute__((always_inline)) Candidate better(Candidate a, Candidate b) const {
    const bool second = b.cost < a.cost;
    Candidate best = second ? b : a;
    if (metric == marching) {
      const int32_t distance = second ? a.cost - b.cost : b.cost - a.cost;
      if (distance <= 63) best.cost -= earlier[distance];
    }
    return best;
  }

  // Sweeps row y to the right and back, from itself and the row at `side`; tells whether something changed.
  template <Metric metric, Pass pass>
  bool sweepRow(ptrdiff_t y, const Side& side) {
    const ptrdiff_t w = width_;
    const int32_t* const beside = cost_ + (y + side.row) * stride_;
    int32_t* const cost = cost_ + y * stride_;
    const uint8_t *const parent = parent_ + y * stride_, *const dirty = dirty_ + y * stride_;
    const int32_t step = step_, diagonal = diagonal_;
    bool changed = false;
    if (pass == dirtyOnly) rowDirty_[y] = 0;
    const auto waits = [&](ptrdiff_t x) __attribute__((always_inline)) {
      return parent[x] != seed && (pass != dirtyOnly || dirty[x] != 0);
    };

    if (waits(0)) changed |= give<pass != first>(y, 0, {beside[0] + step, side.straight}, pass == first);
    for (ptrdiff_t x = 1; x < w; ++x) {
      if (pass == dirtyOnly && (x = nextSet(dirty, x, w)) >= w) break;
      if (!waits(x)) continue;
      Candidate best = {cost[x - 1] + step, left};
      if (metric == eight && beside[x - 1] + diagonal < best.cost) best = {beside[x - 1] + diagonal, side.leftward};
      best = better<metric>(best, {beside[x] + step, side.straight});
      if (metric == eight && x + 1 < w && beside[x + 1] + diagonal < best.cost)
        best = {beside[x + 1] + diagonal, side.rightward};
      changed |= give<pass != first>(y, x, best, pass == first);
    }
    for (ptrdiff_t x = w - 2; x >= 0; --x) {
      if (pass == dirtyOnly && (x = lastSet(dirty, x)) < 0) break;
      if (!waits(x)) continue;
      Candidate best = {cost[x + 1] + step, right};
      if (metric != four) best = better<metric>(best, {beside[x] + step, side.straight});
      changed |= give<pass != first>(y, x, best, false);
    }
    return changed;
  }

  // Gives pixel (x, y) a cost and the label of a neighbour if that is cheaper, or `always`. With Marks the neighbours
  // of a pixel that changes are marked, and a label follows that of its parent.
  template <bool Marks>
  __attribute__((always_inline)) bool give(ptrdiff_t y, ptrdiff_t x, Candidate best, bool always) {
    const ptrdiff_t i = y * stride_ + x;
    Loose<T>* const label = labels_.row(y) + x;
    const int32_t cost = atLeast(src_.row(y)[x], best.cost + 1);
    if (cost < cost_[i] || always) {
      cost_[i] = cost;
      parent_[i] = best.parent;
      *label = labelAt(label, best.parent);
    } else {
      if (!Marks) return false;
      const T wanted = labelAt(label, parent_[i]);
      dirty_[i] = 0;
      if (*label == wanted) return false;  // nobody's offset is 0: the pixel itself
      *label = wanted;
    }
    if (Marks) {
      dirty_[i] = 0;
      if (x > 0) dirty_[i - 1] = 1;
      if (x + 1 < width_) dirty_[i + 1] = 1;
      dirty_[i - stride_] = dirty_[i + stride_] = 1;
      rowDirty_[y - 1] = rowDirty_[y] = rowDirty_[y + 1] = 1;
    }
    return true;
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

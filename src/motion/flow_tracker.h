// The tracker of optical flow, for any type of image.
//
// Theory. A point moves by what a 2x2 system of its window's derivatives and of the difference between the windows
// says, again and again until it rests, on each level from the coarsest to the finest. Two routes lead through the
// levels:
//
//   level  maxLevel  ...  B + 1 |  B  ...  0         B: the first level that isn't below maxRoi
//          whole levels:        |  windows:
//          derive the level,    |  for each point all levels,
//          then all points      |  deriving the point's window
//
// An element type tells, as a record `Type`: Pixel, Patch, Gradient; copy() and range() take a window of winSize + 2
// pixels of the first image and one of winSize pixels of the second; derive() derives a level; errorScale.
//
// Limitations. No memory is allocated, nothing is threaded but the filters inside derive().
#pragma once
#include "motion/names.h"
#include "core/image.h"
#include "geometry/subpixel_internal.h"
#include "motion/flow_state.h"

namespace ORV_VARIANT {

// Pixels of a window, both ends included.
struct FlowRange {
  OrvPoint min, max;
  bool empty() const { return min.x > max.x || min.y > max.y; }
  bool operator==(const FlowRange& o) const {
    return min.x == o.min.x && min.y == o.min.y && max.x == o.max.x && max.y == o.max.y;
  }
};

static inline FlowRange commonRange(const FlowRange& a, const FlowRange& b) {
  return {{a.min.x > b.min.x ? a.min.x : b.min.x, a.min.y > b.min.y ? a.min.y : b.min.y},
          {a.max.x < b.max.x ? a.max.x : b.max.x, a.max.y < b.max.y ? a.max.y : b.max.y}};
}

// What a window that is larger by a pixel on each side has inside the image, in pixels of the smaller one.
static inline FlowRange innerRange(const FlowRange& grown, int32_t winSize) {
  const auto low = [](int32_t v) { return v > 0 ? v - 1 : v; };
  const auto high = [=](int32_t v) { return v - 1 - (v > winSize ? 1 : 0); };
  return {{low(grown.min.x), low(grown.min.y)}, {high(grown.max.x), high(grown.max.y)}};
}

struct FlowStop {
  int32_t iterations;
  float square;  // of the threshold
};

// One level of both pyramids.
template <class Type>
struct FlowLevel {
  Plane<const typename Type::Pixel> first, second;
  OrvSize size;
  double rate;

  FlowLevel(const OrvPyramid& a, const OrvPyramid& b, int32_t level)
      : first{(const typename Type::Pixel*)a.images[level], a.steps[level]},
        second{(const typename Type::Pixel*)b.images[level], b.steps[level]},
        size(a.roi[level]),
        rate(a.rates[level]) {}

  OrvPoint32f down(OrvPoint32f p) const { return {(float)(p.x * rate), (float)(p.y * rate)}; }
  OrvPoint32f up(OrvPoint32f p) const { return {(float)(p.x / rate), (float)(p.y / rate)}; }
};

// What became of a point on a level: `failed` if its window could not be taken, `left` if no pixel is in both images.
enum class Fate { tracked, lost, left, failed };

template <class Type>
struct FlowTracker {
  using P = typename Type::Patch;
  using G = typename Type::Gradient;

  FlowWork<P, G> work;
  FlowKernels<P, G> kernels;
  int32_t winSize;
  FlowStop stop;
  FlowRange range;  // of the last windows

  FlowWindow<P, G> window(const FlowRange& r, int32_t shrink) const {
    const ptrdiff_t at = r.min.y * work.stride + r.min.x;
    return {work.first + work.stride + 1 + at,
            work.second + at,
            work.gx + at,
            work.gy + at,
            work.stride,
            (ptrdiff_t)r.max.x - r.min.x + 1 - shrink,
            (ptrdiff_t)r.max.y - r.min.y + 1 - shrink};
  }

  // The derivatives of the window around p, from those of the level or from the window itself.
  void deriveWindow(OrvPoint32f p, const FlowRange& inner, bool whole) {
    const FlowWindow<P, G> w = window(inner, 0);
    G *const gx = (G*)w.gx, *const gy = (G*)w.gy;
    if (!whole) return kernels.derive(w.first - w.stride - 1, gx, gy, w.stride, w.width, w.height);
    const float half = (float)(winSize + 1) * 0.5f, ox = p.x - half, oy = p.y - half;
    const ptrdiff_t x = ox >= 0 ? (ptrdiff_t)ox + 1 : 0, y = oy >= 0 ? (ptrdiff_t)oy + 1 : 0;
    const auto levelStep = (int32_t)(work.levelStride * (ptrdiff_t)sizeof(G));
    const auto step = (int32_t)(work.stride * (ptrdiff_t)sizeof(G));
    const ptrdiff_t at = y * work.levelStride + x;
    sampleDerivatives({work.levelX + at, levelStep}, Plane<G>{gx, step}, w.width, w.height, ox, oy);
    sampleDerivatives({work.levelY + at, levelStep}, Plane<G>{gy, step}, w.width, w.height, ox, oy);
  }

  // Moves `place` from the estimate to where the window around p went.
  Fate track(const FlowLevel<Type>& level, OrvPoint32f p, OrvPoint32f& place, bool whole) {
    FlowRange grown;
    const OrvSize grownSize{winSize + 2, winSize + 2}, size{winSize, winSize};
    const auto step = (int32_t)(work.stride * (ptrdiff_t)sizeof(P));
    if (Type::copy(level.first, level.size, work.first, step, grownSize, p, grown) != orvStatusOk) return Fate::failed;
    const FlowRange inner = innerRange(grown, winSize);
    if (!inner.empty()) deriveWindow(p, inner, whole);

    double dx, dy, lastX = (double)level.size.width + level.size.height, lastY = lastX, matrix[3];
    for (int32_t i = 0;; ++i) {
      FlowRange second;
      if (Type::range(level.second, level.size, work.second, step, size, place, second) != orvStatusOk)
        return Fate::lost;
      const FlowRange common = commonRange(inner, second);
      if (common.empty()) return Fate::left;
      const FlowWindow<P, G> w = window(common, 0);
      if (i == 0 || !(common == range)) kernels.matrix(w, matrix);
      range = common;
      double b[2];
      kernels.mismatch(w, b);
      const double determinant = matrix[0] * matrix[2] - matrix[1] * matrix[1];
      if (determinant < 2.220446049250313e-16) return Fate::lost;
      dx = (matrix[2] * b[0] - matrix[1] * b[1]) / determinant;
      dy = (matrix[0] * b[1] - matrix[1] * b[0]) / determinant;
      place = {(float)(place.x + dx), (float)(place.y + dy)};
      if (dx * dx + dy * dy < stop.square) return Fate::tracked;
      constexpr double still = 0.0003452669770922512;
      if (__builtin_fabs(lastX + dx) < still && __builtin_fabs(lastY + dy) < still) {
        place = {(float)(place.x - dx * 0.5), (float)(place.y - dy * 0.5)};
        return Fate::tracked;
      }
      if (i + 1 >= stop.iterations) return Fate::tracked;
      lastX = dx, lastY = dy;
    }
  }

  // The root of the mean square of the last windows' difference, without their last row and column.
  float error() const {
    const FlowWindow<P, G> w = window(range, 1);
    const double sum = w.width > 0 && w.height > 0 ? kernels.squares(w) : 0;
    if (!(sum > 0)) return 0;
    return (float)(__builtin_sqrt(sum / ((double)w.width * (double)w.height)) * Type::errorScale);
  }
};

// The body of the public trackers.
template <class Type>
static OrvStatus trackPoints(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2, const OrvPoint32f* prevPoints,
                             OrvPoint32f* nextPoints, int8_t* status, float* errors, int32_t numPoints, int32_t winSize,
                             int32_t maxLevel, int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state,
                             const FlowKernels<typename Type::Patch, typename Type::Gradient>& kernels) {
  ORV_REQUIRE(allSet(pyramid1, pyramid2, prevPoints, nextPoints, status, errors, state), orvStatusNullPtr);
  ORV_REQUIRE(numPoints >= 1 && winSize >= 1 && winSize == state->winSize, orvStatusSize);
  ORV_REQUIRE(maxLevel >= 0 && maxIter >= 1 && !(threshold < 0), orvStatusBadArg);
  FlowTracker<Type> tracker{{}, kernels, winSize, {maxIter, threshold * threshold}, {}};
  tracker.work.carve(state->work, state->maxRoi, winSize, Type::converts);
  const auto* prev = loose(prevPoints);
  auto* next = loose(nextPoints);
  auto* error = loose(errors);
  const auto end = [&](ptrdiff_t i, int32_t level, Fate fate, OrvPoint32f last, const FlowLevel<Type>& at) {
    if (fate == Fate::left) next[i] = at.up(last);
    status[i] = (int8_t)(level + 1);
    error[i] = 0;
  };

  for (ptrdiff_t i = 0; i < numPoints; ++i) status[i] = (int8_t)(maxLevel + 1);
  int32_t level = maxLevel;
  for (; level >= 0; --level) {
    const FlowLevel<Type> at(*pyramid1, *pyramid2, level);
    if (at.size.width >= state->maxRoi.width || at.size.height >= state->maxRoi.height) break;
    Type::derive(at.first, at.size, tracker.work);
    for (ptrdiff_t i = 0; i < numPoints; ++i) {
      if (status[i] != level + 1) continue;
      OrvPoint32f place = at.down(next[i]);
      status[i] = (int8_t)level;
      const Fate fate = tracker.track(at, at.down(prev[i]), place, true);
      if (fate == Fate::failed) break;
      if (fate != Fate::tracked) {
        end(i, level, fate, place, at);
        continue;
      }
      next[i] = level < 1 ? place : at.up(place);
      error[i] = tracker.error();
    }
  }
  if (level < 0) return orvStatusOk;

  const double scale = maxLevel > 1 ? 1.0 / pyramid1->rates[1] : 1.0;
  const int32_t top = level;
  for (ptrdiff_t i = 0; i < numPoints; ++i) {
    if (status[i] != top + 1) continue;
    OrvPoint32f place = FlowLevel<Type>(*pyramid1, *pyramid2, top).down(next[i]);
    for (level = top; level >= 0; --level) {
      const FlowLevel<Type> at(*pyramid1, *pyramid2, level);
      status[i] = (int8_t)level;
      const Fate fate = tracker.track(at, at.down(prev[i]), place, false);
      if (fate == Fate::failed) error[i] = 0;
      else if (fate != Fate::tracked) end(i, level, fate, place, at);
      if (fate != Fate::tracked) break;
      if (level > 0) {
        place = {(float)(place.x * scale), (float)(place.y * scale)};
        continue;
      }
      next[i] = place;
      error[i] = tracker.error();
    }
  }
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

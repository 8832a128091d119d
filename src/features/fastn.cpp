// FastN corners: the segment test for whole vectors of pixels.
//
// Theory. Everything is done in bytes, a vector of pixels at a time. Above the pixel plus threshold, ring point i
// exceeds by e(i) = max(0, ring(i) - min(255, c + t)), and likewise below it. The pixel is a corner of that class if
// the smallest e of some arc of N points isn't 0, and the largest such minimum, plus t, is its score; so test and score
// are one fold. Two arcs that start at neighbouring points share all but their ends:
//
//   arc from 2j:        e(2j) | e(2j+1) ... e(2j+N-1) |            best = min(common, max(e(2j), e(2j+N)))
//   arc from 2j+1:            | e(2j+1) ... e(2j+N-1) | e(2j+N)
//
// and the common parts, which all start at odd points, grow from pairs of points by doubling.
//
// Most pixels never come so far. An arc has more than half of the ring, so it has one of each two opposite points: two
// such pairs, then two more, reject a vector in which no pixel has one brighter point, or no pixel one darker, in each.
//
// Suppression keeps three rows of corners and of scores in the buffer, one pixel longer at either end than the region,
// so that neighbours outside it count. Orientations are computed for the corners that remain.
#include <math.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/fastn.cpp"
#include "core/kernels.h"
#include "features/corner_scan.h"
#include "features/fastn_state.h"

#ifndef ORV_FASTN_TYPES
#define ORV_FASTN_TYPES
namespace ORV_VARIANT {

enum : uint8_t { brighterRing = 64, darkerRing = 128 };

// What the test needs of a state: byte offsets of the ring's points, the arc, the threshold.
struct RingTest {
  ptrdiff_t offset[mostRingPoints];
  int32_t points, arc;
  uint8_t threshold;  // below 255
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

// i modulo n, for i < 2 * n.
HWY_INLINE int32_t Wrap(int32_t i, int32_t n) { return i < n ? i : i - n; }

// The largest, over all arcs, of the smallest excess(i) in the arc.
template <class D, class Excess>
HWY_INLINE hn::VFromD<D> BestArc(D d, int32_t points, int32_t arc, const Excess& excess) {
  constexpr ptrdiff_t lanes = hn::MaxLanes(D());
  HWY_ALIGN uint8_t e[mostRingPoints * lanes], ofPairs[2][mostRingPoints / 2 * lanes];
  const auto at = [=](const uint8_t* a, int32_t i) __attribute__((always_inline)) {
    return hn::Load(d, a + i * lanes);
  };
  const int32_t half = points / 2, wanted = (arc - 1) / 2;
  for (int32_t i = 0; i < points; ++i) hn::Store(excess(i), d, e + i * lanes);
  // smallest of `length` pairs of points, from point 2j + 1 on
  uint8_t *smallest = ofPairs[0], *next = ofPairs[1];
  for (int32_t j = 0; j < half; ++j)
    hn::Store(hn::Min(at(e, 2 * j + 1), at(e, Wrap(2 * j + 2, points))), d, smallest + j * lanes);
  for (int32_t length = 1; length < wanted;) {
    const int32_t more = HWY_MIN(length, wanted - length);
    for (int32_t j = 0; j < half; ++j)
      hn::Store(hn::Min(at(smallest, j), at(smallest, Wrap(j + more, half))), d, next + j * lanes);
    uint8_t* const done = smallest;
    smallest = next, next = done;
    length += more;
  }
  auto best = hn::Zero(d);
  for (int32_t j = 0; j < half; ++j) {
    auto common = at(smallest, j);
    if (arc % 2 == 0) common = hn::Min(common, at(e, Wrap(2 * j + arc - 1, points)));
    const auto ends = hn::Max(at(e, 2 * j), at(e, Wrap(2 * j + arc, points)));
    best = hn::Max(best, hn::Min(common, ends));
  }
  return best;
}

// Tests a vector of pixels; `score` may be null.
template <class D>
HWY_INLINE void TestPixels(D d, const uint8_t* s, const RingTest& ring, uint8_t* corner, uint8_t* score) {
  const auto zero = hn::Zero(d), t = hn::Set(d, ring.threshold), center = hn::LoadU(d, s);
  const auto high = hn::SaturatedAdd(center, t), low = hn::SaturatedSub(center, t);
  const auto point = [&](int32_t i) __attribute__((always_inline)) { return hn::LoadU(d, s + ring.offset[i]); };
  const auto excess = [&](auto v) __attribute__((always_inline)) { return hn::SaturatedSub(v, high); };
  const auto deficit = [&](auto v) __attribute__((always_inline)) { return hn::SaturatedSub(low, v); };
  const auto any = [&](auto v) __attribute__((always_inline)) { return !hn::AllTrue(d, hn::Eq(v, zero)); };
  // the brighter and the darker one of each two opposite points
  const int32_t half = ring.points / 2, quarter = ring.points / 4;
  auto bright = hn::Max(point(quarter), point(quarter + half)), dark = hn::Min(point(quarter), point(quarter + half));
  const auto narrow = [&](int32_t i) __attribute__((always_inline)) {
    const auto a = point(i), b = point(i + half);
    bright = hn::Min(bright, hn::Max(a, b));
    dark = hn::Max(dark, hn::Min(a, b));
  };
  auto brighter = zero, darker = zero;
  narrow(0);
  if (any(hn::Or(excess(bright), deficit(dark)))) {
    narrow(quarter / 2);
    narrow(quarter / 2 + quarter);
    if (any(excess(bright)))
      brighter = BestArc(
          d, ring.points, ring.arc, [&](int32_t i) __attribute__((always_inline)) { return excess(point(i)); });
    if (any(deficit(dark)))
      darker = BestArc(
          d, ring.points, ring.arc, [&](int32_t i) __attribute__((always_inline)) { return deficit(point(i)); });
  }
  const auto best = hn::Max(brighter, darker);
  const auto classes = hn::Or(hn::IfThenZeroElse(hn::Eq(brighter, zero), hn::Set(d, brighterRing)),
                              hn::IfThenZeroElse(hn::Eq(darker, zero), hn::Set(d, darkerRing)));
  hn::StoreU(classes, d, corner);
  if (score) hn::StoreU(hn::IfThenZeroElse(hn::Eq(best, zero), hn::Add(best, t)), d, score);
}

// body(d, x) for 0 <= x < n with the widest vectors that fit; the last one overlaps its predecessor.
template <int Lanes, class Body>
HWY_INLINE void OverlappedBytes(ptrdiff_t n, const Body& body) {
  if (n >= Lanes) {
    for (ptrdiff_t x = 0; x < n; x += Lanes) body(hn::Simd<uint8_t, Lanes, 0>(), HWY_MIN(x, n - Lanes));
  } else if constexpr (Lanes > 1) {
    OverlappedBytes<(Lanes > 16 ? 16 : Lanes > 4 ? 4 : 1)>(n, body);
  }
}

void TestRow(const uint8_t* s, const RingTest& ring, uint8_t* corner, uint8_t* score, ptrdiff_t n) {
  OverlappedBytes<HWY_MAX_BYTES>(
      n, VECTOR(d, x) { TestPixels(d, s + x, ring, corner + x, score ? score + x : nullptr); });
}

// Keeps what no neighbour exceeds. Row i of the scores begins one pixel left of the row of corners.
void KeepPeaks(const uint8_t* corner, const uint8_t* const* scores, uint8_t* dstCorner, uint8_t* dstScore,
               ptrdiff_t n) {
  OverlappedBytes<HWY_MAX_BYTES>(
      n, VECTOR(d, x) {
        const auto near = [&](int i) __attribute__((always_inline)) {
          const uint8_t* const s = scores[i] + x;
          return hn::Max(hn::Max(hn::LoadU(d, s), hn::LoadU(d, s + 2)), hn::LoadU(d, s + 1));
        };
        const auto score = hn::LoadU(d, scores[1] + x + 1);
        const auto peak = hn::Eq(hn::Max(hn::Max(near(0), near(1)), near(2)), score);
        hn::StoreU(hn::IfThenElseZero(peak, hn::LoadU(d, corner + x)), d, dstCorner + x);
        hn::StoreU(hn::IfThenElseZero(peak, score), d, dstScore + x);
      });
}

KERNELS_END

#if HWY_ONCE
#include "core/scratch.h"

namespace {

// Columns left to right, rows top to bottom; the ends don't belong to it.
struct Rectangle {
  int32_t left, top, right, bottom;
  bool empty() const { return left >= right || top >= bottom; }
};
Rectangle common(const Rectangle& a, const Rectangle& b) {
  return {a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top, a.right < b.right ? a.right : b.right,
          a.bottom < b.bottom ? a.bottom : b.bottom};
}

// Sines and cosines of the ring's angles, made when the first corner needs them.
struct Orientation {
  const RingTest& ring;
  float binsOfRadian;
  bool ready = false;
  double sine[mostRingPoints], cosine[mostRingPoints];

  Orientation(const RingTest& test, int32_t bins) : ring(test), binsOfRadian((float)bins * 0.15915494f) {}

  void prepare() {
    const float step = 6.2831855f / (float)ring.points;
    for (int32_t i = 0; i < ring.points; ++i) {
      const double angle = (float)i * step;
      sine[i] = sin(angle);
      cosine[i] = cos(angle);
    }
    ready = true;
  }

  // The u8 variant adds even and odd points apart, the n8 variant all in order. The arguments of atan2f are meant so.
  uint8_t bin(const uint8_t* pixel) {
    if (!ready) prepare();
    constexpr int32_t sums = ORV_IS_N8 ? 1 : 2;
    float s[2] = {0, 0}, c[2] = {0, 0};
    for (int32_t i = 0; i < ring.points; ++i) {
      const auto difference = (float)((int32_t)pixel[ring.offset[i]] - (int32_t)*pixel);
      s[i % sums] += (float)(sine[i] * (double)difference);
      c[i % sums] += (float)(cosine[i] * (double)difference);
    }
    float angle = atan2f(c[0] + c[1], s[0] + s[1]);
    if (angle < 0) angle = (float)((double)angle + 6.283185307179586);
    return (uint8_t)((int32_t)(angle * binsOfRadian) & 63);
  }
};

// One call, with its regions in coordinates of the image.
struct FastN {
  Plane<const uint8_t> src;
  Plane<uint8_t> corner, score;     // from the first pixel of `region` on; no score: null
  Rectangle region, tested, image;  // tested: the pixels of the region that have a whole ring; image: all that have one
  bool oriented;
  int32_t bins;
  uint8_t* buffer;
};

void zeroRow(const FastN& call, int32_t y, int32_t from, int32_t to) {
  const size_t first = (size_t)(from - call.region.left), count = (size_t)(to - from);
  memset(raw(call.corner.row(y - call.region.top)) + first, 0, count);
  if (call.score.data) memset(raw(call.score.row(y - call.region.top)) + first, 0, count);
}

// Zeros around the tested pixels, or everywhere.
void zeroRest(const FastN& call) {
  const Rectangle &region = call.region, &tested = call.tested;
  for (int32_t y = region.top; y < region.bottom; ++y) {
    const bool outside = y < tested.top || y >= tested.bottom || tested.empty();
    zeroRow(call, y, region.left, outside ? region.right : tested.left);
    if (!outside) zeroRow(call, y, tested.right, region.right);
  }
}

// Counts the corners of a finished row and adds their orientation.
int32_t finishRow(const FastN& call, Orientation& orientation, int32_t y) {
  const Rectangle& tested = call.tested;
  uint8_t* const corner = raw(call.corner.row(y - call.region.top)) + (tested.left - call.region.left);
  const uint8_t* const s = raw(call.src.row(y)) + tested.left;
  int32_t count = 0;
  scanCorners(corner, 0, tested.right - tested.left, [&](ptrdiff_t x) {
    if (call.oriented) corner[x] |= orientation.bin(s + x);
    ++count;
    return true;
  });
  return count;
}

int32_t findAll(const FastN& call, const RingTest& ring) {
  const auto testRow = WIDEST(TestRow);
  Orientation orientation(ring, call.bins);
  const Rectangle& tested = call.tested;
  const ptrdiff_t first = tested.left - call.region.left;
  int32_t count = 0;
  for (int32_t y = tested.top; y < tested.bottom; ++y) {
    const int32_t row = y - call.region.top;
    uint8_t* const score = call.score.data ? raw(call.score.row(row)) + first : nullptr;
    testRow(raw(call.src.row(y)) + tested.left, ring, raw(call.corner.row(row)) + first, score,
            tested.right - tested.left);
    count += finishRow(call, orientation, y);
  }
  return count;
}

int32_t findPeaks(const FastN& call, const RingTest& ring) {
  const auto testRow = WIDEST(TestRow);
  const auto keepPeaks = WIDEST(KeepPeaks);
  Orientation orientation(ring, call.bins);
  const Rectangle& tested = call.tested;
  const ptrdiff_t first = tested.left - call.region.left, width = tested.right - tested.left;
  // the tested pixels and their neighbours, as far as these can be tested
  const Rectangle around = common({tested.left - 1, tested.top - 1, tested.right + 1, tested.bottom + 1}, call.image);
  Scratch scratch{call.buffer};
  uint8_t *corners[3], *scores[3];
  for (int i = 0; i < 3; ++i) {
    corners[i] = scratch.take<uint8_t>(width + 2, 1);
    scores[i] = scratch.take<uint8_t>(width + 2, 1);
  }
  // makes row y; column 0 of it is tested.left - 1
  const auto make = [&](int32_t y, uint8_t* corner, uint8_t* score) {
    corner[0] = corner[width + 1] = score[0] = score[width + 1] = 0;
    if (y < around.top || y >= around.bottom) {
      memset(score, 0, (size_t)width + 2);
      return;
    }
    const ptrdiff_t from = around.left - (tested.left - 1);
    testRow(raw(call.src.row(y)) + around.left, ring, corner + from, score + from, around.right - around.left);
  };
  int32_t count = 0;
  make(tested.top - 1, corners[1], scores[1]);
  make(tested.top, corners[2], scores[2]);
  for (int32_t y = tested.top; y < tested.bottom; ++y) {
    uint8_t *const oldCorner = corners[0], *const oldScore = scores[0];
    for (int i = 0; i < 2; ++i) corners[i] = corners[i + 1], scores[i] = scores[i + 1];
    corners[2] = oldCorner, scores[2] = oldScore;
    make(y + 1, oldCorner, oldScore);
    const int32_t row = y - call.region.top;
    keepPeaks(corners[1] + 1, scores, raw(call.corner.row(row)) + first, raw(call.score.row(row)) + first, width);
    count += finishRow(call, orientation, y);
  }
  return count;
}

}  // namespace

OrvStatus orviFastN_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dstCorner, int32_t dstCornerStep,
                           uint8_t* dstScore, int32_t dstScoreStep, int32_t* numCorners, OrvPoint srcRoiOffset,
                           OrvSize dstRoiSize, const uint8_t* state, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dstCorner, state, buffer, numCorners), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(dstRoiSize), orvStatusSize);
  const FastNState record = readState(state);
  ORV_REQUIRE(record.id == fastNId, orvStatusContext);
  if (const OrvStatus status = checkFastNType(record.dataType, record.channels)) return status;
  ORV_REQUIRE(validRoi(record.image), orvStatusSize);
  if (const OrvStatus status = checkFastNMode(record.mode, record.bins)) return status;
  const bool scored = record.mode & orvFastNScore;
  ORV_REQUIRE(!scored || dstScore, orvStatusNullPtr);
  if (const OrvStatus status = checkFastNRing(record.radius, record.arc)) return status;

  const int64_t x = srcRoiOffset.x, y = srcRoiOffset.y;
  const int64_t right = x + dstRoiSize.width, bottom = y + dstRoiSize.height;
  const OrvSize image = record.image;
  const bool clipped = x < 0 || y < 0 || right > image.width || bottom > image.height;
  ORV_REQUIRE(x < image.width && y < image.height && right > 0 && bottom > 0, orvStatusRoiClippedWarn);
  const Rectangle region = {x < 0 ? 0 : (int32_t)x, y < 0 ? 0 : (int32_t)y,
                            right < image.width ? (int32_t)right : image.width,
                            bottom < image.height ? (int32_t)bottom : image.height};
  const int32_t radius = record.radius;
  const Rectangle inner = {radius, radius, image.width - radius, image.height - radius};
  const FastN call = {{src, srcStep},
                      {dstCorner, dstCornerStep},
                      {scored ? dstScore : nullptr, dstScoreStep},
                      region,
                      common(region, inner),
                      inner,
                      (record.mode & orvFastNOrientation) != 0,
                      record.bins,
                      buffer};
  // A difference of bytes is never above 255, so such thresholds are never exceeded.
  const bool none = call.tested.empty() || record.intThreshold >= 255;
  RingTest ring;
  const RingPoint* const points = fastNRing(record.radius, &ring.points);
  for (int32_t i = 0; i < ring.points; ++i) ring.offset[i] = (ptrdiff_t)points[i].y * srcStep + points[i].x;
  ring.arc = record.arc;
  ring.threshold = none ? 0 : (uint8_t)record.intThreshold;
  if (none) {
    for (int32_t row = region.top; row < region.bottom; ++row) zeroRow(call, row, region.left, region.right);
    *numCorners = 0;
  } else {
    zeroRest(call);
    *numCorners = record.mode & orvFastNNms ? findPeaks(call, ring) : findAll(call, ring);
  }
  return clipped ? orvStatusRoiClippedWarn : orvStatusOk;
}

#endif

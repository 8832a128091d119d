// Fast marching: arrival times of a front that starts at the zero pixels and moves at unit speed.
// One body serves both variants.
//
// Theory of operation. A pixel's time follows from the earliest of its vertical and of its horizontal neighbours; times
// start late and fall until no pixel changes, and what is reached then does not depend on the order of visits, but for
// last bits. Pixels are visited in raster sweeps, down and up, each row to the right and to the left. A flag byte a
// pixel has a bit for each of the four: it is set when the two neighbours that such a visit looks at hold something
// new, and cleared by the visit. A changed pixel sets the bits of those neighbours that are later than itself: no
// others can profit. So a sweep costs what still moves, and one glance at each row and each 8 flag bytes of the rows
// that still move. When all flags are clear, nothing has been lost.
//
// Inside the known area the same solver runs on times of the other sign: the signed band of a radius.
//
// Two threads work on two fronts, rows above and below a line row, each to its own calm; then the line takes up what
// changed on both sides, and hands back what changed in it, until all is calm. The lower front is mirrored: its row 0
// is the last of the image. A front writes flags of the line into a row of its own, so that the fronts share no byte.
//
// Buffer, from the next multiple of 32 on: height + 3 rows of flags, a count and a row flag for each row.
#include <string.h>
#include "core/bands.h"
#include "core/checks.h"
#include "core/image.h"
#include "core/scratch.h"
#include "distance/flag_scan.h"

namespace {

constexpr float far = 1e30f;           // not reached
constexpr float firstTime = 999999.f;  // of pixel (0,0) if no pixel is known
constexpr float layer = -1e-10f;       // the first layer inside the known area

// Visits: in which vertical direction of the sweep, and in which direction of the row.
enum : uint8_t {
  downRight = 1,
  downLeft = 2,
  upRight = 4,
  upLeft = 8,
  down = 3,
  up = 12,
  fromLeft = 5,
  fromRight = 10
};

// Time as stored: positive outside.
struct Outside {
  float limit = far;
  static float time(float stored) { return stored > 0 ? stored : 0.f; }
  static float store(float time) { return time; }
  static bool starts(float stored) { return stored > 0; }
};
// Negative inside; 0 is not reached. No pixel that this sense visits has a neighbour outside.
struct Inside {
  float limit;
  static float time(float stored) { return stored < 0 ? -stored : stored > 0 ? 0.f : far; }
  static float store(float time) { return -time; }
  static bool starts(float stored) { return stored < 0; }
};

float arrival(float vertical, float horizontal) {
  const float early = vertical < horizontal ? vertical : horizontal, difference = vertical - horizontal;
  if (__builtin_fabsf(difference) >= 1) return early + 1;
  return (vertical + horizontal + __builtin_sqrtf(2 - difference * difference)) * 0.5f;
}

using Row = LooseElement<float>*;

// Rows that are swept together, counted from the image's near side. Row `rows` is the line, if there is one: its times
// are read and its flags are set, but it isn't swept.
struct Front {
  Plane<float> times;
  uint8_t *flags, *rowFlags;
  ptrdiff_t pitch, width, rows;
  bool line;

  Row row(ptrdiff_t y) const { return y < 0 || y >= rows + line ? nullptr : times.row(y); }
  uint8_t* flagsOf(ptrdiff_t y) const { return flags + y * pitch; }
  void set(ptrdiff_t y, ptrdiff_t x, uint8_t bits) const {
    flagsOf(y)[x] |= bits;
    rowFlags[y] |= bits;
  }
  bool calm() const { return nextWith(down | up, rowFlags, 0, rows) == rows; }
};

template <class Sense>
struct Solver {
  Sense sense;

  // Takes the time from two neighbours if it is earlier and within the limit. The earlier of the two is 0.7 or more
  // ahead; at half a pixel there is no need to look.
  bool arrives(LooseElement<float>& pixel, float vertical, float horizontal) const {
    const float now = sense.time(pixel), early = vertical < horizontal ? vertical : horizontal;
    if (now <= early + 0.5f) return false;
    const float then = arrival(vertical, horizontal);
    if (!(then < now && then <= sense.limit)) return false;
    pixel = sense.store(then);
    return true;
  }
  bool profits(Row row, ptrdiff_t x, float from) const { return row && sense.time(row[x]) > from; }

  // Flags the neighbours that may profit from a pixel's new time.
  void spread(const Front& front, ptrdiff_t y, ptrdiff_t x) const {
    const Row row = front.row(y);
    const float from = sense.time(row[x]);
    if (x > 0 && profits(row, x - 1, from)) front.set(y, x - 1, fromRight);
    if (x + 1 < front.width && profits(row, x + 1, from)) front.set(y, x + 1, fromLeft);
    if (profits(front.row(y + 1), x, from)) front.set(y + 1, x, down);
    if (profits(front.row(y - 1), x, from)) front.set(y - 1, x, up);
  }

  // Visits the flagged pixels of a row to the right, then to the left: visit(x, time of the horizontal neighbour).
  template <class Visit>
  void bothWays(Row row, uint8_t* flags, uint8_t bits, ptrdiff_t width, const Visit& visit) const {
    const uint8_t right = bits & fromLeft, left = bits & fromRight;
    for (ptrdiff_t x = 0; (x = nextWith(right, flags, x, width)) < width;) do {
        flags[x] &= (uint8_t)~right;
        visit(x, x > 0 ? sense.time(row[x - 1]) : far);
      } while (++x < width && (flags[x] & right));
    for (ptrdiff_t x = width; (x = lastWith(left, flags, x)) >= 0; ++x) do {
        flags[x] &= (uint8_t)~left;
        visit(x, x + 1 < width ? sense.time(row[x + 1]) : far);
      } while (--x >= 0 && (flags[x] & left));
  }

  void sweepRow(const Front& front, ptrdiff_t y, uint8_t bits) const {
    const Row row = front.row(y), behind = front.row(bits == down ? y - 1 : y + 1);
    front.rowFlags[y] &= (uint8_t)~bits;
    bothWays(row, front.flagsOf(y), bits, front.width, [&](ptrdiff_t x, float horizontal) {
      if (arrives(row[x], behind ? sense.time(behind[x]) : far, horizontal)) spread(front, y, x);
    });
  }

  // Sweeps a front until nothing moves in it.
  void settle(const Front& front) const {
    while (!front.calm()) {
      for (ptrdiff_t y = -1; (y = nextWith(down, front.rowFlags, y + 1, front.rows)) < front.rows;)
        sweepRow(front, y, down);
      for (ptrdiff_t y = front.rows; (y = lastWith(up, front.rowFlags, y)) >= 0;) sweepRow(front, y, up);
    }
  }

  // The same for the line between two fronts; its flags are those of the first. The earlier of the rows above and below
  // is the vertical neighbour.
  void settleLine(const Front& a, const Front& b) const {
    const Row row = a.row(a.rows), above = a.row(a.rows - 1), below = b.row(b.rows - 1);
    uint8_t *const flags = a.flagsOf(a.rows), *const others = b.flagsOf(b.rows);
    for (ptrdiff_t x = 0; x < a.width; ++x) flags[x] |= others[x], others[x] = 0;
    while (nextWith(down, flags, 0, a.width) < a.width)
      bothWays(row, flags, down, a.width, [&](ptrdiff_t x, float horizontal) {
        const float over = sense.time(above[x]), under = sense.time(below[x]);
        if (!arrives(row[x], over < under ? over : under, horizontal)) return;
        spread(a, a.rows, x);
        if (profits(below, x, sense.time(row[x]))) b.set(b.rows - 1, x, up);
      });
  }

  // Flags a pixel by what its neighbours hold, and them by what it holds.
  void meet(const Front& front, ptrdiff_t y, ptrdiff_t x) const {
    const Row row = front.row(y), above = front.row(y - 1), below = front.row(y + 1);
    const float time = sense.time(row[x]);
    if (above && sense.time(above[x]) < time) front.set(y, x, down);
    if (below && sense.time(below[x]) < time) front.set(y, x, up);
    if (x > 0 && sense.time(row[x - 1]) < time) front.set(y, x, fromLeft);
    if (x + 1 < front.width && sense.time(row[x + 1]) < time) front.set(y, x, fromRight);
    spread(front, y, x);
  }

  // Flags what may move first: all pixels outside, or in the inner layer, meet their neighbours. Others are passed over
  // in blocks. Of the line all pixels are to be visited.
  void flagAll(const Front& front) const {
    constexpr ptrdiff_t block = 16;
    memset(front.flags, 0, (size_t)(front.rows * front.pitch));
    memset(front.rowFlags, 0, (size_t)front.rows);
    if (front.line) memset(front.flagsOf(front.rows), down, (size_t)front.width);
    for (ptrdiff_t y = 0; y < front.rows; ++y) {
      const Row row = front.row(y);
      for (ptrdiff_t x = 0; x < front.width; x += block) {
        const ptrdiff_t end = x + block < front.width ? x + block : front.width;
        int32_t any = end - x < block;
        if (!any)
          for (ptrdiff_t i = 0; i < block; ++i) any |= sense.starts(row[x + i]);
        for (ptrdiff_t i = any ? x : end; i < end; ++i)
          if (sense.starts(row[i])) meet(front, y, i);
      }
    }
  }

  // From the known times to the last: on one front, or on two and the line between them.
  void solve(const Front* fronts, int count) const {
    for (int i = 0; i < count; ++i) flagAll(fronts[i]);
    if (count == 1) return settle(fronts[0]);
    do {
      if (fronts[0].calm() || fronts[1].calm()) settle(fronts[0]), settle(fronts[1]);
      else
        runTeam(2, 2, [&](int32_t first, int32_t rows) {
          for (int32_t i = first; i < first + rows; ++i) settle(fronts[i]);
        });
      settleLine(fronts[0], fronts[1]);
    } while (!fronts[0].calm() || !fronts[1].calm());
  }
};

// Sets times before the first sweep: far outside, 0 inside; with `band`, the first layer inside. Returns whether a
// pixel is known.
bool prepare(Plane<const uint8_t> src, Plane<float> dst, OrvSize roi, bool band) {
  bool known = false;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const auto* const s = src.row(y);
    const Row d = dst.row(y);
    const auto* const above = src.row(y > 0 ? y - 1 : y);
    const auto* const below = src.row(y + 1 < roi.height ? y + 1 : y);
    const ptrdiff_t last = roi.width - 1;
    uint8_t zeros = 0;
    for (ptrdiff_t x = 0; x <= last; ++x) zeros |= s[x] == 0;
    known |= zeros;
    for (ptrdiff_t x = 0; x <= last; ++x) d[x] = s[x] ? far : 0.f;
    if (!band || !zeros) continue;
    const auto lay = [&](ptrdiff_t x, ptrdiff_t left, ptrdiff_t right) __attribute__((always_inline)) {
      const int around = s[left] | s[right] | above[x] | below[x];
      d[x] = s[x] ? far : around ? layer : 0.f;
    };
    lay(0, 0, last > 0 ? 1 : 0);
    for (ptrdiff_t x = 1; x < last; ++x) lay(x, x - 1, x + 1);
    lay(last, last > 0 ? last - 1 : 0, last);
  }
  if (!known)
    for (ptrdiff_t x = 0; x < roi.width; ++x) dst.row(0)[x] = x > 0 ? dst.row(0)[x - 1] + 1 : firstTime;
  return known;
}

// The row between the fronts: both have about half of the pixels outside, and three rows at least.
int32_t lineRow(Plane<const uint8_t> src, OrvSize roi, int32_t* counts) {
  int64_t total = 0;
  for (int32_t y = 0; y < roi.height; ++y) {
    const auto* const s = src.row(y);
    int32_t count = 0;
    for (ptrdiff_t x = 0; x < roi.width; ++x) count += s[x] != 0;
    loose(counts)[y] = count;
    total += count;
  }
  int64_t running = loose(counts)[0];
  int32_t y = 1;
  while (y < roi.height && (running += loose(counts)[y]) <= total / 2) ++y;
  return y < 4 ? 3 : y > roi.height - 3 ? roi.height - 3 : y;
}

int32_t flagPitch(int32_t width) { return wrapAdd(width, 31) & ~31; }

}  // namespace

OrvStatus orviFastMarchingGetBufferSize_8u32f_C1R(OrvSize roiSize, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  *bufferSize = wrapAdd(wrapMul(wrapAdd(roiSize.height, 34), wrapAdd(flagPitch(roiSize.width), 5)), 40);
  return orvStatusOk;
}

OrvStatus orviFastMarching_8u32f_C1R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     float radius, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(srcStep >= roiSize.width && dstStep >= rowBytes<float>(roiSize.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<float>(dstStep), orvStatusStepAlign);
  ORV_REQUIRE(!(radius < 0), orvStatusBadArg);

  const int32_t height = roiSize.height;
  const ptrdiff_t pitch = flagPitch(roiSize.width);
  const bool band = !(radius <= 0);
  const Plane<const uint8_t> mask{src, srcStep};
  const Plane<float> times{dst, dstStep};
  Scratch scratch{buffer};
  uint8_t* const flags = scratch.take<uint8_t>(pitch * (height + 1), 32);
  int32_t* const counts = scratch.take<int32_t>(height, 4);
  uint8_t* const rowFlags = scratch.take<uint8_t>(height + 1, 1);

  // Small images gain nothing from a team; where no pixel is known, times start from row 0 alone.
  const bool known = prepare(mask, times, roiSize, band);
  const bool two = known && height > 5 && areaReaches(roiSize, 0x10000) && owncvGetMaxNumThreads() >= 2;
  const int32_t line = two ? lineRow(mask, roiSize, counts) : height;
  const Front fronts[2] = {{times, flags, rowFlags, pitch, roiSize.width, line, two},
                           {{raw(times.row(height - 1)), -dstStep},
                            flags + (line + 1) * pitch,
                            rowFlags + line + 1,
                            pitch,
                            roiSize.width,
                            height - 1 - line,
                            true}};
  Solver<Outside>{}.solve(fronts, two ? 2 : 1);
  if (band) Solver<Inside>{{radius + 1e-5f}}.solve(fronts, two ? 2 : 1);
  return orvStatusOk;
}

// The histogram model: the foreground of a frame.
// One body serves both variants.
//
// Theory of operation. Two masks tell which pixels differ from the previous frame and from the reference image, each by
// more than a threshold found from all differences. They are few; only they are judged by what their pixels have shown
// before, and only their lists are touched.
#include "motion/foreground_histogram.h"

namespace {

using State = OrvForegroundHistogramState;

uint8_t distance(uint8_t a, uint8_t b) { return (uint8_t)(a > b ? a - b : b - a); }

// The largest difference that is no change, by the counts of all differences: the largest standard deviation of those
// from t on, over all t, but at least 10; whole, as differences are. Sums are exact, and the square root of the largest
// variance is the largest root.
uint8_t changeThreshold(const uint32_t* counts) {
  int64_t count = counts[255], sum = count * 255, squares = sum * 255;
  double largest = 0;
  for (int64_t t = 254; t >= 0; --t) {
    count += counts[t];
    sum += t * counts[t];
    squares += t * t * counts[t];
    const double n = count > 0 ? (double)count : 1, mean = (double)sum / n;
    const double variance = (double)squares / n - mean * mean;
    if (variance > largest) largest = variance;
  }
  const double deviation = __builtin_sqrt(largest);
  return (uint8_t)(deviation > 10 ? (int32_t)deviation : 10);
}

// Counts of differences, in several tables a channel in turn: a count that waits for the store before it would take
// most of the time, and differences are mostly alike.
template <int C>
struct Counts {
  static constexpr int tables = C == 1 ? 4 : 2 * C;  // table k: channel k % C
  uint32_t table[tables][256] = {};

  void add(const Loose<const uint8_t>* a, const Loose<uint8_t>* b, ptrdiff_t width) {
    ptrdiff_t x = 0;
    for (; x + tables <= width; x += tables)
#pragma GCC unroll 6
      for (ptrdiff_t k = 0; k < tables; ++k) ++table[k][distance(a[x + k], b[x + k])];
    for (ptrdiff_t k = 0; x < width; ++k, ++x) ++table[k][distance(a[x], b[x])];
  }
  uint8_t threshold(int channel) {
    uint32_t* const counts = table[channel];
    for (int k = channel + C; k < tables; k += C)
      for (int i = 0; i < 256; ++i) counts[i] += table[k][i];
    return changeThreshold(counts);
  }
};

// mask = 255 where the frame differs from `other` by more than the threshold in any channel, else 0.
template <int C>
void markChanges(Plane<const uint8_t> src, Plane<uint8_t> other, OrvSize roi, Plane<uint8_t> mask) {
  Counts<C> counts;
  for (ptrdiff_t y = 0; y < roi.height; ++y) counts.add(src.row(y), other.row(y), (ptrdiff_t)roi.width * C);
  constexpr ptrdiff_t block = 64;  // pixels; elements first, as they stand, then pixels of C elements
  uint8_t threshold[block * C], beyond[block * C];
  for (int c = 0; c < C; ++c) threshold[c] = counts.threshold(c);
  for (ptrdiff_t i = C; i < block * C; ++i) threshold[i] = threshold[i - C];
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    for (ptrdiff_t x = 0; x < roi.width; x += block) {
      const ptrdiff_t count = roi.width - x < block ? roi.width - x : block;
      const auto* const a = src.row(y) + x * C;
      const auto* const b = other.row(y) + x * C;
      auto* const m = mask.row(y) + x;
      for (ptrdiff_t i = 0; i < count * C; ++i) beyond[i] = (uint8_t) - (distance(a[i], b[i]) > threshold[i]);
      for (ptrdiff_t i = 0; i < count; ++i) {
        m[i] = beyond[i * C];
        for (int c = 1; c < C; ++c) m[i] = m[i] | beyond[i * C + c];
      }
    }
  }
}

// Whether a value belongs to the foreground by the entries near it. All three bytes of an entry count, whatever they
// hold: those of the previous frame in long lists, and zeros in C1 forms.
template <class Entry>
bool isForeground(const Entry* list, int32_t used, int32_t limit, float prior, float leastWeight,
                  const uint8_t* value) {
  float all = 0, back = 0;
  for (int32_t k = 0; k < used && list[k].weight > leastWeight; ++k)
    if (isNear<3>(list[k], value, limit)) all += list[k].weight, back += list[k].backWeight;
  return 2 * back * prior <= all;
}

// Judges a pixel that one of the masks has marked.
bool judge(const State& s, const HistogramPixel& p, bool changed, const uint8_t* value) {
  if (changed)
    return !p.longReady ||
           isForeground(p.longList, s.longUsed, nearness(s, s.longLevels), p.longPrior, s.slowRate, value);
  return p.shortReady &&
         isForeground(p.shortList, s.shortUsed, nearness(s, s.shortLevels), p.shortPrior, s.slowRate, value);
}

template <int C>
OrvStatus run(Plane<const uint8_t> src, Plane<uint8_t> dst, OrvSize roi, State* s) {
  ORV_REQUIRE(allSet(src.data, dst.data, s), orvStatusNullPtr);
  const OrvStatus status = checkFrame(roi, s->roi, src.step, C);
  ORV_REQUIRE(status == orvStatusOk, status);
  markChanges<C>(src, s->previous, roi, s->changeMask);
  markChanges<C>(src, s->reference, roi, s->referenceMask);
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const auto* const row = src.row(y);
    const auto *const change = s->changeMask.row(y), *const unusual = s->referenceMask.row(y);
    const HistogramPixel* const pixels = pixelsOf(*s, y);
    auto* const out = dst.row(y);
    // C1 forms look at the two bytes behind a pixel too. Behind the image its last pixel stands for them.
    const ptrdiff_t last = (roi.height - 1 - y) * src.step + (ptrdiff_t)roi.width * C - 1;
    for (ptrdiff_t x = 0; x < roi.width; ++x) {
      out[x] = 0;
      if (!(change[x] | unusual[x])) continue;
      uint8_t value[3];
      for (ptrdiff_t i = 0; i < 3; ++i) value[i] = row[x * C + i < last ? x * C + i : last];
      if (judge(*s, pixels[x], change[x], value)) out[x] = 255;
    }
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviForegroundHistogram_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvForegroundHistogramState* state) {
  return run<1>({src, srcStep}, {dst, dstStep}, roiSize, state);
}
OrvStatus orviForegroundHistogram_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvForegroundHistogramState* state) {
  return run<3>({src, srcStep}, {dst, dstStep}, roiSize, state);
}

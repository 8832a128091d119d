// The histogram model: what is learnt of a frame.
// One body serves both variants.
//
// Theory of operation. A value is always entered anew into its list, at the learning rate and in the order of weights,
// and the entry with the least weight is lost; entries for the same value stand beside each other. Fading passes along
// the list from the heaviest entry to the first that isn't near the value, and no further.
//
//   [ .31 .22 .09 | .005 .005 .004 ... ]      rate .005: the new one stands here
//                 ^
//
// A list is ready once the entries that count for decisions hold 0.9 of the pixel's life. If what they hold beyond the
// background does, the foreground has come to stay: it is the new background.
#include "motion/foreground_histogram.h"

namespace {

using State = OrvForegroundHistogramState;

struct List {
  int32_t used, capacity;
  int32_t limit;  // of nearness
};

// Ages the entries up to the first that isn't near the value.
template <int N, class Entry>
void age(Entry* entries, const List& list, float rate, const uint8_t* value) {
  const float kept = 1 - rate;
  for (int32_t k = 0; k < list.capacity && entries[k].weight != 0; ++k) {
    Entry& e = entries[k];
    e.weight *= kept;
    e.backWeight *= kept;
    if ((double)e.weight < 1e-10) e.weight = e.backWeight = 0;
    else if (!isNear<N>(e, value, list.limit)) return;
  }
}

// Enters the value before the first entry that isn't heavier; the last one is lost.
template <int N, class Entry>
void enter(Entry* entries, const List& list, float rate, const uint8_t* value) {
  int32_t place = 0;
  while (place < list.capacity - 1 && entries[place].weight > rate) ++place;
  memmove(entries + place + 1, entries + place, (size_t)(list.capacity - 1 - place) * sizeof(Entry));
  Entry entered{rate, rate, {}};
  for (int i = 0; i < N; ++i) entered.value[i] = value[i];
  entries[place] = entered;
}

// Learns a value of N bytes. Returns whether the foreground has become the background.
template <int N, class Entry>
bool learn(const State& s, const List& list, Entry* entries, float& prior, uint8_t& ready, bool background,
           const uint8_t* value) {
  const float rate = ready ? s.slowRate : s.fastRate;
  prior *= 1 - rate;
  if (background) prior += rate;
  age<N>(entries, list, rate, value);
  enter<N>(entries, list, rate, value);
  float all = 0, back = 0;
  int32_t count = 0;
  for (; count < list.used && entries[count].weight != 0; ++count)
    all += entries[count].weight, back += entries[count].backWeight;
  if (all > s.readyLevel) ready = 1;
  if (!(all - back * prior > s.readyLevel)) return false;
  for (int32_t k = 0; k < count; ++k)
    entries[k].backWeight = (entries[k].weight - entries[k].backWeight * prior) / (1 - prior);
  return true;
}

template <int C>
OrvStatus update(Plane<const uint8_t> src, Plane<const uint8_t> mask, Plane<uint8_t> dst, OrvSize roi, State* s) {
  ORV_REQUIRE(allSet(src.data, mask.data, dst.data, s), orvStatusNullPtr);
  const OrvStatus status = checkFrame(roi, s->roi, src.step, C);
  ORV_REQUIRE(status == orvStatusOk, status);
  const List shortList = {s->shortUsed, s->shortCapacity, nearness(*s, s->shortLevels)};
  const List longList = {s->longUsed, s->longCapacity, nearness(*s, s->longLevels)};
  const float rate = s->referenceRate;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    const auto *const row = src.row(y), *const judged = mask.row(y);
    const auto *const previous = s->previous.row(y), *const change = s->changeMask.row(y),
                      *const unusual = s->referenceMask.row(y);
    auto* const reference = s->reference.row(y);
    HistogramPixel* const pixels = pixelsOf(*s, y);
    for (ptrdiff_t x = 0; x < roi.width; ++x) {
      HistogramPixel& p = pixels[x];
      const bool changed = change[x] != 0, background = judged[x] == 0;
      uint8_t pair[2 * C];  // a change: the value before, the value now
      for (int c = 0; c < C; ++c) pair[c] = previous[x * C + c], pair[C + c] = row[x * C + c];
      if (changed || !p.longReady) learn<2 * C>(*s, longList, p.longList, p.longPrior, p.longReady, background, pair);
      // only the prior of values is turned over with its list
      if (!changed && learn<C>(*s, shortList, p.shortList, p.shortPrior, p.shortReady, background, pair + C))
        p.shortPrior = 1 - p.shortPrior;
      for (int c = 0; background && c < C; ++c) {
        const float was = reference[x * C + c], is = pair[C + c];
        reference[x * C + c] = changed || unusual[x] ? pair[C + c] : (uint8_t)(int32_t)(was * (1 - rate) + is * rate);
      }
    }
  }
  copyImage(src, s->previous, roi, C);
  copyImage(s->reference, dst, roi, C);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviForegroundHistogramUpdate_8u_C1R(const uint8_t* src, int32_t srcStep, const uint8_t* mask,
                                               int32_t maskStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                               OrvForegroundHistogramState* state) {
  return update<1>({src, srcStep}, {mask, maskStep}, {dst, dstStep}, roiSize, state);
}
OrvStatus orviForegroundHistogramUpdate_8u_C3R(const uint8_t* src, int32_t srcStep, const uint8_t* mask,
                                               int32_t maskStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                               OrvForegroundHistogramState* state) {
  return update<3>({src, srcStep}, {mask, maskStep}, {dst, dstStep}, roiSize, state);
}

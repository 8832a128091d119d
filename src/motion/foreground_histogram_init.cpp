// The state of the histogram model: made from a first frame, and released.
// One body serves both variants.
#include "motion/foreground_histogram.h"

namespace {

using State = OrvForegroundHistogramState;

OrvStatus release(State* s) {
  ORV_REQUIRE(s, orvStatusNullPtr);
  void* const pieces[] = {s->longLists,          s->shortLists,      s->pixels,        s->previous.data,
                          s->referenceMask.data, s->changeMask.data, s->reference.data};
  for (void* const piece : pieces)
    if (piece) orvFree(piece);
  orvFree(s);
  return orvStatusOk;
}

// Takes all memory, up to the first piece that there is none for.
bool allocate(State* s, int32_t channels) {
  const int64_t count = (int64_t)s->roi.width * s->roi.height;
  return (s->reference = allocateImage(s->roi, channels)).data && (s->changeMask = allocateImage(s->roi, 1)).data &&
         (s->referenceMask = allocateImage(s->roi, 1)).data && (s->previous = allocateImage(s->roi, channels)).data &&
         (s->pixels = allocateArray<HistogramPixel>(count)) &&
         (s->shortLists = allocateArray<ShortEntry>(count * s->shortCapacity)) &&
         (s->longLists = allocateArray<LongEntry>(count * s->longCapacity));
}

OrvStatus initialise(Plane<const uint8_t> src, OrvSize roi, int32_t channels, const void* model, State** state) {
  ORV_REQUIRE(allSet(src.data, model, state), orvStatusNullPtr);
  const OrvStatus status = checkFrame(roi, roi, src.step, channels);
  ORV_REQUIRE(status == orvStatusOk, status);
  State* const s = allocateArray<State>(1);
  ORV_REQUIRE(s, orvStatusNoMem);
  *s = {{},     {},   {},     {},   nullptr, 128,  15, 25,  64,      25,     40,
        {1, 1}, 0.1f, 0.005f, 0.1f, 2,       0.9f, 15, roi, nullptr, nullptr};
  if (!allocate(s, channels)) {
    release(s);
    return orvStatusNoMem;
  }
  copyImage(src, s->reference, roi, channels);
  copyImage(src, s->previous, roi, channels);
  const ptrdiff_t count = (ptrdiff_t)roi.width * roi.height;
  memset(s->shortLists, 0, (size_t)(count * s->shortCapacity) * sizeof(ShortEntry));
  memset(s->longLists, 0, (size_t)(count * s->longCapacity) * sizeof(LongEntry));
  for (ptrdiff_t i = 0; i < count; ++i)
    s->pixels[i] = {0, 0, s->shortLists + i * s->shortCapacity, s->longLists + i * s->longCapacity, 0, 0};
  *state = s;
  return orvStatusOk;
}

}  // namespace

OrvStatus orviForegroundHistogramInitAlloc_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                  const void* model, OrvForegroundHistogramState** state) {
  return initialise({src, srcStep}, roiSize, 1, model, state);
}
OrvStatus orviForegroundHistogramInitAlloc_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                  const void* model, OrvForegroundHistogramState** state) {
  return initialise({src, srcStep}, roiSize, 3, model, state);
}

OrvStatus orviForegroundHistogramFree_8u_C1R(OrvForegroundHistogramState* state) { return release(state); }
OrvStatus orviForegroundHistogramFree_8u_C3R(OrvForegroundHistogramState* state) { return release(state); }

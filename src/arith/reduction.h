// The reduction driver: every mean, deviation, extremum and norm is a sum (or a best) over the pixels of a region.
//
// Theory: a kernel reduces one band of rows to a slot; a team's slots are joined in thread order by the calling thread.
// Kernels see Sources: one image or two, an optional mask and channel of interest. What a joined result depends on is
// therefore the bands, and these only where the slots hold rounded sums (32f); all else is exact for any team.
// Limitations: rows of a band are reached by 32-bit offsets, as all bands are.
// Example:
//   const auto kernel = WIDEST(Moments<T>);  // void(const Sources<T>&, int32_t rows, Slot*)
//   const Slot all = reduceBands(threaded, height, Slot{}, [&](int32_t first, int32_t rows, Slot* slot) {
//     kernel(sources.from(first), rows, slot);
//   }, [](Slot* total, const Slot& band) { total->sum += band.sum; });
#pragma once
#include <stdint.h>
#include "arith/names.h"
#include "core/bands.h"
#include "core/checks.h"
#include "core/image.h"
#include "core/primitives.h"

namespace ORV_VARIANT {

// What a reduction reads. Absent images are null.
template <class T>
struct Sources {
  Plane<const T> first, second;
  Plane<const uint8_t> mask;
  int32_t width;
  int32_t coi;  // channel of interest 1 to 3 of three-channel images, 0 for one-channel images

  Sources from(int32_t row) const { return {first.from(row), second.from(row), mask.from(row), width, coi}; }
};

// The arguments of a body before they are checked. One-channel forms keep `channels` and `coi` at 1.
template <class T>
struct Arguments {
  const T* src;
  int32_t srcStep;
  const uint8_t* mask;
  int32_t maskStep;
  OrvSize roi;
  int32_t channels = 1, coi = 1;
  const T* second = nullptr;
  int32_t secondStep = 0;
  bool masked = true, paired = false;

  Sources<T> sources() const {
    return {{src, srcStep}, {second, secondStep}, {mask, maskStep}, roi.width, channels == 3 ? coi : 0};
  }
};

template <class T>
Arguments<T> withoutMask(const T* src, int32_t srcStep, OrvSize roi, int32_t channels = 1, int32_t coi = 1) {
  Arguments<T> a{src, srcStep, nullptr, 0, roi, channels, coi};
  a.masked = false;
  return a;
}

template <class T>
Arguments<T> ofPair(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step, const uint8_t* mask,
                    int32_t maskStep, OrvSize roi, int32_t channels = 1, int32_t coi = 1) {
  Arguments<T> a{src1, src1Step, mask, maskStep, roi, channels, coi, src2, src2Step};
  a.paired = true;
  return a;
}

// The checks of all members, in order; `outputs` tells whether the required result pointers are set. One member has
// always tested its alignment before the mask's step.
template <class T>
OrvStatus checkArguments(const Arguments<T>& a, bool outputs, bool alignmentBeforeMask = false) {
  ORV_REQUIRE(a.src && (a.second || !a.paired) && (a.mask || !a.masked) && outputs, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(a.roi), orvStatusSize);
  const int32_t bytes = rowBytes<T>(a.roi.width, a.channels);
  const bool aligned = stepsAligned<T>(a.srcStep, a.secondStep);
  ORV_REQUIRE(a.srcStep >= bytes && (!a.paired || a.secondStep >= bytes), orvStatusStep);
  ORV_REQUIRE(aligned || !alignmentBeforeMask, orvStatusStepAlign);
  ORV_REQUIRE(!a.masked || a.maskStep >= a.roi.width, orvStatusStep);
  ORV_REQUIRE(aligned, orvStatusStepAlign);
  ORV_REQUIRE(a.coi >= 1 && a.coi <= 3, orvStatusCoi);
  return orvStatusOk;
}

// When a member threads: at `alone` pixels for each thread of the library, or at `withCores` pixels for each if the
// processor has several cores. Both are powers of two; 0 means never.
struct Threshold {
  int8_t alone, withCores;
};

static inline bool isThreaded(Threshold threshold, OrvSize roi) {
  const uint32_t threads = (uint32_t)owncvGetMaxNumThreads();
  if (threshold.alone && areaReaches(roi, (int32_t)(threads << threshold.alone))) return true;
  return threshold.withCores && areaReaches(roi, (int32_t)(threads << threshold.withCores)) && runomp() != 0;
}

constexpr int32_t slotsOnStack = 32, mostSlots = 1 << 20;

// rows(first, count, slot) for each band, then join(total, slot) in thread order; a slot starts as `neutral` and so
// does the total. Without memory for the slots of a large team the calling thread does all of it.
template <class Slot, class Rows, class Join>
static inline Slot reduceBands(bool threaded, int32_t height, const Slot& neutral, const Rows& rows, const Join& join) {
  Slot total = neutral;
  Slot few[slotsOnStack];
  Slot* slots = few;
  uint8_t* memory = nullptr;
  const int32_t team = threaded ? owncvGetMaxNumThreads() : 1;
  if (team > slotsOnStack) {
    if (team <= mostSlots) memory = orvsMalloc_8u((team + 1) * (int32_t)sizeof(Slot));
    slots = (Slot*)(((uintptr_t)memory + alignof(Slot) - 1) & ~(uintptr_t)(alignof(Slot) - 1));
  }
  if (!threaded || !slots) {
    rows(0, height, &total);
    return total;
  }
  for (int32_t i = 0; i < team; ++i) slots[i] = neutral;
  runTeam(team, height, [&](int32_t first, int32_t count) { rows(first, count, &slots[owncvGetIdThreads()]); });
  for (int32_t i = 0; i < team; ++i) join(&total, slots[i]);
  if (memory) orvsFree(memory);
  return total;
}

}  // namespace ORV_VARIANT

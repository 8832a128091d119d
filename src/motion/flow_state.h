// The tracker's state and its work memory.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "motion/names.h"
#include "core/primitives.h"
#include "core/checks.h"
#include "core/scratch.h"
#include "motion/flow_kernels.h"

struct OrvOptFlowPyrLKState {
  OrvSize maxRoi;  // levels below it in both directions are derived as a whole
  int32_t threadCount;
  int32_t dataType;
  int32_t hint;
  int32_t winSize;
  uint8_t* work;
};

namespace ORV_VARIANT {

// What the work memory holds. Windows have winSize + 2 rows and columns, derived levels 5 more than maxRoi each way.
template <class P, class G>
struct FlowWork {
  ptrdiff_t stride, levelStride;  // in elements
  P *first, *second;
  G *gx, *gy, *levelX, *levelY;
  float* converted;  // a level of 16u as floats, else null
  uint8_t* scratch;  // of the Scharr filters

  // Carves the memory at `memory`; returns the address behind everything but the scratch.
  uint8_t* carve(uint8_t* memory, OrvSize maxRoi, int32_t winSize, bool converts) {
    const ptrdiff_t rows = (ptrdiff_t)winSize + 2, levelRows = (ptrdiff_t)maxRoi.height + 5;
    stride = (rows + windowSlack + 15) & ~(ptrdiff_t)15;
    levelStride = (ptrdiff_t)maxRoi.width + 5;
    Scratch pieces{memory};
    first = pieces.take<P>(stride * rows, 64);
    second = pieces.take<P>(stride * rows, 64);
    gx = pieces.take<G>(stride * rows, 64);
    gy = pieces.take<G>(stride * rows, 64);
    levelX = pieces.take<G>(levelStride * levelRows, 64);
    levelY = pieces.take<G>(levelStride * levelRows, 64);
    converted = converts ? pieces.take<float>(levelStride * levelRows, 64) : nullptr;
    scratch = pieces.take<uint8_t>(0, 64);
    return scratch;
  }
};

using ScratchSize = OrvStatus (*)(OrvSize roi, int32_t* bytes);

// The body of the InitAlloc functions, for windows of P and derivatives of G.
template <class P, class G>
static inline OrvStatus makeFlowState(OrvOptFlowPyrLKState** state, OrvSize roi, int32_t winSize, int32_t hint,
                                      OrvDataType type, ScratchSize horizontal, ScratchSize vertical) {
  ORV_REQUIRE(allSet(state), orvStatusNullPtr);
  ORV_REQUIRE(winSize >= 1 && roi.height >= 1 && roi.width >= 1, orvStatusSize);
  // Sides below this keep the sum of all pieces below 2^63; what exceeds 31 bits can't be allocated.
  constexpr int32_t longest = 1 << 27;
  ORV_REQUIRE(roi.width < longest && roi.height < longest && winSize < longest, orvStatusNoMem);
  int32_t scratch = 0, other = 0;
  horizontal({roi.width + 5, roi.height + 5}, &scratch);
  vertical({roi.width + 5, roi.height + 5}, &other);
  if (other > scratch) scratch = other;
  FlowWork<P, G> work;
  const int64_t bytes =
      (int64_t)(uintptr_t)work.carve(nullptr, roi, winSize, type == orvData16u) + scratch + 64;  // and alignment
  ORV_REQUIRE(scratch > 0 && bytes <= INT32_MAX, orvStatusNoMem);
  auto* made = (OrvOptFlowPyrLKState*)(void*)orvsMalloc_8u(sizeof(OrvOptFlowPyrLKState));
  ORV_REQUIRE(made != nullptr, orvStatusNoMem);
  *made = {roi, 1, type, hint, winSize, orvsMalloc_8u((int32_t)bytes)};
  if (made->work == nullptr) {
    orvsFree(made);
    return orvStatusNoMem;
  }
  *state = made;
  return orvStatusOk;
}

static inline OrvStatus freeFlowState(OrvOptFlowPyrLKState* state) {
  ORV_REQUIRE(allSet(state), orvStatusNullPtr);
  if (state->work != nullptr) orvsFree(state->work);
  orvsFree(state);
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

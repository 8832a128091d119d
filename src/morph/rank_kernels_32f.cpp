// Minimum and maximum of rows and columns of floats.
#include <math.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/rank_kernels_32f.cpp"
#include "morph/rank_kernels.h"

#if HWY_ONCE
namespace ORV_VARIANT {

template <>
RankKernels<float> rankKernels<float>(Rank rank) {
  return WIDEST(RankKernelsFor<float>)(rank, -HUGE_VALF, HUGE_VALF);
}

}  // namespace ORV_VARIANT
#endif

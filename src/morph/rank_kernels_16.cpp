// Minimum and maximum of rows and columns of 16-bit elements.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/rank_kernels_16.cpp"
#include "morph/rank_kernels.h"

#if HWY_ONCE
namespace ORV_VARIANT {

template <>
RankKernels<uint16_t> rankKernels<uint16_t>(Rank rank) {
  return WIDEST(RankKernelsFor<uint16_t>)(rank, 0, UINT16_MAX);
}
template <>
RankKernels<int16_t> rankKernels<int16_t>(Rank rank) {
  return WIDEST(RankKernelsFor<int16_t>)(rank, INT16_MIN, INT16_MAX);
}

}  // namespace ORV_VARIANT
#endif

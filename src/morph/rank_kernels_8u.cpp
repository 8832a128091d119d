// Minimum and maximum of rows and columns of bytes.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/rank_kernels_8u.cpp"
#include "morph/rank_kernels.h"

#if HWY_ONCE
namespace ORV_VARIANT {

template <>
RankKernels<uint8_t> rankKernels<uint8_t>(Rank rank) {
  return WIDEST(RankKernelsFor<uint8_t>)(rank, 0, UINT8_MAX);
}

}  // namespace ORV_VARIANT
#endif

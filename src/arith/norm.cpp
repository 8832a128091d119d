// Norms of an image.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/norm.cpp"
#include "core/kernels.h"
#include "arith/norms.h"

#if HWY_ONCE
#include <math.h>

namespace {

template <NormKind K, class T>
OrvStatus normOf(const Arguments<T>& a, double* value, Threshold threshold, bool alignmentBeforeMask = false) {
  const OrvStatus status = checkArguments(a, value != nullptr, alignmentBeforeMask);
  if (status != orvStatusOk) return status;
  const double n = normParts<NormTask<T, K, NormForm::single>>(a, threshold).numerator;
  *value = K == NormKind::L2 ? sqrt(n) : n;
  return orvStatusOk;
}

}  // namespace

// The two members of a norm and element type, with the thresholds of each: alone, with several cores (see Threshold).
#define PAIR(kind, tag, T, a1, c1, a3, c3)                                                                           \
  OrvStatus orviNorm_##kind##_##tag##_C1MR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,     \
                                           OrvSize roiSize, double* value) {                                         \
    constexpr bool alignmentBeforeMask = NormKind::kind == NormKind::L2 && std::is_same<T, float>::value;            \
    return normOf<NormKind::kind, T>({src, srcStep, mask, maskStep, roiSize}, value, {a1, c1}, alignmentBeforeMask); \
  }                                                                                                                  \
  OrvStatus orviNorm_##kind##_##tag##_C3CMR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,    \
                                            OrvSize roiSize, int32_t coi, double* value) {                           \
    return normOf<NormKind::kind, T>({src, srcStep, mask, maskStep, roiSize, 3, coi}, value, {a3, c3});              \
  }

PAIR(Inf, 8u, uint8_t, 19, 0, 17, 0)
PAIR(Inf, 8s, int8_t, 19, 0, 17, 0)
PAIR(Inf, 16u, uint16_t, 19, 0, 17, 0)
PAIR(Inf, 32f, float, 17, 0, 15, 0)
PAIR(L1, 8u, uint8_t, 0, 17, 17, 0)
PAIR(L1, 8s, int8_t, 0, 17, 17, 0)
PAIR(L1, 16u, uint16_t, 17, 0, 17, 0)
PAIR(L1, 32f, float, 17, 0, 17, 0)
PAIR(L2, 8u, uint8_t, 0, 17, 17, 15)
PAIR(L2, 8s, int8_t, 0, 17, 17, 15)
PAIR(L2, 16u, uint16_t, 17, 0, 17, 15)
PAIR(L2, 32f, float, 17, 0, 17, 0)

#endif

// Norms of the difference of two images.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/norm_diff.cpp"
#include "core/kernels.h"
#include "arith/norms.h"

#if HWY_ONCE
#include <math.h>

namespace {

template <NormKind K, class T>
OrvStatus normDiffOf(const Arguments<T>& a, double* value, Threshold threshold) {
  const OrvStatus status = checkArguments(a, value != nullptr);
  if (status != orvStatusOk) return status;
  const double n = normParts<NormTask<T, K, NormForm::difference>>(a, threshold).numerator;
  *value = K == NormKind::L2 ? sqrt(n) : n;
  return orvStatusOk;
}

}  // namespace

// The two members of a norm and element type, with the thresholds of each: alone, with several cores (see Threshold).
#define PAIR(kind, tag, T, a1, c1, a3, c3)                                                                           \
  OrvStatus orviNormDiff_##kind##_##tag##_C1MR(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step,     \
                                               const uint8_t* mask, int32_t maskStep, OrvSize roiSize,               \
                                               double* value) {                                                      \
    return normDiffOf<NormKind::kind, T>(ofPair(src1, src1Step, src2, src2Step, mask, maskStep, roiSize), value,     \
                                         {a1, c1});                                                                  \
  }                                                                                                                  \
  OrvStatus orviNormDiff_##kind##_##tag##_C3CMR(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step,    \
                                                const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi, \
                                                double* value) {                                                     \
    return normDiffOf<NormKind::kind, T>(ofPair(src1, src1Step, src2, src2Step, mask, maskStep, roiSize, 3, coi),    \
                                         value, {a3, c3});                                                           \
  }

PAIR(Inf, 8u, uint8_t, 17, 0, 17, 0)
PAIR(Inf, 8s, int8_t, 17, 0, 17, 0)
PAIR(Inf, 16u, uint16_t, 17, 0, 17, 0)
PAIR(Inf, 32f, float, 17, 0, 17, 0)
PAIR(L1, 8u, uint8_t, 0, 17, 17, 0)
PAIR(L1, 8s, int8_t, 0, 17, 0, 15)
PAIR(L1, 16u, uint16_t, 17, 0, 0, 15)
PAIR(L1, 32f, float, 17, 0, 17, 0)
PAIR(L2, 8u, uint8_t, 0, 17, 17, 0)
PAIR(L2, 8s, int8_t, 0, 17, 17, 0)
PAIR(L2, 16u, uint16_t, 17, 0, 17, 15)
PAIR(L2, 32f, float, 17, 0, 17, 0)

#endif

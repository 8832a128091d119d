// Relative norms: that of a difference over that of the second image.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/norm_rel.cpp"
#include "core/kernels.h"
#include "arith/norms.h"

#if HWY_ONCE
#include <math.h>

namespace {

// A NaN over 0 counts as below 0, as the comparisons have it.
double overZero(double numerator) {
  if (numerator == 0) return NAN;
  return numerator > 0 ? HUGE_VAL : -HUGE_VAL;
}

template <NormKind K, class T>
OrvStatus normRelOf(const Arguments<T>& a, double* value, Threshold threshold) {
  const OrvStatus status = checkArguments(a, value != nullptr);
  if (status != orvStatusOk) return status;
  const NormParts<double> parts = normParts<NormTask<T, K, NormForm::relative>>(a, threshold);
  if (parts.denominator == 0) {
    *value = overZero(parts.numerator);
    return orvStatusDivByZeroWarn;
  }
  const double ratio = parts.numerator / parts.denominator;
  *value = K == NormKind::L2 ? sqrt(ratio) : ratio;
  return orvStatusOk;
}

}  // namespace

// The two members of a norm and element type, with the thresholds of each: alone, with several cores (see Threshold).
#define PAIR(kind, tag, T, a1, c1, a3, c3)                                                                             \
  OrvStatus orviNormRel_##kind##_##tag##_C1MR(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step,        \
                                              const uint8_t* mask, int32_t maskStep, OrvSize roiSize, double* value) { \
    return normRelOf<NormKind::kind, T>(ofPair(src1, src1Step, src2, src2Step, mask, maskStep, roiSize), value,        \
                                        {a1, c1});                                                                     \
  }                                                                                                                    \
  OrvStatus orviNormRel_##kind##_##tag##_C3CMR(const T* src1, int32_t src1Step, const T* src2, int32_t src2Step,       \
                                               const uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t coi,    \
                                               double* value) {                                                        \
    return normRelOf<NormKind::kind, T>(ofPair(src1, src1Step, src2, src2Step, mask, maskStep, roiSize, 3, coi),       \
                                        value, {a3, c3});                                                              \
  }

PAIR(Inf, 8u, uint8_t, 0, 17, 17, 15)
PAIR(Inf, 8s, int8_t, 0, 17, 17, 15)
PAIR(Inf, 16u, uint16_t, 0, 17, 15, 0)
PAIR(Inf, 32f, float, 15, 0, 15, 0)
PAIR(L1, 8u, uint8_t, 17, 0, 17, 15)
PAIR(L1, 8s, int8_t, 0, 17, 17, 15)
PAIR(L1, 16u, uint16_t, 17, 15, 15, 0)
PAIR(L1, 32f, float, 17, 0, 17, 0)
PAIR(L2, 8u, uint8_t, 17, 0, 17, 15)
PAIR(L2, 8s, int8_t, 17, 0, 17, 15)
PAIR(L2, 16u, uint16_t, 17, 15, 15, 0)
PAIR(L2, 32f, float, 17, 0, 17, 0)

#endif

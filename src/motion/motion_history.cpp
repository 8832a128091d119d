// Motion history: the time at which each pixel moved last.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/motion_history.cpp"
#include "arith/pointwise.h"

#ifndef ORV_MOTION_HISTORY
#define ORV_MOTION_HISTORY
namespace {

struct Times {
  float now, limit;  // older pixels than `limit` are forgotten
};

}  // namespace
#endif

KERNELS_BEGIN

// The choices are masks of bits: a choice between floats stays scalar code below AVX-512. Written as `not below`, a NaN
// stays.
template <class T>
void UpdateMotionHistory(Area area, Plane<const T> silhouette, Plane<float> mhi, Times times) {
  const int32_t now = __builtin_bit_cast(int32_t, times.now);
  const float limit = times.limit;
  const auto formula = FORMULA(T s, float m) {
    const int32_t kept = __builtin_bit_cast(int32_t, m) & -!(m < limit), moves = -(s != 0);
    return __builtin_bit_cast(float, (now & moves) | (kept & ~moves));
  };
  MapRows(area, mhi, formula, silhouette, mhi);
}

KERNELS_END

#if HWY_ONCE

namespace {

// All steps are tested before all alignments.
template <class T, class Kernel>
OrvStatus update(Kernel kernel, OrvSize roi, Plane<const T> silhouette, Plane<float> mhi, float timestamp,
                 float duration) {
  ORV_REQUIRE(allSet(silhouette.data, mhi.data), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(silhouette.step >= rowBytes<T>(roi.width) && mhi.step >= rowBytes<float>(roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(silhouette.step) && stepsAligned<float>(mhi.step), orvStatusStepAlign);
  ORV_REQUIRE(!(duration < 0), orvStatusOutOfRange);
  const bool gapless = silhouette.step == (int64_t)roi.width * (int64_t)sizeof(T) && mhi.step == (int64_t)roi.width * 4;
  const Area area = gapless ? Area{(ptrdiff_t)roi.width * roi.height, 1, false} : Area{roi.width, roi.height, false};
  kernel(area, silhouette, mhi, {timestamp, timestamp - duration});
  return orvStatusOk;
}

}  // namespace

OrvStatus orviUpdateMotionHistory_8u32f_C1IR(const uint8_t* silhouette, int32_t silhouetteStep, float* mhi,
                                             int32_t mhiStep, OrvSize roiSize, float timestamp, float duration) {
  return update<uint8_t>(WIDEST(UpdateMotionHistory<uint8_t>), roiSize, {silhouette, silhouetteStep}, {mhi, mhiStep},
                         timestamp, duration);
}

OrvStatus orviUpdateMotionHistory_16u32f_C1IR(const uint16_t* silhouette, int32_t silhouetteStep, float* mhi,
                                              int32_t mhiStep, OrvSize roiSize, float timestamp, float duration) {
  return update<uint16_t>(WIDEST(UpdateMotionHistory<uint16_t>), roiSize, {silhouette, silhouetteStep}, {mhi, mhiStep},
                          timestamp, duration);
}

OrvStatus orviUpdateMotionHistory_32f_C1IR(const float* silhouette, int32_t silhouetteStep, float* mhi, int32_t mhiStep,
                                           OrvSize roiSize, float timestamp, float duration) {
  return update<float>(WIDEST(UpdateMotionHistory<float>), roiSize, {silhouette, silhouetteStep}, {mhi, mhiStep},
                       timestamp, duration);
}

#endif

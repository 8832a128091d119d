// What the detectors by Harris' plan share: checks, gradients, borders and scratch.
#pragma once
#include "features/names.h"
#include "core/checks.h"
#include "features/harris_size.h"
#include "features/tensor.h"
#include "filter/border.h"

namespace ORV_VARIANT {

static inline OrvStatus checkHarris(OrvFilterKernel filterType, OrvMaskSize maskSize, OrvBorderType borderType,
                                    int32_t avgWindow) {
  ORV_REQUIRE(filterType == orvFilterKernelSobel || filterType == orvFilterKernelScharr ||
                  filterType == orvFilterKernelCentralDiff,
              orvStatusFilterType);
  ORV_REQUIRE(maskSize == orvMaskSize3x3 || (maskSize == orvMaskSize5x5 && filterType == orvFilterKernelSobel),
              orvStatusMaskSize);
  const int32_t kind = borderType & 7;
  ORV_REQUIRE(kind == orvBorderConst || kind == orvBorderRepl || kind == orvBorderInMem, orvStatusBorder);
  ORV_REQUIRE(avgWindow > 0, orvStatusSize);
  return orvStatusOk;
}

static inline GradientForm harrisForm(OrvFilterKernel filterType, OrvMaskSize maskSize) {
  return filterType == orvFilterKernelScharr ? GradientForm::scharr3
         : maskSize == orvMaskSize5x5        ? GradientForm::sobel5
                                             : GradientForm::sobel3;
}
GradientKernel<uint8_t, int16_t> harrisGradients(OrvFilterKernel filterType, OrvMaskSize maskSize);

struct HarrisPlan {
  OrvSize roi;
  OrvMaskSize maskSize;
  int32_t avgWindow, borderType;
};

// Results of the whole region, with the scratch of its reported size.
template <class T, class R>
static void harrisTensor(const HarrisPlan& plan, Plane<const T> src, Plane<float> dst, int32_t channels,
                         GradientKernel<T, R> gradient, T borderValue, uint8_t* buffer, TensorResult result,
                         const TensorWork& work) {
  const bool inMemory = (plan.borderType & 7) == orvBorderInMem;
  const TensorCall<T, R> call = {src,
                                 dst,
                                 channels,
                                 plan.roi,
                                 gradient,
                                 plan.maskSize == orvMaskSize5x5 ? 5 : 3,
                                 plan.avgWindow,
                                 inMemory ? (int32_t)orvBorderConst : plan.borderType & 7,
                                 inMemory ? (int32_t)borderAllSides : plan.borderType & borderAllSides,
                                 borderValue,
                                 result,
                                 work};
  const OrvDataType type = sizeof(T) == 1 ? orvData8u : orvData32f;
  tensorRows(call, 0, plan.roi.height, buffer, harrisBytes(plan.roi, plan.maskSize, plan.avgWindow, type));
}

}  // namespace ORV_VARIANT

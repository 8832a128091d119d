// What detectors with a filter are told beside their images.
#pragma once
#include "reference/gradient_vector.h"

namespace reference {

struct FilterPlan {
  int32_t filter, mask, window, border;
  float value;

  int half() const { return mask / 22; }
  int sides() const { return (border & 7) == orvBorderInMem ? 240 : border & 240; }
  int kind() const { return (border & 7) == orvBorderRepl ? orvBorderRepl : orvBorderConst; }
  GradientForm form() const {
    if (filter == orvFilterKernelScharr) return GradientForm::scharr3;
    return half() == 2 ? GradientForm::sobel5 : GradientForm::sobel3;
  }
};

}  // namespace reference

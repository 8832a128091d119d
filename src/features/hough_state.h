// The state of the probabilistic line detector: this header, then for each angle the cosine and the sine, both divided
// by rho, in floats. It may lie at any address.
#pragma once
#include <stdint.h>
#include "features/names.h"

namespace ORV_VARIANT {

struct HoughProbHeader {
  float rho, theta;
  int32_t hint;
};

}  // namespace ORV_VARIANT

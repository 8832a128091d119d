// The taps of Gaussian kernels.
#pragma once
#include <stdint.h>
#include "filter/names.h"

namespace ORV_VARIANT {

// Writes exp(-(j * j) / q), j = i - size / 2, q = 2 * sigma^2, and returns the float sum in rising order.
float gaussianWeights(float sigma, int32_t size, float* weights);

}  // namespace ORV_VARIANT

// The taps of Gaussian kernels.
#include "filter/gaussian_kernel.h"
#include <math.h>
#include <string.h>

namespace ORV_VARIANT {

// exp(x) for x <= 0, rounded once from a double that is exact to some 2^-50. The mathematics library chooses among
// forms by processor, and the last bit of a tap must not depend on that.
static float expOfNegative(float x) {
  constexpr double log2e = 1.4426950408889634, ln2High = 0.693147180369123816490, ln2Low = 1.90821492927058770002e-10;
  if (!(x > -110)) return x != x ? x : 0;  // below 2^-150
  const int32_t n = (int32_t)(x * log2e - 0.5);
  const double r = (x - n * ln2High) - n * ln2Low;  // |r| <= log(2) / 2
  double sum = 1, term = 1;
  for (int32_t i = 1; i <= 14; ++i) {
    term = term * r / i;
    sum += term;
  }
  const uint64_t bits = (uint64_t)(1023 + n) << 52;
  double power;
  memcpy(&power, &bits, sizeof power);
  return (float)(sum * power);
}

float gaussianWeights(float sigma, int32_t size, float* weights) {
  const float q = (sigma + sigma) * sigma;
  float sum = 0;
  for (int32_t i = 0; i < size; ++i) {
    const float j = (float)(i - size / 2);
    weights[i] = j == 0 ? 1.0f : expOfNegative(-(j * j) / q);  // 1 also where q is too small for a float
    sum += weights[i];
  }
  return sum;
}

}  // namespace ORV_VARIANT

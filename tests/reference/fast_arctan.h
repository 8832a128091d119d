// The quadratic arc tangent in plain form.
#pragma once
#include <math.h>

namespace reference {

inline float fastArctan(float y, float x) {
  if (y != y || x != x) return NAN;
  const float ax = fabsf(x), ay = fabsf(y);
  const float m = fmaxf(fmaxf(ax, ay), 1e-8f);
  const float t = fminf(ax, ay) * (1.0f / m);
  float r = t * (-15.8131895f * t + 61.094196f) + (-0.14050041f);
  if (ax < ay) r = 90 - r;
  if (x < 0) r = 180 - r;
  if (y < 0) r = 360 - r;
  return r;
}

}  // namespace reference

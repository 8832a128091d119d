// Scaled integer results in plain form: exact in double precision, rounded to nearest even, saturated.
#pragma once
#include <math.h>
#include <limits>

namespace reference {

template <class T>
T scaled(double exact, int scaleFactor) {
  if (exact == 0) return 0;
  const double low = (double)std::numeric_limits<T>::lowest(), high = (double)std::numeric_limits<T>::max();
  return (T)fmin(fmax(nearbyint(exact * exp2(-(double)scaleFactor)), low), high);
}

}  // namespace reference

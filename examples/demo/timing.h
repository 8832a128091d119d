// Time of a call.
#pragma once
#include <algorithm>
#include <chrono>

namespace demo {

template <class Call>
double seconds(const Call& call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The least time of one call, of at least 5 and at most 50 calls in about a fifth of a second.
template <class Call>
double leastSeconds(const Call& call) {
  double least = seconds(call), sum = least;
  for (int i = 1; i < 5 || (i < 50 && sum < 0.2); ++i) {
    const double once = seconds(call);
    least = std::min(least, once);
    sum += once;
  }
  return least;
}

}  // namespace demo

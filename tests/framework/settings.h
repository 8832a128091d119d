// The settings that must make no difference: vector width and thread count.
#pragma once
#include <stdio.h>
#include <vector>
#include "framework/harness.h"
#include "framework/steered_core.h"
#include "framework/subject.h"

namespace test {

// The widths that can be forced here: all that the processor has, or, through the shared library, just its own.
inline int widths() {
#ifdef ORV_VARIANT
  static const int count =
      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") ? 3
      : __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2")                                             ? 2
                                                                         : 1;
  return count;
#else
  return 1;
#endif
}

inline void forceWidth(int width) {
#ifdef ORV_VARIANT
  ownVectorWidth = width;
#else
  (void)width;
#endif
}

// Thread counts to try: the one from the environment, or 1, 2, 3 and 7.
inline std::vector<int32_t> threadCounts() {
  if (steeredThreadsFromEnvironment() > 0) return {steeredThreadsFromEnvironment()};
  return {1, 2, 3, 7};
}

// Calls body() at every width, and, if `threaded`, for every thread count; leaves the widest width and one thread.
template <class Body>
void forEachSetting(bool threaded, const Body& body) {
  for (int width = 0; width < widths(); ++width) {
    forceWidth(width);
    for (const int32_t threads : threaded ? threadCounts() : std::vector<int32_t>{1}) {
      steerThreads(threads);
      char text[48];
      snprintf(text, sizeof text, "width %d, %d threads", width, (int)threads);
      const Context context(text);
      body();
    }
  }
  steerThreads(1);
}

}  // namespace test

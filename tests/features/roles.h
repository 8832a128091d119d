// Roles of arguments that the detectors add to those of framework/sweep.h.
#pragma once
#include "framework/sweep.h"

namespace test {

// Two thresholds, low first: one of the given pairs.
struct Thresholds : Value<std::pair<float, float>> {
  using Value::Value;
  std::tuple<float, float> arguments(Side) { return {chosen.first, chosen.second}; }
};

}  // namespace test

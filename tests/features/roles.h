// Roles of arguments that the detectors add to those of framework/sweep.h.
#pragma once
#include <algorithm>
#include "framework/sweep.h"

namespace test {

// Two thresholds, low first: one of the given pairs.
struct Thresholds : Value<std::pair<float, float>> {
  using Value::Value;
  std::tuple<float, float> arguments(Side) { return {chosen.first, chosen.second}; }
};

// A check that some functions of a family make, bits of a mask. walkShared() walks those of one function.
template <class Arguments>
struct SharedCheck {
  int functions;
  Check<Arguments> check;
};
template <class Arguments>
void walkShared(int function, const Arguments& valid, const std::vector<SharedCheck<Arguments>>& shared,
                OrvStatus (*run)(int function, const Arguments&), const std::function<bool()>& untouched) {
  const Context context("function " + std::to_string(function));
  std::vector<Check<Arguments>> checks;
  for (const auto& s : shared)
    if (s.functions & function) checks.push_back(s.check);
  walkChecks<Arguments>(
      valid, checks, [&](Arguments& a) { return run(function, a); }, untouched);
}

}  // namespace test

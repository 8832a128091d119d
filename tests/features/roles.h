// Roles of arguments that the detectors add to those of framework/sweep.h.
#pragma once
#include <algorithm>
#include "framework/sweep.h"

namespace test {

// Scratch memory of exactly the reported size, at any address.
struct Buffer {
  std::function<OrvStatus(OrvSize, int32_t*)> size;
  std::shared_ptr<Guarded> memory;
  bool nullFault = false;
  explicit Buffer(std::function<OrvStatus(OrvSize, int32_t*)> report) : size(std::move(report)) {}
  void prepare(Random& r, const Shape& shape) {
    int32_t bytes = -1;
    if (size({shape.width, shape.height}, &bytes) != orvStatusOk) return fail("no size");
    memory = std::make_shared<Guarded>((size_t)bytes, !r.one(4), (size_t)r.in(0, 70));
  }
  std::tuple<uint8_t*> arguments(Side) { return {nullFault ? nullptr : memory->data()}; }
  void spoil(Fault fault) { nullFault |= fault == Fault::null; }
  void mend() { nullFault = false; }
  void reset() { memset(memory->data(), 0xA7, memory->bytes()); }
  bool untouched() const {
    return std::all_of(memory->data(), memory->data() + memory->bytes(), [](uint8_t b) { return b == 0xA7; });
  }
  void verify(int) const { CHECK(memory->intact(), "written outside the buffer"); }
};

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

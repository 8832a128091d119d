// What the tests of statistics share: the order of checks, the channel of interest, sizes.
#pragma once
#include "framework/sweep.h"
#include "reference/statistics.h"

namespace test {

// Large enough for a team of each thread count: the threshold grows with the threads.
inline Shape threadedShape() { return quick() ? Shape{1025, 260} : Shape{1025, 1030}; }

// The checks of an image, or two, and a mask, in their order. Roles stand as in the arguments; `output` is the position
// of a required result, 0 if there is none.
template <class T>
std::vector<Told> orderOfChecks(int images, bool masked, int output, bool alignmentBeforeMask = false) {
  std::vector<int> nulls;
  for (int i = 0; i < images + masked; ++i) nulls.push_back(i);
  if (output) nulls.push_back(output);
  std::vector<Told> order = pointersThenSizes(nulls, images + masked);
  const auto alignments = [&] {
    for (int i = 0; i < images && sizeof(T) > 1; ++i) order.push_back({Fault::misalignedStep, i});
  };
  for (int i = 0; i < images; ++i) order.push_back({Fault::smallStep, i});
  if (alignmentBeforeMask) alignments();
  if (masked) order.push_back({Fault::smallStep, images});
  if (!alignmentBeforeMask) alignments();
  return order;
}

inline Value<int32_t> Coi() { return Value<int32_t>({1, 2, 3}); }
inline Value<int32_t> BadCoi() { return Value<int32_t>({0, 4, -1}); }

// Roles with a BadCoi: all faults win over it, since it is checked last, and alone it is refused too.
template <class Function, class... Role>
void walkBadCoi(const char* name, Function function, const std::vector<Told>& order, Role... roles) {
  walkArguments(name, function, order, roles...);
  Random r(seed());
  for (int i = 0; i < 9; ++i) {
    (roles.prepare(r, {13, 5}), ...);
    (roles.reset(), ...);
    const OrvStatus status = detail::invoke(function, Side::candidate, roles...);
    CHECK(status == orvStatusCoi && (roles.untouched() && ...), "%s with a bad coi: status %d", name, (int)status);
  }
}

}  // namespace test

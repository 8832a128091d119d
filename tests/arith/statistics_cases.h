// What the tests of statistics share: the order of checks, the channel of interest, sizes.
#pragma once
#include "framework/sweep.h"
#include "reference/statistics.h"

namespace test {

// Large enough for a team of each thread count: the threshold grows with the threads.
inline Shape threadedShape() { return quick() ? Shape{1025, 260} : Shape{1025, 1030}; }

// The checks of an image, or two, and a mask, in their order. Roles stand as in the arguments; `output` is the position
// of a required result and `coi` that of the channel of interest, 0 if there is none.
template <class T>
std::vector<Told> orderOfChecks(int images, bool masked, int output, int coi = 0, bool alignmentBeforeMask = false) {
  std::vector<int> nulls, sources;
  for (int i = 0; i < images + masked; ++i) nulls.push_back(i);
  for (int i = 0; i < images; ++i) sources.push_back(i);
  if (output) nulls.push_back(output);
  const auto alignments = eachOf(Fault::misalignedStep, sizeof(T) > 1 ? sources : std::vector<int>());
  auto order = pointersThenSizes(nulls, images + masked) + eachOf(Fault::smallStep, sources);
  if (alignmentBeforeMask) order = order + alignments;
  if (masked) order.push_back({Fault::smallStep, images});
  if (!alignmentBeforeMask) order = order + alignments;
  for (const int bad : {0, 4, -1})
    if (coi) order.push_back(badValue(coi, bad, orvStatusCoi));
  return order;
}

inline Value<int32_t> Coi() { return Value<int32_t>({1, 2, 3}); }

}  // namespace test

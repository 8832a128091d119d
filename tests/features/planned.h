// Sources of the detectors that take a filter and a border.
#pragma once
#include "features/roles.h"
#include "reference/tensor.h"

namespace test {

// A source that is readable around just as deep as its plan tells; the plan follows it.
template <class T>
struct Planned : ImageRole<T> {
  reference::FilterPlan* plan;
  bool isCanny;  // which has no windows and no plain differences
  explicit Planned(reference::FilterPlan* told, bool canny = false)
      : ImageRole<T>(In<T>()), plan(told), isCanny(canny) {}
  void prepare(Random& r, const Shape& shape) {
    const int filters[] = {orvFilterKernelSobel, orvFilterKernelScharr, orvFilterKernelCentralDiff};
    const int kinds[] = {orvBorderConst, orvBorderRepl, orvBorderInMem}, windows[] = {9, 17, 24};
    const int filter = filters[r.in(0, isCanny ? 1 : 2)];
    *plan = {filter, filter == orvFilterKernelSobel && r.one(2) ? orvMaskSize5x5 : orvMaskSize3x3,
             isCanny     ? 1
             : r.one(16) ? windows[r.in(0, 2)]
                         : r.in(1, 6),
             kinds[r.in(0, 2)] | (r.one(3) ? 0 : r.in(0, 15) * 16), (float)r.in(0, 255)};
    const int before = (plan->window - 1) / 2, behind = plan->window / 2;
    const auto depth = [&](int flag, int reach) { return plan->sides() & flag ? reach + plan->half() : 0; };
    this->candidate.emplace(r, shape.width, shape.height, 1,
                            Margin{depth(orvBorderInMemLeft, before), depth(orvBorderInMemTop, before),
                                   depth(orvBorderInMemRight, behind), depth(orvBorderInMemBottom, behind)});
    this->candidate->fill(r, false);
  }
  auto arguments(Side side) { return std::tuple_cat(ImageRole<T>::arguments(side), std::make_tuple(*plan)); }
};

}  // namespace test

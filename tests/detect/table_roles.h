// Arguments of the integral functions as roles of a sweep.
#pragma once
#include "framework/sweep.h"

namespace test {

// An image that has more columns and rows than the region, and readable pixels left and right of them.
template <class T>
struct Larger : ImageRole<T> {
  int columns, rows, left, right;
  Larger(ImageRole<T> role, int moreColumns, int moreRows, int onLeft = 0, int onRight = 0)
      : ImageRole<T>(role), columns(moreColumns), rows(moreRows), left(onLeft), right(onRight) {}
  void prepare(Random& r, const Shape& shape) {
    const int width = shape.width + columns, height = shape.height + rows;
    this->candidate.emplace(r, width, height, 1, Margin{left, 0, right, 0});
    this->candidate->fill(r, this->wild);
    if (this->writes) this->expected.emplace(r, width, height, 1);
  }
};

// Checks in the told order: pointers, sizes, steps, then the alignment of steps of more than a byte.
inline std::vector<Told> tableChecks(std::vector<int> images, std::vector<int> aligned, int roi) {
  std::vector<Told> order = pointersThenSizes(images, roi);
  for (const int i : images) order.push_back({Fault::smallStep, i});
  for (const int i : aligned) order.push_back({Fault::misalignedStep, i});
  return order;
}

}  // namespace test

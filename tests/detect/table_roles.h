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

// Those of the first two images whose steps can be misaligned.
template <class First, class Second>
std::vector<int> alignedOf() {
  std::vector<int> images;
  if (sizeof(First) > 1) images.push_back(0);
  if (sizeof(Second) > 1) images.push_back(1);
  return images;
}

// Checks in the told order: pointers (`nulls` if not the images' alone), sizes, steps, then the alignment of steps.
inline std::vector<Told> tableChecks(const std::vector<int>& images, const std::vector<int>& aligned, int roi,
                                     const std::vector<int>& nulls = {}) {
  return pointersThenSizes(nulls.empty() ? images : nulls, roi) + eachOf(Fault::smallStep, images) +
         eachOf(Fault::misalignedStep, aligned);
}

}  // namespace test

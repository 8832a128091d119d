// The arithmetic of a tracking window, for each way in which windows are held.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "motion/names.h"

namespace ORV_VARIANT {

// A rectangle of the windows of a point: pixels of the first and second image, derivatives of the first. All have one
// stride, in elements, and are readable for windowSlack elements beyond a row's end.
template <class P, class G>
struct FlowWindow {
  const P *first, *second;
  const G *gx, *gy;
  ptrdiff_t stride, width, height;
};
static constexpr ptrdiff_t windowSlack = 32;

// The sums over a rectangle, with d = first - second.
template <class P, class G>
struct FlowKernels {
  // Derivatives of unit gain (3 10 3 times -1 0 1, over 32) from a window grown by one pixel on each side; `first` is
  // the pixel above and to the left of the first result. What lies behind a row of gx and gy, up to windowSlack
  // elements, is overwritten.
  void (*derive)(const P* first, G* gx, G* gy, ptrdiff_t stride, ptrdiff_t width, ptrdiff_t height);
  // gx^2, gx * gy, gy^2
  void (*matrix)(const FlowWindow<P, G>& w, double sums[3]);
  // d * gx, d * gy
  void (*mismatch)(const FlowWindow<P, G>& w, double sums[2]);
  // d^2
  double (*squares)(const FlowWindow<P, G>& w);
};

// Windows with 7 fractional bits, and windows of floats.
FlowKernels<uint16_t, int16_t> flowKernelsQ7();
FlowKernels<float, float> flowKernelsFloat();

}  // namespace ORV_VARIANT

// Gaussian smoothing through the library, from whole images to whole images.
#pragma once
#include "image.h"

namespace demo {

// What to do with an image.
struct Smoothing {
  float sigma;
  OrvBorderType border = orvBorderRepl;
  uint8_t value[3] = {0, 0, 0};  // of the pixels beyond the sides, for orvBorderConst

  // Odd, and wide enough for three sigmas on each side.
  int kernelSize() const;
};

// A result and how long one call took.
template <class T>
struct Timed {
  Image<T> image;
  double seconds;
};

// orviFilterGaussianBorder_8u_C1R or _C3R, as the image has channels.
Timed<uint8_t> smooth(const Bytes& image, const Smoothing& how);

// The same for a window of the image: with sides in memory, the pixels around the window are the image's own.
Timed<uint8_t> smoothWindow(const Bytes& image, OrvPoint corner, OrvSize size, const Smoothing& how);

// The same for an image cut into two halves, above and below, each smoothed by a call of its own.
Timed<uint8_t> smoothHalves(const Bytes& image, const Smoothing& how);

// orviFilterGaussBorder_32f_C1R: the kernel is made in the call, and borders may also wrap or mirror.
Timed<float> smoothAtOnce(const Floats& image, const Smoothing& how);

}  // namespace demo

// What the eigenvalue detectors share: checks, derivatives, bands.
#pragma once
#include "features/names.h"
#include "core/checks.h"
#include "features/tensor.h"

namespace ORV_VARIANT {

// The arguments behind the images.
struct EigenOptions {
  int32_t kernelType, apertureSize, avgWindow;
};

// The arguments of a call. `rowFloats`: against how many floats a pixel dstStep is measured.
template <class T>
struct EigenCall {
  Plane<const T> src;
  Plane<float> dst;
  OrvSize roi;
  int32_t channels, rowFloats;
  EigenOptions options;
  uint8_t* buffer;
};

// Checks the arguments and writes the results of all pixels, by work.scale = s and work.sign = 1 for Scharr, else -1.
OrvStatus eigenCorners(const EigenCall<uint8_t>& call, TensorResult (*result)());
OrvStatus eigenCorners(const EigenCall<float>& call, TensorResult (*result)());

// The body of the size functions.
OrvStatus eigenBufferSize(OrvSize roi, int32_t apertureSize, int32_t avgWindow, bool bytes, int32_t* bufferSize);

}  // namespace ORV_VARIANT

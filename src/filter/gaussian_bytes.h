// Smoothing of byte images with all sums in 16 bits: the fast path of the 8u Gaussian.
#pragma once
#include "filter/names.h"
#include "filter/smoothing.h"

namespace ORV_VARIANT {

// Whether the taps meet the limits of the fast path (gaussian_bytes.cpp tells them).
bool gaussianBytesFit(const int16_t* taps, int32_t kernelSize);
void gaussianBytes(const Smoothing<uint8_t>& work, const int16_t* taps, int32_t kernelSize);

}  // namespace ORV_VARIANT

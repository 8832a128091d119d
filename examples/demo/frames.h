// Noisy frames of a still scene, and their averages.
#pragma once
#include <functional>
#include "gaussian.h"

namespace demo {

// Frame `number` of a camera with noise: the same for the same number.
Bytes noisyFrame(const Bytes& scene, uint32_t number);

// |a - b| by orviAbsDiff_8u_C1R or _C3R.
Timed<uint8_t> difference(const Bytes& a, const Bytes& b);

// The mean of `count` frames, summed by orviAdd_8u32f_C1IR. The time is that of adding one frame.
Timed<uint8_t> average(const Bytes& scene, int count);

// The running average of `count` frames by orviAddWeighted_8u32f_C1IR, started with the first frame.
Timed<uint8_t> runningAverage(const Bytes& scene, int count, float alpha);

// Root of the mean squared difference.
double rootMeanSquare(const Bytes& a, const Bytes& b);

}  // namespace demo

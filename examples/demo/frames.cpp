#include "frames.h"
#include <math.h>
#include <algorithm>
#include <array>
#include <random>
#include "timing.h"

namespace demo {
namespace {

constexpr float noise = 24;  // standard deviation, in gray levels

// Samples of the noise: drawing from a table makes a frame in milliseconds.
const std::array<float, 65536>& noiseTable() {
  static const auto table = [] {
    std::array<float, 65536> t;
    std::mt19937 generator(1);
    std::normal_distribution<float> normal(0, noise);
    std::generate(t.begin(), t.end(), [&] { return normal(generator); });
    return t;
  }();
  return table;
}

// Adds frames 0 to count - 1 into `sum` by `add`; returns the least time of one addition.
template <class Add>
double accumulate(const Bytes& scene, int count, const Add& add) {
  double least = 1e9;
  for (int i = 0; i < count; ++i) {
    const Bytes frame = noisyFrame(scene, (uint32_t)i);
    least = std::min(least, seconds([&] { add(frame); }));
  }
  return least;
}

}  // namespace

Bytes noisyFrame(const Bytes& scene, uint32_t number) {
  const auto& table = noiseTable();
  Bytes frame = scene;
  uint32_t state = number * 2654435761u + 1;
  for (uint8_t& v : frame.pixels) {
    state = state * 1664525u + 1013904223u;
    v = (uint8_t)std::min(std::max((float)v + table[state >> 16] + 0.5f, 0.f), 255.f);
  }
  return frame;
}

Timed<uint8_t> difference(const Bytes& a, const Bytes& b) {
  Bytes result(a.width, a.height, a.channels);
  const auto call = a.channels == 1 ? orviAbsDiff_8u_C1R : orviAbsDiff_8u_C3R;
  const double time = leastSeconds([&] {
    require(call(a.pixels.data(), a.step(), b.pixels.data(), b.step(), result.pixels.data(), result.step(), a.size()),
            "orviAbsDiff_8u");
  });
  return {std::move(result), time};
}

Timed<uint8_t> average(const Bytes& scene, int count) {
  Floats sum(scene.width, scene.height, scene.channels);
  const double time = accumulate(scene, count, [&](const Bytes& frame) {
    require(orviAdd_8u32f_C1IR(frame.pixels.data(), frame.step(), sum.pixels.data(), sum.step(), sum.elements()),
            "orviAdd_8u32f_C1IR");
  });
  return {toBytes(sum, 1.f / (float)count), time};
}

Timed<uint8_t> runningAverage(const Bytes& scene, int count, float alpha) {
  Floats mean = toFloats(noisyFrame(scene, 0));
  const double time = accumulate(scene, count, [&](const Bytes& frame) {
    require(orviAddWeighted_8u32f_C1IR(frame.pixels.data(), frame.step(), mean.pixels.data(), mean.step(),
                                       mean.elements(), alpha),
            "orviAddWeighted_8u32f_C1IR");
  });
  return {toBytes(mean), time};
}

double rootMeanSquare(const Bytes& a, const Bytes& b) {
  double sum = 0;
  for (size_t i = 0; i < a.pixels.size(); ++i) {
    const double d = (double)a.pixels[i] - b.pixels[i];
    sum += d * d;
  }
  return sqrt(sum / (double)a.pixels.size());
}

}  // namespace demo

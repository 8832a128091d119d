// One pixel of a Gaussian mixture.
#pragma once
#include "motion/mixture_state.h"

namespace ORV_VARIANT {

// What is the same for all pixels of a frame.
struct MixtureFrame {
  float varInit, varMin, varMax, varThreshold, bgRatio, genThreshold;
  float rate, keep, prune;  // a new mode's weight, what is kept of the others, what each loses besides
  float shadowTau;
  int32_t numGauss;
  uint8_t shadowValue, shadowEnable;
};

// The lists of a pixel.
struct MixturePixel {
  MixtureMode* modes;
  MixtureMean* means;

  __attribute__((always_inline)) MixturePixel after(ptrdiff_t count) const { return {modes + count, means + count}; }
};

static inline MixtureMean floats(const uint8_t* x) { return {{(float)x[0], (float)x[1], (float)x[2]}}; }

// Moves mode i before all that aren't heavier than `weight`, which it is about to get; returns its place.
static inline int32_t riseMode(MixturePixel p, int32_t i, float weight) {
  for (; i > 0 && !(p.modes[i - 1].weight > weight); --i) {
    const MixtureMode mode = p.modes[i];
    p.modes[i] = p.modes[i - 1], p.modes[i - 1] = mode;
    const MixtureMean mean = p.means[i];
    p.means[i] = p.means[i - 1], p.means[i - 1] = mean;
  }
  return i;
}

static inline float dotProduct(const float* a, const float* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Draws a mode that matched towards x; `weight` is its new weight. Exactly zero weights happen at a rate of 0.
static inline void drawMode(const MixtureFrame& f, MixtureMean& mean, float& variance, const float* d, float distance,
                            float weight) {
  const float k = weight == 0 ? 0 : f.rate / weight;
  for (int c = 0; c < 3; ++c) mean.of[c] -= k * d[c];
  const float v = variance + (distance - variance) * k, raised = v > f.varMin ? v : f.varMin;
  variance = raised < f.varMax ? raised : f.varMax;
}

// Adds x as a mode; returns the count of modes then.
static inline int32_t addMode(const MixtureFrame& f, MixturePixel p, int32_t count, const float* x) {
  if (count < f.numGauss) ++count;
  // as many modes as there are places: the last gives way. More are there only after numGauss was lowered
  const int32_t last = (count < f.numGauss ? count : f.numGauss) - 1;
  if (count != 1)
    for (int32_t i = 0; i < count - 1; ++i) p.modes[i].weight *= f.keep;
  p.modes[last] = {count == 1 ? 1.f : f.rate, f.varInit};
  p.means[last] = {{x[0], x[1], x[2]}};
  riseMode(p, last, f.rate);
  return count;
}

// Learns pixel x into its modes; returns whether it is background.
//
// A mode that is pruned keeps its place with weight 0, and shortens the walk by one: the modes at the end which are not
// reached then keep their weights, undivided. That is meant.
static inline bool learnPixel(const MixtureFrame& f, MixturePixel p, uint8_t& modeCount, const float* x) {
  const int32_t count = modeCount;
  int32_t kept = count;
  float sum = 0;
  bool matched = false, background = false;
  for (int32_t i = 0; i < kept; ++i) {
    float weight = p.modes[i].weight * f.keep - f.prune;
    int32_t place = i;
    if (!matched) {
      const float* mean = p.means[i].of;
      const float d[3] = {mean[0] - x[0], mean[1] - x[1], mean[2] - x[2]};
      const float distance = dotProduct(d, d), variance = p.modes[i].variance;
      if (sum < f.bgRatio && f.varThreshold * variance > distance) background = true;
      if (f.genThreshold * variance > distance) {
        matched = true;
        weight += f.rate;
        drawMode(f, p.means[i], p.modes[i].variance, d, distance, weight);
        place = riseMode(p, i, weight);
      }
    }
    if (f.prune > weight) weight = 0, --kept;
    p.modes[place].weight = weight;
    sum += weight;
  }
  if (sum != 0)
    for (int32_t i = 0; i < kept; ++i) p.modes[i].weight /= sum;
  if (!matched) modeCount = (uint8_t)addMode(f, p, count, x);
  return background;
}

// Whether x is a darker shade of one of the background's modes.
static inline bool inShadow(const MixtureFrame& f, MixturePixel p, int32_t count, const float* x) {
  float sum = 0;
  for (int32_t i = 0; i < count; ++i) {
    const float* mean = p.means[i].of;
    const float dot = dotProduct(x, mean), length = dotProduct(mean, mean);
    if (length == 0) return false;
    if (length >= dot && dot >= f.shadowTau * length) {
      const float r = dot / length;
      const float e[3] = {r * mean[0] - x[0], r * mean[1] - x[1], r * mean[2] - x[2]};
      if (p.modes[i].variance * f.varThreshold * r * r > dotProduct(e, e)) return true;
    }
    sum += p.modes[i].weight;
    if (sum > f.bgRatio) return false;
  }
  return false;
}

}  // namespace ORV_VARIANT

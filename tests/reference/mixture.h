// The Gaussian mixture of one pixel, step by step.
#pragma once
#include <math.h>
#include <algorithm>
#include <utility>
#include <vector>
#include "orvcv.h"

namespace reference {

struct Mode {
  float weight = 0, variance = 0, mean[3] = {0, 0, 0};
};

struct Mixture {
  std::vector<Mode> slots;  // maxNGauss of them
  uint8_t count = 0;

  void rise(int i, float weight) {
    for (; i > 0 && !(slots[i - 1].weight > weight); --i) std::swap(slots[i - 1], slots[i]);
  }
  // The result of a frame whose number is `frame`, from 1.
  uint8_t foreground(const OrvFGMMModel& m, int frame, double learningRate, const uint8_t* x) {
    double alpha = learningRate;
    if (!(learningRate >= 0) || frame <= 1) alpha = 1. / std::min(2 * frame, m.numFrames);
    const float a = (float)alpha, keep = 1 - a, prune = (float)(alpha * (double)m.complexityPrior);
    int kept = count;
    float sum = 0;
    bool matched = false, background = false;
    for (int i = 0; i < kept; ++i) {
      Mode mode = slots[i];
      float w = mode.weight * keep - prune;
      const float d[3] = {mode.mean[0] - x[0], mode.mean[1] - x[1], mode.mean[2] - x[2]};
      const float dist = d[0] * d[0] + d[1] * d[1] + d[2] * d[2], v = mode.variance;
      background |= !matched && sum < m.bgRatio && m.varThreshold * v > dist;
      int place = i;
      if (!matched && m.genThreshold * v > dist) {
        matched = true;
        w += a;
        const float k = w == 0 ? 0 : a / w;
        for (int c = 0; c < 3; ++c) slots[i].mean[c] -= k * d[c];
        slots[i].variance = std::min(std::max(v + (dist - v) * k, m.varMin), m.varMax);
        while (place > 0 && !(slots[place - 1].weight > w)) --place;
        rise(i, w);
      }
      if (prune > w) w = 0, --kept;
      slots[place].weight = w;
      sum += w;
    }
    for (int i = 0; i < kept && sum != 0; ++i) slots[i].weight /= sum;
    if (!matched) {
      const int n = count == m.numGauss ? count : count + 1;
      for (int i = 0; i < n - 1; ++i) slots[i].weight *= keep;
      slots[n - 1] = {n == 1 ? 1.f : a, m.varInit, {(float)x[0], (float)x[1], (float)x[2]}};
      rise(n - 1, a);
      count = (uint8_t)n;
    }
    return background ? 0 : m.shadowEnable && shadow(m, x) ? m.shadowValue : 255;
  }
  bool shadow(const OrvFGMMModel& m, const uint8_t* x) const {
    float sum = 0;
    for (int i = 0; i < count; ++i) {
      const float* u = slots[i].mean;
      const float dot = x[0] * u[0] + x[1] * u[1] + x[2] * u[2], len = u[0] * u[0] + u[1] * u[1] + u[2] * u[2];
      if (len == 0) return false;
      if (len >= dot && dot >= m.shadowTau * len) {
        const float r = dot / len, e[3] = {r * u[0] - x[0], r * u[1] - x[1], r * u[2] - x[2]};
        if (slots[i].variance * m.varThreshold * r * r > e[0] * e[0] + e[1] * e[1] + e[2] * e[2]) return true;
      }
      sum += slots[i].weight;
      if (sum > m.bgRatio) return false;
    }
    return false;
  }
  uint8_t background(const OrvFGMMModel& m, int channel) const {
    float weights = 0, sum = 0;
    for (int i = 0; i < count && !(weights > m.bgRatio); ++i) {
      weights += slots[i].weight;
      sum += slots[i].weight * slots[i].mean[channel];
    }
    const float v = sum * (1 / weights);
    return count == 0 || !(v > 0) ? 0 : (uint8_t)nearbyint(std::min(v, 255.f));
  }
};

}  // namespace reference

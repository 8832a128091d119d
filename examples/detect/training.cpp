#include "training.h"
#include <math.h>
#include <stdio.h>
#include <algorithm>
#include <numeric>
#include <stdexcept>
#include "chance.h"
#include "detector.h"

namespace detect {
namespace {

using demo::require;

// A window of the cascade's size: its table of sums, and what responses are divided by.
struct Sample {
  demo::Image<int32_t> sums;
  float norm;

  explicit Sample(const demo::Bytes& gray) : sums(gray.width + 1, gray.height + 1, 1) {
    demo::Image<double> squares(gray.width + 1, gray.height + 1, 1);
    require(orviSqrIntegral_8u32s64f_C1R(gray.pixels.data(), gray.step(), sums.pixels.data(), sums.step(),
                                         squares.pixels.data(), squares.step(), gray.size(), 0, 0),
            "orviSqrIntegral_8u32s64f_C1R");
    float deviation;
    require(orviRectStdDev_32s32f_C1R(sums.pixels.data(), sums.step(), squares.pixels.data(), squares.step(),
                                      &deviation, sizeof deviation, {1, 1}, {0, 0, gray.width, gray.height}),
            "orviRectStdDev_32s32f_C1R");
    norm = std::max(deviation, 1.f) * (float)(gray.width * gray.height);
  }
  float response(const Feature& f) const {
    float sum = 0;
    for (size_t i = 0; i < f.rects.size(); ++i) {
      const OrvRect& r = f.rects[i];
      sum += f.weights[i] * (float)(*sums.at(r.x + r.width, r.y + r.height) - *sums.at(r.x, r.y + r.height) -
                                    *sums.at(r.x + r.width, r.y) + *sums.at(r.x, r.y));
    }
    return sum / norm;
  }
  float votes(const Stage& stage) const {
    float sum = 0;
    for (const Feature& f : stage.features) sum += response(f) < f.threshold ? f.below : f.above;
    return sum;
  }
};

// A rectangle against a part of it, so that a flat window gives 0: halves, the middle of three, the middle of nine, two
// opposite quarters.
Feature anyFeature(Chance& c, OrvSize window) {
  const int kind = c.whole(0, 5);
  const int across = kind == 0 || kind == 5 ? 2 : kind == 2 || kind == 4 ? 3 : 1;
  const int down = kind == 1 || kind == 5 ? 2 : kind == 3 || kind == 4 ? 3 : 1;
  const int w = c.whole(across > 1 ? 1 : 2, window.width / across), h = c.whole(down > 1 ? 1 : 2, window.height / down);
  const int x = c.whole(0, window.width - across * w), y = c.whole(0, window.height - down * h);
  Feature f;
  f.rects = {{x, y, across * w, down * h}};
  f.weights = {-1};
  if (kind == 5) {
    f.rects.push_back({x, y, w, h}), f.weights.push_back(2);
    f.rects.push_back({x + w, y + h, w, h}), f.weights.push_back(2);
  } else {
    f.rects.push_back({x + (across > 1 ? w : 0), y + (down > 1 ? h : 0), w, h});
    f.weights.push_back((float)(across * down));
  }
  return f;
}

// Boosts one stage over samples, of which the first `objects` are objects.
class Booster {
 public:
  Booster(const std::vector<Feature>& pool, const std::vector<Sample>& samples, size_t objects)
      : pool_(pool),
        objects_(objects),
        count_(samples.size()),
        responses_(pool.size() * count_),
        orders_(pool.size() * count_),
        weights_(count_),
        votes_(count_, 0.f) {
    for (size_t f = 0; f < pool.size(); ++f) {
      float* response = &responses_[f * count_];
      uint32_t* order = &orders_[f * count_];
      for (size_t i = 0; i < count_; ++i) response[i] = samples[i].response(pool[f]);
      std::iota(order, order + count_, 0u);
      std::sort(order, order + count_, [=](uint32_t a, uint32_t b) { return response[a] < response[b]; });
    }
    for (size_t i = 0; i < count_; ++i) weights_[i] = 0.5 / (double)(i < objects ? objects : count_ - objects);
  }

  // One round: adds the best stump to the stage.
  void addStump(Stage& stage) {
    double all = 0, target = 0, best = -1;
    for (size_t i = 0; i < count_; ++i) all += weights_[i], target += signedWeight(i);
    Feature stump;
    size_t chosen = 0;
    for (size_t f = 0; f < pool_.size(); ++f) {
      const float* response = &responses_[f * count_];
      const uint32_t* order = &orders_[f * count_];
      double left = 0, leftTarget = 0;
      for (size_t k = 0; k + 1 < count_; ++k) {
        const size_t i = order[k];
        left += weights_[i], leftTarget += signedWeight(i);
        const float here = response[i], next = response[order[k + 1]];
        const double right = all - left, rightTarget = target - leftTarget;
        if (!(here < next) || left < 1e-9 || right < 1e-9) continue;
        const double score = leftTarget * leftTarget / left + rightTarget * rightTarget / right;
        if (score <= best) continue;
        best = score, chosen = f;
        stump.threshold = here + (next - here) / 2;
        stump.below = (float)(leftTarget / left), stump.above = (float)(rightTarget / right);
      }
    }
    stump.rects = pool_[chosen].rects, stump.weights = pool_[chosen].weights;
    double sum = 0;
    for (size_t i = 0; i < count_; ++i) {
      const float vote = responses_[chosen * count_ + i] < stump.threshold ? stump.below : stump.above;
      votes_[i] += vote;
      sum += weights_[i] *= exp(i < objects_ ? -vote : vote);
    }
    for (double& w : weights_) w /= sum;
    stage.features.push_back(stump);
  }

  // Sets the threshold so that this part of the objects passes; the part of the other samples that still does.
  float setThreshold(Stage& stage, float objectsThatPass) const {
    std::vector<float> votes(votes_.begin(), votes_.begin() + (ptrdiff_t)objects_);
    const auto least = votes.begin() + (ptrdiff_t)((1 - objectsThatPass) * (float)objects_);
    std::nth_element(votes.begin(), least, votes.end());
    stage.threshold = *least - 1e-4f;  // sums in another order may differ in the last bit
    const auto pass = std::count_if(votes_.begin() + (ptrdiff_t)objects_, votes_.end(),
                                    [&](float v) { return v >= stage.threshold; });
    return (float)pass / (float)(count_ - objects_);
  }

 private:
  double signedWeight(size_t i) const { return i < objects_ ? weights_[i] : -weights_[i]; }

  const std::vector<Feature>& pool_;
  size_t objects_, count_;
  std::vector<float> responses_;
  std::vector<uint32_t> orders_;
  std::vector<double> weights_;
  std::vector<float> votes_;
};

// Windows of pictures without objects that pass the cascade; a few from each picture, so that they differ.
std::vector<Sample> mistakes(const Cascade& cascade, const Examples& examples, const Effort& effort,
                             uint32_t& picture) {
  std::vector<Sample> samples;
  Chance c(picture + 1);
  for (int i = 0; i < effort.pictures && (int)samples.size() < effort.others; ++i) {
    const demo::Bytes gray = examples.background(picture++);
    std::vector<OrvRect> windows = findWindows(gray, cascade);
    const int most = std::min((int)windows.size(), std::max(effort.others / 12, 20));
    for (int k = 0; k < most; ++k) {
      std::swap(windows[(size_t)k], windows[(size_t)c.whole(k, (int)windows.size() - 1)]);
      samples.emplace_back(resampled(gray, windows[(size_t)k], cascade.window.width));
    }
  }
  return samples;
}

}  // namespace

demo::Bytes resampled(const demo::Bytes& gray, const OrvRect& part, int side) {
  // The mean of 3 x 3 places in each pixel; places between pixels take the nearest.
  demo::Bytes result(side, side, 1);
  const auto place = [&](int i, int from, int length, int limit) {
    return std::min(from + (2 * i + 1) * length / (6 * side), limit - 1);
  };
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      int sum = 4;
      for (int i = 0; i < 9; ++i)
        sum += *gray.at(place(3 * x + i % 3, part.x, part.width, gray.width),
                        place(3 * y + i / 3, part.y, part.height, gray.height));
      *result.at(x, y) = (uint8_t)(sum / 9);
    }
  return result;
}

Cascade train(const Examples& examples, const Effort& effort) {
  Cascade cascade;
  std::vector<Sample> objects;
  for (int i = 0; i < effort.objects; ++i) objects.emplace_back(examples.object((uint32_t)i, cascade.window.width));
  uint32_t picture = 0;
  for (int number = 1; number <= effort.stages; ++number) {
    std::vector<Sample> samples = objects;
    const std::vector<Sample> others = mistakes(cascade, examples, effort, picture);
    samples.insert(samples.end(), others.begin(), others.end());
    if ((int)others.size() < effort.others / 20) break;  // hardly any are left to learn from

    Chance c((uint32_t)number);
    std::vector<Feature> pool;
    for (int i = 0; i < effort.features; ++i) pool.push_back(anyFeature(c, cascade.window));
    Booster booster(pool, samples, objects.size());
    Stage stage;
    float mistaken = 1;
    while ((int)stage.features.size() < 5 * number && mistaken > 0.3f) {
      booster.addStump(stage);
      mistaken = booster.setThreshold(stage, 0.996f);
    }
    cascade.stages.push_back(stage);
    objects.erase(std::remove_if(objects.begin(), objects.end(),
                                 [&](const Sample& s) { return s.votes(stage) < stage.threshold; }),
                  objects.end());
    char text[128];
    snprintf(text, sizeof text, "stage %d: %d features, %d objects pass, %.0f %% of %d other windows", number,
             (int)stage.features.size(), (int)objects.size(), 100 * mistaken, (int)others.size());
    effort.report(text);
  }
  if (cascade.stages.empty()) throw std::runtime_error("the pictures without objects hold too few windows");
  return cascade;
}

}  // namespace detect

#include "models.h"
#include <algorithm>
#include "demo/timing.h"

namespace motion {

using demo::Bytes;
using demo::require;

namespace {

class Mixture : public Model {
 public:
  Mixture() { name = "Gaussian mixture", stem = "mixture", call = "orviFGMMForeground_8u_C3R"; }

  void see(const Bytes& frame, Bytes& mask, Bytes& background) override {
    if (buffer_.empty()) start(frame.size());
    auto* const state = (OrvFGMMState*)(void*)buffer_.data();
    seconds += demo::seconds([&] {
      require(orviFGMMForeground_8u_C3R(frame.pixels.data(), frame.step(), mask.pixels.data(), mask.step(),
                                        frame.size(), state, nullptr, -1),
              "orviFGMMForeground_8u_C3R");
    });
    require(orviFGMMBackground_8u_C3R(background.pixels.data(), background.step(), frame.size(), state),
            "orviFGMMBackground_8u_C3R");
  }

 private:
  void start(OrvSize size) {
    constexpr int32_t modes = 5;
    OrvFGMMModel model{};
    model.numFrames = 400, model.numGauss = modes;
    model.varInit = 60, model.varMin = 12, model.varMax = 300;
    model.varThreshold = 16, model.genThreshold = 9, model.bgRatio = 0.75f, model.complexityPrior = 0.05f;
    model.shadowEnable = 1, model.shadowValue = 127, model.shadowTau = 0.55f;
    int32_t bytes;
    require(orviFGMMGetBufferSize_8u_C3R(size, modes, &bytes), "orviFGMMGetBufferSize_8u_C3R");
    buffer_.resize((size_t)bytes);
    require(orviFGMMInit_8u_C3R(size, modes, &model, (OrvFGMMState*)(void*)buffer_.data()), "orviFGMMInit_8u_C3R");
  }
  std::vector<uint8_t> buffer_;
};

constexpr int unused = 0;  // what stands for the models' numbers, which are fixed

class Counted : public Model {
 public:
  Counted() { name = "counted mixture", stem = "counted", call = "orviForegroundGaussian_8u_C3R"; }
  ~Counted() override { orviForegroundGaussianFree_8u_C3R(state_); }

  void see(const Bytes& frame, Bytes& mask, Bytes& background) override {
    if (state_ == nullptr)
      require(orviForegroundGaussianInitAlloc_8u_C3R(frame.pixels.data(), frame.step(), frame.size(), &unused, &state_),
              "orviForegroundGaussianInitAlloc_8u_C3R");
    seconds += demo::seconds([&] {
      require(orviForegroundGaussian_8u_C3R(frame.pixels.data(), frame.step(), background.pixels.data(),
                                            background.step(), mask.pixels.data(), mask.step(), frame.size(), state_),
              "orviForegroundGaussian_8u_C3R");
    });
  }

 private:
  OrvForegroundGaussianState* state_ = nullptr;
};

class Histogram : public Model {
 public:
  Histogram() { name = "histogram model", stem = "histogram", call = "orviForegroundHistogram_8u_C3R"; }
  ~Histogram() override { orviForegroundHistogramFree_8u_C3R(state_); }

  void see(const Bytes& frame, Bytes& mask, Bytes& background) override {
    if (state_ == nullptr) {
      require(
          orviForegroundHistogramInitAlloc_8u_C3R(frame.pixels.data(), frame.step(), frame.size(), &unused, &state_),
          "orviForegroundHistogramInitAlloc_8u_C3R");
      background = frame;
      std::fill(mask.pixels.begin(), mask.pixels.end(), (uint8_t)0);
      return;
    }
    seconds += demo::seconds([&] {
      require(orviForegroundHistogram_8u_C3R(frame.pixels.data(), frame.step(), mask.pixels.data(), mask.step(),
                                             frame.size(), state_),
              "orviForegroundHistogram_8u_C3R");
    });
    const Bytes learnt = cleaned(mask);
    seconds += demo::seconds([&] {
      require(
          orviForegroundHistogramUpdate_8u_C3R(frame.pixels.data(), frame.step(), learnt.pixels.data(), learnt.step(),
                                               background.pixels.data(), background.step(), frame.size(), state_),
          "orviForegroundHistogramUpdate_8u_C3R");
    });
  }

 private:
  OrvForegroundHistogramState* state_ = nullptr;
};

using RankFilter = OrvStatus (*)(const uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, OrvSize, OrvPoint, uint8_t*);

Bytes ranked(RankFilter filter, const Bytes& mask, int side) {
  Bytes result(mask.width, mask.height, 1);
  int32_t bytes;
  require(orviFilterMinGetBufferSize_8u_C1R(mask.width, {side, side}, &bytes), "orviFilterMinGetBufferSize_8u_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  require(filter(mask.pixels.data(), mask.step(), result.pixels.data(), result.step(), mask.size(), {side, side},
                 {side / 2, side / 2}, buffer.data()),
          "a rank filter");
  return result;
}

}  // namespace

std::vector<std::unique_ptr<Model>> makeModels() {
  std::vector<std::unique_ptr<Model>> models;
  models.push_back(std::make_unique<Mixture>());
  models.push_back(std::make_unique<Counted>());
  models.push_back(std::make_unique<Histogram>());
  return models;
}

Bytes cleaned(const Bytes& mask) {
  Bytes sure = mask;
  for (uint8_t& v : sure.pixels) v = v == 255 ? 255 : 0;
  constexpr auto least = orviFilterMinBorderReplicate_8u_C1R, most = orviFilterMaxBorderReplicate_8u_C1R;
  return ranked(least, ranked(most, ranked(most, ranked(least, sure, 3), 3), 5), 5);
}

void Score::add(const Bytes& mask, const Bytes& truth) {
  for (size_t i = 0; i < mask.pixels.size(); ++i) {
    const bool said = mask.pixels[i] == 255, is = truth.pixels[i] != 0;
    hits += said && is, falseAlarms += said && !is, misses += !said && is;
  }
}

}  // namespace motion

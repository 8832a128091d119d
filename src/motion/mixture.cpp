// Gaussian mixture: the foreground of a frame.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/mixture.cpp"
#include "core/kernels.h"
#include "motion/mixture_strip.h"

KERNELS_BEGIN

// Learns a row, and tells its foreground.
void ForegroundRow(const MixtureFrame& f, const uint8_t* src, MixturePixel all, uint8_t* counts, uint8_t* dst,
                   ptrdiff_t width) {
  MixtureStrip s{};
  const bool shadows = f.shadowEnable != 0;
  uint8_t outcome[kStrip];
  for (ptrdiff_t first = 0; first < width; first += kStrip) {
    const ptrdiff_t n = width - first < kStrip ? width - first : kStrip;
    const MixturePixel p = {all.modes + first * f.numGauss, all.means + first * f.numGauss};
    StartStrip(f, s, src, counts, n);
    PutBack(f, s, LearnStrip(f, s, p, n), p, n);
    uint64_t special = Outcome(s, shadows, outcome);
    if (n < 64) special &= ((uint64_t)1 << n) - 1;
    for (; special != 0; special &= special - 1) {
      const ptrdiff_t j = __builtin_ctzll(special);
      const MixturePixel pixel = {p.modes + j * f.numGauss, p.means + j * f.numGauss};
      const float x[3] = {(float)src[3 * j], (float)src[3 * j + 1], (float)src[3 * j + 2]};
      const bool background = s.lone[j] != 0 ? learnPixel(f, pixel, counts[j], x) : s.background[j] != 0;
      outcome[j] = background ? 0 : shadows && inShadow(f, pixel, counts[j], x) ? f.shadowValue : 255;
    }
    memcpy(dst, outcome, (size_t)n);
    src += 3 * n, counts += n, dst += n;
  }
}

KERNELS_END

#if HWY_ONCE

namespace {

// The rate of this frame, and what follows from it. Rate and product are taken in 64 bits, the rest in floats.
MixtureFrame frameOf(const OrvFGMMState& s, double learningRate) {
  const int64_t frames = 2 * (int64_t)s.frameCount, history = s.numFrames;
  const double rate =
      learningRate >= 0 && s.frameCount > 1 ? learningRate : 1 / (double)(frames < history ? frames : history);
  MixtureFrame f{};
  f.varInit = s.varInit, f.varMin = s.varMin, f.varMax = s.varMax;
  f.varThreshold = s.varThreshold, f.bgRatio = s.bgRatio, f.genThreshold = s.genThreshold;
  f.rate = (float)rate, f.keep = 1 - f.rate, f.prune = (float)(rate * s.complexityPrior);
  f.shadowTau = s.shadowTau, f.numGauss = s.numGauss;
  f.shadowValue = s.shadowValue, f.shadowEnable = s.shadowEnable;
  return f;
}

}  // namespace

OrvStatus orviFGMMForeground_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    OrvFGMMState* state, const OrvFGMMModel* model, double learningRate) {
  ORV_REQUIRE(allSet(src, dst, state), orvStatusNullPtr);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  OrvFGMMState* const s = mixtureIn(state);
  if (model != nullptr) {
    ORV_REQUIRE(model->numGauss >= 1 && model->numGauss <= s->maxNGauss, orvStatusBadArg);
    takeModel(s, model);
  }
  s->frameCount = wrapAdd(s->frameCount, 1);
  const MixtureFrame f = frameOf(*s, learningRate);
  const Plane<const uint8_t> from{src, srcStep};
  const Plane<uint8_t> to{dst, dstStep};
  const ptrdiff_t width = roiSize.width;
  const auto foregroundRow = WIDEST(ForegroundRow);
  for (ptrdiff_t y = 0; y < roiSize.height; ++y) {
    const ptrdiff_t first = y * width;
    foregroundRow(f, raw(from.row(y)), {s->modes + first * f.numGauss, s->means + first * f.numGauss},
                  s->modeCount + first, raw(to.row(y)), width);
  }
  return orvStatusOk;
}

#endif

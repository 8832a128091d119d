// Gaussian mixture: the foreground of a frame.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/mixture.cpp"
#include "core/kernels.h"
#include "motion/mixture_strip.h"

KERNELS_BEGIN

// Learns n pixels, and tells their foreground.
HWY_INLINE void ForegroundStrip(const MixtureFrame& f, MixtureStrip& s, const uint8_t* src, MixturePixel p,
                                uint8_t* counts, uint8_t* dst, ptrdiff_t n) {
  StartStrip(f, s, src, counts, n);
  const Layers layers = LearnStrip(f, s, p, n);
  const uint32_t used = UINT32_MAX >> (kStrip - n);
  for (uint32_t lone = Bits(s.lone) & used; lone != 0; lone &= lone - 1) {
    const ptrdiff_t j = __builtin_ctz(lone);
    const MixturePixel pixel = p.after(j * f.numGauss);
    s.background[j] = learnPixel(f, pixel, counts[j], floats(src + 3 * j).of) ? 1 : 0;
    TakeBack(s, layers, pixel, j);
  }
  PutBack(s, layers, p, f.numGauss, n);
  ForegroundBytes(s, dst);
  if (f.shadowEnable == 0) return;
  for (uint32_t foreground = ~Bits(s.background) & used; foreground != 0; foreground &= foreground - 1) {
    const ptrdiff_t j = __builtin_ctz(foreground);
    if (inShadow(f, p.after(j * f.numGauss), counts[j], floats(src + 3 * j).of)) dst[j] = f.shadowValue;
  }
}

void ForegroundRows(const MixtureFrame& f, Plane<const uint8_t> src, Plane<uint8_t> dst, OrvSize roi, MixturePixel p,
                    uint8_t* counts) {
  MixtureStrip s{};
  for (ptrdiff_t y = 0; y < roi.height; ++y)
    for (ptrdiff_t x = 0; x < roi.width; x += kStrip) {
      const ptrdiff_t n = roi.width - x < kStrip ? roi.width - x : kStrip;
      uint8_t bytes[kStrip];
      ForegroundStrip(f, s, raw(src.row(y)) + 3 * x, p, counts, bytes, n);
      memcpy(raw(dst.row(y)) + x, bytes, (size_t)n);
      p = p.after(n * f.numGauss);
      counts += n;
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
  WIDEST(ForegroundRows)(f, {src, srcStep}, {dst, dstStep}, roiSize, {s->modes, s->means}, s->modeCount);
  return orvStatusOk;
}

#endif

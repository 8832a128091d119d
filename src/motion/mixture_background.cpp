// Gaussian mixture: the background as a picture.
#include "motion/mixture_pixel.h"
#include "core/image.h"

namespace {

// Rounded to nearest, halves to even, within 0..255; a NaN is 0. Adding 1.5 * 2^23 rounds and leaves the bits below.
uint8_t nearestByte(float v) {
  const float positive = v > 0 ? v : 0, limited = positive < 255 ? positive : 255;
  return (uint8_t) __builtin_bit_cast(uint32_t, limited + 12582912.f);
}

// The mean of the modes that make up the background.
void backgroundPixel(MixturePixel p, int32_t modeCount, float ratio, uint8_t* dst) {
  float weights = 0, red = 0, green = 0, blue = 0;
  for (int32_t i = 0; i < modeCount; ++i) {
    const float weight = p.modes[i].weight;
    const float* const mean = p.means[i].of;
    weights += weight;
    red += weight * mean[0], green += weight * mean[1], blue += weight * mean[2];
    if (weights > ratio) break;
  }
  const float scale = 1 / weights;
  dst[0] = nearestByte(red * scale), dst[1] = nearestByte(green * scale), dst[2] = nearestByte(blue * scale);
}

}  // namespace

OrvStatus orviFGMMBackground_8u_C3R(uint8_t* dst, int32_t dstStep, OrvSize roiSize, const OrvFGMMState* state) {
  ORV_REQUIRE(allSet(dst, state), orvStatusNullPtr);
  ORV_REQUIRE(dstStep >= 1, orvStatusStep);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  const OrvFGMMState* const s = mixtureIn(state);
  const Plane<uint8_t> to{dst, dstStep};
  const MixturePixel all = {s->modes, s->means};
  const uint8_t* count = s->modeCount;
  const ptrdiff_t gauss = s->numGauss;
  const float ratio = s->bgRatio;
  for (ptrdiff_t y = 0; y < roiSize.height; ++y) {
    uint8_t* const row = raw(to.row(y));
    for (ptrdiff_t x = 0; x < roiSize.width; ++x)
      backgroundPixel(all.after((y * roiSize.width + x) * gauss), *count++, ratio, row + 3 * x);
  }
  return orvStatusOk;
}

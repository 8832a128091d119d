// Gaussian mixture: the background as a picture.
#include "motion/mixture_state.h"
#include "core/image.h"

namespace {

// Rounded to nearest, halves to even, within 0..255; a NaN is 0. Adding 1.5 * 2^23 rounds and leaves the bits below.
uint8_t nearestByte(float v) {
  const float positive = v > 0 ? v : 0, limited = positive < 255 ? positive : 255;
  return (uint8_t) __builtin_bit_cast(uint32_t, limited + 12582912.f);
}

}  // namespace

OrvStatus orviFGMMBackground_8u_C3R(uint8_t* dst, int32_t dstStep, OrvSize roiSize, const OrvFGMMState* state) {
  ORV_REQUIRE(allSet(dst, state), orvStatusNullPtr);
  ORV_REQUIRE(dstStep >= 1, orvStatusStep);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  const OrvFGMMState s = *mixtureIn(state);
  const Plane<uint8_t> to{dst, dstStep};
  const uint8_t* count = s.modeCount;
  const MixtureMode* modes = s.modes;
  const MixtureMean* means = s.means;
  for (ptrdiff_t y = 0; y < roiSize.height; ++y) {
    uint8_t* pixel = raw(to.row(y));
    for (ptrdiff_t x = 0; x < roiSize.width; ++x, pixel += 3, modes += s.numGauss, means += s.numGauss) {
      float weights = 0, sum[3] = {0, 0, 0};
      const int32_t modeCount = *count++;
      for (int32_t i = 0; i < modeCount; ++i) {
        weights += modes[i].weight;
        for (int c = 0; c < 3; ++c) sum[c] += modes[i].weight * means[i].of[c];
        if (weights > s.bgRatio) break;
      }
      const float scale = 1 / weights;
      for (int c = 0; c < 3; ++c) pixel[c] = nearestByte(sum[c] * scale);
    }
  }
  return orvStatusOk;
}

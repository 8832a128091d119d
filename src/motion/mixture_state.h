// The buffer of a Gaussian mixture: this record at the next multiple of 32, then its arrays, each at one too.
//
//   record, 128 bytes | rowBuffer | means | modes | modeCount
//
// The modes of pixel (x, y) stand at (y * width + x) * numGauss, sorted by falling weight.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "motion/names.h"
#include "core/checks.h"

struct MixtureMode {
  float weight, variance;
};
struct MixtureMean {
  float of[3];
};

struct OrvFGMMState {
  int32_t frameCount;
  float* rowBuffer;  // room for a row of the frame; kernels convert on the way and leave it
  MixtureMean* means;
  MixtureMode* modes;
  uint8_t* modeCount;
  int32_t numFrames;
  float varInit, varMin, varMax, varThreshold, bgRatio, genThreshold, complexityPrior;
  int32_t numGauss;
  uint8_t shadowValue, shadowEnable;
  float shadowTau;
  int32_t maxNGauss;
};
static_assert(offsetof(OrvFGMMState, rowBuffer) == 8 && offsetof(OrvFGMMState, modeCount) == 32 &&
                  offsetof(OrvFGMMState, varInit) == 44 && offsetof(OrvFGMMState, numGauss) == 72 &&
                  offsetof(OrvFGMMState, shadowTau) == 80 && offsetof(OrvFGMMState, maxNGauss) == 84,
              "the layout of the buffer is fixed");

namespace ORV_VARIANT {

static constexpr int32_t mixtureRecordBytes = 128;

static inline int32_t roundUpTo32(int32_t bytes) { return wrapAdd(bytes, 31) & ~31; }

// Bytes of the arrays.
struct MixtureSizes {
  int32_t row, means, modes, counts;

  MixtureSizes(OrvSize roi, int32_t gauss) {
    const int32_t pixels = wrapMul(roi.width, roi.height);
    row = roundUpTo32(rowBytes<float>(roi.width, 3));
    means = roundUpTo32(wrapMul(pixels, (int32_t)sizeof(MixtureMean), gauss));
    modes = roundUpTo32(wrapMul(pixels, (int32_t)sizeof(MixtureMode), gauss));
    counts = roundUpTo32(pixels);
  }
};

// Bytes of the whole buffer: the row counts once a mode, which leaves room for the record and the roundings.
static inline int32_t mixtureBytes(OrvSize roi, int32_t gauss) {
  const MixtureSizes sizes(roi, gauss);
  const int32_t rows = roundUpTo32(wrapMul(roi.width, (int32_t)sizeof(MixtureMean), gauss));
  return wrapAdd(wrapAdd(wrapAdd(sizes.modes, sizes.means), wrapAdd(rows, sizes.counts)), 160 + 256);
}

static inline void takeModel(OrvFGMMState* s, const OrvFGMMModel* model) {
  s->numFrames = model->numFrames;
  s->numGauss = model->numGauss;
  s->varInit = model->varInit;
  s->varMin = model->varMin;
  s->varMax = model->varMax;
  s->varThreshold = model->varThreshold;
  s->bgRatio = model->bgRatio;
  s->genThreshold = model->genThreshold;
  s->complexityPrior = model->complexityPrior;
  s->shadowValue = model->shadowValue;
  s->shadowEnable = model->shadowEnable;
  s->shadowTau = model->shadowTau;
}

// The record in the caller's buffer.
static inline OrvFGMMState* mixtureIn(const OrvFGMMState* buffer) {
  return (OrvFGMMState*)(((uintptr_t)buffer + 31) & ~(uintptr_t)31);
}

}  // namespace ORV_VARIANT

// Residuals and gradients of super-resolution.
// One body serves both variants.
#include "core/primitives.h"
#include <stddef.h>
#include <stdint.h>
#include "core/checks.h"
#include "core/image.h"

struct OrvSRHNState {
  float* table;
};

namespace {

// A point-spread function in the table: rows of `pitch` floats, of which Size are coefficients.
template <int32_t Size>
struct Psf {
  static constexpr int32_t pitch = Size == 3 ? 4 : Size, floats = Size * pitch;
};

template <int32_t Size>
OrvStatus makeState(OrvSRHNState** state, const float* coefficients, int32_t tableSize) {
  ORV_REQUIRE(allSet(state, coefficients), orvStatusNullPtr);
  ORV_REQUIRE(tableSize >= 1, orvStatusSize);
  constexpr int32_t pitch = Psf<Size>::pitch, floats = Psf<Size>::floats;
  ORV_REQUIRE(tableSize <= INT32_MAX / (floats * (int32_t)sizeof(float)), orvStatusNoMem);
  auto* made = (OrvSRHNState*)(void*)orvsMalloc_8u(sizeof(OrvSRHNState));
  ORV_REQUIRE(made != nullptr, orvStatusNoMem);
  made->table = orvsMalloc_32f(tableSize * floats);
  if (made->table == nullptr) {
    orvsFree(made);
    return orvStatusNoMem;
  }
  const auto* from = loose(coefficients);
  for (ptrdiff_t row = 0; row < (ptrdiff_t)tableSize * Size; ++row)
    for (ptrdiff_t b = 0; b < pitch; ++b) made->table[row * pitch + b] = b < Size ? (float)from[row * Size + b] : 0.f;
  *state = made;
  return orvStatusOk;
}

OrvStatus freeState(OrvSRHNState* state) {
  ORV_REQUIRE(allSet(state), orvStatusNullPtr);
  if (state->table != nullptr) orvsFree(state->table);
  orvsFree(state);
  return orvStatusOk;
}

// Negative steps are fine: images may stand bottom-up.
template <int32_t Size>
bool validStep(int32_t step) {
  return (step < 0 || step >= Size * (int32_t)sizeof(float)) && stepsAligned<float>(step);
}

// The sample lists of a call. Samples may overlap, so each is finished before the next one.
template <int32_t Size>
struct Samples {
  const int32_t* positions;
  const uint16_t* psfIndex;
  int32_t count;
  const OrvSRHNState* state;

  // sample(i, offset of the first tap, coefficients)
  template <class Sample>
  void each(const Sample& sample) const {
    const auto* position = loose(positions);
    const auto* psf = loose(psfIndex);
    for (ptrdiff_t i = 0; i < count; ++i)
      sample(i, (ptrdiff_t)position[i], state->table + (ptrdiff_t)psf[i] * Psf<Size>::floats);
  }
};

template <int32_t Size, class T>
OrvStatus calcResidual(const float* hiRes, int32_t step, const T* values, float* residuals,
                       const Samples<Size>& samples) {
  ORV_REQUIRE(allSet(hiRes, values, samples.positions, samples.psfIndex, residuals, samples.state), orvStatusNullPtr);
  ORV_REQUIRE(samples.count >= 1, orvStatusSize);
  ORV_REQUIRE(validStep<Size>(step), orvStatusStep);
  const ptrdiff_t s = step / (int32_t)sizeof(float);
  const auto* h = loose(hiRes);
  const auto* value = loose(values);
  auto* residual = loose(residuals);
  samples.each([&](ptrdiff_t i, ptrdiff_t p, const float* c) {
    float sum = h[p] * c[0];
    for (ptrdiff_t a = 0; a < Size; ++a)
      for (ptrdiff_t b = 0; b < Size; ++b)
        if (a + b > 0) sum += h[p + a * s + b] * c[a * Psf<Size>::pitch + b];
    residual[i] = sum - (float)value[i];
  });
  return orvStatusOk;
}

template <int32_t Size>
OrvStatus updateGradient(float* gradient, int32_t step, const float* residuals, const uint8_t* classes,
                         const float* weights, const Samples<Size>& samples) {
  ORV_REQUIRE(allSet(gradient, samples.positions, samples.psfIndex, residuals, classes, weights, samples.state),
              orvStatusNullPtr);
  ORV_REQUIRE(samples.count >= 1, orvStatusSize);
  ORV_REQUIRE(validStep<Size>(step), orvStatusStep);
  const ptrdiff_t s = step / (int32_t)sizeof(float);
  auto* g = loose(gradient);
  const auto *residual = loose(residuals), *weight = loose(weights);
  samples.each([&](ptrdiff_t i, ptrdiff_t p, const float* c) {
    const float w = weight[classes[i]] * residual[i];
    for (ptrdiff_t a = 0; a < Size; ++a)
      for (ptrdiff_t b = 0; b < Size; ++b) {
        const ptrdiff_t tap = p + a * s + b;
        g[tap] = g[tap] + c[a * Psf<Size>::pitch + b] * w;
      }
  });
  return orvStatusOk;
}

}  // namespace

OrvStatus orviSRHNInitAlloc_PSF2x2(OrvSRHNState** state, const float* coefficients, int32_t tableSize) {
  return makeState<2>(state, coefficients, tableSize);
}

OrvStatus orviSRHNInitAlloc_PSF3x3(OrvSRHNState** state, const float* coefficients, int32_t tableSize) {
  return makeState<3>(state, coefficients, tableSize);
}

OrvStatus orviSRHNFree_PSF2x2(OrvSRHNState* state) { return freeState(state); }
OrvStatus orviSRHNFree_PSF3x3(OrvSRHNState* state) { return freeState(state); }

OrvStatus orviSRHNCalcResidual_PSF2x2_8u32f_C1R(const float* hiRes, int32_t hiResStep, const uint8_t* values,
                                                const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                int32_t numSamples, const OrvSRHNState* state) {
  return calcResidual<2>(hiRes, hiResStep, values, residuals, {positions, psfIndex, numSamples, state});
}

OrvStatus orviSRHNCalcResidual_PSF2x2_16u32f_C1R(const float* hiRes, int32_t hiResStep, const uint16_t* values,
                                                 const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                 int32_t numSamples, const OrvSRHNState* state) {
  return calcResidual<2>(hiRes, hiResStep, values, residuals, {positions, psfIndex, numSamples, state});
}

OrvStatus orviSRHNCalcResidual_PSF3x3_8u32f_C1R(const float* hiRes, int32_t hiResStep, const uint8_t* values,
                                                const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                int32_t numSamples, const OrvSRHNState* state) {
  return calcResidual<3>(hiRes, hiResStep, values, residuals, {positions, psfIndex, numSamples, state});
}

OrvStatus orviSRHNCalcResidual_PSF3x3_16u32f_C1R(const float* hiRes, int32_t hiResStep, const uint16_t* values,
                                                 const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                 int32_t numSamples, const OrvSRHNState* state) {
  return calcResidual<3>(hiRes, hiResStep, values, residuals, {positions, psfIndex, numSamples, state});
}

OrvStatus orviSRHNUpdateGradient_PSF2x2_32f_C1R(float* gradient, int32_t gradientStep, const int32_t* positions,
                                                const uint16_t* psfIndex, const float* residuals,
                                                const uint8_t* classes, int32_t numSamples, const float* weights,
                                                const OrvSRHNState* state) {
  return updateGradient<2>(gradient, gradientStep, residuals, classes, weights,
                           {positions, psfIndex, numSamples, state});
}

OrvStatus orviSRHNUpdateGradient_PSF3x3_32f_C1R(float* gradient, int32_t gradientStep, const int32_t* positions,
                                                const uint16_t* psfIndex, const float* residuals,
                                                const uint8_t* classes, int32_t numSamples, const float* weights,
                                                const OrvSRHNState* state) {
  return updateGradient<3>(gradient, gradientStep, residuals, classes, weights,
                           {positions, psfIndex, numSamples, state});
}

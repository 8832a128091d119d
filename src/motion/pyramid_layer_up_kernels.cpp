// The passes of a layer step up over rows.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/pyramid_layer_up_kernels.cpp"
#include "core/kernels.h"
#include "motion/pyramid_layer_up_kernels.h"

KERNELS_BEGIN

// The rounding is added in double precision: in single precision, what is just below half would be rounded up.
void AddEachByte(int32_t* sums, const float* pixels, const float* weights, const float* round, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { sums[x] += (int32_t)((double)(pixels[x] * weights[x]) + (double)round[x]); });
}
void AddEachFloat(float* sums, const float* pixels, const float* weights, const float*, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { sums[x] += pixels[x] * weights[x]; });
}
// 128 times the pixel.
void DivideBytes(const int32_t* sums, const float* norms, int32_t* row, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { row[x] = (int32_t)((float)sums[x] * norms[x] + 128.f) >> 8; });
}
void DivideFloats(const float* sums, const float* norms, float* row, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { row[x] = sums[x] * norms[x]; });
}

void AddBytes(int32_t* sums, const int32_t* row, float weight, bool isTap, ptrdiff_t n) {
  const auto tap = (int32_t)weight;
  if (isTap)
    Columns(
        0, n, PIXEL(x) { sums[x] += row[x] * tap; });
  else
    Columns(
        0, n, PIXEL(x) { sums[x] += (int32_t)((float)row[x] * weight); });
}
void AddFloats(float* sums, const float* row, float weight, bool, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) { sums[x] += row[x] * weight; });
}

// Sums hold the pixel times 2^22.
void FinishBytes(const int32_t* sums, float norm, uint8_t* dst, ptrdiff_t n) {
  Columns(
      0, n, PIXEL(x) {
        int32_t v = (int32_t)((float)sums[x] * norm + 2097152.f) >> 22;
        v = v > 0 ? v : 0;
        dst[x] = (uint8_t)(v < 255 ? v : 255);
      });
}
void FinishWords(const float* sums, float norm, uint16_t* dst, ptrdiff_t n) {
  auto* const out = (LooseElement<uint16_t>*)(void*)dst;
  Columns(
      0, n, PIXEL(x) {
        float v = sums[x] * norm;
        v = v > 0.f ? v : 0.f;
        out[x] = (uint16_t)(int32_t)(v < 65535.f ? v : 65535.f);
      });
}
void FinishFloats(const float* sums, float norm, float* dst, ptrdiff_t n) {
  auto* const out = (LooseElement<float>*)(void*)dst;
  Columns(
      0, n, PIXEL(x) { out[x] = sums[x] * norm; });
}

KERNELS_END

#if HWY_ONCE
namespace ORV_VARIANT {

SpreadKernels<uint8_t, int32_t> spreadKernels8u() {
  return {WIDEST(AddEachByte), WIDEST(DivideBytes), WIDEST(AddBytes), WIDEST(FinishBytes)};
}
SpreadKernels<uint16_t, float> spreadKernels16u() {
  return {WIDEST(AddEachFloat), WIDEST(DivideFloats), WIDEST(AddFloats), WIDEST(FinishWords)};
}
SpreadKernels<float, float> spreadKernels32f() {
  return {WIDEST(AddEachFloat), WIDEST(DivideFloats), WIDEST(AddFloats), WIDEST(FinishFloats)};
}

}  // namespace ORV_VARIANT
#endif

// Creation and release of the states of the layer steps.
// One body serves both variants.
#include <string.h>
#include <type_traits>
#include "motion/pyramid_layer.h"
#include "core/frame.h"
#include "core/orvcore_contract.h"

namespace {

constexpr float nothing = 1.1754944e-38f;

bool counts(float v) { return v > nothing || v < -nothing; }
bool differ(int32_t a, int32_t b) { return a != b; }
bool differ(float a, float b) { return counts(a - b); }

// The centre and twice the left half.
template <class S, class K>
S tapSum(const Loose<const K>* k, int32_t half) {
  S left = 0;
  for (ptrdiff_t i = 0; i < half; ++i) left += k[i];
  return k[half] + 2 * left;
}

// One tap of a kernel with the given sum. Down, taps of 8u add up to about 2^13, those of 16u to 2^12, with a division
// that truncates and a shift that floors; up, both to 2^13, by way of floats. A sum of 0 leaves them as they are.
int16_t normalised(int16_t k, int32_t sum, OrvDataType type, bool up) {
  if (sum == 0) return k;
  if (up) return (int16_t)((int32_t)((float)k / (float)sum * 16384.f + 0.5f) >> 1);
  return (int16_t)((k * 16384 / sum) >> (type == orvData8u ? 1 : 2));
}
float normalised(float k, float sum, OrvDataType, bool) { return counts(sum) ? k / sum : k; }

template <class K, class S>
bool makeKernel(const Loose<const K>* k, K* taps, int32_t size, OrvDataType type, bool up) {
  const int32_t half = size / 2;
  const S sum = tapSum<S, K>(k, half);
  bool symmetric = true;
  for (ptrdiff_t i = 0; i <= half; ++i) {
    taps[i] = taps[size - 1 - i] = normalised(k[i], sum, type, up);
    symmetric &= !differ(k[i], k[size - 1 - i]);
  }
  return symmetric;
}

// Carves a state; counts its bytes if the memory is null.
void carve(LayerMemory& memory, PyramidLayer& made, int64_t bandBytes) {
  memory.take<PyramidLayer>(1);
  made.kernel = memory.take<uint32_t>(made.kerSize);
  made.levelSizes = made.levelCount > 0 ? memory.take<OrvSize>((int64_t)made.levelCount + 1) : nullptr;
  made.work = memory.take<uint8_t>(bandBytes * made.threads);
}

// The body of creation.
template <class State, class K>
OrvStatus makeLayer(State** state, OrvSize roi, float rate, const K* kernel, int32_t kerSize, int32_t mode,
                    OrvDataType type, int32_t channels) {
  constexpr bool up = std::is_same<State, OrvPyramidUpState>::value;
  ORV_REQUIRE(allSet(state, kernel), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(mode == 2 && validRate(rate) && kerSize >= 3 && kerSize % 2 == 1, orvStatusBadArg);
  PyramidLayer made{nullptr, nullptr, nullptr, 0, kerSize, type, roi, mode, rate, 0};
  int64_t bandBytes = 0;
  if (!up) {
    // more rows or pixels than that can't be had
    constexpr int32_t longest = 1 << 27;
    ORV_REQUIRE(roi.width < longest && roi.height < longest && kerSize < longest, orvStatusNoMem);
    bandBytes = layerBandBytes(type, channels, kerSize, roi);
    ORV_REQUIRE(bandBytes <= INT32_MAX, orvStatusNoMem);
    made.threads = owncvGetMaxNumThreads();
    if (roi.width > kerSize && roi.height > kerSize)
      for (OrvSize size = roi; size.width > 1 || size.height > 1; size = sizeBelow(size, rate)) ++made.levelCount;
  }
  LayerMemory count{nullptr};
  carve(count, made, bandBytes);
  ORV_REQUIRE(count.bytes <= INT32_MAX - 64, orvStatusNoMem);
  auto* const block = (uint8_t*)orvMalloc((int32_t)count.bytes + 64);
  ORV_REQUIRE(block != nullptr, orvStatusNoMem);
  // what follows the record is aligned; the record is freed by its address, so it stands at the very beginning
  LayerMemory memory{block + (-(uintptr_t)block & 63)};
  carve(memory, made, bandBytes);
  for (int32_t i = 0; made.levelSizes != nullptr && i <= made.levelCount; ++i) {
    made.levelSizes[i] = roi;
    roi = sizeBelow(roi, rate);
  }
  using Sum = std::conditional_t<std::is_same<K, float>::value, float, int32_t>;
  const bool symmetric = makeKernel<K, Sum>(loose(kernel), (K*)made.kernel, kerSize, type, up);
  memcpy(block, &made, sizeof made);
  *state = (State*)(void*)block;
  return symmetric ? orvStatusOk : orvStatusSymKernelWarn;
}

OrvStatus freeLayer(PyramidLayer* state) {
  ORV_REQUIRE(allSet(state), orvStatusNullPtr);
  orvFree(state);
  return orvStatusOk;
}

}  // namespace

#define LAYER(Direction, type, K, channels)                                                                  \
  OrvStatus orviPyramidLayer##Direction##InitAlloc_##type##_C##channels##R(                                  \
      OrvPyramid##Direction##State** state, OrvSize srcRoi, float rate, const K* kernel, int32_t kerSize,    \
      int32_t mode) {                                                                                        \
    return makeLayer(state, srcRoi, rate, kernel, kerSize, mode, orvData##type, channels);                   \
  }                                                                                                          \
  OrvStatus orviPyramidLayer##Direction##Free_##type##_C##channels##R(OrvPyramid##Direction##State* state) { \
    return freeLayer(state);                                                                                 \
  }
#define LAYERS(Direction)           \
  LAYER(Direction, 8u, int16_t, 1)  \
  LAYER(Direction, 8u, int16_t, 3)  \
  LAYER(Direction, 16u, int16_t, 1) \
  LAYER(Direction, 16u, int16_t, 3) \
  LAYER(Direction, 32f, float, 1)   \
  LAYER(Direction, 32f, float, 3)

LAYERS(Down)
LAYERS(Up)

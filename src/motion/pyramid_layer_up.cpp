// A layer step up: each source pixel is spread over the result by the kernel, and each sum divided by its weights.
//
// Theory. Source pixel k lands at k * rate. On a pixel of the result its neighbours get the taps; between two of them
// they get what lies between two taps. Both passes add in the order of the source pixels, which runs a little beyond
// both ends over mirrored ones. The spread along a side is turned round once a call: for each place of the result the
// list of source pixels that reach it, in order:
//
//   source row --gathered along x, divided--> slot y % slots --added with the weights of y--> sums --divided--> result
//
// Along x the first parts of all places are gathered at once, then the second ones, and so on.
//
// The weights' sums are taken over the larger side for both, and over more source pixels than the passes spread, so the
// last row or column of a flat image may come out darker: that is meant.
//
// Limitations. Memory is allocated in each call, since nothing bounds the size of the result before.
// One body serves both variants.
#include <string.h>
#include "core/orvcore_contract.h"
#include "filter/border.h"
#include "motion/pyramid_layer.h"
#include "motion/pyramid_layer_up_kernels.h"

namespace {

constexpr float nothing = 1.1754944e-38f;

// A source pixel's part in a place of the result.
struct Part {
  int32_t from;  // 0..n-1, mirrored
  float weight;
  bool isTap;  // landed on a pixel
};

// How the pixels of a side are spread.
template <class K>
struct Spreader {
  const K* taps;
  int32_t size;
  float rate;

  ptrdiff_t half() const { return size / 2; }
  // Pixels beyond each end that still reach inside.
  ptrdiff_t beyond() const { return (ptrdiff_t)((double)half() / (double)rate + 0.5); }

  // visit(place, weight, isTap) for each place 0..places-1 that source pixel k reaches.
  template <class Visit>
  void spread(ptrdiff_t k, ptrdiff_t places, const Visit& visit) const {
    const float pos = (float)k * rate;
    const ptrdiff_t i = (ptrdiff_t)(100.f + pos) - 100;  // rounded down, but far before the first pixel
    const float f = pos - (float)i, rest = 1.f - f;
    const bool lands = f <= nothing && f >= -nothing;
    const ptrdiff_t reach = taps[0] == 0 ? half() - 1 : half();
    const ptrdiff_t first = lands ? i - reach : i - half() + 1, end = lands ? i + reach + 1 : i + half() + 1;
    for (ptrdiff_t j = first > 0 ? first : 0; j < end && j < places; ++j) {
      if (lands) visit(j, (float)taps[half() + j - i], true);
      else {
        const ptrdiff_t m = j - first;
        visit(j, (float)taps[m] * f + (float)taps[m + 1] * rest, false);
      }
    }
  }

  // For each place the parts list[starts[place]] to list[starts[place + 1] - 1].
  void list(ptrdiff_t n, ptrdiff_t places, int32_t* starts, Part* list) const {
    memset(starts, 0, (size_t)(places + 1) * sizeof *starts);
    const ptrdiff_t q = beyond();
    const auto each = [&](const auto& visit) {
      for (ptrdiff_t k = -q; k < n + q; ++k)
        spread(k, places, [&](ptrdiff_t j, float weight, bool isTap) {
          visit(j, Part{(int32_t)borderIndex(orvBorderMirr, k, n), weight, isTap});
        });
    };
    each([&](ptrdiff_t j, const Part&) { ++starts[j + 1]; });
    for (ptrdiff_t j = 0; j < places; ++j) starts[j + 1] += starts[j];
    each([&](ptrdiff_t j, const Part& part) { list[starts[j]++] = part; });
    // each start has moved to the next one
    memmove(starts + 1, starts, (size_t)places * sizeof *starts);
    starts[0] = 0;
  }

  // `unit` divided by the weights' sums at each place.
  void norms(ptrdiff_t places, float unit, float* norm) const {
    for (ptrdiff_t j = 0; j < places; ++j) norm[j] = 0;
    const ptrdiff_t q = beyond();
    for (ptrdiff_t k = -q; k < places + q; ++k)
      spread(k, places, [&](ptrdiff_t j, float weight, bool) { norm[j] += weight; });
    for (ptrdiff_t j = 0; j < places; ++j)
      if (norm[j] > nothing || norm[j] < -nothing) norm[j] = unit / norm[j];
  }
};

// The first parts of all places along a row, the second ones, and so on: what a row is gathered by. Places with less
// parts than others have the zero behind the row as their last ones.
struct Layers {
  int32_t count;   // the most parts of a place
  int32_t* from;   // for each place, in elements
  float* weights;  // for each element of the row
  float* round;    // bytes: 0.5 between two taps
  float* norms;    // for each element, once
};

template <class T, class S>
struct LayerUp {
  Plane<const T> src;
  Plane<T> dst;
  OrvSize srcRoi, dstRoi;
  ptrdiff_t channels;
  SpreadKernels<T, S> kernels;
  int32_t slots = 0;
  ptrdiff_t pitch = 0;
  int32_t *startsX = nullptr, *startsY = nullptr;
  Part *partsX = nullptr, *partsY = nullptr;
  float *norm = nullptr, *strip = nullptr, *pixels = nullptr;
  ptrdiff_t* tags = nullptr;
  S *ring = nullptr, *sums = nullptr, *rowSums = nullptr;
  Layers layers = {};

  int32_t larger() const { return dstRoi.width > dstRoi.height ? dstRoi.width : dstRoi.height; }

  // The lists of parts and their norms.
  void carveLists(LayerMemory& memory, int64_t kerSize, int64_t beyond) {
    startsX = memory.take<int32_t>((int64_t)dstRoi.width + 1);
    startsY = memory.take<int32_t>((int64_t)dstRoi.height + 1);
    partsX = memory.take<Part>((srcRoi.width + 2 * beyond) * kerSize);
    partsY = memory.take<Part>((srcRoi.height + 2 * beyond) * kerSize);
    norm = memory.take<float>(larger());
  }

  // All the rest, when the most parts of a place are known.
  void carveRows(LayerMemory& memory, int64_t kerSize) {
    // a place is reached from no more rows than the kernel has taps, but for rounding and the mirrored ones
    slots = (int32_t)(kerSize + 4 < srcRoi.height ? kerSize + 4 : srcRoi.height);
    pitch = (dstRoi.width * channels + 16) & ~(ptrdiff_t)15;  // with an element to spare
    layers.from = memory.take<int32_t>((int64_t)layers.count * dstRoi.width);
    layers.weights = memory.take<float>(layers.count * pitch);
    layers.round = memory.take<float>(layers.count * pitch);
    layers.norms = memory.take<float>(pitch);
    strip = memory.take<float>((srcRoi.width + 2) * channels);
    pixels = memory.take<float>(pitch);
    tags = memory.take<ptrdiff_t>(slots);
    ring = memory.take<S>(slots * pitch);
    sums = memory.take<S>(pitch);
    rowSums = memory.take<S>(pitch);
  }

  void makeLayers() {
    for (ptrdiff_t l = 0; l < layers.count; ++l)
      for (ptrdiff_t x = 0; x < dstRoi.width; ++x) {
        const bool has = l < startsX[x + 1] - startsX[x];
        const Part part = has ? partsX[startsX[x] + l] : Part{srcRoi.width, 0, true};
        layers.from[l * dstRoi.width + x] = (int32_t)(part.from * channels);
        for (ptrdiff_t i = x * channels; i < (x + 1) * channels; ++i) {
          layers.weights[l * pitch + i] = part.weight;
          layers.round[l * pitch + i] = part.isTap ? 0.f : 0.5f;
          layers.norms[i] = norm[x];
        }
      }
    for (ptrdiff_t i = 0; i < 2 * channels; ++i) strip[srcRoi.width * channels + i] = 0;
  }

  void gatherRow(ptrdiff_t y, S* out) const {
    const ptrdiff_t n = dstRoi.width * channels;
    const auto* s = src.row(y);
    for (ptrdiff_t i = 0; i < srcRoi.width * channels; ++i) strip[i] = (float)s[i];
    memset(rowSums, 0, (size_t)n * sizeof(S));
    for (ptrdiff_t l = 0; l < layers.count; ++l) {
      const int32_t* const from = layers.from + l * dstRoi.width;
      if (channels == 1)
        for (ptrdiff_t x = 0; x < dstRoi.width; ++x) pixels[x] = strip[from[x]];
      else
        for (ptrdiff_t x = 0; x < dstRoi.width; ++x) memcpy(pixels + 3 * x, strip + from[x], 4 * sizeof(float));
      kernels.addEach(rowSums, pixels, layers.weights + l * pitch, layers.round + l * pitch, n);
    }
    kernels.divide(rowSums, layers.norms, out, n);
  }

  void run() const {
    const ptrdiff_t n = dstRoi.width * channels;
    for (ptrdiff_t i = 0; i < slots; ++i) tags[i] = -1;
    for (ptrdiff_t y = 0; y < dstRoi.height; ++y) {
      memset(sums, 0, (size_t)n * sizeof(S));
      for (const Part* part = partsY + startsY[y]; part < partsY + startsY[y + 1]; ++part) {
        const ptrdiff_t slot = part->from % slots;
        S* const row = ring + slot * pitch;
        if (tags[slot] != part->from) gatherRow(part->from, row);
        tags[slot] = part->from;
        kernels.add(sums, row, part->weight, part->isTap, n);
      }
      kernels.finish(sums, norm[y], raw(dst.row(y)), n);
    }
  }
};

// A block of the memory that carve(memory) takes; null if there is none.
template <class Carve>
uint8_t* allocate(const Carve& carve) {
  LayerMemory count{nullptr};
  carve(count);
  if (count.bytes > INT32_MAX - 64) return nullptr;
  auto* const block = (uint8_t*)orvMalloc((int32_t)count.bytes + 64);
  if (block == nullptr) return nullptr;
  LayerMemory memory{block + (-(uintptr_t)block & 63)};
  carve(memory);
  return block;
}

bool within(int32_t v, int32_t least, int32_t most) { return least <= v && v <= most; }

// The body. `unit` is what the weights' sums divide.
template <class K, class T, class S>
OrvStatus layerUp(Plane<const T> src, OrvSize srcRoi, Plane<T> dst, OrvSize dstRoi, const PyramidLayer* state,
                  int32_t channels, float unit, SpreadKernels<T, S> (*kernels)()) {
  const OrvStatus status =
      checkLayerImages(src.data, src.step, srcRoi, (const T*)dst.data, dst.step, dstRoi, state, channels);
  ORV_REQUIRE(status == orvStatusOk, status);
  const SizeRange range = sizesAbove(srcRoi, state->rate);
  ORV_REQUIRE(within(dstRoi.height, range.least.height, range.most.height), orvStatusSize);
  ORV_REQUIRE(within(dstRoi.width, range.least.width, range.most.width), orvStatusSize);

  const Spreader<K> spreader{(const K*)state->kernel, state->kerSize, state->rate};
  LayerUp<T, S> step{src, dst, srcRoi, dstRoi, channels, kernels()};
  uint8_t* const lists =
      allocate([&](LayerMemory& memory) { step.carveLists(memory, state->kerSize, spreader.beyond()); });
  ORV_REQUIRE(lists != nullptr, orvStatusNoMem);
  spreader.list(srcRoi.width, dstRoi.width, step.startsX, step.partsX);
  spreader.list(srcRoi.height, dstRoi.height, step.startsY, step.partsY);
  spreader.norms(step.larger(), unit, step.norm);
  for (ptrdiff_t x = 0; x < dstRoi.width; ++x) {
    const int32_t parts = step.startsX[x + 1] - step.startsX[x];
    if (step.layers.count < parts) step.layers.count = parts;
  }
  uint8_t* const rows = allocate([&](LayerMemory& memory) { step.carveRows(memory, state->kerSize); });
  if (rows != nullptr) {
    step.makeLayers();
    step.run();
    orvFree(rows);
  }
  orvFree(lists);
  return rows != nullptr ? orvStatusOk : orvStatusNoMem;
}

}  // namespace

#define LAYER_UP(T, type, K, channels, unit)                                                                        \
  OrvStatus orviPyramidLayerUp_##type##_C##channels##R(const T* src, int32_t srcStep, OrvSize srcRoi, T* dst,       \
                                                       int32_t dstStep, OrvSize dstRoi, OrvPyramidUpState* state) { \
    return layerUp<K>(Plane<const T>{src, srcStep}, srcRoi, Plane<T>{dst, dstStep}, dstRoi, state, channels, unit,  \
                      spreadKernels##type);                                                                         \
  }

LAYER_UP(uint8_t, 8u, int16_t, 1, 32768.f)
LAYER_UP(uint8_t, 8u, int16_t, 3, 32768.f)
LAYER_UP(uint16_t, 16u, int16_t, 1, 1.f)
LAYER_UP(uint16_t, 16u, int16_t, 3, 1.f)
LAYER_UP(float, 32f, float, 1, 1.f)
LAYER_UP(float, 32f, float, 3, 1.f)

// A layer step down: a symmetric kernel on the whole source, then one pixel of the result from the two or four nearest
// filtered ones.
//
// Theory. Filtered rows are made on demand, and only those that a result row needs:
//
//   source row, mirrored --row--> slot y % slots --column over kerSize slots--> filtered row --resampled along x-->
//   slot y & 1 --blend of two--> a row of the result
//
// At a rate of 2 nothing is interpolated, so filtered rows hold every second pixel from the start. An image that isn't
// larger than its kernel is filtered by rows that shift each product by itself, not their sum: its rounding is another.
//
// A team splits the rows of the result; each thread has memory of its own, and a band filters the rows it shares with
// its neighbour once more, so that the number of threads never shows.
//
// Limitations. Regions up to state->maxRoi; nothing checks that. The level table is searched by height alone. For a
// source of another width than the level of that height, it may tell a width that has no pixels to come from: the last
// column is repeated there.
// One body serves both variants.
#include <string.h>
#include "core/bands.h"
#include "filter/border.h"
#include "motion/pyramid_layer.h"
#include "motion/pyramid_layer_kernels.h"

namespace {

// The private memory of a thread.
template <class T, class R>
struct Band {
  ptrdiff_t slots, pitch;
  const R** window;
  ptrdiff_t* tags;  // the row in each slot
  R *ring, *full, *lines[2], *pairs[2];
  T* strip;       // a source row, mirrored on both sides
  int32_t* from;  // see placeColumns
  float* way;

  Band(LayerMemory& memory, int32_t channels, int64_t kerSize, OrvSize maxRoi) {
    slots = kerSize < maxRoi.height ? kerSize : maxRoi.height;
    pitch = ((ptrdiff_t)maxRoi.width * channels + 32) & ~(ptrdiff_t)31;  // with an element to spare
    window = memory.take<const R*>(kerSize);
    tags = memory.take<ptrdiff_t>(slots);
    ring = memory.take<R>(slots * pitch);
    full = memory.take<R>(pitch);
    for (R*& line : lines) line = memory.take<R>(pitch);
    for (R*& pair : pairs) pair = memory.take<R>(pitch);
    strip = memory.take<T>((maxRoi.width + kerSize) * channels);
    from = memory.take<int32_t>(maxRoi.width);
    way = memory.take<float>(pitch);
  }
};

template <class T, class R>
struct LayerDown {
  PyramidLayer state;
  Plane<const T> src;
  Plane<T> dst;
  OrvSize srcRoi, dstRoi;
  int32_t channels;
  LayerKernels<T, R> kernels;
  LayerTaps taps;
  bool small, decimates;

  LayerDown(const PyramidLayer& s, Plane<const T> from, OrvSize fromRoi, Plane<T> to, OrvSize toRoi, int32_t c,
            const LayerKernels<T, R>& k)
      : state(s),
        src(from),
        dst(to),
        srcRoi(fromRoi),
        dstRoi(toRoi),
        channels(c),
        kernels(k),
        taps{s.kernel, s.kerSize, c},
        small(fromRoi.width <= s.kerSize || fromRoi.height <= s.kerSize),
        decimates(halves(s.rate)) {}

  // Pixels of a filtered row.
  ptrdiff_t filteredWidth() const { return decimates ? (srcRoi.width + 1) / 2 : srcRoi.width; }

  // The row sums of an image that isn't larger than its kernel.
  void smallRow(const T* strip, R* out, ptrdiff_t n) const {
    constexpr int shift = sizeof(T) == 1 ? 8 : 10;
    const auto* k = (const int16_t*)taps.taps;
    for (ptrdiff_t x = 0; x < n; ++x) {
      int32_t sum = 0;
      for (ptrdiff_t i = 0; i < taps.size; ++i) sum += ((int32_t)strip[x + i * channels] * k[i]) >> shift;
      if (sizeof(T) == 1) sum = sum < INT16_MIN ? INT16_MIN : sum > INT16_MAX ? INT16_MAX : sum;
      out[x] = (R)sum;
    }
  }

  void filterRow(const Band<T, R>& band, ptrdiff_t y, R* out) const {
    const ptrdiff_t half = taps.size / 2, width = srcRoi.width, n = width * channels;
    const auto* s = src.row(y);
    memcpy(band.strip + half * channels, s, (size_t)n * sizeof(T));
    const auto mirror = [&](ptrdiff_t x) {
      const ptrdiff_t from = borderIndex(orvBorderMirr, x, width);
      for (ptrdiff_t c = 0; c < channels; ++c) band.strip[(half + x) * channels + c] = s[from * channels + c];
    };
    for (ptrdiff_t x = 0; x < half; ++x) mirror(x - half), mirror(width + x);

    R* const sums = decimates ? band.full : out;
    if (small && sizeof(T) < 4) smallRow(band.strip, sums, n);
    else kernels.row(band.strip, sums, n, taps);
    if (!decimates) return;
    const ptrdiff_t pixels = filteredWidth();
    if (channels == 1)
      for (ptrdiff_t x = 0; x < pixels; ++x) out[x] = sums[2 * x];
    else
      for (ptrdiff_t x = 0; x < pixels; ++x) memcpy(out + 3 * x, sums + 6 * x, 3 * sizeof(R));
  }

  // The filtered rows under the kernel at row y, which are in the ring after that.
  void fillWindow(Band<T, R>& band, ptrdiff_t y) const {
    for (ptrdiff_t i = 0; i < taps.size; ++i) {
      const ptrdiff_t from = borderIndex(orvBorderMirr, y + i - taps.size / 2, srcRoi.height);
      const ptrdiff_t slot = from % band.slots;
      R* const row = band.ring + slot * band.pitch;
      if (band.tags[slot] != from) filterRow(band, from, row);
      band.tags[slot] = from;
      band.window[i] = row;
    }
  }

  // The pixel before each column of the result, in elements, and the way from there. Returns how many columns have a
  // pixel on both sides; the others take the last one.
  ptrdiff_t placeColumns(const Band<T, R>& band) const {
    ptrdiff_t i = 0;
    for (; i < dstRoi.width; ++i) {
      const float pos = (float)i * state.rate;
      const auto k = (int32_t)pos;
      if (k >= srcRoi.width - 1) break;
      band.from[i] = k * channels;
      for (ptrdiff_t c = 0; c < channels; ++c) band.way[i * channels + c] = pos - (float)k;
    }
    return i;
  }

  // A row of filtered pixels at the places of the result's columns.
  void resample(const Band<T, R>& band, ptrdiff_t columns, const R* in, R* out) const {
    R *const a = band.pairs[0], *const b = band.pairs[1];
    const int32_t* const from = band.from;
    if (channels == 1)
      for (ptrdiff_t i = 0; i < columns; ++i) a[i] = in[from[i]], b[i] = in[from[i] + 1];
    else
      for (ptrdiff_t i = 0; i < columns; ++i) {
        // an element too many, which the next pixel overwrites
        memcpy(a + 3 * i, in + from[i], 4 * sizeof(R));
        memcpy(b + 3 * i, in + from[i] + 3, 4 * sizeof(R));
      }
    kernels.between(a, b, band.way, out, columns * channels);
    const R* const last = in + (ptrdiff_t)(srcRoi.width - 1) * channels;
    for (ptrdiff_t i = columns; i < dstRoi.width; ++i) memcpy(out + i * channels, last, (size_t)channels * sizeof(R));
  }

  // Every second row and column.
  void decimate(Band<T, R>& band, ptrdiff_t y) const {
    const ptrdiff_t last = (srcRoi.height - 1) / 2, row = 2 * (y < last ? y : last), pixels = filteredWidth();
    const ptrdiff_t taken = pixels < dstRoi.width ? pixels : dstRoi.width;
    auto* const out = dst.row(y);
    fillWindow(band, row);
    if (kernels.finishedColumn != nullptr && halvesClosely(state.rate) && !small && channels == 1 && taps.size == 5) {
      kernels.finishedColumn(band.window, raw(out), taken, taps);
    } else {
      kernels.column(band.window, band.full, taken * channels, taps);
      kernels.blend(band.full, nullptr, 0, raw(out), taken * channels);
    }
    for (ptrdiff_t x = taken * channels; x < (ptrdiff_t)dstRoi.width * channels; ++x) out[x] = out[x - channels].value;
  }

  // Between two rows.
  void interpolate(Band<T, R>& band, ptrdiff_t columns, ptrdiff_t (&tags)[2], ptrdiff_t y) const {
    const auto resampled = [&](ptrdiff_t row) {
      R* const line = band.lines[row & 1];
      if (tags[row & 1] != row) {
        fillWindow(band, row);
        kernels.column(band.window, band.full, (ptrdiff_t)srcRoi.width * channels, taps);
        resample(band, columns, band.full, line);
      }
      tags[row & 1] = row;
      return line;
    };
    const ptrdiff_t last = srcRoi.height - 1;
    const float pos = (float)y * state.rate;
    const ptrdiff_t k = (ptrdiff_t)pos;
    const R* const a = resampled(k < last ? k : last);
    const R* const b = k < last ? resampled(k + 1) : nullptr;
    kernels.blend(a, b, pos - (float)k, raw(dst.row(y)), (ptrdiff_t)dstRoi.width * channels);
  }

  void rows(int32_t first, int32_t count, uint8_t* memory) const {
    LayerMemory pieces{memory};
    Band<T, R> band(pieces, channels, taps.size, state.maxRoi);
    for (ptrdiff_t i = 0; i < band.slots; ++i) band.tags[i] = -1;
    ptrdiff_t lines[2] = {-1, -1};
    const ptrdiff_t columns = decimates ? 0 : placeColumns(band);
    for (ptrdiff_t y = first; y < (ptrdiff_t)first + count; ++y) {
      if (decimates) decimate(band, y);
      else interpolate(band, columns, lines, y);
    }
  }

  void run() const {
    const int32_t threads = owncvGetMaxNumThreads(), team = threads < state.threads ? threads : state.threads;
    const bool threaded = !small && team >= 2 && (int64_t)srcRoi.width * srcRoi.height >= (int64_t)16384 * team &&
                          srcRoi.height >= (int64_t)taps.size * team;
    if (!threaded) return rows(0, dstRoi.height, state.work);
    const int64_t bytes = layerBandBytes(state.dataType, channels, state.kerSize, state.maxRoi);
    runTeam(team, dstRoi.height,
            [&](int32_t first, int32_t count) { rows(first, count, state.work + bytes * owncvGetIdThreads()); });
  }
};

// The size that the level below a source must have.
OrvSize expectedSize(const PyramidLayer& state, OrvSize srcRoi) {
  for (ptrdiff_t i = 0; state.levelSizes != nullptr && i < state.levelCount; ++i)
    if (state.levelSizes[i].height == srcRoi.height) return state.levelSizes[i + 1];
  return sizeBelow(srcRoi, state.rate);
}

template <class T, class R>
OrvStatus layerDown(Plane<const T> src, OrvSize srcRoi, Plane<T> dst, OrvSize dstRoi, const PyramidLayer* state,
                    int32_t channels, LayerKernels<T, R> (*kernels)()) {
  const OrvStatus status =
      checkLayerImages(src.data, src.step, srcRoi, (const T*)dst.data, dst.step, dstRoi, state, channels);
  ORV_REQUIRE(status == orvStatusOk, status);
  const OrvSize expected = expectedSize(*state, srcRoi);
  ORV_REQUIRE(dstRoi.width == expected.width && dstRoi.height == expected.height, orvStatusSize);
  LayerDown<T, R>(*state, src, srcRoi, dst, dstRoi, channels, kernels()).run();
  return orvStatusOk;
}

template <class T, class R>
int64_t bandBytes(int32_t channels, int32_t kerSize, OrvSize maxRoi) {
  LayerMemory count{nullptr};
  const Band<T, R> band(count, channels, kerSize, maxRoi);
  return count.bytes;
}

}  // namespace

int64_t ORV_VARIANT::layerBandBytes(OrvDataType type, int32_t channels, int32_t kerSize, OrvSize maxRoi) {
  if (type == orvData8u) return bandBytes<uint8_t, int16_t>(channels, kerSize, maxRoi);
  if (type == orvData16u) return bandBytes<uint16_t, int32_t>(channels, kerSize, maxRoi);
  return bandBytes<float, float>(channels, kerSize, maxRoi);
}

#define LAYER_DOWN(T, type, channels)                                                                           \
  OrvStatus orviPyramidLayerDown_##type##_C##channels##R(const T* src, int32_t srcStep, OrvSize srcRoi, T* dst, \
                                                         int32_t dstStep, OrvSize dstRoi,                       \
                                                         OrvPyramidDownState* state) {                          \
    return layerDown(Plane<const T>{src, srcStep}, srcRoi, Plane<T>{dst, dstStep}, dstRoi, state, channels,     \
                     layerKernels##type);                                                                       \
  }

LAYER_DOWN(uint8_t, 8u, 1)
LAYER_DOWN(uint8_t, 8u, 3)
LAYER_DOWN(uint16_t, 16u, 1)
LAYER_DOWN(uint16_t, 16u, 3)
LAYER_DOWN(float, 32f, 1)
LAYER_DOWN(float, 32f, 3)

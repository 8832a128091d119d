// Region growing by local gradient.
//
// Theory of operation (R. Adams and L. Bischof, "Seeded Region Growing", 1994). An unlabelled pixel waits in the queue
// of its difference to a labelled neighbour, or to the one it was reached from. The pixel that differs least is taken
// first; it gets the label of the neighbour nearest in value, and its own unlabelled neighbours are queued. So a pixel
// reached over a small step is taken before all that wait at a larger one.
//
// One body serves both variants.
#include "core/checks.h"
#include "segment/flood.h"
#include "segment/level_queues.h"
#include "segment/neighbours.h"
#include "segment/watershed.h"
#include <string.h>

namespace {

enum : uint8_t { unlabelled = 0, line = 254, waiting = 255 };

template <int C>
struct Growth {
  Plane<const uint8_t> src;
  OrvSize size;
  uint8_t* labels;  // (width + 2) x (height + 2), with a ring that always waits
  ptrdiff_t mapStride;
  ptrdiff_t around[8], srcAround[8];  // left, right, up, down, then the corners from the top left on
  LevelQueues queues;

  Growth(Plane<const uint8_t> image, OrvSize roi, uint8_t* buffer)
      : src(image),
        size(roi),
        labels(buffer + 8 * (ptrdiff_t)roi.width * roi.height),
        mapStride(roi.width + 2),
        queues(buffer, (int64_t)roi.width * roi.height) {
    constexpr int8_t columns[8] = {-1, 1, 0, 0, -1, 1, -1, 1}, rows[8] = {0, 0, -1, 1, -1, -1, 1, 1};
    for (int k = 0; k < 8; ++k) {
      around[k] = rows[k] * mapStride + columns[k];
      srcAround[k] = rows[k] * (ptrdiff_t)src.step + C * columns[k];
    }
  }

  // The largest difference of a channel.
  static int32_t difference(const Loose<const uint8_t>* a, const Loose<const uint8_t>* b) {
    int32_t most = 0;
    for (int k = 0; k < C; ++k) {
      const int32_t d = a[k] - b[k], size = d < 0 ? -d : d;
      most = size > most ? size : most;
    }
    return most;
  }
  static bool isLabel(uint8_t label) { return (uint8_t)(label - 1) < line; }

  // Queues the unlabelled pixels that touch a label; returns the smallest difference, 256 if there are none.
  template <int Count>
  int32_t queueSeeds() {
    int32_t lowest = 256;
    for (ptrdiff_t y = 0; y < size.height; ++y)
      for (ptrdiff_t x = 0; x < size.width; ++x) {
        uint8_t* const p = labels + (y + 1) * mapStride + x + 1;
        if (*p != unlabelled) continue;
        const Loose<const uint8_t>* const pixel = src.row(y) + C * x;
        int32_t least = 256;
        for (int k = 0; k < Count; ++k) {
          if (!isLabel(p[around[k]])) continue;
          const int32_t d = difference(pixel, pixel + srcAround[k]);
          least = d < least ? d : least;
        }
        if (least == 256) continue;
        queues.push(least, (uint32_t)(p - labels));
        *p = waiting;
        lowest = least < lowest ? least : lowest;
      }
    return lowest;
  }

  // lineCount: how many neighbours are asked for other labels.
  template <int Count>
  void run(int lineCount) {
    constexpr uint32_t used = (1u << Count) - 1;
    const RowOf rowOf((uint32_t)mapStride);
    const auto pixelAt = [&](uint32_t place) __attribute__((always_inline)) {
      const ptrdiff_t y = rowOf(place);
      return src.row(y - 1) + C * ((ptrdiff_t)place - y * mapStride - 1);
    };
    for (int32_t level = queueSeeds<Count>(); level < 256;) {
      if (queues.empty(level)) {
        ++level;
        continue;
      }
      const uint32_t place = queues.pop(level), soon = queues.ahead(level);
      prefetchRows(labels + soon, mapStride), prefetchRows(pixelAt(soon), src.step);
      uint8_t* const p = labels + place;
      const Loose<const uint8_t>* const pixel = pixelAt(place);
      const Neighbours<uint8_t> neighbours(loose(p), mapStride);
      uint32_t open = neighbours.equalTo(unlabelled) & used;
      int32_t best = 256;
      uint8_t chosen = unlabelled;
      for (uint32_t labelled = ~(open | neighbours.equalTo(waiting)) & used; labelled != 0; labelled &= labelled - 1) {
        const int k = __builtin_ctz(labelled);
        const uint8_t label = p[around[k]];
        const int32_t d = difference(pixel, pixel + srcAround[k]);
        if (d < best || (d == best && label < line)) best = d, chosen = label;
      }
      for (; open != 0; open &= open - 1) {
        const int k = __builtin_ctz(open);
        const int32_t d = difference(pixel, pixel + srcAround[k]);
        queues.push(d, place + (uint32_t)around[k]);
        p[around[k]] = waiting;
        level = d < level ? d : level;
      }
      const uint8_t own = chosen;
      for (int k = 0; k < lineCount; ++k) {
        const uint8_t label = p[around[k]];
        if ((uint8_t)(label - 1) < line - 1 && label != own) chosen = line;
      }
      *p = chosen;
    }
  }
};

template <int C>
OrvStatus grow(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep, OrvSize size, int32_t norm,
               int32_t flags, uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, markers, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(size), orvStatusSize);
  ORV_REQUIRE(markerStep >= size.width && srcStep >= rowBytes<uint8_t>(size.width, C), orvStatusStep);
  ORV_REQUIRE(norm == normInf || norm == normL1, orvStatusBadArg);
  Growth<C> growth({src, srcStep}, size, buffer);
  memset(growth.labels, waiting, (size_t)growth.mapStride * ((size_t)size.height + 2));
  const Plane<uint8_t> image = {markers, markerStep};
  const auto inner = [&](ptrdiff_t y) { return growth.labels + (y + 1) * growth.mapStride + 1; };
  for (ptrdiff_t y = 0; y < size.height; ++y) memcpy(inner(y), raw(image.row(y)), (size_t)size.width);
  const int lineCount = flags & watershedBorder8 ? 8 : flags & watershedBorder4 ? 4 : 0;
  if (norm == normL1) growth.template run<4>(lineCount);
  else growth.template run<8>(lineCount);
  for (ptrdiff_t y = 0; y < size.height; ++y) memcpy(raw(image.row(y)), inner(y), (size_t)size.width);
  return orvStatusOk;
}

int32_t growthBytes(OrvSize size) { return wrapAdd(wrapMul(17, size.width, size.height), 115); }

}  // namespace

OrvStatus orviSegmentGradientGetBufferSize_8u_C1R(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, growthBytes);
}
OrvStatus orviSegmentGradientGetBufferSize_8u_C3R(OrvSize roiSize, int32_t* bufferSize) {
  return reportSize(roiSize, bufferSize, growthBytes);
}

OrvStatus orviSegmentGradient_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep,
                                      OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer) {
  return grow<1>(src, srcStep, markers, markerStep, roiSize, norm, flags, buffer);
}
OrvStatus orviSegmentGradient_8u_C3IR(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep,
                                      OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer) {
  return grow<3>(src, srcStep, markers, markerStep, roiSize, norm, flags, buffer);
}

// Watershed by priority queues.
//
// Theory of operation (F. Meyer, "Un algorithme optimal de ligne de partage des eaux", 1991). Pixels wait in one queue
// a gray level; the lowest level is exhausted first, and within it pixels leave in the order they came. A pixel that is
// popped gives its label to its unlabelled neighbours and queues them, none lower than the present level. With a line
// flag a pixel that touches two segments becomes a line instead; a pixel reached from a line takes the segment next to
// it, so lines pass the flood on.
//
// The labels stand in an image with a border of lines, which is never unlabelled and no segment: no bounds are tested.
//
// One body serves both variants.
#include "segment/watershed.h"
#include "segment/level_queues.h"
#include "segment/neighbours.h"
#include <string.h>

namespace {

// The segments among some labels: none gives a line, one itself, several a line. 0 and lines are no segments.
template <class T>
struct Segments {
  T low = watershedLine<T>, high = 0;
  void add(T label) {
    const T upper = label == watershedLine<T> ? (T)0 : label, lower = label == 0 ? watershedLine<T> : label;
    low = lower < low ? lower : low;
    high = upper > high ? upper : high;
  }
  T label() const { return low == high ? low : watershedLine<T>; }
  // Whether one of them isn't `own`, which is a segment.
  bool otherThan(T own) const { return high != 0 && (low != own || high != own); }
};

template <class T>
struct Flood {
  Plane<const uint8_t> src;
  OrvSize size;
  Loose<T>* labels;     // (width + 2) x (height + 2)
  ptrdiff_t around[8];  // left, right, up, down, then the corners from the top left on
  LevelQueues queues;

  Flood(const WatershedJob<T>& job, uint8_t* memory)
      : src(job.src),
        size(job.size),
        labels(loose((T*)(void*)(memory + 8 * (ptrdiff_t)job.size.width * job.size.height))),
        queues(memory, (int64_t)job.size.width * job.size.height) {
    const ptrdiff_t stride = size.width + 2;
    const ptrdiff_t offsets[8] = {-1, 1, -stride, stride, -stride - 1, 1 - stride, stride - 1, stride + 1};
    memcpy(around, offsets, sizeof around);
  }

  template <int Looked>
  Segments<T> segmentsAround(const Loose<T>* p) const {
    Segments<T> s;
    for (int k = 0; k < Looked; ++k) s.add(p[around[k]]);
    return s;
  }

  void copyIn(Plane<T> markers) {
    const ptrdiff_t stride = size.width + 2;
    memset((void*)labels, 0xFF, (size_t)(stride * (size.height + 2)) * sizeof(T));
    for (ptrdiff_t y = 0; y < size.height; ++y)
      memcpy((void*)(labels + (y + 1) * stride + 1), (const void*)markers.row(y), (size_t)size.width * sizeof(T));
  }
  void copyOut(Plane<T> markers) const {
    const ptrdiff_t stride = size.width + 2;
    for (ptrdiff_t y = 0; y < size.height; ++y)
      memcpy((void*)markers.row(y), (const void*)(labels + (y + 1) * stride + 1), (size_t)size.width * sizeof(T));
  }

  // Queues the labelled pixels with an unlabelled neighbour. With lines (LineCount 4 or 8 neighbours are looked at),
  // a pixel that touches another segment becomes one.
  template <int Count>
  void queueSeeds(int32_t lineCount) {
    const ptrdiff_t stride = size.width + 2;
    for (ptrdiff_t y = 0; y < size.height; ++y) {
      const Loose<const uint8_t>* const relief = src.row(y);
      for (ptrdiff_t x = 0; x < size.width; ++x) {
        Loose<T>* const p = labels + (y + 1) * stride + x + 1;
        const T label = *p;
        if (label == 0) continue;
        const uint32_t open = Neighbours<T>(p, stride).equalTo(0) & ((1u << Count) - 1);
        if (open != 0) queues.push(relief[x], (uint32_t)(p - labels));
        if (lineCount == 0 || label == watershedLine<T>) continue;
        const Segments<T> s = lineCount == 4 ? segmentsAround<4>(p) : segmentsAround<8>(p);
        if (s.otherThan(label)) *p = watershedLine<T>;
      }
    }
  }

  // LineCount: how many neighbours of a new pixel are asked for other segments; 0: no lines.
  template <int Count, int LineCount>
  void run() {
    const ptrdiff_t stride = size.width + 2;
    const RowOf rowOf((uint32_t)stride);
    ptrdiff_t reliefAround[8];
    for (int k = 0; k < 8; ++k) {
      const ptrdiff_t down = around[k] > 1 ? 1 : around[k] < -1 ? -1 : 0;
      reliefAround[k] = down * src.step + around[k] - down * stride;
    }
    const auto relief = [&](uint32_t pixel) __attribute__((always_inline)) {
      const ptrdiff_t y = rowOf(pixel);
      return src.row(y - 1) + ((ptrdiff_t)pixel - y * stride - 1);
    };
    for (int32_t level = 0; level < 256; ++level)
      while (!queues.empty(level)) {
        const uint32_t pixel = queues.pop(level), soon = queues.ahead(level);
        prefetchRows(labels + soon, stride * (ptrdiff_t)sizeof(T)), prefetchRows(relief(soon), src.step);
        Loose<T>* const p = labels + pixel;
        uint32_t open = Neighbours<T>(p, stride).equalTo(0) & ((1u << Count) - 1);
        if (open == 0) continue;
        const T label = *p;
        const Loose<const uint8_t>* const height = relief(pixel);
        for (; open != 0; open &= open - 1) {
          const int k = __builtin_ctz(open);
          Loose<T>* const q = p + around[k];
          const int32_t own = height[reliefAround[k]];
          queues.push(own > level ? own : level, pixel + (uint32_t)around[k]);
          if constexpr (LineCount == 0) {
            *q = label;
          } else {
            Segments<T> s = segmentsAround<LineCount>(q);
            s.add(label);
            *q = s.label();
          }
        }
      }
  }
};

template <class T>
void floodByQueues(const WatershedJob<T>& job) {
  Flood<T> flood(job, job.buffer);
  flood.copyIn(job.markers);
  const bool border4 = job.flags & watershedBorder4, border8 = job.flags & watershedBorder8;
  const int32_t seedLines = border8 ? 8 : border4 ? 4 : 0;
  if (job.norm == normL1) {
    flood.template queueSeeds<4>(seedLines);
    if (border4) flood.template run<4, 4>();
    else if (border8) flood.template run<4, 8>();
    else flood.template run<4, 0>();
  } else {
    flood.template queueSeeds<8>(seedLines);
    if (border4) flood.template run<8, 4>();
    else if (border8) flood.template run<8, 8>();
    else flood.template run<8, 0>();
  }
  flood.copyOut(job.markers);
}

}  // namespace

void ownSegmentWaterhedPQ_8u(const WatershedJob<uint8_t>* job) { floodByQueues(*job); }
void ownSegmentWaterhedPQ_16u(const WatershedJob<uint16_t>* job) { floodByQueues(*job); }

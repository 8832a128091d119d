// Morphological reconstruction: a marker grows under a mask (or shrinks above it) until nothing changes.
//
// Theory. The result is one fixed point, whatever the order of steps, so the order is free to be fast (L. Vincent,
// "Morphological grayscale reconstruction in image analysis", 1993). One sweep down and one up, each row from both
// ends at once, bring most pixels to rest. What still moves is followed pixel by pixel through a queue, so that its
// cost is that of the pixels that change and not of further sweeps: a spiral costs its length. The queue lies in the
// scratch memory and may be full; then the rows around a pixel are marked, and searched later for pixels that move.
//
// Two threads take a half each. What crosses the seam afterwards sweeps on as long as whole rows follow, the rest goes
// through the queue on one thread.
//
// One body serves both variants.
#include "core/bands.h"
#include "core/image.h"
#include "core/scratch.h"

namespace {

// The order of values: growth takes the larger one, bounded by the mask; shrinking is its mirror image.
struct Growth {
  template <class T>
  static bool beyond(T a, T b) {
    return a > b;
  }
};
struct Shrinkage {
  template <class T>
  static bool beyond(T a, T b) {
    return a < b;
  }
};

struct Pixel {
  int32_t x, y;
};

// Bytes of the queue; with the marks of the rows they stay below every reported size.
static constexpr ptrdiff_t queueBytes(int32_t width, size_t elementBytes) {
  return 4 * (ptrdiff_t)width * (ptrdiff_t)elementBytes + 128;
}

// A range of rows at work. No pixel beyond it is read or written.
template <class Order, class T>
struct Region {
  Plane<const T> mask;
  Plane<T> marker;
  ptrdiff_t width, first, end;
  bool diagonal;
  uint8_t* marks;  // of all rows: to be searched for pixels that move
  Pixel* queue;    // a ring
  int32_t capacity, head = 0, count = 0;
  bool marked = true;

  static T farther(T a, T b) { return Order::beyond(a, b) ? a : b; }
  static T bounded(T value, T limit) { return Order::beyond(value, limit) ? limit : value; }

  // Brings a row to rest in itself. One pass runs from each end; in the second half each meets what the other has left
  // behind, which only speeds it up.
  void sweepAlong(ptrdiff_t y) const {
    auto* const m = marker.row(y);
    const auto* const limit = mask.row(y);
    T right = m[0], left = m[width - 1];
    for (ptrdiff_t x = 0, back = width - 1; x < width; ++x, --back) {
      right = bounded(farther(m[x], right), limit[x]);
      m[x] = right;
      left = bounded(farther(m[back], left), limit[back]);
      m[back] = left;
    }
  }

  // Takes over what a neighbouring row gives, without the bound: the sweep along the row applies it.
  void sweepInto(ptrdiff_t y, ptrdiff_t from) const {
    auto* const m = marker.row(y);
    const auto* const near = marker.row(from);
    for (ptrdiff_t x = 0; x < width; ++x) m[x] = farther(m[x], near[x]);
    if (diagonal) {
      for (ptrdiff_t x = 1; x < width; ++x) m[x] = farther(m[x], near[x - 1]);
      for (ptrdiff_t x = 0; x < width - 1; ++x) m[x] = farther(m[x], near[x + 1]);
    }
    sweepAlong(y);
  }

  void sweep() const {
    sweepAlong(first);
    for (ptrdiff_t y = first + 1; y < end; ++y) sweepInto(y, y - 1);
    for (ptrdiff_t y = end - 2; y >= first; --y) sweepInto(y, y + 1);
  }

  void mark(ptrdiff_t y) {
    for (ptrdiff_t row = y - 1; row <= y + 1; ++row)
      if (row >= first && row < end) marks[row] = 1;
    marked = true;
  }

  // A pixel that has changed: its neighbours are to be looked at.
  void push(ptrdiff_t x, ptrdiff_t y) {
    if (count == capacity) return mark(y);
    const int32_t tail = head + count;
    queue[tail < capacity ? tail : tail - capacity] = {(int32_t)x, (int32_t)y};
    ++count;
  }

  void drain() {
    while (count > 0) {
      const Pixel p = queue[head];
      head = head + 1 < capacity ? head + 1 : 0;
      --count;
      const T value = marker.row(p.y)[p.x];
      for (ptrdiff_t y = p.y - 1; y <= p.y + 1; ++y) {
        if (y < first || y >= end) continue;
        const ptrdiff_t side = diagonal || y == p.y ? 1 : 0;
        auto* const m = marker.row(y);
        const auto* const limit = mask.row(y);
        for (ptrdiff_t x = p.x - side; x <= p.x + side; ++x) {
          if (x < 0 || x >= width) continue;
          const T next = bounded(value, limit[x]);
          if (!Order::beyond(next, (T)m[x])) continue;
          m[x] = next;
          push(x, y);
        }
      }
    }
  }

  // The row above or below, or the row itself where there is none.
  ptrdiff_t inside(ptrdiff_t y) const { return y < first ? first : y >= end ? end - 1 : y; }

  // What the neighbours of pixel x of three rows give to it.
  T given(const Loose<T>* above, const Loose<T>* m, const Loose<T>* below, ptrdiff_t x, ptrdiff_t left,
          ptrdiff_t right) const {
    T best = farther(farther(above[x], below[x]), farther(m[left], m[right]));
    if (!diagonal) return best;
    best = farther(best, farther(above[left], below[left]));
    return farther(best, farther(above[right], below[right]));
  }

  // Whether any of 64 pixels moves. They are none of the row's ends.
  bool moves(const Loose<T>* above, const Loose<T>* m, const Loose<T>* below, const Loose<const T>* limit,
             ptrdiff_t from) const {
    int32_t found = 0;
    for (ptrdiff_t x = from; x < from + 64; ++x) {
      const T next = bounded(given(above, m, below, x, x - 1, x + 1), limit[x]);
      found |= Order::beyond(next, (T)m[x]);
    }
    return found != 0;
  }

  // Moves the pixels of a row that can be moved, and all that follows from it.
  void search(ptrdiff_t y) {
    const auto *above = marker.row(inside(y - 1)), *below = marker.row(inside(y + 1));
    auto* const m = marker.row(y);
    const auto* const limit = mask.row(y);
    for (ptrdiff_t x = 0; x < width; ++x) {
      while (x >= 1 && x + 64 < width && !moves(above, m, below, limit, x)) x += 64;
      const ptrdiff_t stop = x == 0 ? 1 : x + 64 < width ? x + 64 : width;
      for (; x < stop; ++x) {
        const ptrdiff_t left = x > 0 ? x - 1 : 0, right = x < width - 1 ? x + 1 : x;
        const T next = bounded(given(above, m, below, x, left, right), limit[x]);
        if (!Order::beyond(next, (T)m[x])) continue;
        m[x] = next;
        if (count == capacity) drain();
        push(x, y);
      }
      --x;
    }
    drain();
  }

  void settle() {
    while (marked) {
      marked = false;
      for (ptrdiff_t y = first; y < end; ++y)
        if (marks[y]) marks[y] = 0, search(y);
    }
  }

  // Sweeps on from the row behind the seam, or before it, as long as rows change; leaves them marked.
  void cross(ptrdiff_t y, ptrdiff_t direction) {
    for (; y >= first && y < end && changed(y, y - direction); y += direction) sweepInto(y, y - direction), mark(y);
  }
  // Whether row `from` moves any pixel of row y.
  bool changed(ptrdiff_t y, ptrdiff_t from) const {
    const auto *const near = marker.row(from), *const m = marker.row(y);
    const auto* const limit = mask.row(y);
    for (ptrdiff_t x = 0; x < width; ++x) {
      T best = near[x];
      if (diagonal && x > 0) best = farther(best, near[x - 1]);
      if (diagonal && x < width - 1) best = farther(best, near[x + 1]);
      if (Order::beyond(bounded(best, limit[x]), (T)m[x])) return true;
    }
    return false;
  }
};

template <class Order, class T>
OrvStatus reconstruct(const T* src, int32_t srcStep, T* srcDst, int32_t srcDstStep, OrvSize roi, uint8_t* buffer,
                      int32_t norm) {
  ORV_REQUIRE(allSet(src, srcDst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<T>(roi.width), orvStatusStep);
  ORV_REQUIRE(srcDstStep >= rowBytes<T>(roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(srcStep, srcDstStep), orvStatusStepAlign);
  ORV_REQUIRE(norm == 0 || norm == 1, orvStatusBadArg);

  Scratch scratch{buffer};
  const int32_t capacity = (int32_t)(queueBytes(roi.width, sizeof(T)) / (ptrdiff_t)sizeof(Pixel));
  Pixel* const queue = scratch.take<Pixel>(capacity, alignof(Pixel));
  uint8_t* const marks = scratch.take<uint8_t>(roi.height, 1);
  for (int32_t y = 0; y < roi.height; ++y) marks[y] = 1;
  Region<Order, T> whole = {{src, srcStep}, {srcDst, srcDstStep}, roi.width, 0, roi.height, norm == 0, marks, queue,
                            capacity};
  if (roi.width < 11 || roi.height < 11 || owncvGetMaxNumThreads() < 2) {
    whole.sweep();
    whole.settle();
    return orvStatusOk;
  }
  runTeam(2, roi.height, [&](int32_t first, int32_t rows) {
    auto half = whole;
    half.first = first, half.end = first + rows;
    half.capacity = capacity / 2, half.queue = queue + (first > 0 ? capacity / 2 : 0);
    half.sweep();
    half.settle();
  });
  const int32_t seam = roi.height / 2;
  whole.mark(seam - 1), whole.mark(seam);
  whole.cross(seam, 1);
  whole.cross(seam - 1, -1);
  whole.settle();
  return orvStatusOk;
}

// The size of the buffer.
int32_t reconstructBufferSize(OrvSize roi, int32_t dataType) {
  const int32_t elements = wrapAdd(wrapMul(4, roi.width), roi.height);
  switch (dataType) {
    case orvData8u:
      return wrapAdd(elements, 161);
    case orvData16u:
      return wrapAdd(wrapMul(2, elements), 322);
    case orvData32f:
      return wrapAdd(wrapAdd(wrapMul(16, roi.width), roi.height), 164);
    default:
      return wrapAdd(wrapAdd(wrapMul(32, roi.width), roi.height), 168);
  }
}

OrvStatus reportBufferSize(OrvSize roi, int32_t dataType, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  *bufferSize = reconstructBufferSize(roi, dataType);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviMorphReconstructDilate_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Growth>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructErode_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* srcDst, int32_t srcDstStep,
                                            OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Shrinkage>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructDilate_16u_C1IR(const uint16_t* src, int32_t srcStep, uint16_t* srcDst,
                                              int32_t srcDstStep, OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Growth>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructErode_16u_C1IR(const uint16_t* src, int32_t srcStep, uint16_t* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Shrinkage>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructDilate_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                              OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Growth>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructErode_32f_C1IR(const float* src, int32_t srcStep, float* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Shrinkage>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructDilate_64f_C1IR(const double* src, int32_t srcStep, double* srcDst, int32_t srcDstStep,
                                              OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Growth>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}
OrvStatus orviMorphReconstructErode_64f_C1IR(const double* src, int32_t srcStep, double* srcDst, int32_t srcDstStep,
                                             OrvSize roiSize, uint8_t* buffer, int32_t norm) {
  return reconstruct<Shrinkage>(src, srcStep, srcDst, srcDstStep, roiSize, buffer, norm);
}

OrvStatus orviMorphReconstructGetBufferSize_8u_C1(OrvSize roiSize, int32_t* bufferSize) {
  return reportBufferSize(roiSize, orvData8u, bufferSize);
}
OrvStatus orviMorphReconstructGetBufferSize_16u_C1(OrvSize roiSize, int32_t* bufferSize) {
  return reportBufferSize(roiSize, orvData16u, bufferSize);
}
OrvStatus orviMorphReconstructGetBufferSize_32f_C1(OrvSize roiSize, int32_t* bufferSize) {
  return reportBufferSize(roiSize, orvData32f, bufferSize);
}
OrvStatus orviMorphReconstructGetBufferSize_64f_C1(OrvSize roiSize, int32_t* bufferSize) {
  return reportBufferSize(roiSize, orvData64f, bufferSize);
}
OrvStatus orviMorphReconstructGetBufferSize(OrvSize roiSize, OrvDataType dataType, int32_t channels,
                                            int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(dataType == orvData8u || dataType == orvData16u || dataType == orvData32f || dataType == orvData64f,
              orvStatusDataType);
  ORV_REQUIRE(channels == 1, orvStatusChannels);
  return reportBufferSize(roiSize, dataType, bufferSize);
}

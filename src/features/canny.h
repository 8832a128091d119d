// Canny edges: the plan that all three forms share.
//
// Theory. Rows are graded one after the other: each pixel gets a magnitude M in a ring of three float rows, and in the
// map a code for the direction of its gradient. One row later it is suppressed unless M is a maximum across the edge;
// what is kept is weak or, above the high threshold, strong. When all rows are done, edges grow from strong pixels
// through weak ones, and the map becomes the result:
//
//   gradients --grade--> M (ring), code (map) --suppress--> weak, strong (map) --trace--> edge (map) --> 255, 0 (dst)
//
// A pixel below the low threshold has M 0 and costs its share of a vector in both steps, no more; tracing touches
// strong pixels and the weak ones that it reaches. Beyond the image M is 0, so pixels at its sides can be edges.
//
// The forms differ, and each difference shows in pixels:
//
//                      shorts                            floats           from an image
//   M                  |dx| + |dy|, at most 65535 but    |dx| + |dy|      |dx| + |dy| or the root of the
//                      for the last width % 8 columns                     sum of squares
//   M survives if      M > trunc(low)                    M >= low         M > low
//   strong if          M > trunc(high)                   M > high         M > high
//   vertical if        |dy| > |dx| * 2.4142137f, or in   as shorts,       |dy| > (|dx| + |dx|)
//                      doubles in the last width % 4     no doubles       + |dx| * 0.41421357f
//                      columns
//   horizontal if not  |dy| < |dx| * 0.41421357f, or     as shorts,       |dy| < |dx| * 0.41421357f
//                      in doubles likewise               no doubles
//   same sign          of numbers                        of sign bits:    of numbers
//                                                        -0 is negative
//
// All arithmetic is in single precision unless told otherwise; integers up to 65536 are exact there.
//
// A vertical or horizontal gradient needs M above the neighbour that comes first (above, left) and not below the other
// one, so one pixel of a plateau survives. Diagonal ones need M above both: a diagonal plateau vanishes.
//
// Memory: the map with a frame of zeros, three rows of M with a zero at either end, and room for four bytes a pixel,
// which lends rows to the gradients until the tracing needs it as its stack.
#pragma once
#include <string.h>
#include "features/names.h"
#include "core/image.h"
#include "core/scratch.h"

namespace ORV_VARIANT {

// Codes in the map while a row is graded: the line of the two neighbours that M is compared with.
enum : uint8_t { cannyAlongRow = 1, cannyRising = 2, cannyDown = 3, cannyFalling = 4 };
// Codes after suppression. No pixel has both bits; an edge found by tracing becomes strong.
enum : uint8_t { cannyStrong = 1, cannyWeak = 128 };

struct CannyMap {
  uint8_t* data;  // the first pixel of the image; the frame lies around it
  ptrdiff_t pitch;
  uint8_t* row(ptrdiff_t y) const { return data + y * pitch; }
};

// Replaces the codes of a row by what suppression leaves. Columns -1 and `width` of the magnitudes are zeros.
using CannySuppress = void (*)(const float* above, const float* row, const float* below, uint8_t* map, ptrdiff_t width,
                               float high);
CannySuppress cannySuppress();

// Grows the edges and writes dst. `stack` has room for as many numbers as there are pixels.
void cannyTrace(CannyMap map, OrvSize roi, uint32_t* stack, Plane<uint8_t> dst);

// The caller's buffer in pieces.
struct CannyMemory {
  CannyMap map;
  uint8_t* whole;  // the map with its frame
  float* ring;
  uint32_t* stack;  // until the tracing, memory for the gradients' own use

  CannyMemory(OrvSize roi, uint8_t* buffer) {
    const ptrdiff_t pitch = (ptrdiff_t)roi.width + 2;
    Scratch scratch{buffer};
    whole = scratch.take<uint8_t>(pitch * ((ptrdiff_t)roi.height + 2), 32);
    ring = scratch.take<float>(3 * pitch);
    stack = (uint32_t*)(void*)scratch.next;
    map = {whole + pitch + 1, pitch};
  }
};

// Calls grade(y, magnitudes, codes) for each row from the top and makes the edges of what it stores.
template <class Grade>
static void cannyEdges(const CannyMemory& memory, OrvSize roi, float high, Plane<uint8_t> dst, const Grade& grade) {
  const CannySuppress suppress = cannySuppress();
  const CannyMap map = memory.map;
  const ptrdiff_t width = roi.width, height = roi.height;
  memset(memory.whole, 0, (size_t)map.pitch);
  memset(map.row(height) - 1, 0, (size_t)map.pitch);
  memset(memory.ring, 0, (size_t)(3 * map.pitch) * sizeof(float));
  const auto magnitudes = [&](ptrdiff_t y) { return memory.ring + (y + 1) % 3 * map.pitch + 1; };
  for (ptrdiff_t y = 0; y <= height; ++y) {
    if (y < height) {
      uint8_t* const codes = map.row(y);
      codes[-1] = codes[width] = 0;
      grade(y, magnitudes(y), codes);
    } else {
      memset(magnitudes(y), 0, (size_t)width * sizeof(float));
    }
    if (y > 0) suppress(magnitudes(y - 2), magnitudes(y - 1), magnitudes(y), map.row(y - 1), width, high);
  }
  cannyTrace(map, roi, memory.stack, dst);
}

}  // namespace ORV_VARIANT

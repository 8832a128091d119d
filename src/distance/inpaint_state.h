// What inpainting prepares once for a mask, a distance map and a radius.
#pragma once
#include "distance/names.h"
#include "core/image.h"

// A pixel within the radius of another, at (-nx, -ny) from it, and the offsets to it.
struct InpaintNeighbour {
  int32_t nx, ny;
  float weight;
  int32_t maskOffset, distOffset, gradOffset;  // in elements, of `work`, `dist` and, in pixels, of `imageGrad`
  ptrdiff_t imageOffset;                       // in bytes, set anew for each image
};

// One block of memory with everything behind the record. The box is the part of the image that filling looks at: the
// mask's bounding box, radius + 1 wider on each side where the image is. Box images are addressed by y * stride + x.
struct OrvInpaintState {
  uint8_t *maskBox, *work;       // 255 to be filled, 0 known; `work` loses its pixels in a run
  int16_t* imageGrad;            // pairs (gx, gy), one a channel: valid within the radius of the mask
  float* dist;                   // the distance map
  double* order;                 // the pixels to fill: distances with the pixel in their low bits, ascending
  int16_t* distGrad;             // pairs (tx, ty) for each of them, the map's slope times 4096; method 0 only
  uint32_t* ring;                // the known pixels within the radius of the mask
  InpaintNeighbour* neighbours;  // rows from above, each from the left
  OrvSize maxRoi, boxSize;
  int32_t method, count;  // `count`: pixels of the mask
  int32_t boxX, boxY;
  int32_t reach;  // whole pixels of the radius
  int32_t neighbourCount, orderCount, ringCount;
  int32_t stray;                               // whether `order` has pixels outside the mask
  int32_t maskStride, distStride, gradStride;  // in elements; `gradStride` in pixels
};

namespace ORV_VARIANT {

// A pixel's number y * boxWidth + x stands in the low bits of its entry in `order`, which a float leaves empty.
static constexpr int32_t inpaintIndexBits = 28;

// The pixel of the box that an entry stands for.
static inline OrvPoint inpaintPixel(const OrvInpaintState* s, ptrdiff_t entry) {
  const uint64_t bits = __builtin_bit_cast(uint64_t, s->order[entry]);
  const auto number = (uint32_t)(bits & ((1u << inpaintIndexBits) - 1)), width = (uint32_t)s->boxSize.width;
  return {(int32_t)(number % width), (int32_t)(number / width)};
}

}  // namespace ORV_VARIANT

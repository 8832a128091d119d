// What inpainting prepares once for a mask, a distance map and a radius.
#pragma once
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
  int16_t* distGrad;             // pairs (tx, ty) on the mask, times 4096; method 0 only
  float* dist;                   // the distance map
  double* order;                 // the pixels to fill: distances with the pixel in their low bits, ascending
  uint32_t* ring;                // the known pixels within the radius of the mask
  InpaintNeighbour* neighbours;  // rows from above, each from the left
  OrvSize maxRoi, boxSize;
  int32_t method, count;  // `count`: pixels of the mask
  int32_t boxX, boxY;
  int32_t reach;  // whole pixels of the radius
  int32_t neighbourCount, orderCount, ringCount;
  int32_t maskStride, distStride, gradStride;  // in elements; `gradStride` in pixels, also of `distGrad`
};

namespace ORV_VARIANT {

// A pixel's number y * boxWidth + x stands in the low bits of its entry in `order`, which a float leaves empty.
static constexpr int32_t inpaintIndexBits = 28;

}  // namespace ORV_VARIANT

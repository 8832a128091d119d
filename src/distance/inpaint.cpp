// Inpainting of one image.
// One body serves both variants.
//
// Theory of operation. The pixels of the hole are filled in the order of their distance from its edge, each with a
// weighted mean of the known pixels within the radius. Filled pixels are known from then on. A gradient is kept for
// each known pixel that filling may look at; it never looks into what is still unknown, so a filled pixel changes its
// own and those of its four neighbours.
//
// What a run costs is in proportion to the hole, but for the copy of the image: the state lists the pixels to fill and
// the known ones around them.
#include <string.h>
#include "core/checks.h"
#include "core/primitives.h"
#include "distance/inpaint_state.h"

namespace {

constexpr float leastSum = 1e-30f, enoughSum = 0.0001f;

// Weighted sums of one channel.
struct Sums {
  float sum = leastSum, acc = 0, jx = 0, jy = 0;
};

uint8_t limited(double v) { return v > 0 ? v < 255 ? (uint8_t)v : 255 : 0; }

template <int method, int channels>
struct Inpainting {
  const OrvInpaintState* s;
  Plane<uint8_t> image;  // from the box's corner

  uint8_t* maskAt(ptrdiff_t x, ptrdiff_t y) const { return s->work + y * s->maskStride + x; }
  uint8_t* pixelAt(ptrdiff_t x, ptrdiff_t y) const { return raw(image.row(y)) + channels * x; }
  int16_t* gradAt(ptrdiff_t x, ptrdiff_t y) const { return s->imageGrad + 2 * channels * (y * s->gradStride + x); }

  // The gradient along one direction: from both neighbours, if only one is known from that one, or 0. Method 1 sums up
  // absolute differences. A difference over one pixel counts half of one over two in method 0, the same in method 1.
  static int16_t difference(const uint8_t* p, ptrdiff_t pitch, bool before, bool after) {
    const int forward = after ? p[pitch] - *p : 0, backward = before ? *p - p[-pitch] : 0;
    const int both = method == 0 ? forward + backward : __builtin_abs(forward) + __builtin_abs(backward);
    return (int16_t)(method == 1 && before != after ? 2 * both : method == 0 && before && after ? 2 * both : both);
  }
  void renewGradient(ptrdiff_t x, ptrdiff_t y) const {
    const uint8_t *const m = maskAt(x, y), *const p = pixelAt(x, y);
    const bool left = x > 0 && !m[-1], right = x + 1 < s->boxSize.width && !m[1];
    const bool up = y > 0 && !m[-s->maskStride], down = y + 1 < s->boxSize.height && !m[s->maskStride];
    int16_t* const grad = gradAt(x, y);
    for (int c = 0; c < channels; ++c) {
      grad[2 * c] = difference(p + c, channels, left, right);
      grad[2 * c + 1] = difference(p + c, image.step, up, down);
    }
  }
  // Calls visit(x, y) for the pixel and its four neighbours in the box.
  template <class Visit>
  void cross(ptrdiff_t x, ptrdiff_t y, const Visit& visit) const {
    visit(x, y);
    if (x > 0) visit(x - 1, y);
    if (x + 1 < s->boxSize.width) visit(x + 1, y);
    if (y > 0) visit(x, y - 1);
    if (y + 1 < s->boxSize.height) visit(x, y + 1);
  }
  // The state as it is before any filling, with the gradients of this image.
  void prepare() const {
    for (int32_t i = 0; i < s->neighbourCount; ++i) {
      InpaintNeighbour& n = s->neighbours[i];
      n.imageOffset = (ptrdiff_t)-n.ny * image.step - (ptrdiff_t)n.nx * channels;
    }
    for (ptrdiff_t i = 0; i < s->orderCount; ++i) {
      const OrvPoint at = inpaintPixel(s, i);
      *maskAt(at.x, at.y) = s->maskBox[(ptrdiff_t)at.y * s->maskStride + at.x];
    }
    // Far from the mask gradients count as 0; nothing looks there unless the map wants other pixels filled.
    if (s->stray) memset(s->imageGrad, 0, (size_t)s->gradStride * (size_t)s->boxSize.height * 4 * channels);
    const auto width = (uint32_t)s->boxSize.width;
    for (ptrdiff_t i = 0; i < s->ringCount; ++i) renewGradient(s->ring[i] % width, s->ring[i] / width);
  }

  // Method 0: neighbours count by their distance, by how far the map rises towards this pixel in their direction, and
  // by how near their own distance is.
  void addByDistance(Sums* sums, const InpaintNeighbour& n, ptrdiff_t x, ptrdiff_t y, const int16_t* rise) const {
    const ptrdiff_t at = y * s->distStride + x;
    float dir = (float)(n.nx * rise[0] + n.ny * rise[1]);
    if (__builtin_fabsf(dir) < 2.5e-25f) dir = 2.5e-25f;
    const float apart = __builtin_fabsf(s->dist[at + n.distOffset] - s->dist[at]);
    const float w = __builtin_fabsf(0.00024414062f / (apart + 1) * n.weight * dir);
    const int16_t* const grad = gradAt(x, y) + 2 * channels * (ptrdiff_t)n.gradOffset;
    const uint8_t* const p = pixelAt(x, y) + n.imageOffset;
    for (int c = 0; c < channels; ++c) {
      sums[c].sum += w;
      sums[c].acc += p[c] * w;
      sums[c].jx -= (float)(grad[2 * c] * n.nx) * w;
      sums[c].jy -= (float)(grad[2 * c + 1] * n.ny) * w;
    }
  }
  // Method 1: neighbours count by their distance and by how well a line of equal brightness through them meets this
  // pixel, in each channel.
  void addByIsophote(Sums* sums, const InpaintNeighbour& n, ptrdiff_t x, ptrdiff_t y) const {
    const int16_t* const grad = gradAt(x, y) + 2 * channels * (ptrdiff_t)n.gradOffset;
    const uint8_t* const p = pixelAt(x, y) + n.imageOffset;
    for (int c = 0; c < channels; ++c) {
      const int gx = grad[2 * c], gy = grad[2 * c + 1], dot = __builtin_abs(n.ny * gx - n.nx * gy);
      const float steepness = __builtin_sqrtf((float)(gx * gx + gy * gy));
      const float w = dot == 0 ? n.weight * 1e-6f : n.weight * (float)dot * (1 / steepness);
      sums[c].sum += w;
      sums[c].acc += p[c] * w;
    }
  }

  // The known ones of the four neighbours, for a pixel that no neighbour has weight for. None: 0 / 1.
  void takeFour(Sums& sums, ptrdiff_t x, ptrdiff_t y, int c) const {
    sums = {0, 0, 0, 0};
    cross(x, y, [&](ptrdiff_t nx, ptrdiff_t ny) {
      if ((nx == x && ny == y) || *maskAt(nx, ny)) return;
      sums.sum += 1;
      sums.acc += pixelAt(nx, ny)[c];
    });
    if (sums.sum == 0) sums.sum = 1;
  }

  static uint8_t value(const Sums& sums) {
    const float mean = sums.acc / sums.sum;
    if (method == 1) return limited((double)(mean + 0.5f));
    const double jx = sums.jx, jy = sums.jy;
    return limited(mean + 0.5 + (jx + jy) / (__builtin_sqrt(jx * jx + jy * jy) + 1e-20));
  }

  void fill(ptrdiff_t entry) const {
    const OrvPoint at = inpaintPixel(s, entry);
    const ptrdiff_t x = at.x, y = at.y;
    Sums sums[channels];
    const bool interior =
        x >= s->reach && x + s->reach < s->boxSize.width && y >= s->reach && y + s->reach < s->boxSize.height;
    for (int32_t i = 0; i < s->neighbourCount; ++i) {
      const InpaintNeighbour& n = s->neighbours[i];
      if (!interior) {
        const ptrdiff_t qx = x - n.nx, qy = y - n.ny;
        if (qx < 0 || qx >= s->boxSize.width || qy < 0 || qy >= s->boxSize.height) continue;
      }
      if (maskAt(x, y)[n.maskOffset]) continue;
      if constexpr (method == 0) addByDistance(sums, n, x, y, s->distGrad + 2 * entry);
      else addByIsophote(sums, n, x, y);
    }
    for (int c = 0; c < channels; ++c) {
      if (sums[c].sum < enoughSum) takeFour(sums[c], x, y, c);
      pixelAt(x, y)[c] = value(sums[c]);
    }
    *maskAt(x, y) = 0;
    cross(x, y, [&](ptrdiff_t nx, ptrdiff_t ny) {
      if (!*maskAt(nx, ny)) renewGradient(nx, ny);
    });
  }

  void run() const {
    prepare();
    for (ptrdiff_t i = 0; i < s->orderCount; ++i) fill(i);
  }
};

template <int channels>
OrvStatus inpaint(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roi,
                  OrvInpaintState* state) {
  ORV_REQUIRE(allSet(src, dst, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(roi.width == state->maxRoi.width && roi.height == state->maxRoi.height, orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<uint8_t>(roi.width, channels), orvStatusStep);
  ORV_REQUIRE(dstStep >= rowBytes<uint8_t>(roi.width, channels), orvStatusStep);
  if (channels == 1) orviCopy_8u_C1R(src, srcStep, dst, dstStep, roi);
  else orviCopy_8u_C3R(src, srcStep, dst, dstStep, roi);
  if (state->count < 1) return orvStatusOk;
  const Plane<uint8_t> image{dst, dstStep};
  const Plane<uint8_t> box{raw(image.row(state->boxY)) + channels * (ptrdiff_t)state->boxX, dstStep};
  if (state->method == 0) Inpainting<0, channels>{state, box}.run();
  else Inpainting<1, channels>{state, box}.run();
  return orvStatusOk;
}

}  // namespace

OrvStatus orviInpaint_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                             OrvInpaintState* state) {
  return inpaint<1>(src, srcStep, dst, dstStep, roiSize, state);
}
OrvStatus orviInpaint_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                             OrvInpaintState* state) {
  return inpaint<3>(src, srcStep, dst, dstStep, roiSize, state);
}

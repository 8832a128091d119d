// What the line detectors share: the geometry of the accumulator and the packed list of feature pixels.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include "features/names.h"
#include "core/checks.h"

namespace ORV_VARIANT {

// Cells of distance, cells of angle and the cell of distance 0. Counts beyond 32 bits are held at the end of the range.
struct HoughGeometry {
  int32_t numRho, numAngle, center;
};

// Towards zero, held in the range of the type; NaN gives the lower end.
static inline int32_t truncateInto32(double v) {
  if (!(v > -2147483648.0)) return INT32_MIN;
  return v < 2147483647.0 ? (int32_t)v : INT32_MAX;
}

// The constant is 3.14159 and not pi: one angle more or less hangs on it.
static inline double houghAngles(float theta) { return 3.14159 / (double)theta; }
static inline float houghDistances(OrvSize roi, float rho) {
  const uint32_t sides = (uint32_t)roi.width + (uint32_t)roi.height;
  return (float)(int32_t)(2 * sides + 1) / rho;
}

static inline HoughGeometry houghGeometry(OrvSize roi, OrvPointPolar delta) {
  const int32_t numRho = truncateInto32((double)houghDistances(roi, delta.rho));
  const int32_t numAngle = truncateInto32(houghAngles(delta.theta));
  return {numRho, wrapAdd(numAngle, 1), ((numRho < 1 ? 1 : numRho) - 1) >> 1};
}

// Feature pixels as 32-bit numbers, y above x. The bits of both sides fit, since the pixels themselves fit into 2^31
// bytes of image and buffer.
struct PixelCode {
  int32_t shift;  // bits of x
  explicit PixelCode(int32_t width) : shift(width > 1 ? 32 - __builtin_clz((uint32_t)width - 1) : 0) {}
  uint32_t code(int32_t x, int32_t y) const { return (uint32_t)y << shift | (uint32_t)x; }
  int32_t x(uint32_t code) const { return (int32_t)(code & ((1u << shift) - 1)); }
  int32_t y(uint32_t code) const { return (int32_t)(code >> shift); }
};

// Calls feature(x) for each byte of a row that isn't 0, from the left. Most of a row is passed eight bytes at a time.
template <class Feature>
static inline void forEachFeature(const uint8_t* row, int32_t width, const Feature& feature) {
  for (int32_t x = 0; x < width; x += 8) {
    uint64_t eight = 0;
    if (width - x >= 8) memcpy(&eight, row + x, 8);
    else memcpy(&eight, row + x, (size_t)(width - x));
    // the top bit of each byte that isn't 0
    constexpr uint64_t low = 0x7F7F7F7F7F7F7F7F;
    for (uint64_t set = (((eight & low) + low) | eight) & ~low; set; set &= set - 1)
      feature(x + __builtin_ctzll(set) / 8);
  }
}

}  // namespace ORV_VARIANT

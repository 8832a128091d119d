// Images and steps of the accumulator for the line detectors.
#pragma once
#include "features/roles.h"
#include "reference/hough.h"

namespace test {

// A few straight lines and noise; or, now and then, all of the image.
inline void drawLines(Random& r, Image<uint8_t>& image, int width, int height) {
  const int share = r.one(6) ? 1 : r.in(5, 200);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) image.set(x, y, (uint8_t)(r.one(share) ? r.in(1, 255) : 0));
  for (int i = r.in(0, 4); i > 0; --i) {
    const float angle = (float)r.in(0, 628) * .01f;
    const int x = r.in(0, width - 1), y = r.in(0, height - 1);
    for (int k = 0; k < width + height; ++k) {
      const int u = x + (int)lrintf((float)k * cosf(angle)), v = y + (int)lrintf((float)k * sinf(angle));
      if (u >= 0 && v >= 0 && u < width && v < height && !r.one(9)) image.set(u, v, 255);
    }
  }
  image.keep();
}

inline OrvPointPolar someDelta(Random& r, OrvSize roi) {
  const float rhos[] = {1, 1, .5f, 2.5f, .013f, (float)(roi.width + roi.height)};
  const float thetas[] = {.0174533f, .0174533f, .05f, .3f, 2, 3.14159f};
  return {std::min(rhos[r.in(0, 5)], (float)(roi.width + roi.height)), thetas[r.in(0, 5)]};
}

inline std::vector<Shape> lineShapes() {
  std::vector<Shape> list = shapes();
  if (quick()) list.resize(list.size() / 2);
  for (const Shape more : {Shape{90, 70}, Shape{61, 150}, Shape{520, 30}}) list.push_back(more);
  return list;
}

}  // namespace test

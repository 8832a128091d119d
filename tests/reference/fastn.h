// FastN corners pixel by pixel: the walk along the ring, the score arc by arc.
#pragma once
#include <math.h>
#include <algorithm>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

struct FastNSetup {
  OrvSize image;
  int radius, arc, bins, mode, threshold;
};

// The ring's points in order. Its first octant is drawn by hand: how far below the pixel each column's point lies.
inline const std::vector<OrvPoint>& fastNRing(int radius) {
  static std::vector<OrvPoint> rings[10];
  std::vector<OrvPoint>& ring = rings[radius];
  if (!ring.empty()) return ring;
  const char* const octants[10] = {"", "11", "22", "332", "", "5554", "", "777665", "", "9999887"};
  std::vector<OrvPoint> quarter;
  for (int i = 0; octants[radius][i]; ++i) quarter.push_back({-i, octants[radius][i] - '0'});
  for (size_t i = quarter.size(); i-- > 1;)
    if (quarter[i].x != -quarter[i].y) quarter.push_back({-quarter[i].y, -quarter[i].x});
  for (int turn = 0; turn < 4; ++turn)
    for (OrvPoint& p : quarter) {
      ring.push_back(p);
      p = {-p.y, p.x};
    }
  if (radius == 9) ring[12] = {-9, -1};
  return ring;
}

// 0, or the class of a corner (64, 128); its score: the largest, over all arcs, of the smallest difference.
template <class Pixel>
int fastNClass(const Pixel& at, int x, int y, const FastNSetup& setup, int* score) {
  const auto& ring = fastNRing(setup.radius);
  const int n = (int)ring.size();
  *score = 0;
  if (std::min(x, y) < setup.radius || x >= setup.image.width - setup.radius || y >= setup.image.height - setup.radius)
    return 0;
  for (const int kind : {64, 128}) {
    for (int start = 0; start < n; ++start) {
      int least = 255;
      for (int i = start; i < start + setup.arc && least > *score; ++i) {
        const int d = at(x + ring[(size_t)(i % n)].x, y + ring[(size_t)(i % n)].y) - at(x, y);
        least = std::min(least, kind == 64 ? d : -d);
      }
      *score = std::max(*score, least);
    }
    if (*score > setup.threshold) return kind;
    *score = 0;
  }
  return 0;
}

template <class Pixel>
int fastNBin(const Pixel& at, int x, int y, const FastNSetup& setup, bool inOrder) {
  const auto& ring = fastNRing(setup.radius);
  float s[2] = {0, 0}, c[2] = {0, 0};
  for (size_t i = 0; i < ring.size(); ++i) {
    const double a = (float)i * (6.2831855f / (float)ring.size());
    const auto d = (double)(at(x + ring[i].x, y + ring[i].y) - at(x, y));
    s[inOrder ? 0 : i % 2] += (float)(sin(a) * d);
    c[inOrder ? 0 : i % 2] += (float)(cos(a) * d);
  }
  float angle = atan2f(c[0] + c[1], s[0] + s[1]);
  if (angle < 0) angle = (float)((double)angle + 6.283185307179586);
  return (int)(angle * ((float)setup.bins * 0.15915494f)) & 63;
}

// Corner and score images of a region that lies inside the image; returns the number of corners.
template <class Pixel>
int fastN(const Pixel& at, const FastNSetup& setup, OrvRect region, bool inOrder, uint8_t* corner, int32_t cornerStep,
          uint8_t* score, int32_t scoreStep) {
  int count = 0;
  forEachElement({region.width, region.height}, 1, [&](int y, int x) {
    const int column = region.x + x, row = region.y + y;
    int own, other;
    int kind = fastNClass(at, column, row, setup, &own);
    for (int i = 0; i < 9 && kind && setup.mode & orvFastNNms; ++i) {
      fastNClass(at, column + i % 3 - 1, row + i / 3 - 1, setup, &other);
      if (own < other) kind = 0;
    }
    const int bin = kind && setup.mode & orvFastNOrientation ? fastNBin(at, column, row, setup, inOrder) : 0;
    store(corner, cornerStep, y, x, (uint8_t)(kind | bin));
    if (setup.mode & orvFastNScore) store(score, scoreStep, y, x, (uint8_t)(kind ? own : 0));
    count += kind != 0;
  });
  return count;
}

}  // namespace reference

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

// The ring as a drawing: its points in order, written by hand for radius 1 to 3; larger ones by their first octant.
inline std::vector<OrvPoint> fastNRing(int radius) {
  if (radius == 1) return {{0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}};
  const std::vector<OrvPoint> octant =
      radius == 2   ? std::vector<OrvPoint>{{0, 2}, {-1, 2}}
      : radius == 3 ? std::vector<OrvPoint>{{0, 3}, {-1, 3}, {-2, 2}}
      : radius == 5 ? std::vector<OrvPoint>{{0, 5}, {-1, 5}, {-2, 5}, {-3, 4}}
      : radius == 7 ? std::vector<OrvPoint>{{0, 7}, {-1, 7}, {-2, 7}, {-3, 6}, {-4, 6}, {-5, 5}}
                    : std::vector<OrvPoint>{{0, 9}, {-1, 9}, {-2, 9}, {-3, 9}, {-4, 8}, {-5, 8}, {-6, 7}};
  std::vector<OrvPoint> quarter = octant;
  for (size_t i = octant.size(); i-- > 1;)
    if (octant[i].x != -octant[i].y) quarter.push_back({-octant[i].y, -octant[i].x});
  std::vector<OrvPoint> ring;
  for (int turn = 0; turn < 4; ++turn)
    for (OrvPoint& p : quarter) {
      ring.push_back(p);
      p = {-p.y, p.x};
    }
  if (radius == 9) ring[12] = {-9, -1};
  return ring;
}

// 0, or the class of a corner (64, 128); its score.
template <class Pixel>
int fastNClass(const Pixel& at, int x, int y, const FastNSetup& setup, int* score) {
  const auto ring = fastNRing(setup.radius);
  const int n = (int)ring.size();
  if (std::min(x, y) < setup.radius || x >= setup.image.width - setup.radius || y >= setup.image.height - setup.radius)
    return 0;
  const auto classOf = [&](int i) {
    const int d = at(x + ring[(size_t)(i % n)].x, y + ring[(size_t)(i % n)].y) - at(x, y);
    return d > setup.threshold ? 64 : d < -setup.threshold ? 128 : 0;
  };
  for (int start = 0; start < n; ++start) {
    const int kind = classOf(start);
    int length = 0;
    while (length < setup.arc && classOf(start + length) == kind) ++length;
    if (kind == 0 || length < setup.arc) continue;
    if (!score) return kind;
    *score = 0;
    for (int s = 0; s < n; ++s) {
      int least = 255;
      for (int i = s; i < s + setup.arc; ++i) {
        const int d = at(x + ring[(size_t)(i % n)].x, y + ring[(size_t)(i % n)].y) - at(x, y);
        least = std::min(least, kind == 64 ? d : -d);
      }
      *score = std::max(*score, least);
    }
    return kind;
  }
  return 0;
}

template <class Pixel>
int fastNBin(const Pixel& at, int x, int y, const FastNSetup& setup, bool inOrder) {
  const auto ring = fastNRing(setup.radius);
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
int fastN(const Pixel& at, const FastNSetup& setup, OrvRect region, bool inOrder, std::vector<uint8_t>& corners,
          std::vector<uint8_t>& scores) {
  const auto scoreAt = [&](int x, int y) {
    int score = 0;
    fastNClass(at, x, y, setup, &score);
    return score;
  };
  int count = 0;
  corners.assign((size_t)(region.width * region.height), 0);
  scores = corners;
  for (int y = 0; y < region.height; ++y)
    for (int x = 0; x < region.width; ++x) {
      const int column = region.x + x, row = region.y + y;
      int score = 0;
      const int kind = fastNClass(at, column, row, setup, &score);
      bool kept = kind != 0;
      for (int i = 0; i < 9 && kept && setup.mode & orvFastNNms; ++i)
        kept = score >= scoreAt(column + i % 3 - 1, row + i / 3 - 1);
      if (!kept) continue;
      const int bin = setup.mode & orvFastNOrientation ? fastNBin(at, column, row, setup, inOrder) : 0;
      corners[(size_t)(y * region.width + x)] = (uint8_t)(kind | bin);
      scores[(size_t)(y * region.width + x)] = (uint8_t)score;
      ++count;
    }
  return count;
}

}  // namespace reference

// Growing from markers with plain queues.
#pragma once
#include <algorithm>
#include <deque>
#include <vector>
#include "orvcv.h"

namespace reference {

// An image as a row of ints, with a ring.
struct Map {
  int width, height;
  std::vector<int> v;
  Map(OrvSize s, int ring) : width(s.width), height(s.height), v((size_t)((s.width + 2) * (s.height + 2)), ring) {}
  int& at(int x, int y) { return v[(size_t)((y + 1) * (width + 2) + x + 1)]; }
};
struct Step {
  int x, y;
};
constexpr Step around[8] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};

// The watershed by queues. Labels of `line` mark lines.
inline void watershed(Map& relief, Map& labels, int line, int norm, bool border4, bool border8) {
  const int n = norm == 1 ? 4 : 8;
  std::deque<Step> queues[256];
  const auto segment = [&](int u) { return u >= 1 && u < line; };
  for (int y = 0; y < labels.height; ++y)
    for (int x = 0; x < labels.width; ++x) {
      const int label = labels.at(x, y);
      if (label == 0) continue;
      for (int k = 0; k < n; ++k)
        if (labels.at(x + around[k].x, y + around[k].y) == 0) {
          queues[relief.at(x, y)].push_back({x, y});
          break;
        }
      for (int k = 0; k < (border8 ? 8 : border4 ? 4 : 0) && label != line; ++k) {
        const int u = labels.at(x + around[k].x, y + around[k].y);
        if (segment(u) && u != label) labels.at(x, y) = line;
      }
    }
  for (int level = 0; level < 256; ++level)
    while (!queues[level].empty()) {
      const Step p = queues[level].front();
      queues[level].pop_front();
      for (int k = 0; k < n; ++k) {
        const Step q = {p.x + around[k].x, p.y + around[k].y};
        if (labels.at(q.x, q.y) != 0) continue;
        queues[std::max(level, relief.at(q.x, q.y))].push_back(q);
        int v = labels.at(p.x, p.y);
        for (int i = 0; i < (border4 ? 4 : border8 ? 8 : 0); ++i) {
          const Step r = {q.x + around[i].x, q.y + around[i].y};
          const int u = labels.at(r.x, r.y);
          if ((r.x == p.x && r.y == p.y) || !segment(u) || u == v) continue;
          if (v < line) {
            v = line;
            break;
          }
          v = u;
        }
        labels.at(q.x, q.y) = v;
      }
    }
}

// Growing by gradient; difference(x, y, u, v) of two pixels.
template <class Difference>
void growByGradient(const Difference& difference, Map& labels, int norm, bool border4, bool border8) {
  const int n = norm == 1 ? 4 : 8;
  std::deque<Step> queues[256];
  for (int y = 0; y < labels.height; ++y)
    for (int x = 0; x < labels.width; ++x) {
      if (labels.at(x, y) != 0) continue;
      int m = 256;
      for (int k = 0; k < n; ++k) {
        const Step q = {x + around[k].x, y + around[k].y};
        if (labels.at(q.x, q.y) > 0 && labels.at(q.x, q.y) < 255) m = std::min(m, difference(x, y, q.x, q.y));
      }
      if (m == 256) continue;
      queues[m].push_back({x, y});
      labels.at(x, y) = 255;
    }
  for (int level = 0; level < 256; ++level) {
    if (queues[level].empty()) continue;
    const Step p = queues[level].front();
    queues[level].pop_front();
    int best = 256, chosen = 0;
    for (int k = 0; k < n; ++k) {
      const Step q = {p.x + around[k].x, p.y + around[k].y};
      const int label = labels.at(q.x, q.y);
      if (label == 0 || label == 255) continue;
      const int d = difference(p.x, p.y, q.x, q.y);
      if (d < best || (d == best && label < 254)) best = d, chosen = label;
    }
    int own = chosen;
    for (int k = 0; k < (border8 ? 8 : border4 ? 4 : 0); ++k) {
      const int label = labels.at(p.x + around[k].x, p.y + around[k].y);
      if (label >= 1 && label <= 253 && label != chosen) own = 254;
    }
    for (int k = 0; k < n; ++k) {
      const Step q = {p.x + around[k].x, p.y + around[k].y};
      if (labels.at(q.x, q.y) != 0) continue;
      queues[difference(p.x, p.y, q.x, q.y)].push_back(q);
      labels.at(q.x, q.y) = 255;
    }
    labels.at(p.x, p.y) = own;
    level = -1;  // the lowest queue, from the start
  }
}

}  // namespace reference

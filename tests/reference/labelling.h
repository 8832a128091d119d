// Connected regions and boundaries, pixel by pixel.
#pragma once
#include <vector>
#include "reference/pointwise.h"

namespace reference {

struct Regions {
  std::vector<int> number;  // of each pixel: 0 in no region, else from 1 on, by the region's first pixel
  std::vector<int> count;   // pixels of region n at n
};

// member(i) and joined(i, k) are about pixels y * width + x; joined is asked of touching members.
template <class Member, class Joined>
Regions regions(OrvSize size, bool corners, const Member& member, const Joined& joined) {
  Regions r = {std::vector<int>((size_t)(size.width * size.height)), {0}};
  std::vector<int> stack;
  for (int seed = 0; seed < size.width * size.height; ++seed) {
    if (r.number[(size_t)seed] != 0 || !member(seed)) continue;
    r.count.push_back(0);
    const int id = (int)r.count.size() - 1;
    r.number[(size_t)seed] = id;
    stack = {seed};
    while (!stack.empty()) {
      const int i = stack.back(), x = i % size.width, y = i / size.width;
      stack.pop_back();
      ++r.count[(size_t)id];
      for (int v = y - 1; v <= y + 1; ++v)
        for (int u = x - 1; u <= x + 1; ++u) {
          const int k = v * size.width + u;
          if (u < 0 || v < 0 || u >= size.width || v >= size.height || (!corners && u != x && v != y)) continue;
          if (r.number[(size_t)k] != 0 || !member(k) || !joined(i, k)) continue;
          r.number[(size_t)k] = id;
          stack.push_back(k);
        }
    }
  }
  return r;
}

template <class T>
void boundSegments(T* image, int32_t step, OrvSize size, T border, int32_t norm) {
  forEachElement(size, 1, [&](int y, int x) {
    const T pixel = load(image, step, y, x);
    const auto differs = [&](int u, int v) {
      if (u < 0 || u >= size.width || v < 0) return false;
      const T other = load(image, step, v, u);
      return other != border && other != pixel;
    };
    const bool corner = norm == 0 && (differs(x - 1, y - 1) || differs(x + 1, y - 1));
    if (corner || differs(x, y - 1) || differs(x - 1, y)) store(image, step, y, x, border);
  });
}

}  // namespace reference

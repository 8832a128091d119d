// Growing from markers with plain queues. Images are framed: rows of ints one behind the other, with a ring around.
#pragma once
#include <algorithm>
#include <array>
#include <deque>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

// Channel c of `channels`.
template <class T>
std::vector<int> framed(const T* image, int32_t step, OrvSize size, int ring, int channels = 1, int c = 0) {
  std::vector<int> all((size_t)((size.width + 2) * (size.height + 2)), ring);
  forEachElement(size, 1, [&](int y, int x) {
    all[(size_t)((y + 1) * (size.width + 2) + x + 1)] = load(image, step, y, x * channels + c);
  });
  return all;
}
// body(place) for each pixel of a framed image.
template <class Body>
void forEachPlace(OrvSize size, const Body& body) {
  forEachElement(size, 1, [&](int y, int x) { body((size_t)((y + 1) * (size.width + 2) + x + 1)); });
}
template <class T>
void unframe(const std::vector<int>& all, T* image, int32_t step, OrvSize size) {
  forEachElement(size, 1,
                 [&](int y, int x) { store(image, step, y, x, (T)all[(size_t)((y + 1) * (size.width + 2) + x + 1)]); });
}
// Left, right, up, down, then the corners.
inline std::array<int, 8> around(OrvSize size) {
  const int s = size.width + 2;
  return {-1, 1, -s, s, -s - 1, -s + 1, s - 1, s + 1};
}

// The watershed by queues. The highest label marks lines.
template <class T>
void watershed(const uint8_t* src, int32_t srcStep, T* markers, int32_t step, OrvSize size, int32_t norm, int32_t flags,
               uint8_t*) {
  const int n = norm == 1 ? 4 : 8, line = (T)-1, four = flags & orvWatershedBorder4,
            eight = flags & orvWatershedBorder8;
  const auto to = around(size);
  const std::vector<int> relief = framed(src, srcStep, size, 0);
  std::vector<int> label = framed(markers, step, size, line);
  std::deque<size_t> queues[256];
  const auto segment = [&](int u) { return u >= 1 && u < line; };
  forEachPlace(size, [&](size_t p) {
    const int own = label[p];
    if (own == 0) return;
    if (std::any_of(&to[0], &to[n], [&](int d) { return label[p + d] == 0; })) queues[relief[p]].push_back(p);
    for (int k = 0; k < (eight ? 8 : four ? 4 : 0); ++k)
      if (segment(label[p + to[k]]) && label[p + to[k]] != own) label[p] = line;
  });
  for (int level = 0; level < 256; ++level)
    for (; !queues[level].empty(); queues[level].pop_front()) {
      const size_t p = queues[level].front();
      for (int k = 0; k < n; ++k) {
        const size_t q = p + to[k];
        if (label[q] != 0) continue;
        queues[std::max(level, relief[q])].push_back(q);
        int v = label[p];
        for (int i = 0; i < (four ? 4 : eight ? 8 : 0); ++i) {
          const int u = label[q + to[i]];
          if (q + to[i] == p || !segment(u) || u == v) continue;
          const bool met = v < line;
          v = met ? line : u;
          if (met) break;
        }
        label[q] = v;
      }
    }
  unframe(label, markers, step, size);
}

// Growing by gradient, the largest difference of a channel: 255 waits, 254 marks lines.
template <int C>
void growByGradient(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t step, OrvSize size, int32_t norm,
                    int32_t flags, uint8_t*) {
  const int n = norm == 1 ? 4 : 8, lines = flags & orvWatershedBorder8 ? 8 : flags & orvWatershedBorder4 ? 4 : 0;
  const auto to = around(size);
  std::vector<int> planes[C], label = framed(markers, step, size, 255);
  for (int c = 0; c < C; ++c) planes[c] = framed(src, srcStep, size, 0, C, c);
  const auto difference = [&](size_t p, size_t q) {
    int most = 0;
    for (const auto& plane : planes) most = std::max(most, abs(plane[p] - plane[q]));
    return most;
  };
  std::deque<size_t> queues[256];
  forEachPlace(size, [&](size_t p) {
    int least = 256;
    for (int k = 0; k < n && label[p] == 0; ++k)
      if (const int u = label[p + to[k]]; u > 0 && u < 255) least = std::min(least, difference(p, p + to[k]));
    if (least < 256) queues[least].push_back(p), label[p] = 255;
  });
  for (;;) {
    const auto lowest = std::find_if(queues, queues + 256, [](const auto& queue) { return !queue.empty(); });
    if (lowest == queues + 256) break;
    const size_t p = lowest->front();
    lowest->pop_front();
    int best = 256, chosen = 0;
    for (int k = 0; k < n; ++k) {
      const int u = label[p + to[k]], d = difference(p, p + to[k]);
      if (u != 0 && u != 255 && (d < best || (d == best && u < 254))) best = d, chosen = u;
    }
    int own = chosen;
    for (int k = 0; k < lines; ++k)
      if (const int u = label[p + to[k]]; u >= 1 && u <= 253 && u != chosen) own = 254;
    for (int k = 0; k < n; ++k) {
      if (label[p + to[k]] != 0) continue;
      queues[difference(p, p + to[k])].push_back(p + to[k]);
      label[p + to[k]] = 255;
    }
    label[p] = own;
  }
  unframe(label, markers, step, size);
}

}  // namespace reference

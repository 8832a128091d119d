// Flood fills, one pixel at a time. Records hold the parent's columns and the pixels taken are noted one by one.
#pragma once
#include <math.h>
#include <algorithm>
#include <vector>
#include "orvcv.h"
#include "reference/pointwise.h"

namespace reference {

enum class Rule { equal, range, grad };

template <class T>
struct FloodArguments {
  T* data;
  int32_t step;
  OrvSize size;
  OrvPoint seed;
  const T *value, *minDelta, *maxDelta;
  OrvConnectedComp* region;
  uint8_t* buffer;
};

// Writes `region` if the fill gets that far.
template <class T>
void flood(const FloodArguments<T>& a, int channels, Rule rule, bool corners) {
  struct Record {
    int y, left, right, parentLeft, parentRight, dir;
  };
  const int w = a.size.width, h = a.size.height, reach = corners ? 1 : 0;
  std::vector<T> first;  // the image before the fill
  forEachElement(a.size, channels, [&](int y, int x) { first.push_back(load(a.data, a.step, y, x)); });
  const auto at = [&](int x, int y) { return &first[(size_t)((y * w + x) * channels)]; };
  const T* const s = at(a.seed.x, a.seed.y);
  if (rule != Rule::grad && std::equal(s, s + channels, a.value)) return;

  const auto matches = [&](const T* p, const T* ref) {
    for (int k = 0; k < channels; ++k) {
      if (rule == Rule::equal && !(p[k] == s[k])) return false;
      if (rule == Rule::equal) continue;
      const T low = a.minDelta[k], high = a.maxDelta[k], r = rule == Rule::range ? s[k] : ref[k];
      if constexpr (std::is_floating_point<T>::value) {
        if (rule == Rule::range && !(p[k] >= r - low && r + high >= p[k])) return false;
        if (rule == Rule::grad && fabsf(p[k] + (low - high) * 0.5f - r) > 0.5f * (low + high)) return false;
      } else {
        if ((int64_t)p[k] < (int64_t)r - low || (int64_t)p[k] > (int64_t)r + high) return false;
      }
    }
    return true;
  };
  std::vector<char> taken((size_t)(w * h));
  const auto open = [&](int x, int y) { return x >= 0 && x < w && !taken[(size_t)(y * w + x)]; };
  // Near a touching pixel of the span that was popped.
  const auto enters = [&](int x, int y, const Record& from) {
    if (rule != Rule::grad) return matches(at(x, y), nullptr);
    for (int k = std::max(x - reach, from.left); k <= std::min(x + reach, from.right); ++k)
      if (matches(at(x, y), at(k, from.y))) return true;
    return false;
  };
  const auto take = [&](int x, int y, const Record& from) {
    Record run = {y, x, x, from.left, from.right, 0};
    while (open(run.left - 1, y) && matches(at(run.left - 1, y), at(run.left, y))) --run.left;
    while (open(run.right + 1, y) &&
           (matches(at(run.right + 1, y), at(run.right, y)) || enters(run.right + 1, y, from)))
      ++run.right;
    for (int k = run.left; k <= run.right; ++k) taken[(size_t)(y * w + k)] = 1;
    return run;
  };
  std::vector<Record> stack;
  const size_t capacity = rule == Rule::range ? (size_t)(w * h / 4) : 0;
  const auto push = [&](const Record& r) {
    stack.push_back(r);
    if (stack.size() == capacity) stack.clear();
  };

  Record run = take(a.seed.x, a.seed.y, {0, 0, -1, 0, 0, 0});
  int x0 = run.left, x1 = run.right, y0 = run.y, y1 = run.y;
  run.parentLeft = run.right + 1, run.parentRight = run.right;
  run.dir = rule != Rule::grad && run.y == h - 1 ? -1 : 1;
  push(run);
  while (!stack.empty()) {
    const Record p = stack.back();
    stack.pop_back();
    x0 = std::min(x0, p.left), x1 = std::max(x1, p.right), y0 = std::min(y0, p.y), y1 = std::max(y1, p.y);
    const int left = std::max(p.left - reach, 0), right = std::min(p.right + reach, w - 1);
    const auto scan = [&](int y, int from, int to, int dir) {
      if (y < 0 || y >= h) return;
      for (int x = from; x <= to; ++x)
        if (open(x, y) && enters(x, y, p)) {
          Record child = take(x, y, p);
          child.dir = dir;
          push(child);
          x = child.right + 1;
        }
    };
    scan(p.y - p.dir, left, right, p.dir);
    scan(p.y + p.dir, left, p.parentLeft - 1, -p.dir);
    scan(p.y + p.dir, p.parentRight + 1, right, -p.dir);
  }
  *a.region = {0, {0, 0, 0}, {x0, y0, x1 - x0 + 1, y1 - y0 + 1}};
  for (int k = 0; k < channels; ++k) a.region->value[k] = (double)a.value[k];
  forEachElement(a.size, channels, [&](int y, int x) {
    if (!taken[(size_t)(y * w + x / channels)]) return;
    store(a.data, a.step, y, x, a.value[x % channels]);
    a.region->area += x % channels == 0;
  });
}

}  // namespace reference

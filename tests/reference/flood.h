// Flood fills, one pixel at a time: the pixels taken are noted one by one, and written in the end.
#pragma once
#include <math.h>
#include <algorithm>
#include <vector>
#include "orvcv.h"
#include "reference/pointwise.h"

namespace reference {

enum class Rule { equal, range, grad };

// Writes `region` if the fill gets that far. `low` and `high` are read by the rules that have deltas.
template <class T>
void flood(T* data, int32_t step, OrvSize size, OrvPoint seed, const T* value, const T* low, const T* high,
           OrvConnectedComp* region, int channels, Rule rule, bool corners) {
  struct Run {
    int y, left, right, ahead;
  };
  const int w = size.width, h = size.height, reach = corners ? 1 : 0;
  std::vector<T> first;  // the image before the fill
  forEachElement(size, channels, [&](int y, int x) { first.push_back(load(data, step, y, x)); });
  const auto at = [&](int x, int y) { return &first[(size_t)((y * w + x) * channels)]; };
  const T* const s = at(seed.x, seed.y);
  if (rule != Rule::grad && std::equal(s, s + channels, value)) return;

  // Whether p is near its neighbour, or near the seed.
  const auto matches = [&](const T* p, const T* neighbour) {
    for (int k = 0; k < channels; ++k) {
      const T r = rule == Rule::grad ? neighbour[k] : s[k];
      bool near = p[k] == r;
      if (rule != Rule::equal) {
        if constexpr (std::is_integral<T>::value)
          near = (int64_t)p[k] >= (int64_t)r - low[k] && (int64_t)p[k] <= (int64_t)r + high[k];
        else if (rule == Rule::range) near = p[k] >= r - low[k] && r + high[k] >= p[k];
        else near = !(fabsf(p[k] + (low[k] - high[k]) * 0.5f - r) > 0.5f * (low[k] + high[k]));
      }
      if (!near) return false;
    }
    return true;
  };
  std::vector<char> taken((size_t)(w * h));
  const auto open = [&](int x, int y) { return x >= 0 && x < w && !taken[(size_t)(y * w + x)]; };
  // Whether a touching pixel of the run that was popped lets (x, y) in.
  const auto enters = [&](int x, int y, const Run& from) {
    for (int k = std::max(x - reach, from.left); k <= std::min(x + reach, from.right); ++k)
      if (matches(at(x, y), at(k, from.y))) return true;
    return false;
  };
  std::vector<Run> stack;
  const size_t capacity = rule == Rule::range ? (size_t)(w * h / 4) : 0;
  const auto take = [&](int x, int y, const Run& from, int ahead) {
    Run run = {y, x, x, ahead};
    while (open(run.left - 1, y) && matches(at(run.left - 1, y), at(run.left, y))) --run.left;
    while (open(run.right + 1, y) &&
           (matches(at(run.right + 1, y), at(run.right, y)) || enters(run.right + 1, y, from)))
      ++run.right;
    for (int k = run.left; k <= run.right; ++k) taken[(size_t)(y * w + k)] = 1;
    stack.push_back(run);
    if (stack.size() == capacity) stack.clear();
    return run;
  };
  const Run start = take(seed.x, seed.y, {0, 0, -1, 0}, rule != Rule::grad && seed.y == h - 1 ? 1 : -1);
  int x0 = start.left, x1 = start.right, y0 = seed.y, y1 = seed.y;
  while (!stack.empty()) {
    const Run p = stack.back();
    stack.pop_back();
    x0 = std::min(x0, p.left), x1 = std::max(x1, p.right), y0 = std::min(y0, p.y), y1 = std::max(y1, p.y);
    for (const int toward : {p.ahead, -p.ahead})
      for (int x = std::max(p.left - reach, 0), y = p.y + toward; x <= std::min(p.right + reach, w - 1); ++x)
        if (y >= 0 && y < h && open(x, y) && enters(x, y, p)) x = take(x, y, p, toward).right + 1;
  }
  *region = {0, {0, 0, 0}, {x0, y0, x1 - x0 + 1, y1 - y0 + 1}};
  for (int k = 0; k < channels; ++k) region->value[k] = (double)value[k];
  forEachElement(size, channels, [&](int y, int x) {
    if (!taken[(size_t)(y * w + x / channels)]) return;
    store(data, step, y, x, value[x % channels]);
    region->area += x % channels == 0;
  });
}

}  // namespace reference

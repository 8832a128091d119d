// Folds under a mask by their definition, on images that are plain tables of numbers with a margin around them.
#pragma once
#include <algorithm>
#include <vector>
#include "reference/border.h"

namespace reference {

struct MaskShape {
  int width, height;
  std::vector<uint8_t> bytes;
  int anchorX = (width - 1) >> 1, anchorY = (height - 1) >> 1;

  MaskShape turned() const {
    return {width, height, {bytes.rbegin(), bytes.rend()}, width - 1 - anchorX, height - 1 - anchorY};
  }
};

// Pixels -margin .. width + margin - 1, and rows likewise.
template <class T>
struct Grid {
  int width, height, channels, margin;
  std::vector<T> values;

  Grid(int w, int h, int c, int m)
      : width(w), height(h), channels(c), margin(m), values((size_t)((w + 2 * m) * (h + 2 * m) * c)) {}
  T& at(int x, int y, int c) {
    return values[(size_t)(((y + margin) * (width + 2 * margin) + x + margin) * channels + c)];
  }
};

// A part of a grid, with the sides of it that are in memory.
struct Part {
  int left, top, right, bottom;  // right and bottom are exclusive
  int sides;
};

// The fold of a part; what lies beyond it and isn't in memory repeats the nearest pixel of the part.
template <class T>
Grid<T> foldMask(Grid<T> in, const Part& p, const MaskShape& mask, bool dilate) {
  Grid<T> out(in.width, in.height, in.channels, in.margin);
  const auto nearest = [&](int at, int low, int high, int before, int after) {
    return low + walkBorder(orvBorderRepl, at - low, high - low, p.sides & before, p.sides & after);
  };
  const bool empty = std::count(mask.bytes.begin(), mask.bytes.end(), 0) == mask.width * mask.height;
  for (int y = p.top; y < p.bottom; ++y)
    for (int x = p.left; x < p.right; ++x)
      for (int c = 0; c < in.channels; ++c) {
        bool first = true;
        T best = in.at(x, y, c);
        for (int i = 0; i < mask.height && !empty; ++i)
          for (int j = 0; j < mask.width; ++j) {
            if (!mask.bytes[(size_t)(i * mask.width + j)]) continue;
            const T v =
                in.at(nearest(x + j - mask.anchorX, p.left, p.right, orvBorderInMemLeft, orvBorderInMemRight),
                      nearest(y + i - mask.anchorY, p.top, p.bottom, orvBorderInMemTop, orvBorderInMemBottom), c);
            if (first || (dilate ? v > best : v < best)) best = v;
            first = false;
          }
        out.at(x, y, c) = best;
      }
  return out;
}

// An opening (or closing): the first fold on a part that reaches beyond the sides in memory as far as the second looks.
template <class T>
Grid<T> openMask(const Grid<T>& in, int sides, const MaskShape& mask, bool close) {
  const MaskShape turned = mask.turned();
  const auto reach = [&](int flag, int distance) { return sides & flag ? distance : 0; };
  const Part wide = {-reach(orvBorderInMemLeft, turned.anchorX), -reach(orvBorderInMemTop, turned.anchorY),
                     in.width + reach(orvBorderInMemRight, turned.width - turned.anchorX - 1),
                     in.height + reach(orvBorderInMemBottom, turned.height - turned.anchorY - 1), sides};
  return foldMask(foldMask(in, wide, mask, close), {0, 0, in.width, in.height, sides}, turned, !close);
}

}  // namespace reference

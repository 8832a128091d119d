// The border rule by walking: away from the end of the line, pixel by pixel.
#pragma once
#include <functional>
#include <vector>
#include "framework/subject.h"

namespace reference {

constexpr int constant = -1000000;  // no pixel: the border value

// The pixel that the walk from pixel 0 or n - 1 reaches at p.
inline int walkBorder(int kind, int p, int n) {
  if (p >= 0 && p < n) return p;
  if (kind == orvBorderConst) return constant;
  int at = p < 0 ? 0 : n - 1, direction = p < 0 ? -1 : 1;
  for (int steps = p < 0 ? -p : p - n + 1; steps > 0; --steps) {
    const bool atEnd = direction < 0 ? at == 0 : at == n - 1;
    if (!atEnd) {
      at += direction;
    } else if (kind == orvBorderWrap) {
      at = direction < 0 ? n - 1 : 0;
    } else if (kind == orvBorderMirr) {
      direction = -direction;
      if (n > 1) at += direction;
    } else if (kind == orvBorderMirrR) {
      direction = -direction;  // the end pixel counts once more
    }
  }
  return at;
}

inline int walkBorder(int kind, int p, int n, bool memoryBefore, bool memoryBehind) {
  return (p < 0 && memoryBefore) || (p >= n && memoryBehind) ? p : walkBorder(kind, p, n);
}

// What stands at (x, y) of a bordered region: rows first, then columns.
template <class T>
T borderedPixel(const std::function<T(int, int)>& pixel, OrvSize size, int x, int y, int kind, int sides, T value) {
  const int row = walkBorder(kind, y, size.height, sides & orvBorderInMemTop, sides & orvBorderInMemBottom);
  const int column = walkBorder(kind, x, size.width, sides & orvBorderInMemLeft, sides & orvBorderInMemRight);
  return row == constant || column == constant ? value : pixel(column, row);
}

}  // namespace reference

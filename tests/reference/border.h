// The border rule by walking: away from the end of the line, pixel by pixel.
#pragma once
#include "reference/pointwise.h"

namespace reference {

constexpr int noPixel = INT32_MIN;  // the border value stands there

// The pixel that the walk from pixel 0 or n - 1 reaches at p.
inline int walkBorder(int kind, int p, int n) {
  if (p >= 0 && p < n) return p;
  if (kind == orvBorderConst) return noPixel;
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

// The same by a border type: its kind, the flags of the sides `before` and `behind`, four sides for orvBorderInMem.
inline int borderPixel(int type, int p, int n, int before = orvBorderInMemLeft, int behind = orvBorderInMemRight) {
  const bool all = (type & 15) == orvBorderInMem;
  return walkBorder(type & 15, p, n, all || type & before, all || type & behind);
}
inline int borderRow(int type, int y, int height) {
  return borderPixel(type, y, height, orvBorderInMemTop, orvBorderInMemBottom);
}

// What stands at (x, y) of a bordered region: rows first, then columns inside the row.
template <class T>
T borderedPixel(const T* src, int32_t step, OrvSize roi, int x, int y, int type, T value, int channels = 1,
                int channel = 0) {
  const int row = borderRow(type, y, roi.height), column = borderPixel(type, x, roi.width);
  return row == noPixel || column == noPixel ? value : load(src, step, row, column * channels + channel);
}

}  // namespace reference

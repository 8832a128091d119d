#include "marks.h"
#include <math.h>
#include <algorithm>

namespace demo {

Bytes darkened(const Bytes& gray) {
  Bytes canvas(gray.width, gray.height, 3);
  for (size_t i = 0; i < canvas.pixels.size(); ++i) canvas.pixels[i] = (uint8_t)(gray.pixels[i / 3] * 3 / 5);
  return canvas;
}

void dot(Bytes& canvas, float x, float y, Colour colour) {
  const int column = (int)lroundf(x), row = (int)lroundf(y);
  if (column < 0 || row < 0 || column >= canvas.width || row >= canvas.height) return;
  std::copy(colour.begin(), colour.end(), canvas.at(column, row));
}

void line(Bytes& canvas, OrvPoint32f from, OrvPoint32f to, Colour colour) {
  const float dx = to.x - from.x, dy = to.y - from.y;
  const int steps = (int)(2 * std::max(fabsf(dx), fabsf(dy))) + 1;
  for (int i = 0; i <= steps; ++i) {
    const float t = (float)i / (float)steps;
    dot(canvas, from.x + t * dx, from.y + t * dy, colour);
  }
}

void circle(Bytes& canvas, float x, float y, float radius, Colour colour) {
  const int steps = (int)(8 * radius) + 8;
  for (int i = 0; i < steps; ++i) {
    const float a = 6.2831853f * (float)i / (float)steps;
    dot(canvas, x + radius * cosf(a), y + radius * sinf(a), colour);
  }
}

}  // namespace demo

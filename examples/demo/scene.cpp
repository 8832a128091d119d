#include "scene.h"
#include <math.h>
#include <algorithm>

namespace demo {
namespace {

struct Colour {
  float r, g, b;
};

Colour mix(Colour a, Colour b, float t) {
  t = std::min(std::max(t, 0.f), 1.f);
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

// A value in [0, 1) for each pixel, without pattern.
float grain(int x, int y) {
  uint32_t h = (uint32_t)x * 374761393u + (uint32_t)y * 668265263u;
  h = (h ^ (h >> 13)) * 1274126177u;
  return (float)((h ^ (h >> 16)) & 0xFFFF) / 65536.f;
}

// Height of the ridge of hill `n` at x.
float ridge(int n, float x) {
  const float f = (float)n;
  return 215.f + 52.f * f + (30.f - 6.f * f) * sinf(x * (0.008f + 0.004f * f) + 1.7f * f) +
         9.f * sinf(x * (0.031f + 0.007f * f) + 4.f * f);
}

Colour sky(float x, float y) {
  const Colour high{24, 38, 92}, middle{196, 92, 108}, low{255, 196, 120};
  const Colour c = y < 170 ? mix(high, middle, y / 170) : mix(middle, low, (y - 170) / 110);
  const float fromSun = hypotf(x - 540, y - 196);
  if (fromSun < 34) return {255, 240, 200};
  return mix({255, 226, 160}, c, fromSun / 190);
}

// Water mirrors the sky in waves.
Colour water(int x, int y) {
  const float depth = (float)y - 372;
  const float wave = sinf((float)x * 0.05f + 30.f * sinf(depth * 0.045f)) * sinf(depth * 0.9f);
  return mix(sky((float)x + 14 * wave, 300 - depth * 1.4f), {16, 28, 60}, 0.32f + 0.18f * wave + depth / 500);
}

// A row of firs on the last ridge.
bool fir(int x, int y) {
  const int slot = x / 26;
  const float middle = (float)(slot * 26 + 13), tall = 26.f + 34.f * grain(slot, 7), foot = ridge(2, middle) + 6;
  const float up = foot - (float)y;
  if (up < 0 || up > tall || grain(slot, 3) < 0.35f) return false;
  const float tier = fmodf(up, 11.f) / 11.f;
  return fabsf((float)x - middle) < (1 - up / tall) * 10.f + 2.5f * (1 - tier);
}

// A mast with guy ropes, one pixel wide.
bool mast(int x, int y) {
  if (y < 92 || y > 300) return false;
  const int rope = (y - 92) / 3;
  return x == 150 || x == 150 - rope || x == 150 + rope || ((y - 92) % 26 == 0 && abs(x - 150) < 9);
}

Colour pixel(int x, int y) {
  if (y > 372) return water(x, y);
  if (fir(x, y)) return {14, 24, 30};
  for (int n = 2; n >= 0; --n)
    if ((float)y > ridge(n, (float)x)) {
      const Colour hills[] = {{122, 84, 118}, {70, 62, 96}, {26, 42, 46}};
      return mix(hills[n], {10, 18, 26}, 0.5f * grain(x, y) * (float)n / 2);
    }
  if (mast(x, y)) return {20, 20, 34};
  return sky((float)x, (float)y);
}

}  // namespace

Bytes drawScene() {
  Bytes image(768, 512, 3);
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const Colour c = pixel(x, y);
      const float noise = 4.f * (grain(x, y) - 0.5f);
      uint8_t* p = image.at(x, y);
      for (const float v : {c.r, c.g, c.b}) *p++ = (uint8_t)std::min(std::max(v + noise, 0.f), 255.f);
    }
  return image;
}

}  // namespace demo

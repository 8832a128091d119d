// Sequences made from a still picture.
#include <math.h>
#include <algorithm>
#include "detect/chance.h"
#include "sequence.h"

namespace motion {

using demo::Bytes;

namespace {

constexpr int frameWidth = 480, frameHeight = 320;

// Means of 2 x 2 pixels until the picture is not much larger than a frame: a camera doesn't skip pixels either.
Bytes reduced(Bytes picture) {
  while (picture.width >= 2 * frameWidth + 100 && picture.height >= 2 * frameHeight) {
    Bytes half(picture.width / 2, picture.height / 2, 3);
    for (int y = 0; y < half.height; ++y)
      for (int x = 0; x < half.width; ++x)
        for (int c = 0; c < 3; ++c)
          half.at(x, y)[c] = (uint8_t)((picture.at(2 * x, 2 * y)[c] + picture.at(2 * x + 1, 2 * y)[c] +
                                        picture.at(2 * x, 2 * y + 1)[c] + picture.at(2 * x + 1, 2 * y + 1)[c] + 2) /
                                       4);
    picture = half;
  }
  return picture;
}

// What a view shows, between pixels.
Bytes shown(const Bytes& picture, const View& view, OrvSize size) {
  Bytes frame(size.width, size.height, 3);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) {
      const float u = view.x + view.scale * ((float)x - (float)size.width / 2);
      const float v = view.y + view.scale * ((float)y - (float)size.height / 2);
      const float px = std::clamp(u, 0.f, (float)picture.width - 1.01f);
      const float py = std::clamp(v, 0.f, (float)picture.height - 1.01f);
      const int i = (int)px, k = (int)py;
      const float fx = px - (float)i, fy = py - (float)k;
      const uint8_t *a = picture.at(i, k), *b = picture.at(i, k + 1);
      for (int c = 0; c < 3; ++c)
        frame.at(x, y)[c] = (uint8_t)((1 - fy) * ((1 - fx) * (float)a[c] + fx * (float)a[c + 3]) +
                                      fy * ((1 - fx) * (float)b[c] + fx * (float)b[c + 3]) + 0.5f);
    }
  return frame;
}

// Light and the sensor's noise, of about `noise` levels.
void expose(Bytes& frame, float gain, float noise, detect::Chance& chance) {
  for (uint8_t& v : frame.pixels) {
    float grain = 0;
    for (int i = 0; i < 4; ++i) grain += chance.in(-0.5f, 0.5f);
    v = (uint8_t)std::clamp((float)v * gain + grain * noise * 1.73f + 0.5f, 0.f, 255.f);
  }
}

// Something that passes: a ball, a cart or a post, drawn in a square around (x, y).
struct Thing {
  int kind;
  float x, y, radius;
  uint8_t colours[2][3];

  // Whether it covers the place (u, v), -1 to 1, and in which of its colours.
  bool covers(float u, float v, int& colour) const {
    colour = 0;
    switch (kind) {
      case 0:
        colour = fabsf(u - v) < 0.3f;
        return u * u + v * v < 1;
      case 1: {
        const float wheel = std::min(hypotf(u - 0.55f, v - 0.5f), hypotf(u + 0.55f, v - 0.5f));
        colour = wheel < 0.25f || (v < -0.05f && fabsf(u) < 0.4f);
        return wheel < 0.25f || (fabsf(u) < 1 && v > 0 && v < 0.5f) || (fabsf(u) < 0.55f && v > -0.4f && v <= 0);
      }
      default:
        colour = (int)((v + 1) * 4) % 2;
        return fabsf(u) < 0.3f && fabsf(v) < 1;
    }
  }
};

// Draws a thing and the shadow beside its foot; marks the thing, not the shadow, in the mask.
void draw(Bytes& frame, Bytes& mask, const Thing& t) {
  const auto r = (int)(2 * t.radius);
  for (int y = std::max((int)t.y - r, 0); y < std::min((int)t.y + r, frame.height); ++y)
    for (int x = std::max((int)t.x - r, 0); x < std::min((int)t.x + r, frame.width); ++x) {
      const float u = ((float)x - t.x) / t.radius, v = ((float)y - t.y) / t.radius;
      int colour;
      if (t.covers(u, v, colour)) {
        std::copy(t.colours[colour], t.colours[colour] + 3, frame.at(x, y));
        *mask.at(x, y) = 255;
      } else if (hypotf((u - 0.7f) / 0.9f, (v - 0.9f) / 0.22f) < 1 && *mask.at(x, y) == 0) {
        for (int c = 0; c < 3; ++c) frame.at(x, y)[c] = (uint8_t)(frame.at(x, y)[c] * 7 / 10);
      }
    }
}

}  // namespace

Sequence movingCamera(const Bytes& source, int frames) {
  const Bytes picture = reduced(source);
  const OrvSize size{std::min(picture.width, frameWidth), std::min(picture.height, frameHeight)};
  const float w = (float)picture.width, h = (float)picture.height;
  const float whole = 0.8f * std::min(w / (float)size.width, h / (float)size.height);
  detect::Chance chance(7);
  Sequence s;
  for (int i = 0; i < frames; ++i) {
    const float t = (float)i / (float)std::max(frames - 1, 1), scale = whole * (1 - 0.3f * t);
    const float roomX = w - (float)size.width * scale, roomY = h - (float)size.height * scale;
    s.views.push_back({w / 2 + 0.4f * roomX * sinf(3 * t), h / 2 + 0.4f * roomY * sinf(5 * t), scale});
    s.frames.push_back(shown(picture, s.views.back(), size));
    expose(s.frames.back(), 1, 3, chance);
  }
  return s;
}

Sequence stillCamera(const Bytes& source, int frames) {
  const Bytes picture = reduced(source);
  const OrvSize size{std::min(picture.width, frameWidth), std::min(picture.height, frameHeight)};
  const float w = (float)size.width, h = (float)size.height;
  Sequence s;
  s.scene = shown(picture, {(float)picture.width / 2, (float)picture.height / 2, 1}, size);
  detect::Chance chance(11);
  for (int i = 0; i < frames; ++i) {
    Bytes frame = s.scene, mask(size.width, size.height, 1);
    // seconds, at 25 frames each, since the first thing came
    const float t = (float)(i - 30) / 25, r = h / 10;
    const Thing things[] = {
        {1, fmodf(60 * t, w + 4 * r) - 2 * r, 0.75f * h, 1.4f * r, {{190, 40, 50}, {160, 200, 215}}},
        {0,
         w + 2 * r - fmodf(95 * t, w + 4 * r),
         0.4f * h - 0.2f * h * fabsf(sinf(3 * t)),
         r,
         {{40, 90, 200}, {240, 220, 90}}},
        {2, w * (0.5f + 0.3f * sinf(0.8f * t)), 0.55f * h, 1.3f * r, {{245, 245, 240}, {20, 120, 60}}}};
    if (t >= 0)
      for (const Thing& thing : things) draw(frame, mask, thing);
    const float light = 1 + 0.06f * sinf(0.9f * t);
    if (i == frames - 1) expose(s.scene, light, 0, chance);
    expose(frame, light, 3, chance);
    s.frames.push_back(frame);
    s.truth.push_back(mask);
  }
  return s;
}

}  // namespace motion

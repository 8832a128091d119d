#include "drawing.h"
#include <math.h>
#include <algorithm>
#include "chance.h"

namespace detect {
namespace {

struct Colour {
  float r, g, b;
};
Colour operator*(Colour c, float f) { return {c.r * f, c.g * f, c.b * f}; }
Colour mix(Colour a, Colour b, float t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}
Colour anyColour(Chance& c) { return {c.in(20, 235), c.in(20, 235), c.in(20, 235)}; }

bool inEllipse(float u, float v, float a, float b) { return u * u / (a * a) + v * v / (b * b) < 1; }

// A thing in a square around (x, y); half its side is `radius`. paint() is asked at (u, v) from -1 to 1 and tells
// whether the thing covers that place, and its colour there.
struct Thing {
  float x, y, radius, lightX, lightY;
  Colour base, other, eye;
  float p[6];
  int kind;

  bool paint(float u, float v, Colour& colour) const;
};
enum { face, headstand, ball, box, stripes, spots, kinds };

Thing anyThing(Chance& c, int kind, float x, float y, float radius) {
  Thing t{x,  y,   radius, c.in(-0.35f, 0.35f), c.in(-0.25f, 0.2f), anyColour(c), anyColour(c), anyColour(c) * 0.5f,
          {}, kind};
  if (kind == face || kind == headstand) {
    const float tan = c.in(0, 1);
    t.base = mix({245, 205, 170}, {130, 85, 60}, tan);
    t.other = mix({40, 28, 22}, {190, 140, 70}, c.in(0, 1) * (1 - tan));
  }
  for (float& p : t.p) p = c.in(0, 1);
  return t;
}

// Head, hair, eyes with brows, nose and mouth; the six chances move and size them.
bool paintFace(const Thing& t, float u, float v, Colour& colour) {
  const float* p = t.p;
  const bool head = inEllipse(u, v, 0.7f + 0.1f * p[0], 0.95f);
  const float hairline = -0.52f + 0.2f * p[1] + 0.12f * cosf((4 + 4 * p[2]) * u);
  if (v < hairline && inEllipse(u, v, 0.82f + 0.08f * p[0], 1)) {
    colour = t.other;
    return true;
  }
  if (!head) return false;
  const float side = fabsf(u), apart = 0.3f + 0.06f * p[3], level = -0.12f + 0.06f * p[4];
  const float smile = 0.52f + 0.3f * (p[5] - 0.2f) * (0.09f - u * u) * 4;
  colour = t.base;
  if (inEllipse(side - apart, v - level, 0.19f, 0.07f + 0.06f * p[2])) colour = {240, 240, 235};
  if (inEllipse(side - apart, v - level, 0.09f, 0.1f)) colour = t.eye;
  if (fabsf(v - level + 0.2f + 0.04f * p[1]) < 0.045f && fabsf(side - apart) < 0.2f) colour = t.other * 0.8f;
  if (v > 0 && v < 0.26f && side < 0.03f + 0.3f * v) colour = t.base * 0.86f;
  if (fabsf(v - smile) < 0.05f + 0.03f * p[0] && side < 0.3f + 0.1f * p[4]) colour = {140, 50, 50};
  return true;
}

bool Thing::paint(float u, float v, Colour& colour) const {
  bool covers = fabsf(u) < 1 && fabsf(v) < 1;
  const float stripe = 0.1f + 0.3f * p[0];
  colour = base;
  switch (kind) {
    case face:
      covers = covers && paintFace(*this, u, v, colour);
      break;
    case headstand:
      covers = covers && paintFace(*this, u, -v, colour);
      break;
    case ball:
      covers = inEllipse(u, v, 0.6f + 0.4f * p[0], 0.6f + 0.4f * p[1]);
      break;
    case box:
      covers = fabsf(u) < 0.4f + 0.6f * p[0] && fabsf(v) < 0.4f + 0.6f * p[1];
      if (fabsf(u) < 0.3f * p[2] || fabsf(v) < 0.2f * p[3]) colour = other;
      break;
    case stripes:
      if (fmodf(u * p[1] + v * (1 - p[1]) + 4, 2 * stripe) < stripe) colour = other;
      break;
    default:
      covers = inEllipse(u, v, 1, 0.9f);
      if (hypotf(fmodf(u + 2.2f, 0.7f) - 0.35f, fmodf(v + 2.1f, 0.6f) - 0.3f) < 0.15f + 0.12f * p[2]) colour = other;
  }
  colour = colour * (1 + lightX * u + lightY * v);
  return covers;
}

// Clouds of two colours.
struct Background {
  Colour a, b;
  float p[6];
  explicit Background(Chance& c) : a(anyColour(c)), b(anyColour(c)) {
    for (float& q : p) q = c.in(0, 1);
  }
  Colour at(float x, float y) const {
    const float wave = sinf(x * 0.03f * p[0] + 5 * p[1]) + sinf(y * 0.04f * p[2] + 5 * p[3]) +
                       0.5f * sinf((x + y) * 0.12f * p[4]) + 0.4f * sinf((x - y) * 0.31f * p[5]);
    return mix(a, b, 0.5f + wave * 0.17f);
  }
};

// Draws things from the first to the last over the background, four samples a pixel, with a little noise.
demo::Bytes draw(OrvSize size, const Background& background, const std::vector<Thing>& things, Chance& c) {
  demo::Bytes image(size.width, size.height, 3);
  const float noise = c.in(1, 9), contrast = c.in(0.55f, 1);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) {
      Colour sum{0, 0, 0};
      for (int i = 0; i < 4; ++i) {
        const float px = (float)x + 0.25f + 0.5f * (float)(i & 1), py = (float)y + 0.25f + 0.25f * (float)(i & 2);
        Colour colour = background.at(px, py);
        for (size_t k = things.size(); k-- > 0;) {
          const Thing& t = things[k];
          Colour over;
          const float u = (px - t.x) / t.radius, v = (py - t.y) / t.radius;
          if (fabsf(u) > 1 || fabsf(v) > 1 || !t.paint(u, v, over)) continue;
          colour = over;
          break;
        }
        sum = {sum.r + colour.r / 4, sum.g + colour.g / 4, sum.b + colour.b / 4};
      }
      const float grain = c.in(-noise, noise);
      uint8_t* p = image.at(x, y);
      for (const float v : {sum.r, sum.g, sum.b})
        *p++ = (uint8_t)std::min(std::max(40 + (v - 40) * contrast + grain, 0.f), 255.f);
    }
  return image;
}

}  // namespace

Scene drawScene(uint32_t seed, OrvSize size, int faces) {
  Chance c(seed);
  Scene scene;
  const Background background(c);
  std::vector<Thing> things;
  const float shorter = (float)std::min(size.width, size.height);
  for (int i = 0; i < 14; ++i) {
    const int kind = c.whole(headstand, kinds - 1);
    things.push_back(
        anyThing(c, kind, c.in(0, (float)size.width), c.in(0, (float)size.height), c.in(0.05f, 0.25f) * shorter));
  }
  for (int tries = 0; tries < 1000 && (int)scene.faces.size() < faces; ++tries) {
    const float radius = c.in(0.07f, 0.2f) * shorter;
    const float x = c.in(radius, (float)size.width - radius), y = c.in(radius, (float)size.height - radius);
    const auto meets = [&](const OrvRect& f) {
      const float other = (float)f.width / 2;
      return hypotf((float)f.x + other - x, (float)f.y + other - y) < 1.45f * (radius + other);
    };
    if (std::any_of(scene.faces.begin(), scene.faces.end(), meets)) continue;
    things.push_back(anyThing(c, face, x, y, radius));
    scene.faces.push_back({(int)(x - radius), (int)(y - radius), (int)(2 * radius), (int)(2 * radius)});
  }
  scene.image = draw(size, background, things, c);
  return scene;
}

demo::Bytes drawFace(uint32_t seed, int side) {
  Chance c(seed);
  const Background background(c);
  const float half = (float)side / 2, radius = half * c.in(0.92f, 1.1f);
  std::vector<Thing> things;
  for (int i = 0; i < 3; ++i)
    things.push_back(
        anyThing(c, c.whole(ball, kinds - 1), c.in(-half, 3 * half), c.in(-half, 3 * half), c.in(0.5f, 1.5f) * half));
  things.push_back(anyThing(c, face, half * c.in(0.93f, 1.07f), half * c.in(0.93f, 1.07f), radius));
  return demo::toGray(draw({side, side}, background, things, c));
}

}  // namespace detect

#include "distances.h"
#include <math.h>
#include <memory>
#include <stdexcept>
#include "frames.h"
#include "timing.h"

namespace demo {
namespace {

// A shape in black (zero) on white: a disc, a bar, a thin arc and a dot.
Bytes drawShape() {
  Bytes shape(360, 300, 1);
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < shape.width; ++x) {
      const double disc = hypot(x - 100, y - 110), arc = hypot(x - 240, y - 190);
      const bool bar = abs(x - 250 + (y - 70) / 3) < 45 && abs(y - 70) < 9;
      const bool black = disc < 38 || bar || (fabs(arc - 75) < 2 && x + y > 430) || hypot(x - 60, y - 250) < 3;
      *shape.at(x, y) = black ? 0 : 255;
    }
  return shape;
}

// Scratch memory of the size that a function reports.
template <class Size>
std::vector<uint8_t> scratchOf(OrvSize roi, Size size, const char* name) {
  int32_t bytes;
  require(size(roi, &bytes), name);
  return std::vector<uint8_t>((size_t)bytes);
}

Timed<float> chamfer(const Bytes& shape, int size) {
  float metrics[3];
  require(orviGetDistanceTransformMask_32f(size, 2, metrics), "orviGetDistanceTransformMask_32f");
  Floats dist(shape.width, shape.height, 1);
  const auto run = size == 3 ? orviDistanceTransform_3x3_8u32f_C1R : orviDistanceTransform_5x5_8u32f_C1R;
  const double least = leastSeconds([&] {
    require(run(shape.pixels.data(), shape.step(), dist.pixels.data(), dist.step(), shape.size(), metrics),
            "orviDistanceTransform");
  });
  return {dist, least};
}

Timed<float> euclidean(const Bytes& shape) {
  const char* const name = "orviTrueDistanceTransform_8u32f_C1R";
  auto buffer = scratchOf(shape.size(), orviTrueDistanceTransformGetBufferSize_8u32f_C1R, name);
  Floats dist(shape.width, shape.height, 1);
  const double least = leastSeconds([&] {
    require(orviTrueDistanceTransform_8u32f_C1R(shape.pixels.data(), shape.step(), dist.pixels.data(), dist.step(),
                                                shape.size(), buffer.data()),
            name);
  });
  return {dist, least};
}

Timed<float> marched(const Bytes& shape, float radius) {
  const char* const name = "orviFastMarching_8u32f_C1R";
  auto buffer = scratchOf(shape.size(), orviFastMarchingGetBufferSize_8u32f_C1R, name);
  Floats dist(shape.width, shape.height, 1);
  const double least = leastSeconds([&] {
    require(orviFastMarching_8u32f_C1R(shape.pixels.data(), shape.step(), dist.pixels.data(), dist.step(), shape.size(),
                                       radius, buffer.data()),
            name);
  });
  return {dist, least};
}

// Distances as brightness, with a dark line at every 12th pixel of distance and the inside in red, darker further in.
Bytes contoured(const Floats& dist) {
  Bytes picture(dist.width, dist.height, 3);
  for (int y = 0; y < dist.height; ++y)
    for (int x = 0; x < dist.width; ++x) {
      const float d = *dist.at(x, y), onLine = fabsf(remainderf(d, 12.f));
      uint8_t* const p = picture.at(x, y);
      const float level = d <= 0 ? 0 : std::min(255.f, 90 + d * 1.1f) * (onLine < 0.6f && d > 1 ? 0.35f : 1.f);
      for (int c = 0; c < 3; ++c) p[c] = (uint8_t)level;
      if (d <= 0) p[0] = (uint8_t)std::max(70.f, 230 + 9 * d);
    }
  return picture;
}

// Farthest difference from the true distance, in per cent of it, of pixels 20 or more away.
std::string error(const Floats& dist, const Floats& exact) {
  double most = 0;
  for (size_t i = 0; i < dist.pixels.size(); ++i)
    if (exact.pixels[i] >= 20) most = std::max(most, fabs((double)dist.pixels[i] / (double)exact.pixels[i] - 1));
  char text[80];
  snprintf(text, sizeof text, "At most %.1f %% from the true distance, 20 pixels away and further.", 100 * most);
  return text;
}

// What spoils the photograph: scratches and a word of strokes.
Bytes drawDamage(OrvSize size) {
  Bytes mask(size.width, size.height, 1);
  const double unit = size.height / 40.0, thick = std::max(1.0, unit / 7);
  const auto stroke = [&](double x0, double y0, double x1, double y1, double half) {
    const double length = hypot(x1 - x0, y1 - y0) + 1e-9;
    for (int y = (int)(std::min(y0, y1) - half); y <= (int)(std::max(y0, y1) + half) + 1; ++y)
      for (int x = (int)(std::min(x0, x1) - half); x <= (int)(std::max(x0, x1) + half) + 1; ++x) {
        if (x < 0 || y < 0 || x >= size.width || y >= size.height) continue;
        const double along = ((x - x0) * (x1 - x0) + (y - y0) * (y1 - y0)) / (length * length);
        const double t = std::min(1.0, std::max(0.0, along));
        if (hypot(x - x0 - t * (x1 - x0), y - y0 - t * (y1 - y0)) <= half) *mask.at(x, y) = 255;
      }
  };
  const double w = size.width, h = size.height;
  stroke(0, 0.2 * h, w, 0.32 * h, thick * 0.7);
  stroke(0.2 * w, 0, 0.27 * w, h, thick * 0.6);
  stroke(0.8 * w, 0, 0.62 * w, h, thick * 0.6);
  stroke(0, 0.85 * h, w, 0.6 * h, thick * 0.5);
  // O R V C V, each letter in a box of 4 by 6 units
  struct Line {
    double x0, y0, x1, y1;
  };
  const std::vector<Line> letters[] = {
      {{0, 1, 0, 5}, {0, 5, 1, 6}, {1, 6, 3, 6}, {3, 6, 4, 5}, {4, 5, 4, 1}, {4, 1, 3, 0}, {3, 0, 1, 0}, {1, 0, 0, 1}},
      {{0, 0, 0, 6}, {0, 0, 3, 0}, {3, 0, 4, 1}, {4, 1, 4, 2}, {4, 2, 3, 3}, {3, 3, 0, 3}, {2, 3, 4, 6}},
      {{0, 0, 2, 6}, {2, 6, 4, 0}},
      {{4, 1, 3, 0}, {3, 0, 1, 0}, {1, 0, 0, 1}, {0, 1, 0, 5}, {0, 5, 1, 6}, {1, 6, 3, 6}, {3, 6, 4, 5}},
      {{0, 0, 2, 6}, {2, 6, 4, 0}}};
  double left = w / 2 - 14.5 * unit;
  for (const auto& letter : letters) {
    for (const Line& l : letter)
      stroke(left + l.x0 * unit, h / 2 + (l.y0 - 3) * unit, left + l.x1 * unit, h / 2 + (l.y1 - 3) * unit, thick);
    left += 6 * unit;
  }
  return mask;
}

Timed<uint8_t> inpainted(const Bytes& image, const Bytes& mask, int method, float radius) {
  const Floats dist = marched(mask, radius).image;
  const bool colour = image.channels == 3;
  const auto init = colour ? orviInpaintInitAlloc_8u_C3R : orviInpaintInitAlloc_8u_C1R;
  const auto run = colour ? orviInpaint_8u_C3R : orviInpaint_8u_C1R;
  OrvInpaintState* made = nullptr;
  require(init(&made, dist.pixels.data(), dist.step(), mask.pixels.data(), mask.step(), image.size(), method, radius),
          "orviInpaintInitAlloc");
  const std::unique_ptr<OrvInpaintState, decltype(&orviInpaintFree_8u_C1R)> state(
      made, colour ? orviInpaintFree_8u_C3R : orviInpaintFree_8u_C1R);
  Bytes result(image.width, image.height, image.channels);
  const double least = leastSeconds([&] {
    require(run(image.pixels.data(), image.step(), result.pixels.data(), result.step(), image.size(), state.get()),
            "orviInpaint");
  });
  return {result, least};
}

}  // namespace

void showDistances(Sheet& sheet) {
  sheet.section("Distances from a shape",
                "From each white pixel to the nearest of the shape, a line at every 12th pixel. The shape is red.");
  const Bytes shape = drawShape();
  const auto exact = euclidean(shape), marching = marched(shape, 20);
  const auto three = chamfer(shape, 3), five = chamfer(shape, 5);
  sheet.picture(contoured(three.image), "distance_chamfer3", "chamfer 3x3", error(three.image, exact.image),
                "orviDistanceTransform_3x3_8u32f_C1R", three.seconds);
  sheet.picture(contoured(five.image), "distance_chamfer5", "chamfer 5x5", error(five.image, exact.image),
                "orviDistanceTransform_5x5_8u32f_C1R", five.seconds);
  sheet.picture(contoured(exact.image), "distance_true", "Euclidean", "The lines are circles about what is nearest.",
                "orviTrueDistanceTransform_8u32f_C1R", exact.seconds);
  sheet.picture(contoured(marching.image), "distance_marching", "fast marching, radius 20",
                error(marching.image, exact.image) + " Inside, distances go on below 0.", "orviFastMarching_8u32f_C1R",
                marching.seconds);
}

void showInpainting(Sheet& sheet, const Bytes& photo, const Bytes& gray) {
  constexpr float radius = 5;
  sheet.section("Scratches and text removed",
                "Damaged pixels are filled from within 5 pixels of them, nearest to the edge first. Errors are against "
                "the undamaged picture, over all pixels. The time is that of a frame; the state is made once.");
  const Bytes mask = drawDamage(photo.size());
  for (const Bytes* image : {&photo, &gray}) {
    const std::string stem = image->channels == 3 ? "inpaint" : "inpaint_gray";
    Bytes damaged = *image;
    for (size_t i = 0; i < damaged.pixels.size(); ++i)
      if (mask.pixels[i / (size_t)image->channels]) damaged.pixels[i] = 255;
    const auto errorText = [&](const Bytes& result) {
      char text[64];
      snprintf(text, sizeof text, "Error %.2f levels.", rootMeanSquare(result, *image));
      return std::string(text);
    };
    sheet.picture(damaged, stem + "_damaged", "damaged", errorText(damaged));
    for (const int method : {0, 1}) {
      const auto result = inpainted(damaged, mask, method, radius);
      sheet.picture(result.image, stem + "_method" + std::to_string(method),
                    method == 0 ? "method 0, by distance" : "method 1, along lines of equal brightness",
                    errorText(result.image), image->channels == 3 ? "orviInpaint_8u_C3R" : "orviInpaint_8u_C1R",
                    result.seconds);
    }
  }
}

}  // namespace demo

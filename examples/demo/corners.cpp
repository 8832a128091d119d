#include "corners.h"
#include <math.h>
#include <algorithm>
#include "marks.h"
#include "timing.h"

namespace demo {
namespace {

// A line of `length` pixels in the direction (dx, dy).
void ray(Bytes& canvas, int x, int y, float dx, float dy, float length, Colour colour) {
  const auto from = OrvPoint32f{(float)x, (float)y};
  line(canvas, from, {from.x + length * dx, from.y + length * dy}, colour);
}

std::string number(int value) { return std::to_string(value); }

// FastN with everything: the circle grows with the score, the ray points to where the ring is brighter.
void showFastN(Sheet& sheet, const Bytes& gray, int radius, int arc, float threshold) {
  constexpr int bins = 32, mode = orvFastNCorner | orvFastNScore | orvFastNNms | orvFastNOrientation;
  int32_t bytes;
  require(orviFastNGetSize(gray.size(), radius, arc, bins, mode, orvData8u, 1, &bytes), "orviFastNGetSize");
  std::vector<uint8_t> state((size_t)bytes);
  require(orviFastNInit(gray.size(), radius, arc, bins, threshold, mode, orvData8u, 1, state.data()), "orviFastNInit");
  require(orviFastNGetBufferSize(state.data(), gray.size(), &bytes), "orviFastNGetBufferSize");
  std::vector<uint8_t> buffer((size_t)bytes);
  Bytes corners(gray.width, gray.height, 1), scores(gray.width, gray.height, 1);
  int32_t count = 0;
  const double time = leastSeconds([&] {
    require(
        orviFastN_8u_C1R(gray.pixels.data(), gray.step(), corners.pixels.data(), corners.step(), scores.pixels.data(),
                         scores.step(), &count, {0, 0}, gray.size(), state.data(), buffer.data()),
        "orviFastN_8u_C1R");
  });
  std::vector<OrvCornerFastN> list((size_t)count + 1);
  require(orviFastN2DToVec_8u(corners.pixels.data(), corners.step(), scores.pixels.data(), scores.step(), list.data(),
                              gray.size(), count, &count, state.data()),
          "orviFastN2DToVec_8u");
  list.resize((size_t)count);
  Bytes canvas = darkened(gray);
  for (const OrvCornerFastN& corner : list) {
    const Colour colour = corner.cornerType ? warm : cool;
    const float size = 1 + corner.score / 16;
    // The angle is that of (sum of sines, sum of cosines): sine 1 is left of the pixel, cosine 1 below it.
    const float a = corner.angle * 0.017453293f;
    circle(canvas, (float)corner.x, (float)corner.y, size, colour);
    ray(canvas, corner.x, corner.y, -cosf(a), sinf(a), size + 4, colour);
  }
  sheet.picture(canvas, "corners_fastn" + number(radius), "FastN, radius " + number(radius) + ", N " + number(arc),
                number(count) +
                    " corners. Larger circles have higher scores; the ray points to the brighter side. Orange: darker "
                    "ring, blue: brighter ring.",
                "orviFastN_8u_C1R", time);
}

// The largest local maxima of a response as circles, which grow with its fourth root, as a gradient would.
Bytes maxima(const Bytes& gray, const Floats& response, float share, Colour colour, int* count) {
  const float most = *std::max_element(response.pixels.begin(), response.pixels.end());
  Bytes canvas = darkened(gray);
  *count = 0;
  for (int y = 3; y < gray.height - 3; ++y)
    for (int x = 3; x < gray.width - 3; ++x) {
      const float value = *response.at(x, y);
      bool largest = value > share * most;
      for (int i = 0; i < 49 && largest; ++i) largest = value >= *response.at(x + i % 7 - 3, y + i / 7 - 3);
      if (!largest) continue;
      circle(canvas, (float)x, (float)y, 2 + 8 * sqrtf(sqrtf(value / most)), colour);
      ++*count;
    }
  return canvas;
}

void showEigen(Sheet& sheet, const Bytes& gray) {
  int32_t bytes;
  require(orviMinEigenValGetBufferSize_8u32f_C1R(gray.size(), 3, 5, &bytes), "orviMinEigenValGetBufferSize_8u32f_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  Floats smallest(gray.width, gray.height, 1), records(gray.width, gray.height, 6);
  const double time = leastSeconds([&] {
    require(orviMinEigenVal_8u32f_C1R(gray.pixels.data(), gray.step(), smallest.pixels.data(), smallest.step(),
                                      gray.size(), orvKernelSobel, 3, 5, buffer.data()),
            "orviMinEigenVal_8u32f_C1R");
  });
  int count;
  const Bytes picture = maxima(gray, smallest, 0.02f, green, &count);
  sheet.picture(picture, "corners_eigen", "smaller eigenvalue", number(count) + " maxima above 2 % of the largest.",
                "orviMinEigenVal_8u32f_C1R", time);

  // Both eigenvectors on a grid, each as long as the root of its value; nothing where the tensor has no two directions.
  const double vectorTime = leastSeconds([&] {
    require(orviEigenValsVecs_8u32f_C1R(gray.pixels.data(), gray.step(), records.pixels.data(), records.step(),
                                        gray.size(), orvKernelSobel, 3, 5, buffer.data()),
            "orviEigenValsVecs_8u32f_C1R");
  });
  Bytes canvas = darkened(gray);
  for (int y = 6; y < gray.height; y += 12)
    for (int x = 6; x < gray.width; x += 12)
      for (int i = 0; i < 2; ++i) {
        const float* const r = records.at(x, y);
        const float length = std::min(6.f, 2 * sqrtf(std::max(r[i], 0.f)));
        for (const float sign : {-1.f, 1.f})
          ray(canvas, x, y, sign * r[2 + 2 * i], sign * r[3 + 2 * i], length, i == 0 ? warm : cool);
      }
  sheet.picture(canvas, "corners_vectors", "eigenvectors",
                "Orange along the steepest change, blue across it; as long as the root of the eigenvalue.",
                "orviEigenValsVecs_8u32f_C1R", vectorTime);
}

void showHarris(Sheet& sheet, const Bytes& gray) {
  constexpr int window = 5;
  int32_t bytes;
  require(orviHarrisCornerGetBufferSize(gray.size(), orvMaskSize3x3, window, orvData8u, 1, &bytes),
          "orviHarrisCornerGetBufferSize");
  std::vector<uint8_t> buffer((size_t)bytes);
  Floats response(gray.width, gray.height, 1);
  const double time = leastSeconds([&] {
    require(orviHarrisCorner_8u32f_C1R(gray.pixels.data(), gray.step(), response.pixels.data(), response.step(),
                                       gray.size(), orvFilterKernelSobel, orvMaskSize3x3, window, orvBorderRepl, 0,
                                       buffer.data(), 0.04f, 1e-12f),
            "orviHarrisCorner_8u32f_C1R");
  });
  int count;
  const Bytes picture = maxima(gray, response, 0.005f, warm, &count);
  sheet.picture(picture, "corners_harris", "Harris response", number(count) + " maxima above 0.5 % of the largest.",
                "orviHarrisCorner_8u32f_C1R", time);
}

}  // namespace

void showCorners(Sheet& sheet, const Bytes& gray) {
  sheet.section("Corners", "Found by the segment test and by the structure tensor, drawn over the photograph.");
  showFastN(sheet, gray, 3, 9, 45);
  showFastN(sheet, gray, 7, 21, 45);
  showEigen(sheet, gray);
  showHarris(sheet, gray);
}

}  // namespace demo

#include "detection.h"
#include <algorithm>
#include "detect/detector.h"
#include "detect/drawing.h"
#include "detect/training.h"
#include "timing.h"

namespace demo {
namespace {

using Sums = Image<int32_t>;
using Squares = Image<double>;

// The image with `margin` more pixels on each side, the outermost repeated.
Bytes widened(const Bytes& gray, int margin) {
  Bytes wide(gray.width + 2 * margin, gray.height + 2 * margin, 1);
  for (int y = 0; y < wide.height; ++y)
    for (int x = 0; x < wide.width; ++x)
      *wide.at(x, y) = *gray.at(std::min(std::max(x - margin, 0), gray.width - 1),
                                std::min(std::max(y - margin, 0), gray.height - 1));
  return wide;
}

// Tables of sums and squares of an image widened for windows of `side` pixels, odd, around each of its pixels; the
// deviation in these windows; and what each of the two steps takes.
struct Local {
  Sums sums;
  Squares squares;
  Floats deviation;
  double tableSeconds, deviationSeconds;

  Local(const Bytes& gray, int side) : deviation(gray.width, gray.height, 1) {
    const Bytes wide = widened(gray, side / 2);
    sums = Sums(wide.width + 1, wide.height + 1, 1);
    squares = Squares(wide.width + 1, wide.height + 1, 1);
    tableSeconds = leastSeconds([&] {
      require(orviSqrIntegral_8u32s64f_C1R(wide.pixels.data(), wide.step(), sums.pixels.data(), sums.step(),
                                           squares.pixels.data(), squares.step(), wide.size(), 0, 0),
              "orviSqrIntegral_8u32s64f_C1R");
    });
    deviationSeconds = leastSeconds([&] {
      require(orviRectStdDev_32s32f_C1R(sums.pixels.data(), sums.step(), squares.pixels.data(), squares.step(),
                                        deviation.pixels.data(), deviation.step(), gray.size(), {0, 0, side, side}),
              "orviRectStdDev_32s32f_C1R");
    });
  }

  // Mean around the pixel: four entries of the table, whatever the side.
  float mean(int x, int y, int side) const {
    const int32_t sum = *sums.at(x + side, y + side) - *sums.at(x, y + side) - *sums.at(x + side, y) + *sums.at(x, y);
    return (float)sum / (float)(side * side);
  }
};

void showLocalContrast(Sheet& sheet, const Bytes& gray) {
  sheet.section(
      "Local contrast by integral images",
      "One pass makes tables of sums; mean and deviation around each pixel then take a few additions, and the "
      "same time for any window.");
  for (const int side : {9, 31, 91}) {
    if (side >= std::min(gray.width, gray.height)) break;
    const Local local(gray, side);
    const std::string window = std::to_string(side) + " x " + std::to_string(side);
    sheet.picture(toBytes(local.deviation, 3), "deviation" + std::to_string(side), "deviation, window " + window,
                  "Times 3: bright where there are edges and texture.", "orviRectStdDev_32s32f_C1R",
                  local.deviationSeconds);
    Bytes even(gray.width, gray.height, 1);
    for (int y = 0; y < gray.height; ++y)
      for (int x = 0; x < gray.width; ++x) {
        const float gain = 45.f / (*local.deviation.at(x, y) + 6);
        const float value = 128 + ((float)*gray.at(x, y) - local.mean(x, y, side)) * gain;
        *even.at(x, y) = (uint8_t)std::min(std::max(value, 0.f), 255.f);
      }
    sheet.picture(
        even, "contrast" + std::to_string(side), "evened, window " + window,
        "(pixel - mean) / deviation: shadows and highlights show as much as the rest. The time is that of both "
        "tables.",
        "orviSqrIntegral_8u32s64f_C1R", local.tableSeconds);
  }
}

void showFaces(Sheet& sheet) {
  detect::Effort effort;
  detect::Cascade cascade;
  const double trained = seconds([&] { cascade = detect::train(detect::drawnExamples(), effort); });
  sheet.section(
      "Objects found by a cascade",
      "A cascade of " + std::to_string(cascade.stages.size()) +
          " boosted stages, trained a moment ago on drawn faces (" + std::to_string((int)(trained * 1000)) +
          " ms), looks through scenes that it has not seen. Faces on their head don't count. examples/detect/ "
          "has the programs, for objects of your own too.");
  for (const uint32_t number : {1u, 3u}) {
    const detect::Scene scene = detect::drawScene(number, {640, 480}, 6);
    const Bytes gray = toGray(scene.image);
    std::vector<OrvRect> windows;
    const double took = leastSeconds([&] { windows = detect::findWindows(gray, cascade); });
    const auto objects = detect::group(windows);
    Bytes all = scene.image, framed = scene.image;
    std::vector<detect::Found> each;
    for (const OrvRect& w : windows) each.push_back({w, 1});
    detect::drawFrames(all, each);
    detect::drawFrames(framed, objects);
    const std::string stem = "faces" + std::to_string(number);
    sheet.picture(all, stem + "_windows", "windows that pass",
                  std::to_string(windows.size()) + " of some hundred thousand; neighbours agree on an object.");
    sheet.picture(framed, stem, "found",
                  std::to_string(objects.size()) + " frames, " + std::to_string(scene.faces.size()) +
                      " faces. The time is that of the whole search, all scales and stages.",
                  "orviApplyHaarClassifier_32s32f_C1R", took);
  }
}

}  // namespace

void showDetection(Sheet& sheet, const Bytes& gray) {
  showLocalContrast(sheet, gray);
  showFaces(sheet);
}

}  // namespace demo

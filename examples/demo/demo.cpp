// The demo: works on a photograph through the public functions and shows what came of it.
//
//   orvcv_demo DIRECTORY [PNG-or-JPEG]
#include <stdio.h>
#include <algorithm>
#include <exception>
#include <stdexcept>
#include "corners.h"
#include "derivatives.h"
#include "detection.h"
#include "distances.h"
#include "edges.h"
#include "frames.h"
#include "gaussian.h"
#include "morphology.h"
#include "geometry.h"
#include "orvcore.h"
#include "processor.h"
#include "pyramid.h"
#include "scene.h"
#include "segments.h"
#include "sheet.h"
#include "statistics.h"

using namespace demo;

namespace {

constexpr int smallest = 96, largest = 16000;  // sides of an image that the demo can show something with

std::string number(double value, int digits = 0) {
  char text[32];
  snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

std::string sigmaTitle(const Smoothing& how) {
  const std::string k = number(how.kernelSize());
  return "sigma " + number(how.sigma) + ", kernel " + k + " x " + k;
}

const char* gaussianCall(const Bytes& image) {
  return image.channels == 1 ? "orviFilterGaussianBorder_8u_C1R" : "orviFilterGaussianBorder_8u_C3R";
}

void showFacts(Sheet& sheet, const Bytes& photo, const std::string& name) {
  const OrvLibVersion* version = orvcvGetLibVersion();
  sheet.fact("Picture", name + ", " + number(photo.width) + " x " + number(photo.height));
  sheet.fact("Library", std::string("orvCV ") + version->versionText);
  sheet.fact("Variant", version->name);
  sheet.fact("Vectors", vectorWidth());
  sheet.fact("Threads", number(orvGetNumThreads()) + " at most");
  sheet.fact("Processor", processorName());
}

void showSigmas(Sheet& sheet, const Bytes& image, const std::string& stem) {
  for (const float sigma : {1.f, 2.f, 4.f, 8.f}) {
    const Smoothing how{sigma};
    const auto smoothed = smooth(image, how);
    sheet.picture(smoothed.image, stem + "_sigma" + number(sigma), sigmaTitle(how), "Sides replicated.",
                  gaussianCall(image), smoothed.seconds);
  }
}

void showSources(Sheet& sheet, const Bytes& photo, const Bytes& gray) {
  sheet.section("The source", "What all pictures below are made from.");
  sheet.picture(photo, "source", "three channels", "As it was read.");
  sheet.picture(gray, "source_gray", "one channel", "Its brightness.");
}

void showBorders(Sheet& sheet, const Bytes& photo, const Bytes& gray) {
  sheet.section("What lies beyond the sides",
                "Sigma 10, so that the sides show: half the kernel reaches 30 pixels into what lies beyond.");
  const Smoothing constant{10, orvBorderConst, {255, 140, 0}}, replicated{10}, inMemory{10, orvBorderInMem};
  for (const Bytes* image : {&photo, &gray}) {
    const auto smoothed = smooth(*image, constant);
    const bool colour = image->channels == 3;
    sheet.picture(smoothed.image, colour ? "border_const" : "border_const_gray",
                  colour ? "constant, three channels" : "constant, one channel",
                  colour ? "An orange value beyond the sides bleeds in." : "The value 255 beyond the sides.",
                  gaussianCall(*image), smoothed.seconds);
  }
  const auto whole = smooth(photo, replicated);
  sheet.picture(whole.image, "border_repl", "replicated", "The nearest pixel stands for all beyond it.",
                gaussianCall(photo), whole.seconds);

  const int margin = inMemory.kernelSize() / 2;
  const OrvPoint corner{margin, margin};
  const OrvSize size{photo.width - 2 * margin, photo.height - 2 * margin};
  const auto inside = smoothWindow(photo, corner, size, inMemory),
             alone = smoothWindow(photo, corner, size, replicated);
  sheet.picture(inside.image, "border_inmem", "in memory",
                "A window of the photograph: around it the photograph's own pixels are read.", gaussianCall(photo),
                inside.seconds);
  sheet.picture(amplified(difference(inside.image, alone.image).image, 8), "border_inmem_difference",
                "in memory against replicated",
                "The same window both ways, difference times 8: equal but at the sides.");

  const auto halves = smoothHalves(photo, replicated);
  const auto seam = difference(whole.image, halves.image);
  const auto unequal =
      seam.image.pixels.size() - (size_t)std::count(seam.image.pixels.begin(), seam.image.pixels.end(), (uint8_t)0);
  sheet.picture(
      halves.image, "border_halves", "two halves, sides flagged",
      "Upper and lower half by a call each, the cut flagged as in memory. Elements that differ from the whole "
      "image's result: " +
          number((double)unequal) + ".",
      gaussianCall(photo), halves.seconds);

  const struct {
    OrvBorderType type;
    const char *stem, *title, *caption;
  } kinds[] = {{orvBorderWrap, "border_wrap", "wrapped, in float", "The opposite side comes next, as on a torus."},
               {orvBorderMirr, "border_mirror", "mirrored, in float", "Reflected about the outermost pixel."}};
  for (const auto& kind : kinds) {
    const auto smoothed = smoothAtOnce(toFloats(gray), {10, kind.type});
    sheet.picture(toBytes(smoothed.image), kind.stem, kind.title, kind.caption, "orviFilterGaussBorder_32f_C1R",
                  smoothed.seconds);
  }
}

void showDifferences(Sheet& sheet, const Bytes& photo, const Bytes& gray) {
  sheet.section("Difference to the source", "What smoothing took away: edges and texture. Shown times 4.");
  for (const Bytes* image : {&photo, &gray})
    for (const float sigma : {1.f, 4.f}) {
      const auto taken = difference(*image, smooth(*image, {sigma}).image);
      const bool colour = image->channels == 3;
      sheet.picture(amplified(taken.image, 4), std::string("difference") + (colour ? "" : "_gray") + number(sigma),
                    "sigma " + number(sigma) + (colour ? ", three channels" : ", one channel"),
                    "Each element is |source - smoothed|.", colour ? "orviAbsDiff_8u_C3R" : "orviAbsDiff_8u_C1R",
                    taken.seconds);
    }
}

void showAverages(Sheet& sheet, const Bytes& photo) {
  constexpr int frames = 32;
  constexpr float alpha = 0.1f;
  const auto error = [&](const Bytes& image) {
    return "Error " + number(rootMeanSquare(image, photo), 1) + " levels. ";
  };
  sheet.section(
      "Averages of noisy frames",
      "A still scene through a noisy camera. The mean of n frames has the noise divided by the root of n, but "
      "for what the camera cut off at black and white. The error is the root of the mean square.");
  const Bytes one = noisyFrame(photo, 0);
  sheet.picture(one, "noisy", "one frame", error(one) + "As the camera gave it.");
  const auto mean = average(photo, frames);
  sheet.picture(mean.image, "average", "mean of " + number(frames) + " frames",
                error(mean.image) + "The time is that of adding one frame.", "orviAdd_8u32f_C1IR", mean.seconds);
  const auto running = runningAverage(photo, frames, alpha);
  sheet.picture(running.image, "running", "running average, alpha " + number(alpha, 1),
                error(running.image) + "Each frame counts a tenth less than the next.", "orviAddWeighted_8u32f_C1IR",
                running.seconds);
  const auto left = difference(one, mean.image);
  sheet.picture(amplified(left.image, 4), "noise", "frame against mean", "The noise that the mean removed, times 4.",
                "orviAbsDiff_8u_C3R", left.seconds);
  const OrvPoint corner{photo.width * 3 / 8, photo.height * 3 / 8};
  const OrvSize detail{photo.width / 4, photo.height / 4};
  sheet.picture(cropped(one, corner, detail), "noisy_detail", "one frame, detail", "The middle, magnified.");
  sheet.picture(cropped(mean.image, corner, detail), "average_detail", "mean, detail", "The same place.");
}

void run(const std::string& directory, const std::string& path) {
  const Bytes photo = path.empty() ? drawScene() : load(path);
  if (std::min(photo.width, photo.height) < smallest || std::max(photo.width, photo.height) > largest)
    throw std::runtime_error(path + ": each side must have " + number(smallest) + " to " + number(largest) + " pixels");
  const Bytes gray = toGray(photo);

  Sheet sheet(directory);
  showFacts(sheet, photo, path.empty() ? "a drawn scene" : path.substr(path.find_last_of('/') + 1));
  showSources(sheet, photo, gray);
  sheet.section("Gaussian, three channels", "8-bit colour, interleaved: each channel is smoothed on its own.");
  showSigmas(sheet, photo, "colour");
  sheet.section("Gaussian, one channel", "8-bit gray.");
  showSigmas(sheet, gray, "gray");
  showBorders(sheet, photo, gray);
  showDifferences(sheet, photo, gray);
  showAverages(sheet, photo);
  showDerivatives(sheet, gray);
  showStatistics(sheet, photo, gray);
  showEdges(sheet, gray);
  showLines(sheet);
  showCorners(sheet, gray);
  showMorphology(sheet);
  showSegments(sheet, photo);
  showDistances(sheet);
  showInpainting(sheet, photo, gray);
  showDetection(sheet, gray);
  showUndistortion(sheet);
  showSuperResolution(sheet, gray);
  showPyramid(sheet, photo);
  showFlow(sheet, gray);
  printf("\nLook at %s\n", sheet.finish("orvCV on a photograph").c_str());
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2 || count > 3) {
    fprintf(stderr, "usage: %s DIRECTORY [PNG-or-JPEG]\n", arguments[0]);
    return 2;
  }
  try {
    run(arguments[1], count > 2 ? arguments[2] : "");
  } catch (const std::exception& e) {
    fprintf(stderr, "orvcv_demo: %s\n", e.what());
    return 1;
  }
  return 0;
}

#include "segments.h"
#include <math.h>
#include <algorithm>
#include "timing.h"

namespace demo {
namespace {

constexpr uint8_t line = 255;  // the label of watershed lines

uint32_t hashed(uint32_t v) {
  v = (v ^ (v >> 15)) * 2246822519u;
  v = (v ^ (v >> 13)) * 3266489917u;
  return v ^ (v >> 16);
}

// Round cells under a microscope, brightest in the middle; many touch.
Bytes drawCells() {
  Bytes image(480, 320, 1);
  std::vector<float> light(image.pixels.size(), 30);
  for (uint32_t n = 0; n < 60; ++n) {
    const int cx = (int)(hashed(3 * n) % 480), cy = (int)(hashed(3 * n + 1) % 320);
    const float radius = 17 + (float)(hashed(3 * n + 2) % 12);
    for (int y = 0; y < image.height; ++y)
      for (int x = 0; x < image.width; ++x) {
        const float d = hypotf((float)(x - cx), (float)(y - cy)) / radius;
        float& l = light[(size_t)(y * image.width + x)];
        if (d < 1) l = std::max(l, 60 + 150 * sqrtf(1 - d * d) - 20 * d);
      }
  }
  for (size_t i = 0; i < light.size(); ++i) image.pixels[i] = (uint8_t)(light[i] + (float)(hashed((uint32_t)i) % 24));
  return image;
}

// Each label in a colour of its own, 0 black, lines white.
template <class Label>
Bytes coloured(const Image<Label>& labels) {
  Bytes result(labels.width, labels.height, 3);
  for (size_t i = 0; i < labels.pixels.size(); ++i) {
    const auto label = (uint32_t)labels.pixels[i];
    const uint32_t h = hashed(label);
    for (uint32_t c = 0; c < 3; ++c)
      result.pixels[3 * i + c] = label == 0                            ? 0
                                 : sizeof(Label) == 1 && label == line ? 255
                                                                       : (uint8_t)(64 + ((h >> (8 * c)) & 255) * 3 / 4);
  }
  return result;
}

Bytes toColour(const Bytes& gray) {
  Bytes result(gray.width, gray.height, 3);
  for (size_t i = 0; i < result.pixels.size(); ++i) result.pixels[i] = gray.pixels[i / 3];
  return result;
}

// Markers: 255 where the image is brighter than `level`.
Bytes brighter(const Bytes& gray, int level) {
  Bytes result = gray;
  for (uint8_t& v : result.pixels) v = v > level ? 255 : 0;
  return result;
}

int32_t labelInPlace(Bytes& markers) {
  int32_t bytes, count;
  require(orviLabelMarkersGetBufferSize_8u_C1R(markers.size(), &bytes), "orviLabelMarkersGetBufferSize_8u_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  require(
      orviLabelMarkers_8u_C1IR(markers.pixels.data(), markers.step(), markers.size(), 2, 254, 0, &count, buffer.data()),
      "orviLabelMarkers_8u_C1IR");
  return count;
}

// The watershed of a relief from markers.
Timed<uint8_t> segmented(const Bytes& relief, const Bytes& markers, int32_t norm, int32_t flags) {
  int32_t bytes;
  require(orviSegmentWatershedGetBufferSize_8u_C1R(relief.size(), &bytes), "orviSegmentWatershedGetBufferSize_8u_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  Bytes result;
  const double least = leastSeconds([&] {
    result = markers;
    require(orviSegmentWatershed_8u_C1IR(relief.pixels.data(), relief.step(), result.pixels.data(), result.step(),
                                         relief.size(), norm, flags, buffer.data()),
            "orviSegmentWatershed_8u_C1IR");
  });
  return {result, least};
}

void showCells(Sheet& sheet) {
  sheet.section(
      "Touching cells parted by a watershed",
      "Cells overlap, so that no threshold parts them. Their middles are labelled and serve as seeds, the dark "
      "ground is one more; the flood runs over the smoothed picture turned upside down, and lines are drawn "
      "where two segments meet.");
  const Bytes cells = drawCells(), smoothed = smooth(cells, {3}).image;
  sheet.picture(cells, "cells", "cells", "As drawn, with noise.");

  Bytes seeds = brighter(smoothed, 204), relief = smoothed;
  const int32_t count = labelInPlace(seeds);
  for (size_t i = 0; i < relief.pixels.size(); ++i) {
    relief.pixels[i] = (uint8_t)(255 - smoothed.pixels[i]);
    if (smoothed.pixels[i] < 65) seeds.pixels[i] = 1;
  }
  sheet.picture(coloured(seeds), "cell_seeds", "seeds", std::to_string(count) + " middles and the ground.",
                "orviLabelMarkers_8u_C1IR");
  const struct {
    const char *stem, *title;
    int32_t norm, flags;
  } engines[] = {
      {"cells_queue", "by queues, 8 neighbours", orvSegmentNormInf, orvWatershedQueue | orvWatershedBorder8},
      {"cells_sweep", "by sweeps, fast marching", orvSegmentNormFM, orvWatershedSweep | orvWatershedBorder8}};
  for (const auto& engine : engines) {
    const auto segments = segmented(relief, seeds, engine.norm, engine.flags);
    Bytes drawn = toColour(cells);
    for (size_t i = 0; i < relief.pixels.size(); ++i)
      if (segments.image.pixels[i] == line)
        drawn.pixels[3 * i] = 255, drawn.pixels[3 * i + 1] = drawn.pixels[3 * i + 2] = 0;
    sheet.picture(drawn, engine.stem, engine.title, "Lines drawn over the cells.", "orviSegmentWatershed_8u_C1IR",
                  segments.seconds);
    sheet.picture(coloured(segments.image), std::string(engine.stem) + "_labels", engine.title, "The segments.");
  }
}

void showLabels(Sheet& sheet, const Bytes& photo) {
  const Bytes gray = smooth(toGray(photo), {1.5f}).image;
  uint64_t sum = 0;
  for (const uint8_t v : gray.pixels) sum += v;
  const Bytes bright = brighter(gray, (int)(sum / gray.pixels.size()));
  sheet.section(
      "Connected regions",
      "The photograph's parts that are brighter than its mean, each connected region in a colour of its own.");
  int32_t bytes;
  require(orviLabelMarkersGetBufferSize_8u32s_C1R(bright.size(), &bytes), "orviLabelMarkersGetBufferSize_8u32s_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  Image<int32_t> labels(bright.width, bright.height, 1);
  for (const int32_t norm : {0, 1}) {
    int32_t count = 0;
    const double least = leastSeconds([&] {
      require(orviLabelMarkers_8u32s_C1R(bright.pixels.data(), bright.step(), labels.pixels.data(), labels.step(),
                                         bright.size(), 1, 0x7FFFFFFE, norm, &count, buffer.data()),
              "orviLabelMarkers_8u32s_C1R");
    });
    const std::string neighbours = norm == 0 ? "8" : "4";
    sheet.picture(coloured(labels), "labels" + neighbours, neighbours + " neighbours",
                  std::to_string(count) + " regions.", "orviLabelMarkers_8u32s_C1R", least);
  }
}

enum Rule { equal, range, gradient };
constexpr const char* fillNames[] = {"orviFloodFill_4Con_8u_C3IR", "orviFloodFill_Range4Con_8u_C3IR",
                                     "orviFloodFill_Grad4Con_8u_C3IR"};

// Fills from a seed with orange; returns the number of pixels.
double fill(Bytes& image, OrvPoint seed, Rule rule, std::vector<uint8_t>& buffer) {
  static constexpr uint8_t orange[3] = {255, 120, 0}, wide[3] = {24, 24, 24}, narrow[3] = {3, 3, 3};
  uint8_t *const p = image.pixels.data(), *const b = buffer.data();
  const int32_t step = image.step();
  OrvConnectedComp r = {};
  require(rule == equal   ? orviFloodFill_4Con_8u_C3IR(p, step, image.size(), seed, orange, &r, b)
          : rule == range ? orviFloodFill_Range4Con_8u_C3IR(p, step, image.size(), seed, orange, wide, wide, &r, b)
                          : orviFloodFill_Grad4Con_8u_C3IR(p, step, image.size(), seed, orange, narrow, narrow, &r, b),
          fillNames[rule]);
  return r.area;
}

void showFills(Sheet& sheet, const Bytes& photo) {
  sheet.section(
      "Flood fills",
      "From one seed, marked by a cross, over the photograph smoothed with a sigma of 2: pixels that equal it, "
      "pixels within 24 levels of it, and pixels within 3 levels of the neighbour they are reached from, each in "
      "all three channels.");
  const Bytes source = smooth(photo, {2}).image;
  int32_t bytes;
  require(orviFloodFillGetSize_Grad(photo.size(), &bytes), "orviFloodFillGetSize_Grad");  // the larger of the two
  std::vector<uint8_t> buffer((size_t)bytes);
  // Of some places the one whose fill by gradient is the largest below a third of the picture.
  OrvPoint seed = {photo.width / 2, photo.height / 2};
  double most = 0;
  for (int k = 0; k < 64; ++k) {
    Bytes trial = source;
    const OrvPoint place = {photo.width * (2 * (k % 8) + 1) / 16, photo.height * (2 * (k / 8) + 1) / 16};
    const double area = fill(trial, place, gradient, buffer);
    if (area > most && area < photo.width * photo.height / 3) most = area, seed = place;
  }
  const char* const titles[] = {"equal", "range of 24", "gradient of 3"};
  for (const Rule rule : {equal, range, gradient}) {
    Bytes filled;
    double area = 0;
    const double least = leastSeconds([&] {
      filled = source;
      area = fill(filled, seed, rule, buffer);
    });
    for (int k = -6; k <= 6; ++k)
      for (int c = 0; c < 3; ++c) {
        const int x = std::min(std::max(seed.x + k, 0), photo.width - 1);
        const int y = std::min(std::max(seed.y + k, 0), photo.height - 1);
        filled.at(x, seed.y)[c] = filled.at(seed.x, y)[c] = (uint8_t)(c == 2 ? 255 : 0);
      }
    sheet.picture(filled, "fill" + std::to_string(rule), titles[rule],
                  std::to_string((int64_t)area) + " pixels. The time includes a copy of the picture.", fillNames[rule],
                  least);
  }
}

}  // namespace

void showSegments(Sheet& sheet, const Bytes& photo) {
  showCells(sheet);
  showLabels(sheet, photo);
  showFills(sheet, photo);
}

}  // namespace demo

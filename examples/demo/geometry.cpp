#include "geometry.h"
#include <math.h>
#include <memory>
#include "frames.h"
#include "marks.h"
#include "timing.h"

namespace demo {
namespace {

std::string number(double value, int digits) {
  char text[32];
  snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

// A chessboard as a camera with strong barrel distortion sees it: the board's point of each pixel is searched, since
// the lens' formula leads from the straight picture to the bent one.
constexpr int boardSide = 480;
constexpr float focal = 420, middle = boardSide / 2, k1 = -0.28f, k2 = 0.04f;

Bytes bentChessboard() {
  Bytes image(boardSide, boardSide, 1);
  for (int y = 0; y < boardSide; ++y)
    for (int x = 0; x < boardSide; ++x) {
      int lit = 0;
      for (int part = 0; part < 16; ++part) {  // 4 x 4 places in a pixel make soft edges
        const double px = x + (part % 4) * 0.25 - middle, py = y + (part / 4) * 0.25 - middle;
        double u = px, v = py;
        for (int i = 0; i < 30; ++i) {
          const double r2 = (u * u + v * v) / (focal * focal), scale = 1 + k1 * r2 + k2 * r2 * r2;
          u = px / scale, v = py / scale;
        }
        const int column = (int)floor((u + middle) / 40 + 8), row = (int)floor((v + middle) / 40 + 8);
        lit += (column + row) % 2 != 0;
      }
      *image.at(x, y) = (uint8_t)(30 + lit * 12);
    }
  return image;
}

// Bilinear sample with clamped coordinates.
double sample(const Bytes& image, double x, double y) {
  x = std::clamp(x, 0., image.width - 1.001), y = std::clamp(y, 0., image.height - 1.001);
  const int i = (int)x, k = (int)y;
  const double fx = x - i, fy = y - k;
  return (1 - fy) * ((1 - fx) * *image.at(i, k) + fx * *image.at(i + 1, k)) +
         fy * ((1 - fx) * *image.at(i, k + 1) + fx * *image.at(i + 1, k + 1));
}

// A camera of half the resolution: a sample is the mean of a square of 2 x 2 pixels at a quarter-pixel offset, which is
// a function of 3 x 3 pixels. Entry 4 * qy + qx of the table is that of the offset (qx, qy) / 4.
std::vector<float> boxTable() {
  std::vector<float> table;
  for (int entry = 0; entry < 16; ++entry)
    for (int tap = 0; tap < 9; ++tap) {
      const float fx = (float)(entry % 4) * 0.25f, fy = (float)(entry / 4) * 0.25f;
      const float x[3] = {(1 - fx) / 2, 0.5f, fx / 2}, y[3] = {(1 - fy) / 2, 0.5f, fy / 2};
      table.push_back(x[tap % 3] * y[tap / 3]);
    }
  return table;
}

// All samples of a sequence of frames that a shaking hand took.
struct Sequence {
  std::vector<int32_t> positions;
  std::vector<uint16_t> psfIndex;
  std::vector<uint8_t> values, classes;
  Bytes first;  // frame, as it was seen
};

Sequence takeFrames(const Bytes& scene, int frames) {
  Sequence s;
  const std::vector<float> table = boxTable();
  const int w = (scene.width - 4) / 2, h = (scene.height - 4) / 2;
  s.first = Bytes(w, h, 1);
  uint32_t noise = 1;
  for (int f = 0; f < frames; ++f) {
    const int dx = f * 7 % 8, dy = f * 5 % 8 ^ f / 8;  // in quarters of a pixel, 0 to 7
    const int entry = dy % 4 * 4 + dx % 4;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const int px = 2 * x + dx / 4, py = 2 * y + dy / 4;
        float v = 0;
        for (int tap = 0; tap < 9; ++tap)
          v += table[(size_t)(entry * 9 + tap)] * (float)*scene.at(px + tap % 3, py + tap / 3);
        noise = noise * 1664525u + 1013904223u;
        v += (float)(noise >> 24) / 32 - 4;
        s.positions.push_back(py * scene.width + px);
        s.psfIndex.push_back((uint16_t)entry);
        s.values.push_back((uint8_t)std::clamp(v + 0.5f, 0.f, 255.f));
        s.classes.push_back(0);
        if (f == 0) *s.first.at(x, y) = s.values.back();
      }
  }
  return s;
}

Bytes enlarged(const Bytes& image, int width, int height) {
  Bytes result(width, height, 1);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) *result.at(x, y) = (uint8_t)(sample(image, x * 0.5 - 0.25, y * 0.5 - 0.25) + 0.5);
  return result;
}

// Steepest descent on the residuals, from an enlarged frame.
Timed<uint8_t> sharpen(const Sequence& s, const Bytes& start, int frames, int steps) {
  const std::vector<float> table = boxTable();
  OrvSRHNState* made = nullptr;
  require(orviSRHNInitAlloc_PSF3x3(&made, table.data(), 16), "orviSRHNInitAlloc_PSF3x3");
  const std::unique_ptr<OrvSRHNState, OrvStatus (*)(OrvSRHNState*)> state(made, orviSRHNFree_PSF3x3);
  Floats estimate = toFloats(start), gradient(start.width, start.height, 1);
  const auto count = (int32_t)s.positions.size();
  std::vector<float> residuals(s.positions.size());
  const float weight[1] = {8.f / (float)frames};
  const double time = seconds([&] {
    for (int i = 0; i < steps; ++i) {
      require(orviSRHNCalcResidual_PSF3x3_8u32f_C1R(estimate.pixels.data(), estimate.step(), s.values.data(),
                                                    s.positions.data(), s.psfIndex.data(), residuals.data(), count,
                                                    state.get()),
              "orviSRHNCalcResidual_PSF3x3_8u32f_C1R");
      std::fill(gradient.pixels.begin(), gradient.pixels.end(), 0.f);
      require(orviSRHNUpdateGradient_PSF3x3_32f_C1R(gradient.pixels.data(), gradient.step(), s.positions.data(),
                                                    s.psfIndex.data(), residuals.data(), s.classes.data(), count,
                                                    weight, state.get()),
              "orviSRHNUpdateGradient_PSF3x3_32f_C1R");
      for (size_t p = 0; p < estimate.pixels.size(); ++p) estimate.pixels[p] -= gradient.pixels[p];
    }
  });
  return {toBytes(estimate), time / steps};
}

// The levels of a Gaussian pyramid.
struct Pyramid {
  std::vector<Bytes> level;
  std::vector<void*> images;
  std::vector<OrvSize> sizes;
  std::vector<double> rates;
  std::vector<int32_t> steps;
  OrvPyramid record;

  Pyramid(const Bytes& image, int levels) : level{image} {
    int32_t bytes;
    require(orviPyrDownGetBufSize_Gauss5x5(image.width, orvData8u, 1, &bytes), "orviPyrDownGetBufSize_Gauss5x5");
    std::vector<uint8_t> buffer((size_t)bytes);
    while ((int)level.size() < levels) {
      const Bytes& fine = level.back();
      Bytes coarse((fine.width + 1) / 2, (fine.height + 1) / 2, 1);
      require(orviPyrDown_Gauss5x5_8u_C1R(fine.pixels.data(), fine.step(), coarse.pixels.data(), coarse.step(),
                                          fine.size(), buffer.data()),
              "orviPyrDown_Gauss5x5_8u_C1R");
      level.push_back(coarse);
    }
    for (Bytes& l : level) {
      images.push_back(l.pixels.data());
      sizes.push_back(l.size());
      rates.push_back(rates.empty() ? 1 : rates.back() / 2);
      steps.push_back(l.step());
    }
    record = {images.data(), sizes.data(), rates.data(), steps.data(), nullptr, levels - 1};
  }
};

}  // namespace

void showUndistortion(Sheet& sheet) {
  sheet.section("Lens undistortion", "A chessboard through a lens that bends straight lines outwards, and put right.");
  const Bytes bent = bentChessboard();
  sheet.picture(bent, "board_bent", "as the lens shows it", "Radial distortion, k1 -0.28, k2 0.04.");
  int32_t bytes;
  require(orviUndistortGetSize(bent.size(), &bytes), "orviUndistortGetSize");
  std::vector<uint8_t> buffer((size_t)bytes);
  Bytes straight(bent.width, bent.height, 1);
  const double time = leastSeconds([&] {
    require(orviUndistortRadial_8u_C1R(bent.pixels.data(), bent.step(), straight.pixels.data(), straight.step(),
                                       bent.size(), focal, focal, middle, middle, k1, k2, buffer.data()),
            "orviUndistortRadial_8u_C1R");
  });
  sheet.picture(straight, "board_straight", "undistorted", "The same camera's numbers, the lines straight again.",
                "orviUndistortRadial_8u_C1R", time);
}

void showSuperResolution(Sheet& sheet, const Bytes& gray) {
  constexpr int frames = 16, steps = 40;
  const OrvSize size{std::min(gray.width, 256) & ~1, std::min(gray.height, 256) & ~1};
  const Bytes scene = cropped(gray, {(gray.width - size.width) / 2, (gray.height - size.height) / 2}, size);
  const Sequence s = takeFrames(scene, frames);
  const Bytes start = enlarged(s.first, size.width, size.height);
  const auto sharp = sharpen(s, start, frames, steps);
  const auto error = [&](const Bytes& image) {
    // the samples reach to a few pixels from the sides
    const OrvSize inner{size.width - 16, size.height - 16};
    return "Error " + number(rootMeanSquare(cropped(image, {8, 8}, inner), cropped(scene, {8, 8}, inner)), 1) +
           " levels. ";
  };
  sheet.section("Super-resolution",
                "Sixteen noisy frames of half the resolution, shifted by quarters of a pixel, and "
                "the picture that explains them all.");
  sheet.picture(scene, "sr_scene", "the scene", "What is to be found.");
  sheet.picture(start, "sr_frame", "one frame, enlarged", error(start) + "The start.");
  sheet.picture(sharp.image, "sr_sharp", number(steps, 0) + " steps down the gradient",
                error(sharp.image) + "The time is that of a step.", "orviSRHNUpdateGradient_PSF3x3_32f_C1R",
                sharp.seconds);
}

void showFlow(Sheet& sheet, const Bytes& gray) {
  // The camera turns by two degrees and comes closer by three percent.
  const double angle = 2 * M_PI / 180, zoom = 1 / 1.03, cx = gray.width * 0.5, cy = gray.height * 0.5;
  const double c = cos(angle) * zoom, d = sin(angle) * zoom;
  Bytes moved(gray.width, gray.height, 1), drawn(gray.width, gray.height, 3);
  for (int y = 0; y < gray.height; ++y)
    for (int x = 0; x < gray.width; ++x) {
      const double u = x - cx, v = y - cy;
      *moved.at(x, y) = (uint8_t)(sample(gray, cx + c * u + d * v, cy - d * u + c * v) + 0.5);
      std::fill(drawn.at(x, y), drawn.at(x, y) + 3, (uint8_t)(*moved.at(x, y) / 2 + 40));
    }
  int levels = 1;
  while (levels < 4 && std::min(gray.width, gray.height) >> levels >= 32) ++levels;
  const Pyramid before(gray, levels), after(moved, levels);
  std::vector<OrvPoint32f> from;
  const float spacing = (float)std::max(20, gray.width / 40);
  for (float y = spacing; y < (float)gray.height - spacing; y += spacing)
    for (float x = spacing; x < (float)gray.width - spacing; x += spacing) from.push_back({x, y});
  std::vector<OrvPoint32f> to;
  std::vector<int8_t> status(from.size());
  std::vector<float> errors(from.size());
  OrvOptFlowPyrLKState* made = nullptr;
  require(orviOpticalFlowPyrLKInitAlloc_8u_C1R(&made, gray.size(), 21, 0), "orviOpticalFlowPyrLKInitAlloc_8u_C1R");
  const std::unique_ptr<OrvOptFlowPyrLKState, OrvStatus (*)(OrvOptFlowPyrLKState*)> state(
      made, orviOpticalFlowPyrLKFree_8u_C1R);
  const double time = leastSeconds([&] {
    to = from;
    require(orviOpticalFlowPyrLK_8u_C1R(&before.record, &after.record, from.data(), to.data(), status.data(),
                                        errors.data(), (int32_t)from.size(), 21, levels - 1, 20, 0.03f, state.get()),
            "orviOpticalFlowPyrLK_8u_C1R");
  });
  int right = 0, lost = 0;
  for (size_t i = 0; i < from.size(); ++i) {
    const double u = (from[i].x - cx) / (zoom * zoom), v = (from[i].y - cy) / (zoom * zoom);
    const double off = hypot(to[i].x - (cx + c * u - d * v), to[i].y - (cy + d * u + c * v));
    const bool found = status[i] == 0, good = found && off < 0.5;
    lost += !found, right += good;
    constexpr Colour green{64, 255, 96}, orange{255, 140, 32}, yellow{255, 255, 64}, red{255, 32, 32};
    if (found) line(drawn, from[i], to[i], good ? green : orange);
    const OrvPoint32f end = found ? to[i] : from[i], next{end.x + 1, end.y};
    line(drawn, end, next, found ? yellow : red);
  }
  sheet.section("Optical flow",
                "Points of a grid followed from one frame to the next, which is turned by 2 degrees and "
                "3 percent larger.");
  sheet.picture(drawn, "flow", number((double)from.size(), 0) + " points",
                "Green: within half a pixel of the true motion (" + number(right, 0) + "). Orange: elsewhere (" +
                    number((double)from.size() - right - lost, 0) + "). Red dots: lost (" + number(lost, 0) + ").",
                "orviOpticalFlowPyrLK_8u_C1R", time);
}

}  // namespace demo

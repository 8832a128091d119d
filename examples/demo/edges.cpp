#include "edges.h"
#include <math.h>
#include "marks.h"
#include "timing.h"

namespace demo {
namespace {

Timed<uint8_t> cannyOf(const Bytes& gray, OrvFilterKernel kernel, OrvMaskSize mask, OrvNormType norm, float low,
                       float high) {
  int32_t bytes;
  require(orviCannyBorderGetSize(gray.size(), 0, mask, 0, &bytes), "orviCannyBorderGetSize");
  std::vector<uint8_t> buffer((size_t)bytes);
  Bytes edges(gray.width, gray.height, 1);
  const double time = leastSeconds([&] {
    require(orviCannyBorder_8u_C1R(gray.pixels.data(), gray.step(), edges.pixels.data(), edges.step(), gray.size(),
                                   kernel, mask, orvBorderRepl, 0, low, high, norm, buffer.data()),
            "orviCannyBorder_8u_C1R");
  });
  return {edges, time};
}

// From derivatives that another filter made: here Scharr's.
Timed<uint8_t> cannyOfDerivatives(const Bytes& gray, float low, float high) {
  int32_t vertical, horizontal, edgeBytes;
  require(orviFilterScharrVertGetBufferSize_8u16s_C1R(gray.size(), &vertical), "orviFilterScharrVertGetBufferSize");
  require(orviFilterScharrHorizGetBufferSize_8u16s_C1R(gray.size(), &horizontal), "orviFilterScharrHorizGetBufferSize");
  require(orviCannyGetSize(gray.size(), &edgeBytes), "orviCannyGetSize");
  std::vector<uint8_t> buffer((size_t)std::max({vertical, horizontal, edgeBytes}));
  Image<int16_t> dx(gray.width, gray.height, 1), dy = dx;
  require(orviFilterScharrVertBorder_8u16s_C1R(gray.pixels.data(), gray.step(), dx.pixels.data(), dx.step(),
                                               gray.size(), orvBorderRepl, 0, buffer.data()),
          "orviFilterScharrVertBorder_8u16s_C1R");
  require(orviFilterScharrHorizBorder_8u16s_C1R(gray.pixels.data(), gray.step(), dy.pixels.data(), dy.step(),
                                                gray.size(), orvBorderRepl, 0, buffer.data()),
          "orviFilterScharrHorizBorder_8u16s_C1R");
  Bytes edges(gray.width, gray.height, 1);
  const double time = leastSeconds([&] {
    require(orviCanny_16s8u_C1R(dx.pixels.data(), dx.step(), dy.pixels.data(), dy.step(), edges.pixels.data(),
                                edges.step(), gray.size(), low, high, buffer.data()),
            "orviCanny_16s8u_C1R");
  });
  return {edges, time};
}

// A chessboard on a table, seen at an angle: the board's point of each pixel by a plane projective map.
Bytes drawBoard() {
  Bytes image(560, 400, 1);
  uint32_t noise = 7;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const double px = x - 300., py = y - 60., depth = 0.0021 * py + 0.0005 * px + 0.52;
      const double u = (0.012 * px - 0.006 * py) / depth + 4, v = (0.0055 * px + 0.0125 * py) / depth;
      const bool board = u > 0 && u < 8 && v > 0 && v < 8;
      const bool rim = u > -0.5 && u < 8.5 && v > -0.5 && v < 8.5;
      noise = noise * 1664525u + 1013904223u;
      const int lit = board ? ((int)u + (int)v) % 2 ? 200 : 50 : rim ? 95 : 150;
      *image.at(x, y) = (uint8_t)(lit + (int)(noise >> 28) - 8);
    }
  return image;
}

struct Line {
  OrvPoint32f from, to;
};

// Lines by angle and distance, each long enough to cross the image.
std::vector<Line> linesOf(const Bytes& edges, int threshold, int most, double* time) {
  const OrvPointPolar delta = {1, 0.0087266f};
  int32_t bytes, count = 0;
  require(orviHoughLineGetSize_8u_C1R(edges.size(), delta, most, &bytes), "orviHoughLineGetSize_8u_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  std::vector<OrvPointPolar> found((size_t)most);
  *time = leastSeconds([&] {
    require(orviHoughLine_8u32f_C1R(edges.pixels.data(), edges.step(), edges.size(), delta, threshold, found.data(),
                                    most, &count, buffer.data()),
            "orviHoughLine_8u32f_C1R");
  });
  const float length = (float)(edges.width + edges.height);
  std::vector<Line> lines;
  for (int i = 0; i < count; ++i) {
    const float c = cosf(found[(size_t)i].theta), s = sinf(found[(size_t)i].theta), rho = found[(size_t)i].rho;
    lines.push_back({{c * rho - s * length, s * rho + c * length}, {c * rho + s * length, s * rho - c * length}});
  }
  return lines;
}

std::vector<Line> segmentsOf(const Bytes& edges, int threshold, int length, int gap, double* time) {
  constexpr int most = 500;
  const OrvPointPolar delta = {1, 0.0174533f};
  int32_t stateBytes, bytes, count = 0;
  require(orviHoughProbLineGetSize_8u_C1R(edges.size(), delta, &stateBytes, &bytes), "orviHoughProbLineGetSize_8u_C1R");
  std::vector<uint8_t> state((size_t)stateBytes), buffer((size_t)bytes);
  auto* const record = (OrvHoughProbState*)(void*)state.data();
  require(orviHoughProbLineInit_8u32f_C1R(edges.size(), delta, 0, record), "orviHoughProbLineInit_8u32f_C1R");
  std::vector<int32_t> found(4 * most);
  *time = leastSeconds([&] {
    require(orviHoughProbLine_8u32f_C1R(edges.pixels.data(), edges.step(), edges.size(), threshold, length, gap,
                                        found.data(), most, &count, buffer.data(), record),
            "orviHoughProbLine_8u32f_C1R");
  });
  std::vector<Line> segments;
  for (size_t i = 0; i < 4 * (size_t)count; i += 4)
    segments.push_back({{(float)found[i], (float)found[i + 1]}, {(float)found[i + 2], (float)found[i + 3]}});
  return segments;
}

Bytes drawn(const Bytes& gray, const std::vector<Line>& lines, bool ends) {
  Bytes canvas = darkened(gray);
  for (const Line& l : lines) line(canvas, l.from, l.to, warm);
  for (const Line& l : lines)
    for (const OrvPoint32f& p : {l.from, l.to})
      if (ends) circle(canvas, p.x, p.y, 2, cool);
  return canvas;
}

}  // namespace

void showEdges(Sheet& sheet, const Bytes& gray) {
  sheet.section("Edges", "Canny edges of the photograph: strong ones, and what hangs together with them.");
  const auto fine = cannyOf(gray, orvFilterKernelSobel, orvMaskSize3x3, orvNormL2, 60, 150);
  sheet.picture(fine.image, "canny_3", "Sobel 3 x 3", "Root of squares, thresholds 60 and 150.",
                "orviCannyBorder_8u_C1R", fine.seconds);
  const auto broad = cannyOf(gray, orvFilterKernelSobel, orvMaskSize5x5, orvNormL1, 1000, 2500);
  sheet.picture(broad.image, "canny_5", "Sobel 5 x 5", "Sum of absolutes, thresholds 1000 and 2500: less noise.",
                "orviCannyBorder_8u_C1R", broad.seconds);
  const auto given = cannyOfDerivatives(gray, 300, 900);
  sheet.picture(given.image, "canny_scharr", "from Scharr derivatives",
                "Thresholds 300 and 900. The time is without that of the derivatives.", "orviCanny_16s8u_C1R",
                given.seconds);
}

void showLines(Sheet& sheet) {
  sheet.section("Straight lines", "A drawn chessboard at an angle, its edges, and the lines that they vote for.");
  const Bytes board = drawBoard();
  sheet.picture(board, "chess", "the board", "With a little noise.");
  const auto edges = cannyOf(board, orvFilterKernelSobel, orvMaskSize3x3, orvNormL2, 80, 200);
  sheet.picture(edges.image, "chess_edges", "its edges", "Sobel 3 x 3, thresholds 80 and 200.",
                "orviCannyBorder_8u_C1R", edges.seconds);
  double time;
  const auto lines = linesOf(edges.image, 110, 40, &time);
  sheet.picture(drawn(board, lines, false), "chess_lines", "lines",
                std::to_string(lines.size()) + " peaks of more than 110 votes, half a degree and a pixel apart.",
                "orviHoughLine_8u32f_C1R", time);
  const auto segments = segmentsOf(edges.image, 30, 25, 3, &time);
  sheet.picture(
      drawn(board, segments, true), "chess_segments", "segments",
      std::to_string(segments.size()) + " of at least 25 pixels with gaps of at most 3; circles at their ends.",
      "orviHoughProbLine_8u32f_C1R", time);
}

}  // namespace demo

#include "statistics.h"
#include <stdio.h>
#include "gaussian.h"
#include "timing.h"

namespace demo {
namespace {

// Where the gray photograph is in the darker half of its range.
Bytes darkPlaces(const Bytes& gray) {
  Bytes mask(gray.width, gray.height, 1);
  for (size_t i = 0; i < gray.pixels.size(); ++i) mask.pixels[i] = gray.pixels[i] < 128 ? 255 : 0;
  return mask;
}

std::string number(double value) {
  char text[32];
  snprintf(text, sizeof text, "%.2f", value);
  return text;
}
std::string at(float value, OrvPoint p) {
  return number(value) + " at (" + std::to_string(p.x) + ", " + std::to_string(p.y) + ")";
}

// A line: what was looked at, then mean, deviation, least, greatest, and the time of the two calls.
template <class MeanStdDev, class MinMax>
std::vector<std::string> line(const char* what, const MeanStdDev& meanStdDev, const MinMax& minMax) {
  double mean, deviation;
  float least, greatest;
  OrvPoint leastAt, greatestAt;
  const double took = leastSeconds([&] {
    require(meanStdDev(&mean, &deviation), "orviMean_StdDev");
    require(minMax(&least, &greatest, &leastAt, &greatestAt), "orviMinMaxIndx");
  });
  return {what, number(mean), number(deviation), at(least, leastAt), at(greatest, greatestAt), number(took * 1e6)};
}

}  // namespace

void showStatistics(Sheet& sheet, const Bytes& photo, const Bytes& gray) {
  sheet.section("Statistics", "By orviMean_StdDev and orviMinMaxIndx: whole, by channel, and under a mask.");
  std::vector<std::vector<std::string>> rows;
  rows.push_back(line(
      "gray", [&](auto... out) { return orviMean_StdDev_8u_C1R(gray.pixels.data(), gray.step(), gray.size(), out...); },
      [&](auto... out) { return orviMinMaxIndx_8u_C1R(gray.pixels.data(), gray.step(), gray.size(), out...); }));
  const char* const channels[] = {"red", "green", "blue"};
  for (int32_t coi = 1; coi <= 3; ++coi)
    rows.push_back(line(
        channels[coi - 1],
        [&](auto... out) {
          return orviMean_StdDev_8u_C3CR(photo.pixels.data(), photo.step(), photo.size(), coi, out...);
        },
        [&](auto... out) {
          return orviMinMaxIndx_8u_C3CR(photo.pixels.data(), photo.step(), photo.size(), coi, out...);
        }));
  const Bytes dark = darkPlaces(gray);
  rows.push_back(line(
      "gray, dark places",
      [&](auto... out) {
        return orviMean_StdDev_8u_C1MR(gray.pixels.data(), gray.step(), dark.pixels.data(), dark.step(), gray.size(),
                                       out...);
      },
      [&](auto... out) {
        return orviMinMaxIndx_8u_C1MR(gray.pixels.data(), gray.step(), dark.pixels.data(), dark.step(), gray.size(),
                                      out...);
      }));
  sheet.table({"of", "mean", "deviation", "least", "greatest", "microseconds"}, rows);

  // How much smoothing takes away, told three ways.
  const Bytes smoothed = smooth(gray, {2}).image;
  double most, sum, root;
  const Bytes all = [&] {
    Bytes mask(gray.width, gray.height, 1);
    for (auto& m : mask.pixels) m = 1;
    return mask;
  }();
  const auto norm = [&](auto function, double* value) {
    require(function(smoothed.pixels.data(), smoothed.step(), gray.pixels.data(), gray.step(), all.pixels.data(),
                     all.step(), gray.size(), value),
            "orviNormRel");
  };
  norm(orviNormRel_Inf_8u_C1MR, &most);
  norm(orviNormRel_L1_8u_C1MR, &sum);
  norm(orviNormRel_L2_8u_C1MR, &root);
  const auto percent = [](double share) { return number(100 * share) + " %"; };
  sheet.table({"smoothed by sigma 2 against the source", "largest", "sum", "root of squares"},
              {{"relative norm of the difference", percent(most), percent(sum), percent(root)}});
}

}  // namespace demo

// Examples to train on: drawn, or out of directories.
#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include "chance.h"
#include "drawing.h"
#include "training.h"

namespace detect {
namespace {

std::vector<demo::Bytes> loadAll(const std::string& directory) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(directory))
    if (entry.is_regular_file()) paths.push_back(entry.path().string());
  std::sort(paths.begin(), paths.end());
  std::vector<demo::Bytes> pictures;
  for (const std::string& path : paths) pictures.push_back(demo::toGray(demo::load(path)));
  if (pictures.empty()) throw std::runtime_error(directory + ": no pictures");
  return pictures;
}

// A square of about the whole picture, a little moved and smaller, mirrored half of the time.
demo::Bytes varied(const demo::Bytes& picture, uint32_t number, int side) {
  Chance c(number);
  const float part = c.in(0.9f, 1);
  const int width = (int)((float)picture.width * part), height = (int)((float)picture.height * part);
  const OrvRect square{c.whole(0, picture.width - width), c.whole(0, picture.height - height), width, height};
  demo::Bytes result = resampled(picture, square, side);
  for (int y = 0; y < side && number % 2 == 1; ++y) std::reverse(result.at(0, y), result.at(0, y) + side);
  return result;
}

}  // namespace

Examples drawnExamples() {
  return {[](uint32_t number, int side) {
            return resampled(drawFace(number, 2 * side), {0, 0, 2 * side, 2 * side}, side);
          },
          [](uint32_t number) {
            return demo::toGray(drawScene(number + 1000000, {256, 192}, 0).image);
          }};
}

Examples picturesOf(const std::string& objects, const std::string& backgrounds) {
  return {
      [all = loadAll(objects)](uint32_t number, int side) { return varied(all[number % all.size()], number, side); },
      [all = loadAll(backgrounds)](uint32_t number) { return all[number % all.size()]; }};
}

}  // namespace detect

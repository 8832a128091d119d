// Moving pictures: corners followed by optical flow, and the foreground by three models, on a page of pictures.
//
//   orvcv_motion DIRECTORY [FRAMES]                   a sequence made from a drawn scene, of so many frames
//   orvcv_motion DIRECTORY PICTURE [FRAMES]           the same from a PNG or JPEG
//   orvcv_motion DIRECTORY SEQUENCE                   a directory of numbered PNGs or JPEGs
//   orvcv_motion DIRECTORY - WIDTH HEIGHT             frames of three bytes a pixel from the standard input
#include <stdio.h>
#include <stdlib.h>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include "demo/scene.h"
#include "show.h"

namespace {

constexpr int usualFrames = 150, fewest = 60, most = 10000, smallest = 96;

// A whole number from low to high, or 0.
int whole(const char* text, int low, int high) {
  char* end;
  const long value = strtol(text, &end, 10);
  return *text != 0 && *end == 0 && value >= low && value <= high ? (int)value : 0;
}

void showRead(demo::Sheet& sheet, const motion::Sequence& s) {
  if (s.size().width < smallest || s.size().height < smallest)
    throw std::runtime_error("frames must have " + std::to_string(smallest) + " pixels a side at least");
  sheet.fact("Frames", std::to_string(s.frames.size()) + " of " + std::to_string(s.size().width) + " x " +
                           std::to_string(s.size().height));
  motion::showTracking(sheet, s);
  motion::showForeground(sheet, s);
}

void showMade(demo::Sheet& sheet, const demo::Bytes& picture, const std::string& name, int frames) {
  if (picture.width < smallest || picture.height < smallest)
    throw std::runtime_error(name + ": each side must have " + std::to_string(smallest) + " pixels at least");
  sheet.fact("Made from", name);
  sheet.fact("Frames", std::to_string(frames) + ", and as many again");
  motion::showTracking(sheet, motion::movingCamera(picture, frames));
  motion::showForeground(sheet, motion::stillCamera(picture, frames));
}

int run(int count, char** arguments) {
  demo::Sheet sheet(arguments[1]);
  const std::string source = count > 2 ? arguments[2] : "";
  const int frames = count > 2 ? whole(arguments[count - 1], fewest, most) : usualFrames;
  if (source == "-") {
    const int width = count == 5 ? whole(arguments[3], 1, 20000) : 0;
    const int height = count == 5 ? whole(arguments[4], 1, 20000) : 0;
    if (width == 0 || height == 0) return 2;
    showRead(sheet, motion::readRaw(stdin, {width, height}));
  } else if (count == 2 || (count == 3 && frames != 0)) {
    showMade(sheet, demo::drawScene(), "a drawn scene", frames);
  } else if (count == 3 && std::filesystem::is_directory(source)) {
    showRead(sheet, motion::readDirectory(source));
  } else if (count == 3 || (count == 4 && frames != 0)) {
    const std::string name = std::filesystem::path(source).filename().string();
    showMade(sheet, demo::load(source), name, count == 3 ? usualFrames : frames);
  } else {
    return 2;
  }
  printf("\nLook at %s\n", sheet.finish("orvCV on moving pictures").c_str());
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    const int result = count >= 2 && count <= 5 ? run(count, arguments) : 2;
    if (result == 2)
      fprintf(stderr, "usage: %s DIRECTORY [PICTURE] [FRAMES] | DIRECTORY SEQUENCE | DIRECTORY - WIDTH HEIGHT\n",
              arguments[0]);
    return result;
  } catch (const std::exception& e) {
    fprintf(stderr, "orvcv_motion: %s\n", e.what());
    return 1;
  }
}

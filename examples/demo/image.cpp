#include "image.h"
#include <math.h>
#include <algorithm>
#include <stdexcept>
#include "orvcore.h"
#include "stb_image.h"
#include "stb_image_write.h"

namespace demo {

Bytes load(const std::string& path) {
  int width, height, channels;
  uint8_t* pixels = stbi_load(path.c_str(), &width, &height, &channels, 3);
  if (pixels == nullptr) throw std::runtime_error(path + ": " + stbi_failure_reason());
  Bytes image(width, height, 3);
  std::copy(pixels, pixels + image.pixels.size(), image.pixels.begin());
  stbi_image_free(pixels);
  return image;
}

std::string save(const Bytes& image, const std::string& directory, const std::string& stem) {
  const bool large = image.pixels.size() > 12000000;
  const std::string name = stem + (large ? ".jpg" : ".png"), path = directory + "/" + name;
  const void* pixels = image.pixels.data();
  const int written =
      large ? stbi_write_jpg(path.c_str(), image.width, image.height, image.channels, pixels, 92)
            : stbi_write_png(path.c_str(), image.width, image.height, image.channels, pixels, image.step());
  if (written == 0) throw std::runtime_error(path + ": can't be written");
  return name;
}

void saveAs(const Bytes& image, const std::string& path) {
  if (stbi_write_png(path.c_str(), image.width, image.height, image.channels, image.pixels.data(), image.step()) == 0)
    throw std::runtime_error(path + ": can't be written");
}

Bytes toGray(const Bytes& colour) {
  Bytes gray(colour.width, colour.height, 1);
  for (size_t i = 0; i < gray.pixels.size(); ++i) {
    const uint8_t* p = &colour.pixels[3 * i];
    gray.pixels[i] = (uint8_t)((77 * p[0] + 150 * p[1] + 29 * p[2] + 128) >> 8);
  }
  return gray;
}

Floats toFloats(const Bytes& image) {
  Floats floats(image.width, image.height, image.channels);
  std::copy(image.pixels.begin(), image.pixels.end(), floats.pixels.begin());
  return floats;
}

Bytes toBytes(const Floats& image, float scale) {
  Bytes bytes(image.width, image.height, image.channels);
  std::transform(image.pixels.begin(), image.pixels.end(), bytes.pixels.begin(),
                 [=](float v) { return (uint8_t)lrintf(std::min(std::max(v * scale, 0.f), 255.f)); });
  return bytes;
}

Bytes amplified(const Bytes& image, int gain) {
  Bytes result = image;
  for (uint8_t& v : result.pixels) v = (uint8_t)std::min(v * gain, 255);
  return result;
}

Bytes cropped(const Bytes& image, OrvPoint corner, OrvSize size) {
  Bytes window(size.width, size.height, image.channels);
  for (int y = 0; y < size.height; ++y)
    std::copy_n(image.at(corner.x, corner.y + y), (size_t)(size.width * image.channels), window.at(0, y));
  return window;
}

void require(OrvStatus status, const char* call) {
  if (status != orvStatusOk) throw std::runtime_error(std::string(call) + ": " + orvGetStatusString(status));
}

}  // namespace demo

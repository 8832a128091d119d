// An image in memory, and its files.
#pragma once
#include <string>
#include <vector>
#include "orvcv.h"

namespace demo {

// Rows without padding; one or three channels, interleaved. T is uint8_t or float.
template <class T>
struct Image {
  int width = 0, height = 0, channels = 0;
  std::vector<T> pixels;

  Image() = default;
  Image(int w, int h, int c) : width(w), height(h), channels(c), pixels((size_t)w * (size_t)h * (size_t)c) {}

  OrvSize size() const { return {width, height}; }
  // The size as a function of one channel sees an interleaved image: elements in place of pixels.
  OrvSize elements() const { return {width * channels, height}; }
  int32_t step() const { return width * channels * (int32_t)sizeof(T); }
  T* at(int x, int y) { return pixels.data() + ((size_t)y * (size_t)width + (size_t)x) * (size_t)channels; }
  const T* at(int x, int y) const { return const_cast<Image*>(this)->at(x, y); }
};
using Bytes = Image<uint8_t>;
using Floats = Image<float>;

// Reads a PNG or JPEG file as three channels. Throws std::runtime_error if it can't.
Bytes load(const std::string& path);

// Writes `directory`/`stem`.png, or .jpg where a PNG would take minutes; returns the file's name.
std::string save(const Bytes& image, const std::string& directory, const std::string& stem);

// Writes a PNG of that name.
void saveAs(const Bytes& image, const std::string& path);

// Brightness of a colour image.
Bytes toGray(const Bytes& colour);

Floats toFloats(const Bytes& image);
// Rounded and limited to 0..255, times `scale`.
Bytes toBytes(const Floats& image, float scale = 1);
// Each value times `gain`, limited to 255: makes small differences visible.
Bytes amplified(const Bytes& image, int gain);
// The window of `size` at (x, y).
Bytes cropped(const Bytes& image, OrvPoint corner, OrvSize size);

// Throws std::runtime_error with the status' text if a call of the library failed.
void require(OrvStatus status, const char* call);

}  // namespace demo

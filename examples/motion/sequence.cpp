#include "sequence.h"
#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace motion {

using demo::Bytes;

namespace {

// The number that a file's name ends with, or -1.
long numberOf(const std::filesystem::path& path) {
  const std::string stem = path.stem().string();
  const size_t last = stem.find_last_not_of("0123456789");
  const std::string digits = last == std::string::npos ? stem : stem.substr(last + 1);
  return digits.empty() || digits.size() > 15 ? -1 : std::stol(digits);
}

void check(const Sequence& s, const std::string& name) {
  if (s.frames.size() < 2) throw std::runtime_error(name + ": a sequence needs two frames at least");
}

}  // namespace

Sequence readDirectory(const std::string& directory) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    const auto extension = entry.path().extension();
    if (extension == ".png" || extension == ".jpg" || extension == ".jpeg") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) {
    const long m = numberOf(a), n = numberOf(b);
    return m != n ? m < n : a < b;
  });
  Sequence s;
  for (const auto& file : files) {
    s.frames.push_back(demo::load(file.string()));
    const Bytes &first = s.frames.front(), &last = s.frames.back();
    if (first.width != last.width || first.height != last.height)
      throw std::runtime_error(file.string() + ": not of the size of the first frame");
  }
  check(s, directory);
  return s;
}

Sequence readRaw(FILE* file, OrvSize size) {
  Sequence s;
  Bytes frame(size.width, size.height, 3);
  while (fread(frame.pixels.data(), 1, frame.pixels.size(), file) == frame.pixels.size()) s.frames.push_back(frame);
  check(s, "the piped frames");
  return s;
}

}  // namespace motion

#include "cascade.h"
#include <math.h>
#include <algorithm>
#include <fstream>
#include <limits>
#include <stdexcept>
#include "demo/image.h"

namespace detect {
namespace {

// Reads the word, then the numbers behind it.
template <class... Number>
void expect(std::ifstream& file, const std::string& path, const char* word, Number&... numbers) {
  std::string found;
  file >> found;
  (file >> ... >> numbers);
  if (!file || found != word) throw std::runtime_error(path + ": \"" + word + "\" and its numbers expected");
}
size_t counted(int n, const std::string& path) {
  if (n < 0 || n > 100000) throw std::runtime_error(path + ": a count out of range");
  return (size_t)n;
}

}  // namespace

Cascade readCascade(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(path + ": can't be read");
  Cascade cascade;
  int version = 0, count = 0;
  expect(file, path, "orvcv-cascade", version);
  if (version != 1) throw std::runtime_error(path + ": of a version that is not known here");
  expect(file, path, "window", cascade.window.width, cascade.window.height);
  expect(file, path, "stages", count);
  cascade.stages.resize(counted(count, path));
  for (Stage& stage : cascade.stages) {
    expect(file, path, "stage", stage.threshold, count);
    stage.features.resize(counted(count, path));
    for (Feature& f : stage.features) {
      expect(file, path, "feature", f.threshold, f.below, f.above, count);
      for (size_t i = counted(count, path); i > 0; --i) {
        OrvRect r;
        float weight;
        file >> r.x >> r.y >> r.width >> r.height >> weight;
        const OrvSize w = cascade.window;
        if (!file || r.x < 0 || r.y < 0 || r.width < 1 || r.height < 1 || r.width > w.width - r.x ||
            r.height > w.height - r.y)
          throw std::runtime_error(path + ": a rectangle in the window expected");
        f.rects.push_back(r), f.weights.push_back(weight);
      }
    }
  }
  return cascade;
}

void writeCascade(const Cascade& cascade, const std::string& path) {
  std::ofstream file(path);
  file.precision(std::numeric_limits<float>::max_digits10);
  file << "orvcv-cascade 1\nwindow " << cascade.window.width << ' ' << cascade.window.height << "\nstages "
       << cascade.stages.size() << '\n';
  for (const Stage& stage : cascade.stages) {
    file << "stage " << stage.threshold << ' ' << stage.features.size() << '\n';
    for (const Feature& f : stage.features) {
      file << "  feature " << f.threshold << ' ' << f.below << ' ' << f.above << ' ' << f.rects.size() << '\n';
      for (size_t i = 0; i < f.rects.size(); ++i) {
        const OrvRect& r = f.rects[i];
        file << "    " << r.x << ' ' << r.y << ' ' << r.width << ' ' << r.height << ' ' << f.weights[i] << '\n';
      }
    }
  }
  if (!file.flush()) throw std::runtime_error(path + ": can't be written");
}

// Sides are rounded, not lengths: rectangles that touch still do.
OrvRect scaled(const OrvRect& r, float scale) {
  const auto at = [=](int side) { return (int)lrintf((float)side * scale); };
  const int x = at(r.x), y = at(r.y);
  return {x, y, std::max(at(r.x + r.width) - x, 1), std::max(at(r.y + r.height) - y, 1)};
}

Classifier makeClassifier(const Stage& stage, OrvSize window, float scale) {
  std::vector<OrvRect> rects;
  std::vector<float> weights, thresholds, below, above;
  std::vector<int32_t> counts;
  for (const Feature& f : stage.features) {
    for (size_t i = 0; i < f.rects.size(); ++i) {
      const OrvRect r = scaled(f.rects[i], scale);
      const float gain = (float)(f.rects[i].width * f.rects[i].height) / (float)(r.width * r.height);
      rects.push_back(r);
      weights.push_back(f.weights[i] * gain / (float)(window.width * window.height));
    }
    thresholds.push_back(f.threshold), below.push_back(f.below), above.push_back(f.above);
    counts.push_back((int32_t)f.rects.size());
  }
  OrvHaarClassifier* state = nullptr;
  demo::require(orviHaarClassifierInitAlloc_32f(&state, rects.data(), weights.data(), thresholds.data(), below.data(),
                                                above.data(), counts.data(), (int32_t)counts.size()),
                "orviHaarClassifierInitAlloc_32f");
  return {state, orviHaarClassifierFree_32f};
}

}  // namespace detect

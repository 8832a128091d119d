// A cascade: stages of features on rectangles in a window, and its file.
//
// The file is text, words apart by spaces or new lines:
//
//   orvcv-cascade 1
//   window WIDTH HEIGHT
//   stages COUNT
//   then for each stage       stage THRESHOLD FEATURES
//     for each feature        feature THRESHOLD BELOW ABOVE RECTANGLES
//       for each rectangle    X Y WIDTH HEIGHT WEIGHT
//
// A feature's response is the sum of weight * (sum of the pixels in the rectangle), divided by the pixels of the window
// and by the standard deviation of the window; it votes BELOW if that is less than its threshold, else ABOVE. A window
// passes a stage if its votes add up to the stage's threshold at least. A window of another size has the rectangles
// scaled, and each sum multiplied by the area that it has lost or gained.
#pragma once
#include <memory>
#include <string>
#include <vector>
#include "orvcv.h"

namespace detect {

struct Feature {
  float threshold = 0, below = 0, above = 0;
  std::vector<OrvRect> rects;
  std::vector<float> weights;
};
struct Stage {
  float threshold = 0;
  std::vector<Feature> features;
};
struct Cascade {
  OrvSize window{24, 24};
  std::vector<Stage> stages;
};

// Throw std::runtime_error if the file can't be read or written, or isn't a cascade.
Cascade readCascade(const std::string& path);
void writeCascade(const Cascade& cascade, const std::string& path);

// A rectangle of the window in a window `scale` times as large, inside of it.
OrvRect scaled(const OrvRect& rect, float scale);

// The library's classifier for a stage in such a window.
using Classifier = std::unique_ptr<OrvHaarClassifier, OrvStatus (*)(OrvHaarClassifier*)>;
Classifier makeClassifier(const Stage& stage, OrvSize window, float scale);

}  // namespace detect

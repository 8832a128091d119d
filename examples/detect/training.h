// Training of a cascade.
//
// Each stage is boosted (gentle AdaBoost: J. Friedman, T. Hastie and R. Tibshirani, "Additive logistic regression",
// 2000) over stumps on rectangle features: in each round the feature and threshold that leave the least weighted
// squared error, voting with the mean of the targets on either side. A stage's threshold lets nearly all objects pass;
// it is done when enough of the other windows fail. The next stage learns from windows that the cascade so far takes
// for objects, found by running it over pictures without any.
#pragma once
#include <functional>
#include "cascade.h"
#include "demo/image.h"

namespace detect {

// Where examples come from. Gray pictures; the same ones for the same number.
struct Examples {
  std::function<demo::Bytes(uint32_t number, int side)> object;  // one object that fills a square
  std::function<demo::Bytes(uint32_t number)> background;        // a picture without the object, larger than the window
};

// Drawn faces and scenes.
Examples drawnExamples();

// Pictures of two directories, PNG or JPEG: one object in each, cut out as a square; and none at all. Objects are
// varied a little.
Examples picturesOf(const std::string& objects, const std::string& backgrounds);

struct Effort {
  int objects = 800, others = 800;  // examples for a stage
  int features = 1000;              // features tried, out of all that fit the window
  int stages = 9, pictures = 40;    // at most; pictures searched for the windows of a stage
  std::function<void(const std::string&)> report = [](const std::string&) {};
};

Cascade train(const Examples& examples, const Effort& effort);

// The part of a gray picture as a square of `side` pixels.
demo::Bytes resampled(const demo::Bytes& gray, const OrvRect& part, int side);

}  // namespace detect

// The library's models of a scene's background, behind one face.
#pragma once
#include <memory>
#include <string>
#include <vector>
#include "demo/image.h"

namespace motion {

class Model {
 public:
  virtual ~Model() = default;
  // Takes a frame. `mask`: 255 foreground, 127 shadow, 0 background; `background`: the scene as now believed.
  virtual void see(const demo::Bytes& frame, demo::Bytes& mask, demo::Bytes& background) = 0;

  std::string name, stem, call;
  double seconds = 0;  // in the library, of all frames
};

// The Gaussian mixture, the counted one, and the histogram model.
std::vector<std::unique_ptr<Model>> makeModels();

// A mask without specks and small holes: opened by 3 x 3, closed by 5 x 5 pixels. Shadows are background.
demo::Bytes cleaned(const demo::Bytes& mask);

struct Score {
  int64_t hits = 0, falseAlarms = 0, misses = 0;

  void add(const demo::Bytes& mask, const demo::Bytes& truth);
  double precision() const { return share(hits, hits + falseAlarms); }
  double recall() const { return share(hits, hits + misses); }
  double overlap() const { return share(hits, hits + falseAlarms + misses); }  // intersection over union
  static double share(int64_t part, int64_t whole) { return whole == 0 ? 1 : (double)part / (double)whole; }
};

}  // namespace motion

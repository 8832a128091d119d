// Drawn pictures to train on and to look through: faces, no two alike, among things that resemble them in part.
#pragma once
#include "demo/image.h"

namespace detect {

struct Scene {
  demo::Bytes image;           // three channels
  std::vector<OrvRect> faces;  // where the faces are: the squares that a detector should find
};

// A scene with `faces` faces of various sizes, none overlapping. Faces that stand on their head, balls, boxes and
// stripes are not among them.
Scene drawScene(uint32_t seed, OrvSize size, int faces);

// One face that fills a square of `side` pixels, as well as a detector's window can be expected to fit: a little off
// its middle and a little too large or small. One channel.
demo::Bytes drawFace(uint32_t seed, int side);

}  // namespace detect

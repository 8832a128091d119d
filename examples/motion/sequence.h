// Moving pictures: read, or made from a still one.
#pragma once
#include <stdio.h>
#include <string>
#include <vector>
#include "demo/image.h"

namespace motion {

// Where a camera looks: pixel p of the frame shows the picture at centre + scale * (p - middle of the frame).
struct View {
  float x, y, scale;
};

struct Sequence {
  std::vector<demo::Bytes> frames;  // three channels, all of one size
  std::vector<View> views;          // made with a moving camera: that of each frame; else empty
  std::vector<demo::Bytes> truth;   // made with a still camera: 255 where something moves; else empty
  demo::Bytes scene;                // made with a still camera: what is behind that, in the light of the last frame

  OrvSize size() const { return frames.front().size(); }
};

// The PNGs and JPEGs of a directory, in the order of the numbers in their names.
Sequence readDirectory(const std::string& directory);

// Frames of three bytes a pixel, one after the other, as video tools pipe them.
Sequence readRaw(FILE* file, OrvSize size);

// A camera with noise that pans over a picture and comes closer.
Sequence movingCamera(const demo::Bytes& picture, int frames);

// A still camera with noise: after a while things pass, with shadows, and the light swells and fades.
Sequence stillCamera(const demo::Bytes& picture, int frames);

}  // namespace motion

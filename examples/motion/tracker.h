// Points that follow the picture from frame to frame.
#pragma once
#include <memory>
#include <vector>
#include "demo/image.h"

namespace motion {

// Levels of a gray frame, each half the one before, down to about 20 pixels.
class Levels {
 public:
  explicit Levels(const demo::Bytes& gray);
  const OrvPyramid* record() const { return record_.get(); }

 private:
  std::unique_ptr<OrvPyramid, OrvStatus (*)(OrvPyramid*)> record_;
  std::vector<demo::Bytes> images_;
};

// Corners, the strongest first: maxima of the smaller eigenvalue, no two nearer than `spacing`.
std::vector<OrvPoint32f> findCorners(const demo::Bytes& gray, float spacing, size_t most);

struct Track {
  std::vector<OrvPoint32f> places;  // one a frame, from frame `first` on
  int first;
  bool lost = false;
};

class Tracker {
 public:
  explicit Tracker(size_t points) : points_(points) {}
  // Follows all points into the next frame; finds new corners where there are too few.
  void see(const demo::Bytes& frame);
  const std::vector<Track>& tracks() const { return tracks_; }
  double seconds() const { return seconds_; }  // of all calls to optical flow
  int steps() const { return steps_; }         // points that were followed into a frame, summed over the frames

 private:
  void follow(const Levels& next, OrvSize size);
  void addCorners(const demo::Bytes& gray);

  size_t points_;
  int frame_ = 0, steps_ = 0;
  double seconds_ = 0;
  std::vector<Track> tracks_;
  std::unique_ptr<Levels> previous_;
};

}  // namespace motion

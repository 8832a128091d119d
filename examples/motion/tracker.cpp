#include "tracker.h"
#include <math.h>
#include <algorithm>
#include "demo/timing.h"

namespace motion {

using demo::Bytes;
using demo::Floats;
using demo::require;

namespace {

constexpr int window = 15, iterations = 20, coarsest = 20;
constexpr float precise = 0.02f;  // pixels
constexpr float unlike = 14;      // gray levels by which a window may have changed
constexpr float margin = 2;       // pixels to the sides
constexpr float spacing = 12;

OrvPyramid* makeRecord(OrvSize size) {
  int levels = 1;
  while (levels < 5 && std::min(size.width, size.height) >> levels > coarsest) ++levels;
  OrvPyramid* record = nullptr;
  require(orviPyramidInitAlloc(&record, std::max(levels - 1, 1), size, 2), "orviPyramidInitAlloc");
  return record;
}

}  // namespace

Levels::Levels(const Bytes& gray) : record_(makeRecord(gray.size()), orviPyramidFree), images_{gray} {
  int32_t bytes;
  require(orviPyrDownGetBufSize_Gauss5x5(gray.width, orvData8u, 1, &bytes), "orviPyrDownGetBufSize_Gauss5x5");
  std::vector<uint8_t> buffer((size_t)bytes);
  for (int i = 1; i <= record_->level; ++i) {
    const Bytes& fine = images_.back();
    Bytes coarse(record_->roi[i].width, record_->roi[i].height, 1);
    require(orviPyrDown_Gauss5x5_8u_C1R(fine.pixels.data(), fine.step(), coarse.pixels.data(), coarse.step(),
                                        fine.size(), buffer.data()),
            "orviPyrDown_Gauss5x5_8u_C1R");
    images_.push_back(std::move(coarse));
  }
  for (int i = 0; i <= record_->level; ++i) {
    record_->images[i] = images_[(size_t)i].pixels.data();
    record_->steps[i] = images_[(size_t)i].step();
  }
}

std::vector<OrvPoint32f> findCorners(const Bytes& gray, float apart, size_t most) {
  int32_t bytes;
  require(orviMinEigenValGetBufferSize_8u32f_C1R(gray.size(), 3, 5, &bytes), "orviMinEigenValGetBufferSize_8u32f_C1R");
  std::vector<uint8_t> buffer((size_t)bytes);
  Floats value(gray.width, gray.height, 1);
  require(orviMinEigenVal_8u32f_C1R(gray.pixels.data(), gray.step(), value.pixels.data(), value.step(), gray.size(),
                                    orvKernelSobel, 3, 5, buffer.data()),
          "orviMinEigenVal_8u32f_C1R");
  const float least = 0.01f * *std::max_element(value.pixels.begin(), value.pixels.end());
  std::vector<OrvPoint> maxima;
  for (int y = 8; y < gray.height - 8; ++y)
    for (int x = 8; x < gray.width - 8; ++x) {
      bool largest = *value.at(x, y) > least;
      for (int i = 0; i < 9 && largest; ++i) largest = *value.at(x, y) >= *value.at(x + i % 3 - 1, y + i / 3 - 1);
      if (largest) maxima.push_back({x, y});
    }
  std::sort(maxima.begin(), maxima.end(),
            [&](OrvPoint a, OrvPoint b) { return *value.at(a.x, a.y) > *value.at(b.x, b.y); });
  std::vector<OrvPoint32f> corners;
  for (const OrvPoint p : maxima) {
    const auto near = [&](OrvPoint32f c) { return hypotf(c.x - (float)p.x, c.y - (float)p.y) < apart; };
    if (corners.size() < most && std::none_of(corners.begin(), corners.end(), near))
      corners.push_back({(float)p.x, (float)p.y});
  }
  return corners;
}

void Tracker::see(const Bytes& frame) {
  const Bytes gray = demo::toGray(frame);
  auto levels = std::make_unique<Levels>(gray);
  if (previous_) follow(*levels, gray.size());
  addCorners(gray);
  previous_ = std::move(levels);
  ++frame_;
}

void Tracker::follow(const Levels& next, OrvSize size) {
  std::vector<Track*> live;
  std::vector<OrvPoint32f> from;
  for (Track& t : tracks_)
    if (!t.lost) live.push_back(&t), from.push_back(t.places.back());
  if (live.empty()) return;
  std::vector<OrvPoint32f> to = from;
  std::vector<int8_t> status(from.size());
  std::vector<float> error(from.size());
  OrvOptFlowPyrLKState* made = nullptr;
  require(orviOpticalFlowPyrLKInitAlloc_8u_C1R(&made, size, window, 0), "orviOpticalFlowPyrLKInitAlloc_8u_C1R");
  const std::unique_ptr<OrvOptFlowPyrLKState, OrvStatus (*)(OrvOptFlowPyrLKState*)> state(
      made, orviOpticalFlowPyrLKFree_8u_C1R);
  seconds_ += demo::seconds([&] {
    require(orviOpticalFlowPyrLK_8u_C1R(previous_->record(), next.record(), from.data(), to.data(), status.data(),
                                        error.data(), (int32_t)from.size(), window, next.record()->level, iterations,
                                        precise, state.get()),
            "orviOpticalFlowPyrLK_8u_C1R");
  });
  for (size_t i = 0; i < live.size(); ++i) {
    const bool inside = to[i].x >= margin && to[i].y >= margin && to[i].x < (float)size.width - margin &&
                        to[i].y < (float)size.height - margin;
    live[i]->lost = status[i] != 0 || error[i] > unlike || !inside;
    if (!live[i]->lost) live[i]->places.push_back(to[i]), ++steps_;
  }
}

void Tracker::addCorners(const Bytes& gray) {
  const auto live = (size_t)std::count_if(tracks_.begin(), tracks_.end(), [](const Track& t) { return !t.lost; });
  if (4 * live >= 3 * points_) return;
  std::vector<OrvPoint32f> places;
  for (const Track& t : tracks_)
    if (!t.lost) places.push_back(t.places.back());
  for (const OrvPoint32f c : findCorners(gray, spacing, 2 * points_)) {
    const auto near = [&](OrvPoint32f p) { return hypotf(p.x - c.x, p.y - c.y) < spacing; };
    if (places.size() >= points_ || std::any_of(places.begin(), places.end(), near)) continue;
    places.push_back(c);
    tracks_.push_back({{c}, frame_});
  }
}

}  // namespace motion

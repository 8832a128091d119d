// What the tests of foreground models share: a video, and refusals.
#pragma once
#include <algorithm>
#include "framework/sweep.h"
#include "reference/foreground.h"

namespace test {

// Pixels of several habits: 0 still, 1 two values in turn, 2 noise, 3 near black, 4 anything. Now and then half of them
// change what they are about. A frame may have one habit for all pixels.
struct Video {
  OrvSize roi;
  int channels, pixels;
  Image<uint8_t> src, back, mask;
  std::vector<uint8_t> about;

  Video(Random& r, Shape shape, int count)
      : roi{shape.width, shape.height},
        channels(count),
        pixels(shape.width * shape.height),
        src(r, shape.width, shape.height, count),
        back(r, shape.width, shape.height, count),
        mask(r, shape.width, shape.height, 1),
        about((size_t)(pixels * count)) {
    draw(r);
  }
  void draw(Random& r, int habit = -1) {
    src.fill(r, false);
    const bool moves = r.one(40);
    for (int i = 0; i < pixels * channels; ++i) {
      uint8_t& b = about[(size_t)i];
      if (moves && r.one(2)) b = (uint8_t)r.next();
      const int values[] = {b, b ^ (r.one(2) ? 64 : 0), b + r.in(-6, 6), r.in(0, 6), r.in(0, 255)};
      src.set(i % src.elements(), i / src.elements(), (uint8_t)values[habit >= 0 ? habit : i / channels % 5]);
    }
    src.keep();
  }
  const uint8_t* pixel(int i) const { return src.data() + i / roi.width * src.step() + i % roi.width * channels; }
  uint8_t& maskOf(int i) const { return mask.data()[i / roi.width * mask.step() + i % roi.width]; }
  bool onlyOutputsChanged() const { return src.unchanged() && back.onlyRegionChanged() && mask.onlyRegionChanged(); }
};

// Runs follow(random, video) on videos of many shapes.
template <class Follow>
void forVideos(const Follow& follow) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 4 : 24); ++i) {
    const Shape shape = i % 4 < 2 ? Shape{r.in(1, 20), r.in(1, 4)} : Shape{r.in(60, 140), 1};
    const Context context(detail::describe("video", shape) + (i % 2 ? " C3" : " C1"));
    Video video(r, shape, i % 2 ? 3 : 1);
    follow(r, video);
  }
  CHECK(steeredLiveAllocations() == 0);
}

// The checks of a function that takes a frame: images, as many as told, the ROI and a state for 13 x 5 pixels.
template <class Function, class... Role>
void walkFrame(Function function, const std::vector<int>& images, Role... roles) {
  const int roi = images.back() + 1;
  walkArguments("a frame", function,
                eachOf(Fault::null, images) + pointersThenSizes({roi + 1}, roi) + eachOf(Fault::smallStep, {0}),
                roles...);
}

// Refusals of init and free; each allocation fails once; a size whose bytes wrap to few. `more` takes a state for 13
// x 5.
template <class State, class Init, class Free, class More>
void checkInit(Init init, Free release, int channels, int allocations, const More& more) {
  walkArguments("init", init, pointersThenSizes({0, 3}, 1) + eachOf(Fault::smallStep, {0}), In<uint8_t>(channels),
                Roi(), Value<const void*>({&channels}), Result<State*>());
  const uint8_t frame[13 * 5 * 3] = {};
  State* state = nullptr;
  const auto make = [&](int32_t width, int32_t height, const void* model) {
    return init(frame, height == 5 ? 39 : INT32_MAX, {width, height}, model, &state);
  };
  CHECK(make(13, 1, nullptr) == orvStatusNullPtr && release(nullptr) == orvStatusNullPtr);
  CHECK(make(64, (1 << 26) + 1, frame) == orvStatusNoMem && !state && steeredLiveAllocations() == 0);
  for (int kth = 1; kth <= allocations; ++kth) {
    steerFailAllocation(kth);
    CHECK(make(13, 1, frame) == orvStatusNoMem && !state && steeredLiveAllocations() == 0, "allocation %d", kth);
  }
  steerFailAllocation(0);
  CHECK(make(13, 5, frame) == orvStatusOk && steeredAllocations() == allocations);
  more(state);
  CHECK(release(state) == orvStatusOk && steeredLiveAllocations() == 0);
}

}  // namespace test

// What the tests of foreground models share: a video, and refusals.
#pragma once
#include <algorithm>
#include "framework/sweep.h"
#include "reference/foreground.h"

namespace test {

// Pixels of several habits: still, one of two values in turn, noise, near black, anything. Now and then half of them
// change what they are about; `dark` makes every pixel near black.
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
  void draw(Random& r, bool dark = false) {
    src.fill(r, false);
    const bool moves = r.one(40);
    for (int i = 0; i < pixels * channels; ++i) {
      uint8_t& b = about[(size_t)i];
      if (moves && r.one(2)) b = (uint8_t)r.next();
      const int values[] = {b, b ^ (r.one(2) ? 64 : 0), b + r.in(-6, 6), r.in(0, 9), r.in(0, 255)};
      src.set(i % src.elements(), i / src.elements(), (uint8_t)values[dark ? 3 : i / channels % 5]);
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
  for (int i = 0; i < (quick() ? 4 : 12); ++i) {
    const Shape shape = i % 4 < 2 ? Shape{r.in(1, 20), r.in(1, 4)} : Shape{r.in(60, 140), 1};
    const Context context(detail::describe("video", shape) + (i % 2 ? " C3" : " C1"));
    Video video(r, shape, i % 2 ? 3 : 1);
    follow(r, video);
  }
  CHECK(steeredLiveAllocations() == 0);
}

// The checks of a function that takes a frame first; `nulls` images in front of the ROI, and a null state behind it.
template <class Function, class... Role>
void walkFrame(Function function, std::vector<int> nulls, Role... roles) {
  std::vector<Told> order = pointersThenSizes(nulls, (int)sizeof...(roles) - 2);
  order.push_back({Fault::smallStep, 0});
  walkArguments("a frame", function, order, roles...);
}

// Refusals of init and free; each allocation fails once; sizes beyond all memory, of which nothing is read.
template <class State, class Init, class Free>
void checkInit(Init init, Free release, int channels, int allocations) {
  Random r(seed());
  const Video video(r, {13, 5}, channels);
  const auto make = [&](OrvSize roi, const void* model, State** state) {
    return init(video.src.data(), roi.width > 13 ? INT32_MAX : video.src.step(), roi, model, state);
  };
  State* state = nullptr;
  walkArguments("init", init,
                {{Fault::null, 0}, {Fault::null, 3}, {Fault::width, 1}, {Fault::height, 1}, {Fault::smallStep, 0}},
                In<uint8_t>(channels), Roi(), Value<const void*>({&video}), Result<State*>());
  CHECK(make(video.roi, nullptr, &state) == orvStatusNullPtr && release(nullptr) == orvStatusNullPtr);
  for (int kth = 0; kth <= allocations + 1; ++kth) {
    steerFailAllocation(kth <= allocations ? kth : 0);
    const OrvSize roi = kth == 0 ? OrvSize{1 << 28, INT32_MAX} : video.roi;
    const OrvStatus want = kth <= allocations ? orvStatusNoMem : orvStatusOk;
    CHECK(make(roi, &video, &state) == want && !state == (want != orvStatusOk), "allocation %d", kth);
    if (state) CHECK(steeredAllocations() == allocations && release(state) == orvStatusOk);
    CHECK(steeredLiveAllocations() == 0);
  }
}

}  // namespace test

// What the tests of foreground models share: a video, and the refusals of their functions.
#pragma once
#include <algorithm>
#include "framework/sweep.h"

namespace test {

// Pixels of several habits: still, one of two values in turn, noise, near black, anything. Now and then all change what
// they are about; `dark` makes every pixel near black.
struct Video {
  std::vector<uint8_t> base;

  void draw(Random& r, Image<uint8_t>& image, int channels, bool dark = false) {
    image.fill(r, false);
    base.resize((size_t)(image.height() * image.elements()));
    const bool moves = r.one(40);
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.elements(); ++x) {
        uint8_t& b = base[(size_t)(y * image.elements() + x)];
        if (moves && r.one(2)) b = (uint8_t)r.next();
        const int habit = dark ? 3 : (x / channels + 2 * y) % 5;
        const int values[] = {b, b ^ (r.one(2) ? 64 : 0), b + r.in(-6, 6), r.in(0, 9), r.in(0, 255)};
        image.set(x, y, (uint8_t)values[habit]);
      }
    image.keep();
  }
};

// Refusals of init and free, and of memory: each allocation fails once.
template <class State>
void checkInit(OrvStatus (*init)(const uint8_t*, int32_t, OrvSize, const void*, State**), OrvStatus (*release)(State*),
               int channels, int allocations) {
  const int model = 0;
  walkArguments("init", init,
                {{Fault::null, 0}, {Fault::null, 3}, {Fault::width, 1}, {Fault::height, 1}, {Fault::smallStep, 0}},
                In<uint8_t>(channels), Roi(), Value<const void*>({&model}), Result<State*>());
  const uint8_t frame[4 * 3 * 3] = {};
  const OrvSize roi = {4, 3};
  State* state = nullptr;
  CHECK(init(frame, 12, roi, nullptr, &state) == orvStatusNullPtr && release(nullptr) == orvStatusNullPtr);
  for (int kth = 1; kth <= allocations; ++kth) {
    steerFailAllocation(kth);
    CHECK(init(frame, 12, roi, &model, &state) == orvStatusNoMem && !state && steeredLiveAllocations() == 0);
  }
  // more than can be asked for; nothing is read
  CHECK(init(frame, 1 << 20, {65536, 1 << 15}, &model, &state) == orvStatusNoMem && steeredLiveAllocations() == 0);
  steerFailAllocation(0);
  CHECK(init(frame, 12, roi, &model, &state) == orvStatusOk && steeredAllocations() == allocations);
  CHECK(release(state) == orvStatusOk && steeredLiveAllocations() == 0);
}

}  // namespace test

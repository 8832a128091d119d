// The counted mixture against its full form, beyond the frame that fills the window; refusals.
// One body serves both variants.
#include "motion/foreground_video.h"

using namespace test;
using State = OrvForegroundGaussianState;

namespace {

const struct Functions {
  OrvStatus (*init)(const uint8_t*, int32_t, OrvSize, const void*, State**);
  OrvStatus (*run)(const uint8_t*, int32_t, uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, State*);
  OrvStatus (*free)(State*);
} functions[] = {
    {orviForegroundGaussianInitAlloc_8u_C1R, orviForegroundGaussian_8u_C1R, orviForegroundGaussianFree_8u_C1R},
    {orviForegroundGaussianInitAlloc_8u_C3R, orviForegroundGaussian_8u_C3R, orviForegroundGaussianFree_8u_C3R}};

// Some pixels are met near black for the first time in frame 200, where nothing is counted.
void follow(Random& r, Video& v) {
  const Functions& call = functions[v.channels == 3];
  State* state = nullptr;
  CHECK(call.init(v.src.data(), v.src.step(), v.roi, &r, &state) == orvStatusOk);
  std::vector<reference::CountedMixture> plain;
  for (int i = 0; i < v.pixels; ++i) plain.emplace_back(v.pixel(i), v.channels);
  for (int frame = 1; frame <= 240; ++frame) {
    if (frame > 1) v.draw(r, frame == 200 || (frame > 200 && r.one(9)) ? 3 : -1);
    CHECK(call.run(v.src.data(), v.src.step(), v.back.data(), v.back.step(), v.mask.data(), v.mask.step(), v.roi,
                   state) == orvStatusOk);
    for (int i = 0; i < v.pixels; ++i) {
      bool right = v.maskOf(i) == (plain[i].advance(frame, v.pixel(i)) ? 255 : 0) && (frame > 1 || v.maskOf(i) == 0);
      for (int c = 0; c < v.channels; ++c)
        right &= v.back.at(i % v.roi.width * v.channels + c, i / v.roi.width) == (int)(plain[i].modes[0].mean[c] + 0.5);
      if (!right) return fail("frame %d, pixel %d", frame, i);
    }
    CHECK(v.onlyOutputsChanged());
  }
  CHECK(call.free(state) == orvStatusOk);
}

}  // namespace

TEST(videos) { forVideos(follow); }

TEST(refusals) {
  for (const int channels : {1, 3}) {
    const Functions& call = functions[channels == 3];
    checkInit<State>(call.init, call.free, channels, 4, [&](State* state) {
      walkFrame(call.run, {0, 1, 2}, In<uint8_t>(channels), Out<uint8_t>(channels), Out<uint8_t>(), Roi(),
                Value<State*>({state}));
      uint8_t p[13 * 6 * 3];
      CHECK(call.run(p, 42, p, 42, p, 42, {14, 5}, state) == orvStatusSize);
      CHECK(call.run(p, 39, p, 39, p, 39, {13, 6}, state) == orvStatusSize);
    });
  }
}

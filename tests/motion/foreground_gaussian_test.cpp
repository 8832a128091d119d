// The counted mixture against its full form, over the frame that fills the window; refusals.
// One body serves both variants.
#include "motion/foreground_video.h"
#include "reference/foreground.h"

using namespace test;

namespace {

using State = OrvForegroundGaussianState;
const struct Functions {
  OrvStatus (*init)(const uint8_t*, int32_t, OrvSize, const void*, State**);
  OrvStatus (*run)(const uint8_t*, int32_t, uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, State*);
  OrvStatus (*free)(State*);
} functions[] = {
    {orviForegroundGaussianInitAlloc_8u_C1R, orviForegroundGaussian_8u_C1R, orviForegroundGaussianFree_8u_C1R},
    {orviForegroundGaussianInitAlloc_8u_C3R, orviForegroundGaussian_8u_C3R, orviForegroundGaussianFree_8u_C3R}};

// Some pixels are met near black for the first time in frame 200, where nothing is counted.
void follow(Random& r, Shape shape, int channels) {
  const Context context(detail::describe("video", shape) + " C" + std::to_string(channels));
  const Functions& call = functions[channels == 3];
  const OrvSize roi = {shape.width, shape.height};
  Image<uint8_t> src(r, shape.width, shape.height, channels), back(r, shape.width, shape.height, channels),
      mask(r, shape.width, shape.height, 1);
  Video video;
  video.draw(r, src, channels);
  State* state = nullptr;
  CHECK(call.init(src.data(), src.step(), roi, &r, &state) == orvStatusOk);
  std::vector<reference::CountedMixture> plain;
  const auto pixel = [&](int i) { return src.data() + i / roi.width * src.step() + i % roi.width * channels; };
  for (int i = 0; i < roi.width * roi.height; ++i) plain.emplace_back(pixel(i), channels);
  for (int frame = 1; frame <= 240; ++frame) {
    if (frame > 1) video.draw(r, src, channels, frame == 200 || (frame > 200 && r.one(9)));
    CHECK(call.run(src.data(), src.step(), back.data(), back.step(), mask.data(), mask.step(), roi, state) ==
          orvStatusOk);
    CHECK(src.unchanged() && back.onlyRegionChanged() && mask.onlyRegionChanged());
    for (int i = 0; i < roi.width * roi.height; ++i) {
      const int x = i % roi.width, y = i / roi.width, want = plain[i].advance(frame, pixel(i)) ? 255 : 0;
      if (mask.at(x, y) != want) return fail("frame %d, mask at %d, %d: %d", frame, x, y, mask.at(x, y));
      for (int c = 0; c < channels; ++c)
        if (back.at(x * channels + c, y) != (int)(plain[i].modes[0].mean[c] + 0.5))
          return fail("frame %d, background at %d, %d, %d", frame, x, y, c);
      if (frame == 1 && want) fail("the first frame has foreground");
    }
  }
  CHECK(call.free(state) == orvStatusOk);
}

}  // namespace

TEST(videos) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 4 : 12); ++i) follow(r, {r.in(1, 40), r.in(1, 8)}, i % 2 ? 3 : 1);
  CHECK(steeredLiveAllocations() == 0);
}

TEST(refusals) {
  for (const int channels : {1, 3}) {
    const Functions& call = functions[channels == 3];
    checkInit(call.init, call.free, channels, 4);
    uint8_t frame[13 * 5 * 3] = {}, out[13 * 5 * 3];
    State* state = nullptr;
    CHECK(call.init(frame, 39, {13, 5}, frame, &state) == orvStatusOk);
    walkArguments("run", call.run,
                  {{Fault::null, 0},
                   {Fault::null, 1},
                   {Fault::null, 2},
                   {Fault::width, 3},
                   {Fault::height, 3},
                   {Fault::smallStep, 0}},
                  In<uint8_t>(channels), Out<uint8_t>(channels), Out<uint8_t>(), Roi(), Value<State*>({state}));
    CHECK(call.run(frame, 39, out, 39, out, 39, {13, 5}, nullptr) == orvStatusNullPtr);
    for (const OrvSize larger : {OrvSize{14, 5}, {13, 6}})
      CHECK(call.run(frame, 42, out, 42, out, 42, larger, state) == orvStatusSize);
    CHECK(call.free(state) == orvStatusOk);
  }
}

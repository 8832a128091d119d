// The Gaussian mixture against its plain form, frame by frame, masks, modes and backgrounds; sizes; refusals.
#include <string.h>
#include <vector>
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/walker.h"
#include "reference/mixture.h"

using namespace test;

namespace {

// What lies in the buffer: pointers at 16, 24 and 32 of the next multiple of 32.
struct Buffer {
  Guarded memory;
  Buffer(int32_t bytes, size_t gap) : memory((size_t)bytes, true, gap) {}
  OrvFGMMState* state() const { return (OrvFGMMState*)(void*)memory.data(); }
  template <class T>
  T at(int field, ptrdiff_t index) const {
    const uint8_t *start = memory.data() + (-(uintptr_t)memory.data() & 31), *array;
    memcpy(&array, start + field, sizeof array);
    T value;
    memcpy(&value, array + index * (ptrdiff_t)sizeof(T), sizeof(T));
    return value;
  }
};

int32_t bytesFor(OrvSize roi, int32_t gauss) {
  int32_t bytes = -1;
  CHECK(orviFGMMGetBufferSize_8u_C3R(roi, gauss, &bytes) == orvStatusOk);
  return bytes;
}

// Colours of few kinds, their darker shades, and noise: modes are met again, lost and found.
void nextFrame(Random& r, Image<uint8_t>& image) {
  const uint8_t palette[5][3] = {{0, 0, 0}, {200, 60, 90}, {203, 61, 94}, {30, 220, 128}, {255, 255, 255}};
  const bool still = r.one(3);
  for (int i = 0; i < image.elements() / 3 * image.height(); ++i) {
    const int kind = still ? 1 + i % 4 : r.in(0, 4), shade = r.one(4) ? r.in(1, 9) : 10,
              noise = r.one(2) ? r.in(0, 6) : 0;
    const int x = i % (image.elements() / 3), y = i / (image.elements() / 3);
    for (int c = 0; c < 3; ++c)
      image.set(3 * x + c, y, (uint8_t)std::min(255, palette[kind][c] * shade / 10 + (noise ? r.in(0, noise) : 0)));
  }
  image.keep();
}

struct Case {
  OrvSize roi;
  OrvFGMMModel model;
  double learningRate;
};

void compareAll(const Case& k, Random& r) {
  const int gauss = k.model.numGauss, width = k.roi.width;
  const Buffer buffer(bytesFor(k.roi, gauss), (size_t)r.in(0, 40));
  OrvFGMMModel model = k.model;
  model.numGauss = -7;  // the maximum counts
  CHECK(orviFGMMInit_8u_C3R(k.roi, gauss, &model, buffer.state()) == orvStatusOk);
  model = k.model;
  std::vector<reference::Mixture> pixels((size_t)(width * k.roi.height));
  for (auto& p : pixels) p.slots.resize((size_t)gauss);
  Image<uint8_t> src(r, width, k.roi.height, 3), dst(r, width, k.roi.height, 1), picture(r, width, k.roi.height, 3);
  for (int frame = 0; frame <= 16; ++frame) {
    const Context context("frame " + std::to_string(frame));
    bool same = true;
    if (frame > 0) {
      nextFrame(r, src);
      if (frame == 9) model.shadowEnable ^= 1, model.bgRatio *= 0.7f, model.numFrames = 4;
      CHECK(orviFGMMForeground_8u_C3R(src.data(), src.step(), dst.data(), dst.step(), k.roi, buffer.state(),
                                      frame == 9 ? &model : nullptr, k.learningRate) == orvStatusOk);
    }
    CHECK(orviFGMMBackground_8u_C3R(picture.data(), picture.step(), k.roi, buffer.state()) == orvStatusOk);
    for (int i = 0; i < width * k.roi.height && same; ++i) {
      const int x = i % width, y = i / width;
      auto& p = pixels[(size_t)i];
      const uint8_t colour[3] = {src.at(3 * x, y), src.at(3 * x + 1, y), src.at(3 * x + 2, y)};
      if (frame > 0) same = p.foreground(model, frame, k.learningRate, colour) == dst.at(x, y);
      for (int c = 0; c < 3; ++c) same = same && p.background(model, c) == picture.at(3 * x + c, y);
      same = same && buffer.at<uint8_t>(32, i) == p.count;
      for (ptrdiff_t m = 0; m < gauss; ++m) {
        const auto& mode = p.slots[(size_t)m];
        for (int c = 0; c < 3; ++c) same = same && buffer.at<float>(16, (i * gauss + m) * 3 + c) == mode.mean[c];
        same = same && buffer.at<float>(24, (i * gauss + m) * 2) == mode.weight &&
               buffer.at<float>(24, (i * gauss + m) * 2 + 1) == mode.variance;
      }
      CHECK(same, "%d x %d, %d modes: pixel (%d, %d)", width, k.roi.height, gauss, x, y);
    }
    if (!same) return;
  }
  CHECK(src.unchanged() && dst.onlyRegionChanged() && picture.onlyRegionChanged() && buffer.memory.intact());
}

const OrvFGMMModel usual = {500, 5, 15, 4, 75, 16, 0.9f, 9, 0.05f, 127, 1, 0.5f};

}  // namespace

TEST(againstThePlainForm) {
  // history, modes, three variances, varThreshold, bgRatio, genThreshold, complexityPrior, shadow value, on, tau
  const Case cases[] = {
      {{1, 1}, usual, -1},
      {{3, 5}, {1, 2, 15, 4, 75, 16, 0.9f, 9, 0.05f, 127, 0, 0.5f}, -1},         // rate 1 in all frames
      {{33, 3}, {500, 5, 60, 4, 75, 9, 0.6f, 16, 0.9f, 100, 1, 0.2f}, 0.3},      // strong pruning
      {{70, 2}, {20, 3, 400, 400, 1000, 2, 0.99f, 9, 0.3f, 127, 1, 1.01f}, -1},  // wide modes that rise
      {{32, 2}, {20, 1, 15, 4, 75, 16, 0.9f, 9, 0.05f, 127, 1, 0.7f}, 0.05},     // one mode
      {{40, 2}, {50, 10, 1, 0, 5, 16, 0, 4, 0, 127, 1, 0.5f}, 0.02},             // more modes than layers, variance 0
      {{65, 1}, {50, 4, 15, 4, 75, 16, 0.9f, 9, 0.05f, 127, 1, 0.5f}, 0},        // frozen: weights of 0
      {{31, 4}, {50, 4, 15, 4, 75, 16, 0.9f, 9, -0.2f, 127, 1, 0.5f}, 0.2}};     // gains instead of pruning
  for (const Case& k : cases)
    forEachSetting(false, [&] {
      Random r(seed());
      compareAll(k, r);
    });
}

TEST(sizes) {
  CHECK(bytesFor({1, 1}, 1) == 32 * 4 + 416 && bytesFor({5, 7}, 3) == 864 + 1280 + 192 + 64 + 416);
  int32_t bytes = -1;
  CHECK(orviFGMMGetBufferSize_8u_C3R({0, 0}, 0, nullptr) == orvStatusNullPtr);
  CHECK(orviFGMMGetBufferSize_8u_C3R({0, 5}, 0, &bytes) == orvStatusSize);
  CHECK(orviFGMMGetBufferSize_8u_C3R({5, 5}, 0, &bytes) == orvStatusBadArg && bytes == -1);
  CHECK(orviFGMMInit_8u_C3R({0, 5}, 0, nullptr, nullptr) == orvStatusNullPtr);
}

namespace {
struct Arguments {
  const uint8_t* src;
  int32_t srcStep;
  uint8_t* dst;
  int32_t dstStep;
  OrvSize roi;
  OrvFGMMState* state;
  OrvFGMMModel model;
};
}  // namespace

TEST(refusals) {
  const OrvSize roi{4, 3};
  const Buffer buffer(bytesFor(roi, 5), 3);
  CHECK(orviFGMMInit_8u_C3R(roi, 5, &usual, buffer.state()) == orvStatusOk);
  std::vector<uint8_t> src(36, 9), dst(36, 7);
  const std::vector<uint8_t> before(buffer.memory.data(), buffer.memory.data() + buffer.memory.bytes());
  const auto untouched = [&] {
    return memcmp(before.data(), buffer.memory.data(), before.size()) == 0 && dst == std::vector<uint8_t>(36, 7);
  };
  const Arguments valid{src.data(), 12, dst.data(), 4, roi, buffer.state(), usual};
  using A = Arguments;
  const Check<A> noDst{"dst", orvStatusNullPtr, [](A&a) { a.dst = nullptr; }},
      noState{"state", orvStatusNullPtr, [](A&a) { a.state = nullptr; }},
      step{"dstStep", orvStatusStep, [](A&a) { a.dstStep = 0; }},
      width{"width", orvStatusSize, [](A&a) { a.roi.width = 0; }},
      height{"height", orvStatusSize, [](A&a) { a.roi.height = -1; }};
  const auto run = [](A& a) {
    return orviFGMMForeground_8u_C3R(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.state, &a.model, 0.1);
  };
  walkChecks<A>(valid,
                {{"src", orvStatusNullPtr, [](A& a) { a.src = nullptr; }},
                 noDst,
                 noState,
                 {"srcStep", orvStatusStep, [](A& a) { a.srcStep = -12; }},
                 step,
                 width,
                 height,
                 {"numGauss", orvStatusBadArg, [](A& a) { a.model.numGauss = 6; }}},
                run, untouched);
  Arguments none = valid;
  none.model.numGauss = 0;
  CHECK(run(none) == orvStatusBadArg && untouched());
  const auto show = [](A& a) { return orviFGMMBackground_8u_C3R(a.dst, a.dstStep, a.roi, a.state); };
  walkChecks<A>(valid, {noDst, noState, step, width, height}, show, untouched);
  const auto start = [](A& a) { return orviFGMMInit_8u_C3R(a.roi, a.dstStep, &a.model, a.state); };
  walkChecks<A>(valid, {noState, width, height, {"maxNGauss", orvStatusBadArg, [](A& a) { a.dstStep = 0; }}}, start,
                untouched);
}

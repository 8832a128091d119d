// The Gaussian mixture against its plain form, frame by frame, masks, modes and backgrounds; sizes; refusals.
#include "framework/sweep.h"
#include "reference/mixture.h"

using namespace test;

namespace {

// What lies in the buffer: pointers at 16, 24 and 32 of the next multiple of 32.
struct Buffer {
  Guarded memory;
  Buffer(int32_t bytes, size_t gap) : memory((size_t)bytes, true, gap) {}
  OrvFGMMState* state() const { return (OrvFGMMState*)(void*)memory.data(); }
  const uint8_t* array(int field) const {
    const uint8_t* start;
    memcpy(&start, memory.data() + (-(uintptr_t)memory.data() & 31) + field, sizeof start);
    return start;
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
  const int width = image.elements() / 3;
  for (int i = 0; i < width * image.height(); ++i) {
    const int kind = still ? 1 + i % 4 : r.in(0, 4), shade = r.one(4) ? r.in(1, 9) : 10, noise = 6 * r.in(0, 1);
    for (int c = 0; c < 3; ++c)
      image.set(3 * (i % width) + c, i / width, (uint8_t)std::min(255, palette[kind][c] * shade / 10 + r.in(0, noise)));
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
      const uint8_t* const colour = src.data() + y * src.step() + 3 * x;
      if (frame > 0) same = p.foreground(model, frame, k.learningRate, colour) == dst.at(x, y);
      for (int c = 0; c < 3; ++c) same = same && p.background(model, c) == picture.at(3 * x + c, y);
      same = same && buffer.array(32)[i] == p.count;
      for (int m = 0; m < gauss && same; ++m) {
        const auto& mode = p.slots[(size_t)m];
        const float spread[] = {mode.weight, mode.variance};
        same = memcmp(buffer.array(16) + (i * gauss + m) * 12, mode.mean, 12) == 0 &&
               memcmp(buffer.array(24) + (i * gauss + m) * 8, spread, 8) == 0;
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
  walkArguments("size", orviFGMMGetBufferSize_8u_C3R, pointersThenSizes({2}, 0) + std::vector<Told>{badValue(1, 0)},
                Roi(), Value<int32_t>({3}), Result<int32_t>());
}

TEST(refusals) {
  const OrvSize roi{13, 5};
  const Buffer buffer(bytesFor(roi, 5), 3);
  OrvFGMMModel model = usual;
  CHECK(orviFGMMInit_8u_C3R(roi, 5, &model, buffer.state()) == orvStatusOk);
  const std::vector<uint8_t> before(buffer.memory.data(), buffer.memory.data() + buffer.memory.bytes());
  const Value<OrvFGMMState*> state({buffer.state()});
  const Value<const OrvFGMMModel*> models({&model});
  const std::vector<Told> steps = {badValue(0, -12, orvStatusStep), badValue(1, 0, orvStatusStep)},
                          sizes = {{Fault::width, 2}, {Fault::height, 2}};
  for (const int gauss : {0, 6}) {
    model.numGauss = gauss;
    walkArguments("foreground", orviFGMMForeground_8u_C3R, eachOf(Fault::null, {0, 1, 3}) + steps + sizes,
                  In<uint8_t>(3), Out<uint8_t>(), Roi(), state, models, Value<double>({0.1}));
    uint8_t pixels[13 * 5 * 3] = {};
    CHECK(orviFGMMForeground_8u_C3R(pixels, 39, pixels, 13, roi, buffer.state(), &model, 0.1) == orvStatusBadArg &&
          std::all_of(pixels, std::end(pixels), [](uint8_t b) { return b == 0; }));
  }
  walkArguments("background", orviFGMMBackground_8u_C3R,
                eachOf(Fault::null, {0, 2}) + std::vector<Told>{steps[0], {Fault::width, 1}, {Fault::height, 1}},
                Out<uint8_t>(3), Roi(), state);
  walkArguments("init", orviFGMMInit_8u_C3R, pointersThenSizes({2, 3}, 0) + std::vector<Told>{badValue(1, 0)}, Roi(),
                Value<int32_t>({5}), models, state);
  CHECK(memcmp(before.data(), buffer.memory.data(), before.size()) == 0, "refused, and yet something was written");
}

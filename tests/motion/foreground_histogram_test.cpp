// The histogram model against the full form of a pixel and of the thresholds, over many frames; refusals.
// One body serves both variants.
#include "motion/foreground_video.h"

using namespace test;
using State = OrvForegroundHistogramState;

namespace {

const struct Functions {
  OrvStatus (*init)(const uint8_t*, int32_t, OrvSize, const void*, State**);
  OrvStatus (*run)(const uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, State*);
  OrvStatus (*update)(const uint8_t*, int32_t, const uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, State*);
  OrvStatus (*free)(State*);
} functions[] = {{orviForegroundHistogramInitAlloc_8u_C1R, orviForegroundHistogram_8u_C1R,
                  orviForegroundHistogramUpdate_8u_C1R, orviForegroundHistogramFree_8u_C1R},
                 {orviForegroundHistogramInitAlloc_8u_C3R, orviForegroundHistogram_8u_C3R,
                  orviForegroundHistogramUpdate_8u_C3R, orviForegroundHistogramFree_8u_C3R}};

// The elements of an image without its padding.
std::vector<uint8_t> content(const Image<uint8_t>& image) {
  std::vector<uint8_t> all;
  for (int i = 0; i < image.height() * image.elements(); ++i)
    all.push_back(image.at(i % image.elements(), i / image.elements()));
  return all;
}

// Which pixels differ by more than the largest deviation of the differences of at least t, over all t.
std::vector<bool> differing(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b, int channels) {
  std::vector<bool> marked(a.size() / (size_t)channels);
  for (int c = 0; c < channels; ++c) {
    double threshold = 10;
    for (int t = 0; t < 256; ++t) {
      double n = 0, sum = 0, squares = 0;
      for (int i = c; i < (int)a.size(); i += channels)
        if (const int d = abs(a[i] - b[i]); d >= t) n += 1, sum += d, squares += d * d;
      if (n > 0) threshold = std::max(threshold, sqrt(std::max(0.0, squares / n - sum / n * (sum / n))));
    }
    for (int i = c; i < (int)a.size(); i += channels)
      if (abs(a[i] - b[i]) > threshold) marked[i / channels] = true;
  }
  return marked;
}

// The mask handed back is mostly foreground for some time, then background, or the other way; in the end the model's
// own.
void follow(Random& r, Video& v) {
  const Functions& call = functions[v.channels == 3];
  const bool foregroundFirst = r.one(2);
  State* state = nullptr;
  CHECK(call.init(v.src.data(), v.src.step(), v.roi, &r, &state) == orvStatusOk);
  std::vector<uint8_t> previous = content(v.src), background = previous;
  std::vector<reference::SeenValues> values((size_t)v.pixels, reference::SeenValues(false)),
      changes((size_t)v.pixels, reference::SeenValues(true));
  const uint8_t* const last = v.pixel(v.pixels - 1) + v.channels - 1;
  for (int frame = 1; frame <= 300; ++frame) {
    v.draw(r, r.one(3) ? 2 : -1);
    const std::vector<uint8_t> now = content(v.src);
    const auto changed = differing(now, previous, v.channels), unusual = differing(now, background, v.channels);
    CHECK(call.run(v.src.data(), v.src.step(), v.mask.data(), v.mask.step(), v.roi, state) == orvStatusOk);
    for (int i = 0; i < v.pixels; ++i) {
      const uint8_t* const p = v.pixel(i);
      const reference::Values near = {*p, *std::min(p + 1, last), *std::min(p + 2, last)};
      const bool want = changed[i] ? !changes[i].ready || changes[i].isForeground(near)
                                   : unusual[i] && values[i].ready && values[i].isForeground(near);
      if (v.maskOf(i) != (want ? 255 : 0)) return fail("frame %d: mask of pixel %d", frame, i);
    }
    for (int i = 0; i < v.pixels && frame < 240; ++i)
      if (!r.one(60)) v.maskOf(i) = (frame < 60) == foregroundFirst;
    const std::vector<uint8_t> mask = content(v.mask);
    CHECK(call.update(v.src.data(), v.src.step(), v.mask.data(), v.mask.step(), v.back.data(), v.back.step(), v.roi,
                      state) == orvStatusOk);
    for (int i = 0; i < v.pixels; ++i) {
      reference::Values pair{}, value{};
      for (int c = 0; c < v.channels; ++c)
        pair[c] = previous[i * v.channels + c], pair[v.channels + c] = value[c] = now[i * v.channels + c];
      if (changed[i] || !changes[i].ready) changes[i].learn(pair, 2 * v.channels, !mask[i]);
      if (!changed[i] && values[i].learn(value, v.channels, !mask[i])) values[i].prior = 1 - values[i].prior;
      for (int c = i * v.channels; c < (i + 1) * v.channels && !mask[i]; ++c)
        background[c] = changed[i] || unusual[i] ? now[c] : (uint8_t)(background[c] * 0.9f + now[c] * 0.1f);
    }
    if (content(v.back) != background) return fail("frame %d: reference image", frame);
    CHECK(v.onlyOutputsChanged() && content(v.mask) == mask);
    previous = now;
  }
  CHECK(call.free(state) == orvStatusOk);
}

}  // namespace

TEST(videos) { forVideos(follow); }

TEST(refusals) {
  for (const int channels : {1, 3}) {
    const Functions& call = functions[channels == 3];
    checkInit<State>(call.init, call.free, channels, 8, [&](State* state) {
      const Value<State*> states({state});
      walkFrame(call.run, {0, 1}, In<uint8_t>(channels), Out<uint8_t>(), Roi(), states);
      walkFrame(call.update, {0, 1, 2}, In<uint8_t>(channels), Mask(), Out<uint8_t>(channels), Roi(), states);
      uint8_t p[13 * 6 * 3];
      CHECK(call.run(p, 42, p, 42, {14, 5}, state) == orvStatusSize);
      CHECK(call.update(p, 39, p, 39, p, 39, {13, 6}, state) == orvStatusSize);
    });
  }
}

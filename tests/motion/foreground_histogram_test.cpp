// The histogram model against the full form of a pixel and of the thresholds, over many frames; refusals.
// One body serves both variants.
#include "motion/foreground_video.h"
#include "reference/foreground.h"

using namespace test;

namespace {

using State = OrvForegroundHistogramState;
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
  for (size_t c = 0; c < (size_t)channels; ++c) {
    double threshold = 10;
    for (int t = 0; t < 256; ++t) {
      double n = 0, sum = 0, squares = 0;
      for (size_t i = c; i < a.size(); i += (size_t)channels) {
        const double d = abs(a[i] - b[i]);
        if (d >= t) n += 1, sum += d, squares += d * d;
      }
      if (n > 0) threshold = std::max(threshold, sqrt(std::max(0.0, squares / n - sum / n * (sum / n))));
    }
    for (size_t i = c; i < a.size(); i += (size_t)channels)
      if (abs(a[i] - b[i]) > threshold) marked[i / (size_t)channels] = true;
  }
  return marked;
}

// The mask handed back is the model's own, for some time all foreground, or anything.
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
  std::vector<uint8_t> previous = content(src), reference = previous;
  std::vector<reference::SeenValues> values((size_t)(roi.width * roi.height), reference::SeenValues(false)),
      changes(values.size(), reference::SeenValues(true));
  for (int frame = 1; frame <= 300; ++frame) {
    video.draw(r, src, channels);
    const std::vector<uint8_t> now = content(src);
    const std::vector<bool> changed = differing(now, previous, channels), unusual = differing(now, reference, channels);
    CHECK(call.run(src.data(), src.step(), mask.data(), mask.step(), roi, state) == orvStatusOk);
    for (int i = 0; i < roi.width * roi.height; ++i) {
      const uint8_t *const last = src.data() + (roi.height - 1) * src.step() + roi.width * channels - 1,
                           *p = src.data() + i / roi.width * src.step() + i % roi.width * channels;
      const reference::Values near = {*p, *std::min(p + 1, last), *std::min(p + 2, last)};
      const bool want = changed[i]   ? !changes[i].ready || changes[i].isForeground(near)
                        : unusual[i] ? values[i].ready && values[i].isForeground(near)
                                     : false;
      if (mask.at(i % roi.width, i / roi.width) != (want ? 255 : 0))
        return fail("frame %d, mask of pixel %d", frame, i);
    }
    CHECK(mask.onlyRegionChanged());
    for (int i = 0; i < roi.width * roi.height && frame % 150 < 100; ++i)
      if (frame % 150 > 60 || r.one(9)) mask.set(i % roi.width, i / roi.width, 1);
    mask.keep();
    CHECK(call.update(src.data(), src.step(), mask.data(), mask.step(), back.data(), back.step(), roi, state) ==
          orvStatusOk);
    CHECK(src.unchanged() && mask.unchanged() && back.onlyRegionChanged());
    for (int i = 0; i < roi.width * roi.height; ++i) {
      const bool background = mask.at(i % roi.width, i / roi.width) == 0;
      reference::Values pair{}, value{};
      for (int c = 0; c < channels; ++c)
        pair[c] = previous[i * channels + c], pair[channels + c] = value[c] = now[i * channels + c];
      if (changed[i] || !changes[i].ready) changes[i].learn(pair, 2 * channels, background);
      if (!changed[i] && values[i].learn(value, channels, background)) values[i].prior = 1 - values[i].prior;
      for (int c = i * channels; c < (i + 1) * channels && background; ++c)
        reference[c] = changed[i] || unusual[i] ? now[c] : (uint8_t)((float)reference[c] * 0.9f + (float)now[c] * 0.1f);
    }
    if (content(back) != reference) return fail("frame %d: reference image", frame);
    previous = now;
  }
  CHECK(call.free(state) == orvStatusOk);
}

}  // namespace

TEST(videos) {
  Random r(seed());
  for (int i = 0; i < (quick() ? 4 : 12); ++i) follow(r, {r.in(1, 20), r.in(1, 4)}, i % 2 ? 3 : 1);
  CHECK(steeredLiveAllocations() == 0);
}

TEST(refusals) {
  for (const int channels : {1, 3}) {
    const Functions& call = functions[channels == 3];
    checkInit(call.init, call.free, channels, 8);
    uint8_t frame[13 * 5 * 3] = {}, out[13 * 5 * 3];
    State* state = nullptr;
    CHECK(call.init(frame, 39, {13, 5}, frame, &state) == orvStatusOk);
    walkArguments("run", call.run,
                  {{Fault::null, 0}, {Fault::null, 1}, {Fault::width, 2}, {Fault::height, 2}, {Fault::smallStep, 0}},
                  In<uint8_t>(channels), Out<uint8_t>(), Roi(), Value<State*>({state}));
    walkArguments("update", call.update,
                  {{Fault::null, 0},
                   {Fault::null, 1},
                   {Fault::null, 2},
                   {Fault::width, 3},
                   {Fault::height, 3},
                   {Fault::smallStep, 0}},
                  In<uint8_t>(channels), Mask(), Out<uint8_t>(channels), Roi(), Value<State*>({state}));
    CHECK(call.run(frame, 39, out, 39, {13, 5}, nullptr) == orvStatusNullPtr);
    CHECK(call.update(frame, 39, frame, 39, out, 39, {13, 5}, nullptr) == orvStatusNullPtr);
    for (const OrvSize larger : {OrvSize{14, 5}, {13, 6}})
      CHECK(call.run(frame, 42, out, 42, larger, state) == orvStatusSize &&
            call.update(frame, 42, frame, 42, out, 42, larger, state) == orvStatusSize);
    CHECK(call.free(state) == orvStatusOk);
  }
}

// Inpainting against its plain form, one state over several frames; refusals; memory.
// One body serves both variants.
#include "distance/distance_roles.h"
#include "reference/inpaint.h"

using namespace test;

namespace {

const struct Functions {
  OrvStatus (*init)(OrvInpaintState**, const float*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, float);
  OrvStatus (*run)(const uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, OrvInpaintState*);
  OrvStatus (*free)(OrvInpaintState*);
} functions[] = {{orviInpaintInitAlloc_8u_C1R, orviInpaint_8u_C1R, orviInpaintFree_8u_C1R},
                 {orviInpaintInitAlloc_8u_C3R, orviInpaint_8u_C3R, orviInpaintFree_8u_C3R}};

// A mask, its hole well inside the image or anywhere, and its distances.
struct Prepared {
  Image<uint8_t> mask;
  Image<float> dist;
  OrvSize roi;

  Prepared(Random& r, Shape shape, int kind, bool inside, float band)
      : mask(r, shape.width, shape.height, 1), dist(r, shape.width, shape.height, 1), roi{shape.width, shape.height} {
    drawMask(r, mask, kind);
    for (int y = 0; y < roi.height; ++y)
      for (int x = 0; x < roi.width; ++x)
        if (inside && std::min({x, y, roi.width - 1 - x, roi.height - 1 - y}) < 5) mask.set(x, y, 0);
    mask.keep();
    int32_t bytes = 0;
    orviFastMarchingGetBufferSize_8u32f_C1R(roi, &bytes);
    std::vector<uint8_t> buffer((size_t)bytes);
    orviFastMarching_8u32f_C1R(mask.data(), mask.step(), dist.data(), dist.step(), roi, band, buffer.data());
    dist.keep();
  }
  OrvStatus init(const Functions& call, OrvInpaintState** state, int method, float radius) const {
    return call.init(state, dist.data(), dist.step(), mask.data(), mask.step(), roi, method, radius);
  }
};

// Frames: 0 waves, 1 an edge, 2 noise, in place.
void drawFrame(Random& r, Image<uint8_t>& image, int frame) {
  image.fill(r, false);
  for (int y = 0; y < image.height() && frame < 2; ++y)
    for (int x = 0; x < image.elements(); ++x)
      image.set(x, y, (uint8_t)(frame == 0 ? 7 * x + 11 * y : 60 + (2 * x > 3 * y ? 90 : x / 2)));
  image.keep();
}

void check(Random& r, Shape shape, int kind, int channels, int method, float radius) {
  char text[80];
  snprintf(text, sizeof text, "%dx%d kind %d C%d method %d radius %g", shape.width, shape.height, kind, channels,
           method, (double)radius);
  const Context context(text);
  const Prepared p(r, shape, kind, r.one(3), r.one(2) ? radius : 0);
  const Functions& call = functions[channels == 3];
  OrvInpaintState* state = nullptr;
  CHECK(p.init(call, &state, method, radius) == orvStatusOk);
  for (int frame = 0; frame < 3; ++frame) {
    Image<uint8_t> src(r, shape.width, shape.height, channels), dst(r, shape.width, shape.height, channels);
    drawFrame(r, src, frame);
    reference::Inpaint plain{{}, {}, {}, shape.width, shape.height, channels, method, radius};
    for (int y = 0; y < shape.height; ++y) {
      for (int x = 0; x < src.elements(); ++x) plain.image.push_back(src.at(x, y));
      for (int x = 0; x < shape.width; ++x)
        plain.hole.push_back(p.mask.at(x, y) != 0), plain.dist.push_back(p.dist.at(x, y));
    }
    plain.run();
    Image<uint8_t>& result = frame == 2 ? src : dst;
    CHECK(call.run(src.data(), src.step(), result.data(), result.step(), p.roi, state) == orvStatusOk);
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < src.elements(); ++x) {
        const int want = plain.image[(size_t)(y * src.elements() + x)];
        if (result.at(x, y) != want) fail("frame %d at %d, %d: %d, not %d", frame, x, y, result.at(x, y), want);
      }
    CHECK(result.onlyRegionChanged() && (frame == 2 || src.unchanged()));
  }
  CHECK(call.free(state) == orvStatusOk && p.mask.unchanged() && p.dist.unchanged());
}

}  // namespace

TEST(both_methods) {
  Random r(seed());
  const float radii[] = {1, 1.5f, 2, 3, 3.7f, 6};
  for (int i = 0; i < (quick() ? 20 : 200); ++i) {
    const Shape shape = i % 4 == 3 ? Shape{r.in(1, 7), r.in(1, 7)} : Shape{r.in(1, 40), r.in(1, 30)};
    check(r, shape, r.in(0, maskKinds - 1), i % 2 ? 1 : 3, i / 2 % 2, radii[r.in(0, 5)]);
  }
  CHECK(steeredLiveAllocations() == 0);
}

TEST(refusals) {
  Random r(seed());
  for (const int channels : {1, 3}) {
    const Functions& call = functions[channels == 3];
    walkArguments("init", call.init,
                  pointersThenSizes({2, 1, 0}, 3) + eachOf(Fault::smallStep, {2}) + stepsOf<float>({1}) +
                      std::vector<Told>{badValue(4, 2), badValue(5, 0.99), badValue(5, NAN)},
                  Result<OrvInpaintState*>(), In<float>(), Mask(), Roi(), Value<int32_t>({0}), Value<float>({2.f}));
    CHECK(call.free(nullptr) == orvStatusNullPtr);
    for (const bool empty : {false, true}) {
      const Prepared p(r, {13, 5}, empty ? 4 : 6, false, 0);
      OrvInpaintState* state = nullptr;
      for (int kth = 1; kth <= (empty ? 1 : 2); ++kth) {
        steerFailAllocation(kth);
        CHECK(p.init(call, &state, 1, 3) == orvStatusNoMem && !state && steeredLiveAllocations() == 0);
      }
      steerFailAllocation(0);
      // more neighbours than memory; no matter without a mask
      if (!empty)
        CHECK(p.init(call, &state, 0, 1e30f) == orvStatusNoMem &&
              (quick() || p.init(call, &state, 0, 9e3f) == orvStatusNoMem));
      CHECK(p.init(call, &state, 1, empty ? 1e30f : 3.f) == orvStatusOk);
      walkArguments("run", call.run, pointersThenSizes({0, 1, 3}, 2) + eachOf(Fault::smallStep, {0, 1}),
                    In<uint8_t>(channels), Out<uint8_t>(channels), Roi(), Value<OrvInpaintState*>({state}));
      uint8_t pixels[13 * 5 * 3] = {};
      for (const OrvSize other : {OrvSize{12, 5}, {13, 4}})
        CHECK(call.run(pixels, 39, pixels, 39, other, state) == orvStatusSize);
      CHECK(call.free(state) == orvStatusOk && steeredLiveAllocations() == 0);
    }
  }
}

// Inpainting against its plain form, one state over several frames; refusals; memory.
// One body serves both variants.
#include "distance/distance_roles.h"
#include "reference/inpaint.h"

using namespace test;

namespace {

struct Functions {
  OrvStatus (*init)(OrvInpaintState**, const float*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, float);
  OrvStatus (*run)(const uint8_t*, int32_t, uint8_t*, int32_t, OrvSize, OrvInpaintState*);
  OrvStatus (*free)(OrvInpaintState*);
};
const Functions functions[] = {{orviInpaintInitAlloc_8u_C1R, orviInpaint_8u_C1R, orviInpaintFree_8u_C1R},
                               {orviInpaintInitAlloc_8u_C3R, orviInpaint_8u_C3R, orviInpaintFree_8u_C3R}};

// Marks a few blots, touching the edges named by `kind`: 0 inside, 1 anywhere, 2 nearly all, 3 a frame, 4 one pixel.
void drawHole(Random& r, Image<uint8_t>& mask, int kind) {
  const int width = mask.elements(), height = mask.height(), margin = kind == 0 ? 5 : 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      mask.set(x, y, kind == 2 || (kind == 3 && (x == 0 || y == 0 || x == width - 1 || y == height - 1)) ? 9 : 0);
  const int blots = kind == 4 ? 1 : kind == 3 ? 0 : 3;
  for (int i = 0; i < blots && width > 2 * margin && height > 2 * margin; ++i) {
    const int x0 = r.in(margin, width - 1 - margin), y0 = r.in(margin, height - 1 - margin),
              side = kind == 4 ? 0 : r.in(0, 4);
    for (int y = y0; y <= std::min(y0 + side, height - 1 - margin); ++y)
      for (int x = x0; x <= std::min(x0 + side, width - 1 - margin); ++x)
        mask.set(x, y, kind == 2 ? 0 : (uint8_t)r.in(1, 255));
  }
  mask.keep();
}

struct Frame {
  Image<uint8_t> mask;
  Image<float> dist;
  OrvSize roi;
  Frame(Random& r, Shape shape, int kind, float band)
      : mask(r, shape.width, shape.height, 1), dist(r, shape.width, shape.height, 1), roi{shape.width, shape.height} {
    drawHole(r, mask, kind);
    int32_t bytes = 0;
    orviFastMarchingGetBufferSize_8u32f_C1R(roi, &bytes);
    std::vector<uint8_t> buffer((size_t)bytes);
    orviFastMarching_8u32f_C1R(mask.data(), mask.step(), dist.data(), dist.step(), roi, band, buffer.data());
    dist.keep();
  }
};

void check(Random& r, Shape shape, int kind, int channels, int method, float radius) {
  char text[80];
  snprintf(text, sizeof text, "%dx%d kind %d C%d method %d radius %g", shape.width, shape.height, kind, channels,
           method, (double)radius);
  const Context context(text);
  const Frame f(r, shape, kind, r.one(2) ? radius : 0);
  const Functions& call = functions[channels == 3];
  OrvInpaintState* state = nullptr;
  CHECK(call.init(&state, f.dist.data(), f.dist.step(), f.mask.data(), f.mask.step(), f.roi, method, radius) ==
        orvStatusOk);
  for (int frame = 0; frame < 3; ++frame) {
    Image<uint8_t> src(r, shape.width, shape.height, channels), dst(r, shape.width, shape.height, channels);
    src.fill(r, false);
    for (int y = 0; y < shape.height && frame < 2; ++y)  // smooth, with an edge
      for (int x = 0; x < src.elements(); ++x)
        src.set(x, y, (uint8_t)(frame == 0 ? 7 * x + 11 * y : 60 + (2 * x > 3 * y ? 90 : x / 2)));
    src.keep();
    reference::Inpaint plain{{}, {}, {}, shape.width, shape.height, channels, method, radius};
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < src.elements(); ++x) {
        plain.image.push_back(src.at(x, y));
        if (x % channels) continue;
        plain.hole.push_back(f.mask.at(x / channels, y) != 0);
        plain.dist.push_back(f.dist.at(x / channels, y));
      }
    plain.run();
    const bool inPlace = frame == 2;
    Image<uint8_t>& result = inPlace ? src : dst;
    CHECK(call.run(src.data(), src.step(), result.data(), result.step(), f.roi, state) == orvStatusOk);
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < src.elements(); ++x) {
        const int want = plain.image[(size_t)(y * src.elements() + x)];
        if (result.at(x, y) != want) fail("frame %d, %d, %d: %d, not %d", frame, x, y, result.at(x, y), want);
      }
    CHECK(result.onlyRegionChanged() && (inPlace || src.unchanged()));
  }
  CHECK(call.free(state) == orvStatusOk && f.mask.unchanged() && f.dist.unchanged());
}

}  // namespace

TEST(both_methods) {
  Random r(seed());
  const float radii[] = {1, 1.5f, 2, 3, 3.7f, 6};
  const int live = steeredLiveAllocations();
  for (int i = 0; i < (quick() ? 60 : 240); ++i) {
    const Shape shape = i % 4 == 3 ? Shape{r.in(1, 7), r.in(1, 7)} : Shape{r.in(1, 40), r.in(1, 30)};
    check(r, shape, r.in(0, 4), i % 2 ? 1 : 3, i / 2 % 2, radii[r.in(0, 5)]);
  }
  CHECK(steeredLiveAllocations() == live);
}

// Flat surroundings leave no other choice; a pixel between two sides is their mean.
TEST(known_values) {
  const std::vector<float> dist = {0, 0, 0, 0, 1, 0, 0, 0, 0};
  const std::vector<uint8_t> mask = {0, 0, 0, 0, 1, 0, 0, 0, 0}, flat(9, 77), sides = {0, 0, 0, 100, 5, 50, 0, 0, 0};
  for (const int method : {0, 1}) {
    OrvInpaintState* state = nullptr;
    CHECK(orviInpaintInitAlloc_8u_C1R(&state, dist.data(), 12, mask.data(), 3, {3, 3}, method, 1.f) == orvStatusOk);
    std::vector<uint8_t> dst(9);
    CHECK(orviInpaint_8u_C1R(flat.data(), 3, dst.data(), 3, {3, 3}, state) == orvStatusOk && dst == flat);
    orviInpaint_8u_C1R(sides.data(), 3, dst.data(), 3, {3, 3}, state);
    if (method == 0) CHECK(dst[4] == 38, "%d", dst[4]);  // the slope is 0 here: four neighbours, 37.5
    orviInpaintFree_8u_C1R(state);
  }
}

namespace {

struct InitArguments {
  OrvInpaintState** state;
  const float* dist;
  int32_t distStep;
  const uint8_t* mask;
  int32_t maskStep;
  OrvSize roi;
  int32_t method;
  float radius;
};
struct RunArguments {
  const uint8_t* src;
  int32_t srcStep;
  uint8_t* dst;
  int32_t dstStep;
  OrvSize roi;
  OrvInpaintState* state;
};

}  // namespace

TEST(refusals) {
  Random r(seed());
  for (const int channels : {1, 3})
    for (const int kind : {1, 5}) {  // 5: an empty mask
      const Functions& call = functions[channels == 3];
      const Frame f(r, {9, 7}, kind == 5 ? 0 : kind, 0);
      OrvInpaintState *state = nullptr, *const none = nullptr;
      const InitArguments valid = {&state, f.dist.data(), f.dist.step(), f.mask.data(), f.mask.step(), f.roi, 0, 2.f};
      walkChecks<InitArguments>(
          valid,
          {{"mask", orvStatusNullPtr, [](InitArguments& a) { a.mask = nullptr; }},
           {"dist", orvStatusNullPtr, [](InitArguments& a) { a.dist = nullptr; }},
           {"state", orvStatusNullPtr, [](InitArguments& a) { a.state = nullptr; }},
           {"width", orvStatusSize, [](InitArguments& a) { a.roi.width = 0; }},
           {"height", orvStatusSize, [](InitArguments& a) { a.roi.height = -1; }},
           {"mask step", orvStatusStep, [](InitArguments& a) { a.maskStep = 8; }},
           {"dist step", orvStatusStep, [](InitArguments& a) { a.distStep = 35; }},
           {"alignment", orvStatusStepAlign, [](InitArguments& a) { a.distStep += 2; }},
           {"method", orvStatusBadArg, [](InitArguments& a) { a.method = 2; }},
           {"radius", orvStatusBadArg, [](InitArguments& a) { a.radius = 0.99f; }}},
          [&](InitArguments& a) {
            return call.init(a.state, a.dist, a.distStep, a.mask, a.maskStep, a.roi, a.method, a.radius);
          },
          [&] { return state == none; });
      for (int kth = 1; kth <= 2; ++kth) {
        const int live = steeredLiveAllocations();
        steerFailAllocation(kth);
        const OrvStatus status =
            call.init(&state, f.dist.data(), f.dist.step(), f.mask.data(), f.mask.step(), f.roi, 1, 3);
        const bool reached = steeredAllocations() >= kth;
        steerFailAllocation(0);
        if (!reached) call.free(state);
        CHECK(status == (reached ? orvStatusNoMem : orvStatusOk) && steeredLiveAllocations() == live);
        state = nullptr;
      }
      CHECK(call.init(&state, f.dist.data(), f.dist.step(), f.mask.data(), f.mask.step(), f.roi, 1, 3) == orvStatusOk);
      Image<uint8_t> src(r, 9, 7, channels), dst(r, 9, 7, channels);
      walkChecks<RunArguments>(
          {src.data(), src.step(), dst.data(), dst.step(), f.roi, state},
          {{"src", orvStatusNullPtr, [](RunArguments& a) { a.src = nullptr; }},
           {"dst", orvStatusNullPtr, [](RunArguments& a) { a.dst = nullptr; }},
           {"state", orvStatusNullPtr, [](RunArguments& a) { a.state = nullptr; }},
           {"width", orvStatusSize, [](RunArguments& a) { a.roi.width = 8; }},
           {"height", orvStatusSize, [](RunArguments& a) { a.roi.height = 0; }},
           {"src step", orvStatusStep, [&](RunArguments& a) { a.srcStep = 9 * channels - 1; }},
           {"dst step", orvStatusStep, [&](RunArguments& a) { a.dstStep = 9 * channels - 1; }}},
          [&](RunArguments& a) { return call.run(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.state); },
          [&] { return dst.unchanged(); });
      CHECK(call.free(state) == orvStatusOk && call.free(nullptr) == orvStatusNullPtr);
    }
  // an empty mask, and radii with more neighbours than memory
  const std::vector<uint8_t> empty(12), full(12, 1);
  const std::vector<float> dist(12, 1.f);
  OrvInpaintState* state = nullptr;
  CHECK(orviInpaintInitAlloc_8u_C1R(&state, dist.data(), 16, empty.data(), 4, {4, 3}, 0, 1e30f) == orvStatusOk);
  std::vector<uint8_t> dst(12);
  CHECK(orviInpaint_8u_C1R(full.data(), 4, dst.data(), 4, {4, 3}, state) == orvStatusOk && dst == full);
  CHECK(orviInpaint_8u_C1R(full.data(), 4, dst.data(), 4, {3, 3}, state) == orvStatusSize);
  CHECK(orviInpaintFree_8u_C1R(state) == orvStatusOk);
  for (const float radius : {1e30f, 9000.f})
    CHECK(orviInpaintInitAlloc_8u_C1R(&state, dist.data(), 16, full.data(), 4, {4, 3}, 0, radius) == orvStatusNoMem);
  CHECK(orviInpaintInitAlloc_8u_C1R(&state, dist.data(), 16, full.data(), 4, {4, 3}, 0, NAN) == orvStatusBadArg);
}

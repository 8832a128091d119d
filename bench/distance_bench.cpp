// Distance transforms of a thresholded photograph. Only the true transform and fast marching depend on the content.
#include "bench.h"

using bench::Frame;
using bench::Picture;

namespace {

template <class T, class Metric>
bool add(const char* name, OrvStatus (*transform)(const uint8_t*, int32_t, T*, int32_t, OrvSize, const Metric*),
         std::vector<Metric> metrics) {
  return bench::add(name, {1}, [=](const Frame& f) {
    auto s = f.mask();
    auto d = f.image<T>();
    return [=] { transform(s.data, s.step, d.data, d.step, f.roi, metrics.data()); };
  });
}
using Whole = std::vector<int32_t>;
using Floats = std::vector<float>;

const bool chamfer[] = {
    add("orviDistanceTransform_3x3_8u_C1R", orviDistanceTransform_3x3_8u_C1R, Whole{2, 3}),
    add("orviDistanceTransform_3x3_8u16u_C1R", orviDistanceTransform_3x3_8u16u_C1R, Whole{2, 3}),
    add("orviDistanceTransform_3x3_8u32f_C1R", orviDistanceTransform_3x3_8u32f_C1R, Floats{0.955f, 1.3693f}),
    add("orviDistanceTransform_5x5_8u_C1R", orviDistanceTransform_5x5_8u_C1R, Whole{5, 7, 11}),
    add("orviDistanceTransform_5x5_8u16u_C1R", orviDistanceTransform_5x5_8u16u_C1R, Whole{5, 7, 11}),
    add("orviDistanceTransform_5x5_8u32f_C1R", orviDistanceTransform_5x5_8u32f_C1R, Floats{1.f, 1.4f, 2.1969f}),
    add("orviDistanceTransform_5x5_8u32f_C1R,closed", orviDistanceTransform_5x5_8u32f_C1R, Floats{1.f, 1.4f, 1.9f}),
};

// What a mask holds: the photograph's; one zero pixel in the middle; a maze of corridors.
enum Content { photograph, onePixel, maze, hole };
Picture<uint8_t> drawn(const Frame& f, Content content) {
  auto m = f.mask();
  const int w = f.roi.width, h = f.roi.height;
  for (int y = 0; y < h && content != photograph; ++y)
    for (int x = 0; x < w; ++x) {
      uint8_t v = 255;
      if (content == maze) v = y % 4 == 3 && (y / 4 % 2 ? x > 0 : x < w - 1) ? 0 : 255;
      if (content == hole) v = y % 90 == 7 || (x % 97 < 12 && y % 83 < 12 && (x ^ y) & 64) ? 255 : 0;  // about 1 %
      m.data[(ptrdiff_t)y * m.step + x] = v;
    }
  if (content == onePixel || content == maze) m.data[(ptrdiff_t)(h / 2) * m.step + w / 2] = 0;
  return m;
}

bool addTrue(const char* name, Content content) {
  return bench::add(name, {1, bench::threaded}, [=](const Frame& f) {
    auto s = drawn(f, content);
    auto d = f.image<float>();
    int32_t bytes = 0;
    orviTrueDistanceTransformGetBufferSize_8u32f_C1R(f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    return [=] { orviTrueDistanceTransform_8u32f_C1R(s.data, s.step, d.data, d.step, f.roi, buffer.get()); };
  });
}
bool addMarching(const char* name, Content content, float radius = 0, std::vector<OrvSize> sizes = {}) {
  return bench::add(name, {1, bench::threaded, sizes}, [=](const Frame& f) {
    auto s = drawn(f, content);
    auto d = f.image<float>();
    int32_t bytes = 0;
    orviFastMarchingGetBufferSize_8u32f_C1R(f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    return [=] { orviFastMarching_8u32f_C1R(s.data, s.step, d.data, d.step, f.roi, radius, buffer.get()); };
  });
}
// `whole`: with fast marching and the state; else one frame with a state.
bool addInpaint(const char* name, int method, bool whole) {
  return bench::add(name, {1}, [=](const Frame& f) {
    auto mask = drawn(f, hole), s = f.image<uint8_t>(), d = f.image<uint8_t>();
    auto dist = f.image<float>();
    int32_t bytes = 0;
    orviFastMarchingGetBufferSize_8u32f_C1R(f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    const auto prepare = [=] {
      OrvInpaintState* state = nullptr;
      orviFastMarching_8u32f_C1R(mask.data, mask.step, dist.data, dist.step, f.roi, 3, buffer.get());
      orviInpaintInitAlloc_8u_C1R(&state, dist.data, dist.step, mask.data, mask.step, f.roi, method, 3);
      return std::shared_ptr<OrvInpaintState>(state, orviInpaintFree_8u_C1R);
    };
    const auto kept = prepare();
    return [=] {
      const auto state = whole ? prepare() : kept;
      orviInpaint_8u_C1R(s.data, s.step, d.data, d.step, f.roi, state.get());
    };
  });
}

const bool others[] = {
    addTrue("orviTrueDistanceTransform_8u32f_C1R", photograph),
    addTrue("orviTrueDistanceTransform_8u32f_C1R,one_pixel", onePixel),
    addMarching("orviFastMarching_8u32f_C1R", photograph),
    addMarching("orviFastMarching_8u32f_C1R,one_pixel", onePixel),
    addMarching("orviFastMarching_8u32f_C1R,maze", maze),
    addMarching("orviFastMarching_8u32f_C1R,maze,growing", maze, 0, {{1024, 1024}, {2048, 2048}, {4096, 4096}}),
    addMarching("orviFastMarching_8u32f_C1R,hole", hole),
    addMarching("orviFastMarching_8u32f_C1R,hole,radius:3", hole, 3),
    addInpaint("orviInpaint_8u_C1R,method:0,with_marching", 0, true),
    addInpaint("orviInpaint_8u_C1R,method:1,with_marching", 1, true),
    addInpaint("orviInpaint_8u_C1R,method:0,frame", 0, false),
    addInpaint("orviInpaint_8u_C1R,method:1,frame", 1, false),
};

}  // namespace

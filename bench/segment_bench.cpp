// Flood fills, labels, speckles, boundaries, segmentation. A call works on sixteen different images (segmentation:
// four), one after the other: one small image would be learnt by the branch predictor. Images worked on in place are
// copied first, within the time.
#include <string.h>
#include "bench.h"

using bench::Frame;
using bench::Picture;

namespace {

constexpr int images = 16;

// A smooth random pattern: cells of about `cell` pixels, the scene's noise on top. Values 0..255.
uint8_t pattern(int x, int y, int cell, uint32_t seed) {
  const auto corner = [=](int u, int v) {
    uint32_t h = (uint32_t)u * 374761393u + (uint32_t)v * 668265263u + seed * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return (int)((h ^ (h >> 16)) & 255);
  };
  const int u = x / cell, v = y / cell, fx = x % cell, fy = y % cell;
  const int top = corner(u, v) * (cell - fx) + corner(u + 1, v) * fx;
  const int bottom = corner(u, v + 1) * (cell - fx) + corner(u + 1, v + 1) * fx;
  return (uint8_t)((top * (cell - fy) + bottom * fy) / (cell * cell));
}
uint8_t noise(int x, int y, uint32_t seed) { return pattern(x, y, 1, seed); }

// Sixteen images; each call of next() gives a copy of another one to work on.
template <class T>
struct Turns {
  std::vector<Picture<T>> source;
  Picture<T> work;
  size_t bytes = 0;
  std::shared_ptr<int> turn = std::make_shared<int>(0);

  template <class Value>
  Turns(const Frame& f, const Value& value, int count = images) {
    work = f.image<T>();
    bytes = (size_t)work.step * (size_t)f.roi.height;
    for (int k = 0; k < count; ++k) {
      Picture<T> p = work;
      p.memory = std::static_pointer_cast<T>(bench::allocate(bytes));
      p.data = p.memory.get();
      for (int y = 0; y < f.roi.height; ++y)
        for (int x = 0; x < f.roi.width; ++x)
          p.data[(size_t)y * (size_t)f.roi.width + (size_t)x] = (T)value(x, y, (uint32_t)k + 1);
      source.push_back(p);
    }
  }
  // The index of the next image, of which `work` is now a copy.
  size_t next() const {
    const size_t k = (size_t)(*turn)++ % source.size();
    memcpy(work.data, source[k].data, bytes);
    return k;
  }
};

// A line whose calls work on `count` images; `prepare` makes the work on one of them.
bool add(const std::string& name, int bytesPerPixel, std::function<std::function<void()>(const Frame&)> prepare,
         int count = images, std::vector<OrvSize> sizes = {}) {
  bench::Options options{bytesPerPixel};
  options.images = count;
  options.sizes = sizes;
  return bench::add(name, options, [=](const Frame& f) -> std::function<void()> {
    const auto one = prepare(f);
    return [=] {
      for (int k = 0; k < count; ++k) one();
    };
  });
}

// A labyrinth of blobs of which about 45 % are one region.
uint8_t blobs(int x, int y, uint32_t seed) { return pattern(x, y, 40, seed) > 122 ? 200 : 90; }

template <class T, class Fill, class Value>
bool addFill(const char* name, Fill fill, Value value, bool grad = false) {
  return add(name, sizeof(T), [=](const Frame& f) {
    const Turns<T> t(f, value);
    int32_t bytes;
    (grad ? orviFloodFillGetSize_Grad : orviFloodFillGetSize)(f.roi, &bytes);
    const auto buffer = f.scratch(bytes);
    const auto region = std::make_shared<OrvConnectedComp>();
    const OrvPoint seed = {f.roi.width / 2, f.roi.height / 2};
    return [=] {
      t.next();
      fill(t.work.data, t.work.step, f.roi, seed, region.get(), buffer.get());
    };
  });
}
#define FILL(name, T, value)                                                         \
  addFill<T>(                                                                        \
      "orviFloodFill_" #name,                                                        \
      [](T* p, int32_t s, OrvSize r, OrvPoint at, OrvConnectedComp* c, uint8_t* b) { \
        orviFloodFill_##name(p, s, r, at, (T)7, c, b);                               \
      },                                                                             \
      value)
#define FILL_DELTAS(name, T, low, high, value, grad)                                 \
  addFill<T>(                                                                        \
      "orviFloodFill_" #name,                                                        \
      [](T* p, int32_t s, OrvSize r, OrvPoint at, OrvConnectedComp* c, uint8_t* b) { \
        orviFloodFill_##name(p, s, r, at, (T)7, (T)low, (T)high, c, b);              \
      },                                                                             \
      value, grad)

const bool copies = addFill<uint8_t>(
    "the copy of the image before each in-place call",
    [](uint8_t*, int32_t, OrvSize, OrvPoint, OrvConnectedComp*, uint8_t*) {}, blobs);
const bool fills = FILL(4Con_8u_C1IR, uint8_t, blobs) && FILL(8Con_8u_C1IR, uint8_t, blobs) &&
                   FILL(4Con_16u_C1IR, uint16_t, blobs) && FILL(4Con_32s_C1IR, int32_t, blobs) &&
                   FILL(4Con_32f_C1IR, float, blobs) && FILL_DELTAS(Range4Con_8u_C1IR, uint8_t, 30, 30, blobs, false) &&
                   FILL_DELTAS(Range8Con_8u_C1IR, uint8_t, 30, 30, blobs, false) &&
                   FILL_DELTAS(Grad4Con_8u_C1IR, uint8_t, 3, 3, blobs, true) &&
                   FILL_DELTAS(Grad8Con_8u_C1IR, uint8_t, 3, 3, blobs, true) &&
                   FILL_DELTAS(Grad4Con_32f_C1IR, float, 3, 3, blobs, true);

// Worst cases of equality: nothing but a seed's region that is all the image, or all branches.
#define WORST(what, expression)                                                            \
  addFill<uint8_t>(                                                                        \
      "orviFloodFill_8Con_8u_C1IR, " what,                                                 \
      [](uint8_t* p, int32_t s, OrvSize r, OrvPoint at, OrvConnectedComp* c, uint8_t* b) { \
        p[at.y * s + at.x] = p[at.y * s + at.x] ? p[at.y * s + at.x] : 1;                  \
        orviFloodFill_8Con_8u_C1IR(p, s, r, at, 7, c, b);                                  \
      },                                                                                   \
      [](int x, int y, uint32_t k) { return (void)x, (void)y, (void)k, (expression) ? 1 : 0; })
bool onSpiral(int x, int y) {
  // Rings two apart, opened one into the next along the diagonal.
  const int dx = abs(x - 960), dy = abs(y - 540), ring = dx > dy ? dx : dy;
  return ring % 2 == 0 || (x - 960 == y - 540 + 1 && x > 960);
}
const bool worst = WORST("uniform", true) && WORST("chessboard", (x + y) % 2 == 0) &&
                   WORST("comb", x % 2 == 0 || y == 0) && WORST("rings", onSpiral(x, y)) &&
                   WORST("noise of 55 %", noise(x, y, k) < 140);

template <class Value>
bool addLabels(const char* name, int32_t norm, Value value) {
  return add(name, 1, [=](const Frame& f) {
    const Turns<uint8_t> t(f, value);
    auto labels = f.image<int32_t>();
    int32_t bytes;
    orviLabelMarkersGetBufferSize_8u32s_C1R(f.roi, &bytes);
    const auto buffer = f.scratch(bytes);
    const auto turn = std::make_shared<size_t>(0);
    return [=] {
      int32_t count;
      const auto& p = t.source[(*turn)++ % t.source.size()];
      orviLabelMarkers_8u32s_C1R(p.data, p.step, labels.data, labels.step, f.roi, 1, 0x7FFFFFFE, norm, &count,
                                 buffer.get());
    };
  });
}
// About 4096 regions at full HD: a cell of 22 pixels each.
uint8_t cells(int x, int y, uint32_t k) { return pattern(x, y, 11, k) > 150 ? 255 : 0; }
uint8_t halfNoise(int x, int y, uint32_t k) { return noise(x, y, k) < 128 ? 255 : 0; }
uint8_t chess(int x, int y, uint32_t) { return (x + y) % 2 ? 255 : 0; }
uint8_t comb(int x, int y, uint32_t) { return x % 2 || y == 0 ? 255 : 0; }
const bool labels = addLabels("orviLabelMarkers_8u32s_C1R, norm 0", 0, cells) &&
                    addLabels("orviLabelMarkers_8u32s_C1R, norm 1", 1, cells) &&
                    addLabels("orviLabelMarkers_8u32s_C1R, norm 0, noise", 0, halfNoise) &&
                    addLabels("orviLabelMarkers_8u32s_C1R, norm 0, chessboard", 0, chess) &&
                    addLabels("orviLabelMarkers_8u32s_C1R, norm 1, comb", 1, comb);
const bool labels8 = add("orviLabelMarkers_8u_C1IR, norm 0", 1, [](const Frame& f) {
  const Turns<uint8_t> t(f, cells);
  const auto buffer = f.scratch(6 * f.roi.width * f.roi.height + 32);
  return [=] {
    int32_t count;
    t.next();
    orviLabelMarkers_8u_C1IR(t.work.data, t.work.step, f.roi, 1, 254, 0, &count, buffer.get());
  };
});

template <class T, class Mark>
bool addSpeckles(const char* name, Mark mark) {
  return add(name, sizeof(T), [=](const Frame& f) {
    const Turns<T> t(
        f, [](int x, int y, uint32_t k) { return pattern(x, y, 16, k) / 16 * 4 + (noise(x, y, k) < 8) * 90; });
    const auto buffer = f.scratch(13 * f.roi.width * f.roi.height);
    return [=] {
      t.next();
      mark(t.work.data, t.work.step, f.roi, (T)0, 50, (T)2, 1, buffer.get());
    };
  });
}
const bool speckles = addSpeckles<uint8_t>("orviMarkSpeckles_8u_C1IR", orviMarkSpeckles_8u_C1IR) &&
                      addSpeckles<int16_t>("orviMarkSpeckles_16s_C1IR", orviMarkSpeckles_16s_C1IR) &&
                      addSpeckles<float>("orviMarkSpeckles_32f_C1IR", orviMarkSpeckles_32f_C1IR);

bool addBounds(const char* name, int32_t norm) {
  return add(name, 1, [=](const Frame& f) {
    const Turns<uint8_t> t(f, [](int x, int y, uint32_t k) { return pattern(x, y, 40, k) / 32 + 1; });
    return [=] {
      t.next();
      orviBoundSegments_8u_C1IR(t.work.data, t.work.step, f.roi, 255, norm);
    };
  });
}
const bool bounds =
    addBounds("orviBoundSegments_8u_C1IR, norm 1", 1) && addBounds("orviBoundSegments_8u_C1IR, norm 0", 0);

// The relief of a photograph (a smooth pattern with some noise), or noise alone; a seed for each 400 pixels.
uint8_t photograph(int x, int y, uint32_t k) {
  return (uint8_t)(pattern(x, y, 32, k) * 3 / 4 + pattern(x, y, 5, k + 99) / 8 + noise(x, y, k) / 32);
}
uint8_t seeds(int x, int y, uint32_t k) { return x % 20 == 7 && y % 20 == 9 ? (uint8_t)(noise(x, y, k) % 250 + 1) : 0; }

// `count` images of each size.
template <class Segment, class Value>
bool addSegmentation(const std::string& name, int32_t norm, int32_t flags, Segment segment, Value relief,
                     int channels = 1, int count = 4, std::vector<OrvSize> sizes = {}) {
  return add(
      name, channels,
      [=](const Frame& f) {
        Frame wide = f;
        wide.roi.width *= channels;
        const Turns<uint8_t> src(wide, relief, count), t(f, seeds, count);
        const auto buffer = f.scratch(20 * (f.roi.width + 32) * (f.roi.height + 2) + 200);
        return [=] {
          const auto& p = src.source[t.next()];
          segment(p.data, p.step, t.work.data, t.work.step, f.roi, norm, flags, buffer.get());
        };
      },
      count, sizes);
}
#define WATERSHED(what, norm, flags, ...) \
  addSegmentation("orviSegmentWatershed_8u_C1IR, " what, norm, flags, orviSegmentWatershed_8u_C1IR, __VA_ARGS__)
#define GRADIENT(tag, what, norm, ...) \
  addSegmentation("orviSegmentGradient_" #tag ", " what, norm, 0, orviSegmentGradient_##tag, __VA_ARGS__)
const std::vector<OrvSize> growing = {{1024, 1024}, {2048, 2048}, {4096, 4096}};
const bool segmentation =
    WATERSHED("queues, norm 0", 0, 1, photograph) && WATERSHED("queues, norm 1", 1, 1, photograph) &&
    WATERSHED("queues, norm 0, lines", 0, 1 | 128, photograph) && WATERSHED("sweeps, norm 0", 0, 2, photograph) &&
    WATERSHED("sweeps, norm 1", 1, 2, photograph) && WATERSHED("sweeps, norm 2", 2, 2, photograph) &&
    WATERSHED("sweeps, norm 3", 3, 2, photograph) && WATERSHED("sweeps, norm 0, lines", 0, 2 | 64, photograph) &&
    WATERSHED("queues, norm 0, noise", 0, 1, noise, 1, 1, growing) &&
    WATERSHED("sweeps, norm 0, noise", 0, 2, noise, 1, 1, growing) && GRADIENT(8u_C1IR, "norm 0", 0, photograph) &&
    GRADIENT(8u_C1IR, "norm 1", 1, photograph) && GRADIENT(8u_C3IR, "norm 0", 0, photograph, 3) &&
    GRADIENT(8u_C1IR, "norm 0, noise", 0, noise, 1, 1, growing);

}  // namespace

// Labelling against the plain form, in scratch memory of exactly the reported size.
#pragma once
#include "framework/sweep.h"
#include "reference/labelling.h"

namespace test {

// Blobs, noise, a chessboard or stripes of 0 and other values.
template <class T>
void drawMarkers(Random& r, Image<T>& image) {
  const int mode = r.in(0, 5), gap = r.in(2, 12);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.elements(); ++x) {
      bool set = r.one(mode == 0 ? 2 : gap);
      if (mode == 1) set = (x + y) % 2 == 0;
      if (mode == 2) set = x % 2 == 0 || r.one(gap);
      if (mode == 3) set = !set;
      if (mode == 4) set = x > 0 && y > 0 && r.one(2) ? image.at(x - 1, y) != 0 : set;
      if (mode == 5) set = true;
      image.set(x, y, (T)(set ? r.one(2) ? std::numeric_limits<T>::max() : r.in(1, 127) : 0));
    }
  image.keep();
}

struct LabelArguments {
  OrvSize size;
  int32_t minLabel, maxLabel, norm;
  int32_t* count;
  uint8_t* buffer;
};

// `run` labels `image` into `labels`, which may be the same.
template <class S, class D, class Run>
void checkLabels(Random& r, const Shape& shape, int32_t limit, Image<S>& image, Image<D>& labels, const Run& run) {
  drawMarkers(r, image);
  labels.keep();
  const int low = r.in(1, 5), high = r.one(3) ? low + r.in(0, 3) : limit;
  const OrvSize size = {shape.width, shape.height};
  const Guarded buffer((size_t)(6 * shape.width * shape.height + 32), true, (size_t)r.in(0, 3));
  for (const int norm : {0, 1}) {
    const auto want = reference::regions(
        size, norm == 0, [&](int i) { return image.at(i % shape.width, i / shape.width) != 0; },
        [](int, int) { return true; });
    forEachSetting(false, [&] {
      int32_t count = -1;
      CHECK(run(LabelArguments{size, low, high, norm, &count, buffer.data()}) == orvStatusOk);
      CHECK(count == (int)want.count.size() - 1, "%d regions, not %d", (int)count, (int)want.count.size() - 1);
      for (int i = 0; i < size.width * size.height; ++i) {
        const int n = want.number[(size_t)i], label = n == 0 ? 0 : low + (n - 1) % (high - low + 1);
        const D got = labels.at(i % size.width, i / size.width);
        if (got != (D)label)
          return fail("norm %d: label %d at %d,%d, not %d", norm, (int)got, i % size.width, i / size.width, label);
      }
      CHECK(labels.onlyRegionChanged() && buffer.intact());
      labels.restore();
      image.restore();
    });
  }
}

// The checks, pair by pair; `step` is the step that a wrong one is given in place of.
struct StepFault {
  LabelArguments a;
  int32_t step;
  bool null;
};
template <class Run>
void walkLabels(int32_t limit, int32_t step, int element, const Run& run, const std::function<bool()>& untouched) {
  using F = StepFault;
  static int32_t count;
  static uint8_t buffer[400];
  std::vector<Check<F>> checks = {{"image", orvStatusNullPtr, [](F& f) { f.null = true; }},
                                  {"buffer", orvStatusNullPtr, [](F& f) { f.a.buffer = nullptr; }},
                                  {"numLabels", orvStatusNullPtr, [](F& f) { f.a.count = nullptr; }},
                                  {"width", orvStatusSize, [](F& f) { f.a.size.width = 0; }},
                                  {"height", orvStatusSize, [](F& f) { f.a.size.height = -1; }},
                                  {"step", orvStatusStep, [=](F& f) { f.step = 9 * element - 1; }},
                                  {"minLabel", orvStatusBadArg, [](F& f) { f.a.minLabel = 0; }},
                                  {"maxLabel", orvStatusBadArg, [=](F& f) { f.a.maxLabel = limit; }},
                                  {"order", orvStatusBadArg, [](F& f) { f.a.minLabel = 9, f.a.maxLabel = 8; }},
                                  {"norm", orvStatusBadArg, [](F& f) { f.a.norm = 2; }}};
  if (element > 1) checks.insert(checks.begin() + 6, {"alignment", orvStatusStepAlign, [](F& f) { f.step += 1; }});
  walkChecks<F>({{{9, 5}, 1, 8, 0, &count, buffer}, step, false}, checks, run, untouched);
}

}  // namespace test

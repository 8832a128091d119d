// Reconstruction against repeated elementary steps, on random images, mazes and spirals; sizes and statuses.
//
// One body serves both variants.
#include "framework/sweep.h"
#include "reference/reconstruct.h"

using namespace test;

namespace {

template <class T>
struct Arguments {
  const T* src;
  int32_t srcStep;
  T* srcDst;
  int32_t srcDstStep;
  OrvSize roi;
  uint8_t* buffer;
  int32_t norm;
};

template <class T>
struct Case {
  const char* name;
  OrvStatus (*function)(const T*, int32_t, T*, int32_t, OrvSize, uint8_t*, int32_t);
  OrvStatus (*size)(OrvSize, int32_t*);
  bool grow;
  OrvStatus run(const Arguments<T>& a) const {
    return function(a.src, a.srcStep, a.srcDst, a.srcDstStep, a.roi, a.buffer, a.norm);
  }
};

#define RECONSTRUCT(type)                                                                                             \
  {                                                                                                                   \
    {"Dilate_" #type, orviMorphReconstructDilate_##type##_C1IR, orviMorphReconstructGetBufferSize_##type##_C1, true}, \
    {                                                                                                                 \
      "Erode_" #type, orviMorphReconstructErode_##type##_C1IR, orviMorphReconstructGetBufferSize_##type##_C1, false   \
    }                                                                                                                 \
  }
const Case<uint8_t> bytes[] = RECONSTRUCT(8u);
const Case<uint16_t> words[] = RECONSTRUCT(16u);
const Case<float> floats[] = RECONSTRUCT(32f);
const Case<double> doubles[] = RECONSTRUCT(64f);

template <class T, class Body>
void forEachElementOf(const Image<T>& image, const Body& body) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.elements(); ++x) body(x, y);
}

// One pair of images, at every thread count, in exactly the reported scratch.
template <class T>
void check(const Case<T>& c, Random& r, Image<T>& mask, Image<T>& marker, int norm) {
  const OrvSize roi = {mask.elements(), mask.height()};
  const Context context(std::string(c.name) + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) +
                        ", norm " + std::to_string(norm));
  marker.keep(), mask.keep();
  reference::reconstruct(mask.data(), mask.step(), marker.data(), marker.step(), roi, norm, c.grow);
  std::vector<T> expected;
  forEachElementOf(marker, [&](int x, int y) { expected.push_back(marker.at(x, y)); });
  int32_t size = 0;
  CHECK(c.size(roi, &size) == orvStatusOk);
  const Guarded buffer((size_t)size, true, r.one(2) ? 0 : (size_t)r.in(1, 40));
  for (const int32_t threads : threadCounts()) {
    steerThreads(threads);
    const Context count(std::to_string(threads) + " threads");
    marker.restore();
    CHECK(c.run({mask.data(), mask.step(), marker.data(), marker.step(), roi, buffer.data(), norm}) == orvStatusOk);
    size_t i = 0;
    forEachElementOf(marker, [&](int x, int y) {
      CHECK(marker.at(x, y) == expected[i++], "pixel %d, %d: %g", x, y, (double)marker.at(x, y));
    });
    CHECK(marker.onlyRegionChanged() && mask.unchanged());
  }
  steerThreads(1);
  CHECK(buffer.intact());
}

template <class T>
void sweepRandom(const Case<T>& c) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    if (shape.width > 17 && shape.height > 2) continue;
    Image<T> mask(r, shape.width, shape.height, 1), marker(r, shape.width, shape.height, 1);
    mask.fill(r, false), marker.fill(r, false);
    check(c, r, mask, marker, r.in(0, 1));
  }
  for (const Shape shape : {Shape{40, 31}, Shape{131, 12}, Shape{11, 60}, Shape{90, 40}}) {
    Image<T> mask(r, shape.width, shape.height, 1), marker(r, shape.width, shape.height, 1);
    mask.fill(r, false);
    // a few seeds, so that values travel far
    forEachElementOf(marker, [&](int x, int y) {
      marker.set(x, y, r.one(60) ? mask.at(x, y) : c.grow ? lowest<T>() : highest<T>());
    });
    check(c, r, mask, marker, r.in(0, 1));
  }
}

template <class T>
void walk(const Case<T>& c) {
  const Context context(c.name);
  Random r(seed());
  Image<T> src(r, 9, 5, 1), srcDst(r, 9, 5, 1);
  const Guarded buffer(1 << 12, true, 0);
  std::vector<Check<Arguments<T>>> checks = {
      {"src", orvStatusNullPtr, [](auto& a) { a.src = nullptr; }},
      {"srcDst", orvStatusNullPtr, [](auto& a) { a.srcDst = nullptr; }},
      {"buffer", orvStatusNullPtr, [](auto& a) { a.buffer = nullptr; }},
      {"width", orvStatusSize, [](auto& a) { a.roi.width = 0; }},
      {"height", orvStatusSize, [](auto& a) { a.roi.height = -1; }},
      {"source step", orvStatusStep, [](auto& a) { a.srcStep = 9 * (int)sizeof(T) - 1; }},
      {"destination step", orvStatusStep, [](auto& a) { a.srcDstStep = 9 * (int)sizeof(T) - 1; }}};
  if (sizeof(T) > 1) {
    checks.push_back({"source alignment", orvStatusStepAlign, [](auto& a) { a.srcStep += 1; }});
    checks.push_back({"destination alignment", orvStatusStepAlign, [](auto& a) { a.srcDstStep += 1; }});
  }
  checks.push_back({"norm below", orvStatusBadArg, [](auto& a) { a.norm = -1; }});
  checks.push_back({"norm above", orvStatusBadArg, [](auto& a) { a.norm = 2; }});
  walkChecks<Arguments<T>>(
      {src.data(), src.step(), srcDst.data(), srcDst.step(), {9, 5}, buffer.data(), 1}, checks,
      [&](auto& a) { return c.run(a); }, [&] { return srcDst.unchanged(); });
}

// A corridor that winds inwards, walls of 0: one pixel wide, one pixel apart.
template <class T>
void spiral(Image<T>& image) {
  const int w = image.elements(), h = image.height();
  forEachElementOf(image, [&](int x, int y) { image.set(x, y, T(0)); });
  int left = 0, top = 0, right = w - 1, bottom = h - 1;
  const auto line = [&](int x0, int y0, int x1, int y1) {
    for (int y = std::min(y0, y1); y <= std::max(y0, y1); ++y)
      for (int x = std::min(x0, x1); x <= std::max(x0, x1); ++x) image.set(x, y, T(200));
  };
  for (int from = 0; left <= right && top <= bottom; from = left, left += 2, top += 2, right -= 2, bottom -= 2) {
    line(from, top, right, top), line(right, top, right, bottom), line(left, bottom, right, bottom);
    if (bottom - top >= 2) line(left, top + 2, left, bottom);
  }
}

}  // namespace

TEST(bytes) {
  for (const auto& c : bytes) sweepRandom(c), walk(c);
}
TEST(words) {
  for (const auto& c : words) sweepRandom(c), walk(c);
}
TEST(floats) {
  for (const auto& c : floats) sweepRandom(c), walk(c);
}
TEST(doubles) {
  for (const auto& c : doubles) sweepRandom(c), walk(c);
}

// From the outer end of a spiral inwards, and from its middle outwards; noise of many small corridors.
TEST(longWays) {
  Random r(seed());
  for (const Shape shape : {Shape{41, 39}, Shape{91, 17}, Shape{17, 91}})
    for (const int start : {0, 1, 2})
      for (const int norm : {0, 1}) {
        Image<uint8_t> mask(r, shape.width, shape.height, 1), marker(r, shape.width, shape.height, 1);
        spiral(mask);
        forEachElementOf(marker, [&](int x, int y) {
          const bool seed = start == 0 ? x + y == 0 : x == shape.width / 2 && y == shape.height / 2;
          if (start == 2) mask.set(x, y, (uint8_t)(r.in(0, 9) < 6 ? 0 : r.in(100, 255)));
          marker.set(x, y, seed ? 255 : 0);
        });
        check(bytes[0], r, mask, marker, norm);
      }
}

TEST(sizes) {
  const OrvSize roi = {100, 30};
  int32_t size = 0;
  const auto general = orviMorphReconstructGetBufferSize;
  const int32_t expected[][2] = {{orvData8u, 591}, {orvData16u, 1182}, {orvData32f, 1794}, {orvData64f, 3398}};
  OrvStatus (*const sizes[])(OrvSize, int32_t*) = {bytes[0].size, words[0].size, floats[0].size, doubles[0].size};
  for (int i = 0; i < 4; ++i) {
    CHECK(general(roi, expected[i][0], 1, &size) == orvStatusOk && size == expected[i][1]);
    size = 0;
    CHECK(sizes[i](roi, &size) == orvStatusOk && size == expected[i][1]);
    CHECK(sizes[i](roi, nullptr) == orvStatusNullPtr && sizes[i]({1, 0}, &size) == orvStatusSize);
  }
  CHECK(general({0, 1}, 0, 0, nullptr) == orvStatusNullPtr && general({0, 1}, 0, 0, &size) == orvStatusSize);
  CHECK(general(roi, 3, 0, &size) == orvStatusDataType && general(roi, 1, 3, &size) == orvStatusChannels);
}

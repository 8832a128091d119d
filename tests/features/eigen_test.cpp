// Eigenvalues and eigenvectors of the structure tensor against their definitions; sizes and statuses.
// One body serves both variants.
#include "framework/sweep.h"
#include "reference/tensor.h"
#ifdef ORV_VARIANT
#include "filter/names.h"  // sizes are made of those of filters
#endif

using namespace test;

namespace {

template <class T>
struct Arguments {
  const T* src;
  int32_t srcStep;
  float* dst;
  int32_t dstStep;
  OrvSize roi;
  int32_t kernel, aperture, window;
  uint8_t* buffer;
};

// A function, its size function, floats of a result.
template <class T>
struct Detector {
  const char* name;
  OrvStatus (*call)(const T*, int32_t, float*, int32_t, OrvSize, int32_t, int32_t, int32_t, uint8_t*);
  OrvStatus (*size)(OrvSize, int32_t, int32_t, int32_t*);
  int channels, measured;  // what dstStep is measured against
  OrvStatus run(const Arguments<T>& a) const {
    return call(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.kernel, a.aperture, a.window, a.buffer);
  }
};
#define DETECTOR(name, type, channels, measured) \
  { #name "_" #type, orvi##name##_##type##_C1R, orvi##name##GetBufferSize_##type##_C1R, channels, measured }
const Detector<uint8_t> ofBytes[] = {DETECTOR(MinEigenVal, 8u32f, 1, 1), DETECTOR(EigenValsVecs, 8u32f, 6, 6)};
const Detector<float> ofFloats[] = {DETECTOR(MinEigenVal, 32f, 1, 1), DETECTOR(EigenValsVecs, 32f, 6, 1)};

template <class T>
void check(Random& r, const Detector<T>& detector, const Shape& shape, int kernel, int aperture, int window) {
  const OrvSize roi = {shape.width, shape.height};
  const bool scharr = kernel == orvKernelScharr;
  const Context context(std::string(detector.name) + " " + std::to_string(roi.width) + "x" +
                        std::to_string(roi.height) + " kernel " + std::to_string(kernel) + " aperture " +
                        std::to_string(aperture) + " window " + std::to_string(window));
  Image<T> src(r, roi.width, roi.height, 1);
  Image<float> dst(r, roi.width, roi.height, detector.channels);
  src.fill(r, false);
  const auto tensor = reference::eigenTensor(src.data(), src.step(), roi, scharr, aperture, window);
  const float scale = 1.0f / (float)(255 << (2 * aperture - 2)), s = scharr ? scale * 0.6125f : scale;
  std::vector<float> want;
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x) {
      float a, b, c, record[6];
      tensor.means(x, y, &a, &b, &c);
      if (detector.channels == 1) record[0] = reference::smallerEigenvalue(a, b, c, s);
      else reference::eigenRecord(a, b, c, s, scharr, record);
      want.insert(want.end(), record, record + detector.channels);
    }
  forEachSetting(shape.threaded, [&] {
    int32_t bytes = 0;
    CHECK(detector.size(roi, aperture, window, &bytes) == orvStatusOk);
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 70));
    dst.restore();
    CHECK(detector.run({src.data(), src.step(), dst.data(), dst.step(), roi, kernel, aperture, window,
                        buffer.data()}) == orvStatusOk);
    CHECK(buffer.intact() && src.unchanged() && dst.onlyRegionChanged(), "written outside");
    for (size_t i = 0; i < want.size(); ++i) {
      const int x = (int)i % dst.elements(), y = (int)i / dst.elements();
      if (!same(dst.at(x, y), want[i]))
        return fail("%.9g at element %d of row %d, not %.9g", dst.at(x, y), x, y, want[i]);
    }
  });
}

template <class T>
void sweepDetector(const Detector<T>& detector) {
  Random r(seed());
  const auto some = [&](const Shape& shape) {
    const int kernel = r.in(0, 2) == 0 ? orvKernelScharr : orvKernelSobel;
    check(r, detector, shape, kernel, kernel == orvKernelSobel && r.one(2) ? 5 : 3, r.one(2) ? 5 : 3);
  };
  for (const Shape& shape : shapes()) some(shape);
  some({1100, 3});
  for (const int kernel : {orvKernelSobel, orvKernelScharr}) check(r, detector, {257, 261, true}, kernel, 3, 5);
}

}  // namespace

TEST(bytes) {
  for (const auto& detector : ofBytes) sweepDetector(detector);
}
TEST(floats) {
  for (const auto& detector : ofFloats) sweepDetector(detector);
}

// A bright quarter below and to the right: the gradient at its corner points there, along (1, 1).
TEST(directions) {
  std::vector<uint8_t> image(40 * 40), buffer(1 << 17);
  std::vector<float> records(6 * 40 * 40);
  for (int i = 0; i < 40 * 40; ++i) image[(size_t)i] = i % 40 < 20 || i / 40 < 20 ? 50 : 200;
  for (const int kernel : {orvKernelSobel, orvKernelScharr}) {
    CHECK(orviEigenValsVecs_8u32f_C1R(image.data(), 40, records.data(), 960, {40, 40}, kernel, 3, 3, buffer.data()) ==
          0);
    const float* const v = &records[6 * (40 * 20 + 20)];
    CHECK(v[0] >= v[1] && v[1] > 0 && fabsf(v[2] - v[3]) < 1e-5f && fabsf(fabsf(v[2]) - 0.70710678f) < 1e-5f &&
              fabsf(v[4] + v[5]) < 1e-5f,
          "values %g %g, vectors %g %g, %g %g", v[0], v[1], v[2], v[3], v[4], v[5]);
  }
}

// 100 x 50 on one thread: 112 * 50 pixels of 16 or 20 bytes, 224, and the filter that needs most.
TEST(sizes) {
  steerThreads(1);
  int32_t bytes = 0, lowpass = 0;
  for (const auto size : {orviMinEigenValGetBufferSize_8u32f_C1R, orviEigenValsVecsGetBufferSize_8u32f_C1R}) {
    CHECK(size({100, 50}, 3, 3, &bytes) == 0 && bytes == 89600 + 224 + 10768, "%d", (int)bytes);
    steerThreads(3);  // the Sobel filter, with its own count of threads, times threads
    CHECK(size({100, 50}, 5, 3, &bytes) == 0 && orviFilterLowpassGetBufferSize_32f_C1R({100, 50}, 33, &lowpass) == 0);
    int32_t sobel = 0;
    orviFilterSobelCrossGetBufferSize_8u16s_C1R({100, 50}, 55, &sobel);
    CHECK(bytes == 89600 + 224 + 3 * (sobel + 32) && sobel > lowpass / 3, "%d", (int)bytes);
    steerThreads(1);
  }
  for (const auto size : {orviMinEigenValGetBufferSize_32f_C1R, orviEigenValsVecsGetBufferSize_32f_C1R})
    CHECK(size({100, 50}, 5, 5, &bytes) == 0 && bytes == 112000 + 224 + 12944, "%d", (int)bytes);
}

namespace {

template <class T>
void walk(const Detector<T>& detector) {
  using A = Arguments<T>;
  const Context context(detector.name);
  Random r(seed());
  Image<T> src(r, 9, 7, 1);
  Image<float> dst(r, 9, 7, detector.channels);
  const Guarded buffer(1 << 15, true, 0);
  std::vector<Check<A>> checks = {{"src", orvStatusNullPtr, [](A& a) { a.src = nullptr; }},
                                  {"dst", orvStatusNullPtr, [](A& a) { a.dst = nullptr; }},
                                  {"buffer", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }},
                                  {"width", orvStatusSize, [](A& a) { a.roi.width = 0; }},
                                  {"height", orvStatusSize, [](A& a) { a.roi.height = 0; }},
                                  {"srcStep", orvStatusStep, [](A& a) { a.srcStep = 9 * (int32_t)sizeof(T) - 1; }},
                                  {"dstStep", orvStatusStep, [&](A& a) { a.dstStep = 36 * detector.measured - 1; }},
                                  {"dst alignment", orvStatusStepAlign, [](A& a) { a.dstStep += 2; }},
                                  {"kernel", orvStatusBadArg, [](A& a) { a.kernel = 2; }},
                                  {"aperture", orvStatusSize, [](A& a) { a.aperture = 4; }},
                                  {"window", orvStatusSize, [](A& a) { a.window = 7; }}};
  if (sizeof(T) > 1)
    checks.insert(checks.begin() + 7, {"src alignment", orvStatusStepAlign, [](A& a) { a.srcStep += 1; }});
  const A valid = {src.data(), src.step(), dst.data(), dst.step(), {9, 7}, orvKernelSobel, 5, 3, buffer.data()};
  walkChecks<A>(
      valid, checks, [&](A& a) { return detector.run(a); }, [&] { return dst.unchanged(); });
  A scharr = valid;
  scharr.kernel = orvKernelScharr;
  CHECK(detector.run(scharr) == orvStatusSize);

  int32_t bytes = -7;
  walkChecks<A>(
      valid,
      {{"bufferSize", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }},
       {"width", orvStatusSize, [](A& a) { a.roi.width = -1; }},
       {"height", orvStatusSize, [](A& a) { a.roi.height = 0; }},
       {"aperture", orvStatusSize, [](A& a) { a.aperture = 7; }},
       {"window", orvStatusSize, [](A& a) { a.window = 1; }}},
      [&](A& a) { return detector.size(a.roi, a.aperture, a.window, a.buffer ? &bytes : nullptr); },
      [&] { return bytes == -7; });
}

}  // namespace

TEST(statuses) {
  for (const auto& detector : ofBytes) walk(detector);
  for (const auto& detector : ofFloats) walk(detector);
}

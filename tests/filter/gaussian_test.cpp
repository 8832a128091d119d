// Gaussian smoothing: both families against their plain form, with memory of exactly the reported sizes.
#include "framework/sweep.h"
#include "reference/gaussian.h"

using namespace test;

namespace {

// The element types: their data type, fixed-point scale, rows between the passes and taps.
template <class T>
struct Kind;
template <>
struct Kind<uint8_t> {
  using Row = int16_t;
  using Tap = int16_t;
  static constexpr OrvDataType type = orvData8u;
  static constexpr int shift = 12;
};
template <>
struct Kind<uint16_t> {
  using Row = uint16_t;
  using Tap = uint16_t;
  static constexpr OrvDataType type = orvData16u;
  static constexpr int shift = 15;
};
template <>
struct Kind<int16_t> {
  using Row = int16_t;
  using Tap = int16_t;
  static constexpr OrvDataType type = orvData16s;
  static constexpr int shift = 15;
};
template <>
struct Kind<float> {
  using Row = float;
  using Tap = float;
  static constexpr OrvDataType type = orvData32f;
  static constexpr int shift = 0;
};

// A case: the size, the kernel, the border, and images with readable pixels just where the border says so.
struct Case {
  OrvSize roi;
  int size;
  float sigma;
  int border;

  Case(Random& r, const Shape& shape, const std::vector<int>& borders) : roi{shape.width, shape.height} {
    const int sizes[] = {3, 3, 5, 5, 7, 9, 11, 15, 21, 31, 37};
    size = sizes[r.in(0, quick() ? 6 : 10)];
    const float sigmas[] = {0.1f, 0.35f, 0.8f, 1.f, (float)size / 6.f, (float)size / 3.f, 50.f};
    sigma = sigmas[r.in(0, 6)];
    border = borders[(size_t)r.in(0, (int)borders.size() - 1)];
  }
  bool memory(int side) const { return (border & 15) == orvBorderInMem || border & side; }
  Margin margin() const {
    const int half = size / 2;
    const bool rows = roi.height > 1 || (border & 15) == orvBorderConst;  // a single row has none beside it
    return {memory(orvBorderInMemLeft) ? half : 0, memory(orvBorderInMemTop) && rows ? half : 0,
            memory(orvBorderInMemRight) ? half : 0, memory(orvBorderInMemBottom) && rows ? half : 0};
  }
  int rowBorder() const { return roi.height == 1 && (border & 15) != orvBorderConst ? (int)orvBorderRepl : border; }
  std::string text(const char* name) const {
    return std::string(name) + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) + " kernel " +
           std::to_string(size) + " sigma " + std::to_string(sigma) + " border " + std::to_string(border);
  }
};

// Every size with several kernels and borders.
std::vector<Shape> manyShapes() {
  std::vector<Shape> many;
  for (int i = 0; i < (quick() ? 1 : 4); ++i)
    for (const Shape& shape : shapes()) many.push_back(shape);
  return many;
}

// A record as Init makes it must hold the told fields and taps.
template <class T>
void checkSpec(const Guarded& memory, const Case& c, const std::vector<typename Kind<T>::Tap>& taps) {
  const int32_t want[] = {c.size, 20, Kind<T>::type, c.border, Kind<T>::shift};
  CHECK(memcmp(memory.data(), want, sizeof want) == 0, "fields of the record");
  const auto address = ((uintptr_t)memory.data() + 20 + 15) & ~(uintptr_t)15;
  CHECK(memcmp((const void*)address, taps.data(), taps.size() * sizeof(taps[0])) == 0, "taps of the record");
}

template <class T, class Filter>
void sweepPrepared(const char* name, Filter filter, int channels) {
  std::vector<int> borders;
  for (const int kind : {orvBorderConst, orvBorderRepl, orvBorderInMem})
    for (int sides = 0; sides < 256; sides += 16) borders.push_back(kind | sides);
  for (int i = 0; i < 24; ++i) borders.push_back(orvBorderRepl), borders.push_back(orvBorderConst);
  Random r(seed());
  steerThreads(1);  // the smallest buffers
  for (const Shape& shape : manyShapes()) {
    const Case c(r, shape, borders);
    const Context context(c.text(name));
    Image<T> src(r, c.roi.width, c.roi.height, channels, c.margin()), dst(r, c.roi.width, c.roi.height, channels);
    src.fill(r, false);
    T value[3];
    for (T& v : value) v = randomElement<T>(r, false);

    int32_t specSize, bufferSize;
    CHECK(orviFilterGaussianGetBufferSize(c.roi, (uint32_t)c.size, Kind<T>::type, channels, &specSize, &bufferSize) ==
          orvStatusOk);
    const Guarded spec((size_t)specSize, true, (size_t)r.in(0, 17)),
        buffer((size_t)bufferSize, true, (size_t)r.in(0, 70));
    auto* const record = (OrvFilterGaussianSpec*)(void*)spec.data();
    CHECK(orviFilterGaussianInit(c.roi, (uint32_t)c.size, c.sigma, c.border, Kind<T>::type, channels, record,
                                 buffer.data()) == orvStatusOk);
    const auto taps = reference::gaussianTaps<typename Kind<T>::Tap>(c.size, c.sigma, Kind<T>::shift);
    checkSpec<T>(spec, c, taps);

    std::vector<T> plain((size_t)(c.roi.width * channels * c.roi.height));
    const int32_t plainStep = c.roi.width * channels * (int32_t)sizeof(T);
    reference::gaussian<T, typename Kind<T>::Row>(src.data(), src.step(), plain.data(), plainStep, c.roi, channels,
                                                  c.border, c.rowBorder(), value, taps, Kind<T>::shift);
    forEachSetting(false, [&] {
      dst.restore();
      CHECK(filter(src.data(), src.step(), dst.data(), dst.step(), c.roi, value, record, buffer.data()) == orvStatusOk);
      CHECK(spec.intact() && buffer.intact(), "scratch memory was overrun");
      CHECK(src.unchanged() && dst.onlyRegionChanged(), "written outside the region");
      for (int y = 0; y < c.roi.height; ++y)
        for (int x = 0; x < c.roi.width * channels; ++x) {
          const T got = dst.at(x, y), expected = plain[(size_t)(y * c.roi.width * channels + x)];
          if (same(got, expected)) continue;
          fail("element %d of row %d is %.9g, not %.9g", x, y, (double)got, (double)expected);
          return;
        }
    });
  }
}

// The C1 forms take the border value itself.
template <class T>
auto byValue(OrvStatus (*filter)(const T*, int32_t, T*, int32_t, OrvSize, T, const OrvFilterGaussianSpec*, uint8_t*)) {
  return [=](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, const T* value,
             const OrvFilterGaussianSpec* spec,
             uint8_t* buffer) { return filter(src, srcStep, dst, dstStep, roi, *value, spec, buffer); };
}

}  // namespace

TEST(preparedFilters) {
  sweepPrepared<uint8_t>("8u_C1R", byValue(orviFilterGaussianBorder_8u_C1R), 1);
  sweepPrepared<uint8_t>("8u_C3R", orviFilterGaussianBorder_8u_C3R, 3);
  sweepPrepared<uint16_t>("16u_C1R", byValue(orviFilterGaussianBorder_16u_C1R), 1);
  sweepPrepared<uint16_t>("16u_C3R", orviFilterGaussianBorder_16u_C3R, 3);
  sweepPrepared<int16_t>("16s_C1R", byValue(orviFilterGaussianBorder_16s_C1R), 1);
  sweepPrepared<int16_t>("16s_C3R", orviFilterGaussianBorder_16s_C3R, 3);
  sweepPrepared<float>("32f_C1R", byValue(orviFilterGaussianBorder_32f_C1R), 1);
  sweepPrepared<float>("32f_C3R", orviFilterGaussianBorder_32f_C3R, 3);
}

TEST(floatFilter) {
  std::vector<int> borders;
  for (int kind = orvBorderConst; kind <= orvBorderMirrR; ++kind)
    for (int sides = 0; sides < 64; sides += 16) borders.push_back(kind | sides);
  Random r(seed());
  steerThreads(1);
  for (const Shape& shape : manyShapes()) {
    const Case c(r, shape, borders);
    const Context context(c.text("orviFilterGaussBorder_32f_C1R"));
    Image<float> src(r, c.roi.width, c.roi.height, 1, c.margin()), dst(r, c.roi.width, c.roi.height, 1);
    src.fill(r, false);
    int32_t size;
    CHECK(orviFilterGaussGetBufferSize_32f_C1R(c.roi, c.size, &size) == orvStatusOk);
    const Guarded buffer((size_t)size, true, (size_t)r.in(0, 70));
    const auto taps = reference::gaussianTaps<float>(c.size, c.sigma, 0);
    const float value = randomElement<float>(r, false);
    std::vector<float> plain((size_t)(c.roi.width * c.roi.height));
    reference::gaussian<float, float>(src.data(), src.step(), plain.data(), c.roi.width * 4, c.roi, 1, c.border & 15,
                                      c.rowBorder(), &value, taps, 0);
    forEachSetting(false, [&] {
      dst.restore();
      CHECK(orviFilterGaussBorder_32f_C1R(src.data(), src.step(), dst.data(), dst.step(), c.roi, c.size, c.sigma,
                                          c.border, value, buffer.data()) == orvStatusOk);
      CHECK(buffer.intact() && src.unchanged() && dst.onlyRegionChanged(), "written outside");
      for (int i = 0; i < c.roi.width * c.roi.height; ++i)
        if (!same(dst.at(i % c.roi.width, i / c.roi.width), plain[(size_t)i])) {
          fail("pixel %d differs", i);
          return;
        }
    });
  }
}

// A flat image stays flat where nothing but the image counts, up to what the sum of the taps misses.
TEST(flatImageStaysFlat) {
  const OrvSize roi = {40, 30};
  std::vector<uint8_t> src(40 * 30, 200), dst(40 * 30), spec(1 << 10), buffer(1 << 16);
  auto* const record = (OrvFilterGaussianSpec*)(void*)spec.data();
  for (const uint32_t size : {3u, 9u, 31u}) {
    CHECK(orviFilterGaussianInit(roi, size, 1.5f, orvBorderRepl, orvData8u, 1, record, buffer.data()) == orvStatusOk);
    CHECK(orviFilterGaussianBorder_8u_C1R(src.data(), 40, dst.data(), 40, roi, 0, record, buffer.data()) ==
          orvStatusOk);
    for (const uint8_t v : dst) CHECK(v >= 198 && v <= 201, "value %d", v);
  }
}

// Sizes worked by hand: 100 x 50, one thread.
TEST(sizes) {
  steerThreads(1);
  const auto check = [](uint32_t kernel, OrvDataType type, int channels, int wantSpec, int wantBuffer) {
    int32_t spec = -1, buffer = -1;
    orviFilterGaussianGetBufferSize({100, 50}, kernel, type, channels, &spec, &buffer);
    CHECK(spec == wantSpec && buffer == wantBuffer, "kernel %u type %d: %d %d", kernel, (int)type, (int)spec,
          (int)buffer);
  };
  // 8u C1, K 5: rows 10 * 224 + 64 + (104 * 4 + 16) * 2 = 3168; row pipeline 32 + 80 + 292 = 404; column 32 + 80 +
  // 1232 = 1344; pointers 112
  check(5, orvData8u, 1, (8 / 4 << 3) + 36, 3168 + 404 + 32 + 1344 + 32 + 112);
  // 32f C3, K 3: a = 312, 3 * 4 * a + 32 + 6 * 4 * a + 64; row 32 + 48 + 608; column 32; pointers 80
  check(3, orvData32f, 3, (1 << 4) + 32, 3744 + 32 + 7488 + 64 + 688 + 32 + 32 + 32 + 80);
  // 16u C1, K 7: b = 114, d = 112: 14 * 224 + 64 + (112 * 6 + 16) * 2; row 48 * 7 + 80; column 32; pointers 144
  check(7, orvData16u, 1, (2 << 3) + 36, 3136 + 64 + 1376 + 416 + 32 + 32 + 32 + 144);
  int32_t size = -1;
  orviFilterGaussGetBufferSize_32f_C1R({100, 50}, 5, &size);
  // 112 * 20 + 32 + 32 + 432 * 10 + 64; row 32 + 80 + 720; column 32; pointers 112
  CHECK(size == 2240 + 32 + 32 + 4320 + 64 + 832 + 32 + 32 + 32 + 112, "%d", (int)size);
}

namespace {

struct Arguments {
  const uint16_t* src;
  int32_t srcStep;
  uint16_t* dst;
  int32_t dstStep;
  OrvSize roi;
  const uint16_t* value;
  OrvFilterGaussianSpec* spec;
  uint8_t* buffer;
  // changes of the record
  int32_t kernelSize = 5, borderType = orvBorderConst, shift = 15;
};

}  // namespace

TEST(statusesOfTheFilter) {
  Random r(seed());
  Image<uint16_t> src(r, 9, 5, 3), dst(r, 9, 5, 3);
  uint8_t spec[128], buffer[1 << 13];
  const uint16_t value[3] = {1, 2, 3};
  auto* const record = (OrvFilterGaussianSpec*)(void*)spec;
  const OrvSize roi = {9, 5};
  CHECK(orviFilterGaussianInit(roi, 5, 1, orvBorderConst, orvData16u, 3, record, buffer) == orvStatusOk);
  const std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
      {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
      {"spec", orvStatusNullPtr, [](Arguments& a) { a.spec = nullptr; }},
      {"srcStep", orvStatusStep, [](Arguments& a) { a.srcStep = 3 * a.roi.width - 1; }},
      {"dstStep", orvStatusStep, [](Arguments& a) { a.dstStep = -100; }},
      {"height", orvStatusSize, [](Arguments& a) { a.roi.height = 0; }},
      {"alignment", orvStatusStepAlign, [](Arguments& a) { a.srcStep |= 1; }},
      {"kernel size", orvStatusBadArg, [](Arguments& a) { a.kernelSize = 4; }},
      {"border", orvStatusBorder, [](Arguments& a) { a.borderType = 256; }},
      {"value", orvStatusNullPtr, [](Arguments& a) { a.value = nullptr; }},
      {"shift", orvStatusBadArg, [](Arguments& a) { a.shift = 32; }},
  };
  const auto call = [&](Arguments& a) {
    const int32_t fields[] = {a.kernelSize, 20, orvData16u, a.borderType, a.shift};
    memcpy(spec, fields, sizeof fields);
    return orviFilterGaussianBorder_16u_C3R(a.src, a.srcStep, a.dst, a.dstStep, a.roi, a.value, a.spec, a.buffer);
  };
  walkChecks<Arguments>({src.data(), src.step(), dst.data(), dst.step(), roi, value, record, buffer}, checks, call,
                        [&] { return dst.unchanged(); });
  // Steps are compared with the row's elements, not its bytes.
  Image<float> overlapped(r, 20, 1, 1), out(r, 20, 1, 1);
  CHECK(orviFilterGaussianInit({8, 3}, 3, 1, orvBorderRepl, orvData32f, 1, record, buffer) == orvStatusOk);
  CHECK(orviFilterGaussianBorder_32f_C1R(overlapped.data(), 8, out.data(), 8, {8, 3}, 0, record, buffer) ==
        orvStatusOk);
}

TEST(statusesOfTheSetup) {
  struct Setup {
    OrvSize roi;
    uint32_t kernel;
    float sigma;
    OrvBorderType border;
    OrvDataType type;
    int32_t channels;
    OrvFilterGaussianSpec* spec;
    uint8_t* buffer;
    int32_t *specSize, *bufferSize;
  };
  uint8_t spec[128], before[128], buffer[256];
  int32_t sizes[2] = {-7, -7};
  memset(spec, 9, sizeof spec);
  memcpy(before, spec, sizeof spec);
  const Setup valid = {{8, 8}, 5,     1,        orvBorderRepl, orvData8u, 1, (OrvFilterGaussianSpec*)(void*)spec,
                       buffer, sizes, sizes + 1};
  std::vector<Check<Setup>> common = {
      {"width", orvStatusSize, [](Setup& s) { s.roi.width = 0; }},
      {"height", orvStatusSize, [](Setup& s) { s.roi.height = -1; }},
      {"even kernel", orvStatusBadArg, [](Setup& s) { s.kernel = 6; }},
      {"data type", orvStatusDataType, [](Setup& s) { s.type = orvData64f; }},
      {"channels", orvStatusChannelCount, [](Setup& s) { s.channels = 4; }},
  };
  std::vector<Check<Setup>> query = common, init = common;
  query.insert(query.begin(), {{"bufferSize", orvStatusNullPtr, [](Setup& s) { s.bufferSize = nullptr; }},
                               {"specSize", orvStatusNullPtr, [](Setup& s) { s.specSize = nullptr; }}});
  init.insert(init.begin(), {{"spec", orvStatusNullPtr, [](Setup& s) { s.spec = nullptr; }},
                             {"buffer", orvStatusNullPtr, [](Setup& s) { s.buffer = nullptr; }}});
  init.push_back({"sigma", orvStatusBadArg, [](Setup& s) { s.sigma = 0; }});
  init.push_back({"border", orvStatusBorder, [](Setup& s) { s.border = orvBorderWrap; }});
  const auto untouched = [&] { return memcmp(spec, before, sizeof spec) == 0 && sizes[0] == -7 && sizes[1] == -7; };
  walkChecks<Setup>(
      valid, query,
      [](Setup& s) {
        return orviFilterGaussianGetBufferSize(s.roi, s.kernel, s.type, s.channels, s.specSize, s.bufferSize);
      },
      untouched);
  walkChecks<Setup>(
      valid, init,
      [](Setup& s) {
        return orviFilterGaussianInit(s.roi, s.kernel, s.sigma, s.border, s.type, s.channels, s.spec, s.buffer);
      },
      untouched);

  std::vector<float> image(64, 1), out(64, 2);
  struct Call {
    const float* src;
    float* dst;
    OrvSize roi;
    int32_t step, kernel;
    OrvBorderType border;
    uint8_t* buffer;
  };
  std::vector<uint8_t> scratch(1 << 13);
  walkChecks<Call>(
      {image.data(), out.data(), {8, 8}, 32, 5, orvBorderMirr, scratch.data()},
      {{"src", orvStatusNullPtr, [](Call& c) { c.src = nullptr; }},
       {"dst", orvStatusNullPtr, [](Call& c) { c.dst = nullptr; }},
       {"buffer", orvStatusNullPtr, [](Call& c) { c.buffer = nullptr; }},
       {"height", orvStatusSize, [](Call& c) { c.roi.height = 0; }},
       {"step", orvStatusStep, [](Call& c) { c.step = 7; }},
       {"kernel", orvStatusBadArg, [](Call& c) { c.kernel = 1; }},
       {"kind", orvStatusBadArg, [](Call& c) { c.border = orvBorderInMem; }},
       {"side", orvStatusBadArg, [](Call& c) { c.border = orvBorderMirr | orvBorderInMemLeft; }}},
      [](Call& c) {
        return orviFilterGaussBorder_32f_C1R(c.src, c.step, c.dst, c.step, c.roi, c.kernel, 1, c.border, 0, c.buffer);
      },
      [&] { return out == std::vector<float>(64, 2); });
}

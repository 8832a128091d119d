// Row stages of separable filters, through the public pipelines.
#include "filter/pipeline_cases.h"

using namespace test;

namespace {

template <class Pixel, class Tap, class Dst>
struct RowArguments {
  const Pixel* src;
  int32_t srcStep;
  Dst* const* dstRows;
  OrvSize roi;
  const Tap* kernel;
  int32_t kernelSize, anchor;
  OrvBorderType borderType;
  const Pixel* borderValue;
  int32_t divisor;
  uint8_t* buffer;
};

// The forms of the functions: one border value or three, with a divisor or without.
template <class P, class T, class D>
using RowC1 = OrvStatus (*)(const P*, int32_t, D* const*, OrvSize, const T*, int32_t, int32_t, OrvBorderType, P,
                            int32_t, uint8_t*);
template <class P, class T, class D>
using RowC3 = OrvStatus (*)(const P*, int32_t, D* const*, OrvSize, const T*, int32_t, int32_t, OrvBorderType, const P*,
                            int32_t, uint8_t*);
using RowC1Float = OrvStatus (*)(const float*, int32_t, float* const*, OrvSize, const float*, int32_t, int32_t,
                                 OrvBorderType, float, uint8_t*);
using RowC3Float = OrvStatus (*)(const float*, int32_t, float* const*, OrvSize, const float*, int32_t, int32_t,
                                 OrvBorderType, const float*, uint8_t*);
template <class P, class T, class D>
OrvStatus invoke(RowC1<P, T, D> f, const RowArguments<P, T, D>& a) {
  const P value = a.borderValue ? reference::load(a.borderValue, 0, 0, 0) : P();
  return f(a.src, a.srcStep, a.dstRows, a.roi, a.kernel, a.kernelSize, a.anchor, a.borderType, value, a.divisor,
           a.buffer);
}
template <class P, class T, class D>
OrvStatus invoke(RowC3<P, T, D> f, const RowArguments<P, T, D>& a) {
  return f(a.src, a.srcStep, a.dstRows, a.roi, a.kernel, a.kernelSize, a.anchor, a.borderType, a.borderValue, a.divisor,
           a.buffer);
}
OrvStatus invoke(RowC1Float f, const RowArguments<float, float, float>& a) {
  const float value = a.borderValue ? reference::load(a.borderValue, 0, 0, 0) : 0;
  return f(a.src, a.srcStep, a.dstRows, a.roi, a.kernel, a.kernelSize, a.anchor, a.borderType, value, a.buffer);
}
OrvStatus invoke(RowC3Float f, const RowArguments<float, float, float>& a) {
  return f(a.src, a.srcStep, a.dstRows, a.roi, a.kernel, a.kernelSize, a.anchor, a.borderType, a.borderValue, a.buffer);
}

using SizeFunction = OrvStatus (*)(OrvSize, int32_t, int32_t*);

// One call on random content: exact memory everywhere, destination rows in any order.
template <class P, class T, class D, class Function>
void rowCase(Random& r, Function function, SizeFunction sizeFunction, int channels, reference::Arithmetic arithmetic,
             const Shape& shape) {
  const int size = someKernelSize(r), anchor = r.in(0, size - 1);
  const OrvBorderType kinds[] = {orvBorderConst, orvBorderRepl, orvBorderInMem};
  const OrvBorderType border = kinds[r.in(0, 2)];
  const int32_t divisor = someDivisor<P>(r);
  const Context context("kernel " + std::to_string(size) + ", anchor " + std::to_string(anchor) + ", border " +
                        std::to_string(border) + ", divisor " + std::to_string(divisor));
  const GuardedArray<T> taps(someTaps<T>(r, size));
  const bool inMemory = border == orvBorderInMem;
  Image<P> src(r, shape.width, shape.height, channels, inMemory ? Margin{anchor, 0, size - 1 - anchor, 0} : Margin{});
  src.fill(r, false);
  Image<P> value(r, 1, 1, channels);
  value.fill(r, false);
  Image<D> dst(r, shape.width, shape.height, channels);
  std::vector<D*> order;
  for (int y = 0; y < shape.height; ++y) order.push_back(rowAddress(dst, y));
  for (int y = 0; y < shape.height; ++y) std::swap(order[(size_t)y], order[(size_t)r.in(0, shape.height - 1)]);
  const GuardedArray<D*> rows(order);
  const OrvSize roi{shape.width, shape.height};
  forEachSetting(shape.threaded, [&] {
    int32_t bytes = 0;
    sizeFunction(roi, size, &bytes);
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 5));
    dst.restore();
    const OrvStatus status =
        invoke(function, RowArguments<P, T, D>{src.data(), src.step(), rows.data(), roi, taps.data(), size, anchor,
                                               border, value.data(), divisor, buffer.data()});
    CHECK(status == orvStatusOk, "status %d", (int)status);
    CHECK(src.unchanged() && buffer.intact() && dst.onlyRegionChanged(), "written outside");
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width * channels; ++x) {
        const P* row = rowAddress(src, y);
        const D want = reference::filteredRow<P, D>(row, shape.width, channels, x, taps.data(), size, anchor, border,
                                                    value.data(), divisor, arithmetic);
        const D got = reference::load(order[(size_t)y], 0, 0, x);
        if (same(got, want)) continue;
        return fail("element %d of row %d is %.9g, not %.9g", x, y, (double)got, (double)want);
      }
  });
}

template <class P, class T, class D, class Function>
void rowCases(const char* name, Function function, SizeFunction sizeFunction, int channels, Shape threaded,
              reference::Arithmetic arithmetic = reference::Arithmetic::scaled) {
  Random r(seed());
  for (const Shape& shape : shapes(threaded))
    for (int i = 0; i < (shape.threaded ? 1 : 3); ++i) {
      const Context context(std::string(name) + " " + std::to_string(shape.width) + "x" + std::to_string(shape.height));
      rowCase<P, T, D>(r, function, sizeFunction, channels, arithmetic, shape);
    }
}

template <class P, class T, class D, class Function>
void rowChecks(const char* name, Function function, int channels, bool hasDivisor) {
  const Context context(name);
  Random r(seed());
  Image<P> src(r, 9, 4, channels);
  src.fill(r, false);
  std::vector<D> pixels(9 * 4 * 3, D());
  const std::vector<D> before = pixels;
  D* rows[] = {&pixels[0], &pixels[27], &pixels[54], &pixels[81]};
  D* const withNull[] = {rows[0], rows[1], rows[2], nullptr};
  const std::vector<T> taps(5, T(1));
  const std::vector<P> value(3, P());
  std::vector<uint8_t> buffer(8192);
  using A = RowArguments<P, T, D>;
  const A valid{src.data(), src.step(), rows, {9, 4}, taps.data(), 5, 2, orvBorderRepl, value.data(), 1, buffer.data()};
  std::vector<Check<A>> checks = {
      {"null src", orvStatusNullPtr, [](A& a) { a.src = nullptr; }},
      {"null dstRows", orvStatusNullPtr, [](A& a) { a.dstRows = nullptr; }},
      {"null kernel", orvStatusNullPtr, [](A& a) { a.kernel = nullptr; }},
      {"null buffer", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }},
      {"height", orvStatusSize, [](A& a) { a.roi.height = 0; }},
      {"width", orvStatusSize, [](A& a) { a.roi.width = -1; }},
      {"null row", orvStatusNullPtr, [&](A& a) { a.dstRows = withNull; }},
  };
  if (channels == 3) checks.push_back({"null borderValue", orvStatusNullPtr, [](A& a) { a.borderValue = nullptr; }});
  checks.push_back({"kernelSize", orvStatusSize, [](A& a) { a.kernelSize = 0; }});
  checks.push_back({"anchor", orvStatusAnchor, [](A& a) { a.anchor = a.kernelSize; }});
  checks.push_back({"negative anchor", orvStatusAnchor, [](A& a) { a.anchor = -1; }});
  checks.push_back({"small step", orvStatusStep, [&](A& a) { a.srcStep = 9 * channels * (int32_t)sizeof(P) - 1; }});
  if (sizeof(P) > 1) checks.push_back({"odd step", orvStatusStepAlign, [](A& a) { a.srcStep |= 1; }});
  for (const OrvBorderType border : {2, 3, 4, 5, 22, 65, -1})
    checks.push_back({"border " + std::to_string(border), orvStatusBadArg, [=](A& a) { a.borderType = border; }});
  if (hasDivisor) checks.push_back({"divisor", orvStatusBadArg, [](A& a) { a.divisor = 0; }});
  if (std::is_same<P, uint16_t>::value)
    checks.push_back({"negative divisor", orvStatusBadArg, [](A& a) { a.divisor = -1; }});
  walkChecks<A>(
      valid, checks, [&](A& a) { return invoke(function, a); }, [&] { return src.unchanged() && pixels == before; });
}

#define ROW_CASES(P, T, D, tag, ...)                                                                                  \
  rowCases<P, T, D>("row " #tag "_C1R", orviFilterRowBorderPipeline_##tag##_C1R,                                      \
                    orviFilterRowBorderPipelineGetBufferSize_##tag##_C1R, 1, {700, 330}, ##__VA_ARGS__);              \
  rowCases<P, T, D>("row " #tag "_C3R", orviFilterRowBorderPipeline_##tag##_C3R,                                      \
                    orviFilterRowBorderPipelineGetBufferSize_##tag##_C3R, 3, {330, 700}, ##__VA_ARGS__);              \
  rowChecks<P, T, D>("row " #tag "_C1R", orviFilterRowBorderPipeline_##tag##_C1R, 1, !std::is_same<P, float>::value); \
  rowChecks<P, T, D>("row " #tag "_C3R", orviFilterRowBorderPipeline_##tag##_C3R, 3, !std::is_same<P, float>::value)

struct Formula {
  SizeFunction function;
  int slope, rest;
  bool threaded;
};

}  // namespace

TEST(bytes) { ROW_CASES(uint8_t, int16_t, int16_t, 8u16s); }
TEST(words) { ROW_CASES(int16_t, int16_t, int16_t, 16s); }
TEST(unsignedWords) { ROW_CASES(uint16_t, uint16_t, uint16_t, 16u); }
TEST(floats) { ROW_CASES(float, float, float, 32f); }
TEST(lowAccuracy) { ROW_CASES(int16_t, int16_t, int16_t, Low_16s, reference::Arithmetic::low); }

// 2.5 and 3.5 in the middle of a row go to the even neighbour, at its ends they are cut; sums beyond 16 bits saturate.
TEST(roundingByPlace) {
  const uint8_t src[] = {5, 5, 5, 7, 7, 7, 200, 200, 200};
  const int16_t third[] = {0, 1, 0}, large[] = {0, 200, 0};
  int16_t row[9], *rows[] = {row};
  std::vector<uint8_t> buffer(4096);
  const auto run = [&](const int16_t* taps, int32_t divisor) {
    return orviFilterRowBorderPipeline_8u16s_C1R(src, 9, rows, {9, 1}, taps, 3, 1, orvBorderRepl, 0, divisor,
                                                 buffer.data());
  };
  CHECK(run(third, 2) == orvStatusOk, "status");
  CHECK(row[0] == 2 && row[1] == 2 && row[4] == 4 && row[8] == 100, "%d %d %d %d", row[0], row[1], row[4], row[8]);
  CHECK(run(third, -2) == orvStatusOk && row[0] == -2 && row[3] == -4, "%d %d", row[0], row[3]);
  CHECK(run(large, 1) == orvStatusOk && row[7] == 32767 && row[8] == 32767, "%d %d", row[7], row[8]);
}

TEST(bufferSizes) {
  const Formula formulas[] = {{orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R, 36, 112, true},
                              {orviFilterRowBorderPipelineGetBufferSize_8u16s_C3R, 3 * 16 + 12, 112, true},
                              {orviFilterRowBorderPipelineGetBufferSize_16s_C1R, 48, 80, true},
                              {orviFilterRowBorderPipelineGetBufferSize_16s_C3R, 40, 64, true},
                              {orviFilterRowBorderPipelineGetBufferSize_16u_C1R, 48, 80, false},
                              {orviFilterRowBorderPipelineGetBufferSize_16u_C3R, 2 * 48 + 4 * 4, 80, false},
                              {orviFilterRowBorderPipelineGetBufferSize_32f_C1R, 128, 64 + 16, true},
                              {orviFilterRowBorderPipelineGetBufferSize_32f_C3R, 192, 32, true},
                              {orviFilterRowBorderPipelineGetBufferSize_Low_16s_C1R, 24, 64, true},
                              {orviFilterRowBorderPipelineGetBufferSize_Low_16s_C3R, 208, 64, true}};
  for (const Formula& f : formulas)
    for (const int threads : threadCounts()) {
      steerThreads(threads);
      for (const int k : {1, 3, 8, 100000000}) {
        const uint32_t area = (uint32_t)f.slope * (uint32_t)k + (uint32_t)f.rest;
        const uint32_t total = 32u * (uint32_t)threads + 8u * (uint32_t)threads * (11u + (uint32_t)k);
        const auto want = (int32_t)(f.threaded ? total + (uint32_t)threads * area : area);
        int32_t got = 0;
        const OrvStatus status = f.function({17, 11}, k, &got);
        CHECK(status == orvStatusOk && got == want, "kernel %d: %d, not %d", k, got, want);
      }
      int32_t kept = 77;
      CHECK(f.function({0, 0}, 0, nullptr) == orvStatusNullPtr, "null");
      CHECK(f.function({0, 1}, 1, &kept) == orvStatusSize && f.function({1, 0}, 1, &kept) == orvStatusSize, "size");
      CHECK(f.function({1, 1}, 0, &kept) == orvStatusSize && kept == 77, "kernel size");
    }
  steerThreads(1);
}

// Column stages of separable filters, through the public pipelines.
#include "filter/pipeline_cases.h"

using namespace test;

namespace {

template <class Src, class Dst>
struct ColumnArguments {
  const Src* const* srcRows;
  Dst* dst;
  int32_t dstStep;
  OrvSize roi;
  const Src* kernel;
  int32_t kernelSize, divisor;
  uint8_t* buffer;
};

template <class S, class D>
using Column = OrvStatus (*)(const S* const*, D*, int32_t, OrvSize, const S*, int32_t, int32_t, uint8_t*);
using ColumnFloat = OrvStatus (*)(const float* const*, float*, int32_t, OrvSize, const float*, int32_t, uint8_t*);
template <class S, class D>
OrvStatus invoke(Column<S, D> f, const ColumnArguments<S, D>& a) {
  return f(a.srcRows, a.dst, a.dstStep, a.roi, a.kernel, a.kernelSize, a.divisor, a.buffer);
}
OrvStatus invoke(ColumnFloat f, const ColumnArguments<float, float>& a) {
  return f(a.srcRows, a.dst, a.dstStep, a.roi, a.kernel, a.kernelSize, a.buffer);
}

using SizeFunction = OrvStatus (*)(OrvSize, int32_t, int32_t*);

// One call on random content: exact memory everywhere, source rows in any order and some of them repeated.
template <class S, class D, class Function>
void columnCase(Random& r, Function function, SizeFunction sizeFunction, int channels, reference::Arithmetic arithmetic,
                const Shape& shape) {
  const int size = someKernelSize(r), count = shape.height + size - 1;
  const int32_t divisor = r.one(4) && !std::is_same<S, float>::value ? -someDivisor<S>(r) : someDivisor<S>(r);
  const Context context("kernel " + std::to_string(size) + ", divisor " + std::to_string(divisor));
  const std::vector<S> kernel = someTaps<S>(r, size);
  const GuardedArray<S> taps(kernel);
  Image<S> src(r, shape.width, count, channels);
  src.fill(r, false);
  std::vector<const S*> pointers;
  for (int y = 0; y < count; ++y) {
    const int from = r.one(3) ? r.in(0, count - 1) : y;
    pointers.push_back(rowAddress(src, from));
  }
  const GuardedArray<const S*> rows(pointers);
  Image<D> dst(r, shape.width, shape.height, channels);
  const OrvSize roi{shape.width, shape.height};
  forEachSetting(shape.threaded, [&] {
    int32_t bytes = 0;
    sizeFunction(roi, size, &bytes);
    const Guarded buffer((size_t)bytes, !r.one(4), (size_t)r.in(0, 5));
    dst.restore();
    const OrvStatus status = invoke(function, ColumnArguments<S, D>{rows.data(), dst.data(), dst.step(), roi,
                                                                    taps.data(), size, divisor, buffer.data()});
    CHECK(status == orvStatusOk, "status %d", (int)status);
    CHECK(src.unchanged() && buffer.intact() && dst.onlyRegionChanged(), "written outside");
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width * channels; ++x) {
        const D want = reference::filteredColumn<S, D>(rows.data() + y, shape.width, channels, x, kernel.data(), size,
                                                       divisor, arithmetic);
        const D got = dst.at(x, y);
        if (same(got, want)) continue;
        return fail("element %d of row %d is %.9g, not %.9g", x, y, (double)got, (double)want);
      }
  });
}

template <class S, class D, class Function>
void columnCases(const char* name, Function function, SizeFunction sizeFunction, int channels, Shape threaded,
                 reference::Arithmetic arithmetic = reference::Arithmetic::scaled) {
  Random r(seed());
  for (const Shape& shape : shapes(threaded))
    for (int i = 0; i < (shape.threaded ? 1 : 3); ++i) {
      const Context context(std::string(name) + " " + std::to_string(shape.width) + "x" + std::to_string(shape.height));
      columnCase<S, D>(r, function, sizeFunction, channels, arithmetic, shape);
    }
}

template <class S, class D, class Function>
void columnChecks(const char* name, Function function, int channels) {
  const Context context(name);
  const std::vector<S> pixels(64, S(1));
  std::vector<const S*> rows(6, pixels.data()), withNull = rows;
  withNull[5] = nullptr;
  const std::vector<S> taps(3, S(1));
  std::vector<D> image(9 * 4 * 3, D());
  const std::vector<D> before = image;
  std::vector<uint8_t> buffer(8192);
  using A = ColumnArguments<S, D>;
  const int32_t bytes = 9 * channels * (int32_t)sizeof(D);
  const A valid{rows.data(), image.data(), bytes, {9, 4}, taps.data(), 3, 1, buffer.data()};
  std::vector<Check<A>> checks = {
      {"null srcRows", orvStatusNullPtr, [](A& a) { a.srcRows = nullptr; }},
      {"null dst", orvStatusNullPtr, [](A& a) { a.dst = nullptr; }},
      {"null kernel", orvStatusNullPtr, [](A& a) { a.kernel = nullptr; }},
      {"height", orvStatusSize, [](A& a) { a.roi.height = 0; }},
      {"width", orvStatusSize, [](A& a) { a.roi.width = 0; }},
      // With a kernel of no taps fewer rows are looked at; the null is put first then.
      {"null row", orvStatusNullPtr,
       [&](A& a) {
         if (a.kernelSize < 1) withNull[0] = nullptr;
         if (a.srcRows) a.srcRows = withNull.data();
       }},
      {"kernelSize", orvStatusSize, [](A& a) { a.kernelSize = 0; }},
      {"small step", orvStatusStep, [=](A& a) { a.dstStep = bytes - 1; }},
  };
  if (sizeof(D) > 1) checks.push_back({"odd step", orvStatusStepAlign, [](A& a) { a.dstStep |= 1; }});
  checks.push_back({"null buffer", orvStatusNullPtr, [](A& a) { a.buffer = nullptr; }});
  if (!std::is_same<S, float>::value) checks.push_back({"divisor", orvStatusBadArg, [](A& a) { a.divisor = 0; }});
  walkChecks<A>(
      valid, checks, [&](A& a) { return invoke(function, a); }, [&] { return image == before; });
}

#define COLUMN_CASES(S, D, tag, ...)                                                                  \
  columnCases<S, D>("column " #tag "_C1R", orviFilterColumnPipeline_##tag##_C1R,                      \
                    orviFilterColumnPipelineGetBufferSize_##tag##_C1R, 1, {701, 330}, ##__VA_ARGS__); \
  columnCases<S, D>("column " #tag "_C3R", orviFilterColumnPipeline_##tag##_C3R,                      \
                    orviFilterColumnPipelineGetBufferSize_##tag##_C3R, 3, {330, 701}, ##__VA_ARGS__); \
  columnChecks<S, D>("column " #tag "_C1R", orviFilterColumnPipeline_##tag##_C1R, 1);                 \
  columnChecks<S, D>("column " #tag "_C3R", orviFilterColumnPipeline_##tag##_C3R, 3)

}  // namespace

TEST(words) { COLUMN_CASES(int16_t, int16_t, 16s); }
TEST(wordsToBytes) { COLUMN_CASES(int16_t, uint8_t, 16s8u); }
TEST(wordsToSignedBytes) { COLUMN_CASES(int16_t, int8_t, 16s8s); }
TEST(unsignedWords) { COLUMN_CASES(uint16_t, uint16_t, 16u); }
TEST(floats) { COLUMN_CASES(float, float, 32f); }
TEST(lowAccuracy) { COLUMN_CASES(int16_t, int16_t, Low_16s, reference::Arithmetic::low); }

// A row of the destination may be one of its own sources.
TEST(inPlace) {
  Random r(seed());
  for (int width = 1; width < 140; ++width) {
    const Context context("width " + std::to_string(width));
    Image<int16_t> image(r, width, 3, 1);
    image.fill(r, false);
    const int16_t taps[] = {1, -2, 3};
    const int16_t* rows[3];
    for (int y = 0; y < 3; ++y) rows[y] = rowAddress(image, y);
    std::vector<int16_t> want;
    for (int x = 0; x < width; ++x)
      want.push_back(
          reference::filteredColumn<int16_t, int16_t>(rows, width, 1, x, taps, 3, 4, reference::Arithmetic::scaled));
    forEachSetting(false, [&] {
      int32_t bytes = 0;
      orviFilterColumnPipelineGetBufferSize_16s_C1R({width, 1}, 3, &bytes);
      std::vector<uint8_t> buffer((size_t)bytes);
      image.restore();
      orviFilterColumnPipeline_16s_C1R(rows, (int16_t*)(uintptr_t)rows[1], image.step(), {width, 1}, taps, 3, 4,
                                       buffer.data());
      for (int x = 0; x < width; ++x)
        CHECK(image.at(x, 1) == want[(size_t)x], "element %d: %d, not %d", x, image.at(x, 1), want[(size_t)x]);
    });
  }
}

TEST(bufferSizes) {
  struct Formula {
    SizeFunction function;
    uint32_t slope, multiple;  // 0: 32 bytes for all sizes
  };
  const Formula formulas[] = {{orviFilterColumnPipelineGetBufferSize_16s_C1R, 12, 4},
                              {orviFilterColumnPipelineGetBufferSize_16s8u_C1R, 12, 4},
                              {orviFilterColumnPipelineGetBufferSize_16s8s_C1R, 12, 4},
                              {orviFilterColumnPipelineGetBufferSize_16s_C3R, 36, 4},
                              {orviFilterColumnPipelineGetBufferSize_16s8u_C3R, 36, 4},
                              {orviFilterColumnPipelineGetBufferSize_16s8s_C3R, 36, 4},
                              {orviFilterColumnPipelineGetBufferSize_Low_16s_C1R, 12, 8},
                              {orviFilterColumnPipelineGetBufferSize_Low_16s_C3R, 36, 8},
                              {orviFilterColumnPipelineGetBufferSize_16u_C1R, 0, 1},
                              {orviFilterColumnPipelineGetBufferSize_16u_C3R, 0, 1},
                              {orviFilterColumnPipelineGetBufferSize_32f_C1R, 0, 1},
                              {orviFilterColumnPipelineGetBufferSize_32f_C3R, 0, 1}};
  for (const Formula& f : formulas)
    for (const int threads : threadCounts()) {
      steerThreads(threads);
      for (const uint32_t width : {1u, 4u, 5u, 9u, 2000000000u}) {
        const auto n = (uint32_t)threads;
        const uint32_t area = f.slope * ((width + f.multiple - 1) / f.multiple * f.multiple) + 32;
        const auto want = (int32_t)(f.slope ? 32 * n + 8 * n * (11 + 6) + n * area : 32);
        int32_t got = 0;
        const OrvStatus status = f.function({(int32_t)width, 11}, 6, &got);
        CHECK(status == orvStatusOk && got == want, "width %u: %d, not %d", width, got, want);
      }
      int32_t kept = 77;
      CHECK(f.function({0, 0}, 0, nullptr) == orvStatusNullPtr, "null");
      CHECK(f.function({0, 1}, 1, &kept) == orvStatusSize && f.function({1, 0}, 1, &kept) == orvStatusSize, "size");
      CHECK(f.function({1, 1}, 0, &kept) == orvStatusSize && kept == 77, "kernel size");
    }
  steerThreads(1);
}

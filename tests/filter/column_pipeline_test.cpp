// Column stages of separable filters, through the public pipelines.
#include "filter/pipeline_cases.h"

using namespace test;
using reference::Arithmetic;

namespace {

// One form for all: those of floats have no divisor.
template <class S, class D, class... Rest>
auto asOne(OrvStatus (*f)(const S* const*, D*, int32_t, OrvSize, const S*, int32_t, Rest...)) {
  return [f](const S* const* rows, D* dst, int32_t step, OrvSize roi, const S* kernel, int32_t size,
             [[maybe_unused]] int32_t divisor, uint8_t* buffer) {
    if constexpr (sizeof...(Rest) == 1) return f(rows, dst, step, roi, kernel, size, buffer);
    else return f(rows, dst, step, roi, kernel, size, divisor, buffer);
  };
}

template <class S, class D, class Run>
void walk(const char* name, Run run, SizeFunction bufferSize, int channels) {
  std::vector<Told> order =
      pointersThenSizes({0, 1, 3}, 2) +
      std::vector<Told>{badValue(7, 1, orvStatusNullPtr), badValue(4, 0, orvStatusSize), at(1, Fault::smallStep)};
  if (sizeof(D) > 1) order.push_back(at(1, Fault::misalignedStep));
  order.push_back(at(6, Fault::null));
  if (!std::is_same<S, float>::value) order.push_back(badValue(5, 0));
  const int32_t size = 3;
  // The last argument puts a null among the row pointers: the last one, or the first if a kernel of no taps reads less.
  const auto call = [&](const S* const* rows, D* dst, int32_t step, OrvSize roi, const S* kernel, int32_t count,
                        int32_t divisor, uint8_t* buffer, int32_t hasNull) {
    std::vector<const S*> pointers(7);
    if (rows) std::copy(rows, rows + 7, pointers.begin());
    if (hasNull) pointers[count < 1 ? 0 : 6] = nullptr;
    return run(rows ? pointers.data() : nullptr, dst, step, roi, kernel, count, divisor, buffer);
  };
  walkArguments(name, call, order, Rows<S>(In<S>(channels), [](Random&) { return 2; }), Out<D>(channels), Roi(),
                Kernel<S>(size), The(size), Value<int32_t>({1}),
                Scratch([&](OrvSize roi, int32_t* bytes) { return bufferSize(roi, 3, bytes); }), Value<int32_t>({0}));
}

template <class S, class D, class F>
void check(const char* name, F f, SizeFunction bufferSize, int channels, Shape threaded,
           Arithmetic arithmetic = Arithmetic::scaled) {
  Random r(seed());
  int size = 1;
  const auto plain = [=](const S* const* rows, D* dst, int32_t step, OrvSize roi, const S* kernel, int32_t count,
                         int32_t divisor, uint8_t*) {
    const auto taps = tapsAt(kernel, count);
    reference::forEachElement(roi, channels, [&](int y, int x) {
      const bool whole = x / channels < (roi.width & ~15);
      reference::store(dst, step, y, x, reference::columnOutput<S, D>(taps, divisor, arithmetic, whole, [&](int j) {
                         return reference::load(rows[y + j], 0, 0, x);
                       }));
    });
  };
  const auto moreRows = [&](Random& draw) { return size = someKernelSize(draw), size - 1; };
  const auto run = asOne<S, D>(f);
  sweepShapes(name, run, plain, repeated(3, {threaded}), r, Rows<S>(In<S>(channels), moreRows), Out<D>(channels), Roi(),
              Kernel<S>(size), The(size), Divisor<int16_t>(),
              Scratch([&](OrvSize roi, int32_t* bytes) { return bufferSize(roi, size, bytes); }));
  walk<S, D>(name, run, bufferSize, channels);
}

#define FORMS(S, D, tag, ...)                                                                         \
  check<S, D>("column " #tag "_C1R", orviFilterColumnPipeline_##tag##_C1R,                            \
              orviFilterColumnPipelineGetBufferSize_##tag##_C1R, 1, {701, 330, true}, ##__VA_ARGS__); \
  check<S, D>("column " #tag "_C3R", orviFilterColumnPipeline_##tag##_C3R,                            \
              orviFilterColumnPipelineGetBufferSize_##tag##_C3R, 3, {330, 701, true}, ##__VA_ARGS__)

}  // namespace

TEST(words) { FORMS(int16_t, int16_t, 16s); }
TEST(wordsToBytes) { FORMS(int16_t, uint8_t, 16s8u); }
TEST(wordsToSignedBytes) { FORMS(int16_t, int8_t, 16s8s); }
TEST(unsignedWords) { FORMS(uint16_t, uint16_t, 16u); }
TEST(floats) { FORMS(float, float, 32f); }
TEST(lowAccuracy) { FORMS(int16_t, int16_t, Low_16s, Arithmetic::low); }

// A row of the destination may be one of its own sources.
TEST(inPlace) {
  for (int width = 1; width < 140; ++width)
    forEachSetting(false, [&] {
      std::vector<int16_t> lines(3 * 140);
      for (int i = 0; i < 3 * 140; ++i) lines[(size_t)i] = (int16_t)(i * i % 8191);
      const std::vector<int16_t> before = lines;
      const int16_t taps[] = {1, -2, 3}, *rows[] = {&lines[0], &lines[140], &lines[280]};
      std::vector<uint8_t> buffer(1 << 13);
      orviFilterColumnPipeline_16s_C1R(rows, &lines[140], 2 * width, {width, 1}, taps, 3, 1, buffer.data());
      for (size_t x = 0; x < (size_t)width; ++x)
        CHECK(lines[140 + x] == before[x] - 2 * before[140 + x] + 3 * before[280 + x], "column %zu of %d", x, width);
    });
}

#define COLUMN_SIZES(tag, slope1, slope3, multiple)                        \
  {orviFilterColumnPipelineGetBufferSize_##tag##_C1R, slope1, multiple}, { \
    orviFilterColumnPipelineGetBufferSize_##tag##_C3R, slope3, multiple    \
  }
TEST(bufferSizes) {
  const struct {
    SizeFunction function;
    uint32_t slope, multiple;  // 0: 32 bytes for all sizes
  } formulas[] = {COLUMN_SIZES(16s, 12, 36, 4),     COLUMN_SIZES(16s8u, 12, 36, 4), COLUMN_SIZES(16s8s, 12, 36, 4),
                  COLUMN_SIZES(Low_16s, 12, 36, 8), COLUMN_SIZES(16u, 0, 0, 1),     COLUMN_SIZES(32f, 0, 0, 1)};
  for (const auto& f : formulas)
    checkSizes(f.function, [&](uint32_t width, uint32_t k, uint32_t threads) {
      const uint32_t area = f.slope * ((width + f.multiple - 1) / f.multiple * f.multiple) + 32;
      return f.slope ? threads * (32 + 8 * (11 + k) + area) : 32;
    });
}

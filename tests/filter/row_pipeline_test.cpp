// Row stages of separable filters, through the public pipelines.
#include "filter/pipeline_cases.h"

using namespace test;
using reference::Arithmetic;

namespace {

// The forms take one border value or a pointer to three, and, but for floats, a divisor. All become the form of
// sweepRows().
template <class P, class T, class D, class V, class... Rest>
auto asOne(OrvStatus (*f)(const P*, int32_t, D* const*, OrvSize, const T*, int32_t, int32_t, OrvBorderType, V,
                          Rest...)) {
  return [f](const P* src, int32_t step, D* const* dst, OrvSize roi, const T* kernel, int32_t size, int32_t anchor,
             OrvBorderType type, const P* value, [[maybe_unused]] int32_t divisor, uint8_t* buffer) {
    V border;
    if constexpr (std::is_pointer<V>::value) border = value;
    else border = reference::load(value, 0, 0, 0);
    if constexpr (sizeof...(Rest) == 1) return f(src, step, dst, roi, kernel, size, anchor, type, border, buffer);
    else return f(src, step, dst, roi, kernel, size, anchor, type, border, divisor, buffer);
  };
}

template <class P, class T, class D, class Run>
void walk(const char* name, Run run, SizeFunction bufferSize, int channels) {
  std::vector<Told> order = pointersThenSizes({0, 1, 3, 9}, 2);
  order.push_back(badValue(10, 1, orvStatusNullPtr));
  if (channels == 3) order.push_back(at(7, Fault::null));
  order = order + std::vector<Told>{badValue(4, 0, orvStatusSize), badValue(5, 5, orvStatusAnchor),
                                    badValue(5, -1, orvStatusAnchor), at(0, Fault::smallStep)};
  if (sizeof(P) > 1) order.push_back(at(0, Fault::misalignedStep));
  for (const int type : {2, 3, 4, 5, 22, 65, -1}) order.push_back(badValue(6, type));
  if (!std::is_same<P, float>::value) order.push_back(badValue(8, 0));
  if (std::is_same<P, uint16_t>::value) order.push_back(badValue(8, -1));
  const int32_t size = 5;
  // The last argument tells whether the pointer of the last row is null.
  const auto call = [&](const P* src, int32_t step, D* const* dst, OrvSize roi, const T* kernel, int32_t count,
                        int32_t anchor, int32_t type, const P* value, int32_t divisor, uint8_t* buffer, int32_t null) {
    std::vector<D*> rows(5);
    if (dst) std::copy(dst, dst + 5, rows.begin());
    if (null) rows[4] = nullptr;
    return run(src, step, dst ? rows.data() : nullptr, roi, kernel, count, anchor, type, value, divisor, buffer);
  };
  walkArguments(name, call, order, In<P>(channels), Rows<D>(Out<D>(channels)), Roi(), Kernel<T>(size), The(size),
                Value<int32_t>({2}), Value<OrvBorderType>({orvBorderRepl}), BorderValue<P>(channels),
                Value<int32_t>({1}), Scratch([&](OrvSize roi, int32_t* bytes) { return bufferSize(roi, 5, bytes); }),
                Value<int32_t>({0}));
}

template <class P, class T, class D, class F>
void check(const char* name, F f, SizeFunction bufferSize, int channels, Shape threaded,
           Arithmetic arithmetic = Arithmetic::scaled) {
  const auto run = asOne(f);
  sweepRows<P, T, D>(name, run, bufferSize, channels, {orvBorderConst, orvBorderRepl, orvBorderInMem},
                     repeated(3, {threaded}), arithmetic);
  walk<P, T, D>(name, run, bufferSize, channels);
}

#define FORMS(P, T, D, tag, ...)                                                                            \
  check<P, T, D>("row " #tag "_C1R", orviFilterRowBorderPipeline_##tag##_C1R,                               \
                 orviFilterRowBorderPipelineGetBufferSize_##tag##_C1R, 1, {700, 330, true}, ##__VA_ARGS__); \
  check<P, T, D>("row " #tag "_C3R", orviFilterRowBorderPipeline_##tag##_C3R,                               \
                 orviFilterRowBorderPipelineGetBufferSize_##tag##_C3R, 3, {330, 700, true}, ##__VA_ARGS__)

}  // namespace

TEST(bytes) { FORMS(uint8_t, int16_t, int16_t, 8u16s); }
TEST(words) { FORMS(int16_t, int16_t, int16_t, 16s); }
TEST(unsignedWords) { FORMS(uint16_t, uint16_t, uint16_t, 16u); }
TEST(floats) { FORMS(float, float, float, 32f); }
TEST(lowAccuracy) { FORMS(int16_t, int16_t, int16_t, Low_16s, Arithmetic::low); }

TEST(bufferSizes) {
  const struct {
    SizeFunction function;
    int slope, rest;
    bool threaded;
  } formulas[] = {{orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R, 36, 112, true},
                  {orviFilterRowBorderPipelineGetBufferSize_8u16s_C3R, 3 * 16 + 12, 112, true},
                  {orviFilterRowBorderPipelineGetBufferSize_16s_C1R, 48, 80, true},
                  {orviFilterRowBorderPipelineGetBufferSize_16s_C3R, 40, 64, true},
                  {orviFilterRowBorderPipelineGetBufferSize_16u_C1R, 48, 80, false},
                  {orviFilterRowBorderPipelineGetBufferSize_16u_C3R, 2 * 48 + 4 * 4, 80, false},
                  {orviFilterRowBorderPipelineGetBufferSize_32f_C1R, 128, 64 + 16, true},
                  {orviFilterRowBorderPipelineGetBufferSize_32f_C3R, 192, 32, true},
                  {orviFilterRowBorderPipelineGetBufferSize_Low_16s_C1R, 24, 64, true},
                  {orviFilterRowBorderPipelineGetBufferSize_Low_16s_C3R, 208, 64, true}};
  for (const auto& f : formulas)
    checkSizes(f.function, [&](uint32_t, uint32_t k, uint32_t threads) {
      const uint32_t area = (uint32_t)f.slope * k + (uint32_t)f.rest;
      return f.threaded ? threads * (32 + 8 * (11 + k) + area) : area;
    });
}

// Fixed filters against their plain forms, in memory of exactly the reported sizes; sizes, statuses and known values.
// One body serves both variants.
#include "filter/fixed_cases.h"

using namespace test;

namespace {

// Bits above the sides are allowed beside a side.
constexpr int highBits = 256 | 0x10000 | orvBorderInMemTop;
const std::vector<int> kinds = {orvBorderConst, orvBorderRepl,  orvBorderWrap, orvBorderMirr,
                                orvBorderMirrR, orvBorderInMem, highBits};

// The filters that all types have.
#define COMMON_FILTERS(type, T, D)                                                                                \
  {NAMED(Laplacian, type), reference::laplacian<T, D>}, SEPARABLE(SobelNegVert, type, T, D, "DxNeg", "SobelNeg"), \
      SEPARABLE(SobelCross, type, T, D, "DxNeg", "Dx"), SEPARABLE(SobelHorizSecond, type, T, D, "Sobel", "D2x"),  \
      SEPARABLE(SobelVertSecond, type, T, D, "D2x", "Sobel"), SEPARABLE(ScharrHoriz, type, T, D, "Scharr", "Dx"), \
      SEPARABLE(ScharrVert, type, T, D, "Dx", "Scharr")

const FixedFilter<uint8_t, int16_t> filters8u16s[] = {COMMON_FILTERS(8u16s, uint8_t, int16_t)};
const FixedFilter<uint8_t, int8_t> filters8u8s[] = {COMMON_FILTERS(8u8s, uint8_t, int8_t),
                                                    SEPARABLE(SobelVert, 8u8s, uint8_t, int8_t, "DxNeg", "Sobel"),
                                                    SEPARABLE(SobelHoriz, 8u8s, uint8_t, int8_t, "Sobel", "Dx")};
const FixedFilter<float, float> filters32f[] = {COMMON_FILTERS(32f, float, float),
                                                {NAMED(Lowpass, 32f), reference::lowpass<float>}};
const FixedFilter<uint8_t, uint8_t> filters8u[] = {{NAMED(Lowpass, 8u), reference::lowpass<uint8_t>}};

template <class Body>
void forEachTable(const Body& body) {
  body(filters8u16s), body(filters8u8s), body(filters32f), body(filters8u);
}

// What the filters check behind the sizes, and what their size functions check.
template <class T, class D>
void walk(const FixedFilter<T, D>& filter) {
  auto order = eachOf(Fault::smallStep, {0, 1});
  if (sizeof(D) > 1) order.push_back({Fault::misalignedStep, 1});
  if (sizeof(T) > 1) order.push_back({Fault::misalignedStep, 0});
  order = order + std::vector<Told>{badValue(4, 5), badValue(4, 256)};
  if (std::is_same<D, int8_t>::value) order.push_back(badValue(6, 0));
  std::vector<Told> sizes = pointersThenSizes({2}, 0);
  if (filter.masked) {
    order.push_back(badValue(3, 35, orvStatusMaskSize));
    sizes.push_back(badValue(1, 5, orvStatusMaskSize));
  }
  walkFixed(filter, orvBorderRepl, order);
  walkArguments("size", filter.size, sizes, Roi(), Value<OrvMaskSize>({orvMaskSize5x5}), Result<int32_t>());
}

template <class T, class D, size_t N>
const FixedFilter<T, D>& named(const FixedFilter<T, D> (&table)[N], const std::string& name) {
  for (const auto& filter : table)
    if (filter.name == name) return filter;
  return fail("no filter %s", name.c_str()), table[0];
}
#define FILTER(type, filter) named(filters##type, #filter "_" #type)

}  // namespace

// One template makes the bands of each pair of types, so the first two filters of a table are tried with teams.
TEST(allFilters) {
  forEachTable([](const auto& table) {
    for (const auto& filter : table) sweepFixed(filter, kinds, &filter < table + 2);
  });
}

TEST(statuses) {
  forEachTable([](const auto& table) {
    for (const auto& filter : table) walk(filter);
  });
}

// Bands work in slices of the buffer of their own: the second half of it doesn't stay blank.
TEST(slices) {
  const OrvSize roi = {300, 300};
  const std::vector<uint8_t> src(90000);
  std::vector<int16_t> dst(90000);
  int32_t bytes = 0;
  steerThreads(2);
  CHECK(filters8u16s[1].size(roi, orvMaskSize3x3, &bytes) == orvStatusOk);
  const Guarded buffer((size_t)bytes, true, 0), blank((size_t)bytes / 2, true, 0);
  filters8u16s[1].run(src.data(), 300, dst.data(), 600, roi, orvMaskSize3x3, orvBorderRepl, 0, 1, buffer.data());
  CHECK(memcmp(buffer.data() + bytes - bytes / 2, blank.data(), blank.bytes()) != 0);
  steerThreads(1);
}

// Sizes worked by hand: 100 x 50 (a = 112), one thread and three.
TEST(sizes) {
  const auto size = [&](const auto& filter, OrvMaskSize mask) {
    int32_t bytes = -1;
    filter.size({100, 50}, mask, &bytes);
    return (int)bytes;
  };
  steerThreads(1);
  // rows of K 3 and 5: 32 + 8 * (50 + K) + 36 * K + 112, floats 128 * K + 80; columns 16s 32 + 8 * (50 + K) + 1232
  const int row3 = 32 + 424 + 220, row5 = 32 + 440 + 292, column3 = 32 + 424 + 1232, column5 = 32 + 440 + 1232;
  const int float3 = 32 + 424 + 464 + 32, float5 = 32 + 440 + 720 + 32, both3 = row3 + column3, both5 = row5 + column5;
  CHECK(size(FILTER(8u8s, SobelVert), orvMaskSize3x3) == 4704 + 72 + 304 + both3 + 32);
  CHECK(size(FILTER(8u16s, SobelCross), orvMaskSize5x5) == 5600 + 120 + 368 + both5 + 32);
  CHECK(size(FILTER(32f, SobelHorizSecond), orvMaskSize5x5) == 11200 + 120 + 368 + float5 + 32);
  CHECK(size(FILTER(8u16s, Laplacian), orvMaskSize3x3) == 9408 + 144 + 576 + both3 + 32);
  CHECK(size(FILTER(8u8s, Laplacian), orvMaskSize5x5) == 11200 + 240 + 576 + both5 + 32);
  CHECK(size(FILTER(32f, Laplacian), orvMaskSize3x3) == 18816 + 144 + 576 + float3 + 32);
  CHECK(size(filters8u[0], orvMaskSize5x5) == 5600 + 120 + 368 + both5 + 32);
  CHECK(size(FILTER(32f, Lowpass), orvMaskSize3x3) == 9408 + 72 + 304 + float3 + 32);
  CHECK(size(FILTER(8u16s, ScharrVert), orvMaskSize3x3) == 4704 + 376 + both3 + 32);
  CHECK(size(FILTER(8u8s, ScharrHoriz), orvMaskSize3x3) == 4704 + 376 + both3 + 32);
  CHECK(size(FILTER(32f, ScharrVert), orvMaskSize3x3) == 9408 + 440 + float3 + 32);
  steerThreads(3);
  CHECK(size(FILTER(8u16s, SobelCross), orvMaskSize5x5) == 3 * (5600 + 120 + 368 + 3 * both5 + 32));
  CHECK(size(FILTER(32f, Lowpass), orvMaskSize3x3) == 3 * (9408 + 72 + 304 + 3 * (float3 - 32) + 32 + 32));
  steerThreads(1);
}

TEST(kernels) {
  const auto check = [](int size, int dx, int sign, std::vector<int> want) {
    std::vector<int16_t> shorts((size_t)size + 1, 99);
    std::vector<float> floats((size_t)size + 1, 99);
    CHECK(orviGenSobelKernel_16s(shorts.data(), size, dx, sign) == orvStatusOk);
    CHECK(orviGenSobelKernel_32f(floats.data(), size, dx, sign) == orvStatusOk);
    want.push_back(99);
    for (size_t i = 0; i < want.size(); ++i)
      CHECK(shorts[i] == want[i] && floats[i] == (float)want[i], "tap %d of %d, order %d", (int)i, size, dx);
  };
  check(1, 0, 1, {1});
  check(1, 0, -1, {-1});
  check(3, 0, 0, {1, 2, 1});
  check(3, 1, 1, {-1, 0, 1});
  check(3, 2, 1, {1, -2, 1});
  check(5, 1, 1, {-1, -2, 0, 2, 1});
  check(5, 2, -1, {-1, 0, 2, 0, -1});
  check(7, 0, 5, {1, 6, 15, 20, 15, 6, 1});
  check(7, 6, 1, {1, -6, 15, -20, 15, -6, 1});
  check(9, 3, 1, {-1, -2, 2, 6, 0, -6, -2, 2, 1});
  int16_t taps[33] = {};
  CHECK(orviGenSobelKernel_16s(taps, 21, 0, 1) == orvStatusOk && taps[10] == (int16_t)184756, "16-bit taps wrap");
  CHECK(orviGenSobelKernel_16s(nullptr, 2, 0, 1) == orvStatusNullPtr);
  for (const int size : {0, -1, 2, 4}) CHECK(orviGenSobelKernel_16s(taps, size, 0, 1) == orvStatusBadArg);
  for (const int dx : {-1, 3, 4}) CHECK(orviGenSobelKernel_32f((float*)(void*)taps, 3, dx, 1) == orvStatusBadArg);
}

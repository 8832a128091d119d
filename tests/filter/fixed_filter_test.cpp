// Fixed filters against their plain forms, in memory of exactly the reported sizes; sizes, statuses and known values.
// One body serves both variants.
#include "filter/fixed_cases.h"

using namespace test;

namespace {

const std::vector<int> allKinds = {orvBorderConst, orvBorderRepl,  orvBorderWrap,
                                   orvBorderMirr,  orvBorderMirrR, orvBorderInMem};

// Scharr size functions have no mask argument.
auto unmasked(OrvStatus (*size)(OrvSize, int32_t*)) {
  return [=](OrvSize roi, OrvMaskSize, int32_t* bytes) { return size(roi, bytes); };
}

using Shorts = FixedFilterCase<uint8_t, int16_t>;
using Signed = FixedFilterCase<uint8_t, int8_t>;
using Bytes = FixedFilterCase<uint8_t, uint8_t>;
using Floats = FixedFilterCase<float, float>;

#define MASKED(filter, type, plain)                                          \
  {                                                                          \
#filter "_" #type, byArguments(orviFilter##filter##Border_##type##_C1R), \
        orviFilter##filter##GetBufferSize_##type##_C1R, plain                \
  }
#define UNMASKED(filter, type, plain)                                          \
  {                                                                            \
#filter "_" #type, byArguments(orviFilter##filter##Border_##type##_C1R),   \
        unmasked(orviFilter##filter##GetBufferSize_##type##_C1R), plain, false \
  }

const Shorts filters8u16s[] = {
    MASKED(SobelNegVert, 8u16s, (plainSeparable<uint8_t, int16_t>("DxNeg", "SobelNeg"))),
    MASKED(SobelCross, 8u16s, (plainSeparable<uint8_t, int16_t>("DxNeg", "Dx"))),
    MASKED(SobelHorizSecond, 8u16s, (plainSeparable<uint8_t, int16_t>("Sobel", "D2x"))),
    MASKED(SobelVertSecond, 8u16s, (plainSeparable<uint8_t, int16_t>("D2x", "Sobel"))),
    UNMASKED(ScharrHoriz, 8u16s, (plainSeparable<uint8_t, int16_t>("Scharr", "Dx"))),
    UNMASKED(ScharrVert, 8u16s, (plainSeparable<uint8_t, int16_t>("Dx", "Scharr"))),
    MASKED(Laplacian, 8u16s, (plainLaplacian<uint8_t, int16_t>)),
};
const Signed filters8u8s[] = {
    MASKED(SobelVert, 8u8s, (plainSeparable<uint8_t, int8_t>("DxNeg", "Sobel"))),
    MASKED(SobelNegVert, 8u8s, (plainSeparable<uint8_t, int8_t>("DxNeg", "SobelNeg"))),
    MASKED(SobelHoriz, 8u8s, (plainSeparable<uint8_t, int8_t>("Sobel", "Dx"))),
    MASKED(SobelCross, 8u8s, (plainSeparable<uint8_t, int8_t>("DxNeg", "Dx"))),
    MASKED(SobelHorizSecond, 8u8s, (plainSeparable<uint8_t, int8_t>("Sobel", "D2x"))),
    MASKED(SobelVertSecond, 8u8s, (plainSeparable<uint8_t, int8_t>("D2x", "Sobel"))),
    UNMASKED(ScharrHoriz, 8u8s, (plainSeparable<uint8_t, int8_t>("Scharr", "Dx"))),
    UNMASKED(ScharrVert, 8u8s, (plainSeparable<uint8_t, int8_t>("Dx", "Scharr"))),
    MASKED(Laplacian, 8u8s, (plainLaplacian<uint8_t, int8_t>)),
};
const Floats filters32f[] = {
    MASKED(SobelNegVert, 32f, (plainSeparable<float, float>("DxNeg", "SobelNeg"))),
    MASKED(SobelCross, 32f, (plainSeparable<float, float>("DxNeg", "Dx"))),
    MASKED(SobelHorizSecond, 32f, (plainSeparable<float, float>("Sobel", "D2x"))),
    MASKED(SobelVertSecond, 32f, (plainSeparable<float, float>("D2x", "Sobel"))),
    UNMASKED(ScharrHoriz, 32f, (plainSeparable<float, float>("Scharr", "Dx"))),
    UNMASKED(ScharrVert, 32f, (plainSeparable<float, float>("Dx", "Scharr"))),
    MASKED(Laplacian, 32f, (plainLaplacian<float, float>)),
    MASKED(Lowpass, 32f, (plainLowpass<float>)),
};
const Bytes lowpass8u = MASKED(Lowpass, 8u, (plainLowpass<uint8_t>));

}  // namespace

TEST(shortResults) {
  for (const Shorts& filter : filters8u16s) sweepFixed(filter, allKinds);
}
TEST(byteResults) {
  for (const Signed& filter : filters8u8s) sweepFixed(filter, allKinds);
  sweepFixed(lowpass8u, allKinds);
}
TEST(floatResults) {
  for (const Floats& filter : filters32f) sweepFixed(filter, allKinds);
}

// The value of orvBorderInMem with a flag is still all four sides; a flag alone leaves the others constant.
TEST(everyKindWithEverySide) {
  Random r(seed());
  for (const int kind : allKinds)
    for (int sides = 0; sides < 256; sides += 16)
      for (const OrvMaskSize mask : {orvMaskSize3x3, orvMaskSize5x5})
        for (const Shape shape : {Shape{1, 1}, Shape{2, 3}, Shape{5, 2}, Shape{70, 4}}) {
          checkFixed(filters8u16s[0], r, shape, mask, kind | sides);
          checkFixed(filters32f[3], r, shape, mask, kind | sides);
        }
}

namespace {

// One pixel of a filter on an image without borders of its own.
template <class T, class D>
D pixel(const FixedFilterCase<T, D>& filter, const std::vector<T>& image, int width, int x, int y, OrvMaskSize mask,
        OrvBorderType border, T value, int32_t divisor = 1) {
  const OrvSize roi = {width, (int32_t)image.size() / width};
  std::vector<D> dst(image.size());
  int32_t bytes = 0;
  filter.size(roi, mask, &bytes);
  std::vector<uint8_t> buffer((size_t)bytes);
  CHECK(filter.run({image.data(), width * (int32_t)sizeof(T), dst.data(), width * (int32_t)sizeof(D), roi, mask, border,
                    value, divisor, buffer.data()}) == orvStatusOk);
  return dst[(size_t)(y * width + x)];
}

template <class Filter>
const Filter& named(const Filter* begin, const Filter* end, const std::string& name) {
  for (; begin != end; ++begin)
    if (name == begin->name) return *begin;
  fail("no filter %s", name.c_str());
  return end[-1];
}
#define FILTER(type, filter) named(std::begin(filters##type), std::end(filters##type), #filter "_" #type)

}  // namespace

// Values worked by hand.
TEST(knownValues) {
  const std::vector<uint8_t> right = {1, 2, 4, 1, 2, 4, 1, 2, 4}, down = {1, 1, 1, 2, 2, 2, 4, 4, 4};
  const auto at = [](const auto& filter, const std::vector<uint8_t>& image, int32_t divisor = 1) {
    return (int)pixel(filter, image, 3, 1, 1, orvMaskSize3x3, orvBorderRepl, (uint8_t)0, divisor);
  };
  CHECK(at(FILTER(8u16s, SobelNegVert), right) == 12 && at(FILTER(8u8s, SobelVert), right) == -12);
  CHECK(at(FILTER(8u8s, SobelHoriz), down) == 12 && at(FILTER(8u8s, SobelHoriz), right) == 0);
  CHECK(at(FILTER(8u16s, SobelVertSecond), right) == 4 && at(FILTER(8u16s, SobelHorizSecond), down) == 4);
  CHECK(at(FILTER(8u16s, ScharrVert), right) == 48 && at(FILTER(8u16s, ScharrHoriz), down) == 48);
  CHECK(at(FILTER(8u16s, Laplacian), right) == 4);
  CHECK(at(FILTER(8u8s, SobelVert), right, -1) == 12 && at(FILTER(8u8s, ScharrVert), right, 100) == 0);
  // 12 / 8 is truncated here: three pixels are the rest of a row
  CHECK(at(FILTER(8u8s, SobelHoriz), down, 8) == 1);
  // a row of one constant slope, 20 pixels wide: 12 / 8 to nearest in the first 16, truncated in the last 4
  std::vector<uint8_t> ramp;
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 20; ++x) ramp.push_back((uint8_t)(x * 3 / 2 * 2 / 2));
  const auto rounded = [&](int x) {
    return (int)pixel(FILTER(8u8s, SobelNegVert), ramp, 20, x, 1, orvMaskSize3x3, orvBorderRepl, (uint8_t)0, 8);
  };
  CHECK(rounded(7) == 2 && rounded(15) == 2 && rounded(17) == 1, "%d %d %d", rounded(7), rounded(15), rounded(17));
  // flat images
  const std::vector<uint8_t> flat(49, 255);
  const auto mean = [&](OrvMaskSize mask) {
    return (int)pixel(lowpass8u, flat, 7, 3, 3, mask, orvBorderMirr, (uint8_t)0);
  };
  CHECK(mean(orvMaskSize3x3) == 255 && mean(orvMaskSize5x5) == 254);
  for (const OrvMaskSize mask : {orvMaskSize3x3, orvMaskSize5x5}) {
    CHECK(pixel(FILTER(8u16s, Laplacian), flat, 7, 3, 3, mask, orvBorderConst, (uint8_t)255) == 0);
    CHECK(pixel(FILTER(8u16s, Laplacian), flat, 7, 0, 3, mask, orvBorderConst, (uint8_t)0) != 0);
    const float zero = pixel(FILTER(32f, SobelNegVert), std::vector<float>(49, 7.f), 7, 3, 3, mask, orvBorderWrap, 1.f);
    CHECK(zero == 0 && !std::signbit(zero), "a flat image gives +0");
  }
}

// Sizes worked by hand: 100 x 50 (a = 112), one thread and three.
TEST(sizes) {
  const OrvSize roi = {100, 50};
  const auto size = [&](const auto& filter, OrvMaskSize mask) {
    int32_t bytes = -1;
    filter.size(roi, mask, &bytes);
    return (int)bytes;
  };
  steerThreads(1);
  // rows of K 3 and 5: 32 + 8 * (50 + K) + 36 * K + 112, floats 128 * K + 80; columns 16s 32 + 8 * (50 + K) + 1232
  const int row3 = 32 + 424 + 220, row5 = 32 + 440 + 292, column3 = 32 + 424 + 1232, column5 = 32 + 440 + 1232;
  const int float3 = 32 + 424 + 464 + 32, float5 = 32 + 440 + 720 + 32;
  CHECK(size(FILTER(8u8s, SobelVert), orvMaskSize3x3) == 4704 + 72 + 304 + row3 + column3 + 32);
  CHECK(size(FILTER(8u16s, SobelCross), orvMaskSize5x5) == 5600 + 120 + 368 + row5 + column5 + 32);
  CHECK(size(FILTER(32f, SobelHorizSecond), orvMaskSize5x5) == 11200 + 120 + 368 + float5 + 32);
  CHECK(size(FILTER(8u16s, Laplacian), orvMaskSize3x3) == 9408 + 144 + 576 + row3 + column3 + 32);
  CHECK(size(FILTER(8u8s, Laplacian), orvMaskSize5x5) == 11200 + 240 + 576 + row5 + column5 + 32);
  CHECK(size(FILTER(32f, Laplacian), orvMaskSize3x3) == 18816 + 144 + 576 + float3 + 32);
  CHECK(size(lowpass8u, orvMaskSize5x5) == 5600 + 120 + 368 + row5 + column5 + 32);
  CHECK(size(FILTER(32f, Lowpass), orvMaskSize3x3) == 9408 + 72 + 304 + float3 + 32);
  CHECK(size(FILTER(8u16s, ScharrVert), orvMaskSize3x3) == 4704 + 376 + row3 + column3 + 32);
  CHECK(size(FILTER(8u8s, ScharrHoriz), orvMaskSize3x3) == 4704 + 376 + row3 + column3 + 32);
  CHECK(size(FILTER(32f, ScharrVert), orvMaskSize3x3) == 9408 + 440 + float3 + 32);
  steerThreads(3);
  CHECK(size(FILTER(8u16s, SobelCross), orvMaskSize5x5) == 3 * (5600 + 120 + 368 + 3 * (row5 + column5) + 32));
  CHECK(size(FILTER(32f, Lowpass), orvMaskSize3x3) == 3 * (9408 + 72 + 304 + 3 * (float3 - 32) + 32 + 32));
  steerThreads(1);
}

namespace {

struct SizeArguments {
  OrvSize roi;
  OrvMaskSize mask;
  int32_t* bytes;
};

// The checks of a filter and of its size function, in the told order.
template <class T, class D>
void walkFixed(const FixedFilterCase<T, D>& filter) {
  using Arguments = FixedArguments<T, D>;
  const Context context(filter.name);
  Random r(seed());
  Image<T> src(r, 9, 5, 1);
  Image<D> dst(r, 9, 5, 1);
  const Guarded buffer(1 << 15, true, 0);
  std::vector<Check<Arguments>> checks = {
      {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }},
      {"dst", orvStatusNullPtr, [](Arguments& a) { a.dst = nullptr; }},
      {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }},
      {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }},
      {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -2; }},
      {"srcStep", orvStatusStep, [](Arguments& a) { a.srcStep = 9 * (int32_t)sizeof(T) - 1; }},
      {"dstStep", orvStatusStep, [](Arguments& a) { a.dstStep = 9 * (int32_t)sizeof(D) - 1; }}};
  if (sizeof(D) > 1) checks.push_back({"dst alignment", orvStatusStepAlign, [](Arguments& a) { a.dstStep += 1; }});
  if (sizeof(T) > 1) checks.push_back({"src alignment", orvStatusStepAlign, [](Arguments& a) { a.srcStep += 2; }});
  checks.push_back({"kind", orvStatusBadArg, [](Arguments& a) { a.border = 5; }});
  checks.push_back({"high bit", orvStatusBadArg, [](Arguments& a) { a.border = 256; }});
  if (std::is_same<D, int8_t>::value)
    checks.push_back({"divisor", orvStatusBadArg, [](Arguments& a) { a.divisor = 0; }});
  if (filter.masked) checks.push_back({"mask", orvStatusMaskSize, [](Arguments& a) { a.mask = 35; }});
  const Arguments valid = {src.data(),     src.step(),    dst.data(), dst.step(), {9, 5},
                           orvMaskSize3x3, orvBorderRepl, 0,          1,          buffer.data()};
  walkChecks<Arguments>(
      valid, checks, [&](Arguments& a) { return filter.run(a); }, [&] { return dst.unchanged(); });
  Arguments high = valid;
  high.border = 256 | orvBorderConst | 0x10000 | orvBorderInMemTop;  // a side flag allows the other bits
  high.src = (const T*)((const uint8_t*)src.data() + src.step());
  high.roi.height = 4;
  CHECK(filter.run(high) == orvStatusOk);

  int32_t bytes = -7;
  std::vector<Check<SizeArguments>> sizeChecks = {
      {"bufferSize", orvStatusNullPtr, [](SizeArguments& a) { a.bytes = nullptr; }},
      {"width", orvStatusSize, [](SizeArguments& a) { a.roi.width = 0; }},
      {"height", orvStatusSize, [](SizeArguments& a) { a.roi.height = 0; }}};
  if (filter.masked) sizeChecks.push_back({"mask", orvStatusMaskSize, [](SizeArguments& a) { a.mask = 5; }});
  walkChecks<SizeArguments>(
      {{9, 5}, orvMaskSize5x5, &bytes}, sizeChecks,
      [&](SizeArguments& a) { return filter.size(a.roi, a.mask, a.bytes); }, [&] { return bytes == -7; });
}

}  // namespace

TEST(statuses) {
  for (const Shorts& filter : filters8u16s) walkFixed(filter);
  for (const Signed& filter : filters8u8s) walkFixed(filter);
  for (const Floats& filter : filters32f) walkFixed(filter);
  walkFixed(lowpass8u);
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

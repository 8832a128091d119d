// The vector and image primitives, each against its plain form.
#include "core/primitives.h"
#include "framework/sweep.h"
#include "framework/vectors.h"
#include "reference/pointwise.h"
#include "reference/scaling.h"

using namespace test;

namespace {

const std::less<> less;
const std::greater<> greater;
const std::vector<int32_t> scales = {0,  1,  2,   3,   5,   7,   8,   9,   10,        14,       15,
                                     16, 17, 18,  29,  30,  31,  32,  99,  -1,        -2,       -6,
                                     -7, -8, -14, -15, -16, -17, -30, -99, INT32_MIN, INT32_MAX};

// The checks of a primitive with `images` sources and destination: pointers, sizes, and for images, which are given as
// plain functions, steps, which aren't measured against the width.
template <class F>
std::vector<Told> checks(const F&, const std::vector<int>& images) {
  const int roi = (int)images.size();
  if (!std::is_pointer<F>::value) return eachOf(Fault::null, images) + std::vector<Told>{{Fault::width, roi}};
  auto order = pointersThenSizes(images, roi);
  for (const int i : images) order.push_back(badValue(i, i ? 0 : -8, orvStatusStep));
  return order;
}

// Plain forms: of(value, more...) and of(first, second, more...) of each element, `more` being what follows the region.
template <class Of>
auto unaryOf(Of of) {
  return [of](auto* s, int32_t sStep, auto* d, int32_t dStep, OrvSize roi, auto... more) {
    reference::unary(1, [=](auto v) { return of(v, more...); })(s, sStep, d, dStep, roi);
  };
}
template <class Of>
auto binaryOf(int channels, Of of) {
  return [=](auto* a, int32_t aStep, auto* b, int32_t bStep, auto* d, int32_t dStep, OrvSize roi, auto... more) {
    reference::binary(channels, [=](auto p, auto q) { return of(p, q, more...); })(a, aStep, b, bStep, d, dStep, roi);
  };
}

// A function of two sources: apart, and with the destination in either source's place.
template <class T, class F, class Plain, class... More>
void sweepBinary(const char* name, F f, Plain plain, Shape threaded, int channels, More... more) {
  const auto source = wild(In<T>(channels)), both = wild(InOut<T>(channels));
  sweep(name, f, plain, threaded, source, source, Out<T>(channels), Roi(), more...);
  sweep(name, inPlaceOfFirst(f), inPlaceOfFirst(plain), {}, source, both, Roi(), more...);
  sweep(name, inPlaceOfSecond(f), inPlaceOfSecond(plain), {}, source, both, Roi(), more...);
  walkArguments(name, f, checks(f, {0, 1, 2}), source, source, Out<T>(channels), Roi(), more...);
}

// A function of one source: apart, and in place if the types allow it.
template <class T, class D = T, class F, class Plain, class... More>
void sweepUnary(const char* name, F f, Plain plain, Shape threaded, int channels, More... more) {
  const auto source = wild(In<T>(channels));
  sweep(name, f, plain, threaded, source, Out<D>(channels), Roi(), more...);
  walkArguments(name, f, checks(f, {0, 1}), source, Out<D>(channels), Roi(), more...);
  if constexpr (std::is_same<T, D>::value)
    sweep(name, inPlace(f), inPlace(plain), {}, wild(InOut<T>(channels)), Roi(), more...);
}

template <class T, class F>
void checkMemory(F allocate) {
  const int32_t before = steeredLiveAllocations();
  CHECK(allocate(0) == nullptr && allocate(-1) == nullptr);
  T* const memory = allocate(37);
  CHECK(memory != nullptr);
  memset((void*)memory, 1, 37 * sizeof(T));  // all of it is there: the page beyond is protected
  orvsFree(memory);
  steerFailAllocation(1);
  CHECK(allocate(37) == nullptr);
  steerFailAllocation(0);
  CHECK(steeredLiveAllocations() == before);
}

template <class T, class F>
void checkSet(const char* name, F set, std::vector<T> values) {
  const auto plain = [](T* dst, int32_t step, OrvSize roi, T value) {
    reference::forEachElement(roi, 1, [&](int y, int x) { reference::store(dst, step, y, x, value); });
  };
  sweep(name, set, plain, {}, Out<T>(), Roi(), Value<T>(values));
  walkArguments(name, set, checks(set, {0}), Out<T>(), Roi(), Value<T>(values));
}
// Vectors: set(value, dst, length).
template <class T, class F>
void checkFill(const char* name, F set, std::vector<T> values) {
  const auto rows = [set](T* dst, int32_t step, OrvSize roi, T value) {
    OrvStatus status = orvStatusOk;
    for (int y = 0; y < roi.height && status == orvStatusOk; ++y) status = set(value, rowOf(dst, step, y), roi.width);
    return status;
  };
  checkSet<T>(name, rows, values);
}
// The first operand wins if `wins(first, second)`. In place, src is the first, srcDst the second.
template <class T, class Two, class One, class Wins>
void checkEvery(const char* name, Two two, One one, Wins wins) {
  const auto plain = reference::binary(1, [wins](T a, T b) { return wins(a, b) ? a : b; });
  if constexpr (!std::is_same<Two, std::nullptr_t>::value) sweepBinary<T>(name, binaryRows(two), plain, {}, 1);
  const auto rows = unaryRows(one);
  sweep(name, rows, inPlaceOfSecond(plain), {}, wild(In<T>()), wild(InOut<T>()), Roi());
  walkArguments(name, rows, checks(rows, {0, 1}), In<T>(), InOut<T>(), Roi());
}
template <class T, class F>
void checkSub(const char* name, F f, int channels) {
  const auto plain =
      binaryOf(channels, [](T p, T q, int32_t scale) { return reference::scaled<T>((double)q - (double)p, scale); });
  sweepBinary<T>(name, f, plain, {70, 29}, channels, Value<int32_t>(scales));
}

template <class T, class F>
void checkThreshold(const char* name, F f, Shape threaded, std::vector<T> thresholds, std::vector<T> values) {
  const auto plain = unaryOf([](T v, T threshold, T value, int32_t compare) {
    return (compare == 4 ? v > threshold : v < threshold) ? value : v;
  });
  const Value<int32_t> compare({0, 4});
  sweepUnary<T>(name, f, plain, threaded, 1, Value<T>(thresholds), Value<T>(values), compare);
  walkArguments(name, f,
                std::vector<Told>{badValue(5, 1, orvStatusNotSupported), badValue(5, 5, orvStatusNotSupported)} +
                    checks(f, {0, 1}),
                In<T>(), Out<T>(), Roi(), Value<T>(thresholds), Value<T>(values), compare);
}

}  // namespace

TEST(memory) {
  checkMemory<uint8_t>(orvsMalloc_8u);
  checkMemory<uint16_t>(orvsMalloc_16u);
  checkMemory<int32_t>(orvsMalloc_32s);
  checkMemory<float>(orvsMalloc_32f);
  checkMemory<double>(orvsMalloc_64f);
}

TEST(fills) {
  checkFill<uint8_t>("orvsSet_8u", orvsSet_8u, {0, 1, 200, 255});
  checkFill<int16_t>("orvsSet_16s", orvsSet_16s, {-32768, -2, 0x1234, 32767});
  checkFill<int32_t>("orvsSet_32s", orvsSet_32s, {INT32_MIN, -1, 0x12345678, INT32_MAX});
  checkFill<float>("orvsSet_32f", orvsSet_32f, {-0.f, 1.5f, INFINITY});
  const auto zero = [](auto clear) { return [clear](auto, auto* dst, int32_t length) { return clear(dst, length); }; };
  checkFill<uint8_t>("orvsZero_8u", zero(orvsZero_8u), {0});
  checkFill<int16_t>("orvsZero_16s", zero(orvsZero_16s), {0});
  checkFill<int32_t>("orvsZero_32s", zero(orvsZero_32s), {0});
  checkFill<float>("orvsZero_32f", zero(orvsZero_32f), {0});
  const auto set8u =
      +[](uint8_t* dst, int32_t step, OrvSize roi, uint8_t v) { return orviSet_8u_C1R(v, dst, step, roi); };
  const auto set16s =
      +[](int16_t* dst, int32_t step, OrvSize roi, int16_t v) { return orviSet_16s_C1R(v, dst, step, roi); };
  checkSet<uint8_t>("orviSet_8u_C1R", set8u, {0, 77, 255});
  checkSet<int16_t>("orviSet_16s_C1R", set16s, {0, -77, 32767});
}

TEST(copies) {
  const auto same1 = [](auto v) { return v; };
  const auto plain = reference::unary(1, same1);
  sweepUnary<uint8_t>("orvsCopy_8u", unaryRows(orvsCopy_8u), plain, {}, 1);
  sweepUnary<int16_t>("orvsCopy_16s", unaryRows(orvsCopy_16s), plain, {}, 1);
  sweepUnary<float>("orvsCopy_32f", unaryRows(orvsCopy_32f), plain, {}, 1);
  sweepUnary<uint8_t>("orviCopy_8u_C1R", orviCopy_8u_C1R, plain, {}, 1);
  sweepUnary<uint8_t>("orviCopy_8u_C3R", orviCopy_8u_C3R, reference::unary(3, same1), {}, 3);
  sweepUnary<uint8_t>("orviCopy_8u_C4R", orviCopy_8u_C4R, reference::unary(4, same1), {}, 4);
  sweepUnary<int16_t>("orviCopy_16s_C1R", orviCopy_16s_C1R, plain, {}, 1);
  sweepUnary<uint16_t>("orviCopy_16u_C1R", orviCopy_16u_C1R, plain, {}, 1);
  sweepUnary<float>("orviCopy_32f_C1R", orviCopy_32f_C1R, plain, {}, 1);
  sweepUnary<float>("orviCopy_32f_C3R", orviCopy_32f_C3R, reference::unary(3, same1), {}, 3);
  sweepUnary<float>("orviCopy_32f_C4R", orviCopy_32f_C4R, reference::unary(4, same1), {}, 4);
  const auto widen = [](auto v) { return (float)v; };
  sweepUnary<uint16_t, float>("orviConvert_16u32f_C1R", orviConvert_16u32f_C1R, reference::unary(1, widen), {}, 1);
  sweepUnary<uint8_t, float>("orviConvert_8u32f_C3R", orviConvert_8u32f_C3R, reference::unary(3, widen), {}, 3);
}

TEST(extrema) {
  checkEvery<uint8_t>("orvsMinEvery_8u", orvsMinEvery_8u, orvsMinEvery_8u_I, less);
  checkEvery<uint16_t>("orvsMinEvery_16u", orvsMinEvery_16u, orvsMinEvery_16u_I, less);
  checkEvery<float>("orvsMinEvery_32f", orvsMinEvery_32f, orvsMinEvery_32f_I, less);
  checkEvery<double>("orvsMinEvery_64f", orvsMinEvery_64f, orvsMinEvery_64f_I, less);
  checkEvery<uint8_t>("orvsMaxEvery_8u", orvsMaxEvery_8u, orvsMaxEvery_8u_I, greater);
  checkEvery<uint16_t>("orvsMaxEvery_16u", orvsMaxEvery_16u, orvsMaxEvery_16u_I, greater);
  checkEvery<float>("orvsMaxEvery_32f", orvsMaxEvery_32f, orvsMaxEvery_32f_I, greater);
  checkEvery<double>("orvsMaxEvery_64f", orvsMaxEvery_64f, orvsMaxEvery_64f_I, greater);
  checkEvery<int16_t>("orvsMinEvery_16s_I", nullptr, orvsMinEvery_16s_I, less);
  checkEvery<int16_t>("orvsMaxEvery_16s_I", nullptr, orvsMaxEvery_16s_I, greater);
}

TEST(roots_and_lengths) {
  sweepUnary<float>("orvsSqrt_32f", unaryRows(orvsSqrt_32f), reference::unary(1, [](float v) { return sqrtf(v); }),
                    {5003, 2}, 1);
  sweepBinary<float>("orvsMagnitude_32f", binaryRows(orvsMagnitude_32f),
                     reference::binary(1, [](float a, float b) { return sqrtf(a * a + b * b); }), {}, 1);
  const auto plain = binaryOf(1, [](int16_t re, int16_t im, int32_t scale) {
    return reference::scaled<int16_t>(sqrt((double)re * re + (double)im * im), scale);
  });
  sweepBinary<int16_t>("orvsMagnitude_16s_Sfs", binaryRows(orvsMagnitude_16s_Sfs), plain, {2100, 2}, 1,
                       Value<int32_t>(scales));
}

// All of re against a few im: exact roots, ties of every scale, sums just above and below a tie, and 2^31.
TEST(lengths_round_once) {
  std::vector<int16_t> re(65536), d(65536);
  for (int i = 0; i < 65536; ++i) re[(size_t)i] = (int16_t)(i - 32768);
  for (const int im : {0, 1, 2, 180, 181, 4095, 23170, 32767, -32768}) {
    const std::vector<int16_t> fixed(65536, (int16_t)im);
    for (const int32_t scale : {0, 1, 2, 3, 8, 15, 16, 17, -1, -4, -15}) {
      orvsMagnitude_16s_Sfs(re.data(), fixed.data(), d.data(), 65536, scale);
      for (size_t i = 0; i < 65536; ++i) {
        const auto want = reference::scaled<int16_t>(sqrt((double)re[i] * re[i] + (double)im * im), scale);
        if (d[i] != want) fail("|(%d, %d)|, scale %d: %d, not %d", re[i], im, (int)scale, d[i], want);
      }
    }
  }
}

TEST(differences) {
  const auto minus = [](float a, float b) { return b - a; };
  sweepBinary<float>("orviSub_32f_C1R", orviSub_32f_C1R, reference::binary(1, minus), {70, 29}, 1);
  sweepBinary<float>("orviSub_32f_C3R", orviSub_32f_C3R, reference::binary(3, minus), {}, 3);
  sweepBinary<float>("orviSub_32f_C4R", orviSub_32f_C4R, reference::binary(4, minus), {}, 4);
  checkSub<uint8_t>("orviSub_8u_C1RSfs", orviSub_8u_C1RSfs, 1);
  checkSub<uint8_t>("orviSub_8u_C3RSfs", orviSub_8u_C3RSfs, 3);
  checkSub<uint8_t>("orviSub_8u_C4RSfs", orviSub_8u_C4RSfs, 4);
  checkSub<uint16_t>("orviSub_16u_C1RSfs", orviSub_16u_C1RSfs, 1);
  checkSub<int16_t>("orviSub_16s_C1RSfs", orviSub_16s_C1RSfs, 1);
}

// Every difference of 16-bit numbers at every scale that matters: all ties of both signs, all ends.
TEST(differences_round_to_even) {
  std::vector<int16_t> a(131071), b(131071), d(131071);
  for (int i = 0; i < 131071; ++i) {
    const int difference = i - 65535;
    b[(size_t)i] = (int16_t)(difference / 2);
    a[(size_t)i] = (int16_t)(b[(size_t)i] - difference);
  }
  for (int32_t scale = -18; scale <= 19; ++scale) {
    orviSub_16s_C1RSfs(a.data(), 1 << 20, b.data(), 1 << 20, d.data(), 1 << 20, {131071, 1}, scale);
    for (int i = 0; i < 131071; ++i) {
      const int16_t want = reference::scaled<int16_t>((double)b[(size_t)i] - (double)a[(size_t)i], scale);
      if (d[(size_t)i] != want) fail("%d at scale %d: %d, not %d", i - 65535, (int)scale, d[(size_t)i], want);
    }
  }
}

TEST(products) {
  const auto floats = +[](const float* s, int32_t sStep, float* d, int32_t dStep, OrvSize roi, float v) {
    return orviMulC_32f_C1R(s, sStep, v, d, dStep, roi);
  };
  const auto plain = unaryOf([](float p, float v) { return p * v; });
  sweepUnary<float>("orviMulC_32f_C1R", floats, plain, {70, 29}, 1, Value<float>({0.03125f, -3.f, 0.f, 1e30f}));
  const auto shorts = +[](const int16_t* s, int32_t sStep, int16_t* d, int32_t dStep, OrvSize roi, int16_t v,
                          int32_t scale) { return orviMulC_16s_C1RSfs(s, sStep, v, d, dStep, roi, scale); };
  const auto plainShorts =
      unaryOf([](int16_t p, int16_t v, int32_t scale) { return reference::scaled<int16_t>((double)p * v, scale); });
  for (const bool plainScale : {true, false})
    sweepUnary<int16_t>("orviMulC_16s_C1RSfs", shorts, plainShorts, {70, 29}, 1,
                        Value<int16_t>({-32768, -300, -1, 0, 1, 4, 32767}),
                        Value<int32_t>(plainScale ? std::vector<int32_t>{0} : scales));
}

TEST(thresholds) {
  checkThreshold<uint8_t>("orviThreshold_Val_8u_C1R", orviThreshold_Val_8u_C1R, {}, {0, 1, 127, 128, 254, 255},
                          {0, 3, 255});
  for (const int32_t cache : {32 << 20, -1}) {
    steerCache(cache);
    checkThreshold<uint16_t>("orviThreshold_Val_16u_C1R", orviThreshold_Val_16u_C1R, {520, 513},
                             {0, 1, 32767, 32768, 65535}, {0, 3, 65535});
  }
  steerCache(32 << 20);
  const auto above = unaryOf([](auto v, auto threshold, auto value) { return v > threshold ? value : v; });
  sweepUnary<uint8_t>("orviThreshold_GTVal_8u_C1R", orviThreshold_GTVal_8u_C1R, above, {}, 1, Value<uint8_t>({0, 128}),
                      Value<uint8_t>({255}));
  sweepUnary<uint16_t>("orviThreshold_GTVal_16u_C1R", orviThreshold_GTVal_16u_C1R, above, {}, 1,
                       Value<uint16_t>({0, 40000}), Value<uint16_t>({65535}));
  const auto clip = unaryOf([](float v, int32_t compare, float t) { return (compare == 4 ? v > t : v < t) ? t : v; });
  const auto clipBelow = unaryOf([](float v, float t) { return v < t ? t : v; });
  sweepUnary<float>("orviThreshold_32f_C1R", orviThreshold_32f_C1R, clip, {}, 1, Value<int32_t>({0, 4}),
                    Value<float>({0.f, -0.f, 17.f}));
  sweepUnary<float>("orviThreshold_LT_32f_C1R", orviThreshold_LT_32f_C1R, clipBelow, {}, 1, Value<float>({0.f, -3.f}));
}

// Norms, norms of differences and relative norms.
// One body serves both variants.
#include "statistics_cases.h"

using namespace test;
using reference::Kind;
using reference::magnitude;
using reference::Pixels;

namespace {

// A norm of an element type.
template <class T>
struct Single {
  const char* name;
  Kind kind;
  OrvStatus (*masked)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, double*);
  OrvStatus (*channel)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, double*);
};
template <class T>
struct Pair {
  const char* name;
  Kind kind;
  bool relative;
  OrvStatus (*masked)(const T*, int32_t, const T*, int32_t, const uint8_t*, int32_t, OrvSize, double*);
  OrvStatus (*channel)(const T*, int32_t, const T*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, double*);
};

#define SINGLES(tag)                                                                        \
  {                                                                                         \
    {"Norm_Inf_" #tag, Kind::inf, orviNorm_Inf_##tag##_C1MR, orviNorm_Inf_##tag##_C3CMR},   \
        {"Norm_L1_" #tag, Kind::l1, orviNorm_L1_##tag##_C1MR, orviNorm_L1_##tag##_C3CMR}, { \
      "Norm_L2_" #tag, Kind::l2, orviNorm_L2_##tag##_C1MR, orviNorm_L2_##tag##_C3CMR        \
    }                                                                                       \
  }
#define PAIRS(tag)                                                                                           \
  {                                                                                                          \
    {"NormDiff_Inf_" #tag, Kind::inf, false, orviNormDiff_Inf_##tag##_C1MR, orviNormDiff_Inf_##tag##_C3CMR}, \
        {"NormDiff_L1_" #tag, Kind::l1, false, orviNormDiff_L1_##tag##_C1MR, orviNormDiff_L1_##tag##_C3CMR}, \
        {"NormDiff_L2_" #tag, Kind::l2, false, orviNormDiff_L2_##tag##_C1MR, orviNormDiff_L2_##tag##_C3CMR}, \
        {"NormRel_Inf_" #tag, Kind::inf, true, orviNormRel_Inf_##tag##_C1MR, orviNormRel_Inf_##tag##_C3CMR}, \
        {"NormRel_L1_" #tag, Kind::l1, true, orviNormRel_L1_##tag##_C1MR, orviNormRel_L1_##tag##_C3CMR}, {   \
      "NormRel_L2_" #tag, Kind::l2, true, orviNormRel_L2_##tag##_C1MR, orviNormRel_L2_##tag##_C3CMR          \
    }                                                                                                        \
  }
const Single<uint8_t> singles8u[] = SINGLES(8u);
const Single<int8_t> singles8s[] = SINGLES(8s);
const Single<uint16_t> singles16u[] = SINGLES(16u);
const Single<float> singles32f[] = SINGLES(32f);
const Pair<uint8_t> pairs8u[] = PAIRS(8u);
const Pair<int8_t> pairs8s[] = PAIRS(8s);
const Pair<uint16_t> pairs16u[] = PAIRS(16u);
const Pair<float> pairs32f[] = PAIRS(32f);

// A plain norm, with the arguments of the C3CMR member of a three-channel image or the C1MR member of a plain one.
template <class T>
auto plain(const Single<T>& m, int channels) {
  return reference::member<T>(channels, [=](const Pixels<T>& p, double* value) {
    const double n = reference::norm(m.kind, p, [&](int x, int y) { return magnitude(p.at(x, y)); });
    *value = m.kind == Kind::l2 ? sqrt(n) : n;
  });
}
template <class T>
auto plain(const Pair<T>& m, int channels) {
  return [=](const T* src1, int32_t step1, const T* src2, int32_t step2, auto... rest) {
    const auto ofPair = [=](const Pixels<T>& p, double* value) {
      Pixels<T> q = p;
      q.src = src2, q.srcStep = step2;
      double n = reference::norm(m.kind, p, [&](int x, int y) { return magnitude(p.at(x, y), q.at(x, y)); });
      if (m.relative) {
        const double d = reference::norm(m.kind, q, [&](int x, int y) { return magnitude(q.at(x, y)); });
        n = d != 0 ? n / d : n == 0 ? NAN : n > 0 ? INFINITY : -INFINITY;
      }
      *value = m.kind == Kind::l2 ? sqrt(n) : n;
    };
    reference::member<T>(channels, ofPair)(src1, step1, rest...);
  };
}

// sweep() wants success; a warning of a zero denominator is told by the value.
template <class F>
auto warned(F f) {
  return [f](auto... arguments) {
    const OrvStatus status = f(arguments...);
    return status == orvStatusDivByZeroWarn ? orvStatusOk : status;
  };
}

// The two members of a norm: `images` sources, the mask, the region, the result.
template <class T, class Norm, class... Source>
void check(const Norm& m, Shape threaded, double tolerance, bool early, const Source&... source) {
  const Result<double> result(1, tolerance);
  constexpr int images = sizeof...(source);
  sweep(m.name, warned(m.masked), plain(m, 1), threaded, source(1)..., Mask(), Roi(), result);
  sweep(m.name, warned(m.channel), plain(m, 3), threaded, source(3)..., Mask(), Roi(), Coi(), result);
  walkArguments(m.name, m.masked, orderOfChecks<T>(images, true, images + 2, 0, early), source(1)..., Mask(), Roi(),
                result);
  walkArguments(m.name, m.channel, orderOfChecks<T>(images, true, images + 3, images + 2), source(3)..., Mask(), Roi(),
                Coi(), result);
}
template <class T>
void checkAll(const Single<T> (&singles)[3], const Pair<T> (&pairs)[6], Shape threaded, double tolerance) {
  const auto in = [](int channels) { return In<T>(channels); };
  // The alignment of a float image is checked before the step of its mask in one case.
  for (const auto& m : singles) check<T>(m, threaded, tolerance, reference::isFloat<T> && m.kind == Kind::l2, in);
  for (const auto& m : pairs) check<T>(m, threaded, tolerance, false, in, in);
}

// A large image of one extreme value against its opposite: sums beyond 32 bits are exact.
template <class T>
void extremes(const Single<T> (&singles)[3], const Pair<T> (&pairs)[6], T value, T other) {
  const OrvSize roi{8192, quick() ? 600 : 4200};
  const double n = (double)roi.width * roi.height, most = fabs((double)value), far = fabs((double)value - other);
  const std::vector<T> image((size_t)n, value), second((size_t)n, other);
  const std::vector<uint8_t> mask(image.size(), 1);
  const int32_t step = roi.width * (int32_t)sizeof(T);
  const auto expected = [&](Kind kind, double d) {
    return kind == Kind::inf ? d : kind == Kind::l1 ? n * d : sqrt(n * d * d);
  };
  forEachSetting(true, [&] {
    double v = 0;
    for (const Single<T>& m : singles) {
      m.masked(image.data(), step, mask.data(), roi.width, roi, &v);
      CHECK(v == expected(m.kind, most), "%s: %.17g", m.name, v);
    }
    for (const Pair<T>& m : pairs) {
      if (m.relative) continue;
      m.masked(image.data(), step, second.data(), step, mask.data(), roi.width, roi, &v);
      CHECK(v == expected(m.kind, far), "%s: %.17g", m.name, v);
    }
  });
}

}  // namespace

TEST(integers_are_exact) {
  checkAll(singles8u, pairs8u, threadedShape(), 0);
  checkAll(singles8s, pairs8s, threadedShape(), 0);
  checkAll(singles16u, pairs16u, threadedShape(), 0);
}

// On one thread the lanes are fixed. Bands of a team round differently: a lane of a quarter million sums of single
// precision may be off by its square root in units of 2^-24, or by far more where the sums run one way.
TEST(floats) {
  checkAll(singles32f, pairs32f, {0, 0}, 0);
  if (!quick()) checkAll(singles32f, pairs32f, threadedShape(), 1e-3);
}

TEST(extreme_images) {
  extremes<uint8_t>(singles8u, pairs8u, 255, 0);
  extremes<int8_t>(singles8s, pairs8s, -128, 127);
  extremes<uint16_t>(singles16u, pairs16u, 65535, 0);
}

// Infinities count as any value, and only under the mask.
TEST(infinities) {
  const float image[] = {1, -INFINITY, 3, INFINITY, 2}, zero[5] = {};
  const uint8_t with[] = {1, 1, 1, 0, 1}, without[] = {1, 0, 1, 0, 1};
  forEachSetting(false, [&] {
    for (const Single<float>& m : singles32f) {
      double v = 0;
      m.masked(image, 20, with, 5, {5, 1}, &v);
      CHECK(v == INFINITY, "%s: %g", m.name, v);
      m.masked(image, 20, without, 5, {5, 1}, &v);
      CHECK(v == (m.kind == Kind::inf ? 3 : m.kind == Kind::l1 ? 6 : sqrt(14.0)), "%s: %g", m.name, v);
    }
    double v = 0;
    orviNormDiff_L1_32f_C1MR(image, 20, zero, 20, without, 5, {5, 1}, &v);
    CHECK(v == 6);
  });
}

// A zero denominator: NaN for 0 / 0, else infinity, and a warning.
TEST(zero_denominators) {
  const uint8_t some[] = {0, 5, 0}, none[3] = {}, all[] = {1, 1, 1}, ends[] = {1, 0, 1};
  const auto walk = [&](auto& pairs, auto* numerator, auto* zeros, int size) {
    for (const auto& m : pairs) {
      if (!m.relative) continue;
      double v = 0;
      for (const uint8_t* mask : {all, ends, none}) {
        const auto* second = mask == none ? numerator : zeros;
        const OrvStatus status = m.masked(numerator, 3 * size, second, 3 * size, mask, 3, {3, 1}, &v);
        CHECK(status == orvStatusDivByZeroWarn && (mask == all ? v == INFINITY : v != v), "%s: %g", m.name, v);
      }
    }
  };
  walk(pairs8u, some, none, 1);
  const float someFloats[] = {0, 5, 0}, noFloats[3] = {};
  walk(pairs32f, someFloats, noFloats, 4);
}

// Norms, norms of differences and relative norms.
// One body serves both variants.
#include "statistics_cases.h"

using namespace test;
using reference::Kind;
using reference::magnitude;
using reference::Pixels;

namespace {

// A norm of an element type, of one image or, with the arguments of a second image, of two.
template <class T, class... Second>
struct Norm {
  const char* name;
  Kind kind;
  bool relative;
  OrvStatus (*masked)(const T*, int32_t, Second..., const uint8_t*, int32_t, OrvSize, double*);
  OrvStatus (*channel)(const T*, int32_t, Second..., const uint8_t*, int32_t, OrvSize, int32_t, double*);
};
#define ORDERS(norm, tag, relative)                                                       \
  ORDER(norm##_Inf, tag, Kind::inf, relative), ORDER(norm##_L1, tag, Kind::l1, relative), \
      ORDER(norm##_L2, tag, Kind::l2, relative)
#define ORDER(norm, tag, kind, relative) \
  { #norm "_" #tag, kind, relative, orvi##norm##_##tag##_C1MR, orvi##norm##_##tag##_C3CMR }
template <class T>
struct Norms {
  Norm<T> singles[3];
  Norm<T, const T*, int32_t> pairs[6];
};
#define NORMS(tag)                                                                           \
  {                                                                                          \
    {ORDERS(Norm, tag, false)}, { ORDERS(NormDiff, tag, false), ORDERS(NormRel, tag, true) } \
  }
const Norms<uint8_t> of8u = NORMS(8u);
const Norms<int8_t> of8s = NORMS(8s);
const Norms<uint16_t> of16u = NORMS(16u);
const Norms<float> of32f = NORMS(32f);

// A plain norm, with the arguments of the C3CMR member of a three-channel image or the C1MR member of a plain one.
template <class T, class... Second>
auto plain(const Norm<T, Second...>& m, int channels) {
  return [=](const T* src, int32_t step, Second... second, auto... rest) {
    const auto norm = [=](const Pixels<T>& p, double* value) {
      Pixels<T> q = p;
      if constexpr (sizeof...(second) > 0) std::tie(q.src, q.srcStep) = std::tuple(second...);
      const auto d = [&](int x, int y) { return magnitude(p.at(x, y), sizeof...(second) ? q.at(x, y) : T(0)); };
      double n = reference::norm(m.kind, p, d);
      if (m.relative) {
        const double other = reference::norm(m.kind, q, [&](int x, int y) { return magnitude(q.at(x, y)); });
        n = other != 0 ? n / other : n == 0 ? NAN : n > 0 ? INFINITY : -INFINITY;
      }
      *value = m.kind == Kind::l2 ? sqrt(n) : n;
    };
    reference::member<T>(channels, norm)(src, step, rest...);
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
void checkAll(const Norms<T>& norms, Shape threaded, double tolerance) {
  const auto in = [](int channels) { return In<T>(channels); };
  // The alignment of a float image is checked before the step of its mask in one case.
  for (const auto& m : norms.singles) check<T>(m, threaded, tolerance, reference::isFloat<T> && m.kind == Kind::l2, in);
  for (const auto& m : norms.pairs) check<T>(m, threaded, tolerance, false, in, in);
}

// A large image of one extreme value against its opposite: sums beyond 32 bits are exact.
template <class T>
void extremes(const Norms<T>& norms, T value, T other) {
  const OrvSize roi{8192, quick() ? 600 : 4200};
  const double n = (double)roi.width * roi.height;
  const std::vector<T> image((size_t)n, value), second((size_t)n, other);
  const std::vector<uint8_t> mask(image.size(), 1);
  const int32_t step = roi.width * (int32_t)sizeof(T);
  const auto walk = [&](const auto& m, double d, auto... source) {
    double v = 0;
    m.masked(source..., mask.data(), roi.width, roi, &v);
    CHECK(v == (m.kind == Kind::inf ? d : m.kind == Kind::l1 ? n * d : sqrt(n * d * d)), "%s: %.17g", m.name, v);
  };
  forEachSetting(true, [&] {
    for (const auto& m : norms.singles) walk(m, fabs((double)value), image.data(), step);
    for (const auto& m : norms.pairs)
      if (!m.relative) walk(m, fabs((double)value - other), image.data(), step, second.data(), step);
  });
}

}  // namespace

TEST(integers_are_exact) {
  checkAll(of8u, threadedShape(), 0);
  checkAll(of8s, threadedShape(), 0);
  checkAll(of16u, threadedShape(), 0);
}

// On one thread the lanes are fixed. Bands of a team round differently: a lane of a quarter million sums of single
// precision may be off by its square root in units of 2^-24, or by far more where the sums run one way.
TEST(floats) {
  checkAll(of32f, {0, 0}, 0);
  if (!quick()) checkAll(of32f, threadedShape(), 1e-3);
}

TEST(extreme_images) {
  extremes<uint8_t>(of8u, 255, 0);
  extremes<int8_t>(of8s, -128, 127);
  extremes<uint16_t>(of16u, 65535, 0);
}

// Infinities count as any value, and only under the mask.
TEST(infinities) {
  const float image[] = {1, -INFINITY, 3, INFINITY, 2}, zero[5] = {};
  const uint8_t with[] = {1, 1, 1, 0, 1}, without[] = {1, 0, 1, 0, 1};
  forEachSetting(false, [&] {
    for (const auto& m : of32f.singles) {
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
  const uint8_t all[] = {1, 1, 1}, ends[] = {1, 0, 1}, none[3] = {};
  const auto walk = [&](const auto& norms, const auto& some, const auto& zeros) {
    for (const auto& m : norms.pairs)
      for (const uint8_t* mask : {all, ends, none}) {
        if (!m.relative) continue;
        double v = 0;
        const auto* second = mask == none ? some : zeros;
        const OrvStatus status = m.masked(some, sizeof some, second, sizeof some, mask, 3, {3, 1}, &v);
        CHECK(status == orvStatusDivByZeroWarn && (mask == all ? v == INFINITY : v != v), "%s: %g", m.name, v);
      }
  };
  const uint8_t some[] = {0, 5, 0}, zeros[3] = {};
  const float someFloats[] = {0, 5, 0}, noFloats[3] = {};
  walk(of8u, some, zeros);
  walk(of32f, someFloats, noFloats);
}

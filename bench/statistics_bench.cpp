// Means, deviations, extrema and norms.
#include "bench.h"

using bench::Frame;

namespace {

template <class T>
using Masked = OrvStatus (*)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, double*);
template <class T>
using MaskedChannel = OrvStatus (*)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, double*);

// A result of one number under a mask: means and norms.
template <class T>
bool addMasked(const std::string& name, Masked<T> f, MaskedChannel<T> channel) {
  bench::add(name + "_C1MR", {sizeof(T), bench::threaded}, [=](const Frame& at) {
    auto a = at.image<T>();
    auto m = at.mask();
    return [=] {
      double value;
      f(a.data, a.step, m.data, m.step, at.roi, &value);
    };
  });
  return bench::add(name + "_C3CMR", {3 * sizeof(T)}, [=](const Frame& at) {
    auto a = at.image<T>(3);
    auto m = at.mask();
    return [=] {
      double value;
      channel(a.data, a.step, m.data, m.step, at.roi, 2, &value);
    };
  });
}

// The same of two images.
template <class T, class F, class G>
bool addPair(const std::string& name, F f, G channel) {
  bench::add(name + "_C1MR", {sizeof(T)}, [=](const Frame& at) {
    auto a = at.image<T>(), b = at.image<T>(1, 0, 100);
    auto m = at.mask();
    return [=] {
      double value;
      f(a.data, a.step, b.data, b.step, m.data, m.step, at.roi, &value);
    };
  });
  return bench::add(name + "_C3CMR", {3 * sizeof(T)}, [=](const Frame& at) {
    auto a = at.image<T>(3), b = at.image<T>(3, 0, 100);
    auto m = at.mask();
    return [=] {
      double value;
      channel(a.data, a.step, b.data, b.step, m.data, m.step, at.roi, 2, &value);
    };
  });
}

// Several results, with and without a mask: deviations and extrema. `results` is a callable that adds them.
template <class T, class Plain, class Channel, class OfMask, class OfMaskedChannel>
bool addForms(const std::string& name, Plain plain, Channel channel, OfMask masked, OfMaskedChannel maskedChannel) {
  bench::add(name + "_C1R", {sizeof(T), bench::threaded}, [=](const Frame& at) {
    auto a = at.image<T>();
    return [=] { plain(a.data, a.step, at.roi); };
  });
  bench::add(name + "_C3CR", {3 * sizeof(T)}, [=](const Frame& at) {
    auto a = at.image<T>(3);
    return [=] { channel(a.data, a.step, at.roi, 2); };
  });
  bench::add(name + "_C1MR", {sizeof(T)}, [=](const Frame& at) {
    auto a = at.image<T>();
    auto m = at.mask();
    return [=] { masked(a.data, a.step, m.data, m.step, at.roi); };
  });
  return bench::add(name + "_C3CMR", {3 * sizeof(T)}, [=](const Frame& at) {
    auto a = at.image<T>(3);
    auto m = at.mask();
    return [=] { maskedChannel(a.data, a.step, m.data, m.step, at.roi, 2); };
  });
}

template <class F>
auto withMoments(F f) {
  return [f](auto... arguments) {
    double mean, stdDev;
    f(arguments..., &mean, &stdDev);
  };
}
template <class F>
auto withExtrema(F f) {
  return [f](auto... arguments) {
    float low, high;
    OrvPoint p, q;
    f(arguments..., &low, &high, &p, &q);
  };
}

#define NORM(name, tag, T) addMasked<T>("orvi" #name "_" #tag, orvi##name##_##tag##_C1MR, orvi##name##_##tag##_C3CMR)
#define PAIR(name, tag, T) addPair<T>("orvi" #name "_" #tag, orvi##name##_##tag##_C1MR, orvi##name##_##tag##_C3CMR)
#define FORMS(name, tag, T, with)                                                                     \
  addForms<T>("orvi" #name "_" #tag, with(orvi##name##_##tag##_C1R), with(orvi##name##_##tag##_C3CR), \
              with(orvi##name##_##tag##_C1MR), with(orvi##name##_##tag##_C3CMR))
#define TYPE(tag, T)                                                                                            \
  NORM(Mean, tag, T) && FORMS(Mean_StdDev, tag, T, withMoments) && FORMS(MinMaxIndx, tag, T, withExtrema) &&    \
      NORM(Norm_Inf, tag, T) && NORM(Norm_L1, tag, T) && NORM(Norm_L2, tag, T) && PAIR(NormDiff_Inf, tag, T) && \
      PAIR(NormDiff_L1, tag, T) && PAIR(NormDiff_L2, tag, T) && PAIR(NormRel_Inf, tag, T) &&                    \
      PAIR(NormRel_L1, tag, T) && PAIR(NormRel_L2, tag, T)

const bool lines = (TYPE(8u, uint8_t)) && (TYPE(8s, int8_t)) && (TYPE(16u, uint16_t)) && (TYPE(32f, float));

}  // namespace

// Means and standard deviations.
//
// Integers are summed exactly. Signed bytes are summed as x + 128 and corrected at the end: with u = x + 128 over n
// pixels, sum(x) = sum(u) - 128 n and sum(x^2) = sum(u^2) - 256 sum(u) + 2^14 n.
// Floats are summed in sixteen 64-bit lanes, column x of a row in lane x mod 16, joined from lane 0 up at the end of a
// band: the same bits at every vector width.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "arith/mean.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "arith/reduction.h"
#include "arith/strips.h"
#include "arith/totals.h"

#ifndef ORV_MOMENTS
#define ORV_MOMENTS
namespace ORV_VARIANT {

// The pixels taken, their sum and the sum of their squares; of signed bytes, of x + 128.
template <class T>
struct Moments {
  using Sum = std::conditional_t<std::is_same<T, float>::value, double, uint64_t>;
  uint64_t count;
  Sum sum, squares;
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

using Double = hn::ScalableTag<double>;
constexpr ptrdiff_t kDoubleLanes = 16;
// Vectors of 64-bit lanes that make up sixteen, and the vectors of floats that fill them.
constexpr int kDoubleVectors = kDoubleLanes * 8 / HWY_MAX_BYTES, kFloatVectors = kDoubleVectors / 2;

// The two halves of a vector of floats in 64-bit lanes.
HWY_INLINE hn::VFromD<Double> LowerWide(hn::VFromD<Tag<float>> v) {
  return hn::PromoteTo(Double(), hn::LowerHalf(hn::Half<Tag<float>>(), v));
}
HWY_INLINE hn::VFromD<Double> UpperWide(hn::VFromD<Tag<float>> v) {
  return hn::PromoteTo(Double(), hn::UpperHalf(hn::Half<Tag<float>>(), v));
}

// Zeroes 64-bit values where the mask of their floats is not set.
HWY_INLINE hn::VFromD<Double> KeptLower(AllLanes, hn::VFromD<Double> v) { return v; }
HWY_INLINE hn::VFromD<Double> KeptUpper(AllLanes, hn::VFromD<Double> v) { return v; }
using Mask32 = hn::MFromD<Tag<float>>;
using Mask64 = hn::MFromD<Double>;
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE hn::VFromD<Double> KeptLower(Mask32 keep, hn::VFromD<Double> v) {
  return hn::IfThenElseZero(Mask64{(__mmask8)keep.raw}, v);
}
HWY_INLINE hn::VFromD<Double> KeptUpper(Mask32 keep, hn::VFromD<Double> v) {
  return hn::IfThenElseZero(Mask64{(__mmask8)(keep.raw >> 8)}, v);
}
#else
// Each lane of the mask twice over.
template <class Half>
HWY_INLINE hn::VFromD<Double> Doubled(Half lanes) {
#if HWY_TARGET == HWY_SSSE3
  return hn::VFromD<Double>{_mm_castps_pd(_mm_unpacklo_ps(lanes.raw, lanes.raw))};
#else
  const auto bits = hn::BitCast(hn::Half<hn::ScalableTag<int32_t>>(), lanes);
  return hn::BitCast(Double(), hn::PromoteTo(hn::ScalableTag<int64_t>(), bits));
#endif
}
HWY_INLINE hn::VFromD<Double> KeptLower(Mask32 keep, hn::VFromD<Double> v) {
  return hn::And(v, Doubled(hn::LowerHalf(hn::Half<Tag<float>>(), hn::VecFromMask(Tag<float>(), keep))));
}
HWY_INLINE hn::VFromD<Double> KeptUpper(Mask32 keep, hn::VFromD<Double> v) {
  return hn::And(v, Doubled(hn::UpperHalf(hn::Half<Tag<float>>(), hn::VecFromMask(Tag<float>(), keep))));
}
#endif

// Sixteen lanes, and their sum from lane 0 up.
struct DoubleSums {
  hn::VFromD<Double> part[kDoubleVectors];

  HWY_INLINE DoubleSums() {
    for (auto& p : part) p = hn::Zero(Double());
  }
  template <int K>
  HWY_INLINE void Add(hn::VFromD<Double> lower, hn::VFromD<Double> upper) {
    part[2 * K] = hn::Add(part[2 * K], lower);
    part[2 * K + 1] = hn::Add(part[2 * K + 1], upper);
  }
  HWY_INLINE double Total() const {
    alignas(HWY_MAX_BYTES) double lanes[kDoubleLanes];
    for (int k = 0; k < kDoubleVectors; ++k) hn::Store(part[k], Double(), lanes + k * (kDoubleLanes / kDoubleVectors));
    double sum = 0;
    for (const double lane : lanes) sum += lane;
    return sum;
  }
};

template <class T, bool Squares, bool Masked>
HWY_INLINE void Sum(const Sources<T>& s, int32_t rows, Moments<T>* slot) {
  const Tag<T> d;
  Held<Totals<Bits<T>, true, Squares>> held;
  MaskCount taken;
  ForEachStrip<T, false>(
      s, rows, FEED(const Strip<T>& strip) {
        Feed<T, false, Masked>(
            strip, FEED(auto, auto keep, auto v, auto) {
              if constexpr (std::is_same<T, int8_t>::value) v = hn::Xor(v, hn::Set(d, 0x80));
              held.totals.Add(Kept(d, keep, v));
            });
        held.Tally(strip.count, kLanes<T>);
        if constexpr (Masked) taken.Add(strip.mask, strip.count);
      });
  held.Flush();
  slot->count = Masked ? taken.Total() : (uint64_t)s.width * (uint64_t)rows;
  slot->sum = held.totals.sum;
  slot->squares = held.totals.squares;
}

template <class T, bool Squares, bool Masked>
HWY_INLINE void Sum(const Sources<float>& s, int32_t rows, Moments<float>* slot) {
  const Tag<float> d;
  DoubleSums sums, squares;
  MaskCount taken;
  ForEachStrip<float, false>(
      s, rows, FEED(const Strip<float>& strip) {
        Feed<float, false, Masked, kFloatVectors>(
            strip, FEED(auto place, auto keep, auto v, auto) {
              const auto kept = Kept(d, keep, v);
              const auto lo = LowerWide(kept), hi = UpperWide(kept);
              sums.template Add<decltype(place)::value>(lo, hi);
              if constexpr (Squares) squares.template Add<decltype(place)::value>(hn::Mul(lo, lo), hn::Mul(hi, hi));
            });
        if constexpr (Masked) taken.Add(strip.mask, strip.count);
      });
  slot->count = Masked ? taken.Total() : (uint64_t)s.width * (uint64_t)rows;
  slot->sum = sums.Total();
  slot->squares = squares.Total();
}

// Means are always taken under a mask.
template <class T>
void MaskedSum(const Sources<T>& s, int32_t rows, Moments<T>* slot) {
  Sum<T, false, true>(s, rows, slot);
}

template <class T>
void SumAndSquares(const Sources<T>& s, int32_t rows, Moments<T>* slot) {
  if (s.mask.data) Sum<T, true, true>(s, rows, slot);
  else Sum<T, true, false>(s, rows, slot);
}

// The sum of (x - mean)^2.
template <bool Masked>
HWY_INLINE double Deviation(const Sources<float>& s, int32_t rows, double mean) {
  const auto m = hn::Set(Double(), mean);
  DoubleSums sums;
  ForEachStrip<float, false>(
      s, rows, FEED(const Strip<float>& strip) {
        Feed<float, false, Masked, kFloatVectors>(
            strip, FEED(auto place, auto keep, auto v, auto) {
              const auto lo = KeptLower(keep, hn::Sub(LowerWide(v), m));
              const auto hi = KeptUpper(keep, hn::Sub(UpperWide(v), m));
              sums.template Add<decltype(place)::value>(hn::Mul(lo, lo), hn::Mul(hi, hi));
            });
      });
  return sums.Total();
}

void SquaredDeviation(const Sources<float>& s, int32_t rows, double mean, double* slot) {
  *slot = s.mask.data ? Deviation<true>(s, rows, mean) : Deviation<false>(s, rows, mean);
}

KERNELS_END

#if HWY_ONCE
#include <math.h>

namespace {

// Exact sums of a whole region; of signed bytes those of x.
template <class T>
struct Exact {
  double count, sum, squares;
};

template <class T>
Exact<T> corrected(const Moments<T>& m) {
  if constexpr (std::is_same<T, int8_t>::value) {
    const int64_t n = (int64_t)m.count, sum = (int64_t)m.sum;
    return {(double)n, (double)(sum - 128 * n), (double)((int64_t)m.squares - 256 * sum + 16384 * n)};
  } else {
    return {(double)m.count, (double)m.sum, (double)m.squares};
  }
}

template <class T, class Kernel>
Exact<T> sumsOf(const Arguments<T>& a, bool threaded, Kernel kernel) {
  const Sources<T> sources = a.sources();
  const auto rows = [&](int32_t first, int32_t count, Moments<T>* slot) { kernel(sources.from(first), count, slot); };
  const auto join = [](Moments<T>* total, const Moments<T>& band) {
    total->count += band.count;
    total->sum += band.sum;
    total->squares += band.squares;
  };
  return corrected(reduceBands(threaded, a.roi.height, Moments<T>{}, rows, join));
}

// The second pass, for floats whose spread is small beside their mean.
double deviationFrom(const Arguments<float>& a, bool threaded, double mean) {
  const Sources<float> sources = a.sources();
  const auto kernel = WIDEST(SquaredDeviation);
  const auto rows = [&](int32_t first, int32_t count, double* slot) { kernel(sources.from(first), count, mean, slot); };
  return reduceBands(threaded, a.roi.height, 0.0, rows, [](double* total, const double& band) { *total += band; });
}

template <class T>
OrvStatus meanOf(const Arguments<T>& a, double* mean) {
  const OrvStatus status = checkArguments(a, mean != nullptr);
  if (status != orvStatusOk) return status;
  const auto s = sumsOf(a, isThreaded({17, 0}, a.roi), WIDEST(MaskedSum<T>));
  *mean = s.count > 0 ? s.sum / s.count : 0.0;
  return orvStatusOk;
}

template <class T>
OrvStatus meanStdDevOf(const Arguments<T>& a, double* mean, double* stdDev, Threshold threshold = {17, 0}) {
  const OrvStatus status = checkArguments(a, true);
  if (status != orvStatusOk) return status;
  const bool threaded = isThreaded(threshold, a.roi);
  const auto s = sumsOf(a, threaded, WIDEST(SumAndSquares<T>));
  const double m = s.count > 0 ? s.sum / s.count : 0.0;
  if (mean) *mean = m;
  if (!stdDev) return orvStatusOk;
  double deviation = s.count > 0 ? sqrt(fabs(s.squares / s.count - m * m)) : 0.0;
  if constexpr (std::is_same<T, float>::value)
    if (0.05 * m * m > deviation * deviation) deviation = sqrt(deviationFrom(a, threaded, m) / s.count);
  *stdDev = deviation;
  return orvStatusOk;
}

}  // namespace

// The six members of an element type; only the plain deviation has a threshold of its own.
#define MEMBERS(tag, T, ...)                                                                                        \
  OrvStatus orviMean_##tag##_C1MR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,             \
                                  OrvSize roiSize, double* mean) {                                                  \
    return meanOf<T>({src, srcStep, mask, maskStep, roiSize}, mean);                                                \
  }                                                                                                                 \
  OrvStatus orviMean_##tag##_C3CMR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,            \
                                   OrvSize roiSize, int32_t coi, double* mean) {                                    \
    return meanOf<T>({src, srcStep, mask, maskStep, roiSize, 3, coi}, mean);                                        \
  }                                                                                                                 \
  OrvStatus orviMean_StdDev_##tag##_C1R(const T* src, int32_t srcStep, OrvSize roiSize, double* mean,               \
                                        double* stdDev) {                                                           \
    return meanStdDevOf<T>(withoutMask(src, srcStep, roiSize), mean, stdDev, Threshold __VA_ARGS__);                \
  }                                                                                                                 \
  OrvStatus orviMean_StdDev_##tag##_C3CR(const T* src, int32_t srcStep, OrvSize roiSize, int32_t coi, double* mean, \
                                         double* stdDev) {                                                          \
    return meanStdDevOf<T>(withoutMask(src, srcStep, roiSize, 3, coi), mean, stdDev);                               \
  }                                                                                                                 \
  OrvStatus orviMean_StdDev_##tag##_C1MR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,      \
                                         OrvSize roiSize, double* mean, double* stdDev) {                           \
    return meanStdDevOf<T>({src, srcStep, mask, maskStep, roiSize}, mean, stdDev);                                  \
  }                                                                                                                 \
  OrvStatus orviMean_StdDev_##tag##_C3CMR(const T* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,     \
                                          OrvSize roiSize, int32_t coi, double* mean, double* stdDev) {             \
    return meanStdDevOf<T>({src, srcStep, mask, maskStep, roiSize, 3, coi}, mean, stdDev);                          \
  }

MEMBERS(8u, uint8_t, {0, 17})
MEMBERS(8s, int8_t, {17, 0})
MEMBERS(16u, uint16_t, {17, 0})
MEMBERS(32f, float, {16, 0})

#endif

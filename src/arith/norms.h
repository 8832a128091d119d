// What the norm families share: magnitudes, their largest or their sum, and the joined result (include after
// core/kernels.h; read once a width).
//
// Theory: |x| and |x - y| of integers are unsigned lanes of the same size, |-128| = 128 and 255 - -0 included, so one
// exact sum serves all integer types. 32f sums keep four lanes of single precision, column x of a row in lane x mod 4,
// at every vector width, joined as (0 + 2) + (1 + 3) at the end of a band.
#include "core/vectors.h"
#include "arith/reduction.h"
#include "arith/strips.h"
#include "arith/totals.h"

#ifndef ORV_NORMS
#define ORV_NORMS
namespace ORV_VARIANT {

enum class NormKind { Inf, L1, L2 };
enum class NormForm { single, difference, relative };

// What a norm measures: the argument of a kernel.
template <class T, NormKind K, NormForm F>
struct NormTask {
  using Element = T;
  using Value = std::conditional_t<std::is_same<T, float>::value, double, uint64_t>;
  static constexpr NormKind kind = K;
  static constexpr bool paired = F != NormForm::single, relative = F == NormForm::relative;
};

// The largest or the sum, before the root; the denominator is that of the second image in relative norms.
template <class Value>
struct NormParts {
  Value numerator, denominator;
};

}  // namespace ORV_VARIANT
#endif

#if defined(ORV_NORMS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_NORMS_TOGGLE
#undef ORV_NORMS_TOGGLE
#else
#define ORV_NORMS_TOGGLE
#endif
KERNELS_BEGIN

template <class T>
HWY_INLINE hn::VFromD<Tag<T>> Magnitude(hn::VFromD<Tag<T>> v) {
  if constexpr (std::is_same<T, int8_t>::value)
    return hn::BitCast(Tag<T>(), hn::Abs(hn::BitCast(hn::ScalableTag<int8_t>(), v)));
  else if constexpr (std::is_same<T, float>::value) return hn::Abs(v);
  else return v;
}

// |a - b|; signed bytes keep their distance when both have the sign bit flipped.
template <class T>
HWY_INLINE hn::VFromD<Tag<T>> Difference(hn::VFromD<Tag<T>> a, hn::VFromD<Tag<T>> b) {
  if constexpr (std::is_same<T, float>::value) {
    return hn::Abs(hn::Sub(a, b));
  } else if constexpr (std::is_same<T, int8_t>::value) {
    const auto sign = hn::Set(Tag<T>(), 0x80);
    return Difference<uint8_t>(hn::Xor(a, sign), hn::Xor(b, sign));
  } else {
    return hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a));
  }
}

// The largest magnitude. The new one is the first operand: a NaN replaces nothing.
template <class B>
struct Peak {
  hn::VFromD<Tag<B>> most;

  HWY_INLINE Peak() : most(Ranked<B>(hn::Zero(Tag<B>()))) {}
  HWY_INLINE void Add(hn::VFromD<Tag<B>> v) { most = Greater(Ranked<B>(v), most); }
  HWY_INLINE void Tally(ptrdiff_t) {}
  HWY_INLINE B Total() { return GreatestLane<B>(most); }
};

template <class B, bool Squares>
struct ExactSum {
  Held<Totals<B, !Squares, Squares>> held;

  HWY_INLINE ExactSum() {}
  HWY_INLINE void Add(hn::VFromD<Tag<B>> v) { held.totals.Add(v); }
  HWY_INLINE void Tally(ptrdiff_t count) { held.Tally(count, kLanes<B>); }
  HWY_INLINE uint64_t Total() {
    held.Flush();
    return Squares ? held.totals.squares : held.totals.sum;
  }
};

template <bool Squares>
struct FourLanes {
  hn::Vec128<float> lanes;

  HWY_INLINE FourLanes() : lanes(hn::Zero(hn::Full128<float>())) {}
  template <class D>
  HWY_INLINE void AddBlocks(D d, hn::VFromD<D> v) {
    if constexpr (hn::MaxLanes(d) == 4) {
      lanes = hn::Add(lanes, v);
    } else {
      const hn::Half<D> half;
      AddBlocks(half, hn::LowerHalf(half, v));
      AddBlocks(half, hn::UpperHalf(half, v));
    }
  }
  HWY_INLINE void Add(hn::VFromD<Tag<float>> v) { AddBlocks(Tag<float>(), Squares ? hn::Mul(v, v) : v); }
  HWY_INLINE void Tally(ptrdiff_t) {}
  HWY_INLINE float Total() {
    return Fold(
        hn::Full128<float>(), lanes, FEED(auto a, auto b) { return hn::Add(a, b); });
  }
};

template <class B, NormKind K>
using Sum =
    std::conditional_t<std::is_same<B, float>::value, FourLanes<K == NormKind::L2>, ExactSum<B, K == NormKind::L2>>;
template <class B, NormKind K>
using Gauge = std::conditional_t<K == NormKind::Inf, Peak<B>, Sum<B, K>>;

template <class Task>
void Norm(const Sources<typename Task::Element>& s, int32_t rows, NormParts<typename Task::Value>* parts) {
  using T = typename Task::Element;
  constexpr bool paired = Task::paired, relative = Task::relative;
  const Tag<T> d;
  Gauge<Bits<T>, Task::kind> numerator, denominator;
  ForEachStrip<T, paired>(
      s, rows, FEED(const Strip<T>& strip) {
        Feed<T, paired, true>(
            strip, FEED(auto, auto keep, auto a, auto b) {
              if constexpr (paired) numerator.Add(Kept(d, keep, Difference<T>(a, b)));
              else numerator.Add(Kept(d, keep, Magnitude<T>(a)));
              if constexpr (relative) denominator.Add(Kept(d, keep, Magnitude<T>(b)));
            });
        numerator.Tally(strip.count);
        if constexpr (relative) denominator.Tally(strip.count);
      });
  parts->numerator = numerator.Total();
  if constexpr (relative) parts->denominator = denominator.Total();
}

KERNELS_END
#endif

#if HWY_ONCE
namespace {

// The parts of a norm over the whole region: bands joined in thread order.
template <class Task, class T>
NormParts<double> normParts(const Arguments<T>& a, Threshold threshold) {
  using Parts = NormParts<typename Task::Value>;
  const Sources<T> sources = a.sources();
  const auto kernel = WIDEST(Norm<Task>);
  const auto rows = [&](int32_t first, int32_t count, Parts* slot) { kernel(sources.from(first), count, slot); };
  const auto join = [](Parts* total, const Parts& band) {
    if (Task::kind != NormKind::Inf) {
      total->numerator += band.numerator;
      total->denominator += band.denominator;
    } else {
      if (band.numerator > total->numerator) total->numerator = band.numerator;
      if (band.denominator > total->denominator) total->denominator = band.denominator;
    }
  };
  const Parts parts = reduceBands(isThreaded(threshold, a.roi), a.roi.height, Parts{}, rows, join);
  return {(double)parts.numerator, (double)parts.denominator};
}

}  // namespace
#endif

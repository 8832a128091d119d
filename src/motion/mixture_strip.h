// Pixels of a Gaussian mixture, a strip at a time (include after core/kernels.h; read once a width).
//
// Nearly all pixels match a mode that stays where it is. They are learnt in vectors, a layer after the other: layer i
// is mode i of all pixels of the strip, laid side by side. Pixels that match none, or whose mode rises, are told apart
// and keep what they have: they are learnt one by one.
//
//   modes of pixel      0: a b c    1: d    2: e f        layer 0: a d e    layer 1: b . f    layer 2: c . .
//
// Layers are tested for a match until all pixels have one; the weights of those below are aged only.
#if defined(ORV_MIXTURE_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_MIXTURE_TOGGLE
#undef ORV_MIXTURE_TOGGLE
#else
#define ORV_MIXTURE_TOGGLE
#endif
#include <string.h>
#include "motion/mixture_pixel.h"
KERNELS_BEGIN

constexpr ptrdiff_t kStrip = 32;  // pixels: whole vectors of every width
constexpr int32_t kLayers = 8;    // pixels with more modes are learnt by themselves

// All lanes are floats, counts and flags (0 or 1) too. `open`: hasn't matched yet; `lone`: is to be learnt by itself.
// `modes` and `means` are one layer, laid out as in memory.
struct MixtureStrip {
  alignas(64) uint8_t x[3][kStrip];
  alignas(64) float kept[kStrip], sum[kStrip];  // modes to look at; sum of their weights
  alignas(64) float open[kStrip], background[kStrip], lone[kStrip];
  alignas(64) float weight[kLayers][kStrip], variance[kLayers][kStrip], mean[kLayers][3][kStrip];
  alignas(64) MixtureMode modes[kStrip];
  alignas(64) MixtureMean means[kStrip];
};

// The strip in vectors.
#define EACH_VECTOR(d, j)         \
  const hn::ScalableTag<float> d; \
  for (ptrdiff_t j = 0; j < kStrip; j += (ptrdiff_t)hn::Lanes(d))

// The same in four lanes: what turns pixels' lists into layers, and back, is cheapest within blocks of 16 bytes.
#define EACH_BLOCK(d, j)          \
  const hn::FixedTag<float, 4> d; \
  for (ptrdiff_t j = 0; j < kStrip; j += 4)

template <class D>
HWY_INLINE hn::Vec<D> FromBytes(D d, const uint8_t* p) {
  return hn::ConvertTo(d, hn::PromoteTo(hn::Rebind<int32_t, D>(), hn::LoadU(hn::Rebind<uint8_t, D>(), p)));
}

// Layer i out of the lists of n pixels.
HWY_INLINE void CollectLayer(MixtureStrip& s, int32_t i, const MixtureMode* modes, const MixtureMean* means,
                             ptrdiff_t gauss, ptrdiff_t n) {
  for (ptrdiff_t j = 0; j < n; ++j, modes += gauss) s.modes[j] = *modes;
  for (ptrdiff_t j = 0; j < n; ++j, means += gauss) s.means[j] = *means;
  EACH_BLOCK(d, j) {
    hn::Vec<decltype(d)> a, b, c;
    hn::LoadInterleaved2(d, &s.modes[j].weight, a, b);
    hn::Store(a, d, s.weight[i] + j), hn::Store(b, d, s.variance[i] + j);
    hn::LoadInterleaved3(d, s.means[j].of, a, b, c);
    hn::Store(a, d, s.mean[i][0] + j), hn::Store(b, d, s.mean[i][1] + j), hn::Store(c, d, s.mean[i][2] + j);
  }
}

// Ages the weights of layer i; where the pixel hasn't matched yet, tests the mode, and draws it if it matches.
template <bool Test>
HWY_INLINE void LearnLayer(const MixtureFrame& f, MixtureStrip& s, int32_t i) {
  EACH_VECTOR(d, j) {
    const auto zero = hn::Zero(d), one = hn::Set(d, 1.f), prune = hn::Set(d, f.prune);
    const auto old = hn::Load(d, s.weight[i] + j), kept = hn::Load(d, s.kept + j), sum = hn::Load(d, s.sum + j);
    const auto active = hn::Gt(kept, hn::Set(d, (float)i));
    auto weight = hn::Sub(hn::Mul(old, hn::Set(d, f.keep)), prune);
    if constexpr (Test) {
      float *const mean0 = s.mean[i][0] + j, *const mean1 = s.mean[i][1] + j, *const mean2 = s.mean[i][2] + j;
      const auto variance = hn::Load(d, s.variance[i] + j), open = hn::Load(d, s.open + j);
      const auto asked = hn::And(active, hn::Ne(open, zero));
      const auto m0 = hn::Load(d, mean0), m1 = hn::Load(d, mean1), m2 = hn::Load(d, mean2);
      const auto d0 = hn::Sub(m0, FromBytes(d, s.x[0] + j)), d1 = hn::Sub(m1, FromBytes(d, s.x[1] + j)),
                 d2 = hn::Sub(m2, FromBytes(d, s.x[2] + j));
      const auto distance = hn::Add(hn::Add(hn::Mul(d0, d0), hn::Mul(d1, d1)), hn::Mul(d2, d2));
      const auto near =
          hn::And(hn::Lt(sum, hn::Set(d, f.bgRatio)), hn::Gt(hn::Mul(hn::Set(d, f.varThreshold), variance), distance));
      hn::Store(hn::IfThenElse(hn::And(asked, near), one, hn::Load(d, s.background + j)), d, s.background + j);
      const auto hit = hn::And(asked, hn::Gt(hn::Mul(hn::Set(d, f.genThreshold), variance), distance));
      hn::Store(hn::IfThenElse(hit, zero, open), d, s.open + j);
      const auto rate = hn::Set(d, f.rate), grown = hn::Add(weight, rate);
      const auto k = hn::IfThenElse(hn::Eq(grown, zero), zero, hn::Div(rate, grown));
      hn::Store(hn::IfThenElse(hit, hn::Sub(m0, hn::Mul(k, d0)), m0), d, mean0);
      hn::Store(hn::IfThenElse(hit, hn::Sub(m1, hn::Mul(k, d1)), m1), d, mean1);
      hn::Store(hn::IfThenElse(hit, hn::Sub(m2, hn::Mul(k, d2)), m2), d, mean2);
      const auto v = hn::Add(variance, hn::Mul(hn::Sub(distance, variance), k));
      const auto limited = hn::Min(hn::Max(v, hn::Set(d, f.varMin)), hn::Set(d, f.varMax));
      hn::Store(hn::IfThenElse(hit, limited, variance), d, s.variance[i] + j);
      weight = hn::IfThenElse(hit, grown, weight);
      if (i > 0) {
        const auto rises = hn::AndNot(hn::Gt(hn::Load(d, s.weight[i - 1] + j), weight), hit);
        hn::Store(hn::IfThenElse(rises, one, hn::Load(d, s.lone + j)), d, s.lone + j);
      }
    }
    const auto pruned = hn::And(active, hn::Gt(prune, weight));
    weight = hn::IfThenElse(pruned, zero, weight);
    hn::Store(hn::IfThenElse(pruned, hn::Sub(kept, one), kept), d, s.kept + j);
    hn::Store(hn::IfThenElse(active, weight, old), d, s.weight[i] + j);
    hn::Store(hn::IfThenElse(active, hn::Add(sum, weight), sum), d, s.sum + j);
  }
}

// Divides the weights of layer i by their pixel's sum.
HWY_INLINE void DivideLayer(MixtureStrip& s, int32_t i) {
  EACH_VECTOR(d, j) {
    const auto sum = hn::Load(d, s.sum + j), weight = hn::Load(d, s.weight[i] + j);
    const auto divides = hn::AndNot(hn::Eq(sum, hn::Zero(d)), hn::Gt(hn::Load(d, s.kept + j), hn::Set(d, (float)i)));
    hn::Store(hn::IfThenElse(divides, hn::Div(weight, sum), weight), d, s.weight[i] + j);
  }
}

// Whether a pixel has more modes to look at than `layers`, and whether one that has hasn't matched yet.
struct Rest {
  bool any, open;
};
HWY_INLINE Rest RestBeyond(const MixtureStrip& s, int32_t layers) {
  const hn::ScalableTag<float> tag;
  auto any = hn::Zero(tag), open = hn::Zero(tag);
  EACH_VECTOR(d, j) {
    const auto more = hn::Gt(hn::Load(d, s.kept + j), hn::Set(d, (float)layers));
    any = hn::Max(any, hn::IfThenElseZero(more, hn::Set(d, 1.f)));
    open = hn::Max(open, hn::IfThenElseZero(more, hn::Load(d, s.open + j)));
  }
  return {!hn::AllTrue(tag, hn::Eq(any, hn::Zero(tag))), !hn::AllTrue(tag, hn::Eq(open, hn::Zero(tag)))};
}

// The start of a strip of n pixels.
HWY_INLINE void StartStrip(const MixtureFrame& f, MixtureStrip& s, const uint8_t* x, const uint8_t* counts,
                           ptrdiff_t n) {
  const auto most = (float)(f.numGauss < kLayers ? f.numGauss : kLayers);
  if (n == kStrip) {
    const hn::FixedTag<uint8_t, 16> bytes;
    for (ptrdiff_t j = 0; j < kStrip; j += 16) {
      hn::Vec<decltype(bytes)> a, b, c;
      hn::LoadInterleaved3(bytes, x + 3 * j, a, b, c);
      hn::Store(a, bytes, s.x[0] + j), hn::Store(b, bytes, s.x[1] + j), hn::Store(c, bytes, s.x[2] + j);
    }
    EACH_VECTOR(d, j) { hn::Store(FromBytes(d, counts + j), d, s.kept + j); }
  } else {
    for (ptrdiff_t j = 0; j < kStrip; ++j) s.kept[j] = 0;
    for (ptrdiff_t j = 0; j < n; ++j) {
      for (int c = 0; c < 3; ++c) s.x[c][j] = x[3 * j + c];
      s.kept[j] = counts[j];
    }
  }
  EACH_VECTOR(d, j) {
    const auto zero = hn::Zero(d), kept = hn::Load(d, s.kept + j);
    hn::Store(hn::IfThenElseZero(hn::Le(kept, hn::Set(d, most)), kept), d, s.kept + j);
    hn::Store(zero, d, s.sum + j), hn::Store(zero, d, s.background + j), hn::Store(zero, d, s.lone + j);
    hn::Store(hn::Set(d, 1.f), d, s.open + j);
  }
}

// The layers that a strip went through, and how many of them were tested.
struct Layers {
  int32_t all, tested;
};

// Learns n pixels, at most kStrip, into the strip.
HWY_INLINE Layers LearnStrip(const MixtureFrame& f, MixtureStrip& s, MixturePixel p, ptrdiff_t n) {
  Layers layers{0, 0};
  for (Rest rest{true, true}; rest.any; rest = RestBeyond(s, layers.all)) {
    const int32_t i = layers.all++;
    if (rest.open) {
      layers.tested = layers.all;
      CollectLayer(s, i, p.modes + i, p.means + i, f.numGauss, n);
      LearnLayer<true>(f, s, i);
    } else {
      for (ptrdiff_t j = 0; j < n; ++j) s.weight[i][j] = p.modes[j * f.numGauss + i].weight;
      LearnLayer<false>(f, s, i);
    }
  }
  for (int32_t i = 0; i < layers.all; ++i) DivideLayer(s, i);
  EACH_VECTOR(d, j) { hn::Store(hn::Max(hn::Load(d, s.open + j), hn::Load(d, s.lone + j)), d, s.lone + j); }
  return layers;
}

// Pixel j of the strip as it is in memory, where it was learnt by itself.
HWY_INLINE void TakeBack(MixtureStrip& s, Layers layers, MixturePixel p, ptrdiff_t j) {
  for (int32_t i = 0; i < layers.all; ++i) s.weight[i][j] = p.modes[i].weight;
  for (int32_t i = 0; i < layers.tested; ++i) {
    s.variance[i][j] = p.modes[i].variance;
    for (int c = 0; c < 3; ++c) s.mean[i][c][j] = p.means[i].of[c];
  }
}

// Puts the layers back into the pixels' lists.
HWY_INLINE void PutBack(MixtureStrip& s, Layers layers, MixturePixel p, ptrdiff_t gauss, ptrdiff_t n) {
  for (int32_t i = 0; i < layers.tested; ++i) {
    EACH_BLOCK(d, j) {
      hn::StoreInterleaved2(hn::Load(d, s.weight[i] + j), hn::Load(d, s.variance[i] + j), d, &s.modes[j].weight);
      hn::StoreInterleaved3(hn::Load(d, s.mean[i][0] + j), hn::Load(d, s.mean[i][1] + j), hn::Load(d, s.mean[i][2] + j),
                            d, s.means[j].of);
    }
    MixtureMode* mode = p.modes + i;
    for (ptrdiff_t j = 0; j < n; ++j, mode += gauss) *mode = s.modes[j];
    MixtureMean* mean = p.means + i;
    for (ptrdiff_t j = 0; j < n; ++j, mean += gauss) *mean = s.means[j];
  }
  for (int32_t i = layers.tested; i < layers.all; ++i)
    for (ptrdiff_t j = 0; j < n; ++j) p.modes[j * gauss + i].weight = s.weight[i][j];
}

// Bit j tells whether lane j of a row of the strip isn't 0.
HWY_INLINE uint32_t Bits(const float* flags) {
  static_assert(kStrip == 32);
  uint32_t bits = 0;
  EACH_VECTOR(d, j) {
    uint8_t bytes[8] = {};
    hn::StoreMaskBits(d, hn::Ne(hn::Load(d, flags + j), hn::Zero(d)), bytes);
    uint32_t some;
    memcpy(&some, bytes, 4);
    bits |= some << j;
  }
  return bits;
}

// The foreground as bytes of 0 and 255.
HWY_INLINE void ForegroundBytes(const MixtureStrip& s, uint8_t* dst) {
  EACH_VECTOR(d, j) {
    const hn::Rebind<int32_t, decltype(d)> whole;
    const hn::Rebind<uint8_t, decltype(d)> bytes;
    const auto foreground = hn::Eq(hn::Load(d, s.background + j), hn::Zero(d));
    const auto value = hn::IfThenElseZero(foreground, hn::Set(d, 255.f));
    hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(whole, value)), bytes, dst + j);
  }
}
#undef EACH_VECTOR
#undef EACH_BLOCK

KERNELS_END
#endif

// The counted mixture: five Gaussians a pixel, learnt at rates that fall with the number of hits.
// One body serves both variants.
//
// Theory of operation. A pixel's Gaussians stand in the order of weight / deviation, and almost every value lies in the
// first one or two. Those that nothing has been learnt into stand last, all alike: no weight, no key, nothing to
// update. So a pixel is worked on as far as its Gaussians are in use, and its memory is touched so far.
//
//      in use: hits or weight          not in use: {0, 0, 12.5, 0}
//   [ g0 | g1 | ... | g(used-1) ][ ... | g4 ]
//     ^ largest key
//
// A value that lies in none restarts the last Gaussian, which then moves up past all that are not in use: it is
// restarted at the end of those in use at once.
//
// The one frame that is learnt at fixed rates counts no hits. A Gaussian that is first met there has a weight, no hits
// and hence no key; it stays behind those that have hits.
#include "motion/foreground_frame.h"

namespace {

constexpr int32_t modeCount = 5, none = -1;
constexpr double firstVariance = 12.5;

template <int C>
struct Gaussian {
  int32_t hits;
  double weight, variance[C], mean[C];
};

}  // namespace

// The numbers are fixed; two of them say what the model was derived with and are used by nothing.
struct OrvForegroundGaussianState {
  Plane<uint8_t> background, foreground;
  int32_t window, modes;
  double bgRatio, matchFactor, initialDeviation, initialWeight, initialVariance;
  void* pixelModes;  // modeCount Gaussian<C> a pixel
  int32_t frame;
  OrvSize roi;
};

namespace {

using State = OrvForegroundGaussianState;

// The first Gaussian that the value lies in.
template <int C>
int32_t findMatch(const Gaussian<C>* g, const double* x, double squaredFactor) {
  for (int32_t k = 0; k < modeCount; ++k) {
    double square = 0, variance = 0;
    for (int c = 0; c < C; ++c) {
      const double d = g[k].mean[c] - x[c];
      square += d * d;
      variance += g[k].variance[c];
    }
    if (variance * squaredFactor > square) return k;
  }
  return none;
}

template <int C>
void moveTowards(Gaussian<C>& g, const double* x, double rate) {
  for (int c = 0; c < C; ++c) {
    const double e = x[c] - g.mean[c];
    g.mean[c] += e * rate;
    g.variance[c] += rate * (e * e - g.variance[c]);
  }
}

template <int C>
void restart(Gaussian<C>& g, const double* x, double variance) {
  g.hits = 1;
  for (int c = 0; c < C; ++c) g.variance[c] = variance, g.mean[c] = x[c];
}

template <int C>
int32_t sumHits(const Gaussian<C>* g, int32_t used) {
  int32_t hits = 0;
  for (int32_t k = 0; k < used; ++k) hits = wrapAdd(hits, g[k].hits);
  return hits;
}

template <int C>
void moveWeights(Gaussian<C>* g, int32_t used, int32_t matched, double rate) {
  for (int32_t k = 0; k < used; ++k) g[k].weight += ((k == matched ? 1.0 : 0.0) - g[k].weight) * rate;
}

// Every frame but one.
template <int C>
void learnCounted(Gaussian<C>* g, int32_t used, int32_t matched, const double* x, double variance) {
  if (matched != none) {
    moveWeights(g, used, matched, 1.0 / wrapAdd(sumHits(g, used), 1));
    g[matched].hits = wrapAdd(g[matched].hits, 1);
    moveTowards(g[matched], x, 1.0 / g[matched].hits);
  } else {
    restart(g[used - 1], x, variance);
    const double sum = sumHits(g, used);
    for (int32_t k = 0; k < used; ++k) g[k].weight = g[k].hits / sum;
  }
}

// The frame that fills the window. Without a match the other weights fall twice, as is meant.
template <int C>
void learnSteady(Gaussian<C>* g, int32_t used, int32_t matched, const double* x, double variance, int32_t window) {
  const double rate = 1.0 / window;
  moveWeights(g, used, matched, rate);
  if (matched != none) {
    moveTowards(g[matched], x, 1.0 / (window * g[matched].weight));
  } else {
    restart(g[used - 1], x, variance);
    g[used - 1].weight = 1.0 / sumHits(g, used);
    for (int32_t k = 0; k < used - 1; ++k) g[k].weight *= 1 - rate;
  }
}

// Puts the largest key first. Equal keys keep their order.
template <int C>
void sortByKey(Gaussian<C>* g, int32_t used) {
  if (used < 2) return;
  double key[modeCount];
  for (int32_t k = 0; k < used; ++k) {
    double variance = 0;
    for (int c = 0; c < C; ++c) variance += g[k].variance[c];
    key[k] = g[k].hits > 0 ? g[k].weight / __builtin_sqrt(variance) : 0;
  }
  for (int32_t i = 1; i < used; ++i)
    for (int32_t k = i; k > 0 && key[k] > key[k - 1]; --k) {
      const Gaussian<C> moved = g[k];
      const double itsKey = key[k];
      g[k] = g[k - 1], key[k] = key[k - 1];
      g[k - 1] = moved, key[k - 1] = itsKey;
    }
}

// Whether the place of the match, which is that before the sort, is among the first ones that make up the background.
template <int C>
bool isBackground(const Gaussian<C>* g, int32_t used, int32_t matched, double ratio) {
  double sum = 0;
  for (int32_t k = 0; k < used; ++k) {
    sum += g[k].weight;
    if (k == matched) return true;
    if (sum > ratio) return false;
  }
  return false;
}

// Learns a value; returns whether it is background.
template <int C>
bool advance(Gaussian<C>* g, const double* x, const State& s, double squaredFactor) {
  const int32_t matched = findMatch(g, x, squaredFactor);
  int32_t used = 0;
  while (used < modeCount && (g[used].hits != 0 || g[used].weight != 0)) ++used;
  // the last one in use is now the one to restart, or the match
  if (used < modeCount && (matched == none || matched == used)) ++used;
  if (s.frame != s.window) learnCounted(g, used, matched, x, s.initialVariance);
  else learnSteady(g, used, matched, x, s.initialVariance, s.window);
  sortByKey(g, used);
  return isBackground(g, used, matched, s.bgRatio);
}

template <int C>
Gaussian<C>* modesOf(const State& s, ptrdiff_t y) {
  return (Gaussian<C>*)s.pixelModes + y * s.roi.width * modeCount;
}

OrvStatus release(State* s) {
  ORV_REQUIRE(s, orvStatusNullPtr);
  void* const pieces[] = {s->pixelModes, s->foreground.data, s->background.data};
  for (void* const piece : pieces)
    if (piece) orvFree(piece);
  orvFree(s);
  return orvStatusOk;
}

template <int C>
OrvStatus initialise(Plane<const uint8_t> src, OrvSize roi, const void* model, State** state) {
  ORV_REQUIRE(allSet(src.data, model, state), orvStatusNullPtr);
  const OrvStatus status = checkFrame(roi, roi, src.step, C);
  ORV_REQUIRE(status == orvStatusOk, status);
  State* const s = allocateArray<State>(1);
  ORV_REQUIRE(s, orvStatusNoMem);
  *s = {{}, {}, 200, modeCount, 0.7, 2.5, 15, 0.05, 900, nullptr, 0, roi};
  s->background = allocateImage(roi, C);
  if (s->background.data) s->foreground = allocateImage(roi, 1);
  if (s->foreground.data) s->pixelModes = allocateArray<Gaussian<C>[modeCount]>((int64_t)roi.width * roi.height);
  if (!s->pixelModes) {
    release(s);
    return orvStatusNoMem;
  }
  copyImage(src, s->background, roi, C);
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    Gaussian<C>* g = modesOf<C>(*s, y);
    const auto* const row = src.row(y);
    for (ptrdiff_t x = 0; x < roi.width; ++x)
      for (int32_t k = 0; k < modeCount; ++k, ++g) {
        g->hits = k == 0;
        g->weight = k == 0;
        for (int c = 0; c < C; ++c) g->variance[c] = firstVariance, g->mean[c] = k == 0 ? row[x * C + c] : 0;
      }
  }
  *state = s;
  return orvStatusOk;
}

template <int C>
OrvStatus run(Plane<const uint8_t> src, Plane<uint8_t> background, Plane<uint8_t> foreground, OrvSize roi, State* s) {
  ORV_REQUIRE(allSet(src.data, background.data, foreground.data, s), orvStatusNullPtr);
  const OrvStatus status = checkFrame(roi, s->roi, src.step, C);
  ORV_REQUIRE(status == orvStatusOk, status);
  s->frame = wrapAdd(s->frame, 1);
  const double squaredFactor = s->matchFactor * s->matchFactor;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    Gaussian<C>* g = modesOf<C>(*s, y);
    const auto* const row = src.row(y);
    auto *const back = s->background.row(y), *const mask = s->foreground.row(y);
    for (ptrdiff_t x = 0; x < roi.width; ++x, g += modeCount) {
      double value[C];
      for (int c = 0; c < C; ++c) value[c] = row[x * C + c];
      mask[x] = advance(g, value, *s, squaredFactor) ? 0 : 255;
      for (int c = 0; c < C; ++c) back[x * C + c] = (uint8_t)(int32_t)(g->mean[c] + 0.5);
    }
  }
  copyImage(s->background, background, roi, C);
  copyImage(s->foreground, foreground, roi, 1);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviForegroundGaussianInitAlloc_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                 const void* model, OrvForegroundGaussianState** state) {
  return initialise<1>({src, srcStep}, roiSize, model, state);
}
OrvStatus orviForegroundGaussianInitAlloc_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                 const void* model, OrvForegroundGaussianState** state) {
  return initialise<3>({src, srcStep}, roiSize, model, state);
}

OrvStatus orviForegroundGaussian_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* background,
                                        int32_t backgroundStep, uint8_t* foreground, int32_t foregroundStep,
                                        OrvSize roiSize, OrvForegroundGaussianState* state) {
  return run<1>({src, srcStep}, {background, backgroundStep}, {foreground, foregroundStep}, roiSize, state);
}
OrvStatus orviForegroundGaussian_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* background,
                                        int32_t backgroundStep, uint8_t* foreground, int32_t foregroundStep,
                                        OrvSize roiSize, OrvForegroundGaussianState* state) {
  return run<3>({src, srcStep}, {background, backgroundStep}, {foreground, foregroundStep}, roiSize, state);
}

OrvStatus orviForegroundGaussianFree_8u_C1R(OrvForegroundGaussianState* state) { return release(state); }
OrvStatus orviForegroundGaussianFree_8u_C3R(OrvForegroundGaussianState* state) { return release(state); }

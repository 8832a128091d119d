// One stage of a cascade at every surviving pixel.
//
// Theory: a pixel's features are the same as its neighbour's, one entry further on in every table. Where many pixels
// survive, a vector holds neighbouring ones; where few do, each is worked on alone, by the same code with one lane.
// A lane whose pixel is cleared already is read with the others only between two survivors of its row: what its corners
// reach then lies between entries that have to be read anyway. So cleared margins keep features inside the tables.
//
// Evaluating a pixel twice does no harm, so the last vector of a row may overlap the one before it.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detect/haar_apply.cpp"
#include "core/kernels.h"

#ifndef ORV_HAAR_APPLY
#define ORV_HAAR_APPLY
#include <string.h>
#include "detect/haar_classifier.h"

namespace ORV_VARIANT {

// Types of the tables, of the classifier and the norms, and of the lanes in which responses are summed.
// Mixed stages have tilted features on a table of their own.
template <class TableType, class ValueType, class LaneType, bool isMixed>
struct HaarForm {
  using Table = TableType;
  using Value = ValueType;
  using Lane = LaneType;
  static constexpr bool mixed = isMixed;
};
using Plain_32f = HaarForm<float, float, float, false>;
using Plain_32s32f = HaarForm<int32_t, float, float, false>;
using Plain_32s = HaarForm<int32_t, int32_t, int32_t, false>;
using Mixed_32f = HaarForm<float, float, float, true>;
using Mixed_32s32f = HaarForm<int32_t, float, float, true>;
using Mixed_32s = HaarForm<int32_t, int32_t, int64_t, true>;

// A stage over images. Corners come from `offsets`, four a rectangle; in a mixed stage from the classifier and the step
// of the table that the feature asks for.
template <class Form>
struct HaarStage {
  using T = typename Form::Table;
  using V = typename Form::Value;
  Plane<const T> table[2];  // upright, tilted
  Plane<const V> norm;
  Plane<uint8_t> mask;
  OrvSize roi;
  const OrvHaarClassifier* state;
  V threshold;
  const LooseElement<int64_t>* offsets = nullptr;
  int shift = 0;  // left, of a wide response
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

// Table entries and norms as lanes of D.
template <class D, class V>
HWY_INLINE hn::VFromD<D> ToLanes(D d, V v) {
  using Lane = hn::TFromD<D>;
  if constexpr (std::is_same<hn::TFromV<V>, Lane>::value) return v;
  else if constexpr (std::is_same<Lane, float>::value) return hn::ConvertTo(d, v);
  else return hn::PromoteTo(d, v);
}

// Products of numbers that fit into 32 bits each.
template <class D>
HWY_INLINE hn::VFromD<D> Product(D d, hn::VFromD<D> a, hn::VFromD<D> b) {
  if constexpr (sizeof(hn::TFromD<D>) == 4) {
    return hn::Mul(a, b);
  } else {
    const hn::Repartition<int32_t, D> d32;
    return hn::BitCast(d, hn::MulEven(hn::BitCast(d32, a), hn::BitCast(d32, b)));
  }
}

// The lanes of the pixels from (y, x) on: whoever falls short of the threshold is cleared.
template <class Form, class D>
HWY_INLINE void Evaluate(D d, const HaarStage<Form>& stage, ptrdiff_t y, ptrdiff_t x) {
  using T = typename Form::Table;
  using V = typename Form::Value;
  using Lane = typename Form::Lane;
  constexpr bool wide = sizeof(Lane) == 8;
  const hn::Rebind<T, D> dt;
  const hn::Rebind<V, D> dv;
  const T* const entry[2] = {raw(stage.table[0].row(y) + x), raw(stage.table[1].row(y) + x)};
  const ptrdiff_t stride[2] = {stage.table[0].step / (int32_t)sizeof(T), stage.table[1].step / (int32_t)sizeof(T)};
  const auto norm = ToLanes(d, hn::LoadU(dv, raw(stage.norm.row(y) + x)));
  const HaarFeature<V>* const features = featuresOf<V>(stage.state);
  const LooseElement<int64_t>* offset = stage.offsets;
  auto sum = hn::Zero(d);
  for (int32_t i = 0; i < stage.state->featureCount; ++i) {
    const HaarFeature<V>& f = features[i];
    const int32_t tilted = Form::mixed ? f.tag & 1 : 0;
    const T* const base = entry[tilted];
    auto response = hn::Zero(d);
    const HaarRect<V>* rect = f.rects;
    for (const HaarRect<V>* const end = rect + f.numRects; rect != end; ++rect) {
      ptrdiff_t at0, at1, at2, at3;
      if constexpr (Form::mixed) {
        at0 = rect->corner[0].y * stride[tilted] + rect->corner[0].x;
        at1 = rect->corner[1].y * stride[tilted] + rect->corner[1].x;
        at2 = rect->corner[2].y * stride[tilted] + rect->corner[2].x;
        at3 = rect->corner[3].y * stride[tilted] + rect->corner[3].x;
      } else {
        at0 = offset[0], at1 = offset[1], at2 = offset[2], at3 = offset[3];
        offset += 4;
      }
      const auto difference =
          hn::Sub(hn::Sub(hn::LoadU(dt, base + at0), hn::LoadU(dt, base + at1)), hn::LoadU(dt, base + at2));
      const auto pixels = ToLanes(d, hn::Add(difference, hn::LoadU(dt, base + at3)));
      response = hn::Add(response, Product(d, pixels, hn::Set(d, (Lane)rect->weight)));
    }
    if constexpr (wide) response = hn::ShiftLeftSame(response, stage.shift);
    const auto below = hn::Lt(response, Product(d, norm, hn::Set(d, (Lane)f.threshold)));
    sum = hn::Add(sum, hn::IfThenElse(below, hn::Set(d, (Lane)f.valueBelow), hn::Set(d, (Lane)f.valueAbove)));
  }
  // Of a wide sum the lower 32 bits count, as a signed number.
  auto least = hn::Set(d, (Lane)stage.threshold);
  if constexpr (wide) sum = hn::ShiftLeft<32>(sum), least = hn::ShiftLeft<32>(least);
  const hn::Rebind<uint8_t, D> d8;
  uint8_t bits[8] = {};
  hn::StoreMaskBits(d, hn::Lt(sum, least), bits);
  uint8_t* const mask = raw(stage.mask.row(y) + x);
  hn::StoreU(hn::IfThenZeroElse(hn::LoadMaskBits(d8, bits), hn::LoadU(d8, mask)), d8, mask);
}

// The first column from x on that isn't cleared, or `end`.
HWY_INLINE ptrdiff_t NextSet(const uint8_t* mask, ptrdiff_t x, ptrdiff_t end) {
  for (uint64_t eight; x + 8 <= end; x += 8) {
    memcpy(&eight, mask + x, 8);
    if (eight != 0) return x + __builtin_ctzll(eight) / 8;
  }
  while (x < end && mask[x] == 0) ++x;
  return x;
}

// Columns that aren't cleared.
HWY_INLINE int32_t CountSet(const uint8_t* mask, ptrdiff_t first, ptrdiff_t end) {
  int32_t count = 0;
  for (ptrdiff_t x = first; x < end; ++x) count += mask[x] != 0;
  return count;
}

// Works on all pixels of the stage; the number of survivors.
template <class Form>
int32_t ApplyStage(const HaarStage<Form>& stage) {
  const hn::ScalableTag<typename Form::Lane> all;
  const hn::Simd<typename Form::Lane, 1, 0> one;
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(typename Form::Lane);
  int32_t survivors = 0;
  for (ptrdiff_t y = 0; y < stage.roi.height; ++y) {
    const uint8_t* mask = raw(stage.mask.row(y));
    const ptrdiff_t first = NextSet(mask, 0, stage.roi.width);
    ptrdiff_t end = stage.roi.width;
    while (end > first && mask[end - 1] == 0) --end;
    for (ptrdiff_t x = first; x < end; x = NextSet(mask, x, end)) {
      const ptrdiff_t start = HWY_MIN(x, end - lanes), next = HWY_MIN(x + lanes, end);
      // Worth a vector if a quarter of the lanes have work.
      if (start >= first && 4 * CountSet(mask, x, next) >= lanes) Evaluate(all, stage, y, start);
      else
        for (; x < next; ++x)
          if (mask[x] != 0) Evaluate(one, stage, y, x);
      x = next;
    }
    survivors += CountSet(mask, first, end);
  }
  return survivors;
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

namespace {

// The corners of all rectangles as distances in a table; false if there is no memory. An empty list is null.
template <class V>
bool makeOffsets(const OrvHaarClassifier* state, int32_t step, LooseElement<int64_t>** offsets) {
  const ptrdiff_t stride = step / 4;
  const int64_t bytes = 4 * (int64_t)sizeof(int64_t) * state->rectCount;
  *offsets = bytes > INT32_MAX ? nullptr : (LooseElement<int64_t>*)(void*)orvsMalloc_8u((int32_t)bytes);
  if (*offsets == nullptr) return bytes == 0;
  LooseElement<int64_t>* next = *offsets;
  const HaarFeature<V>* features = featuresOf<V>(state);
  for (int32_t i = 0; i < state->featureCount; ++i)
    for (int32_t k = 0; k < features[i].numRects; ++k) {
      const HaarRect<V> rect = features[i].rects[k];
      for (const OrvPoint& corner : rect.corner) *next++ = corner.y * stride + corner.x;
    }
  return true;
}

template <class Form, class Stage = HaarStage<Form>>
OrvStatus apply(int32_t (*kernel)(const Stage&), Stage stage, int32_t* positive) {
  ORV_REQUIRE(allSet(stage.table[0].data, stage.norm.data, stage.mask.data, positive, stage.state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(stage.roi), orvStatusSize);
  const int32_t row = rowBytes<int32_t>(stage.roi.width);
  ORV_REQUIRE(stage.table[0].step >= row && stage.norm.step >= row && stage.mask.step >= stage.roi.width,
              orvStatusStep);
  ORV_REQUIRE(stepsAligned<int32_t>(stage.table[0].step, stage.norm.step), orvStatusStepAlign);
  LooseElement<int64_t>* offsets;
  ORV_REQUIRE(makeOffsets<typename Form::Value>(stage.state, stage.table[0].step, &offsets), orvStatusNoMem);
  stage.offsets = offsets;
  *positive = kernel(stage);
  if (offsets != nullptr) orvsFree(offsets);
  return orvStatusOk;
}

template <class Form, class Stage = HaarStage<Form>>
OrvStatus applyMixed(int32_t (*kernel)(const Stage&), Stage stage, int32_t* positive, int32_t scaleFactor = 0) {
  ORV_REQUIRE(allSet(stage.table[0].data, stage.norm.data, stage.mask.data, stage.table[1].data, positive, stage.state),
              orvStatusNullPtr);
  ORV_REQUIRE(validRoi(stage.roi), orvStatusSize);
  const int32_t row = rowBytes<int32_t>(stage.roi.width);
  ORV_REQUIRE(stage.table[0].step >= row && stage.table[1].step >= row && stage.norm.step >= row &&
                  stage.mask.step >= stage.roi.width,
              orvStatusStep);
  ORV_REQUIRE(stepsAligned<int32_t>(stage.table[0].step, stage.table[1].step, stage.norm.step), orvStatusStepAlign);
  ORV_REQUIRE(scaleFactor <= 0, orvStatusBadArg);
  stage.shift = (int)((0u - (uint32_t)scaleFactor) & 63);
  // Tilted rectangles start at the second entry of the second row.
  const auto* origin = stage.table[1].row(1) + 1;
  stage.table[1].data = raw(origin);
  *positive = kernel(stage);
  return orvStatusOk;
}

}  // namespace

OrvStatus orviApplyHaarClassifier_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* norm, int32_t normStep,
                                             uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                             int32_t stageThreshold, const OrvHaarClassifier* state) {
  return apply<Plain_32s>(
      WIDEST(ApplyStage<Plain_32s>),
      {{{src, srcStep}, {src, srcStep}}, {norm, normStep}, {mask, maskStep}, roiSize, state, stageThreshold}, positive);
}

OrvStatus orviApplyHaarClassifier_32s32f_C1R(const int32_t* src, int32_t srcStep, const float* norm, int32_t normStep,
                                             uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                             float stageThreshold, const OrvHaarClassifier* state) {
  return apply<Plain_32s32f>(
      WIDEST(ApplyStage<Plain_32s32f>),
      {{{src, srcStep}, {src, srcStep}}, {norm, normStep}, {mask, maskStep}, roiSize, state, stageThreshold}, positive);
}

OrvStatus orviApplyHaarClassifier_32f_C1R(const float* src, int32_t srcStep, const float* norm, int32_t normStep,
                                          uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                          float stageThreshold, const OrvHaarClassifier* state) {
  return apply<Plain_32f>(
      WIDEST(ApplyStage<Plain_32f>),
      {{{src, srcStep}, {src, srcStep}}, {norm, normStep}, {mask, maskStep}, roiSize, state, stageThreshold}, positive);
}

OrvStatus orviApplyMixedHaarClassifier_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* tilt,
                                                  int32_t tiltStep, const int32_t* norm, int32_t normStep,
                                                  uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                                  int32_t stageThreshold, const OrvHaarClassifier* state,
                                                  int32_t scaleFactor) {
  return applyMixed<Mixed_32s>(
      WIDEST(ApplyStage<Mixed_32s>),
      {{{src, srcStep}, {tilt, tiltStep}}, {norm, normStep}, {mask, maskStep}, roiSize, state, stageThreshold},
      positive, scaleFactor);
}

OrvStatus orviApplyMixedHaarClassifier_32s32f_C1R(const int32_t* src, int32_t srcStep, const int32_t* tilt,
                                                  int32_t tiltStep, const float* norm, int32_t normStep, uint8_t* mask,
                                                  int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                                  const OrvHaarClassifier* state, float stageThreshold) {
  return applyMixed<Mixed_32s32f>(
      WIDEST(ApplyStage<Mixed_32s32f>),
      {{{src, srcStep}, {tilt, tiltStep}}, {norm, normStep}, {mask, maskStep}, roiSize, state, stageThreshold},
      positive);
}

OrvStatus orviApplyMixedHaarClassifier_32f_C1R(const float* src, int32_t srcStep, const float* tilt, int32_t tiltStep,
                                               const float* norm, int32_t normStep, uint8_t* mask, int32_t maskStep,
                                               OrvSize roiSize, int32_t* positive, const OrvHaarClassifier* state,
                                               float stageThreshold) {
  return applyMixed<Mixed_32f>(
      WIDEST(ApplyStage<Mixed_32f>),
      {{{src, srcStep}, {tilt, tiltStep}}, {norm, normStep}, {mask, maskStep}, roiSize, state, stageThreshold},
      positive);
}

#endif

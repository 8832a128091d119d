// Erosion and dilation with a weight for each position of the mask.
//
// Theory. A row of the result is folded in blocks of columns, mask row by mask row, into a block of sums on the stack.
// Where all windows of a block lie inside the image, they are read in place; at the sides of the image from a copy that
// goes on with the row's end pixels. Bytes are summed in 16 bits if no weight can leave them, else in 32.
//
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/gray_morphology.cpp"
#include "core/kernels.h"

#ifndef ORV_GRAY_FOLD
#define ORV_GRAY_FOLD
#include <float.h>
#include <string.h>

namespace ORV_VARIANT {

// The folds of pixels T with weights W in sums S.
template <class T, class W, class S>
struct GrayKernels {
  // sums[x] = min or max of itself and src[x + j] + weights[j], 0 <= j < count, in this order.
  void (*add)(S* sums, const T* src, ptrdiff_t n, const W* weights, ptrdiff_t count);
  // dst[x] = sums[x], saturated.
  void (*store)(const S* sums, T* dst, ptrdiff_t n);
};

}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

template <class D, class T>
HWY_INLINE hn::VFromD<D> LoadSum(D d, const T* p) {
  if constexpr (sizeof(T) == sizeof(hn::TFromD<D>)) return hn::LoadU(d, p);
  else return hn::PromoteTo(d, hn::LoadU(hn::Rebind<T, D>(), p));
}

template <bool dilate, class T, class W, class S>
void AddWeighted(S* sums, const T* src, ptrdiff_t n, const W* weights, ptrdiff_t count) {
  const auto* const weight = loose(weights);
  Vectors<S>(
      0, n, VECTOR(d, x) {
        auto fold = hn::LoadU(d, sums + x);
        for (ptrdiff_t j = 0; j < count; ++j) {
          const auto sum = hn::Add(LoadSum(d, src + x + j), hn::Set(d, (S)(W)weight[j]));
          fold = dilate ? hn::Max(sum, fold) : hn::Min(sum, fold);
        }
        hn::StoreU(fold, d, sums + x);
      });
}

template <class T, class S>
void StoreSums(const S* sums, T* dst, ptrdiff_t n) {
  Vectors<S>(
      0, n, VECTOR(d, x) {
        auto sum = hn::LoadU(d, sums + x);
        // Demoting 32 bits to bytes drops bit 15 on wide vectors: what is above a byte must be cut before.
        if constexpr (sizeof(S) == 4 && sizeof(T) == 1) sum = hn::Min(sum, hn::Set(d, (S)UINT8_MAX));
        if constexpr (sizeof(T) == sizeof(S)) hn::StoreU(sum, d, dst + x);
        else hn::StoreU(hn::DemoteTo(hn::Rebind<T, decltype(d)>(), sum), hn::Rebind<T, decltype(d)>(), dst + x);
      });
}

GrayKernels<uint8_t, int32_t, int16_t> GrayShorts(bool dilate) {
  return {dilate ? AddWeighted<true, uint8_t, int32_t, int16_t> : AddWeighted<false, uint8_t, int32_t, int16_t>,
          StoreSums<uint8_t, int16_t>};
}
GrayKernels<uint8_t, int32_t, int32_t> GrayInts(bool dilate) {
  return {dilate ? AddWeighted<true, uint8_t, int32_t, int32_t> : AddWeighted<false, uint8_t, int32_t, int32_t>,
          StoreSums<uint8_t, int32_t>};
}
GrayKernels<float, float, float> GrayFloats(bool dilate) {
  return {dilate ? AddWeighted<true, float, float, float> : AddWeighted<false, float, float, float>,
          StoreSums<float, float>};
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"

namespace {

constexpr ptrdiff_t blockColumns = 512;

OrvMorphGrayState readState(const OrvMorphGrayState* state) {
  OrvMorphGrayState copy;
  memcpy(&copy, (const void*)state, sizeof copy);
  return copy;
}

template <class T, class W, class S>
struct GrayFold {
  Plane<const T> src;
  Plane<T> dst;
  OrvSize roi;
  OrvMorphGrayState mask;
  GrayKernels<T, W, S> kernels;
  S start;

  // Folds positions of a mask row where windows may reach beyond the row's ends; the first one starts at `from`.
  void addAtSide(S* sums, const T* row, ptrdiff_t from, ptrdiff_t n, const W* weights, ptrdiff_t count) const {
    T extended[2 * blockColumns];
    const ptrdiff_t end = from + n + count - 1;
    const ptrdiff_t left = from < 0 ? (end < 0 ? end : 0) - from : 0;
    const ptrdiff_t right = end > roi.width ? end - (from > roi.width ? from : roi.width) : 0;
    const ptrdiff_t inside = n + count - 1 - left - right;
    for (ptrdiff_t x = 0; x < left; ++x) extended[x] = *loose(row);
    if (inside > 0) memcpy(extended + left, (const void*)(row + from + left), (size_t)inside * sizeof(T));
    for (ptrdiff_t x = left + inside; x < left + inside + right; ++x) extended[x] = loose(row)[roi.width - 1];
    kernels.add(sums, extended, n, weights, count);
  }

  void foldBlock(ptrdiff_t y, ptrdiff_t first, ptrdiff_t end) const {
    S sums[blockColumns];
    for (ptrdiff_t x = 0; x < end - first; ++x) sums[x] = start;
    const bool inside = first >= mask.anchorX && end + mask.maskWidth - mask.anchorX - 1 <= roi.width;
    for (ptrdiff_t i = 0; i < mask.maskHeight; ++i) {
      const ptrdiff_t row = y + i - mask.anchorY;
      const T* const line = raw(src.row(row < 0 ? 0 : row < roi.height ? row : roi.height - 1));
      const auto* const weights = (const W*)mask.weights + i * mask.maskWidth;
      if (inside) {
        kernels.add(sums, line + first - mask.anchorX, end - first, weights, mask.maskWidth);
        continue;
      }
      for (ptrdiff_t j = 0; j < mask.maskWidth; j += blockColumns)
        addAtSide(sums, line, first + j - mask.anchorX, end - first, weights + j,
                  mask.maskWidth - j < blockColumns ? mask.maskWidth - j : blockColumns);
    }
    kernels.store(sums, raw(dst.row(y)) + first, end - first);
  }

  // The columns at the sides in blocks of their own, where there are enough between them.
  void run() const {
    const ptrdiff_t left = mask.anchorX, right = roi.width - (mask.maskWidth - mask.anchorX - 1);
    const bool apart = right - left > blockColumns / 4;
    for (ptrdiff_t y = 0; y < roi.height; ++y)
      for (ptrdiff_t first = 0, end; first < roi.width; first = end) {
        end = first + blockColumns < roi.width ? first + blockColumns : roi.width;
        if (apart && first < left && left < end) end = left;
        if (apart && first < right && right < end) end = right;
        foldBlock(y, first, end);
      }
  }
};

// Sums of 16 bits hold 0..255 and any of these weights.
bool fitShorts(const OrvMorphGrayState& mask) {
  const auto* const weights = loose((const int32_t*)mask.weights);
  const ptrdiff_t count = (ptrdiff_t)mask.maskWidth * mask.maskHeight;
  for (ptrdiff_t i = 0; i < count; ++i)
    if (weights[i] < INT16_MIN || weights[i] > INT16_MAX - UINT8_MAX) return false;
  return true;
}

void fold(Plane<const uint8_t> src, Plane<uint8_t> dst, OrvSize roi, const OrvMorphGrayState& mask, bool dilate) {
  const uint8_t start = dilate ? 0 : UINT8_MAX;
  if (fitShorts(mask))
    GrayFold<uint8_t, int32_t, int16_t>{src, dst, roi, mask, WIDEST(GrayShorts)(dilate), start}.run();
  else GrayFold<uint8_t, int32_t, int32_t>{src, dst, roi, mask, WIDEST(GrayInts)(dilate), start}.run();
}
void fold(Plane<const float> src, Plane<float> dst, OrvSize roi, const OrvMorphGrayState& mask, bool dilate) {
  GrayFold<float, float, float>{src, dst, roi, mask, WIDEST(GrayFloats)(dilate), dilate ? -FLT_MAX : FLT_MAX}.run();
}

template <class T>
OrvStatus grayFilter(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int32_t borderType,
                     const OrvMorphGrayState* state, bool dilate) {
  ORV_REQUIRE(allSet(src, dst, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(srcStep >= rowBytes<T>(roi.width) && dstStep >= rowBytes<T>(roi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(srcStep, dstStep), orvStatusStepAlign);
  ORV_REQUIRE(borderType == orvBorderRepl, orvStatusBadArg);
  const OrvMorphGrayState mask = readState(state);
  ORV_REQUIRE(roi.width <= mask.roiWidth && roi.height <= mask.roiHeight, orvStatusSize);
  fold(Plane<const T>{src, srcStep}, Plane<T>{dst, dstStep}, roi, mask, dilate);
  return orvStatusOk;
}

int32_t stateBytes(OrvSize maskSize) { return wrapAdd(wrapMul(4, maskSize.width, maskSize.height), 32); }

OrvStatus checkMask(const void* mask, const void* result, OrvSize roi, OrvSize maskSize) {
  ORV_REQUIRE(mask != nullptr && result != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi) && validRoi(maskSize), orvStatusSize);
  return orvStatusOk;
}

OrvStatus reportGraySize(OrvSize roi, const void* mask, OrvSize maskSize, int32_t* size) {
  const OrvStatus status = checkMask(mask, size, roi, maskSize);
  if (status == orvStatusOk) *size = stateBytes(maskSize);
  return status;
}

OrvStatus checkGray(const void* state, OrvSize roi, const void* mask, OrvSize maskSize, OrvPoint anchor) {
  const OrvStatus status = checkMask(mask, state, roi, maskSize);
  ORV_REQUIRE(status == orvStatusOk, status);
  const bool inside = anchor.x >= 0 && anchor.x < maskSize.width && anchor.y >= 0 && anchor.y < maskSize.height;
  return inside ? orvStatusOk : orvStatusAnchor;
}

// The record and the weights behind it, at any address.
void fillGray(OrvMorphGrayState* state, OrvSize roi, const void* mask, OrvSize maskSize, OrvPoint anchor) {
  uint8_t* const weights = (uint8_t*)(void*)state + sizeof(OrvMorphGrayState);
  const OrvMorphGrayState record = {weights,  maskSize.width, maskSize.height, anchor.x,
                                    anchor.y, roi.width,      roi.height};
  memcpy((void*)state, &record, sizeof record);
  memcpy(weights, mask, 4 * (size_t)maskSize.width * (size_t)maskSize.height);
}

OrvStatus initGray(OrvMorphGrayState* state, OrvSize roi, const void* mask, OrvSize maskSize, OrvPoint anchor) {
  const OrvStatus status = checkGray((const void*)state, roi, mask, maskSize, anchor);
  if (status == orvStatusOk) fillGray(state, roi, mask, maskSize, anchor);
  return status;
}

OrvStatus allocGray(OrvMorphGrayState** state, OrvSize roi, const void* mask, OrvSize maskSize, OrvPoint anchor) {
  const OrvStatus status = checkGray((const void*)state, roi, mask, maskSize, anchor);
  ORV_REQUIRE(status == orvStatusOk, status);
  auto* const block = (OrvMorphGrayState*)(void*)orvsMalloc_8u(stateBytes(maskSize));
  ORV_REQUIRE(block != nullptr, orvStatusNoMem);
  fillGray(block, roi, mask, maskSize, anchor);
  *state = block;
  return orvStatusOk;
}

OrvStatus freeGray(OrvMorphGrayState* state) {
  ORV_REQUIRE(state != nullptr, orvStatusNullPtr);
  orvsFree((void*)state);
  return orvStatusOk;
}

}  // namespace

#define GRAY_MORPHOLOGY(tag, T, W)                                                                                    \
  OrvStatus orviMorphGrayGetSize_##tag(OrvSize roiSize, const W* mask, OrvSize maskSize, int32_t* size) {             \
    return reportGraySize(roiSize, mask, maskSize, size);                                                             \
  }                                                                                                                   \
  OrvStatus orviMorphGrayInit_##tag(OrvMorphGrayState* state, OrvSize roiSize, const W* mask, OrvSize maskSize,       \
                                    OrvPoint anchor) {                                                                \
    return initGray(state, roiSize, mask, maskSize, anchor);                                                          \
  }                                                                                                                   \
  OrvStatus orviMorphGrayInitAlloc_##tag(OrvMorphGrayState** state, OrvSize roiSize, const W* mask, OrvSize maskSize, \
                                         OrvPoint anchor) {                                                           \
    return allocGray(state, roiSize, mask, maskSize, anchor);                                                         \
  }                                                                                                                   \
  OrvStatus orviMorphGrayFree_##tag(OrvMorphGrayState* state) { return freeGray(state); }                             \
  OrvStatus orviGrayErodeBorder_##tag(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roiSize,        \
                                      OrvBorderType borderType, OrvMorphGrayState* state) {                           \
    return grayFilter<T>(src, srcStep, dst, dstStep, roiSize, borderType, state, false);                              \
  }                                                                                                                   \
  OrvStatus orviGrayDilateBorder_##tag(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roiSize,       \
                                       OrvBorderType borderType, OrvMorphGrayState* state) {                          \
    return grayFilter<T>(src, srcStep, dst, dstStep, roiSize, borderType, state, true);                               \
  }
GRAY_MORPHOLOGY(8u_C1R, uint8_t, int32_t)
GRAY_MORPHOLOGY(32f_C1R, float, float)

#endif

// Opening, closing, top-hat, black-hat and gradient: the record, its construction, and the plan of a pair of folds.
//
// Theory of operation. An opening is an erosion into an intermediate image and a dilation of that under the mask turned
// by 180 degrees. Sides in memory make the first region larger, by as much as the second fold reads beyond it:
//
//   source:     + - - - - - - - +     intermediate image, in the scratch buffer     result
//               |   . . . . .   |  -> + - - - - - +  ->  . . . .
//               |   . roi   .   |     |  . . . .  |      . roi .
//               + - - - - - - - +     + - - - - - +      . . . .
//
// The second fold of a difference runs in bands of rows, so that a band is subtracted while it's in the cache; the rows
// of the neighbouring bands are to a band rows in memory.
//
// The scratch buffer has a piece for each fold and the intermediate image behind them. A record that was allocated
// doesn't say how large such a piece is: there the intermediate image comes first and one piece for both folds behind.
#pragma once
#include "morph/names.h"
#include "morph/bit_filter.h"
#include "morph/subtract_lines.h"

namespace ORV_VARIANT {

static inline OrvMorphAdvState readAdv(const OrvMorphAdvState* state) {
  OrvMorphAdvState copy;
  memcpy(&copy, (const void*)state, sizeof copy);
  return copy;
}

// Bytes of a row of an intermediate image. Packed bits take a byte a pixel there, as told by the reported sizes.
static inline int32_t tempRowBytes(int32_t width, int32_t pixelBytes) {
  return wrapAdd(wrapMul(width, pixelBytes), 31) & ~31;
}

OrvStatus reportAdvSizes(int32_t dataType, int32_t channels, OrvSize roi, OrvSize maskSize, int32_t* specSize,
                         int32_t* bufferSize);
OrvStatus buildAdvState(int32_t dataType, int32_t channels, OrvSize roi, const uint8_t* mask, OrvSize maskSize,
                        OrvMorphAdvState* state, uint8_t* buffer);

// What a filter reads from its record.
struct AdvMasks {
  OrvMorphAdvState record;
  OrvMorphState forward, turned;

  explicit AdvMasks(const OrvMorphAdvState* state)
      : record(readAdv(state)),
        forward(readMorphState(record.forwardState)),
        turned(readMorphState(record.turnedState)) {}
};

// A pair of folds.
struct AdvPlan {
  OrvSize wide;            // region of the first fold
  int32_t shiftX, shiftY;  // of the region in it
  int32_t sides;
  int32_t tempStep;
  uint8_t* temp;
  uint8_t* scratch[2];
  ptrdiff_t scratchBytes;
};

// Plans an opening or closing; refuses regions that the record wasn't made for.
OrvStatus planPair(const AdvMasks& masks, OrvSize roi, int32_t borderType, int32_t pixelBytes, uint8_t* buffer,
                   AdvPlan& plan);
// The same of a gradient, whose second image is the record's own. The folds share the buffer.
OrvStatus planGradient(const AdvMasks& masks, OrvSize roi, int32_t borderType, int32_t pixelBytes, uint8_t* buffer,
                       AdvPlan& plan);

// Calls band(first, rows, sides) for bands of rows that stay in the cache. A band finds the rows around it in memory:
// above and below it, where not at the region's ends, there must be as many as the mask reaches.
template <class Band>
static inline void forBands(OrvSize roi, ptrdiff_t rowBytes, const OrvMorphState& mask, int32_t sides,
                            const Band& band) {
  constexpr ptrdiff_t bandBytes = 65536;
  const ptrdiff_t fitting = bandBytes / rowBytes, least = fitting < 16 ? 16 : fitting;
  const ptrdiff_t above = mask.anchorY, below = mask.maskHeight - 1 - above, reach = above > below ? above : below;
  const ptrdiff_t rows = least < reach ? reach : least;
  for (ptrdiff_t y = 0, count; y < roi.height; y += count) {
    count = roi.height - y < rows + reach ? roi.height - y : rows;
    const int32_t top = y > 0 ? orvBorderInMemTop : 0, bottom = y + count < roi.height ? orvBorderInMemBottom : 0;
    band((int32_t)y, (int32_t)count, sides | top | bottom);
  }
}

// Element types. A fold of rows of one image into another.
template <class T>
struct AdvImages {
  const MorphCall<T>& call;
  const AdvMasks& masks;
  const AdvPlan& plan;
  int32_t channels;

  ptrdiff_t pixel() const { return channels * (ptrdiff_t)sizeof(T); }
  uint8_t* temp(ptrdiff_t x, ptrdiff_t y) const { return plan.temp + y * plan.tempStep + x * pixel(); }
  const uint8_t* src(ptrdiff_t x, ptrdiff_t y) const {
    return raw(Plane<const uint8_t>{(const uint8_t*)call.src, call.srcStep}.row(y)) + x * pixel();
  }
  uint8_t* dst(ptrdiff_t y) const { return raw(Plane<uint8_t>{(uint8_t*)call.dst, call.dstStep}.row(y)); }

  void first(bool dilate) const {
    filterUnderMask({src(-plan.shiftX, -plan.shiftY), call.srcStep, temp(0, 0), plan.tempStep, plan.wide, plan.sides,
                     dilate, plan.scratch[0], plan.scratchBytes},
                    masks.forward);
  }
  void second(bool dilate, int32_t y, int32_t rows, int32_t sides) const {
    filterUnderMask({temp(plan.shiftX, plan.shiftY + y),
                     plan.tempStep,
                     dst(y),
                     call.dstStep,
                     {call.roi.width, rows},
                     sides,
                     dilate,
                     plan.scratch[1],
                     plan.scratchBytes},
                    masks.turned);
  }
};

// What is done with the result of an opening or closing.
enum class Hat { none, srcMinusResult, resultMinusSrc };

template <class T>
static OrvStatus openOrClose(const MorphCall<T>& call, int32_t channels, const OrvMorphAdvState* state, bool close,
                             Hat hat) {
  OrvStatus status = checkMorph(call, channels, state);
  ORV_REQUIRE(status == orvStatusOk, status);
  const AdvMasks masks(state);
  AdvPlan plan;
  status = planPair(masks, call.roi, call.borderType, channels * (int32_t)sizeof(T), call.buffer, plan);
  ORV_REQUIRE(status == orvStatusOk, status);
  const AdvImages<T> images{call, masks, plan, channels};
  images.first(close);
  if (hat == Hat::none) {
    images.second(!close, 0, call.roi.height, plan.sides);
    return orvStatusOk;
  }
  const SubtractLines subtract = subtractLinesOf(masks.forward.dataType);
  const ptrdiff_t elements = (ptrdiff_t)call.roi.width * channels;
  const ptrdiff_t rowBytes = elements * (ptrdiff_t)sizeof(T);
  forBands(call.roi, rowBytes, masks.turned, plan.sides, [&](int32_t first, int32_t rows, int32_t sides) {
    images.second(!close, first, rows, sides);
    for (ptrdiff_t y = first; y < first + rows; ++y) {
      const uint8_t *const s = images.src(0, y), *const d = images.dst(y);
      const bool fromSrc = hat == Hat::srcMinusResult;
      subtract(fromSrc ? s : d, fromSrc ? d : s, images.dst(y), elements);
    }
  });
  return orvStatusOk;
}

template <class T>
static OrvStatus gradient(const MorphCall<T>& call, int32_t channels, const OrvMorphAdvState* state) {
  OrvStatus status = checkMorph(call, channels, state);
  ORV_REQUIRE(status == orvStatusOk, status);
  const AdvMasks masks(state);
  AdvPlan plan;
  status = planGradient(masks, call.roi, call.borderType, channels * (int32_t)sizeof(T), call.buffer, plan);
  ORV_REQUIRE(status == orvStatusOk, status);
  ORV_REQUIRE(sizeof(T) != 2 || call.src != call.dst, orvStatusInPlace);
  const AdvImages<T> images{call, masks, plan, channels};
  const SubtractLines subtract = subtractLinesOf(masks.forward.dataType);
  const ptrdiff_t elements = (ptrdiff_t)call.roi.width * channels;
  const ptrdiff_t rowBytes = elements * (ptrdiff_t)sizeof(T);
  forBands(call.roi, rowBytes, masks.forward, plan.sides, [&](int32_t first, int32_t rows, int32_t sides) {
    MaskFold fold = {
        images.src(0, first), call.srcStep,     images.dst(first), call.dstStep, {call.roi.width, rows}, sides, true,
        plan.scratch[0],      plan.scratchBytes};
    filterUnderMask(fold, masks.forward);
    // Every band has its erosion at the top of the intermediate image, which thus stays in the cache.
    fold.dst = plan.temp, fold.dstStep = plan.tempStep, fold.dilate = false;
    filterUnderMask(fold, masks.forward);
    for (ptrdiff_t y = 0; y < rows; ++y)
      subtract(images.dst(first + y), images.temp(0, y), images.dst(first + y), elements);
  });
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

// The public functions of an element type.
#define ORV_ADV_FILTER(name, T, ...)                                                                                   \
  OrvStatus name(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roiSize, OrvBorderType borderType, T, \
                 OrvMorphAdvState* state, uint8_t* buffer) {                                                           \
    const MorphCall<T> call = {src, srcStep, dst, dstStep, roiSize, borderType, buffer};                               \
    return __VA_ARGS__;                                                                                                \
  }
#define ORV_ADV_SETUP(tag, type, C)                                                                                 \
  OrvStatus orviMorphAdvGetSize_##tag(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize) {  \
    return reportAdvSizes(type, C, roiSize, maskSize, specSize, bufferSize);                                        \
  }                                                                                                                 \
  OrvStatus orviMorphAdvInit_##tag(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state, \
                                   uint8_t* buffer) {                                                               \
    return buildAdvState(type, C, roiSize, mask, maskSize, state, buffer);                                          \
  }
#define ORV_ADV_FAMILY(tag, T, type, C)                                                                    \
  ORV_ADV_SETUP(tag, type, C)                                                                              \
  ORV_ADV_FILTER(orviMorphOpenBorder_##tag, T, openOrClose(call, C, state, false, Hat::none))              \
  ORV_ADV_FILTER(orviMorphCloseBorder_##tag, T, openOrClose(call, C, state, true, Hat::none))              \
  ORV_ADV_FILTER(orviMorphTophatBorder_##tag, T, openOrClose(call, C, state, false, Hat::srcMinusResult))  \
  ORV_ADV_FILTER(orviMorphBlackhatBorder_##tag, T, openOrClose(call, C, state, true, Hat::resultMinusSrc)) \
  ORV_ADV_FILTER(orviMorphGradientBorder_##tag, T, gradient(call, C, state))

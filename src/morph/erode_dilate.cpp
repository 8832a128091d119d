// Erosion and dilation with a prepared mask, of all types but packed bits.
#include "morph/morph_filter.h"

namespace {

template <class T>
OrvStatus erodeOrDilate(const MorphCall<T>& call, int32_t channels, const OrvMorphState* state, bool dilate) {
  const OrvStatus status = checkMorph(call, channels, state);
  ORV_REQUIRE(status == orvStatusOk, status);
  const OrvMorphState mask = readMorphState(state);
  ORV_REQUIRE(mask.roiWidth >= call.roi.width, orvStatusSize);
  // Only the 16-bit forms refuse to work in place.
  ORV_REQUIRE(sizeof(T) != 2 || call.src != call.dst, orvStatusInPlace);
  filterUnderMask({call.src, call.srcStep, call.dst, call.dstStep, call.roi, sidesInMemoryByKind(call.borderType),
                   dilate, call.buffer, scratchOf(mask)},
                  mask);
  return orvStatusOk;
}

}  // namespace

#define FILTER(name, T, C, dilate)                                                                                     \
  OrvStatus name(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roiSize, OrvBorderType borderType, T, \
                 const OrvMorphState* state, uint8_t* buffer) {                                                        \
    return erodeOrDilate<T>({src, srcStep, dst, dstStep, roiSize, borderType, buffer}, C, state, dilate);              \
  }
#define ERODE_DILATE(tag, T, C)              \
  FILTER(orviErodeBorder_##tag, T, C, false) \
  FILTER(orviDilateBorder_##tag, T, C, true)
ERODE_DILATE(8u_C1R, uint8_t, 1)
ERODE_DILATE(8u_C3R, uint8_t, 3)
ERODE_DILATE(8u_C4R, uint8_t, 4)
ERODE_DILATE(16u_C1R, uint16_t, 1)
ERODE_DILATE(16s_C1R, int16_t, 1)
ERODE_DILATE(32f_C1R, float, 1)
ERODE_DILATE(32f_C3R, float, 3)
ERODE_DILATE(32f_C4R, float, 4)

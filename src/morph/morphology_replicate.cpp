// Erosion and dilation that repeat the nearest pixel beyond the sides, with the scratch memory inside the record.
//
// One body serves both variants.
#include "core/primitives.h"
#include "morph/morph_alloc.h"
#include "morph/morph_filter.h"

namespace {

bool validSizes(int32_t roiWidth, OrvSize maskSize) { return roiWidth >= 1 && validRoi(maskSize); }
bool validAnchor(OrvPoint anchor, OrvSize maskSize) {
  return anchor.x >= 0 && anchor.x < maskSize.width && anchor.y >= 0 && anchor.y < maskSize.height;
}

OrvStatus reportSize(int32_t dataType, int32_t channels, int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                     int32_t* size) {
  ORV_REQUIRE(allSet(mask, size), orvStatusNullPtr);
  ORV_REQUIRE(validSizes(roiWidth, maskSize), orvStatusSize);
  *size = morphStateBytes(dataType, channels, roiWidth, maskSize);
  return orvStatusOk;
}

// The record of this family: its anchor is told, its shapes are counted from no violation, and a rectangle's record
// speaks of its box.
MorphSetup setupOf(int32_t dataType, int32_t channels, int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                   OrvPoint anchor) {
  return {dataType, channels, roiWidth, maskSize, mask, anchor, 0, true};
}

OrvStatus checkSetup(const MorphSetup& setup, const void* state) {
  ORV_REQUIRE(setup.mask != nullptr && state != nullptr, orvStatusNullPtr);
  ORV_REQUIRE(validSizes(setup.roiWidth, setup.maskSize), orvStatusSize);
  ORV_REQUIRE(validAnchor(setup.anchor, setup.maskSize), orvStatusAnchor);
  return orvStatusOk;
}

OrvStatus init(const MorphSetup& setup, OrvMorphState* state) {
  const OrvStatus status = checkSetup(setup, (const void*)state);
  return status == orvStatusOk ? initMorphState(setup, state) : status;
}

OrvStatus initAlloc(const MorphSetup& setup, OrvMorphState** state) {
  const OrvStatus status = checkSetup(setup, (const void*)state);
  ORV_REQUIRE(status == orvStatusOk, status);
  OrvMorphState* const record = allocateMorphState(setup);
  ORV_REQUIRE(record != nullptr, orvStatusNoMem);
  *state = record;
  return orvStatusOk;
}

template <class T>
OrvStatus filter(const MorphCall<T>& call, int32_t channels, const OrvMorphState* state, bool dilate) {
  ORV_REQUIRE(allSet(call.src, call.dst, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  const int32_t row = rowBytes<T>(call.roi.width, channels);
  ORV_REQUIRE(call.srcStep >= row && call.dstStep >= row, orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(call.srcStep, call.dstStep), orvStatusStepAlign);
  ORV_REQUIRE(call.borderType == orvBorderRepl, orvStatusBadArg);
  const OrvMorphState mask = readMorphState(state);
  ORV_REQUIRE(mask.roiWidth >= call.roi.width, orvStatusSize);
  // What lies before the work area may have been moved by up to 15 bytes to an aligned address.
  filterUnderMask({call.src, call.srcStep, call.dst, call.dstStep, call.roi, 0, dilate, mask.workArea,
                   (ptrdiff_t)scratchOf(mask) - 15},
                  mask);
  return orvStatusOk;
}

}  // namespace

#define MORPHOLOGY(tag, type, T, C)                                                                                  \
  OrvStatus orviMorphologyGetSize_##tag(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size) {    \
    return reportSize(type, C, roiWidth, mask, maskSize, size);                                                      \
  }                                                                                                                  \
  OrvStatus orviMorphologyInit_##tag(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,       \
                                     OrvMorphState* state) {                                                         \
    return init(setupOf(type, C, roiWidth, mask, maskSize, anchor), state);                                          \
  }                                                                                                                  \
  OrvStatus orviMorphologyInitAlloc_##tag(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,  \
                                          OrvMorphState** state) {                                                   \
    return initAlloc(setupOf(type, C, roiWidth, mask, maskSize, anchor), state);                                     \
  }                                                                                                                  \
  OrvStatus orviErodeBorderReplicate_##tag(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roiSize,  \
                                           OrvBorderType borderType, OrvMorphState* state) {                         \
    return filter<T>({src, srcStep, dst, dstStep, roiSize, borderType, nullptr}, C, state, false);                   \
  }                                                                                                                  \
  OrvStatus orviDilateBorderReplicate_##tag(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roiSize, \
                                            OrvBorderType borderType, OrvMorphState* state) {                        \
    return filter<T>({src, srcStep, dst, dstStep, roiSize, borderType, nullptr}, C, state, true);                    \
  }
MORPHOLOGY(8u_C1R, orvData8u, uint8_t, 1)
MORPHOLOGY(8u_C3R, orvData8u, uint8_t, 3)
MORPHOLOGY(8u_C4R, orvData8u, uint8_t, 4)
MORPHOLOGY(32f_C1R, orvData32f, float, 1)
MORPHOLOGY(32f_C3R, orvData32f, float, 3)
MORPHOLOGY(32f_C4R, orvData32f, float, 4)

OrvStatus orviMorphologyFree(OrvMorphState* state) {
  ORV_REQUIRE(state != nullptr, orvStatusNullPtr);
  orvsFree((void*)state);
  return orvStatusOk;
}

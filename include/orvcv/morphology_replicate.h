/* Morphology that repeats the nearest pixel beyond the sides of the region.
 *
 * Two families: flat masks, whose record also holds the scratch memory of the filters, and gray masks, which have a
 * weight for each position. borderType must be orvBorderRepl. Filters run on the caller's thread; any number of calls
 * at once, but a flat record serves one call at a time. src and dst must not overlap. */
#ifndef ORVCV_MORPHOLOGY_REPLICATE_H
#define ORVCV_MORPHOLOGY_REPLICATE_H
#include "orvcv/morphology.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Flat masks: as morphology.h tells, but with an anchor of the caller's. A rectangle's record speaks of its box, whose
 * anchor may lie outside. GetSize tells the bytes of a record for regions of at most roiWidth pixels a row, as many as
 * in the border form; Init builds it in the caller's memory, at any address, InitAlloc in memory to be released by
 * orviMorphologyFree.
 * Returns, in order: orvStatusNullPtr (mask, size or state), orvStatusSize (roiWidth, mask width or height below 1),
 * Init and InitAlloc: orvStatusAnchor (the anchor isn't in the mask), orvStatusNoMem. */
OrvStatus orviMorphologyGetSize_8u_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphologyGetSize_8u_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphologyGetSize_8u_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphologyGetSize_32f_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphologyGetSize_32f_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphologyGetSize_32f_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphologyInit_8u_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                    OrvMorphState* state);
OrvStatus orviMorphologyInit_8u_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                    OrvMorphState* state);
OrvStatus orviMorphologyInit_8u_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                    OrvMorphState* state);
OrvStatus orviMorphologyInit_32f_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                     OrvMorphState* state);
OrvStatus orviMorphologyInit_32f_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                     OrvMorphState* state);
OrvStatus orviMorphologyInit_32f_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                     OrvMorphState* state);
OrvStatus orviMorphologyInitAlloc_8u_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                         OrvMorphState** state);
OrvStatus orviMorphologyInitAlloc_8u_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                         OrvMorphState** state);
OrvStatus orviMorphologyInitAlloc_8u_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                         OrvMorphState** state);
OrvStatus orviMorphologyInitAlloc_32f_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                          OrvMorphState** state);
OrvStatus orviMorphologyInitAlloc_32f_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                          OrvMorphState** state);
OrvStatus orviMorphologyInitAlloc_32f_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvPoint anchor,
                                          OrvMorphState** state);

/* Releases a record of InitAlloc. Returns orvStatusNullPtr for null. */
OrvStatus orviMorphologyFree(OrvMorphState* state);

/* Erosion and dilation under a flat mask; the scratch area of the record is written.
 * Returns, in order: orvStatusNullPtr (src, dst, state), orvStatusSize (region), orvStatusStep, orvStatusStepAlign
 * (32f), orvStatusBadArg (borderType), orvStatusSize (a region wider than the record's). */
OrvStatus orviErodeBorderReplicate_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviDilateBorderReplicate_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviErodeBorderReplicate_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviDilateBorderReplicate_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviErodeBorderReplicate_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviDilateBorderReplicate_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                           OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviErodeBorderReplicate_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviDilateBorderReplicate_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviErodeBorderReplicate_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviDilateBorderReplicate_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviErodeBorderReplicate_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);
OrvStatus orviDilateBorderReplicate_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                            OrvSize roiSize, OrvBorderType borderType, OrvMorphState* state);

/* A gray mask: this record, at any address, with the weights behind it, row by row, 32-bit elements. */
typedef struct {
  void* weights;
  int32_t maskWidth, maskHeight, anchorX, anchorY, roiWidth, roiHeight;
} OrvMorphGrayState;

/* Records of gray masks for regions of at most roiSize: size in bytes, 4 * mask width * mask height + 32, construction
 * in the caller's memory or in memory to be released by Free. Filters only read them. Returns, in order:
 * orvStatusNullPtr (mask, size or state), orvStatusSize (a side of the region or the mask below 1), Init and InitAlloc:
 * orvStatusAnchor, InitAlloc: orvStatusNoMem; Free: orvStatusNullPtr. */
OrvStatus orviMorphGrayGetSize_8u_C1R(OrvSize roiSize, const int32_t* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphGrayInit_8u_C1R(OrvMorphGrayState* state, OrvSize roiSize, const int32_t* mask, OrvSize maskSize,
                                   OrvPoint anchor);
OrvStatus orviMorphGrayInitAlloc_8u_C1R(OrvMorphGrayState** state, OrvSize roiSize, const int32_t* mask,
                                        OrvSize maskSize, OrvPoint anchor);
OrvStatus orviMorphGrayFree_8u_C1R(OrvMorphGrayState* state);
OrvStatus orviMorphGrayGetSize_32f_C1R(OrvSize roiSize, const float* mask, OrvSize maskSize, int32_t* size);
OrvStatus orviMorphGrayInit_32f_C1R(OrvMorphGrayState* state, OrvSize roiSize, const float* mask, OrvSize maskSize,
                                    OrvPoint anchor);
OrvStatus orviMorphGrayInitAlloc_32f_C1R(OrvMorphGrayState** state, OrvSize roiSize, const float* mask,
                                         OrvSize maskSize, OrvPoint anchor);
OrvStatus orviMorphGrayFree_32f_C1R(OrvMorphGrayState* state);

/* Gray erosion and dilation (S. R. Sternberg, "Grayscale morphology", 1986, but with plus signs and no reflection):
 *
 *   dst(x, y) = min, or max, of src(x + j - anchorX, y + i - anchorY) + weight(i, j) over all positions (i, j)
 *
 * folded row by row from 255 or 0 (8u: sums in 32 bits, the result saturated to 0..255) or from the largest or lowest
 * finite float (32f). NaNs are outside the contract.
 * Returns, in order: orvStatusNullPtr (src, dst, state), orvStatusSize (region), orvStatusStep, orvStatusStepAlign
 * (32f), orvStatusBadArg (borderType), orvStatusSize (a region larger than the record's). */
OrvStatus orviGrayErodeBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, OrvBorderType borderType, OrvMorphGrayState* state);
OrvStatus orviGrayDilateBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, OrvBorderType borderType, OrvMorphGrayState* state);
OrvStatus orviGrayErodeBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      OrvBorderType borderType, OrvMorphGrayState* state);
OrvStatus orviGrayDilateBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       OrvBorderType borderType, OrvMorphGrayState* state);

#ifdef __cplusplus
}
#endif
#endif

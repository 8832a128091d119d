/* Flood fills: the connected region around a seed pixel gets a new value, in place.
 *
 *   4Con, 8Con              pixels that equal the seed, in all channels. Floats are compared as floats: a NaN equals
 *                           nothing, -0.0 equals 0.0
 *   Range4Con, Range8Con    pixels p with seed - minDelta <= p <= seed + maxDelta, in all channels. Bounds of integers
 *                           saturate, those of floats are rounded once; a NaN is refused
 *   Grad4Con, Grad8Con      pixels p with q - minDelta <= p <= q + maxDelta for a neighbour q that is in the region
 *                           already, nothing saturates. 32f: unless |(p + (minDelta - maxDelta) * 0.5f) - q| is above
 *                           0.5f * (minDelta + maxDelta). A run of a row is entered from a pixel of a row beside it
 * that touches it; it grows to the left from pixel to pixel, to the right from pixel to pixel or again from touching
 * pixels of the row it came from. So a fill may reach further to the right than to the left: the result depends on this
 * order and is part of the contract
 *
 * 4Con: pixels touch at sides; 8Con: at sides and corners. The seed itself is always filled. If it has the new value
 * already, in all channels, the first four forms return orvStatusOk and write nothing, the record neither.
 *
 * C3 forms take three elements each of newValue, minDelta and maxDelta. `region` gets the number of pixels, the new
 * value (0 in the elements of channels that there are not) and the bounding box.
 *
 * Capacity. The Range forms keep at most C - 1 pending runs, C = width * height / 4: when there would be C, all pending
 * ones are dropped, and the fill ends early without an error; `area` then counts what was filled, `rect` bounds the
 * runs that were finished. Only shapes with very many branches come near it, or regions of less than eight pixels: with
 * C = 1 the fill takes the run of the seed alone. The other forms always fill the whole region. Where the new value of
 * a Range form lies between the bounds, pixels that had it before belong to the region like all others.
 *
 * Scratch. `buffer` has the size that orviFloodFillGetSize reports for the same region (6 * width * height + 32), or
 * orviFloodFillGetSize_Grad for Grad forms ((width + 2) * (height + 2) + 16 * width * height + 64), at any address.
 * Sizes are the low 32 bits; regions whose size doesn't fit can't be filled.
 *
 * Threads. A fill runs on the calling thread. Any number may run at once, on images and buffers of their own.
 *
 * Fills return, in order: orvStatusNullPtr (srcDst, region, buffer; C3: newValue, minDelta, maxDelta), orvStatusSize,
 * orvStatusStep (below a row), orvStatusStepAlign (no whole number of elements), orvStatusOutOfRange (seed outside the
 * region; Grad 32f: a delta below 0).
 * Size functions return, in order: orvStatusNullPtr (bufferSize), orvStatusSize.
 */
#ifndef ORVCV_FLOOD_FILL_H
#define ORVCV_FLOOD_FILL_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* What a fill has done. */
typedef struct {
  double area; /* pixels */
  double value[3];
  OrvRect rect;
} OrvConnectedComp;

OrvStatus orviFloodFillGetSize(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviFloodFillGetSize_Grad(OrvSize roiSize, int32_t* bufferSize);

/* Equal to the seed. */
OrvStatus orviFloodFill_4Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                     uint8_t newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_4Con_16u_C1IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      uint16_t newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_4Con_32s_C1IR(int32_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      int32_t newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_4Con_32f_C1IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed, float newValue,
                                      OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_4Con_8u_C3IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                     const uint8_t* newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_4Con_16u_C3IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      const uint16_t* newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_4Con_32f_C3IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      const float* newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                     uint8_t newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_16u_C1IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      uint16_t newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_32s_C1IR(int32_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      int32_t newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_32f_C1IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed, float newValue,
                                      OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_8u_C3IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                     const uint8_t* newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_16u_C3IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      const uint16_t* newValue, OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_8Con_32f_C3IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                      const float* newValue, OrvConnectedComp* region, uint8_t* buffer);

/* Within a range around the seed. */
OrvStatus orviFloodFill_Range4Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          uint8_t newValue, uint8_t minDelta, uint8_t maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range4Con_16u_C1IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           uint16_t newValue, uint16_t minDelta, uint16_t maxDelta,
                                           OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range4Con_32f_C1IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           float newValue, float minDelta, float maxDelta, OrvConnectedComp* region,
                                           uint8_t* buffer);
OrvStatus orviFloodFill_Range4Con_8u_C3IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          const uint8_t* newValue, const uint8_t* minDelta, const uint8_t* maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range4Con_16u_C3IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           const uint16_t* newValue, const uint16_t* minDelta, const uint16_t* maxDelta,
                                           OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range4Con_32f_C3IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           const float* newValue, const float* minDelta, const float* maxDelta,
                                           OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range8Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          uint8_t newValue, uint8_t minDelta, uint8_t maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range8Con_16u_C1IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           uint16_t newValue, uint16_t minDelta, uint16_t maxDelta,
                                           OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range8Con_32f_C1IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           float newValue, float minDelta, float maxDelta, OrvConnectedComp* region,
                                           uint8_t* buffer);
OrvStatus orviFloodFill_Range8Con_8u_C3IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          const uint8_t* newValue, const uint8_t* minDelta, const uint8_t* maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range8Con_16u_C3IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           const uint16_t* newValue, const uint16_t* minDelta, const uint16_t* maxDelta,
                                           OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Range8Con_32f_C3IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                           const float* newValue, const float* minDelta, const float* maxDelta,
                                           OrvConnectedComp* region, uint8_t* buffer);

/* Within a range around the neighbour. */
OrvStatus orviFloodFill_Grad4Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                         uint8_t newValue, uint8_t minDelta, uint8_t maxDelta, OrvConnectedComp* region,
                                         uint8_t* buffer);
OrvStatus orviFloodFill_Grad4Con_16u_C1IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          uint16_t newValue, uint16_t minDelta, uint16_t maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad4Con_32f_C1IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          float newValue, float minDelta, float maxDelta, OrvConnectedComp* region,
                                          uint8_t* buffer);
OrvStatus orviFloodFill_Grad4Con_8u_C3IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                         const uint8_t* newValue, const uint8_t* minDelta, const uint8_t* maxDelta,
                                         OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad4Con_16u_C3IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          const uint16_t* newValue, const uint16_t* minDelta, const uint16_t* maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad4Con_32f_C3IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          const float* newValue, const float* minDelta, const float* maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad8Con_8u_C1IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                         uint8_t newValue, uint8_t minDelta, uint8_t maxDelta, OrvConnectedComp* region,
                                         uint8_t* buffer);
OrvStatus orviFloodFill_Grad8Con_16u_C1IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          uint16_t newValue, uint16_t minDelta, uint16_t maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad8Con_32f_C1IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          float newValue, float minDelta, float maxDelta, OrvConnectedComp* region,
                                          uint8_t* buffer);
OrvStatus orviFloodFill_Grad8Con_8u_C3IR(uint8_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                         const uint8_t* newValue, const uint8_t* minDelta, const uint8_t* maxDelta,
                                         OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad8Con_16u_C3IR(uint16_t* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          const uint16_t* newValue, const uint16_t* minDelta, const uint16_t* maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);
OrvStatus orviFloodFill_Grad8Con_32f_C3IR(float* srcDst, int32_t srcDstStep, OrvSize roiSize, OrvPoint seed,
                                          const float* newValue, const float* minDelta, const float* maxDelta,
                                          OrvConnectedComp* region, uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

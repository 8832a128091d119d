/* Segmentation from markers: watershed, and growing by local gradient.
 *
 * `markers` holds seeds and gets the segments, in place: 0 is unlabelled, other values are labels. `src` is 8-bit, of
 * one channel (C3: three). `buffer` has the size that GetBufferSize reports for the region, at any address. All
 * functions run on the calling thread; any number may run at once, on markers and buffers of their own.
 */
#ifndef ORVCV_SEGMENTATION_H
#define ORVCV_SEGMENTATION_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* `norm`: which pixels are neighbours, and how long the steps to them are. */
enum {
  orvSegmentNormInf = 0, /* 8 neighbours, steps of equal length */
  orvSegmentNormL1 = 1,  /* 4 neighbours */
  orvSegmentNormL2 = 2,  /* 8 neighbours, steps of 10 + 1, diagonal 14 + 1; sweeps only */
  orvSegmentNormFM = 3   /* 4 neighbours, Euclidean by fast marching; sweeps only */
};

/* `flags`: the engine, and whether lines are drawn between the segments. */
enum {
  orvWatershedQueue = 1,    /* priority queues */
  orvWatershedSweep = 2,    /* sweeps; ignored beside orvWatershedQueue */
  orvWatershedBorder4 = 64, /* lines, tested at the sides */
  orvWatershedBorder8 = 128 /* lines, tested at the corners too */
};

/* Watershed: every unlabelled pixel gets the label of the seed that a flood reaches it from, lower pixels first. Lines
 * have the label B, 255 for 8-bit and 65535 for 16-bit markers. Without any seed nothing changes.
 *
 * Queue engine (after F. Meyer, "Un algorithme optimal de ligne de partage des eaux", 1991; norm 0 or 1). Labelled
 * pixels with an unlabelled neighbour are queued by gray level, row by row. The lowest level is exhausted first; within
 * it pixels leave in the order they came. A popped pixel labels its unlabelled neighbours (left, right, up, down, then
 * up left, up right, down left, down right) and queues them at their gray level or the present one, whichever is
 * higher. With a line flag a new pixel that touches two segments becomes B; one that was reached from a line takes the
 * segment it touches. A seed that touches another segment becomes B when it is queued. With both line flags seeds are
 * tested as by orvWatershedBorder8, all others as by orvWatershedBorder4.
 *
 * Sweep engine. The cost of a pixel is max(src << 23, least of (cost + step) of its neighbours, + 1), seeds cost
 * src << 23; found by sweeps down and up the image until nothing changes. On equal cost left comes before up left, up,
 * up right, and the label that was there first stays. Where two fronts of orvSegmentNormFM arrive within a distance of
 * 63, the pixel is reached earlier, by up to 19 of 63. One column takes 4 neighbours whatever the norm. Lines are drawn
 * afterwards as by orviBoundSegments, but of two neighbours the one with the larger cost becomes B (orvWatershedBorder8
 * counts if orvWatershedBorder4 isn't set).
 *
 * Sizes, in 32 bits, with e the bytes of a marker and W = e * width rounded up to a multiple of 32: the larger of
 * 2 * W * (height + 1) + 4 * height * W + height + 66 and 16 * width * height + e * (width + 2) * (height + 2) + 48.
 *
 * Returns, in order: orvStatusNullPtr (src, markers, buffer), orvStatusSize, orvStatusStep, orvStatusStepAlign (16-bit
 * markers), orvStatusBadArg (no engine, or a norm that it doesn't know). Size functions: orvStatusNullPtr,
 * orvStatusSize. */
OrvStatus orviSegmentWatershed_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep,
                                       OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer);
OrvStatus orviSegmentWatershed_8u16u_C1IR(const uint8_t* src, int32_t srcStep, uint16_t* markers, int32_t markerStep,
                                          OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer);
OrvStatus orviSegmentWatershedGetBufferSize_8u_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviSegmentWatershedGetBufferSize_8u16u_C1R(OrvSize roiSize, int32_t* bufferSize);

/* Seeded region growing (after R. Adams and L. Bischof, "Seeded Region Growing", 1994). Of all pixels that wait, the
 * one with the smallest difference to the pixel it was reached from is taken first (of equal ones the one queued
 * first). It gets the label of the neighbour nearest in value; on ties the later in the order left, right, up, down, up
 * left, up right, down left, down right, but never a line in place of a label. The difference of colours is the largest
 * of a channel. Labels are 1 to 253; 254 marks lines, which are drawn with a line flag where a pixel touches another
 * label (orvWatershedBorder8 counts if both are set) and which grow like labels. Pixels of 255 stay as they are and
 * nothing passes them. Pixels that nothing reaches stay 0. norm: orvSegmentNormInf or orvSegmentNormL1.
 *
 * Size: 17 * width * height + 115, in 32 bits.
 *
 * Returns, in order: orvStatusNullPtr (src, markers, buffer), orvStatusSize, orvStatusStep, orvStatusBadArg (norm).
 * Size functions: orvStatusNullPtr, orvStatusSize. */
OrvStatus orviSegmentGradient_8u_C1IR(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep,
                                      OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer);
OrvStatus orviSegmentGradient_8u_C3IR(const uint8_t* src, int32_t srcStep, uint8_t* markers, int32_t markerStep,
                                      OrvSize roiSize, int32_t norm, int32_t flags, uint8_t* buffer);
OrvStatus orviSegmentGradientGetBufferSize_8u_C1R(OrvSize roiSize, int32_t* bufferSize);
OrvStatus orviSegmentGradientGetBufferSize_8u_C3R(OrvSize roiSize, int32_t* bufferSize);

#ifdef __cplusplus
}
#endif
#endif

/* Statistical foreground of a video: which pixels of a frame belong to something that moves, told by what each pixel
 * has shown before.
 *
 * Two models, each made from a first frame and then given one frame after the other:
 *
 *   counted mixture  per pixel five Gaussians, each with a count of its hits (P. KaewTraKulPong and R. Bowden, "An
 *                    Improved Adaptive Background Mixture Model for Real-time Tracking with Shadow Detection", 2001):
 *                    learns fast, keeps what it has learnt
 *   histogram        per pixel tables of the values and changes that it has shown most, with the share of each that was
 *                    background (L. Li, W. Huang, I. Y. H. Gu and Q. Tian, "Foreground Object Detection from Videos
 *                    Containing Complex Background", 2003): also for trees in the wind; the caller cleans up the mask
 *                    and hands it back
 *
 *   orviForegroundGaussianInitAlloc_8u_C3R(frame, step, size, model, &state);                   // the first frame
 *   orviForegroundGaussian_8u_C3R(frame, step, background, backgroundStep, mask, maskStep, size, state);
 *   orviForegroundGaussianFree_8u_C3R(state);
 *
 *   orviForegroundHistogramInitAlloc_8u_C3R(frame, step, size, model, &state);                  // the first frame
 *   orviForegroundHistogram_8u_C3R(frame, step, mask, maskStep, size, state);                   // each other
 *   ...                                                                                         // clean up the mask
 *   orviForegroundHistogramUpdate_8u_C3R(frame, step, mask, maskStep, background, backgroundStep, size, state);
 *   orviForegroundHistogramFree_8u_C3R(state);
 *
 * Masks have one byte a pixel in C3 forms too: 255 foreground, 0 background. Backgrounds have the channels of the
 * frame. No output may overlap the frame. A state belongs to the channels it was made for; nothing checks that. All
 * numbers of the models are fixed: `model` must not be null, and is not read.
 *
 * Frames have the size of the first one. A smaller one is taken as the top left part of it, a larger one refused with
 * orvStatusSize.
 *
 * Returns of the InitAlloc forms, in order: orvStatusNullPtr (src, model, state), orvStatusSize, orvStatusStep (srcStep
 * below a row), orvStatusNoMem; *state is set on success only. Of the forms that take a frame: orvStatusNullPtr (any
 * pointer), orvStatusSize (also a ROI larger than the state's), orvStatusStep (srcStep below a row). Other steps are
 * not looked at; a negative one is a bottom-up image. Of the Free forms: orvStatusNullPtr.
 *
 * Threads: one; a state serves one call at a time.
 */
#ifndef ORVCV_FOREGROUND_H
#define ORVCV_FOREGROUND_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* A counted mixture: 160 bytes a pixel, 320 with three channels, in one block: larger images than 13 or 6.7 million
 * pixels get orvStatusNoMem. */
typedef struct OrvForegroundGaussianState OrvForegroundGaussianState;

OrvStatus orviForegroundGaussianInitAlloc_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                 const void* model, OrvForegroundGaussianState** state);
OrvStatus orviForegroundGaussianInitAlloc_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                 const void* model, OrvForegroundGaussianState** state);

/* Learns a frame, tells its foreground and the background.
 *
 * A pixel takes the first of its Gaussians that it lies in: with d the distance of its value to the mean (C3: squares
 * and variances are summed over the channels), d^2 < 2.5^2 * variance. That one moves towards the value at the rate
 * 1/hits, weights follow at the rate 1/(sum of hits + 1). If there is none, the last Gaussian starts anew at the value,
 * with a variance of 900 and one hit, and weights become shares of hits. Then the Gaussians are put in the order of
 * weight / sqrt(variance), largest first. Only the 200th frame, the length of the window, is learnt at fixed rates:
 * weights at 1/200, the Gaussian at 1 / (200 * weight), hits stay. All numbers are in double precision.
 *
 * background: the mean of the first Gaussian, rounded to nearest, halves up. foreground: 0 if the Gaussian that the
 * pixel took stands among the first ones whose weights together exceed 0.7, the last of them included, else 255. Its
 * place is that before the Gaussians were put in order; the weights are those after it. */
OrvStatus orviForegroundGaussian_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* background,
                                        int32_t backgroundStep, uint8_t* foreground, int32_t foregroundStep,
                                        OrvSize roiSize, OrvForegroundGaussianState* state);
OrvStatus orviForegroundGaussian_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* background,
                                        int32_t backgroundStep, uint8_t* foreground, int32_t foregroundStep,
                                        OrvSize roiSize, OrvForegroundGaussianState* state);

OrvStatus orviForegroundGaussianFree_8u_C1R(OrvForegroundGaussianState* state);
OrvStatus orviForegroundGaussianFree_8u_C3R(OrvForegroundGaussianState* state);

/* A histogram model: about 1000 bytes a pixel, at most 3.3 million pixels (orvStatusNoMem beyond). */
typedef struct OrvForegroundHistogramState OrvForegroundHistogramState;

OrvStatus orviForegroundHistogramInitAlloc_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                  const void* model, OrvForegroundHistogramState** state);
OrvStatus orviForegroundHistogramInitAlloc_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize roiSize,
                                                  const void* model, OrvForegroundHistogramState** state);

/* Tells the foreground of a frame, and learns nothing of it but which pixels have changed.
 *
 * A pixel has changed if it differs from the previous frame by more than a threshold, and is unusual if it differs so
 * from the reference image (C3: in any channel, each with its own threshold). The threshold is found anew for each
 * frame and comparison: over all t, the largest standard deviation of the differences of at least t, but at least 10.
 *
 * A pixel that has neither changed nor is unusual is background. One that has changed is judged by its table of
 * changes, one that is only unusual by its table of values: with S0 the share of the entries near the pixel, S1 the
 * share of their background, and the prior probability of background, it is foreground where 2 * S1 * prior <= S0.
 * While a table knows too little, changed pixels are foreground and unusual ones background.
 *
 * What counts as near is asymmetric, and meant so. Changes are compared by their first value alone, that of the
 * previous frame. C1 forms compare the first byte of an entry with the pixel, the second with its right neighbour, the
 * third, mostly 0, with the neighbour of that one: the next bytes in memory at the end of a row, the last pixel
 * repeated at the end of the image. */
OrvStatus orviForegroundHistogram_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvForegroundHistogramState* state);
OrvStatus orviForegroundHistogram_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvForegroundHistogramState* state);

/* Learns the frame that was judged last. mask: 0 where the caller takes a pixel for background, in the end; dst: the
 * reference image, which is the background. A pixel that has changed is entered into its table of changes, any other
 * into its table of values (and into both while the first knows too little). Tables learn at the rate 0.1 until they
 * know more than 0.9 of what a pixel shows, then at 0.005. In the reference image, background pixels that have neither
 * changed nor are unusual move a tenth of the way to the frame (truncated), other background pixels take its value. */
OrvStatus orviForegroundHistogramUpdate_8u_C1R(const uint8_t* src, int32_t srcStep, const uint8_t* mask,
                                               int32_t maskStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                               OrvForegroundHistogramState* state);
OrvStatus orviForegroundHistogramUpdate_8u_C3R(const uint8_t* src, int32_t srcStep, const uint8_t* mask,
                                               int32_t maskStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                               OrvForegroundHistogramState* state);

OrvStatus orviForegroundHistogramFree_8u_C1R(OrvForegroundHistogramState* state);
OrvStatus orviForegroundHistogramFree_8u_C3R(OrvForegroundHistogramState* state);

#ifdef __cplusplus
}
#endif
#endif

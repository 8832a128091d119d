/* Foreground of a stream of frames: every pixel is modelled by a mixture of a few Gaussians that follows the stream (Z.
 * Zivkovic, "Improved Adaptive Gaussian Mixture Model for Background Subtraction", 2004; shadows after A. Prati, I.
 * Mikic, M. Trivedi and R. Cucchiara, "Detecting Moving Shadows: Algorithms and Evaluation", 2003).
 *
 *   OrvFGMMModel model = {500, 5, 15, 4, 75, 16, 0.9f, 9, 0.05f, 127, 1, 0.5f};
 *   orviFGMMGetBufferSize_8u_C3R(size, 5, &bytes);
 *   OrvFGMMState* state = malloc(bytes);                                    // any address will do
 *   orviFGMMInit_8u_C3R(size, 5, &model, state);
 *   for each frame: orviFGMMForeground_8u_C3R(frame, frameStep, mask, maskStep, size, state, NULL, -1);
 *   orviFGMMBackground_8u_C3R(picture, pictureStep, size, state);           // as it is now believed to be
 *
 * All memory is the caller's buffer; it must stay where it was initialised. Size and numGauss must be the same in all
 * calls, else the modes of pixels get mixed up; nothing checks that, and a larger image than at the start doesn't fit.
 * One call at a time for each state, on the calling thread. Results are the same on every processor.
 */
#ifndef ORVCV_MIXTURE_H
#define ORVCV_MIXTURE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Distances are Euclidean in the colour space of the frames, weights of a pixel's modes sum up to about 1. */
typedef struct {
  int32_t numFrames;     /* history: the automatic learning rate falls to 1 / numFrames */
  int32_t numGauss;      /* modes a pixel, from 1 to the maximum given to the initialisation */
  float varInit;         /* variance of a new mode */
  float varMin, varMax;  /* limits of a variance */
  float varThreshold;    /* a pixel is background within this squared distance, in variances, of a background mode */
  float bgRatio;         /* modes are background until their weights, from the largest, sum up to this */
  float genThreshold;    /* a pixel belongs to a mode within this squared distance, in variances */
  float complexityPrior; /* times the learning rate, what a weight loses a frame: removes weak modes */
  uint8_t shadowValue;   /* result of a shadow */
  uint8_t shadowEnable;  /* 0: shadows are foreground */
  float shadowTau;       /* the darkest shadow, as a part of the background's brightness */
} OrvFGMMModel;

/* The caller's buffer. */
typedef struct OrvFGMMState OrvFGMMState;

/* Bytes of a state: with n = width * height, g = maxNGauss and r(v) = v rounded up to a multiple of 32,
 * r(8 g n) + r(12 g n) + r(12 g width) + r(n) + 416. The count of a pixel's modes has 8 bits.
 * Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize, orvStatusBadArg (maxNGauss below 1). */
OrvStatus orviFGMMGetBufferSize_8u_C3R(OrvSize roiSize, int32_t maxNGauss, int32_t* bufferSize);

/* Starts a state: clears the buffer and takes the model, except that numGauss becomes maxNGauss.
 * Returns, in order: orvStatusNullPtr (model, state), orvStatusSize, orvStatusBadArg (maxNGauss below 1). */
OrvStatus orviFGMMInit_8u_C3R(OrvSize roiSize, int32_t maxNGauss, const OrvFGMMModel* model, OrvFGMMState* state);

/* Learns a frame and tells its foreground: dst is 255 for foreground, 0 for background, model.shadowValue for shadow.
 *
 * model: replaces the state's from this frame on; null keeps it. learningRate: how much the frame counts, 0 to 1; below
 * 0, and always for the first frame, it is 1 / min(2 * frames so far, numFrames).
 *
 * Each pixel x, modes from the heaviest, with a = learningRate:
 *   - weight = weight * (1 - a) - a * complexityPrior
 *   - the first mode with |mean - x|^2 < genThreshold * variance matches: weight += a, k = a / weight,
 *     mean -= k * (mean - x), variance += k * (|mean - x|^2 - variance) within its limits, and it goes before modes
 * that aren't heavier. Up to it, a mode within varThreshold variances makes the pixel background if those before it
 *     weigh less than bgRatio in all
 *   - weights below a * complexityPrior become 0: the mode's place stays in use, but one mode less at the end of the
 *     list is looked at, or scaled. The others are divided by the sum of all
 *   - if none matched, x becomes the mean of a mode of weight a and variance varInit, in place of the last mode if all
 *     numGauss are in use, and the others are multiplied by 1 - a. A single mode has weight 1
 *   - a pixel that isn't background is a shadow if, for a mode up to the first that lifts the sum of the weights above
 *     bgRatio, r = x * mean / |mean|^2 is from shadowTau to 1, and |r * mean - x|^2 < variance * varThreshold * r^2.
 * The search ends at a black mean
 *
 * srcStep and dstStep are not compared with the width.
 * Returns, in order: orvStatusNullPtr (src, dst, state), orvStatusStep (srcStep, dstStep below 1), orvStatusSize,
 * orvStatusBadArg (model's numGauss below 1 or above the maximum). */
OrvStatus orviFGMMForeground_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    OrvFGMMState* state, const OrvFGMMModel* model, double learningRate);

/* The background: of each pixel the weighted mean of its modes, from the heaviest to the first that lifts the sum of
 * the weights above bgRatio, rounded to nearest, halves to even. Black where nothing was learnt. Returns, in order:
 * orvStatusNullPtr (dst, state), orvStatusStep (dstStep below 1), orvStatusSize. */
OrvStatus orviFGMMBackground_8u_C3R(uint8_t* dst, int32_t dstStep, OrvSize roiSize, const OrvFGMMState* state);

#ifdef __cplusplus
}
#endif
#endif

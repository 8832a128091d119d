/* Stages of boosted cascades on rectangle features (P. Viola and M. Jones, "Rapid object detection using a boosted
 * cascade of simple features", 2001; tilted features after R. Lienhart and J. Maydt, 2002).
 *
 * A classifier is one stage: features, each a weighted sum of rectangle sums that is compared with a threshold times
 * the local deviation and votes accordingly. A stage is applied at every pixel of a region whose mask byte isn't 0; a
 * pixel whose votes fall short of the stage's threshold is cleared from the mask. To run a cascade, make the tables and
 * the deviation image (orvcv/integral.h), set the mask to 1, apply stage after stage to the same mask; the survivors
 * are the places where the object's window begins. A classifier has one size: for other scales scale the image, or make
 * classifiers with scaled rectangles. examples/detect/ is a whole program.
 *
 * Types: _32s classifiers hold int32 weights, thresholds and votes, _32f floats. Free, size and tilt functions must be
 * those of the type that the classifier was made with.
 *
 * Threads: calling thread only. A classifier is only read when it is applied, so threads may share it.
 */
#ifndef ORVCV_HAAR_H
#define ORVCV_HAAR_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Made by an InitAlloc function, released by the matching Free. */
typedef struct OrvHaarClassifier OrvHaarClassifier;

/* Makes a classifier of `featureCount` features (0 is allowed). Feature i has rectsPerFeature[i] rectangles, which
 * follow each other in `rects` and `weights`, and thresholds[i], valuesBelow[i], valuesAbove[i]. Rectangles are in
 * pixels from the window's corner (an upright one covers x to x + width - 1, y to y + height - 1).
 *
 * Upright features are evaluated in this order: those with two rectangles, then three, then all others, each in input
 * order; votes of floats add up so. Tilted classifiers keep the input order. A tilted rectangle stands on its corner:
 * from the upper tip (x, y), width goes down to the right, height down to the left.
 *
 * Returns, in order: orvStatusNullPtr, orvStatusSize (featureCount below 0), orvStatusSize (a count of rectangles below
 * 1), orvStatusBadArg (a rectangle with x or y below 0, width or height below 1), orvStatusNoMem. Tilted: the
 * rectangles are tested last, x + 1 below height fails too, and *state is null after such a failure. */
OrvStatus orviHaarClassifierInitAlloc_32s(OrvHaarClassifier** state, const OrvRect* rects, const int32_t* weights,
                                          const int32_t* thresholds, const int32_t* valuesBelow,
                                          const int32_t* valuesAbove, const int32_t* rectsPerFeature,
                                          int32_t featureCount);
OrvStatus orviHaarClassifierInitAlloc_32f(OrvHaarClassifier** state, const OrvRect* rects, const float* weights,
                                          const float* thresholds, const float* valuesBelow, const float* valuesAbove,
                                          const int32_t* rectsPerFeature, int32_t featureCount);
OrvStatus orviTiltedHaarClassifierInitAlloc_32s(OrvHaarClassifier** state, const OrvRect* rects, const int32_t* weights,
                                                const int32_t* thresholds, const int32_t* valuesBelow,
                                                const int32_t* valuesAbove, const int32_t* rectsPerFeature,
                                                int32_t featureCount);
OrvStatus orviTiltedHaarClassifierInitAlloc_32f(OrvHaarClassifier** state, const OrvRect* rects, const float* weights,
                                                const float* thresholds, const float* valuesBelow,
                                                const float* valuesAbove, const int32_t* rectsPerFeature,
                                                int32_t featureCount);

/* Releases a classifier. Returns orvStatusNullPtr for null. */
OrvStatus orviHaarClassifierFree_32s(OrvHaarClassifier* state);
OrvStatus orviHaarClassifierFree_32f(OrvHaarClassifier* state);

/* The window's size: how far the rectangles reach to the right and down, 0 x 0 without features. A table of
 * (W + 1) x (H + 1) entries serves a region of (W - width + 1) x (H - height + 1) pixels. (A clockwise tilted rectangle
 * also reaches to the left, to column x - height.) Returns orvStatusNullPtr (state, size). */
OrvStatus orviGetHaarClassifierSize_32s(const OrvHaarClassifier* state, OrvSize* size);
OrvStatus orviGetHaarClassifierSize_32f(const OrvHaarClassifier* state, OrvSize* size);

/* Turns chosen features of an upright classifier by 45 degrees, once: mask[i] not 0 chooses feature i of the input.
 * `flag` not 0 turns a rectangle clockwise about its upper left corner; 0 counterclockwise, with the left side's corner
 * (x, y + height) as the lowest. Not while other threads use the classifier. A classifier with turned features is to be
 * applied by the mixed functions.
 * Returns, in order: orvStatusNullPtr (mask, state), orvStatusBadArg (the classifier has tilted features already). */
OrvStatus orviTiltHaarFeatures_32s(const uint8_t* mask, int32_t flag, OrvHaarClassifier* state);
OrvStatus orviTiltHaarFeatures_32f(const uint8_t* mask, int32_t flag, OrvHaarClassifier* state);

/* Applies a classifier to a table of sums. src is the table's entry for the window at the region's first pixel; norm is
 * the deviation at each pixel; *positive is the number of survivors. For a pixel with n = norm:
 *
 *   response = sum of weight * (S(right, bottom) - S(left, bottom) - S(right, top) + S(left, top)) of the rectangles
 *   votes   += threshold * n > response ? valueBelow : valueAbove                             for each feature in order
 *   stageThreshold > votes: the mask byte becomes 0; else it keeps its value
 *
 *   _32s_C1RSfs  in int32 that wraps; no scale is read
 *   _32s32f_C1R  a float classifier; rectangle sums in int32 that wraps, then converted; the rest in floats
 *   _32f_C1R     in floats, in the order written
 *
 * Entries that features reach outside of the table are not checked. Between the first and the last pixel of a row that
 * is not cleared, entries of cleared pixels may be read; others are not, so a cleared margin keeps features inside.
 *
 * Returns, in order: orvStatusNullPtr (src, norm, mask, positive, state), orvStatusSize, orvStatusStep (a step below
 * its row of the region), orvStatusStepAlign (srcStep or normStep no multiple of 4), orvStatusNoMem (32 bytes a
 * rectangle are allocated for the call). */
OrvStatus orviApplyHaarClassifier_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* norm, int32_t normStep,
                                             uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                             int32_t stageThreshold, const OrvHaarClassifier* state);
OrvStatus orviApplyHaarClassifier_32s32f_C1R(const int32_t* src, int32_t srcStep, const float* norm, int32_t normStep,
                                             uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                             float stageThreshold, const OrvHaarClassifier* state);
OrvStatus orviApplyHaarClassifier_32f_C1R(const float* src, int32_t srcStep, const float* norm, int32_t normStep,
                                          uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                          float stageThreshold, const OrvHaarClassifier* state);

/* The same with a tilted table besides, for the features that are tilted; their corner (0, 0) is entry (1, 1) of
 * `tilt`. Nothing is allocated. _32s_C1RSfs: rectangle sums in int32 that wraps, weighted and summed in 64 bits and
 * shifted left by -scaleFactor (modulo 64), compared with threshold * n in 64 bits; votes in int32 that wraps.
 *
 * Returns, in order: orvStatusNullPtr (src, norm, mask, tilt, positive, state), orvStatusSize, orvStatusStep,
 * orvStatusStepAlign (srcStep, tiltStep, normStep), orvStatusBadArg (scaleFactor above 0). */
OrvStatus orviApplyMixedHaarClassifier_32s_C1RSfs(const int32_t* src, int32_t srcStep, const int32_t* tilt,
                                                  int32_t tiltStep, const int32_t* norm, int32_t normStep,
                                                  uint8_t* mask, int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                                  int32_t stageThreshold, const OrvHaarClassifier* state,
                                                  int32_t scaleFactor);
OrvStatus orviApplyMixedHaarClassifier_32s32f_C1R(const int32_t* src, int32_t srcStep, const int32_t* tilt,
                                                  int32_t tiltStep, const float* norm, int32_t normStep, uint8_t* mask,
                                                  int32_t maskStep, OrvSize roiSize, int32_t* positive,
                                                  const OrvHaarClassifier* state, float stageThreshold);
OrvStatus orviApplyMixedHaarClassifier_32f_C1R(const float* src, int32_t srcStep, const float* tilt, int32_t tiltStep,
                                               const float* norm, int32_t normStep, uint8_t* mask, int32_t maskStep,
                                               OrvSize roiSize, int32_t* positive, const OrvHaarClassifier* state,
                                               float stageThreshold);

#ifdef __cplusplus
}
#endif
#endif

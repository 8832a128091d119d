/* Sparse optical flow: points tracked from one image to the next by Lucas-Kanade steps from coarse to fine (B. D. Lucas
 * and T. Kanade, "An Iterative Image Registration Technique with an Application to Stereo Vision", 1981; J.-Y. Bouguet,
 * "Pyramidal Implementation of the Lucas Kanade Feature Tracker", 2000).
 *
 * The caller gives both images as pyramids of at least maxLevel + 1 levels, with images, sizes, steps and rates filled
 * in; sizes and rates are taken from pyramid1. A window of winSize x winSize pixels around a point is compared between
 * the images; winSize may be even. Where a window reaches beyond a side, the part inside counts.
 *
 * Points. prevPoints and nextPoints are in coordinates of level 0. On entry nextPoints holds the first estimate,
 * normally a copy of prevPoints. After the call, status[i] tells what became of point i:
 *
 *   0      tracked to level 0. nextPoints[i] is its place, error[i] the root of the mean squared difference of the
 *          windows, without their last row and column, in gray levels
 *   k > 0  lost at level k - 1: flat, or with one direction only (the determinant of its 2x2 system is below 2^-52), or
 *          moved out of the image. error[i] is 0, and nextPoints[i] as it was before that level; if no pixel of the
 *          windows was inside both images, it is the last estimate
 *
 * A level is iterated until a step is shorter than `threshold` pixels, until two steps cancel each other (then half of
 * the last one is taken back), or maxIter times.
 *
 * Each level that is smaller than the state's ROI in width and height, from the coarsest on, is derived as a whole
 * (Scharr filter, replicated border); from the first one that isn't, all windows are derived on their own. There, the
 * scale from level to level is 1 / rates[1] if maxLevel is above 1, and 1 else.
 *
 * Results are the same on every processor. 8u windows have 7 fractional bits and are rounded; sums of products are
 * whole numbers of 32 bits along a row, which wrap. 16u and 32f windows are floats, sums are in double precision.
 */
#ifndef ORVCV_OPTICAL_FLOW_H
#define ORVCV_OPTICAL_FLOW_H
#include "orvcv/pyramid.h"
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Work memory of the tracker. One state serves any number of calls, one at a time. */
typedef struct OrvOptFlowPyrLKState OrvOptFlowPyrLKState;

/* Makes a state for windows of winSize pixels and levels derived as a whole up to, but not including, roiSize. The
 * library's thread count must not rise while the state lives. `hint` has no effect.
 * Returns, in order: orvStatusNullPtr (state), orvStatusSize (winSize, height, width below 1), orvStatusNoMem. */
OrvStatus orviOpticalFlowPyrLKInitAlloc_8u_C1R(OrvOptFlowPyrLKState** state, OrvSize roiSize, int32_t winSize,
                                               int32_t hint);
OrvStatus orviOpticalFlowPyrLKInitAlloc_16u_C1R(OrvOptFlowPyrLKState** state, OrvSize roiSize, int32_t winSize,
                                                int32_t hint);
OrvStatus orviOpticalFlowPyrLKInitAlloc_32f_C1R(OrvOptFlowPyrLKState** state, OrvSize roiSize, int32_t winSize,
                                                int32_t hint);

/* Tracks numPoints points. The state must be of the same element type; nothing checks that, nor the pyramids.
 * Returns, in order: orvStatusNullPtr (any pointer), orvStatusSize (numPoints or winSize below 1, or winSize not that
 * of the state), orvStatusBadArg (maxLevel below 0, maxIter below 1, threshold below 0). A lost point is no failure. */
OrvStatus orviOpticalFlowPyrLK_8u_C1R(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2,
                                      const OrvPoint32f* prevPoints, OrvPoint32f* nextPoints, int8_t* status,
                                      float* error, int32_t numPoints, int32_t winSize, int32_t maxLevel,
                                      int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state);
OrvStatus orviOpticalFlowPyrLK_16u_C1R(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2,
                                       const OrvPoint32f* prevPoints, OrvPoint32f* nextPoints, int8_t* status,
                                       float* error, int32_t numPoints, int32_t winSize, int32_t maxLevel,
                                       int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state);
OrvStatus orviOpticalFlowPyrLK_32f_C1R(const OrvPyramid* pyramid1, const OrvPyramid* pyramid2,
                                       const OrvPoint32f* prevPoints, OrvPoint32f* nextPoints, int8_t* status,
                                       float* error, int32_t numPoints, int32_t winSize, int32_t maxLevel,
                                       int32_t maxIter, float threshold, OrvOptFlowPyrLKState* state);

/* Returns orvStatusNullPtr for null. */
OrvStatus orviOpticalFlowPyrLKFree_8u_C1R(OrvOptFlowPyrLKState* state);
OrvStatus orviOpticalFlowPyrLKFree_16u_C1R(OrvOptFlowPyrLKState* state);
OrvStatus orviOpticalFlowPyrLKFree_32f_C1R(OrvOptFlowPyrLKState* state);

#ifdef __cplusplus
}
#endif
#endif

/* Motion history: an image of the times at which each pixel moved last (A. F. Bobick and J. W. Davis, "The Recognition
 * of Human Movement Using Temporal Templates", 2001).
 */
#ifndef ORVCV_MOTION_HISTORY_H
#define ORVCV_MOTION_HISTORY_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Pixels that move, where the silhouette isn't 0, take the timestamp. Of the others, those older than `duration` become
 * 0:
 *
 *   mhi = silhouette != 0 ? timestamp : mhi < timestamp - duration ? 0 : mhi
 *
 * The difference is rounded to single precision once. A pixel exactly at it stays, and so does a NaN. A NaN silhouette
 * moves. mhi holds zeros before the first call; timestamps rise from call to call, in any unit. 32f: the silhouette may
 * be mhi itself; images must not overlap otherwise.
 *
 * Returns, in order: orvStatusNullPtr (silhouette, mhi), orvStatusSize, orvStatusStep (silhouetteStep, mhiStep below a
 * row), orvStatusStepAlign (silhouetteStep, mhiStep no whole number of elements), orvStatusOutOfRange (duration below
 * 0).
 *
 * Threads: one. */
OrvStatus orviUpdateMotionHistory_8u32f_C1IR(const uint8_t* silhouette, int32_t silhouetteStep, float* mhi,
                                             int32_t mhiStep, OrvSize roiSize, float timestamp, float duration);
OrvStatus orviUpdateMotionHistory_16u32f_C1IR(const uint16_t* silhouette, int32_t silhouetteStep, float* mhi,
                                              int32_t mhiStep, OrvSize roiSize, float timestamp, float duration);
OrvStatus orviUpdateMotionHistory_32f_C1IR(const float* silhouette, int32_t silhouetteStep, float* mhi, int32_t mhiStep,
                                           OrvSize roiSize, float timestamp, float duration);

#ifdef __cplusplus
}
#endif
#endif

/* Straight lines in a binary image (P. Hough, US patent 3069654, 1962; R. O. Duda and P. E. Hart, "Use of the Hough
 * Transformation to Detect Lines and Curves in Pictures", 1972).
 *
 * A feature pixel is a byte that isn't 0. A line is x * cos(theta) + y * sin(theta) = rho, theta in radians from 0 to
 * 3.14159, rho in pixels, also negative; the pixel (0, 0) is the first one of the region. `delta` has the steps of the
 * accumulator in both: with W and H the sides,
 *
 *   numRho = (float)(2 * (W + H) + 1) / rho          numAngle = 3.14159 / theta + 1     (each truncated)
 *
 * Scratch has the size that the size function reports for the same region and delta, at any address.
 *
 * Threads. The calling thread only; any number of threads may call at once, with a buffer each. Results do not depend
 * on the processor or the variant.
 */
#ifndef ORVCV_HOUGH_H
#define ORVCV_HOUGH_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Scratch of the two functions below: H * (4 * W + 64) + 16 * maxLineCount + 8 * numAngle + 16 * numRho + 288. If that
 * is above 2147483647, orvStatusSizeOverflowWarn is returned and *bufferSize has wrapped; no memory serves then.
 * Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize, orvStatusBadArg (delta not above 0). */
OrvStatus orviHoughLineGetSize_8u_C1R(OrvSize roiSize, OrvPointPolar delta, int32_t maxLineCount, int32_t* bufferSize);

/* The strongest lines: every feature pixel votes for a distance at every angle, and peaks of more than `threshold`
 * votes are listed, most votes first, equal ones by rising angle, then rising distance. A peak has more votes than its
 * neighbours at the smaller distance and the smaller angle, and no fewer than the other two; angles don't wrap around.
 * At most maxLineCount lines are kept, the strongest; orvStatusOk also if there were more.
 *
 * With c and s the cosine and sine times 1024 / rho, truncated, and angles added up in single precision, the distance
 * of a pixel is ((v + 512) >> 10) cells, v being (float)x * (float)c + (float)y * (float)s to nearest.
 *
 * Returns, in order: orvStatusNullPtr (src, lines, lineCount, buffer), orvStatusStep (srcStep below 1), orvStatusSize
 * (roiSize, maxLineCount), orvStatusBadArg (delta.rho outside 0 to W + H, delta.theta outside 0 to 3.14159, both
 * without 0; threshold below 1). */
OrvStatus orviHoughLine_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, OrvPointPolar delta,
                                  int32_t threshold, OrvPointPolar* lines, int32_t maxLineCount, int32_t* lineCount,
                                  uint8_t* buffer);

/* The same for a part of the accumulator: lines from dstRoi[0] to dstRoi[1], bounds included. Votes elsewhere are not
 * counted, so pixels beside the part play no role in what is a peak. The angles in dstRoi are clamped to 0..3.14159,
 * in place. Distances are whole-number sums here: ((c * x + 512 + s * y) >> 10) cells.
 * Returns, in order: what orviHoughLine_8u32f_C1R does, dstRoi among the pointers; orvStatusRange (a lower bound above
 * its upper one), which sets *lineCount to 0. */
OrvStatus orviHoughLine_Region_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, OrvPointPolar* lines,
                                         OrvPointPolar* dstRoi, int32_t maxLineCount, int32_t* lineCount,
                                         OrvPointPolar delta, int32_t threshold, uint8_t* buffer);

/* State of the probabilistic detector, in memory of the caller at any address; constant once made, so any number of
 * threads may share it. */
typedef struct OrvHoughProbState OrvHoughProbState;

/* Sizes: 8 * numAngle + 16 bytes of state, 9 * W * H + 4 * numRho * numAngle of scratch, in 32 bits that wrap.
 * Returns, in order: orvStatusNullPtr (stateSize, bufferSize), orvStatusSize, orvStatusBadArg (delta not above 0). */
OrvStatus orviHoughProbLineGetSize_8u_C1R(OrvSize roiSize, OrvPointPolar delta, int32_t* stateSize,
                                          int32_t* bufferSize);

/* Makes the state. `hint` is stored and has no effect.
 * Returns, in order: orvStatusSize, orvStatusBadArg (delta not above 0), orvStatusNullPtr (state). */
OrvStatus orviHoughProbLineInit_8u32f_C1R(OrvSize roiSize, OrvPointPolar delta, int32_t hint, OrvHoughProbState* state);

/* Line segments (after N. Kiryati, Y. Eldar and A. M. Bruckstein, "A Probabilistic Hough Transform", 1991; J. Matas,
 * C. Galambos and J. Kittler, "Robust Detection of Lines Using the Progressive Probabilistic Hough Transform", 2000).
 *
 * Feature pixels vote one at a time, in a random order that is the same in every call. When a cell reaches `threshold`
 * votes, its line is walked from the pixel in both directions, until the image ends or more than lineGap pixels in a
 * row are missing. What was walked is removed from the image; if the segment spans lineLength pixels or more in x or y,
 * its votes are taken back and it is listed: x0, y0, x1, y1. roiSize is that of the state. With the first segment that
 * doesn't fit into the list the function ends with orvStatusLinesFullWarn; *lineCount then is maxLineCount.
 *
 * lineCount must not be null. Returns, in order: orvStatusNullPtr (src, lines, buffer, state), orvStatusSize,
 * orvStatusBadArg (threshold below 1, lineLength or lineGap below 0), orvStatusLinesFullWarn. */
OrvStatus orviHoughProbLine_8u32f_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, int32_t threshold,
                                      int32_t lineLength, int32_t lineGap, int32_t* lines, int32_t maxLineCount,
                                      int32_t* lineCount, uint8_t* buffer, const OrvHoughProbState* state);

#ifdef __cplusplus
}
#endif
#endif

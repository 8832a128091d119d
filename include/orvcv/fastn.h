/* FastN corners: the segment test on rings of radius 1 to 9, with score, suppression, orientation and a list form.
 *
 * A pixel of value c is a corner when N consecutive points of the ring around it are all brighter than c + t, or all
 * darker than c - t; t is the threshold, truncated to a whole number. More than half of the ring is asked for, so no
 * pixel is both. (E. Rosten, T. Drummond, "Machine learning for high-speed corner detection", 2006: radius 3, N 9.)
 *
 *   radius        1       2        3        5         7         9
 *   ring points   8       12       16       28        40        52
 *   N             5 to 7  7 to 11  9 to 15  15 to 27  21 to 39  27 to 51
 *
 * Rings start below the pixel and run through left, above and right. The thirteenth point of radius 9 is (-9, -1), the
 * same as the fifteenth, where symmetry would have (-9, 1).
 *
 * mode is a sum of bits: orvFastNCorner must be set, orvFastNNms needs orvFastNScore.
 *
 *   orvFastNScore        the largest threshold below which the pixel stays a corner of its class, plus 1: the largest,
 *                        over all arcs of N points, of the smallest difference in the arc
 *   orvFastNNms          only corners whose score is not below that of any of their eight neighbours are kept; equal
 *                        neighbours are both kept. Neighbours outside the region count where they can be tested
 *   orvFastNOrientation  the direction of the ring's weight: with d(i) the differences of the ring points from c, and
 *                        a(i) = i * 6.2831855f / points, S = sum of d(i) sin a(i), C = sum of d(i) cos a(i), the angle
 *                        is atan2(C, S), in [0, 2 pi); its bin is trunc(angle * numOrient / (2 pi)) & 63. The last bit
 *                        of a sum, and so a bin at its very edge, depends on the variant and on the mathematics library
 *
 * A state is made by orviFastNInit in the caller's memory, of orviFastNGetSize bytes at any address, and never changes;
 * any number of threads may use it, with one buffer each. It holds a pointer into the library, so it can't be stored.
 * All functions work on the calling thread.
 */
#ifndef ORVCV_FASTN_H
#define ORVCV_FASTN_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Bits of mode. */
enum { orvFastNOrientation = 1, orvFastNNms = 2, orvFastNCorner = 4, orvFastNScore = 32 };

/* One corner of a list. */
typedef struct {
  int32_t x, y;
  int32_t cornerType;  /* 1: the ring is darker, 0: brighter */
  int32_t orientIndex; /* bin, or -1 */
  float angle;         /* lower end of the bin in degrees, or -1 */
  float score;         /* or -1 */
} OrvCornerFastN;

/* Bytes of a state. roiSize: the whole image; dataType: orvData8u; numChannels: 1; numOrient: 1 to 64 with
 * orvFastNOrientation, else anything.
 * Returns, in order: orvStatusNullPtr (stateSize), orvStatusSize, orvStatusDataType, orvStatusChannels, orvStatusBadArg
 * (mode), orvStatusOutOfRange (numOrient), orvStatusBadArg (radius), orvStatusOutOfRange (N). */
OrvStatus orviFastNGetSize(OrvSize roiSize, int32_t radius, int32_t N, int32_t numOrient, int32_t mode,
                           OrvDataType dataType, int32_t numChannels, int32_t* stateSize);

/* Makes a state. Returns, in order: orvStatusNullPtr (state), orvStatusSize, orvStatusThreshold (negative or NaN), then
 * as orviFastNGetSize. */
OrvStatus orviFastNInit(OrvSize roiSize, int32_t radius, int32_t N, int32_t numOrient, float threshold, int32_t mode,
                        OrvDataType dataType, int32_t numChannels, uint8_t* state);

/* Bytes of the buffer for regions of dstRoiSize: 6 * (width + 2) + 624.
 * Returns, in order: orvStatusNullPtr (state, bufferSize), orvStatusSize. */
OrvStatus orviFastNGetBufferSize(const uint8_t* state, OrvSize dstRoiSize, int32_t* bufferSize);

/* Finds the corners of a region.
 *
 * src points to pixel (0, 0) of the whole image, whatever the region is; srcRoiOffset is the first pixel of the region.
 * dstCorner and dstScore hold dstRoiSize pixels: 0, or at a corner 64 (brighter ring) or 128 (darker ring) plus the bin
 * of its orientation, and its score. dstScore is used with orvFastNScore only. Pixels nearer than the radius to a side
 * of the image are no corners. *numCorners receives the number of corners.
 *
 * A region that sticks out of the image is clipped and the result is orvStatusRoiClippedWarn. After a negative offset
 * the first pixel of dstCorner and dstScore stands for the first pixel inside the image. If nothing is left, nothing is
 * written, *numCorners neither. Steps are not measured. The outputs must not overlap src.
 *
 * Returns, in order: orvStatusNullPtr (src, dstCorner, state, buffer, numCorners), orvStatusSize, orvStatusContext (not
 * a state), orvStatusDataType, orvStatusChannels, orvStatusSize (of the state), orvStatusBadArg (mode),
 * orvStatusOutOfRange (numOrient), orvStatusNullPtr (dstScore), orvStatusBadArg (radius), orvStatusOutOfRange (N);
 * orvStatusRoiClippedWarn, orvStatusOk. */
OrvStatus orviFastN_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dstCorner, int32_t dstCornerStep,
                           uint8_t* dstScore, int32_t dstScoreStep, int32_t* numCorners, OrvPoint srcRoiOffset,
                           OrvSize dstRoiSize, const uint8_t* state, uint8_t* buffer);

/* Lists the corners of such images, row by row from the left, at most maxLen. *numCorners receives the listed ones and
 * those counted beyond: from the row below the last listed corner on, in its column first behind it, then in whole
 * rows. Above maxLen it tells that the list was too short. With maxLen 0 all corners are counted.
 * srcScore is read with orvFastNScore only.
 * Returns, in order: orvStatusNullPtr (srcCorner, dstVec, numCorners, state), orvStatusSize (the region, maxLen below
 * 0), orvStatusContext, orvStatusDataType, orvStatusChannels, orvStatusBadArg (mode), orvStatusOutOfRange (numOrient),
 * orvStatusNullPtr (srcScore). */
OrvStatus orviFastN2DToVec_8u(const uint8_t* srcCorner, int32_t srcCornerStep, const uint8_t* srcScore,
                              int32_t srcScoreStep, OrvCornerFastN* dstVec, OrvSize roiSize, int32_t maxLen,
                              int32_t* numCorners, const uint8_t* state);

#ifdef __cplusplus
}
#endif
#endif

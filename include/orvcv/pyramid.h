/* Image pyramids: the dyadic steps of P. J. Burt and E. H. Adelson ("The Laplacian Pyramid as a Compact Image Code",
 * 1983), levels for any rate from 1 to 10, and steps between such levels with a kernel of the caller's.
 *
 * A pyramid for optical flow. The functions of orvcv/optical_flow.h take an OrvPyramid with all arrays filled in.
 * orviPyramidInitAlloc makes one and fills in sizes and rates; the caller fills in images and steps, level by level,
 * for example (8u, one channel, each level half the one before):
 *
 *   const int16_t kernel[5] = {1, 4, 6, 4, 1};
 *   OrvPyramid* p;
 *   OrvPyramidDownState* down;
 *   orviPyramidInitAlloc(&p, 3, size, 2.f);
 *   orviPyramidLayerDownInitAlloc_8u_C1R(&down, size, 2.f, kernel, 5, 2);
 *   p->images[0] = frame, p->steps[0] = frameStep;
 *   for (int i = 1; i <= p->level; ++i) {
 *     p->images[i] = ...memory for p->roi[i]..., p->steps[i] = p->roi[i].width;
 *     orviPyramidLayerDown_8u_C1R(p->images[i - 1], p->steps[i - 1], p->roi[i - 1], p->images[i], p->steps[i],
 *                                 p->roi[i], down);
 *   }
 *
 * At rate 2, orviPyrDown_Gauss5x5_8u_C1R serves as well, and faster: p->roi[i] are the sizes it makes.
 *
 * In all functions a width counts pixels, a step bytes. Source and destination must not overlap. Results are the same
 * on every processor and with every number of threads. All functions may be called from any number of threads at once,
 * with a buffer or a state each.
 */
#ifndef ORVCV_PYRAMID_H
#define ORVCV_PYRAMID_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Down by two, in width and height, rounded up: (w + 1) / 2 x (h + 1) / 2 pixels.
 *
 *   dst(x, y) = (1 4 6 4 1) x (1 4 6 4 1) at src(2x, 2y), / 256
 *
 * Pixels beyond a side are those mirrored about the outermost one, which isn't repeated. 8u and 8s: rounded, halves up.
 * 32f: in single precision, rows first, from left to right, then columns as 6 r2 + 4 (r1 + r3) + r0 + r4; rows end with
 * 6 p0 + 8 p1 + 2 p2 and its reflection (odd widths) or 7 p[w-2] + 4 (p[w-3] + p[w-1]) + p[w-4] (even widths). Images
 * of less than three rows or columns: the two sums along the longer side are added and divided by 32.
 *
 * `buffer` has the size that orviPyrDownGetBufSize_Gauss5x5 reports for the width, at any address.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize, orvStatusStep (srcStep, then dstStep below a
 * row), orvStatusStepAlign (32f). */
OrvStatus orviPyrDown_Gauss5x5_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, uint8_t* buffer);
OrvStatus orviPyrDown_Gauss5x5_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, uint8_t* buffer);
OrvStatus orviPyrDown_Gauss5x5_8s_C1R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                      uint8_t* buffer);
OrvStatus orviPyrDown_Gauss5x5_8s_C3R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                      uint8_t* buffer);
OrvStatus orviPyrDown_Gauss5x5_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       uint8_t* buffer);
OrvStatus orviPyrDown_Gauss5x5_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       uint8_t* buffer);

/* Up by two: 2w x 2h pixels. Along rows, then columns, with p of w or h elements:
 *
 *   even places 2i      p[i-1] + 6 p[i] + p[i+1]        odd places 2i + 1      4 (p[i] + p[i+1])
 *
 * and / 64. p[-1] is p[1], but p[n] is p[n-1]: the ends are unlike, as a mirror in the doubled grid makes them. So the
 * first place is 6 p[0] + 2 p[1], the last two are 7 p[n-1] + p[n-2] and 8 p[n-1]. 8u and 8s: rounded, halves up. 32f:
 * in single precision in the order written. In images of one row or column the sums along it are divided by 8 and
 * written twice.
 *
 * Buffer and statuses as above, with orviPyrUpGetBufSize_Gauss5x5. */
OrvStatus orviPyrUp_Gauss5x5_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer);
OrvStatus orviPyrUp_Gauss5x5_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer);
OrvStatus orviPyrUp_Gauss5x5_8s_C1R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer);
OrvStatus orviPyrUp_Gauss5x5_8s_C3R(const int8_t* src, int32_t srcStep, int8_t* dst, int32_t dstStep, OrvSize roiSize,
                                    uint8_t* buffer);
OrvStatus orviPyrUp_Gauss5x5_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     uint8_t* buffer);
OrvStatus orviPyrUp_Gauss5x5_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     uint8_t* buffer);

/* Bytes of the buffer of a step; roiWidth is that of its source, and dataType doesn't count.
 *   down  ((roiWidth * 4 * channels + 15) & ~15) * 6 + 64
 *   up    ((roiWidth * 8 * channels + 15) & ~15) * 3 + 64
 * Returns, in order: orvStatusNullPtr, orvStatusSize, orvStatusChannels (neither 1 nor 3), orvStatusDataType (none of
 * orvData8u, orvData8s, orvData32f). */
OrvStatus orviPyrDownGetBufSize_Gauss5x5(int32_t roiWidth, OrvDataType dataType, int32_t channels, int32_t* bufferSize);
OrvStatus orviPyrUpGetBufSize_Gauss5x5(int32_t roiWidth, OrvDataType dataType, int32_t channels, int32_t* bufferSize);

/* The sizes that an up step by `rate` may make of srcRoi, each side n on its own, in single precision, truncated:
 *   least  1 if n is 1, else max(n + 1, (n - 1) * rate + 1)
 *   most   max(n + 1, n * rate)
 * and the size of the level below srcRoi: about n / rate rounded, but never less than 1, and such that srcRoi lies
 * between the least and the most that an up step makes of it.
 * Return, in order: orvStatusNullPtr, orvStatusSize, orvStatusBadArg (unless 1 < rate <= 10). */
OrvStatus orviGetPyramidUpROI(OrvSize srcRoi, OrvSize* dstRoiMin, OrvSize* dstRoiMax, float rate);
OrvStatus orviGetPyramidDownROI(OrvSize srcRoi, OrvSize* dstRoi, float rate);

/* The levels of an image pyramid, level 0 the largest. All arrays have level + 1 entries. */
typedef struct {
  void** images;  /* first pixel of each level */
  OrvSize* roi;   /* size of each level */
  double* rates;  /* from coordinates of level 0 to those of the level: 1, 1/r, 1/r^2, ... */
  int32_t* steps; /* row step of each level in bytes */
  void* state;    /* the caller's */
  int32_t level;  /* index of the last level */
} OrvPyramid;

/* Makes a pyramid of at most level + 1 levels, less where a level of 1x1 comes earlier. roi holds the sizes that
 * orviGetPyramidDownROI makes one from another, rates the products of 1.0 / rate; images and state are null and steps
 * 0. Returns, in order: orvStatusNullPtr, orvStatusSize, orvStatusBadArg (unless 1 < rate <= 10 and level >= 1),
 * orvStatusNoMem. */
OrvStatus orviPyramidInitAlloc(OrvPyramid** pyramid, int32_t level, OrvSize roiSize, float rate);

/* Frees the record and its arrays, but no image. Returns orvStatusNullPtr for null. */
OrvStatus orviPyramidFree(OrvPyramid* pyramid);

/* States of the layer steps. One serves any number of calls, one at a time, for regions up to the one it was made for;
 * nothing checks that, and a larger one overruns its memory. The type of the functions must be that of the state. */
typedef struct OrvPyramidDownState OrvPyramidDownState;
typedef struct OrvPyramidUpState OrvPyramidUpState;

/* Layer step down, by a rate of more than 1 up to 10: the source is filtered with a kernel of kerSize taps (odd, at
 * least 3), which is normalised to a sum of 1, along rows and columns, then sampled at i * rate between the two nearest
 * pixels of each direction. At rates within 2e-5 of 2 every second pixel is taken. `mode` must be 2.
 *
 * Of the kernel the left half and the centre are used; a right half that isn't its reflection is ignored and gives the
 * warning orvStatusSymKernelWarn (the state is made). A kernel whose sum is 0 is taken as it is. 16-bit taps in units
 * of 2^-13 (8u) and 2^-12 (16u) of the sum wrap: none may exceed 4 or 8 times the sum. Beyond the sides pixels are
 * mirrored about the outermost one, as often as need be.
 *
 *   8u    row sums S >> 8, saturated to 16 bits; column sums (S + 2^14) >> 15, saturated: 8 times the pixel
 *   16u   row sums S >> 10, column sums (S + 2^10) >> 11, in 32 bits, which wrap (kernels with large negative lobes)
 *   32f   in single precision, from the centre outwards: k0 p0 + k1 (p[-1] + p[1]) + ...
 *
 * If width or height don't exceed kerSize, each product of a row sum is shifted by itself (8u, 16u). Sampling: in
 * single precision b * f + a * (1 - f), rows first; 8u and 16u: + 0.5 and truncated each time, at last (v + 4) >> 3,
 * saturated. 8u C1 with 5 taps at rate 2, larger than the kernel: (S + 3 * 2^16) >> 18 of the column sums at once.
 *
 * Creation returns, in order: orvStatusNullPtr (state, kernel), orvStatusSize, orvStatusBadArg (mode, rate, kerSize),
 * orvStatusNoMem; then orvStatusOk or orvStatusSymKernelWarn. srcRoi is the largest region that the state will meet.
 *
 * The step returns, in order: orvStatusNullPtr (src, dst, state), orvStatusSize (srcRoi), orvStatusStep (srcStep, then
 * dstStep below a row), orvStatusStepAlign (16u, 32f), orvStatusBadArg (rate), orvStatusSize (dstRoi). dstRoi must be
 * the size that orviGetPyramidDownROI reports, unless the state's region is larger than the kernel and srcRoi has the
 * height of one of its levels: then it must be the size of the level below the first of that height, whatever the
 * width. So a pyramid of a wide image can't be walked on with one state where all heights are 1.
 *
 * Large regions are worked on by a team, of at most the threads that the library had when the state was made. */
OrvStatus orviPyramidLayerDownInitAlloc_8u_C1R(OrvPyramidDownState** state, OrvSize srcRoi, float rate,
                                               const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerDownInitAlloc_8u_C3R(OrvPyramidDownState** state, OrvSize srcRoi, float rate,
                                               const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerDownInitAlloc_16u_C1R(OrvPyramidDownState** state, OrvSize srcRoi, float rate,
                                                const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerDownInitAlloc_16u_C3R(OrvPyramidDownState** state, OrvSize srcRoi, float rate,
                                                const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerDownInitAlloc_32f_C1R(OrvPyramidDownState** state, OrvSize srcRoi, float rate,
                                                const float* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerDownInitAlloc_32f_C3R(OrvPyramidDownState** state, OrvSize srcRoi, float rate,
                                                const float* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerDown_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize srcRoi, uint8_t* dst,
                                      int32_t dstStep, OrvSize dstRoi, OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDown_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize srcRoi, uint8_t* dst,
                                      int32_t dstStep, OrvSize dstRoi, OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDown_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoi, uint16_t* dst,
                                       int32_t dstStep, OrvSize dstRoi, OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDown_16u_C3R(const uint16_t* src, int32_t srcStep, OrvSize srcRoi, uint16_t* dst,
                                       int32_t dstStep, OrvSize dstRoi, OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDown_32f_C1R(const float* src, int32_t srcStep, OrvSize srcRoi, float* dst, int32_t dstStep,
                                       OrvSize dstRoi, OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDown_32f_C3R(const float* src, int32_t srcStep, OrvSize srcRoi, float* dst, int32_t dstStep,
                                       OrvSize dstRoi, OrvPyramidDownState* state);

/* Returns orvStatusNullPtr for null. */
OrvStatus orviPyramidLayerDownFree_8u_C1R(OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDownFree_8u_C3R(OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDownFree_16u_C1R(OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDownFree_16u_C3R(OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDownFree_32f_C1R(OrvPyramidDownState* state);
OrvStatus orviPyramidLayerDownFree_32f_C3R(OrvPyramidDownState* state);
/* Layer step up: each source pixel k is spread by the kernel around the place k * rate of the result (between two taps
 * where it lies between two pixels), along rows, then along columns, and each pixel of the result is divided by the sum
 * of the weights that it got. dstRoi may be any size that orviGetPyramidUpROI allows.
 *
 * The kernel is treated as above; taps are in units of 2^-13 of the sum for 8u and 16u. Source pixels mirrored beyond
 * the sides are spread, too. The weights are those that an unbounded source would give, summed over the larger side for
 * both; so a flat image may have a darker last row or column. 8u: intermediate values are 128 times the pixel, rounded;
 * 16u: in single precision, truncated at last; 32f: in single precision.
 *
 * Creation as above. The step returns what the step down does; orvStatusSize for a dstRoi out of range, and then
 * orvStatusNoMem, since it allocates memory for the call. */
OrvStatus orviPyramidLayerUpInitAlloc_8u_C1R(OrvPyramidUpState** state, OrvSize srcRoi, float rate,
                                             const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerUpInitAlloc_8u_C3R(OrvPyramidUpState** state, OrvSize srcRoi, float rate,
                                             const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerUpInitAlloc_16u_C1R(OrvPyramidUpState** state, OrvSize srcRoi, float rate,
                                              const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerUpInitAlloc_16u_C3R(OrvPyramidUpState** state, OrvSize srcRoi, float rate,
                                              const int16_t* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerUpInitAlloc_32f_C1R(OrvPyramidUpState** state, OrvSize srcRoi, float rate,
                                              const float* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerUpInitAlloc_32f_C3R(OrvPyramidUpState** state, OrvSize srcRoi, float rate,
                                              const float* kernel, int32_t kerSize, int32_t mode);
OrvStatus orviPyramidLayerUp_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize srcRoi, uint8_t* dst, int32_t dstStep,
                                    OrvSize dstRoi, OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUp_8u_C3R(const uint8_t* src, int32_t srcStep, OrvSize srcRoi, uint8_t* dst, int32_t dstStep,
                                    OrvSize dstRoi, OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUp_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize srcRoi, uint16_t* dst,
                                     int32_t dstStep, OrvSize dstRoi, OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUp_16u_C3R(const uint16_t* src, int32_t srcStep, OrvSize srcRoi, uint16_t* dst,
                                     int32_t dstStep, OrvSize dstRoi, OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUp_32f_C1R(const float* src, int32_t srcStep, OrvSize srcRoi, float* dst, int32_t dstStep,
                                     OrvSize dstRoi, OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUp_32f_C3R(const float* src, int32_t srcStep, OrvSize srcRoi, float* dst, int32_t dstStep,
                                     OrvSize dstRoi, OrvPyramidUpState* state);

/* Returns orvStatusNullPtr for null. */
OrvStatus orviPyramidLayerUpFree_8u_C1R(OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUpFree_8u_C3R(OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUpFree_16u_C1R(OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUpFree_16u_C3R(OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUpFree_32f_C1R(OrvPyramidUpState* state);
OrvStatus orviPyramidLayerUpFree_32f_C3R(OrvPyramidUpState* state);

#ifdef __cplusplus
}
#endif
#endif

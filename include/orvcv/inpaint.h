/* Inpainting: fills the masked pixels of an image from their surroundings.
 *
 * A state prepares what depends on the mask and not on the image; it serves any number of images, one at a time.
 *
 *   orviFastMarching_8u32f_C1R(mask, ..., dist, ..., radius, buffer);                 // distances from the known area
 *   orviInpaintInitAlloc_8u_C1R(&state, dist, distStep, mask, maskStep, size, 0, radius);
 *   orviInpaint_8u_C1R(frame, frameStep, result, resultStep, size, state);            // for each frame
 *   orviInpaintFree_8u_C1R(state);
 */
#ifndef ORVCV_INPAINT_H
#define ORVCV_INPAINT_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

typedef struct OrvInpaintState OrvInpaintState;

/* Makes a state.
 *
 * mask: pixels other than 0 are to be filled. dist: a map that is above 0 on those pixels, lower outside: they are
 * filled in its order, equal ones row by row. radius, at least 1: how far a pixel looks for known ones, in pixels.
 * method: 0  neighbours count by nearness, by direction along the map's slope and by likeness of their distances;
 * gradients are continued into the hole (A. Telea, "An image inpainting technique based on the fast marching method",
 * 2004) 1  neighbours count by nearness and by how well lines of equal brightness through them meet the pixel (after M.
 * Bertalmio, A. Bertozzi and G. Sapiro, "Navier-Stokes, fluid dynamics, and image and video inpainting", 2001) The
 * memory of a state grows with the bounding box of the mask, and with the square of the radius.
 *
 * Returns, in order: orvStatusNullPtr (mask, dist, state), orvStatusSize, orvStatusStep (maskStep, distStep below a
 * row), orvStatusStepAlign (distStep no multiple of 4), orvStatusBadArg (method), orvStatusBadArg (radius below 1),
 * orvStatusNoMem; *state is set on success only. */
OrvStatus orviInpaintInitAlloc_8u_C1R(OrvInpaintState** state, const float* dist, int32_t distStep, const uint8_t* mask,
                                      int32_t maskStep, OrvSize roiSize, int32_t method, float radius);
OrvStatus orviInpaintInitAlloc_8u_C3R(OrvInpaintState** state, const float* dist, int32_t distStep, const uint8_t* mask,
                                      int32_t maskStep, OrvSize roiSize, int32_t method, float radius);

/* dst = src, masked pixels filled. Each takes the weighted mean of the known pixels within the radius, filled ones
 * included; where their weights sum up to less than 0.0001, the mean of the known ones of its four neighbours, 0 if
 * there is none. C3 forms take a state of the C3 form. src may be dst; images must not overlap otherwise.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, state), orvStatusSize (also a size other than the state's),
 * orvStatusStep (srcStep, dstStep below a row).
 *
 * Threads: one; calls with different states may run at once. */
OrvStatus orviInpaint_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                             OrvInpaintState* state);
OrvStatus orviInpaint_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                             OrvInpaintState* state);

/* Releases a state. Returns orvStatusNullPtr for a null pointer. */
OrvStatus orviInpaintFree_8u_C1R(OrvInpaintState* state);
OrvStatus orviInpaintFree_8u_C3R(OrvInpaintState* state);

#ifdef __cplusplus
}
#endif
#endif

/* Residuals and gradients for iterative super-resolution (M. Irani and S. Peleg, "Improving Resolution by Image
 * Registration", 1991).
 *
 * An estimate of high resolution is improved until it explains many measured images of low resolution. Each measured
 * sample sees a small patch of the estimate through a point-spread function (PSF) of 2x2 or 3x3 coefficients out of a
 * table. Samples are lists, of numSamples entries each:
 *
 *   positions  index of the patch's top left pixel, in floats from the image's start: y * (step / 4) + x
 *   psfIndex   entry of the table
 *   values     the measured sample
 *   residuals  what the estimate predicts, less the measured sample
 *   classes    index into `weights`, for example by how far the samples of a frame are trusted
 *
 * Positions and indices are the caller's care, nothing checks them. Images and lists may lie at any address. A negative
 * step is a bottom-up image. All functions run on the calling thread; a state serves any number of them.
 */
#ifndef ORVCV_SUPER_RESOLUTION_H
#define ORVCV_SUPER_RESOLUTION_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* A table of point-spread functions. */
typedef struct OrvSRHNState OrvSRHNState;

/* Makes a table of tableSize entries from 4 or 9 floats each, row by row; release it with the Free function of the same
 * size. Returns, in order: orvStatusNullPtr (state, coefficients), orvStatusSize (tableSize below 1), orvStatusNoMem.
 */
OrvStatus orviSRHNInitAlloc_PSF2x2(OrvSRHNState** state, const float* coefficients, int32_t tableSize);
OrvStatus orviSRHNInitAlloc_PSF3x3(OrvSRHNState** state, const float* coefficients, int32_t tableSize);

/* Returns orvStatusNullPtr for null. */
OrvStatus orviSRHNFree_PSF2x2(OrvSRHNState* state);
OrvStatus orviSRHNFree_PSF3x3(OrvSRHNState* state);

/* residuals[i] = sum of patch * coefficients - values[i], in single precision: the products row by row, left to right,
 * then the value.
 * Returns, in order: orvStatusNullPtr, orvStatusSize (numSamples below 1), orvStatusStep (0 to 7 with 2x2 or 0 to 11
 * with 3x3 coefficients, or no multiple of 4). */
OrvStatus orviSRHNCalcResidual_PSF2x2_8u32f_C1R(const float* hiRes, int32_t hiResStep, const uint8_t* values,
                                                const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                int32_t numSamples, const OrvSRHNState* state);
OrvStatus orviSRHNCalcResidual_PSF2x2_16u32f_C1R(const float* hiRes, int32_t hiResStep, const uint16_t* values,
                                                 const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                 int32_t numSamples, const OrvSRHNState* state);
OrvStatus orviSRHNCalcResidual_PSF3x3_8u32f_C1R(const float* hiRes, int32_t hiResStep, const uint8_t* values,
                                                const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                int32_t numSamples, const OrvSRHNState* state);
OrvStatus orviSRHNCalcResidual_PSF3x3_16u32f_C1R(const float* hiRes, int32_t hiResStep, const uint16_t* values,
                                                 const int32_t* positions, const uint16_t* psfIndex, float* residuals,
                                                 int32_t numSamples, const OrvSRHNState* state);

/* patch of the gradient += coefficients * (weights[classes[i]] * residuals[i]), row by row, left to right, sample after
 * sample in the order of the lists: patches may overlap.
 * Returns, in order: orvStatusNullPtr, orvStatusSize (numSamples below 1), orvStatusStep (as above). */
OrvStatus orviSRHNUpdateGradient_PSF2x2_32f_C1R(float* gradient, int32_t gradientStep, const int32_t* positions,
                                                const uint16_t* psfIndex, const float* residuals,
                                                const uint8_t* classes, int32_t numSamples, const float* weights,
                                                const OrvSRHNState* state);
OrvStatus orviSRHNUpdateGradient_PSF3x3_32f_C1R(float* gradient, int32_t gradientStep, const int32_t* positions,
                                                const uint16_t* psfIndex, const float* residuals,
                                                const uint8_t* classes, int32_t numSamples, const float* weights,
                                                const OrvSRHNState* state);

#ifdef __cplusplus
}
#endif
#endif

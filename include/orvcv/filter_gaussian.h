/* Gaussian smoothing.
 *
 * Both families convolve with exp(-(x^2 + y^2) / (2 sigma^2)), sampled at whole pixels, cut to an odd kernel size K and
 * normalised to sum 1, as two passes: rows first, then columns. (The method is that of every textbook on image
 * processing, e.g. R. C. Gonzalez and R. E. Woods, "Digital Image Processing".)
 *
 * Taps. w[i] = exp(-(j * j) / q) with j = i - K / 2 and q = (sigma + sigma) * sigma in single precision, w[i] itself
 * correctly rounded; `sum` is their float sum in rising order. Float images use w[i] / sum. Integer images use fixed
 * point, trunc(double((w[i] / sum) * 2^shift) + 0.5) with shift 12 for 8u and 15 for 16u and 16s; their sum may miss
 * 2^shift by a few units. A 16s tap of 32768 is stored as -32768.
 *
 * Arithmetic. Integer images are rounded to whole numbers after the row pass and again after the column pass; each pass
 * is the one of orvcv/filter_pipeline.h with divisor 2^shift (8u: 8u16s rows, 16s8u columns; 16u and 16s their own).
 * For 8u and 16s that is nearest even, except that the first and last K / 2 pixels of a row (row pass) and the last
 * width & 15 pixels of a row (column pass) are truncated. 32f sums in single precision.
 *
 * Results do not depend on the processor, the variant or the number of threads. All functions may be called from any
 * number of threads at once, with one buffer each; a spec may be shared. src and dst must not overlap.
 */
#ifndef ORVCV_FILTER_GAUSSIAN_H
#define ORVCV_FILTER_GAUSSIAN_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* A prepared Gaussian filter, in the caller's memory of the size that orviFilterGaussianGetBufferSize reports. The taps
 * (kernelSize int16_t, or float for 32f) start at the first 16-byte aligned address at or after byte 20 of the record:
 * a copy works only at the same alignment modulo 16. */
typedef struct {
  int32_t kernelSize; /* K, odd, at least 3 */
  int32_t headerSize; /* 20 */
  int32_t dataType;   /* an OrvDataType: 8u, 16u, 16s or 32f */
  int32_t borderType; /* as given to orviFilterGaussianInit */
  int32_t shift;      /* 12 for 8u, 15 for 16u and 16s, 0 for 32f */
} OrvFilterGaussianSpec;

/* Sizes in bytes of the record and of the scratch buffer, for images of at most roiSize. The buffer size depends on the
 * thread count of the library at the moment of the query, which must not change until the buffer is used.
 * kernelSize: odd, at least 3. dataType: orvData8u, 16u, 16s or 32f. numChannels: 1 or 3.
 * Returns, in order: orvStatusNullPtr (bufferSize, specSize), orvStatusSize (height, width), orvStatusBadArg
 * (kernelSize), orvStatusDataType, orvStatusChannelCount. */
OrvStatus orviFilterGaussianGetBufferSize(OrvSize roiSize, uint32_t kernelSize, OrvDataType dataType,
                                          int32_t numChannels, int32_t* specSize, int32_t* bufferSize);

/* Prepares the record. sigma: above 0. borderType: orvBorderConst, orvBorderRepl or orvBorderInMem, each with any of
 * the flags for sides in memory. buffer: scratch for K floats, 16-byte aligned inside; the run-time buffer will do.
 * Returns, in order: orvStatusNullPtr (spec, buffer), orvStatusSize, orvStatusBadArg (kernelSize), orvStatusDataType,
 * orvStatusChannelCount, orvStatusBadArg (sigma not above 0), orvStatusBorder. */
OrvStatus orviFilterGaussianInit(OrvSize roiSize, uint32_t kernelSize, float sigma, OrvBorderType borderType,
                                 OrvDataType dataType, int32_t numChannels, OrvFilterGaussianSpec* spec,
                                 uint8_t* buffer);

/* Smooths a region. Kind orvBorderConst: pixels beyond the left and right sides are borderValue (for C3 a pointer to
 * three elements), and rows above and below are borderValue after the row pass. orvBorderRepl: the nearest row or pixel.
 * Flagged sides, or all with orvBorderInMem: K / 2 real pixels are read beyond the side. With height 1 a kind other
 * than orvBorderConst replicates the row, whatever the flags.
 * Returns, in order: orvStatusNullPtr (src, dst, buffer, spec), orvStatusStep (srcStep or dstStep below the width, in
 * elements: wider rows are the caller's care), orvStatusSize, orvStatusStepAlign (16- and 32-bit types),
 * orvStatusBadArg (kernel size of the record), orvStatusBorder (border of the record), orvStatusNullPtr (C3, constant
 * border, no borderValue), orvStatusBadArg (shift of the record). */
OrvStatus orviFilterGaussianBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, uint8_t borderValue, const OrvFilterGaussianSpec* spec,
                                          uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                          OrvSize roiSize, const uint8_t borderValue[3],
                                          const OrvFilterGaussianSpec* spec, uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, uint16_t borderValue, const OrvFilterGaussianSpec* spec,
                                           uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_16u_C3R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const uint16_t borderValue[3],
                                           const OrvFilterGaussianSpec* spec, uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, int16_t borderValue, const OrvFilterGaussianSpec* spec,
                                           uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_16s_C3R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                           OrvSize roiSize, const int16_t borderValue[3],
                                           const OrvFilterGaussianSpec* spec, uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, float borderValue, const OrvFilterGaussianSpec* spec,
                                           uint8_t* buffer);
OrvStatus orviFilterGaussianBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                           OrvSize roiSize, const float borderValue[3],
                                           const OrvFilterGaussianSpec* spec, uint8_t* buffer);

/* Size in bytes of the scratch buffer of orviFilterGaussBorder_32f_C1R.
 * Returns, in order: orvStatusNullPtr (bufferSize), orvStatusSize (height, width), orvStatusBadArg (kernelSize below 3
 * or even). */
OrvStatus orviFilterGaussGetBufferSize_32f_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);

/* Smooths a float image, with the kernel made anew in each call. Any border kind but orvBorderInMem, applied in both
 * directions, with any of the flags orvBorderInMemTop and orvBorderInMemBottom. sigma isn't tested: 0 copies the image.
 * Returns, in order: orvStatusNullPtr (src, dst, buffer), orvStatusSize (height, width), orvStatusStep (srcStep or
 * dstStep below the width, in elements), orvStatusBadArg (kernelSize below 3 or even, or another border type). */
OrvStatus orviFilterGaussBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                        int32_t kernelSize, float sigma, OrvBorderType borderType, float borderValue,
                                        uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif

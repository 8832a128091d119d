/* Separable filters as a row stage and a column stage.
 *
 * The row stage reads an image, extends each row by a border and writes one filtered row for each source row, wherever
 * the caller's array of row pointers says. The column stage reads rows through such an array, height + kernelSize - 1
 * of them, and writes an image. With a ring of rows a large image is piped through a small buffer; repeated pointers
 * make borders above and below. (R. C. Gonzalez and R. E. Woods, "Digital Image Processing", on separable kernels.)
 *
 * Kernels are correlated, not flipped, with any taps:
 *
 *   row stage     S = sum(i = 0 .. K-1) kernel[i] * extended(x - anchor + i)     of one source row
 *   column stage  S = sum(j = 0 .. K-1) kernel[j] * srcRows[y + j][x]
 *
 * C3: interleaved pixels of three elements, one kernel for all channels. Integer results are divided by `divisor`, in
 * single precision as a product with 1.0f / divisor. How they are rounded depends on the place, as told below: results
 * at the ends of a row are truncated, most others rounded to nearest, ties to even. Results do not depend on the
 * processor, the variant or the number of threads.
 *
 * Threads: all functions may be called from any number of threads at once, with one buffer each. Large regions (width *
 * height of at least 32768 for each of the library's threads) are worked on by a team: all row stages but 16u, and the
 * 16s, 16s8u, 16s8s and Low_16s column stages.
 */
#ifndef ORVCV_FILTER_PIPELINE_H
#define ORVCV_FILTER_PIPELINE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Row stage.
 *
 *   8u16s, 16s  S in 32 bits, wrapping. S * (1.0f / divisor), to nearest even; the first `anchor` and the last
 *               kernelSize - 1 - anchor pixels of a row are truncated instead. Saturated to 16 bits.
 *   16u         exact S for any taps. S * (1.0f / divisor) clamped to 0..65535 and truncated.
 *   32f         float sum in rising order of the taps. Symmetric kernels of 3 and 5 taps: k0*(a+c) + k1*b and
 *               (k0*(a+e) + k1*(b+d)) + k2*c.
 *   Low_16s     fewer bits for speed: (S * m) >> 14 with m = 16384.0f / divisor, truncated; S and the product wrap in
 *               32 bits. Saturated to 16 bits, but in the first and last pixels (as above) the low 16 bits.
 *
 * dstRows: roiSize.height pointers to rows of roiSize.width pixels, which must not overlap their source rows.
 * kernelSize: at least 1, also above the width. anchor: 0 .. kernelSize - 1, the tap that lies on the output pixel.
 * borderType: orvBorderConst, orvBorderRepl or orvBorderInMem (`anchor` pixels to the left of each row and
 * kernelSize - 1 - anchor to its right are read), without flags. borderValue: C3 a pointer to three elements, needed
 * for every border type. divisor: not 0, 16u at least 1. buffer: of the size told by the GetBufferSize function.
 *
 * Returns, in order: orvStatusNullPtr (src, dstRows, kernel, buffer), orvStatusSize (height, width), orvStatusNullPtr
 * (a row pointer; C3: borderValue), orvStatusSize (kernelSize), orvStatusAnchor, orvStatusStep, orvStatusStepAlign (not
 * 8u16s), orvStatusBadArg (borderType), orvStatusBadArg (divisor). */
OrvStatus orviFilterRowBorderPipeline_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                int32_t anchor, OrvBorderType borderType, uint8_t borderValue,
                                                int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_8u16s_C3R(const uint8_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                int32_t anchor, OrvBorderType borderType, const uint8_t* borderValue,
                                                int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                              OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, int16_t borderValue,
                                              int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_16s_C3R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                              OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, const int16_t* borderValue,
                                              int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* const* dstRows,
                                              OrvSize roiSize, const uint16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, uint16_t borderValue,
                                              int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_16u_C3R(const uint16_t* src, int32_t srcStep, uint16_t* const* dstRows,
                                              OrvSize roiSize, const uint16_t* kernel, int32_t kernelSize,
                                              int32_t anchor, OrvBorderType borderType, const uint16_t* borderValue,
                                              int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_32f_C1R(const float* src, int32_t srcStep, float* const* dstRows, OrvSize roiSize,
                                              const float* kernel, int32_t kernelSize, int32_t anchor,
                                              OrvBorderType borderType, float borderValue, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_32f_C3R(const float* src, int32_t srcStep, float* const* dstRows, OrvSize roiSize,
                                              const float* kernel, int32_t kernelSize, int32_t anchor,
                                              OrvBorderType borderType, const float* borderValue, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_Low_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                  OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                  int32_t anchor, OrvBorderType borderType, int16_t borderValue,
                                                  int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterRowBorderPipeline_Low_16s_C3R(const int16_t* src, int32_t srcStep, int16_t* const* dstRows,
                                                  OrvSize roiSize, const int16_t* kernel, int32_t kernelSize,
                                                  int32_t anchor, OrvBorderType borderType, const int16_t* borderValue,
                                                  int32_t divisor, uint8_t* buffer);

/* Size in bytes of the buffer of a row stage. It depends on the thread count of the library at the moment of the query,
 * which must not change until the buffer is used. Computed in 32 bits, wrapping.
 * Returns, in order: orvStatusNullPtr, orvStatusSize (width, height, kernelSize below 1). */
OrvStatus orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_8u16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16u_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_16u_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_32f_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_32f_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(OrvSize roiSize, int32_t kernelSize,
                                                               int32_t* bufferSize);
OrvStatus orviFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(OrvSize roiSize, int32_t kernelSize,
                                                               int32_t* bufferSize);

/* Column stage.
 *
 *   16s, 16s8u, 16s8s  the first width & ~15 pixels of a row: each element times the float kernel[j] * (1.0f /
 * divisor), summed in float in rising order, to nearest even. The rest: S in 32 bits, wrapping; S * (1.0f / divisor)
 * truncated. Saturated to the destination's type. 16u                exact S for any taps. S * (1.0f / divisor) clamped
 * to 0..65535 and truncated. 32f                float sum in rising order. Low_16s            as in the row stage;
 * saturated in the first width & ~15 pixels of a row, the low 16 bits in the rest.
 *
 * srcRows: dstRoiSize.height + kernelSize - 1 pointers to rows; row y of dst is made of rows y .. y + kernelSize - 1.
 * Pointers may repeat, and a row of dst may be one of the rows it is made of. kernelSize: at least 1. divisor: not 0.
 * buffer: of the size told by the GetBufferSize function.
 *
 * Returns, in order: orvStatusNullPtr (srcRows, dst, kernel), orvStatusSize (height, width), orvStatusNullPtr (a row
 * pointer), orvStatusSize (kernelSize), orvStatusStep, orvStatusStepAlign (not 16s8u, 16s8s), orvStatusNullPtr
 * (buffer), orvStatusBadArg (divisor). */
OrvStatus orviFilterColumnPipeline_16s_C1R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16s_C3R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16s8u_C1R(const int16_t* const* srcRows, uint8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16s8u_C3R(const int16_t* const* srcRows, uint8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16s8s_C1R(const int16_t* const* srcRows, int8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16s8s_C3R(const int16_t* const* srcRows, int8_t* dst, int32_t dstStep,
                                             OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                             int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16u_C1R(const uint16_t* const* srcRows, uint16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const uint16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_16u_C3R(const uint16_t* const* srcRows, uint16_t* dst, int32_t dstStep,
                                           OrvSize dstRoiSize, const uint16_t* kernel, int32_t kernelSize,
                                           int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_32f_C1R(const float* const* srcRows, float* dst, int32_t dstStep, OrvSize dstRoiSize,
                                           const float* kernel, int32_t kernelSize, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_32f_C3R(const float* const* srcRows, float* dst, int32_t dstStep, OrvSize dstRoiSize,
                                           const float* kernel, int32_t kernelSize, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_Low_16s_C1R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                               OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                               int32_t divisor, uint8_t* buffer);
OrvStatus orviFilterColumnPipeline_Low_16s_C3R(const int16_t* const* srcRows, int16_t* dst, int32_t dstStep,
                                               OrvSize dstRoiSize, const int16_t* kernel, int32_t kernelSize,
                                               int32_t divisor, uint8_t* buffer);

/* Size in bytes of the buffer of a column stage; all else as for the row stage. */
OrvStatus orviFilterColumnPipelineGetBufferSize_16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8u_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8u_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16s8s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16u_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_16u_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_32f_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_32f_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_Low_16s_C1R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);
OrvStatus orviFilterColumnPipelineGetBufferSize_Low_16s_C3R(OrvSize roiSize, int32_t kernelSize, int32_t* bufferSize);

#ifdef __cplusplus
}
#endif
#endif

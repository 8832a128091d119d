// Gradients with magnitude and angle, for corner detection and colour gradients inside the library.
#pragma once
#include <stddef.h>
#include "filter/names.h"

extern "C" {
// Codes of `norm`: |gx| + |gy|, or the root of the sum of squares.
enum { orvGradientNormL1 = 2, orvGradientNormL2 = 4 };

// Scratch size in bytes, for the element type and 1 or 3 channels.
// Returns, in order: orvStatusNullPtr, orvStatusSize, orvStatusMaskSize, orvStatusDataType, orvStatusChannels.
OrvStatus orviGradientVectorGetBufferSize(OrvSize roiSize, OrvMaskSize maskSize, OrvDataType dataType,
                                          int32_t numChannels, int32_t* bufferSize);

// gy rises with y. gx rises with x in Scharr and falls with x in Sobel filters. angle = atan2(gy, gx) in radians. Each
// of gx, gy, mag and angle may be null and isn't produced then. maskSize: 33 or 55, Scharr 33. borderType:
// orvBorderConst or orvBorderRepl with any side flags, or orvBorderInMem. Outputs must not overlap src. Calling thread
// only. Returns, in order: orvStatusNullPtr (src), orvStatusStep, orvStatusStepAlign (srcStep), orvStatusNullPtr
// (buffer); for gx, gy, mag, angle each: orvStatusStep (below 1), orvStatusStepAlign, for mag orvStatusBadArg (norm);
// orvStatusSize, orvStatusBadArg (border), orvStatusMaskSize.
OrvStatus orviGradientVectorSobel_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* gx, int32_t gxStep,
                                            int16_t* gy, int32_t gyStep, int16_t* mag, int32_t magStep, float* angle,
                                            int32_t angleStep, OrvSize roiSize, OrvMaskSize maskSize, int32_t norm,
                                            OrvBorderType borderType, uint8_t borderValue, uint8_t* buffer);
OrvStatus orviGradientVectorSobel_32f_C1R(const float* src, int32_t srcStep, float* gx, int32_t gxStep, float* gy,
                                          int32_t gyStep, float* mag, int32_t magStep, float* angle, int32_t angleStep,
                                          OrvSize roiSize, OrvMaskSize maskSize, int32_t norm, OrvBorderType borderType,
                                          float borderValue, uint8_t* buffer);
OrvStatus orviGradientVectorScharr_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* gx, int32_t gxStep,
                                             int16_t* gy, int32_t gyStep, int16_t* mag, int32_t magStep, float* angle,
                                             int32_t angleStep, OrvSize roiSize, OrvMaskSize maskSize, int32_t norm,
                                             OrvBorderType borderType, uint8_t borderValue, uint8_t* buffer);
OrvStatus orviGradientVectorScharr_32f_C1R(const float* src, int32_t srcStep, float* gx, int32_t gxStep, float* gy,
                                           int32_t gyStep, float* mag, int32_t magStep, float* angle, int32_t angleStep,
                                           OrvSize roiSize, OrvMaskSize maskSize, int32_t norm,
                                           OrvBorderType borderType, float borderValue, uint8_t* buffer);
}

namespace ORV_VARIANT {

enum : ptrdiff_t { gradientBlock = 512 };

enum class GradientForm { sobel3, sobel5, scharr3 };

// gx and gy of n <= gradientBlock pixels from the three or five rows around them; the windows of column 0 begin at
// rows[i][0]. The results must not lie where the rows do.
template <class T, class R>
using GradientKernel = void (*)(const T* const* rows, ptrdiff_t n, R* gx, R* gy);

// The kernels behind the functions above, for this processor.
GradientKernel<uint8_t, int16_t> byteGradients(GradientForm form);
GradientKernel<float, float> floatGradients(GradientForm form);

}  // namespace ORV_VARIANT

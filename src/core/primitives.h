// Vector and image primitives that the families call inside themselves; each variant has its own copy.
//
// Vectors: `length` elements, int32, the last argument but a scale factor. A null pointer gives orvStatusNullPtr, then
// a length below 1 orvStatusSize. Images: first pixel, step in bytes, a ROI. A null pointer gives orvStatusNullPtr, a
// width or height below 1 orvStatusSize, a step below 1 orvStatusStep; steps are not compared with the row, callers
// have done that. Any element may lie at any address. A destination may be the source itself (or either source), but
// no other overlap is allowed.
//
// Scale factors: the exact value times 2 to the power of -scaleFactor, rounded to nearest with halves to even, then
// saturated to the destination's range. Any scale factor is allowed.
//
// Thread safety: all of them, on disjoint outputs. Some start a team of threads, as told at each.
#pragma once
#include "core/variant.h"
#include <stdint.h>

extern "C" {

// Memory for `length` elements, or null if length < 1 or the core library has none. The bytes asked for are a 32-bit
// product that wraps: callers keep length * sizeof(element) below 2^31. Release with orvsFree.
uint8_t* orvsMalloc_8u(int32_t length);
uint16_t* orvsMalloc_16u(int32_t length);
int32_t* orvsMalloc_32s(int32_t length);
float* orvsMalloc_32f(int32_t length);
double* orvsMalloc_64f(int32_t length);
void orvsFree(void* memory);

// dst[i] = 0, dst[i] = value.
OrvStatus orvsZero_8u(uint8_t* dst, int32_t length);
OrvStatus orvsZero_16s(int16_t* dst, int32_t length);
OrvStatus orvsZero_32s(int32_t* dst, int32_t length);
OrvStatus orvsZero_32f(float* dst, int32_t length);
OrvStatus orvsSet_8u(uint8_t value, uint8_t* dst, int32_t length);
OrvStatus orvsSet_16s(int16_t value, int16_t* dst, int32_t length);
OrvStatus orvsSet_32s(int32_t value, int32_t* dst, int32_t length);
OrvStatus orvsSet_32f(float value, float* dst, int32_t length);

// dst[i] = src[i].
OrvStatus orvsCopy_8u(const uint8_t* src, uint8_t* dst, int32_t length);
OrvStatus orvsCopy_16s(const int16_t* src, int16_t* dst, int32_t length);
OrvStatus orvsCopy_32f(const float* src, float* dst, int32_t length);

// dst[i] = square root of src[i], correctly rounded. Threaded from 4096 elements on.
OrvStatus orvsSqrt_32f(const float* src, float* dst, int32_t length);

// dst[i] = sqrt(re * re + im * im). Floats: each operation in single precision, so squares beyond the range of float
// give infinity. Integers: the exact root is rounded once; threaded from 2048 elements on.
OrvStatus orvsMagnitude_32f(const float* srcRe, const float* srcIm, float* dst, int32_t length);
OrvStatus orvsMagnitude_16s_Sfs(const int16_t* srcRe, const int16_t* srcIm, int16_t* dst, int32_t length,
                                int32_t scaleFactor);

// dst[i] = atan2(srcY[i], srcX[i]) in radians, -pi to pi. Relative error at most 2^-22. Zeros, infinities and their
// signs count as in the C function; a NaN gives NaN.
OrvStatus orvsAtan2_32f_A21(const float* srcY, const float* srcX, float* dst, int32_t length);

// The smaller or larger of two elements. Where neither is (equal zeros, NaN), the second: src2, or srcDst.
OrvStatus orvsMinEvery_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t length);
OrvStatus orvsMinEvery_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t length);
OrvStatus orvsMinEvery_16s_I(const int16_t* src, int16_t* srcDst, int32_t length);
OrvStatus orvsMinEvery_32f_I(const float* src, float* srcDst, int32_t length);
OrvStatus orvsMinEvery_64f_I(const double* src, double* srcDst, int32_t length);
OrvStatus orvsMaxEvery_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t length);
OrvStatus orvsMaxEvery_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t length);
OrvStatus orvsMaxEvery_16s_I(const int16_t* src, int16_t* srcDst, int32_t length);
OrvStatus orvsMaxEvery_32f_I(const float* src, float* srcDst, int32_t length);
OrvStatus orvsMaxEvery_64f_I(const double* src, double* srcDst, int32_t length);
OrvStatus orvsMinEvery_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t length);
OrvStatus orvsMinEvery_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t length);
OrvStatus orvsMinEvery_32f(const float* src1, const float* src2, float* dst, int32_t length);
OrvStatus orvsMinEvery_64f(const double* src1, const double* src2, double* dst, int32_t length);
OrvStatus orvsMaxEvery_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t length);
OrvStatus orvsMaxEvery_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t length);
OrvStatus orvsMaxEvery_32f(const float* src1, const float* src2, float* dst, int32_t length);
OrvStatus orvsMaxEvery_64f(const double* src1, const double* src2, double* dst, int32_t length);

// Sorts in place, smallest first. NaNs come last, in any order; -0.0 and 0.0 are equal and stand in any order.
OrvStatus orvsSortAscend_64f_I(double* srcDst, int32_t length);

// dst = src.
OrvStatus orviCopy_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviCopy_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize);

// dst = value.
OrvStatus orviSet_8u_C1R(uint8_t value, uint8_t* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviSet_16s_C1R(int16_t value, int16_t* dst, int32_t dstStep, OrvSize roiSize);

// dst = src as a float, exactly.
OrvStatus orviConvert_16u32f_C1R(const uint16_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize);
OrvStatus orviConvert_8u32f_C3R(const uint8_t* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize);

// dst = src * value. A team shares the rows.
OrvStatus orviMulC_32f_C1R(const float* src, int32_t srcStep, float value, float* dst, int32_t dstStep,
                           OrvSize roiSize);
OrvStatus orviMulC_16s_C1RSfs(const int16_t* src, int32_t srcStep, int16_t value, int16_t* dst, int32_t dstStep,
                              OrvSize roiSize, int32_t scaleFactor);

// dst = src2 - src1: the second minus the first. Unsigned differences below 0 are 0. A team shares the rows.
OrvStatus orviSub_32f_C1R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                          int32_t dstStep, OrvSize roiSize);
OrvStatus orviSub_32f_C3R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                          int32_t dstStep, OrvSize roiSize);
OrvStatus orviSub_32f_C4R(const float* src1, int32_t src1Step, const float* src2, int32_t src2Step, float* dst,
                          int32_t dstStep, OrvSize roiSize);
OrvStatus orviSub_8u_C1RSfs(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                            int32_t dstStep, OrvSize roiSize, int32_t scaleFactor);
OrvStatus orviSub_8u_C3RSfs(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                            int32_t dstStep, OrvSize roiSize, int32_t scaleFactor);
OrvStatus orviSub_8u_C4RSfs(const uint8_t* src1, int32_t src1Step, const uint8_t* src2, int32_t src2Step, uint8_t* dst,
                            int32_t dstStep, OrvSize roiSize, int32_t scaleFactor);
OrvStatus orviSub_16u_C1RSfs(const uint16_t* src1, int32_t src1Step, const uint16_t* src2, int32_t src2Step,
                             uint16_t* dst, int32_t dstStep, OrvSize roiSize, int32_t scaleFactor);
OrvStatus orviSub_16s_C1RSfs(const int16_t* src1, int32_t src1Step, const int16_t* src2, int32_t src2Step, int16_t* dst,
                             int32_t dstStep, OrvSize roiSize, int32_t scaleFactor);

// Codes of `compare`. Any other gives orvStatusNotSupported, before all other checks.
enum { orvCompareLess = 0, orvCompareGreater = 4 };

// Pixels beyond `threshold` (greater or less than it) become `value`, all others stay. 16u: bands above 0x40000 pixels
// if the cache size can be read. GTVal is the form with `compare` greater.
OrvStatus orviThreshold_Val_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                   uint8_t threshold, uint8_t value, int32_t compare);
OrvStatus orviThreshold_Val_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                    OrvSize roiSize, uint16_t threshold, uint16_t value, int32_t compare);
OrvStatus orviThreshold_GTVal_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, uint8_t threshold, uint8_t value);
OrvStatus orviThreshold_GTVal_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, uint16_t threshold, uint16_t value);

// Pixels beyond `threshold` become the threshold; a NaN is beyond nothing and stays. LT is the form with `compare`
// less.
OrvStatus orviThreshold_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                int32_t compare, float threshold);
OrvStatus orviThreshold_LT_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   float threshold);

}  // extern "C"

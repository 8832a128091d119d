// Gradients with magnitude and angle.
//
// Theory. Columns come first here: over the K rows around a pixel each column gives a smoothed value S and a difference
// D, and along the row gx is the difference of S, gy the smoothed D. Rows are extended by their border into a ring in
// the buffer, or read in place where both sides are memory; S, D and what isn't wanted of gx and gy stay in blocks on
// the stack:
//
//   K rows, n + 2h columns --> S, D, n + 2h columns --> gx, gy, n columns --> mag, angle
//
// Limitations. The buffer has room for K extended rows and little more.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/gradient_vector.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"
#include "filter/gradient_kernels.h"

KERNELS_BEGIN

template <class Form>
void ByteGradients(const uint8_t* const* rows, ptrdiff_t n, int16_t* gx, int16_t* gy) {
  Gradients<Form>(rows, n, gx, gy);
}
template <class Form>
void FloatGradients(const float* const* rows, ptrdiff_t n, float* gx, float* gy) {
  Gradients<Form>(rows, n, gx, gy);
}

// |gx| + |gy|; of bytes it fits 16 bits.
template <class R>
void AddMagnitudes(const R* gx, const R* gy, R* mag, ptrdiff_t n) {
  ForLanes<R>(
      n,
      VECTOR(d, x) { hn::StoreU(hn::Add(hn::Abs(hn::LoadU(d, gx + x)), hn::Abs(hn::LoadU(d, gy + x))), d, mag + x); });
}

KERNELS_END

#if HWY_ONCE
#include "core/primitives.h"
#include "filter/extended_rows.h"
#include "filter/gradient_vector.h"

namespace {

constexpr ptrdiff_t angleBlock = 64;

template <class T, class R>
struct GradientCall {
  Plane<const T> src;
  Plane<R> gx, gy, mag;
  Plane<float> angle;
  OrvSize roi;
  int32_t maskSize, norm, borderType;
  T borderValue;
  uint8_t* buffer;
};

template <class T, class R>
struct GradientKernels {
  GradientKernel<T, R> gradients;
  void (*add)(const R* gx, const R* gy, R* mag, ptrdiff_t n);
};

void rootMagnitudes(const int16_t* gx, const int16_t* gy, int16_t* mag, int32_t n) {
  orvsMagnitude_16s_Sfs(gx, gy, mag, n, 0);
}
void rootMagnitudes(const float* gx, const float* gy, float* mag, int32_t n) { orvsMagnitude_32f(gx, gy, mag, n); }

void angles(const float* gx, const float* gy, float* angle, ptrdiff_t n) {
  orvsAtan2_32f_A21(gy, gx, angle, (int32_t)n);
}
void angles(const int16_t* gx, const int16_t* gy, float* angle, ptrdiff_t n) {
  float x[angleBlock], y[angleBlock];
  const auto *const looseX = loose(gx), *const looseY = loose(gy);
  for (ptrdiff_t first = 0; first < n; first += angleBlock) {
    const ptrdiff_t count = n - first < angleBlock ? n - first : angleBlock;
    for (ptrdiff_t i = 0; i < count; ++i) x[i] = looseX[first + i], y[i] = looseY[first + i];
    angles(x, y, angle + first, count);
  }
}

// Row y of an image, from column x on, or the stand-in where there is no image.
template <class R>
R* part(const Plane<R>& image, int32_t y, ptrdiff_t x, R* standIn) {
  return image.data ? raw(image.row(y)) + x : standIn;
}

// One row of the results from the extended rows around it.
template <class T, class R>
void gradientRow(const GradientCall<T, R>& call, const GradientKernels<T, R>& kernels, const T* const* rows,
                 int32_t size, int32_t y) {
  alignas(64) R ownX[gradientBlock], ownY[gradientBlock];
  for (ptrdiff_t x = 0; x < call.roi.width; x += gradientBlock) {
    const ptrdiff_t rest = call.roi.width - x, n = rest < gradientBlock ? rest : (ptrdiff_t)gradientBlock;
    const T* shifted[mostMaskRows];
    for (int32_t i = 0; i < size; ++i) shifted[i] = rows[i] + x;
    R *const gx = part(call.gx, y, x, ownX), *const gy = part(call.gy, y, x, ownY);
    kernels.gradients(shifted, n, gx, gy);
    if (call.mag.data) {
      R* const mag = raw(call.mag.row(y)) + x;
      if (call.norm == orvGradientNormL1) kernels.add(gx, gy, mag, n);
      else rootMagnitudes(gx, gy, mag, (int32_t)n);
    }
    if (call.angle.data) angles(gx, gy, raw(call.angle.row(y)) + x, n);
  }
}

template <class T, class R>
void gradientRows(const GradientCall<T, R>& call, const GradientKernels<T, R>& kernels) {
  const int32_t size = call.maskSize == orvMaskSize3x3 ? 3 : 5;
  ExtendedRows<T> around(call.src, call.roi, size, call.borderType, call.borderValue, (T*)(void*)call.buffer);
  for (int32_t y = 0; y < call.roi.height; ++y) gradientRow(call, kernels, around.next(), size, y);
}

template <class T>
OrvStatus checkOutput(const Plane<T>& image) {
  if (!image.data) return orvStatusOk;
  ORV_REQUIRE(image.step >= 1, orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(image.step), orvStatusStepAlign);
  return orvStatusOk;
}

template <class T, class R>
OrvStatus checkGradient(const GradientCall<T, R>& call, bool has5) {
  ORV_REQUIRE(call.src.data, orvStatusNullPtr);
  ORV_REQUIRE(call.src.step >= 1, orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(call.src.step), orvStatusStepAlign);
  ORV_REQUIRE(call.buffer, orvStatusNullPtr);
  for (const Plane<R>& image : {call.gx, call.gy, call.mag})
    if (const OrvStatus status = checkOutput(image)) return status;
  ORV_REQUIRE(!call.mag.data || call.norm == orvGradientNormL1 || call.norm == orvGradientNormL2, orvStatusBadArg);
  if (const OrvStatus status = checkOutput(call.angle)) return status;
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  const int32_t kind = borderKind(call.borderType);
  ORV_REQUIRE(kind == orvBorderConst || kind == orvBorderRepl || kind == orvBorderInMem, orvStatusBadArg);
  ORV_REQUIRE(call.maskSize == orvMaskSize3x3 || (has5 && call.maskSize == orvMaskSize5x5), orvStatusMaskSize);
  return orvStatusOk;
}

template <class T, class R>
OrvStatus sobelGradient(const GradientCall<T, R>& call, const GradientKernels<T, R>& of3,
                        const GradientKernels<T, R>& of5) {
  if (const OrvStatus status = checkGradient(call, true)) return status;
  gradientRows(call, call.maskSize == orvMaskSize3x3 ? of3 : of5);
  return orvStatusOk;
}
template <class T, class R>
OrvStatus scharrGradient(const GradientCall<T, R>& call, const GradientKernels<T, R>& of3) {
  if (const OrvStatus status = checkGradient(call, false)) return status;
  gradientRows(call, of3);
  return orvStatusOk;
}

}  // namespace

GradientKernel<uint8_t, int16_t> ORV_VARIANT::byteGradients(GradientForm form) {
  return form == GradientForm::sobel3   ? WIDEST(ByteGradients<Sobel3>)
         : form == GradientForm::sobel5 ? WIDEST(ByteGradients<Sobel5>)
                                        : WIDEST(ByteGradients<Scharr3>);
}
GradientKernel<float, float> ORV_VARIANT::floatGradients(GradientForm form) {
  return form == GradientForm::sobel3   ? WIDEST(FloatGradients<Sobel3>)
         : form == GradientForm::sobel5 ? WIDEST(FloatGradients<Sobel5>)
                                        : WIDEST(FloatGradients<Scharr3>);
}

OrvStatus orviGradientVectorGetBufferSize(OrvSize roiSize, OrvMaskSize maskSize, OrvDataType dataType,
                                          int32_t numChannels, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validMask(maskSize), orvStatusMaskSize);
  ORV_REQUIRE(dataType == orvData8u || dataType == orvData16u || dataType == orvData16s || dataType == orvData32f,
              orvStatusDataType);
  ORV_REQUIRE(numChannels == 1 || numChannels == 3, orvStatusChannels);
  const bool small = maskSize == orvMaskSize3x3, wide = roiSize.width > roiSize.height;
  const auto larger = (uint32_t)(wide ? roiSize.width : roiSize.height);
  const auto smaller = (uint32_t)(wide ? roiSize.height : roiSize.width);
  const uint32_t k = small ? 3 : 5;
  const uint32_t rows = smaller < (small ? 4 : 8) ? k + smaller - 1 : small ? k : k + 1;
  const uint32_t elements = (larger + k - 1) * rows * (uint32_t)numChannels, width = (uint32_t)roiSize.width;
  const uint32_t bytes = dataType == orvData8u    ? elements + 4 * width
                         : dataType == orvData32f ? 4 * elements + 8 * width
                                                  : 2 * elements + 8 * width;
  *bufferSize = (int32_t)bytes;
  return orvStatusOk;
}

OrvStatus orviGradientVectorSobel_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* gx, int32_t gxStep,
                                            int16_t* gy, int32_t gyStep, int16_t* mag, int32_t magStep, float* angle,
                                            int32_t angleStep, OrvSize roiSize, OrvMaskSize maskSize, int32_t norm,
                                            OrvBorderType borderType, uint8_t borderValue, uint8_t* buffer) {
  return sobelGradient<uint8_t, int16_t>({{src, srcStep},
                                          {gx, gxStep},
                                          {gy, gyStep},
                                          {mag, magStep},
                                          {angle, angleStep},
                                          roiSize,
                                          maskSize,
                                          norm,
                                          borderType,
                                          borderValue,
                                          buffer},
                                         {WIDEST(ByteGradients<Sobel3>), WIDEST(AddMagnitudes<int16_t>)},
                                         {WIDEST(ByteGradients<Sobel5>), WIDEST(AddMagnitudes<int16_t>)});
}
OrvStatus orviGradientVectorSobel_32f_C1R(const float* src, int32_t srcStep, float* gx, int32_t gxStep, float* gy,
                                          int32_t gyStep, float* mag, int32_t magStep, float* angle, int32_t angleStep,
                                          OrvSize roiSize, OrvMaskSize maskSize, int32_t norm, OrvBorderType borderType,
                                          float borderValue, uint8_t* buffer) {
  return sobelGradient<float, float>({{src, srcStep},
                                      {gx, gxStep},
                                      {gy, gyStep},
                                      {mag, magStep},
                                      {angle, angleStep},
                                      roiSize,
                                      maskSize,
                                      norm,
                                      borderType,
                                      borderValue,
                                      buffer},
                                     {WIDEST(FloatGradients<Sobel3>), WIDEST(AddMagnitudes<float>)},
                                     {WIDEST(FloatGradients<Sobel5>), WIDEST(AddMagnitudes<float>)});
}
OrvStatus orviGradientVectorScharr_8u16s_C1R(const uint8_t* src, int32_t srcStep, int16_t* gx, int32_t gxStep,
                                             int16_t* gy, int32_t gyStep, int16_t* mag, int32_t magStep, float* angle,
                                             int32_t angleStep, OrvSize roiSize, OrvMaskSize maskSize, int32_t norm,
                                             OrvBorderType borderType, uint8_t borderValue, uint8_t* buffer) {
  return scharrGradient<uint8_t, int16_t>({{src, srcStep},
                                           {gx, gxStep},
                                           {gy, gyStep},
                                           {mag, magStep},
                                           {angle, angleStep},
                                           roiSize,
                                           maskSize,
                                           norm,
                                           borderType,
                                           borderValue,
                                           buffer},
                                          {WIDEST(ByteGradients<Scharr3>), WIDEST(AddMagnitudes<int16_t>)});
}
OrvStatus orviGradientVectorScharr_32f_C1R(const float* src, int32_t srcStep, float* gx, int32_t gxStep, float* gy,
                                           int32_t gyStep, float* mag, int32_t magStep, float* angle, int32_t angleStep,
                                           OrvSize roiSize, OrvMaskSize maskSize, int32_t norm,
                                           OrvBorderType borderType, float borderValue, uint8_t* buffer) {
  return scharrGradient<float, float>({{src, srcStep},
                                       {gx, gxStep},
                                       {gy, gyStep},
                                       {mag, magStep},
                                       {angle, angleStep},
                                       roiSize,
                                       maskSize,
                                       norm,
                                       borderType,
                                       borderValue,
                                       buffer},
                                      {WIDEST(FloatGradients<Scharr3>), WIDEST(AddMagnitudes<float>)});
}

#endif

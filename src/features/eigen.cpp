// What the eigenvalue detectors share: checks, sizes, derivatives, bands.
//
// Derivatives of bytes are exact, so those of the gradient vectors are the same as those of the filters. Floats are
// folded as the filters fold them, along the row first.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/eigen.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"

KERNELS_BEGIN

// Derivatives by two-dimensional kernels: each row is folded, then the folded rows from the top.
template <class X, class Y>
void FilterGradients(const float* const* rows, ptrdiff_t n, float* gx, float* gy) {
  const RowPointers<X::Row::size, float> p(rows);
  ForLanes<float>(
      n, VECTOR(d, x) {
        const auto folded = [&](auto taps) __attribute__((always_inline)) {
          using K = decltype(taps);
          return FoldTaps<typename K::Column>(
              d, TAP_VECTOR(i) { return FoldWindow<typename K::Row>(d, p.row[i] + x); });
        };
        hn::StoreU(folded(X()), d, gx + x);
        hn::StoreU(folded(Y()), d, gy + x);
      });
}
void Sobel3Gradients(const float* const* rows, ptrdiff_t n, float* gx, float* gy) {
  FilterGradients<Separable<kerDxNeg_3, kerSobel_3>, Separable<kerSobel_3, kerDx_3>>(rows, n, gx, gy);
}
void Sobel5Gradients(const float* const* rows, ptrdiff_t n, float* gx, float* gy) {
  FilterGradients<Separable<kerDxNeg_5, kerSobel_5>, Separable<kerSobel_5, kerDx_5>>(rows, n, gx, gy);
}
void Scharr3Gradients(const float* const* rows, ptrdiff_t n, float* gx, float* gy) {
  FilterGradients<Separable<kerDx_3, kerScharr_3>, Separable<kerScharr_3, kerDx_3>>(rows, n, gx, gy);
}

KERNELS_END

#if HWY_ONCE
#include "features/eigen.h"
#include "filter/sobel_internal.h"

namespace {

GradientKernel<uint8_t, int16_t> gradientOf(const EigenOptions& options, const uint8_t*) {
  return byteGradients(options.kernelType == orvKernelScharr ? GradientForm::scharr3
                       : options.apertureSize == 5           ? GradientForm::sobel5
                                                             : GradientForm::sobel3);
}
GradientKernel<float, float> gradientOf(const EigenOptions& options, const float*) {
  return options.kernelType == orvKernelScharr ? WIDEST(Scharr3Gradients)
         : options.apertureSize == 5           ? WIDEST(Sobel5Gradients)
                                               : WIDEST(Sobel3Gradients);
}

bool validSide(int32_t side) { return side == 3 || side == 5; }

template <class T, class R>
OrvStatus corners(const EigenCall<T>& call, TensorResult (*result)()) {
  const int32_t maxThreads = owncvGetMaxNumThreads();
  const EigenOptions& options = call.options;
  ORV_REQUIRE(allSet(call.src.data, call.dst.data, call.buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(call.roi), orvStatusSize);
  ORV_REQUIRE(call.src.step >= rowBytes<T>(call.roi.width), orvStatusStep);
  ORV_REQUIRE(call.dst.step >= rowBytes<float>(call.roi.width, call.rowFloats), orvStatusStep);
  ORV_REQUIRE(stepsAligned<T>(call.src.step) && stepsAligned<float>(call.dst.step), orvStatusStepAlign);
  const bool scharr = options.kernelType == orvKernelScharr;
  ORV_REQUIRE(scharr || options.kernelType == orvKernelSobel, orvStatusBadArg);
  ORV_REQUIRE(options.apertureSize == 3 || (!scharr && options.apertureSize == 5), orvStatusSize);
  ORV_REQUIRE(validSide(options.avgWindow), orvStatusSize);

  float scale = 1.0f / (float)(255 << (2 * options.apertureSize - 2));
  if (scharr) scale *= 0.6125f;
  const TensorCall<T, R> tensor = {call.src,
                                   call.dst,
                                   call.channels,
                                   call.roi,
                                   gradientOf(options, call.src.data),
                                   options.apertureSize,
                                   options.avgWindow,
                                   orvBorderRepl,
                                   0,
                                   0,
                                   result(),
                                   {scale, 0, scharr ? 1.f : -1.f, call.roi.width}};
  int32_t bytes = 0;
  eigenBufferSize(call.roi, options.apertureSize, options.avgWindow, sizeof(T) == 1, &bytes);
  const int32_t team = bytes > 0 ? fixedTeam(call.roi, maxThreads) : 1;
  if (team == 1) {
    tensorRows(tensor, 0, call.roi.height, call.buffer, bytes);
    return orvStatusOk;
  }
  runTeam(team, call.roi.height, [&](int32_t first, int32_t rows) {
    const int32_t slice = bytes / owncvGetNumThreads();
    tensorRows(tensor, first, rows, call.buffer + (ptrdiff_t)slice * owncvGetIdThreads(), slice);
  });
  return orvStatusOk;
}

int32_t larger(int32_t a, int32_t b) { return a > b ? a : b; }

}  // namespace

OrvStatus ORV_VARIANT::eigenCorners(const EigenCall<uint8_t>& call, TensorResult (*result)()) {
  return corners<uint8_t, int16_t>(call, result);
}
OrvStatus ORV_VARIANT::eigenCorners(const EigenCall<float>& call, TensorResult (*result)()) {
  return corners<float, float>(call, result);
}

// Room for five planes (of bytes the derivatives are half as large) and for the filters' own scratch. What is asked
// about Scharr filters differs: for floats the window decides, not the aperture.
OrvStatus ORV_VARIANT::eigenBufferSize(OrvSize roi, int32_t apertureSize, int32_t avgWindow, bool bytes,
                                       int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  ORV_REQUIRE(validSide(apertureSize), orvStatusSize);
  ORV_REQUIRE(validSide(avgWindow), orvStatusSize);
  int32_t vert = 0, horiz = 0, scharrVert = 0, scharrHoriz = 0, lowpass = 0, filters;
  orviFilterLowpassGetBufferSize_32f_C1R(roi, avgWindow * 11, &lowpass);
  if (bytes) {
    orviFilterSobelVertGetBufferSize_8u16s_C1R(roi, apertureSize * 11, &vert);
    orviFilterSobelHorizGetBufferSize_8u16s_C1R(roi, apertureSize * 11, &horiz);
    orviFilterScharrVertGetBufferSize_8u16s_C1R(roi, &scharrVert);
    orviFilterScharrHorizGetBufferSize_8u16s_C1R(roi, &scharrHoriz);
    filters =
        larger(wrapMul(owncvGetMaxNumThreads(), wrapAdd(larger(vert, horiz), 32)), larger(scharrVert, scharrHoriz));
  } else {
    orviFilterSobelVertGetBufferSize_32f_C1R(roi, apertureSize * 11, &vert);
    orviFilterSobelHorizGetBufferSize_32f_C1R(roi, apertureSize * 11, &horiz);
    if (avgWindow == 3) {
      orviFilterScharrVertGetBufferSize_32f_C1R(roi, &scharrVert);
      orviFilterScharrHorizGetBufferSize_32f_C1R(roi, &scharrHoriz);
    }
    filters = larger(larger(vert, horiz), larger(scharrVert, scharrHoriz));
  }
  const int32_t pitch = wrapAdd(roi.width, 15) & ~15;
  const int32_t planes = wrapMul(pitch, roi.height, bytes ? 16 : 20);
  *bufferSize = wrapAdd(wrapAdd(planes, larger(filters, lowpass)), 224);
  return orvStatusOk;
}

#endif

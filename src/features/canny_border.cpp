// Canny edges from an image.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/canny_border.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "filter/row_strip.h"
#include "filter/column_stage.h"
#include "filter/fixed_filter.h"
#include "filter/taps.h"
#include "filter/fixed_kernels.h"
#include "filter/gradient_kernels.h"
#include "features/canny_grade.h"

#ifndef ORV_CANNY_FORMS
#define ORV_CANNY_FORMS
namespace ORV_VARIANT {
// Sobel forms whose derivative along the row rises with x, as that of Scharr does.
struct RisingSobel3 : Sobel3 {
  using Along = kerDx_3;
};
struct RisingSobel5 : Sobel5 {
  using Along = kerDx_5;
};
}  // namespace ORV_VARIANT
#endif

KERNELS_BEGIN

// Called for three kinds of gradients: one copy of either.
template <CannyForm form>
HWY_NOINLINE void GradeBlock(const int16_t* dx, const int16_t* dy, float* magnitude, uint8_t* code, ptrdiff_t n,
                             float low) {
  CannyGrade<form>(dx, dy, magnitude, code, n, low, 0);
}

// A row of magnitudes and codes from the extended rows around it. |dx| + |dy| of bytes fits 16 bits.
template <class Form>
void GradeRow(const uint8_t* const* rows, float* magnitude, uint8_t* code, ptrdiff_t width, float low, bool squared) {
  HWY_ALIGN int16_t dx[gradientBlock], dy[gradientBlock];
  for (ptrdiff_t x = 0; x < width; x += gradientBlock) {
    const ptrdiff_t n = HWY_MIN(width - x, gradientBlock);
    const uint8_t* shifted[2 * Form::half + 1];
    for (int i = 0; i <= 2 * Form::half; ++i) shifted[i] = rows[i] + x;
    Gradients<Form>(shifted, n, dx, dy);
    (squared ? GradeBlock<CannyForm::imageL2> : GradeBlock<CannyForm::imageL1>)(dx, dy, magnitude + x, code + x, n,
                                                                                low);
  }
}

KERNELS_END

#if HWY_ONCE
#include "filter/extended_rows.h"

OrvStatus orviCannyBorderGetSize(OrvSize roiSize, int32_t, OrvMaskSize maskSize, int32_t, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validMask(maskSize), orvStatusMaskSize);
  const int32_t margin = maskSize == orvMaskSize3x3 ? 2 : 4;
  const int32_t width = wrapAdd(roiSize.width, margin), height = wrapAdd(roiSize.height, margin);
  *bufferSize = wrapAdd(wrapAdd(wrapMul(width, wrapAdd(height, 16)), wrapMul(4, width, height)), 64);
  return orvStatusOk;
}

// src may be dst: the result is written when nothing is read any more.
OrvStatus orviCannyBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                 OrvFilterKernel filterType, OrvMaskSize maskSize, OrvBorderType borderType,
                                 uint8_t borderValue, float lowThreshold, float highThreshold, OrvNormType norm,
                                 uint8_t* buffer) {
  ORV_REQUIRE(maskSize == orvMaskSize3x3 || (maskSize == orvMaskSize5x5 && filterType != orvFilterKernelScharr),
              orvStatusMaskSize);
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(filterType == orvFilterKernelSobel || filterType == orvFilterKernelScharr, orvStatusBadArg);
  ORV_REQUIRE(norm == orvNormL1 || norm == orvNormL2, orvStatusBadArg);
  ORV_REQUIRE(!(lowThreshold < 0) && !(lowThreshold > highThreshold), orvStatusBadArg);
  const int32_t kind = borderKind(borderType);
  ORV_REQUIRE(kind == orvBorderConst || kind == orvBorderRepl || kind == orvBorderInMem, orvStatusBorder);

  // Here the kind orvBorderInMem means no side: those without a flag are constant.
  const int32_t border = (borderType & orvBorderRepl) | (borderType & borderAllSides);
  const int32_t size = maskSize == orvMaskSize3x3 ? 3 : 5;
  const auto grade = size == 5                            ? WIDEST(GradeRow<RisingSobel5>)
                     : filterType == orvFilterKernelSobel ? WIDEST(GradeRow<RisingSobel3>)
                                                          : WIDEST(GradeRow<Scharr3>);
  const bool squared = norm == orvNormL2;
  const CannyMemory memory(roiSize, buffer);
  ExtendedRows<uint8_t> around({src, srcStep}, roiSize, size, border, borderValue, (uint8_t*)memory.stack);
  cannyEdges(memory, roiSize, highThreshold, {dst, dstStep}, [&](ptrdiff_t, float* magnitude, uint8_t* code) {
    grade(around.next(), magnitude, code, roiSize.width, lowThreshold, squared);
  });
  return orvStatusOk;
}

#endif

// Canny edges from an image.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "features/canny_border.cpp"
#include "core/kernels.h"
#include "features/canny_grade.h"

KERNELS_BEGIN

void GradeL1(const int16_t* dx, const int16_t* dy, float* magnitude, uint8_t* code, ptrdiff_t n, float low,
             int32_t turned) {
  CannyGrade<CannyForm::imageL1>(dx, dy, magnitude, code, n, low, 0, turned);
}
void GradeL2(const int16_t* dx, const int16_t* dy, float* magnitude, uint8_t* code, ptrdiff_t n, float low,
             int32_t turned) {
  CannyGrade<CannyForm::imageL2>(dx, dy, magnitude, code, n, low, 0, turned);
}

KERNELS_END

#if HWY_ONCE
#include "filter/extended_rows.h"
#include "filter/gradient_vector.h"

namespace {

bool validMask(OrvMaskSize maskSize) { return maskSize == orvMaskSize3x3 || maskSize == orvMaskSize5x5; }

// How a row of the image is graded.
struct ImageGrade {
  GradientKernel<uint8_t, int16_t> gradients;
  decltype(&N_SSSE3::GradeL1) grade;
  float low;
  int32_t turned;

  // The windows of column 0 begin at rows[i][0].
  void row(const uint8_t* const* rows, int32_t count, ptrdiff_t width, float* magnitude, uint8_t* code) const {
    alignas(64) int16_t dx[gradientBlock], dy[gradientBlock];
    for (ptrdiff_t x = 0; x < width; x += gradientBlock) {
      const ptrdiff_t n = width - x < gradientBlock ? width - x : (ptrdiff_t)gradientBlock;
      const uint8_t* shifted[5];
      for (int32_t i = 0; i < count; ++i) shifted[i] = rows[i] + x;
      gradients(shifted, n, dx, dy);
      grade(dx, dy, magnitude + x, code + x, n, low, turned);
    }
  }
};

}  // namespace

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
  const bool scharr = filterType == orvFilterKernelScharr;
  const GradientForm form = scharr ? GradientForm::scharr3 : size == 5 ? GradientForm::sobel5 : GradientForm::sobel3;
  const ImageGrade grade = {byteGradients(form), norm == orvNormL2 ? WIDEST(GradeL2) : WIDEST(GradeL1), lowThreshold,
                            scharr ? 0 : -1};  // the dx of Sobel filters falls with x
  const CannyMemory memory(roiSize, buffer);
  ExtendedRows<uint8_t> around({src, srcStep}, roiSize, size, border, borderValue, (uint8_t*)memory.stack);
  cannyEdges(memory, roiSize, highThreshold, {dst, dstStep}, [&](ptrdiff_t, float* magnitude, uint8_t* code) {
    grade.row(around.next(), size, roiSize.width, magnitude, code);
  });
  return orvStatusOk;
}

#endif

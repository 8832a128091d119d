#include "derivatives.h"
#include <stdlib.h>
#include "timing.h"

namespace demo {
namespace {

using Shorts = Image<int16_t>;

// A filter that takes a mask size, with the function that tells its buffer.
template <class D>
struct MaskFilter {
  const char* name;
  OrvStatus (*size)(OrvSize, OrvMaskSize, int32_t*);
  OrvStatus (*run)(const uint8_t*, int32_t, D*, int32_t, OrvSize, OrvMaskSize, OrvBorderType, uint8_t, uint8_t*);
};

template <class D>
Timed<D> filtered(const Bytes& gray, const MaskFilter<D>& filter, OrvMaskSize mask) {
  int32_t bytes;
  require(filter.size(gray.size(), mask, &bytes), filter.name);
  std::vector<uint8_t> buffer((size_t)bytes);
  Image<D> result(gray.width, gray.height, 1);
  const double least = leastSeconds([&] {
    require(filter.run(gray.pixels.data(), gray.step(), result.pixels.data(), result.step(), gray.size(), mask,
                       orvBorderRepl, 0, buffer.data()),
            filter.name);
  });
  return {result, least};
}

// Signed values as gray levels: 0 in the middle, `full` at the ends.
Bytes centred(const Shorts& image, int full) {
  Bytes result(image.width, image.height, 1);
  for (size_t i = 0; i < image.pixels.size(); ++i) {
    const int level = 128 + image.pixels[i] * 127 / full;
    result.pixels[i] = (uint8_t)(level < 0 ? 0 : level > 255 ? 255 : level);
  }
  return result;
}

// The larger of two amounts, which is a gradient's length within a factor of 1.5.
Bytes strength(const Shorts& a, const Shorts& b, int full) {
  Bytes result(a.width, a.height, 1);
  for (size_t i = 0; i < a.pixels.size(); ++i) {
    const int most = std::max(abs(a.pixels[i]), abs(b.pixels[i])) * 255 / full;
    result.pixels[i] = (uint8_t)std::min(most, 255);
  }
  return result;
}

constexpr MaskFilter<int16_t> across{"orviFilterSobelNegVertBorder_8u16s_C1R",
                                     orviFilterSobelNegVertGetBufferSize_8u16s_C1R,
                                     orviFilterSobelNegVertBorder_8u16s_C1R},
    crossed{"orviFilterSobelCrossBorder_8u16s_C1R", orviFilterSobelCrossGetBufferSize_8u16s_C1R,
            orviFilterSobelCrossBorder_8u16s_C1R},
    bend{"orviFilterSobelHorizSecondBorder_8u16s_C1R", orviFilterSobelHorizSecondGetBufferSize_8u16s_C1R,
         orviFilterSobelHorizSecondBorder_8u16s_C1R},
    laplacian{"orviFilterLaplacianBorder_8u16s_C1R", orviFilterLaplacianGetBufferSize_8u16s_C1R,
              orviFilterLaplacianBorder_8u16s_C1R};
constexpr MaskFilter<uint8_t> lowpass{"orviFilterLowpassBorder_8u_C1R", orviFilterLowpassGetBufferSize_8u_C1R,
                                      orviFilterLowpassBorder_8u_C1R};

// Scharr filters have one mask.
OrvStatus scharrDownSize(OrvSize roi, OrvMaskSize, int32_t* bytes) {
  return orviFilterScharrHorizGetBufferSize_8u16s_C1R(roi, bytes);
}
OrvStatus scharrDown(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep, OrvSize roi, OrvMaskSize,
                     OrvBorderType border, uint8_t value, uint8_t* buffer) {
  return orviFilterScharrHorizBorder_8u16s_C1R(src, srcStep, dst, dstStep, roi, border, value, buffer);
}
OrvStatus scharrAcrossSize(OrvSize roi, OrvMaskSize, int32_t* bytes) {
  return orviFilterScharrVertGetBufferSize_8u16s_C1R(roi, bytes);
}
OrvStatus scharrAcross(const uint8_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep, OrvSize roi, OrvMaskSize,
                       OrvBorderType border, uint8_t value, uint8_t* buffer) {
  return orviFilterScharrVertBorder_8u16s_C1R(src, srcStep, dst, dstStep, roi, border, value, buffer);
}

}  // namespace

void showDerivatives(Sheet& sheet, const Bytes& gray) {
  sheet.section("Derivatives and lowpass", "Fixed masks on the gray photograph. Signed results: gray is 0.");
  const struct {
    const MaskFilter<int16_t>& filter;
    OrvMaskSize mask;
    int full;
    const char *stem, *title, *caption;
  } signedOnes[] = {
      {across, orvMaskSize3x3, 400, "sobel_across", "Sobel across, 3 x 3",
       "Bright where it gets brighter to the right."},
      {across, orvMaskSize5x5, 4800, "sobel_across5", "Sobel across, 5 x 5", "The same, smoother."},
      {crossed, orvMaskSize3x3, 200, "sobel_cross", "Sobel, mixed derivative", "Answers to corners and diagonals."},
      {bend, orvMaskSize3x3, 400, "sobel_second", "Sobel down, second derivative", "Thin horizontal lines stand out."},
      {laplacian, orvMaskSize3x3, 400, "laplacian", "Laplacian, 3 x 3", "Edges change sign where they are steepest."},
      {laplacian, orvMaskSize5x5, 4800, "laplacian5", "Laplacian, 5 x 5", "The same, smoother."},
  };
  for (const auto& one : signedOnes) {
    const auto result = filtered(gray, one.filter, one.mask);
    sheet.picture(centred(result.image, one.full), one.stem, one.title, one.caption, one.filter.name, result.seconds);
  }
  const MaskFilter<int16_t> down{"orviFilterScharrHorizBorder_8u16s_C1R", scharrDownSize, scharrDown},
      right{"orviFilterScharrVertBorder_8u16s_C1R", scharrAcrossSize, scharrAcross};
  const auto y = filtered(gray, down, orvMaskSize3x3), x = filtered(gray, right, orvMaskSize3x3);
  sheet.picture(strength(x.image, y.image, 1600), "scharr", "Scharr, both directions",
                "The larger of the two derivatives' amounts. The time is that of one.", down.name, y.seconds);
  for (const auto mask : {orvMaskSize3x3, orvMaskSize5x5}) {
    const auto mean = filtered(gray, lowpass, mask);
    sheet.picture(mean.image, mask == orvMaskSize3x3 ? "lowpass" : "lowpass5",
                  mask == orvMaskSize3x3 ? "lowpass, 3 x 3" : "lowpass, 5 x 5", "The mean of the window.", lowpass.name,
                  mean.seconds);
  }
}

}  // namespace demo

// The scratch size of the Harris response.
//
// It is that of a plan with whole planes of gradients, products and sums for the pieces of a region: a frame as deep as
// window and mask reach, and inside it tiles of some 8000 pixels, rounded to whole multiples of 16 and no narrower than
// eight windows. The strips that do the work need less of it for every piece.
#include "features/harris_size.h"
#include "core/checks.h"
#include "filter/box.h"
#include "filter/gradient_vector.h"

namespace {

// Sums and products of sizes wrap; what is smaller or larger is decided signed.
struct Plan {
  OrvMaskSize maskSize;
  int32_t window;
  OrvDataType dataType;
  int32_t before, behind, reach;  // of the window around a pixel, and of the mask

  int32_t gradientBytes(OrvSize size) const {
    int32_t bytes = 0;
    orviGradientVectorGetBufferSize(size, maskSize, dataType, 1, &bytes);
    return bytes;
  }
  int32_t boxBytes(OrvSize size) const {
    int32_t bytes = 0;
    orviFilterBoxBorderGetBufferSize(size, {window, window}, orvData32f, 1, &bytes);
    return bytes;
  }
  OrvSize enlarged(OrvSize size) const {
    const int32_t margin = wrapAdd(before, behind);
    return {wrapAdd(size.width, margin), wrapAdd(size.height, margin)};
  }
  static int32_t align32(int32_t bytes) { return wrapAdd(bytes, 31) & ~31; }
  static int32_t larger(int32_t a, int32_t b) { return a > b ? a : b; }
  static int32_t smaller(int32_t a, int32_t b) { return a < b ? a : b; }

  int32_t total(OrvSize size, int32_t filters) const {
    const int32_t derivativeBytes = dataType == orvData8u ? 2 : 4;
    const OrvSize plane = enlarged(size);
    const int32_t row = wrapAdd(wrapMul(3, align32(wrapMul(4, plane.width))),
                                wrapMul(2, align32(wrapMul(derivativeBytes, plane.width))));
    return wrapAdd(wrapAdd(wrapMul(row, plane.height), filters), 64);
  }
  // A piece with sides of its own.
  int32_t own(int32_t width, int32_t height) const {
    const OrvSize size = {width, height}, plane = enlarged(size);
    int32_t gradient = gradientBytes(plane);
    if (width == 1 || height == 1)
      gradient = larger(gradient, wrapMul(wrapAdd(width, 2), wrapAdd(height, 2), dataType == orvData8u ? 1 : 4));
    const int32_t sums = wrapAdd(wrapMul(align32(wrapMul(4, plane.width)), plane.height), boxBytes(size));
    return total(size, larger(gradient, sums));
  }
  // A tile, with memory all around.
  int32_t tile(int32_t width, int32_t height) const {
    const OrvSize size = {width, height};
    return total(size, larger(gradientBytes(enlarged(size)), boxBytes(size)));
  }
};

int32_t remainder(int32_t length, int32_t piece) { return piece > 0 ? length % piece : 0; }

}  // namespace

int32_t ORV_VARIANT::harrisBytes(OrvSize roi, OrvMaskSize maskSize, int32_t avgWindow, OrvDataType dataType) {
  const int32_t behind = avgWindow / 2, before = behind - (wrapAdd(avgWindow, 1) & 1);
  const int32_t reach = maskSize == orvMaskSize5x5 ? 2 : 1, margin = wrapAdd(before, behind);
  const Plan plan = {maskSize, avgWindow, dataType, before, behind, reach};
  const int32_t width = roi.width, height = roi.height, frame = wrapAdd(margin, 2 * reach);
  if (width <= frame || height <= frame) return plan.own(width, height);

  const int32_t area = dataType == orvData8u ? 8827 : 7111, side = dataType == orvData8u ? 93 : 84;
  const int32_t inner = Plan::larger(0, wrapAdd(side, wrapMul(margin, -1)));
  const int32_t tileWidth = wrapAdd(margin, wrapAdd(inner, 15) & ~15),
                tileHeight = tileWidth > 0 ? area / tileWidth : 0;
  const int32_t least = wrapMul(8, avgWindow), minusMargin = wrapMul(margin, -1);
  const int32_t a = Plan::smaller(Plan::larger(least, wrapAdd(tileWidth, minusMargin)), width);
  const int32_t b = Plan::smaller(Plan::larger(least, wrapAdd(tileHeight, minusMargin)), height);
  const int32_t restWidth = remainder(width, a), restHeight = remainder(height, b);
  int32_t bytes = plan.tile(a, b);
  if (restHeight > 0) bytes = Plan::larger(bytes, plan.tile(a, restHeight));
  if (restWidth > 0) bytes = Plan::larger(bytes, plan.tile(restWidth, b));
  if (restWidth > 0 && restHeight > 0) bytes = Plan::larger(bytes, plan.tile(restWidth, restHeight));
  const int32_t above = wrapAdd(before, reach), below = wrapAdd(behind, reach);
  bytes = Plan::larger(bytes, plan.own(width, above));
  bytes = Plan::larger(bytes, plan.own(above, height));
  bytes = Plan::larger(bytes, plan.own(below, height));
  return Plan::larger(bytes, plan.own(width, below));
}

OrvStatus orviHarrisCornerGetBufferSize(OrvSize roiSize, OrvMaskSize maskSize, int32_t avgWindow, OrvDataType dataType,
                                        int32_t numChannels, int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(maskSize == orvMaskSize3x3 || maskSize == orvMaskSize5x5, orvStatusMaskSize);
  ORV_REQUIRE(dataType == orvData8u || dataType == orvData32f, orvStatusDataType);
  ORV_REQUIRE(numChannels == 1, orvStatusChannels);
  ORV_REQUIRE(avgWindow != 0, orvStatusSize);
  *bufferSize = harrisBytes(roiSize, maskSize, avgWindow, dataType);
  return orvStatusOk;
}

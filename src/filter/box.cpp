// Box means: a ring of row sums, folded by columns.
//
// A sum is not slid along by adding one pixel and subtracting another: its last bits would depend on where the sliding
// began, and tiles of an image would not meet. Boxes are small, and vectors add sixteen columns at once.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/box.cpp"
#include "core/kernels.h"

KERNELS_BEGIN

// out[x] = s[x] + ... + s[x + size - 1].
void SumWindows(const float* s, float* out, ptrdiff_t n, int32_t size) {
  Vectors<float>(
      0, n, VECTOR(d, x) {
        auto sum = hn::LoadU(d, s + x);
        for (ptrdiff_t i = 1; i < size; ++i) sum = hn::Add(sum, hn::LoadU(d, s + x + i));
        hn::StoreU(sum, d, out + x);
      });
}

// dst[x] = (rows[0][x] + ... + rows[size - 1][x]) * scale.
void MeanOfRows(const float* const* rows, float* dst, ptrdiff_t n, int32_t size, float scale) {
  Vectors<float>(
      0, n, VECTOR(d, x) {
        auto sum = hn::LoadU(d, rows[0] + x);
        for (ptrdiff_t i = 1; i < size; ++i) sum = hn::Add(sum, hn::LoadU(d, rows[i] + x));
        hn::StoreU(hn::Mul(sum, hn::Set(d, scale)), d, dst + x);
      });
}

KERNELS_END

#if HWY_ONCE
#include "core/scratch.h"
#include "filter/box.h"
#include "filter/row_border.h"
#include "filter/row_ring.h"

OrvStatus orviFilterBoxBorderGetBufferSize(OrvSize roiSize, OrvSize maskSize, OrvDataType dataType, int32_t numChannels,
                                           int32_t* bufferSize) {
  ORV_REQUIRE(bufferSize, orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validRoi(maskSize), orvStatusMaskSize);
  ORV_REQUIRE(dataType == orvData8u || dataType == orvData16u || dataType == orvData16s || dataType == orvData32f,
              orvStatusDataType);
  ORV_REQUIRE(numChannels == 1 || numChannels == 3 || numChannels == 4, orvStatusChannels);
  const auto channels = (uint32_t)numChannels, mw = (uint32_t)maskSize.width, mh = (uint32_t)maskSize.height;
  const uint32_t hw = (mw - 1) >> 1, hh = (mh - 1) >> 1;
  const uint32_t w = (uint32_t)roiSize.width + mw, h = (uint32_t)roiSize.height + mh;
  uint32_t size = ((2 * mh - hh - 2) * (w - 1) + (2 * mw - hw - 2) * (h - 1)) * 2 * 4 * channels;
  size += (w + 1) * (channels == 1 ? 4 : 16);
  size += (w - 1) * (h - 1) * 4 * channels;
  size += hh * 8 + 8;
  *bufferSize = (int32_t)size;
  return orvStatusOk;
}

OrvStatus orviFilterBoxBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      OrvSize maskSize, OrvBorderType borderType, const float* borderValue,
                                      uint8_t* buffer) {
  ORV_REQUIRE(allSet(src, dst, buffer), orvStatusNullPtr);
  ORV_REQUIRE(srcStep >= 1 && dstStep >= 1, orvStatusStep);
  ORV_REQUIRE(validRoi(roiSize), orvStatusSize);
  ORV_REQUIRE(validRoi(maskSize), orvStatusMaskSize);
  const int32_t kind = borderKind(borderType), sides = sidesInMemoryByKind(borderType);
  ORV_REQUIRE(kind != orvBorderConst || borderValue, orvStatusNullPtr);
  ORV_REQUIRE(kind == orvBorderConst || kind == orvBorderRepl || sides == borderAllSides, orvStatusBorder);

  const auto sumWindows = WIDEST(SumWindows);
  const auto meanOfRows = WIDEST(MeanOfRows);
  const int32_t width = roiSize.width, anchor = (maskSize.width - 1) >> 1, above = (maskSize.height - 1) >> 1;
  const ptrdiff_t extended = (ptrdiff_t)width + maskSize.width - 1;
  const float scale = 1.0f / (float)wrapMul(maskSize.width, maskSize.height);
  const Plane<const float> in{src, srcStep};
  const Plane<float> out{dst, dstStep};
  // All of this fits the reported size at any address: the pointers where a frame's last rows would be.
  Scratch scratch{buffer};
  float** const ring = scratch.take<float*>(maskSize.height, alignof(float*));
  for (int32_t i = 0; i < maskSize.height; ++i) ring[i] = scratch.take<float>(width, alignof(float));
  float* const strip = scratch.take<float>(extended, alignof(float));
  // The ring is about the middle row; a box of even height has its anchor one row higher.
  const int32_t lower = maskSize.height / 2 - above;
  runRing(
      roiSize.height, maskSize.height, ring,
      [&](int32_t y, float* row) {
        const ptrdiff_t source = borderIndex(kind, (ptrdiff_t)y + lower, roiSize.height, sides & orvBorderInMemTop,
                                             sides & orvBorderInMemBottom);
        if (source == borderNoPixel) fillRun<sizeof(float)>((uint8_t*)strip, (const uint8_t*)borderValue, extended);
        else extendRow<float, 1>(raw(in.row(source)), strip, width, maskSize.width, anchor, borderType, borderValue);
        sumWindows(strip, row, width, maskSize.width);
      },
      [&](int32_t y, float** rows) { meanOfRows(rows, raw(out.row(y)), width, maskSize.height, scale); });
  return orvStatusOk;
}

#endif

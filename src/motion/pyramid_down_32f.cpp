// The dyadic step down for floats.
//
// Theory. The order of additions is fixed: rows first, from left to right, then columns. A row is split into its even
// and its odd pixels, so that all terms of the sum lie side by side for one channel and for three; five filtered rows
// are kept in a ring:
//
//   source row --Split--> even pixels, odd pixels --FilterRow--> slot y % 5   --FoldRows--> a row of the result
//
// The first and the last pixel of a row have sums of their own, written out in rowEnd(). Images of less than three rows
// or columns have only such pixels.
// One body serves both variants.
#include <string.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/pyramid_down_32f.cpp"
#include "core/kernels.h"
#include "core/scratch.h"
#include "motion/pyramid_dyadic.h"

KERNELS_BEGIN

// n pixels from even and odd places each.
void SplitC1(const float* s, float* even, float* odd, ptrdiff_t n) {
  Vectors<float>(
      0, n, VECTOR(d, x) {
        hn::VFromD<decltype(d)> e, o;
        if constexpr (hn::MaxLanes(d) == 1) {
          e = hn::LoadU(d, s + 2 * x), o = hn::LoadU(d, s + 2 * x + 1);
        } else {
          const auto lower = hn::LoadU(d, s + 2 * x), upper = hn::LoadU(d, s + 2 * x + (ptrdiff_t)hn::MaxLanes(d));
          e = hn::ConcatEven(d, upper, lower), o = hn::ConcatOdd(d, upper, lower);
        }
        hn::StoreU(e, d, even + x);
        hn::StoreU(o, d, odd + x);
      });
}
// Pixels move with an element too many, which the next one overwrites, but the last.
void SplitC3(const float* s, float* even, float* odd, ptrdiff_t n) {
  const hn::Full128<float> d;
  for (ptrdiff_t x = 0; x < n; ++x) {
    hn::StoreU(hn::LoadU(d, s + 6 * x), d, even + 3 * x);
    if (x + 1 < n) hn::StoreU(hn::LoadU(d, s + 6 * x + 3), d, odd + 3 * x);
    else memcpy(odd + 3 * x, s + 6 * x + 3, 3 * sizeof(float));
  }
}

// Elements of the pixels between the first and the last one.
void FilterRow(const float* even, const float* odd, float* out, ptrdiff_t first, ptrdiff_t end, ptrdiff_t channels) {
  Vectors<float>(
      first, end, VECTOR(d, x) {
        const auto four = hn::Set(d, 4.f), six = hn::Set(d, 6.f);
        auto sum = hn::LoadU(d, even + x - channels);
        sum = hn::Add(sum, hn::Mul(four, hn::LoadU(d, odd + x - channels)));
        sum = hn::Add(sum, hn::Mul(six, hn::LoadU(d, even + x)));
        sum = hn::Add(sum, hn::Mul(four, hn::LoadU(d, odd + x)));
        hn::StoreU(hn::Add(sum, hn::LoadU(d, even + x + channels)), d, out + x);
      });
}

void FoldRows(const float* const* rows, float* dst, ptrdiff_t n) {
  const float *r0 = rows[0], *r1 = rows[1], *r2 = rows[2], *r3 = rows[3], *r4 = rows[4];
  Vectors<float>(
      0, n, VECTOR(d, x) {
        const auto at = [&](const float* p) __attribute__((always_inline)) { return hn::LoadU(d, p + x); };
        auto sum = hn::Mul(hn::Set(d, 6.f), at(r2));
        sum = hn::Add(sum, hn::Mul(hn::Set(d, 4.f), hn::Add(at(r1), at(r3))));
        sum = hn::Add(hn::Add(sum, at(r0)), at(r4));
        hn::StoreU(hn::Mul(sum, hn::Set(d, 0.00390625f)), d, dst + x);
      });
}

KERNELS_END

#if HWY_ONCE
namespace {

struct DownKernels {
  void (*split)(const float* s, float* even, float* odd, ptrdiff_t n);
  void (*row)(const float* even, const float* odd, float* out, ptrdiff_t first, ptrdiff_t end, ptrdiff_t channels);
  void (*fold)(const float* const* rows, float* dst, ptrdiff_t n);
};

// The sum at the even place x of a line of n elements.
template <class At>
float lineSum(const At& at, ptrdiff_t n, ptrdiff_t x) {
  if (x == 0) return 6 * at(0) + 8 * at(n > 1 ? 1 : 0) + 2 * at(n > 2 ? 2 : 0);
  if (x == n - 1) return 6 * at(x) + 8 * at(x - 1) + 2 * at(x - 2);
  if (x == n - 2) return 7 * at(x) + 4 * (at(x - 1) + at(x + 1)) + at(x - 2);
  return at(x - 2) + 4 * at(x - 1) + 6 * at(x) + 4 * at(x + 1) + at(x + 2);
}

// Images of less than three rows or columns: sums along the longer side, then over the two lines across.
void thinDown(Plane<const float> src, Plane<float> dst, OrvSize roi, ptrdiff_t channels) {
  const bool flat = roi.height < 3;
  const ptrdiff_t lines = flat ? roi.height : roi.width, length = flat ? roi.width : roi.height;
  for (ptrdiff_t i = 0; i < halved((int32_t)length); ++i)
    for (ptrdiff_t c = 0; c < channels; ++c) {
      const auto line = [&](ptrdiff_t k) {
        const auto at = [&](ptrdiff_t p) -> float { return src.row(flat ? k : p)[(flat ? p : k) * channels + c]; };
        return lineSum(at, length, 2 * i);
      };
      dst.row(flat ? 0 : i)[(flat ? i : 0) * channels + c] = (line(0) + line(lines - 1)) * 0.03125f;
    }
}

OrvStatus pyramidDown(DownKernels kernels, const float* srcData, int32_t srcStep, float* dstData, int32_t dstStep,
                      OrvSize roi, int32_t channels, uint8_t* buffer) {
  const OrvStatus status = checkDyadic(srcData, srcStep, dstData, dstStep, roi, halved(roi.width), channels, buffer);
  ORV_REQUIRE(status == orvStatusOk, status);
  const Plane<const float> src{srcData, srcStep};
  const Plane<float> dst{dstData, dstStep};
  if (roi.height < 3 || roi.width < 3) {
    thinDown(src, dst, roi, channels);
    return orvStatusOk;
  }
  const ptrdiff_t pixels = halved(roi.width), n = pixels * channels, last = pixels - 1;
  Scratch scratch{buffer};
  const ptrdiff_t pitch = n < 64 ? n : (n + 15) & ~(ptrdiff_t)15;  // small buffers have no room for whole lines
  float* const even = scratch.take<float>(7 * pitch, 64);
  float* const odd = even + pitch;
  float* ring[5];
  for (int32_t i = 0; i < 5; ++i) ring[i] = even + (2 + i) * pitch;

  ptrdiff_t made = 0;
  for (ptrdiff_t y = 0; y < halved(roi.height); ++y) {
    const ptrdiff_t needed = 2 * y + 2 < roi.height ? 2 * y + 2 : roi.height - 1;
    for (; made <= needed; ++made) {
      const auto* s = src.row(made);
      float* const out = ring[made % 5];
      // the last pixel is taken along with the ends
      kernels.split(raw(s), even, odd, last);
      for (ptrdiff_t c = 0; c < channels; ++c) even[last * channels + c] = s[2 * last * channels + c];
      kernels.row(even, odd, out, channels, last * channels, channels);
      for (const ptrdiff_t x : {(ptrdiff_t)0, last})
        for (ptrdiff_t c = 0; c < channels; ++c) {
          const auto at = [&](ptrdiff_t p) -> float { return s[p * channels + c]; };
          out[x * channels + c] = lineSum(at, roi.width, 2 * x);
        }
    }
    const float* rows[5];
    for (int32_t i = 0; i < 5; ++i) rows[i] = ring[lineBelow(2 * y + i - 2, roi.height) % 5];
    kernels.fold(rows, raw(dst.row(y)), n);
  }
  return orvStatusOk;
}

}  // namespace

OrvStatus orviPyrDown_Gauss5x5_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       uint8_t* buffer) {
  return pyramidDown({WIDEST(SplitC1), WIDEST(FilterRow), WIDEST(FoldRows)}, src, srcStep, dst, dstStep, roiSize, 1,
                     buffer);
}
OrvStatus orviPyrDown_Gauss5x5_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       uint8_t* buffer) {
  return pyramidDown({WIDEST(SplitC3), WIDEST(FilterRow), WIDEST(FoldRows)}, src, srcStep, dst, dstStep, roiSize, 3,
                     buffer);
}

#endif

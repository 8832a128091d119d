// The dyadic step down for floats.
//
// Theory. The order of additions is fixed: rows first, from left to right, then columns. Five filtered rows are kept in
// a ring:
//
//   source row --FilterRow--> slot y % 5   --FoldRows over five slots--> a row of the result
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

// p[0], p[2] ... and p[1], p[3] ...; twice as many elements are read.
template <class D>
HWY_INLINE hn::VFromD<D> Even(D d, const float* p) {
  if constexpr (hn::MaxLanes(d) == 1) return hn::LoadU(d, p);
  else return hn::ConcatEven(d, hn::LoadU(d, p + hn::MaxLanes(d)), hn::LoadU(d, p));
}
template <class D>
HWY_INLINE hn::VFromD<D> Odd(D d, const float* p) {
  if constexpr (hn::MaxLanes(d) == 1) return hn::LoadU(d, p + 1);
  else return hn::ConcatOdd(d, hn::LoadU(d, p + hn::MaxLanes(d)), hn::LoadU(d, p));
}

template <class D, class V>
HWY_INLINE V FiveTaps(D d, V a, V b, V c, V e, V f) {
  const auto four = hn::Set(d, 4.f);
  const auto sum = hn::Add(hn::Add(a, hn::Mul(four, b)), hn::Mul(hn::Set(d, 6.f), c));
  return hn::Add(hn::Add(sum, hn::Mul(four, e)), f);
}

// The last lane of `before`, then all of v but its last; all of v but its first, then the first lane of `behind`.
using V = hn::VFromD<hn::ScalableTag<float>>;
HWY_INLINE V Delayed(V before, V v) {
#if HWY_TARGET <= HWY_AVX3
  return V{_mm512_castsi512_ps(_mm512_alignr_epi32(_mm512_castps_si512(v.raw), _mm512_castps_si512(before.raw), 15))};
#elif HWY_TARGET <= HWY_AVX2
  const auto middle = _mm256_castps_si256(_mm256_permute2f128_ps(before.raw, v.raw, 0x21));
  return V{_mm256_castsi256_ps(_mm256_alignr_epi8(_mm256_castps_si256(v.raw), middle, 12))};
#else
  return V{_mm_castsi128_ps(_mm_alignr_epi8(_mm_castps_si128(v.raw), _mm_castps_si128(before.raw), 12))};
#endif
}
HWY_INLINE V Advanced(V v, V behind) {
#if HWY_TARGET <= HWY_AVX3
  return V{_mm512_castsi512_ps(_mm512_alignr_epi32(_mm512_castps_si512(behind.raw), _mm512_castps_si512(v.raw), 1))};
#elif HWY_TARGET <= HWY_AVX2
  const auto middle = _mm256_castps_si256(_mm256_permute2f128_ps(v.raw, behind.raw, 0x21));
  return V{_mm256_castsi256_ps(_mm256_alignr_epi8(middle, _mm256_castps_si256(v.raw), 4))};
#else
  return V{_mm_castsi128_ps(_mm_alignr_epi8(_mm_castps_si128(behind.raw), _mm_castps_si128(v.raw), 4))};
#endif
}

// Pixels 1 to last - 1 of a row of last + 1. Whole vectors load each pixel once and hand it on. `scratch` of twice a
// row is for three channels.
void FilterRowC1(const float* s, float*, float* out, ptrdiff_t last) {
  const hn::ScalableTag<float> d;
  constexpr ptrdiff_t lanes = hn::MaxLanes(d);
  ptrdiff_t x = 1;
  if (x + lanes <= last) {
    V even0 = hn::Set(d, s[0]), odd0 = hn::Set(d, s[1]), even = Even(d, s + 2), odd = Odd(d, s + 2);
    for (; x + lanes <= last; x += lanes) {
      const float* next = s + 2 * (x + lanes);
      const bool more = x + 2 * lanes <= last;
      const V even2 = more ? Even(d, next) : hn::Set(d, *next), odd2 = more ? Odd(d, next) : odd;
      hn::StoreU(FiveTaps(d, Delayed(even0, even), Delayed(odd0, odd), even, odd, Advanced(even, even2)), d, out + x);
      even0 = even, odd0 = odd, even = even2, odd = odd2;
    }
  }
  LastVectors<float, lanes / 2>(
      x, last, VECTOR(dx, i) {
        const float* p = s + 2 * i;  // up to p[2] of the last lane is read, but no further
        const auto sum = FiveTaps(dx, Even(dx, p - 2), Odd(dx, p - 2), Even(dx, p), Even(dx, p + 1), Odd(dx, p + 1));
        hn::StoreU(sum, dx, out + i);
      });
}
// Split into even and odd pixels first. A pixel moves with an element too many, which the next one overwrites.
void FilterRowC3(const float* s, float* scratch, float* out, ptrdiff_t last) {
  const hn::Full128<float> d4;
  float *const even = scratch, *const odd = scratch + 3 * last + 4;
  for (ptrdiff_t x = 0; x < last; ++x) {
    hn::StoreU(hn::LoadU(d4, s + 6 * x), d4, even + 3 * x);
    hn::StoreU(hn::LoadU(d4, s + 6 * x + 3), d4, odd + 3 * x);
  }
  memcpy(even + 3 * last, s + 6 * last, 3 * sizeof(float));
  Vectors<float>(
      3, 3 * last, VECTOR(d, x) {
        const auto at = [&](const float* p) __attribute__((always_inline)) { return hn::LoadU(d, p + x); };
        hn::StoreU(FiveTaps(d, at(even - 3), at(odd - 3), at(even), at(odd), at(even + 3)), d, out + x);
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
  void (*row)(const float* s, float* scratch, float* out, ptrdiff_t last);
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
  float* ring[5];
  for (int32_t i = 0; i < 5; ++i) ring[i] = scratch.take<float>(pitch, i == 0 ? 64 : 4);
  float* const split = scratch.take<float>(2 * n + 4, 4);

  ptrdiff_t made = 0;
  for (ptrdiff_t y = 0; y < halved(roi.height); ++y) {
    const ptrdiff_t needed = 2 * y + 2 < roi.height ? 2 * y + 2 : roi.height - 1;
    for (; made <= needed; ++made) {
      const auto* s = src.row(made);
      float* const out = ring[made % 5];
      kernels.row(raw(s), split, out, last);
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
  return pyramidDown({WIDEST(FilterRowC1), WIDEST(FoldRows)}, src, srcStep, dst, dstStep, roiSize, 1, buffer);
}
OrvStatus orviPyrDown_Gauss5x5_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       uint8_t* buffer) {
  return pyramidDown({WIDEST(FilterRowC3), WIDEST(FoldRows)}, src, srcStep, dst, dstStep, roiSize, 3, buffer);
}

#endif

// The dyadic step up for floats.
//
// Theory. The order of additions is fixed: rows first, then columns. Rows are doubled into a ring of three, from which
// each source row makes two result rows:
//
//   source row --DoubleRow--> slot y % 3   --FoldRows--> rows 2y and 2y + 1 of the result
//
// The ends of a row are written out in lineEven() and lineOdd(). Images of one row or column have no second pass: their
// sums are scaled by its total.
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/pyramid_up_32f.cpp"
#include "core/kernels.h"
#include "core/scratch.h"
#include "hwy/cache_control.h"
#include "motion/pyramid_dyadic.h"

KERNELS_BEGIN

// What column x becomes.
template <class D>
struct Doubled {
  hn::VFromD<D> even, odd;
  HWY_INLINE Doubled(D d, const float* p, ptrdiff_t channels) {
    const auto here = hn::LoadU(d, p), behind = hn::LoadU(d, p + channels);
    even = hn::Add(hn::Add(hn::LoadU(d, p - channels), hn::Mul(hn::Set(d, 6.f), here)), behind);
    odd = hn::Mul(hn::Set(d, 4.f), hn::Add(here, behind));
  }
};

// The pixels that pixels 1 to n - 2 of a row become.
void DoubleRowC1(const float* s, float* out, ptrdiff_t n) {
  Vectors<float>(
      1, n - 1, VECTOR(d, x) {
        const Doubled<decltype(d)> columns(d, s + x, 1);
        if constexpr (hn::MaxLanes(d) == 1) {
          hn::StoreU(columns.even, d, out + 2 * x);
          hn::StoreU(columns.odd, d, out + 2 * x + 1);
        } else {
          hn::StoreInterleaved2(columns.even, columns.odd, d, out + 2 * x);
        }
      });
}
// A pixel at a time, with an element too many that the next one overwrites; the last one is the vectors' end.
void DoubleRowC3(const float* s, float* out, ptrdiff_t n) {
  for (ptrdiff_t x = 1; x < n - 1; ++x) {
    const auto pixel = [&](auto d, ptrdiff_t c) __attribute__((always_inline)) {
      const Doubled<decltype(d)> columns(d, s + 3 * x + c, 3);
      hn::StoreU(columns.even, d, out + 6 * x + c);
      hn::StoreU(columns.odd, d, out + 6 * x + 3 + c);
    };
    if (x < n - 2) {
      pixel(hn::Full128<float>(), 0);
    } else {
      for (ptrdiff_t c = 0; c < 3; ++c) pixel(hn::Simd<float, 1, 0>(), c);
    }
  }
}

// `bypass`: both result rows begin at a cache line, and their whole vectors go past the cache.
void FoldRows(const float* const* rows, float* even, float* odd, ptrdiff_t n, bool bypass) {
  const float *r0 = rows[0], *r1 = rows[1], *r2 = rows[2];
  const auto fold = [&](auto d, ptrdiff_t x, const auto& store) __attribute__((always_inline)) {
    const auto here = hn::LoadU(d, r1 + x), below = hn::LoadU(d, r2 + x);
    const auto sum = hn::Add(hn::Add(hn::LoadU(d, r0 + x), hn::Mul(hn::Set(d, 6.f), here)), below);
    store(hn::Mul(sum, hn::Set(d, 0.015625f)), even + x);
    store(hn::Mul(hn::Add(here, below), hn::Set(d, 0.0625f)), odd + x);
  };
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(float);
  const hn::ScalableTag<float> whole;
  ptrdiff_t x = 0;
  for (; bypass && x + lanes <= n; x += lanes)
    fold(
        whole, x, [&](auto v, float* p) __attribute__((always_inline)) { hn::Stream(v, whole, p); });
  Vectors<float>(
      x, n, VECTOR(d, i) {
        fold(
            d, i, [&](auto v, float* p) __attribute__((always_inline)) { hn::StoreU(v, d, p); });
      });
}

KERNELS_END

#if HWY_ONCE
namespace {

struct UpKernels {
  void (*row)(const float* s, float* out, ptrdiff_t n);
  void (*fold)(const float* const* rows, float* even, float* odd, ptrdiff_t n, bool bypass);
};

// The two elements that element x of a line of n becomes.
template <class At>
float lineEven(const At& at, ptrdiff_t n, ptrdiff_t x) {
  if (n == 1) return 8 * at(0);
  if (x == 0) return 6 * at(0) + 2 * at(1);
  if (x == n - 1) return 7 * at(x) + at(x - 1);
  return at(x - 1) + 6 * at(x) + at(x + 1);
}
template <class At>
float lineOdd(const At& at, ptrdiff_t n, ptrdiff_t x) {
  return x == n - 1 ? 8 * at(x) : 4 * (at(x) + at(x + 1));
}

// Images of one row or column: along it, and twice across.
void thinUp(Plane<const float> src, Plane<float> dst, OrvSize roi, ptrdiff_t channels) {
  const bool flat = roi.height == 1;
  const ptrdiff_t length = flat ? roi.width : roi.height;
  for (ptrdiff_t i = 0; i < length; ++i)
    for (ptrdiff_t c = 0; c < channels; ++c) {
      const auto at = [&](ptrdiff_t p) -> float { return src.row(flat ? 0 : p)[(flat ? p : 0) * channels + c]; };
      const float values[] = {lineEven(at, length, i) * 0.125f, lineOdd(at, length, i) * 0.125f};
      for (ptrdiff_t k = 0; k < 2; ++k)
        for (ptrdiff_t across = 0; across < 2; ++across)
          dst.row(flat ? across : 2 * i + k)[(flat ? 2 * i + k : across) * channels + c] = values[k];
    }
}

// Whether results of rows of n elements go past the cache. They are four times the source; from 30 MiB on they
// displace more than they serve. Streaming stores take whole lines only.
bool bypasses(Plane<float> dst, ptrdiff_t n, OrvSize roi) {
  const bool atLines = (((uintptr_t)dst.data | (uintptr_t)(uint32_t)dst.step) & 63) == 0;
  return atLines && 2 * roi.height * n * (ptrdiff_t)sizeof(float) >= 30 << 20;
}

OrvStatus pyramidUp(UpKernels kernels, const float* srcData, int32_t srcStep, float* dstData, int32_t dstStep,
                    OrvSize roi, int32_t channels, uint8_t* buffer) {
  const OrvStatus status =
      checkDyadic(srcData, srcStep, dstData, dstStep, roi, wrapMul(2, roi.width), channels, buffer);
  ORV_REQUIRE(status == orvStatusOk, status);
  const Plane<const float> src{srcData, srcStep};
  const Plane<float> dst{dstData, dstStep};
  if (roi.height == 1 || roi.width == 1) {
    thinUp(src, dst, roi, channels);
    return orvStatusOk;
  }
  const ptrdiff_t width = roi.width, n = 2 * width * channels;
  Scratch scratch{buffer};
  float* ring[3];
  for (float*& slot : ring) slot = scratch.take<float>(n, &slot == ring ? 64 : 16);

  const bool bypass = bypasses(dst, n, roi);
  ptrdiff_t made = 0;
  for (ptrdiff_t y = 0; y < roi.height; ++y) {
    for (; made <= y + 1 && made < roi.height; ++made) {
      const auto* s = src.row(made);
      float* const out = ring[made % 3];
      kernels.row(raw(s), out, width);
      for (const ptrdiff_t x : {(ptrdiff_t)0, width - 1})
        for (ptrdiff_t c = 0; c < channels; ++c) {
          const auto at = [&](ptrdiff_t p) -> float { return s[p * channels + c]; };
          out[2 * x * channels + c] = lineEven(at, width, x);
          out[(2 * x + 1) * channels + c] = lineOdd(at, width, x);
        }
    }
    const float* rows[3];
    for (int32_t i = 0; i < 3; ++i) rows[i] = ring[lineAbove(y + i - 1, roi.height) % 3];
    kernels.fold(rows, raw(dst.row(2 * y)), raw(dst.row(2 * y + 1)), n, bypass);
  }
  if (bypass) hwy::FlushStream();
  return orvStatusOk;
}

}  // namespace

OrvStatus orviPyrUp_Gauss5x5_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     uint8_t* buffer) {
  return pyramidUp({WIDEST(DoubleRowC1), WIDEST(FoldRows)}, src, srcStep, dst, dstStep, roiSize, 1, buffer);
}
OrvStatus orviPyrUp_Gauss5x5_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                     uint8_t* buffer) {
  return pyramidUp({WIDEST(DoubleRowC3), WIDEST(FoldRows)}, src, srcStep, dst, dstStep, roiSize, 3, buffer);
}

#endif

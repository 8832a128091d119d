// Kernels for every vector width.
//
// The including file is compiled once for SSSE3, AVX2 and AVX-512 each. Use:
//
//   #undef HWY_TARGET_INCLUDE
//   #define HWY_TARGET_INCLUDE "family/operation.cpp"   // the including file itself
//   #include "core/kernels.h"
//   KERNELS_BEGIN
//   void Kernel(...) { ... }                            // once a width
//   KERNELS_END
//   #if HWY_ONCE
//   OrvStatus orviOperation(...) { ... WIDEST(Kernel)(...) ... }
//   #endif
//
// Limitations: a template takes the instruction set of the place of its definition, not of its use, so helpers of
// kernels stand between KERNELS_BEGIN and KERNELS_END too; a kernel holds no parallel region; results are the same bits
// at every width (no fused multiply-add, no reordered float sums). No include guard: read once a width.
#ifndef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS (HWY_SSE4 | HWY_AVX3_DL)
#endif
#include "hwy/foreach_target.h"  // before highway.h
#include "hwy/highway.h"
#include "core/bands.h"
#include "core/checks.h"
#include "core/image.h"
#include "core/variant.h"
#include "core/width.h"

#ifndef KERNELS_BEGIN
// GCC must be told to tune for wide processors: n8's own tuning shuns their registers. clang has no such pragma.
#if defined(__clang__)
#define ORV_TUNE_WIDE
#define ORV_INDEPENDENT _Pragma("clang loop vectorize(assume_safety)")
#else
#define ORV_TUNE_WIDE _Pragma("GCC target(\"tune=generic\")")
#define ORV_INDEPENDENT _Pragma("GCC ivdep") _Pragma("GCC unroll 1")
#endif

#define KERNELS_BEGIN       \
  HWY_BEFORE_NAMESPACE();   \
  ORV_TUNE_WIDE             \
  namespace ORV_VARIANT {   \
  namespace HWY_NAMESPACE { \
  namespace {               \
  namespace hn = hwy::HWY_NAMESPACE;
#define KERNELS_END \
  }                 \
  }                 \
  }                 \
  HWY_AFTER_NAMESPACE();

// The expression of one column for Columns(). The index is ptrdiff_t: with -fwrapv a 32-bit one is never vectorised.
#define PIXEL(x) [&](ptrdiff_t x) __attribute__((always_inline))
// The same for Vectors(): `d` is a tag with the number of lanes, `x` the first column.
#define VECTOR(d, x) [&](auto d, ptrdiff_t x) __attribute__((always_inline))

// The form of a kernel for this processor. Call it before any parallel region.
#define WIDEST(kernel)                                                                                       \
  ([] {                                                                                                      \
    using namespace ORV_VARIANT;                                                                             \
    static constexpr decltype(&N_SSSE3::kernel) forms[] = {N_SSSE3::kernel, N_AVX2::kernel, N_AVX3::kernel}; \
    return forms[ownVectorWidth];                                                                            \
  }())
#endif

#if defined(ORV_KERNELS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_KERNELS_TOGGLE
#undef ORV_KERNELS_TOGGLE
#else
#define ORV_KERNELS_TOGGLE
#endif
KERNELS_BEGIN

template <int N, class Pixel>
HWY_INLINE void Block(ptrdiff_t x, const Pixel& pixel) {
  // Unrolling would come before vectorisation and prevent it.
  ORV_INDEPENDENT
  for (ptrdiff_t i = 0; i < N; ++i) pixel(x + i);
}

// pixel(x) for first <= x < end, in blocks of fixed length that become whole vectors. Each column must depend on no
// other: an image may be worked on in place.
template <class Pixel>
HWY_INLINE void Columns(ptrdiff_t first, ptrdiff_t end, const Pixel& pixel) {
  ptrdiff_t x = first;
  for (; x <= end - 64; x += 64) Block<64>(x, pixel);
  if (x <= end - 32) Block<32>(x, pixel), x += 32;
  if (x <= end - 16) Block<16>(x, pixel), x += 16;
  if (x <= end - 8) Block<8>(x, pixel), x += 8;
  if (x <= end - 4) Block<4>(x, pixel), x += 4;
  if (x < end) pixel(x++);
  if (x < end) pixel(x++);
  if (x < end) pixel(x);
}

// vector(d, x) for first <= x < end: full vectors of T, then one each of half, a quarter ... of the lanes down to one.
// So no column is computed twice and none beyond `end` is touched.
template <class T, int Lanes, class Vector>
HWY_INLINE void LastVectors(ptrdiff_t x, ptrdiff_t end, const Vector& vector) {
  if constexpr (Lanes >= 1) {
    if (x + Lanes <= end) vector(hn::Simd<T, Lanes, 0>(), x), x += Lanes;
    LastVectors<T, Lanes / 2>(x, end, vector);
  }
}
template <class T, class Vector>
HWY_INLINE void Vectors(ptrdiff_t first, ptrdiff_t end, const Vector& vector) {
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(T);
  const hn::ScalableTag<T> d;
  ptrdiff_t x = first;
  for (; x + lanes <= end; x += lanes) vector(d, x);
  LastVectors<T, lanes / 2>(x, end, vector);
}

KERNELS_END
#endif

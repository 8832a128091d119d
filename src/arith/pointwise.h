// Pointwise operations: one result from the elements at the same place of several images.
//
// Theory of operation. An operation is a formula on the elements of one column, turned into a kernel by MapRows() and
// into a function by pointwise():
//
//   template <class T>
//   void Add(Area area, Plane<const T> src, Plane<float> srcDst) {                // between KERNELS_BEGIN and _END
//     const auto formula = FORMULA(float s, float d) { return d + s; };
//     MapRows(area, srcDst, formula, src, srcDst);
//   }
//   OrvStatus orviAdd_8u32f_C1IR(...) {                                             // in the HWY_ONCE part
//     return pointwise(WIDEST(Add<uint8_t>), ordinary, roiSize, image(src, srcStep), image(srcDst, srcDstStep));
//   }
//
// pointwise() takes the images in the order of the public arguments and makes all the checks, then runs the bands.
// Images whose rows follow each other without a gap are worked on as one long row, so narrow images cost no row ends.
//
// Limitations. A column must depend on no other column: images may be the same, in any combination, but must not
// overlap otherwise. Formulas are inlined into every width, so they may call only what stands in the kernel part.
//
// Read once a width like core/kernels.h, in its place.
#include "core/kernels.h"
#include "hwy/cache_control.h"

#ifndef ORV_POINTWISE_DRIVER
#define ORV_POINTWISE_DRIVER
#include "core/frame.h"

namespace ORV_VARIANT {

// What a kernel works on. `bypass`: the images don't fit into the cache together, so results shall not displace them.
struct Area {
  ptrdiff_t width, height;
  bool bypass;
};

// How an operation is run: on a team if the image is large, and with stores that bypass the cache if `cacheBytes` bytes
// a pixel (0: never) reach the size of the largest cache; each band counts its own rows. Results don't depend on it.
struct Manner {
  bool threaded;
  int32_t cacheBytes;
};
static constexpr Manner ordinary = {true, 0};
static constexpr Manner oneThread = {false, 0};
static constexpr Manner bypassing(int32_t bytesOfPixel) { return {true, bytesOfPixel}; }

template <class T>
static inline Plane<T> image(T* data, int32_t step) {
  return {data, step};
}

// A kernel with a last argument that is the same for all pixels.
template <class Kernel, class Value>
static inline auto with(Kernel kernel, Value value) {
  return [=](auto... argument) { kernel(argument..., value); };
}

// Tests the steps in argument order. All images of one element type share one alignment test, which follows the step
// test of the last of them: a 16-bit source is thus refused before its mask is looked at, a float source only after the
// float destination.
template <class T, class... Rest>
static inline OrvStatus checkSteps(int32_t width, bool misaligned, Plane<T> first, Plane<Rest>... rest) {
  ORV_REQUIRE(first.step >= rowBytes<T>(width), orvStatusStep);
  misaligned |= !stepsAligned<T>(first.step);
  constexpr bool lastOfType = sizeof(T) > 1 && (... && (sizeof(Rest) != sizeof(T)));
  ORV_REQUIRE(!lastOfType || !misaligned, orvStatusStepAlign);
  if constexpr (sizeof...(rest) > 0) return checkSteps(width, misaligned, rest...);
  return orvStatusOk;
}

// Checks all arguments, then calls kernel(area, plane...) for the bands of the region.
template <class Kernel, class... T>
static inline OrvStatus pointwise(Kernel kernel, Manner manner, OrvSize roi, Plane<T>... plane) {
  ORV_REQUIRE(allSet(plane.data...), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roi), orvStatusSize);
  const OrvStatus status = checkSteps(roi.width, false, plane...);
  ORV_REQUIRE(status == orvStatusOk, status);
  const int64_t cache = manner.cacheBytes > 0 ? owncvGetCacheSize() : INT64_MAX;
  const bool gapless = (... && (plane.step == (int64_t)roi.width * (int64_t)sizeof(T)));
  runBands(manner.threaded && areaReaches(roi, 0x40000), roi.height, [&](int32_t first, int32_t rows) {
    const int64_t pixels = (int64_t)roi.width * rows;
    const bool bypass = pixels * manner.cacheBytes >= cache;
    kernel(gapless ? Area{pixels, 1, bypass} : Area{roi.width, rows, bypass}, plane.from(first)...);
  });
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

// A formula for MapRows(): a function of the elements of one column.
#define FORMULA(...) [=](__VA_ARGS__) __attribute__((always_inline))
#endif

#if defined(ORV_POINTWISE_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_POINTWISE_TOGGLE
#undef ORV_POINTWISE_TOGGLE
#else
#define ORV_POINTWISE_TOGGLE
#endif
KERNELS_BEGIN

// `value` where the mask byte isn't 0, else zero bits. A choice between the two would stay scalar code below AVX-512,
// and so would narrow rows above it. Integer sources are masked before they are widened: a quarter of the vectors.
template <class T>
HWY_INLINE T Keep(uint8_t mask, T value) {
  return (T)(value & -(mask != 0));
}
HWY_INLINE float Keep(uint8_t mask, float value) {
  const int32_t ones = -(int32_t)mask >> 31;  // the sign, in every bit
  return __builtin_bit_cast(float, __builtin_bit_cast(int32_t, value) & ones);
}

// |a - b|: exact for integers; for floats the rounded difference without its sign, NaNs included.
template <class T>
HWY_INLINE T Distance(T a, T b) {
  return (T)(a > b ? a - b : b - a);
}
HWY_INLINE float Distance(float a, float b) {
  return __builtin_bit_cast(float, __builtin_bit_cast(int32_t, a - b) & INT32_MAX);
}

// dst[x] = formula(src[x]...) for first <= x < end.
template <class D, class Formula, class... S>
HWY_INLINE void MapColumns(ptrdiff_t first, ptrdiff_t end, LooseElement<D>* dst, const Formula& formula,
                           const LooseElement<S>*... src) {
  Columns(
      first, end, PIXEL(x) { dst[x] = formula(src[x].value...); });
}

// The same for a whole row. With `bypass`, whole cache lines go through a block on the stack to streaming
// stores, the ends of the row, and rows off their elements' boundary, to ordinary ones.
template <class D, class Formula, class... S>
HWY_INLINE void StreamColumns(ptrdiff_t width, bool bypass, LooseElement<D>* dst, const Formula& formula,
                              const LooseElement<S>*... src) {
  constexpr ptrdiff_t line = 64, columns = 64;
  const ptrdiff_t toLine = (ptrdiff_t)(-(uintptr_t)dst % line);
  const bool reachesLine = toLine % (ptrdiff_t)sizeof(D) == 0;
  ptrdiff_t x = bypass && reachesLine ? HWY_MIN(width, toLine / (ptrdiff_t)sizeof(D)) : width;
  MapColumns(0, x, dst, formula, src...);
  if (x == width) return;
  const hn::ScalableTag<D> d;
  for (; x <= width - columns; x += columns) {
    alignas(line) D block[columns];
    Block<columns>(
        0, PIXEL(i) { block[i] = formula(src[x + i].value...); });
    for (size_t i = 0; i < columns; i += hn::Lanes(d)) hn::Stream(hn::Load(d, block + i), d, raw(dst + x) + i);
  }
  MapColumns(x, width, dst, formula, src...);
}

// dst = formula(src...) for every pixel. Only operations that `mayBypass` heed area.bypass. Streamed results are
// visible to other threads, like all others, when the call ends.
template <bool mayBypass = false, class D, class Formula, class... S>
HWY_INLINE void MapRows(Area area, Plane<D> dst, const Formula& formula, Plane<S>... src) {
  for (ptrdiff_t y = 0; y < area.height; ++y) {
    if constexpr (mayBypass) StreamColumns(area.width, area.bypass, dst.row(y), formula, src.row(y)...);
    else MapColumns(0, area.width, dst.row(y), formula, src.row(y)...);
  }
  if (mayBypass && area.bypass) hwy::FlushStream();
}

KERNELS_END
#endif

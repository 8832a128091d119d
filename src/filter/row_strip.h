// Driver of the row stage: for each row the strip, its two ends, the interior (include after core/vectors.h; read once
// a width). The theory stands in row_stage.h.
//
// The strip of a row of at least `size` pixels, in pixels:
//
//   | anchor left border | first size - 1 | last size - 1 | size - 1 - anchor right border |
//    <- windows of the first outputs ----> <- windows of the last outputs --------------->
//
// A shorter row has no interior. It is extended whole, and all its outputs are computed from the strip.
#include "filter/row_border.h"
#include "filter/row_stage.h"
#if defined(ORV_ROW_STRIP_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_ROW_STRIP_TOGGLE
#undef ORV_ROW_STRIP_TOGGLE
#else
#define ORV_ROW_STRIP_TOGGLE
#endif
KERNELS_BEGIN

// OverlappedVectors() from column 0 on, but full vectors in groups of N.
template <class T, int N, class Vector>
HWY_INLINE void OverlappedGroups(ptrdiff_t n, const Vector& vector) {
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(T);
  ptrdiff_t x = 0;
  if constexpr (N > 1)
    for (; x + N * lanes <= n; x += N * lanes) vector(Count<N>(), hn::ScalableTag<T>(), x);
  OverlappedVectors<T, lanes>(x, n, vector);
}

// Copies n < 2 * Count elements without a loop or a call.
template <int Count, class T>
HWY_INLINE void CopyFew(T* dst, const T* src, ptrdiff_t n) {
  if constexpr (Count >= 1) {
    const ptrdiff_t taken = n & Count;
    if (taken) memcpy((void*)dst, src, Count * sizeof(T));
    CopyFew<Count / 2>(dst + taken, src + taken, n);
  }
}

// The outputs of a strip. Few are computed one by one: a vector would have to wait until all pieces of the strip, and
// with them all results stored before, have left the processor's store queue. Many are computed by whole vectors
// through a block of their own; these read up to a vector behind the strip, which its size allows for.
//
// Not inlined: one copy serves both ends, and it may not cost the interior its registers.
template <class T, class Pixel, class Dst, class Edge>
HWY_NOINLINE void EdgeOutputs(const Pixel* strip, Dst* dst, ptrdiff_t n, int32_t size, const Edge& edge) {
  constexpr ptrdiff_t lanes = HWY_MAX_BYTES / sizeof(T), fewProducts = 64;
  if (n * size <= fewProducts) {
    for (ptrdiff_t x = 0; x < n; ++x) edge(Count<1>(), hn::Simd<T, 1, 0>(), strip + x, dst + x);
    return;
  }
  HWY_ALIGN Dst block[lanes];
  for (ptrdiff_t x = 0; x < n; x += lanes) {
    edge(Count<1>(), hn::ScalableTag<T>(), strip + x, block);
    CopyFew<lanes>(dst + x, block, n - x < lanes ? n - x : lanes);
  }
}

// edge(Count<1>, d, s, out) and interior(Count<N>, d, s, out) store N vectors of outputs whose windows begin at s. T is
// the type whose lanes count the outputs of a vector, N the size of a group.
template <class T, int N, int C, class Pixel, class Tap, class Dst, class Edge, class Interior>
HWY_INLINE void FilterRows(Plane<const Pixel> src, Dst* const* dst, int32_t width, int32_t rows,
                           const RowFilter<Pixel, Tap>& f, void* memory, const Edge& edge, const Interior& interior) {
  Pixel* strip = (Pixel*)(((uintptr_t)memory + sizeof(Pixel) - 1) & ~(uintptr_t)(sizeof(Pixel) - 1));
  const ptrdiff_t left = f.anchor, right = f.size - 1 - f.anchor, inside = (ptrdiff_t)width - left - right;
  for (int32_t y = 0; y < rows; ++y) {
    const Pixel* s = raw(src.row(y));
    Dst* d = dst[y];
    if (inside < 1) {
      extendRow<Pixel, C>(s, strip, width, f.size, f.anchor, f.borderType, f.borderValue);
      EdgeOutputs<T>(strip, d, (ptrdiff_t)width * C, f.size, edge);
      continue;
    }
    if (f.size > 1) {
      fillBorder<Pixel, C>(s, strip, width, f.size, f.anchor, f.borderType, f.borderValue);
      EdgeOutputs<T>(strip, d, left * C, f.size, edge);
      EdgeOutputs<T>(strip + (left + f.size - 1) * C, d + (left + inside) * C, right * C, f.size, edge);
    }
    OverlappedGroups<T, N>(
        inside * C, VECTOR_GROUP(n, tag, x) { interior(n, tag, s + x, d + left * C + x); });
  }
}
KERNELS_END
#endif

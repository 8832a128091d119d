// Fold of lines: see fold_lines.h.
#include <float.h>
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "morph/fold_lines.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "morph/fold_lines.h"

KERNELS_BEGIN

template <bool dilate, class V>
HWY_INLINE V FoldTwo(V a, V b) {
  return dilate ? hn::Max(a, b) : hn::Min(a, b);
}

// Four vectors at a time share the walk along the list of lines. Each block of columns is stored after it was read
// from all lines, and no column is computed twice: so a line may be replaced by the result.
template <class T, bool dilate>
HWY_INLINE void FoldRow(const uint8_t* const* lines, ptrdiff_t count, uint8_t* dst, ptrdiff_t elements, bool bounded) {
  VectorGroups<T, 4>(
      0, elements, VECTOR_GROUP(n, d, x) {
        constexpr int N = decltype(n)::value;
        const ptrdiff_t lanes = (ptrdiff_t)hn::Lanes(d);
        const auto load = [&](ptrdiff_t k, ptrdiff_t i) __attribute__((always_inline)) {
          return hn::LoadU(d, (const T*)(const void*)lines[k] + x + i * lanes);
        };
        hn::VFromD<decltype(d)> fold[N];
        Repeat<N>(EACH(i) { fold[i] = load(0, i); });
        if constexpr (std::is_same<T, float>::value)
          if (bounded)
            Repeat<N>(EACH(i) { fold[i] = FoldTwo<dilate>(fold[i], hn::Set(d, dilate ? -FLT_MAX : FLT_MAX)); });
        for (ptrdiff_t k = 1; k < count; ++k) Repeat<N>(EACH(i) { fold[i] = FoldTwo<dilate>(fold[i], load(k, i)); });
        Repeat<N>(EACH(i) { hn::StoreU(fold[i], d, (T*)(void*)dst + x + i * lanes); });
      });
}

template <class T>
void Smallest(const uint8_t* const* lines, ptrdiff_t count, uint8_t* dst, ptrdiff_t elements, bool bounded) {
  FoldRow<T, false>(lines, count, dst, elements, bounded);
}
template <class T>
void Largest(const uint8_t* const* lines, ptrdiff_t count, uint8_t* dst, ptrdiff_t elements, bool bounded) {
  FoldRow<T, true>(lines, count, dst, elements, bounded);
}

KERNELS_END

#if HWY_ONCE

FoldLines ORV_VARIANT::foldLinesOf(int32_t dataType, bool dilate) {
  switch (dataType) {
    case orvData16u:
      return dilate ? WIDEST(Largest<uint16_t>) : WIDEST(Smallest<uint16_t>);
    case orvData16s:
      return dilate ? WIDEST(Largest<int16_t>) : WIDEST(Smallest<int16_t>);
    case orvData32f:
      return dilate ? WIDEST(Largest<float>) : WIDEST(Smallest<float>);
    default:
      return dilate ? WIDEST(Largest<uint8_t>) : WIDEST(Smallest<uint8_t>);
  }
}

#endif

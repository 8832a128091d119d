// Gradients of the K rows around a row (include after filter/fixed_kernels.h; read once a width).
//
// Columns come first: over the K rows each column gives a smoothed value S and a difference D, and along the row gx is
// the difference of S, gy the smoothed D. S and D stay in blocks on the stack.
#include "filter/gradient_vector.h"

#ifndef ORV_GRADIENT_FORMS
#define ORV_GRADIENT_FORMS
namespace ORV_VARIANT {

// The forms: taps that smooth, in either direction, and taps along the row.
struct Sobel3 {
  static constexpr int half = 1;
  using Smooth = kerSobel_3;
  using Along = kerDxNeg_3;
};
struct Sobel5 {
  static constexpr int half = 2;
  using Smooth = kerSobel_5;
  using Along = kerDxNeg_5;
};
struct Scharr3 {
  static constexpr int half = 1;
  using Smooth = kerScharr_3;
  using Along = kerDx_3;
};

}  // namespace ORV_VARIANT
#endif

#if defined(ORV_GRADIENT_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_GRADIENT_TOGGLE
#undef ORV_GRADIENT_TOGGLE
#else
#define ORV_GRADIENT_TOGGLE
#endif
KERNELS_BEGIN

// D of the rows load(0), load(1), ... and the smoothed D of neighbours. The order of float additions is part of the
// form.
template <class Form, class D, class Load>
HWY_INLINE hn::VFromD<D> Difference(D d, const Load& load) {
  if constexpr (Form::half == 1) return hn::Sub(load(2), load(0));
  else return hn::Add(hn::Sub(load(4), load(0)), Times<2>(d, hn::Sub(load(3), load(1))));
}
template <class Form, class D, class Load>
HWY_INLINE hn::VFromD<D> SmoothRow(D d, const Load& load) {
  using Smooth = typename Form::Smooth;
  if constexpr (Smooth::at(0) != 3) return FoldTaps<Smooth>(d, load);
  else return hn::Add(Times<10>(d, load(1)), Times<3>(d, hn::Add(load(0), load(2))));
}

// n <= gradientBlock columns of gx and gy; the windows of column 0 begin at rows[i][0].
template <class Form, class T, class R>
HWY_INLINE void Gradients(const T* const* rows, ptrdiff_t n, R* gx, R* gy) {
  constexpr int ends = 2 * Form::half;
  HWY_ALIGN R smooth[gradientBlock + ends], difference[gradientBlock + ends];
  const RowPointers<ends + 1, T> p(rows);
  ForLanes<R>(
      n + ends, VECTOR(d, x) {
        hn::StoreU(FoldColumns<typename Form::Smooth>(d, p.row, x), d, smooth + x);
        const auto column = TAP_VECTOR(i) { return LoadLanes(d, p.row[i] + x); };
        hn::StoreU(Difference<Form>(d, column), d, difference + x);
      });
  ForLanes<R>(
      n, VECTOR(d, x) {
        hn::StoreU(FoldWindow<typename Form::Along>(d, smooth + x), d, gx + x);
        const auto neighbour = TAP_VECTOR(i) { return LoadLanes(d, difference + x + i); };
        hn::StoreU(SmoothRow<Form>(d, neighbour), d, gy + x);
      });
}

KERNELS_END
#endif

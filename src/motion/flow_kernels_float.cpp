// Tracking windows of floats: sums in double precision.
//
// The order of the additions is the same at every width: eight sums side by side, of the columns that are equal modulo
// 8, each over blocks of eight columns from the left, in a block from the top; then ((0+4)+(2+6)) + ((1+5)+(3+7)).
// One body serves both variants.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "motion/flow_kernels_float.cpp"
#include "core/kernels.h"
#include "core/vectors.h"
#include "motion/flow_derive.h"
#include "motion/flow_kernels.h"

KERNELS_BEGIN

using DD = hn::ScalableTag<double>;
using VD = hn::VFromD<DD>;
using WindowFloat = FlowWindow<float, float>;

void DeriveFloat(const float* first, float* gx, float* gy, ptrdiff_t stride, ptrdiff_t width, ptrdiff_t height) {
  DeriveWindow(first, gx, gy, stride, width, height);
}

// The sums of `Sums` products: add(offset, load, sums) adds those of a vector, where load(p) reads p + offset as
// doubles, with 0 beyond the row's end.
template <int Sums, class Add>
HWY_INLINE void SumWindow(const WindowFloat& w, double* result, const Add& add) {
  constexpr ptrdiff_t columns = 8, lanes = hn::MaxLanes(DD());
  double lane[Sums][columns];
  for (ptrdiff_t first = 0; first < columns; first += lanes) {
    VD sums[Sums];
    for (VD& sum : sums) sum = hn::Zero(DD());
    for (ptrdiff_t x = first; x < w.width; x += columns) {
      const auto inside = hn::FirstN(DD(), (size_t)HWY_MIN(w.width - x, lanes));
      for (ptrdiff_t y = 0; y < w.height; ++y) {
        const ptrdiff_t i = y * w.stride + x;
        const auto load = [&](const float* p) HWY_ATTR {
          return hn::IfThenElseZero(inside, hn::PromoteTo(DD(), hn::LoadU(hn::Rebind<float, DD>(), p + i)));
        };
        add(load, sums);
      }
    }
    for (int s = 0; s < Sums; ++s) hn::StoreU(sums[s], DD(), lane[s] + first);
  }
  for (int s = 0; s < Sums; ++s) {
    const double* l = lane[s];
    result[s] = ((l[0] + l[4]) + (l[2] + l[6])) + ((l[1] + l[5]) + (l[3] + l[7]));
  }
}

void MatrixFloat(const WindowFloat& w, double sums[3]) {
  SumWindow<3>(w, sums, [&](const auto& load, VD* sum) HWY_ATTR {
    const VD gx = load(w.gx), gy = load(w.gy);
    sum[0] = hn::Add(sum[0], hn::Mul(gx, gx));
    sum[1] = hn::Add(sum[1], hn::Mul(gx, gy));
    sum[2] = hn::Add(sum[2], hn::Mul(gy, gy));
  });
}

void MismatchFloat(const WindowFloat& w, double sums[2]) {
  SumWindow<2>(w, sums, [&](const auto& load, VD* sum) HWY_ATTR {
    const VD d = hn::Sub(load(w.first), load(w.second));
    sum[0] = hn::Add(sum[0], hn::Mul(d, load(w.gx)));
    sum[1] = hn::Add(sum[1], hn::Mul(d, load(w.gy)));
  });
}

double SquaresFloat(const WindowFloat& w) {
  double result;
  SumWindow<1>(w, &result, [&](const auto& load, VD* sum) HWY_ATTR {
    const VD d = hn::Sub(load(w.first), load(w.second));
    sum[0] = hn::Add(sum[0], hn::Mul(d, d));
  });
  return result;
}

FlowKernels<float, float> KernelsFloat() { return {DeriveFloat, MatrixFloat, MismatchFloat, SquaresFloat}; }

KERNELS_END

#if HWY_ONCE

FlowKernels<float, float> ORV_VARIANT::flowKernelsFloat() { return WIDEST(KernelsFloat)(); }

#endif

// Magnitude and direction of gradients, for the kernels of Canny edges (include after core/kernels.h; read once a
// width). The table of features/canny.h tells how the forms differ.
#include "features/canny.h"
#if defined(ORV_CANNY_GRADE_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_CANNY_GRADE_TOGGLE
#undef ORV_CANNY_GRADE_TOGGLE
#else
#define ORV_CANNY_GRADE_TOGGLE
#endif
KERNELS_BEGIN

enum class CannyForm { shorts, floats, imageL1, imageL2 };

// Derivatives as floats, and as integers of the same sign.
template <class D>
HWY_INLINE hn::VFromD<D> SignLanes(D d, const int16_t* p) {
  return hn::PromoteTo(d, hn::LoadU(hn::Rebind<int16_t, D>(), p));
}
template <class D>
HWY_INLINE hn::VFromD<D> SignLanes(D d, const float* p) {
  return hn::BitCast(d, hn::LoadU(hn::RebindToFloat<D>(), p));
}
template <class D>
HWY_INLINE auto AbsoluteLanes(D, hn::VFromD<D> v, const int16_t*) {
  return hn::ConvertTo(hn::RebindToFloat<D>(), hn::Abs(v));
}
template <class D>
HWY_INLINE auto AbsoluteLanes(D, hn::VFromD<D> v, const float*) {
  return hn::Abs(hn::BitCast(hn::RebindToFloat<D>(), v));
}

// n magnitudes and codes. `most` bounds the sums of the form for shorts.
template <CannyForm form, class T>
HWY_INLINE void CannyGrade(const T* dx, const T* dy, float* magnitude, uint8_t* code, ptrdiff_t n, float low,
                           float most) {
  constexpr bool image = form == CannyForm::imageL1 || form == CannyForm::imageL2;
  Vectors<float>(
      0, n, VECTOR(d, x) {
        const hn::RebindToSigned<decltype(d)> di;
        const auto sx = SignLanes(di, dx + x), sy = SignLanes(di, dy + x);
        const auto ax = AbsoluteLanes(di, sx, dx), ay = AbsoluteLanes(di, sy, dy);
        auto m = hn::Add(ax, ay);
        if (form == CannyForm::imageL2) m = hn::Sqrt(hn::Add(hn::Mul(ax, ax), hn::Mul(ay, ay)));
        if (form == CannyForm::shorts) m = hn::Min(m, hn::Set(d, most));
        const auto limit = hn::Set(d, low);
        const auto survives = hn::Gt(m, limit);
        m = form == CannyForm::floats ? hn::IfThenZeroElse(hn::Lt(m, limit), m) : hn::IfThenElseZero(survives, m);
        hn::StoreU(m, d, magnitude + x);

        const auto flat = hn::Mul(ax, hn::Set(d, 0.41421357f));
        const auto steep = image ? hn::Add(hn::Add(ax, ax), flat) : hn::Mul(ax, hn::Set(d, 2.4142137f));
        const auto isDown = hn::RebindMask(di, hn::Lt(steep, ay)), isAlong = hn::RebindMask(di, hn::Lt(ay, flat));
        const auto opposite = hn::Lt(hn::Xor(sx, sy), hn::Zero(di));
        auto c = hn::IfThenElse(opposite, hn::Set(di, cannyRising), hn::Set(di, cannyFalling));
        c = hn::IfThenElse(isDown, hn::Set(di, cannyDown), hn::IfThenElse(isAlong, hn::Set(di, cannyAlongRow), c));
        const hn::Rebind<uint8_t, decltype(d)> d8;
        hn::StoreU(hn::DemoteTo(d8, c), d8, code + x);
      });
}

KERNELS_END
#endif

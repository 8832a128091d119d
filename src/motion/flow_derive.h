// Derivatives of a window, for kernels (include after core/vectors.h; read once a width).
#if defined(ORV_FLOW_DERIVE_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_FLOW_DERIVE_TOGGLE
#undef ORV_FLOW_DERIVE_TOGGLE
#else
#define ORV_FLOW_DERIVE_TOGGLE
#endif
KERNELS_BEGIN

template <class DF>
HWY_INLINE hn::VFromD<DF> LoadPixels(DF d, const float* p) {
  return hn::LoadU(d, p);
}
template <class DF>
HWY_INLINE hn::VFromD<DF> LoadPixels(DF d, const uint16_t* p) {
  return hn::ConvertTo(d, hn::PromoteTo(hn::Rebind<int32_t, DF>(), hn::LoadU(hn::Rebind<uint16_t, DF>(), p)));
}
template <class DF>
HWY_INLINE void StoreDerivative(DF d, hn::VFromD<DF> v, float* p) {
  hn::StoreU(v, d, p);
}
template <class DF>
HWY_INLINE void StoreDerivative(DF, hn::VFromD<DF> v, int16_t* p) {
  const hn::Rebind<int16_t, DF> d16;
  hn::StoreU(hn::DemoteTo(d16, Nearest(v)), d16, p);
}

template <class DF>
HWY_INLINE hn::VFromD<DF> SmoothThree(DF d, hn::VFromD<DF> a, hn::VFromD<DF> b, hn::VFromD<DF> c) {
  const auto outer = hn::Set(d, 0.09375f), inner = hn::Set(d, 0.3125f);
  return hn::Add(hn::Add(hn::Mul(outer, a), hn::Mul(inner, b)), hn::Mul(outer, c));
}

// A row's difference and smoothed value.
template <class DF>
struct DerivedRow {
  hn::VFromD<DF> difference, smooth;
  template <class P>
  HWY_INLINE DerivedRow(DF d, const P* p) {
    const auto left = LoadPixels(d, p), middle = LoadPixels(d, p + 1), right = LoadPixels(d, p + 2);
    difference = hn::Sub(right, left);
    smooth = SmoothThree(d, left, middle, right);
  }
};

// Columns outside, rows inside: each row is differenced and smoothed once.
template <class P, class G>
HWY_INLINE void DeriveWindow(const P* first, G* gx, G* gy, ptrdiff_t stride, ptrdiff_t width, ptrdiff_t height) {
  const hn::ScalableTag<float> d;
  for (ptrdiff_t x = 0; x < width; x += (ptrdiff_t)hn::Lanes(d)) {
    DerivedRow<decltype(d)> above(d, first + x), here(d, first + stride + x);
    for (ptrdiff_t y = 0; y < height; ++y) {
      const DerivedRow<decltype(d)> below(d, first + (y + 2) * stride + x);
      StoreDerivative(d, SmoothThree(d, above.difference, here.difference, below.difference), gx + y * stride + x);
      StoreDerivative(d, hn::Sub(below.smooth, above.smooth), gy + y * stride + x);
      above = here, here = below;
    }
  }
}

KERNELS_END
#endif

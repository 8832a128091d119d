// Columns of small windows, for kernels (include after core/vectors.h; read once a width).
//
// A window of optical flow is about a vector wide, so what a row's end costs is what a window costs. AVX-512 takes the
// end by a masked vector, other widths by one that overlaps its predecessor.
#if defined(ORV_WINDOW_COLUMNS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_WINDOW_COLUMNS_TOGGLE
#undef ORV_WINDOW_COLUMNS_TOGGLE
#else
#define ORV_WINDOW_COLUMNS_TOGGLE
#endif
KERNELS_BEGIN

// How the lanes of a vector are read and written: all of them, or the first `count`. Others read as 0.
struct AllLanes {
  template <class D>
  HWY_INLINE hn::VFromD<D> load(D d, const hn::TFromD<D>* p) const {
    return hn::LoadU(d, p);
  }
  template <class D>
  HWY_INLINE void store(D d, hn::VFromD<D> v, hn::TFromD<D>* p) const {
    hn::StoreU(v, d, p);
  }
};
#if HWY_TARGET <= HWY_AVX3
struct FirstLanes {
  size_t count;
  HWY_INLINE explicit FirstLanes(ptrdiff_t n) : count((size_t)n) {}
  template <class D>
  HWY_INLINE hn::VFromD<D> load(D d, const hn::TFromD<D>* p) const {
    return hn::MaskedLoad(hn::FirstN(d, count), d, p);
  }
  template <class D>
  HWY_INLINE void store(D d, hn::VFromD<D> v, hn::TFromD<D>* p) const {
    hn::BlendedStore(v, hn::FirstN(d, count), d, p);
  }
};
#endif

// vector(d, lanes, x) for the columns 0 <= x < width over lanes of T; results must not lie where sources do.
template <class T, class Vector>
HWY_INLINE void WindowColumns(ptrdiff_t width, const Vector& vector) {
#if HWY_TARGET <= HWY_AVX3
  const hn::ScalableTag<T> d;
  constexpr ptrdiff_t count = hn::MaxLanes(d);
  ptrdiff_t x = 0;
  for (; x + count <= width; x += count) vector(d, AllLanes(), x);
  if (x < width) vector(d, FirstLanes(width - x), x);
#else
  ForLanes<T>(
      width, VECTOR(d, x) { vector(d, AllLanes(), x); });
#endif
}
#define WINDOW_VECTOR(d, lanes, x) [&](auto d, const auto& lanes, ptrdiff_t x) __attribute__((always_inline))

KERNELS_END
#endif

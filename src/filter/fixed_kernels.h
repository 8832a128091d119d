// Kernels of the separable fixed filters (include after core/vectors.h and filter/row_strip.h; read once a width).
//
// Whole-number sums fit 16 bits: the largest is that of a smoothed derivative, 255 * 48 for 5x5. Float sums are taken
// in rising order of the taps, those of 0 left out.
#if defined(ORV_FIXED_KERNELS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_FIXED_KERNELS_TOGGLE
#undef ORV_FIXED_KERNELS_TOGGLE
#else
#define ORV_FIXED_KERNELS_TOGGLE
#endif
KERNELS_BEGIN

// Elements of a source or a filtered row in the lanes of a sum: 16-bit integers or floats.
template <class D, class T>
HWY_INLINE hn::VFromD<D> LoadLanes(D d, const T* p) {
  if constexpr (hwy::IsFloat<hn::TFromD<D>>()) return hn::LoadU(d, p);
  else return LoadSigned(d, p);
}

// K * v for K >= 1.
template <int K, class D>
HWY_INLINE hn::VFromD<D> Times(D d, hn::VFromD<D> v) {
  using T = hn::TFromD<D>;
  if constexpr (K == 1) return v;
  else if constexpr (hwy::IsFloat<T>()) return hn::Mul(v, hn::Set(d, (T)K));
  else if constexpr ((K & (K - 1)) == 0) return hn::ShiftLeft<__builtin_ctz(K)>(v);
  else return hn::Mul(v, hn::Set(d, (T)K));
}

// sum + K * v. A negative first term is taken from 0, so that flat float images give +0.
template <int K, bool First, class D>
HWY_INLINE hn::VFromD<D> AddTerm(D d, hn::VFromD<D> sum, hn::VFromD<D> v) {
  if constexpr (K == 0) return sum;
  else if constexpr (K < 0) return hn::Sub(First ? hn::Zero(d) : sum, Times<-K>(d, v));
  else if constexpr (First) return Times<K>(d, v);
  else return hn::Add(sum, Times<K>(d, v));
}

// Float sum from tap I on.
template <class K, int I, bool First, class D, class Load>
HWY_INLINE hn::VFromD<D> RisingSum(D d, hn::VFromD<D> sum, const Load& load) {
  if constexpr (I == K::size) return sum;
  else if constexpr (K::at(I) == 0) return RisingSum<K, I + 1, First>(d, sum, load);
  else return RisingSum<K, I + 1, false>(d, AddTerm<K::at(I), First>(d, sum, load(I)), load);
}

// Integer sum from the pair of taps I and K - 1 - I on: one product for the two.
template <class K, int I, bool First, class D, class Load>
HWY_INLINE hn::VFromD<D> PairedSum(D d, hn::VFromD<D> sum, const Load& load) {
  constexpr int other = K::size - 1 - I, low = K::at(I), high = K::at(other);
  static_assert(low == high || low == -high, "symmetric or antisymmetric");
  if constexpr (I == other) return AddTerm<low, First>(d, sum, low ? load(I) : sum);
  else if constexpr (low == 0) return PairedSum<K, I + 1, First>(d, sum, load);
  else if constexpr (low == high)
    return PairedSum<K, I + 1, false>(d, AddTerm<low, First>(d, sum, hn::Add(load(I), load(other))), load);
  else if constexpr (low > 0)
    return PairedSum<K, I + 1, false>(d, AddTerm<low, First>(d, sum, hn::Sub(load(I), load(other))), load);
  else return PairedSum<K, I + 1, false>(d, AddTerm<high, First>(d, sum, hn::Sub(load(other), load(I))), load);
}

// The sum of the taps K times the vectors load(0), load(1), ...
template <class K, class D, class Load>
HWY_INLINE hn::VFromD<D> FoldTaps(D d, const Load& load) {
  if constexpr (hwy::IsFloat<hn::TFromD<D>>()) return RisingSum<K, 0, true>(d, hn::Zero(d), load);
  else return PairedSum<K, 0, true>(d, hn::Zero(d), load);
}
#define TAP_VECTOR(i) [&](ptrdiff_t i) __attribute__((always_inline))

// The windows of a row that begin at s.
template <class K, class D, class T>
HWY_INLINE hn::VFromD<D> FoldWindow(D d, const T* s) {
  return FoldTaps<K>(
      d, TAP_VECTOR(i) { return LoadLanes(d, s + i); });
}

// The columns from x on.
template <class K, class D, class R>
HWY_INLINE hn::VFromD<D> FoldColumns(D d, const R* const* rows, ptrdiff_t x) {
  return FoldTaps<K>(
      d, TAP_VECTOR(i) { return LoadLanes(d, rows[i] + x); });
}

template <class K, class T, class R>
HWY_INLINE void FilterRow(const T* s, R* out, ptrdiff_t n) {
  ForLanes<R>(
      n, VECTOR(d, x) { hn::StoreU(FoldWindow<K>(d, s + x), d, out + x); });
}
template <class K>
void ByteRows(const uint8_t* s, int16_t* out, ptrdiff_t n, ptrdiff_t) {
  FilterRow<K>(s, out, n);
}
template <class K>
void FloatRows(const float* s, float* out, ptrdiff_t n, ptrdiff_t) {
  FilterRow<K>(s, out, n);
}

// The pointers of the rows, which the compiler would read again after each store.
template <int N, class R>
struct RowPointers {
  const R* row[N];
  HWY_INLINE explicit RowPointers(const R* const* rows) { memcpy(row, rows, sizeof row); }
};

template <class K, class R>
HWY_INLINE void FilterColumns(const R* const* rows, R* dst, ptrdiff_t width) {
  const RowPointers<K::size, R> p(rows);
  ForLanes<R>(
      width, VECTOR(d, x) { hn::StoreU(FoldColumns<K>(d, p.row, x), d, dst + x); });
}
template <class K>
void ShortColumns(const int16_t* const* rows, int16_t* dst, ptrdiff_t width, const ColumnWork&) {
  FilterColumns<K>(rows, dst, width);
}
template <class K>
void FloatColumns(const float* const* rows, float* dst, ptrdiff_t width, const ColumnWork&) {
  FilterColumns<K>(rows, dst, width);
}

// S / 2^shift, to nearest even; |S| <= 16320 < 2^14.
template <class D>
HWY_INLINE hn::VFromD<D> ShiftToNearest(D d, hn::VFromD<D> s, int32_t shift) {
  if (shift == 0) return s;
  const auto odd = hn::And(hn::ShiftRightSame(s, shift), hn::Set(d, 1));
  return hn::ShiftRightSame(hn::Add(hn::Add(s, hn::Set(d, (int16_t)((1 << (shift - 1)) - 1))), odd), shift);
}

// S / 2^shift, towards zero.
template <class D>
HWY_INLINE hn::VFromD<D> ShiftToZero(D d, hn::VFromD<D> s, int32_t shift) {
  const auto negative = hn::And(hn::ShiftRight<15>(s), hn::Set(d, (int16_t)((1 << shift) - 1)));
  return hn::ShiftRightSame(hn::Add(s, negative), shift);
}

// A row of sums(d, x), which are 16-bit integers, divided by +-2^work.shift: the first width & ~15 pixels are rounded
// to nearest even, the others towards zero. This difference is meant.
template <class Sums>
HWY_INLINE void ShiftedBytes(int8_t* dst, ptrdiff_t width, const ColumnWork& work, const Sums& sums) {
  const ptrdiff_t whole = width & ~(ptrdiff_t)15;
  const int16_t sign = work.divisor < 0 ? -1 : 0;
  const auto sum = [&](auto d, ptrdiff_t x) __attribute__((always_inline)) {
    return hn::Sub(hn::Xor(sums(d, x), hn::Set(d, sign)), hn::Set(d, sign));
  };
  ForLanes<int16_t>(
      whole, VECTOR(d, x) { StoreSaturated(d, ShiftToNearest(d, sum(d, x), work.shift), dst + x); });
  ForLanes<int16_t>(
      width - whole,
      VECTOR(d, i) { StoreSaturated(d, ShiftToZero(d, sum(d, whole + i), work.shift), dst + whole + i); });
}

// The general divisor: the column stage of separable filters, with its sums of scaled taps.
template <class K>
HWY_INLINE void DividedColumns(const int16_t* const* rows, int8_t* dst, ptrdiff_t width, const ColumnWork& work) {
  int16_t taps[K::size];
  for (int i = 0; i < K::size; ++i) taps[i] = (int16_t)K::at(i);
  float scaled[K::size];
  ColumnStage_16s8s(rows, {dst, 0}, (int32_t)width, 1, {taps, K::size, 1, work.divisor, scaled});
}

template <class K>
void ByteColumns(const int16_t* const* rows, int8_t* dst, ptrdiff_t width, const ColumnWork& work) {
  if (work.shift == noShift) return DividedColumns<K>(rows, dst, width, work);
  const RowPointers<K::size, int16_t> p(rows);
  ShiftedBytes(
      dst, width, work, VECTOR(d, x) { return FoldColumns<K>(d, p.row, x); });
}

// The filters of a two-dimensional kernel.
template <class K>
FixedFilter<uint8_t, int16_t, int16_t> Separable8u16s() {
  return {K::Row::size, 1, {K::Row::sum}, ByteRows<typename K::Row>, ShortColumns<typename K::Column>};
}
template <class K>
FixedFilter<uint8_t, int16_t, int8_t> Separable8u8s() {
  return {K::Row::size, 1, {K::Row::sum}, ByteRows<typename K::Row>, ByteColumns<typename K::Column>};
}
template <class K>
FixedFilter<float, float, float> Separable32f() {
  return {K::Row::size, 1, {K::Row::sum}, FloatRows<typename K::Row>, FloatColumns<typename K::Column>};
}

KERNELS_END
#endif

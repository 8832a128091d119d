// Integral tables against their plain forms; start values, wrap, and the pixel behind a row.
// One body serves both variants.
#include "detect/table_roles.h"
#include "reference/integral.h"

using namespace test;

namespace {

// Start values: exact ones, and one that overflows or loses bits.
template <class T>
Value<T> start() {
  return Value<T>({0, 5, std::is_integral<T>::value ? (T)(INT32_MAX - 3) : (T)16777215.0, (T)-7});
}

template <class T, class Function>
void oneTable(const char* name, Function function, void (*plain)(const uint8_t*, int32_t, T*, int32_t, OrvSize, T),
              int extra) {
  const Larger<T> table(Out<T>(), extra, extra);
  sweep(name, function, plain, {}, In<uint8_t>(), table, Roi(), start<T>());
  walkArguments(name, function, tableChecks({0, 1}, {1}, 2), In<uint8_t>(), table, Roi(), start<T>());
}

template <class T, class Q, class Function, class Plain>
void twoTables(const char* name, Function function, Plain plain, int extra) {
  const Larger<uint8_t> src(In<uint8_t>(), 0, 0, 0, extra - 1);
  const Larger<T> table(Out<T>(), extra, extra);
  const Larger<Q> squares(Out<Q>(), extra, extra);
  sweep(name, function, plain, {}, src, table, squares, Roi(), start<T>(), start<Q>());
  // Squares that add up to more than 2^32 in a row: integer row sums wrap, double ones must not.
  Random r(seed());
  sweepShapes(name, function, plain, {{400003, 1}}, r, src, table, squares, Roi(), start<T>(), start<Q>());
  walkArguments(name, function, tableChecks({0, 1, 2}, {1, 2}, 3), src, table, squares, Roi(), start<T>(), start<Q>());
}

}  // namespace

TEST(sums) {
  oneTable<int32_t>("orviIntegral_8u32s_C1R", orviIntegral_8u32s_C1R, reference::integral, 1);
  oneTable<float>("orviIntegral_8u32f_C1R", orviIntegral_8u32f_C1R, reference::integral, 1);
}

TEST(sumsAndSquares) {
  twoTables<int32_t, int32_t>("orviSqrIntegral_8u32s_C1R", orviSqrIntegral_8u32s_C1R,
                              reference::sqrIntegral<int32_t, int32_t>, 1);
  twoTables<int32_t, double>("orviSqrIntegral_8u32s64f_C1R", orviSqrIntegral_8u32s64f_C1R,
                             reference::sqrIntegral<int32_t, double>, 1);
  twoTables<float, double>("orviSqrIntegral_8u32f64f_C1R", orviSqrIntegral_8u32f64f_C1R,
                           reference::sqrIntegral<float, double>, 1);
}

TEST(tilted) {
  oneTable<int32_t>("orviTiltedIntegral_8u32s_C1R", orviTiltedIntegral_8u32s_C1R, reference::tiltedIntegral, 2);
  oneTable<float>("orviTiltedIntegral_8u32f_C1R", orviTiltedIntegral_8u32f_C1R, reference::tiltedIntegral, 2);
}

TEST(tiltedWithSquares) {
  twoTables<int32_t, int32_t>("orviTiltedSqrIntegral_8u32s_C1R", orviTiltedSqrIntegral_8u32s_C1R,
                              reference::tiltedSqrIntegral<int32_t, int32_t>, 2);
  twoTables<int32_t, double>("orviTiltedSqrIntegral_8u32s64f_C1R", orviTiltedSqrIntegral_8u32s64f_C1R,
                             reference::tiltedSqrIntegral<int32_t, double>, 2);
  twoTables<float, double>("orviTiltedSqrIntegral_8u32f64f_C1R", orviTiltedSqrIntegral_8u32f64f_C1R,
                           reference::tiltedSqrIntegral<float, double>, 2);
}

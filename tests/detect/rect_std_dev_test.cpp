// Deviations in a rectangle against their plain forms.
// One body serves both variants.
#include "detect/table_roles.h"
#include "reference/integral.h"

using namespace test;

namespace {

const OrvRect rectangles[] = {{0, 0, 1, 1}, {3, 1, 5, 4}, {0, 2, 3, 9}, {9, 0, 2, 6}};

// A table that ends with the last entry that the rectangle reaches, and starts with the first.
template <class T>
Larger<T> tableFor(OrvRect k, bool tilted, bool wildContent) {
  const ImageRole<T> role = wildContent ? wild(In<T>()) : In<T>();
  if (!tilted) return {role, k.x + k.width, k.y + k.height};
  const int reach = k.x + k.y + k.width + k.height - 1, beyond = k.y + k.height - k.x;
  return {role, reach, reach + 1, beyond > 0 ? beyond : 0};
}

// Function, plain form, and the last arguments.
template <class T, class Q, class D, class Function, class Plain, class... Last>
void deviations(const char* name, Function function, Plain plain, bool tilted, Last... last) {
  for (const OrvRect& rect : rectangles) {
    const auto src = tableFor<T>(rect, tilted, true);
    const auto sqr = tableFor<Q>(rect, tilted, true);
    sweep(name, function, plain, {70, 61}, src, sqr, Out<D>(), Roi(), Value<OrvRect>({rect}), last...);
  }
  const OrvRect rect = rectangles[1];
  walkArguments(name, function, tableChecks({0, 1, 2}, {0, 1, 2}, 3), tableFor<T>(rect, tilted, false),
                tableFor<Q>(rect, tilted, false), Out<D>(), Roi(), Value<OrvRect>({rect}), last...);
}

template <bool tilted, class Integers, class Mixed, class Floats>
void allTypes(const std::string& name, Integers integers, Mixed mixed, Floats floats) {
  const Value<int32_t> scale({0, 1, -1, 3, -9, 31, -31, 33, -64});
  deviations<int32_t, int32_t, int32_t>((name + "_32s_C1RSfs").c_str(), integers, reference::integerDeviation<tilted>,
                                        tilted, scale);
  deviations<int32_t, double, float>((name + "_32s32f_C1R").c_str(), mixed, reference::floatDeviation<tilted, int32_t>,
                                     tilted);
  deviations<float, double, float>((name + "_32f_C1R").c_str(), floats, reference::floatDeviation<tilted, float>,
                                   tilted);
}

}  // namespace

TEST(deviations) {
  allTypes<false>("orviRectStdDev", orviRectStdDev_32s_C1RSfs, orviRectStdDev_32s32f_C1R, orviRectStdDev_32f_C1R);
  allTypes<true>("orviTiltedRectStdDev", orviTiltedRectStdDev_32s_C1RSfs, orviTiltedRectStdDev_32s32f_C1R,
                 orviTiltedRectStdDev_32f_C1R);
}

// The step is tested against the rectangle's reach before the rectangle itself is looked at.
TEST(badRectangles) {
  int32_t table[64] = {}, dst[4];
  double squares[64] = {};
  float deviation[4];
  for (const OrvRect& bad : {OrvRect{-1, 0, 2, 2}, OrvRect{0, -1, 2, 2}, OrvRect{0, 0, 0, 2}, OrvRect{0, 0, 2, 0}}) {
    CHECK(orviRectStdDev_32s_C1RSfs(table, 32, table, 32, dst, 8, {2, 2}, bad, 0) == orvStatusSize);
    CHECK(orviTiltedRectStdDev_32s32f_C1R(table, 32, squares, 64, deviation, 8, {2, 2}, bad) == orvStatusSize);
    CHECK(orviRectStdDev_32s_C1RSfs(table, 4, table, 32, dst, 8, {2, 2}, bad, 0) == orvStatusStep);
  }
}

// Deviations in a rectangle against their plain forms, on random tables and on those of images.
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

}  // namespace

TEST(upright) {
  const Value<int32_t> scale({0, 1, -1, 3, -9, 31, -31, 33, -64});
  deviations<int32_t, int32_t, int32_t>("orviRectStdDev_32s_C1RSfs", orviRectStdDev_32s_C1RSfs,
                                        reference::integerDeviation<false>, false, scale);
  deviations<int32_t, double, float>("orviRectStdDev_32s32f_C1R", orviRectStdDev_32s32f_C1R,
                                     reference::floatDeviation<false, int32_t>, false);
  deviations<float, double, float>("orviRectStdDev_32f_C1R", orviRectStdDev_32f_C1R,
                                   reference::floatDeviation<false, float>, false);
}

TEST(tilted) {
  const Value<int32_t> scale({0, 1, -1, 3, -9, 31, -31, 33, -64});
  deviations<int32_t, int32_t, int32_t>("orviTiltedRectStdDev_32s_C1RSfs", orviTiltedRectStdDev_32s_C1RSfs,
                                        reference::integerDeviation<true>, true, scale);
  deviations<int32_t, double, float>("orviTiltedRectStdDev_32s32f_C1R", orviTiltedRectStdDev_32s32f_C1R,
                                     reference::floatDeviation<true, int32_t>, true);
  deviations<float, double, float>("orviTiltedRectStdDev_32f_C1R", orviTiltedRectStdDev_32f_C1R,
                                   reference::floatDeviation<true, float>, true);
}

// Over the tables of an image the result is the deviation of its pixels; a flat image gives 0 and never a NaN.
TEST(ofAnImage) {
  Random r(seed());
  constexpr int size = 40;
  const OrvRect rect{2, 1, 9, 7};
  for (const bool flat : {true, false}) {
    uint8_t src[size][size];
    for (auto& row : src)
      for (uint8_t& p : row) p = (uint8_t)(flat ? 251 : r.in(0, 255));
    int32_t sums[size + 1][size + 1];
    double squares[size + 1][size + 1];
    float dst[30][29];
    orviSqrIntegral_8u32s64f_C1R(src[0], size, sums[0], sizeof sums[0], squares[0], sizeof squares[0], {size, size}, 0,
                                 0);
    orviRectStdDev_32s32f_C1R(sums[0], sizeof sums[0], squares[0], sizeof squares[0], dst[0], sizeof dst[0], {29, 30},
                              rect);
    for (int y = 0; y < 30; ++y)
      for (int x = 0; x < 29; ++x) {
        double sum = 0, square = 0;
        for (int v = 0; v < rect.height; ++v)
          for (int u = 0; u < rect.width; ++u) {
            const double p = src[y + rect.y + v][x + rect.x + u];
            sum += p, square += p * p;
          }
        const double n = rect.width * rect.height, mean = sum / n, expected = sqrt(fmax(0, square / n - mean * mean));
        CHECK(fabs(dst[y][x] - expected) <= (flat ? 0.1 : 1e-3), "%d, %d: %g, not %g", y, x, dst[y][x], expected);
      }
  }
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

// Formulas of the radial undistortion, for kernels (include after core/kernels.h; read once a width).
#include "geometry/undistort_terms.h"
#if defined(ORV_UNDISTORT_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_UNDISTORT_TOGGLE
#undef ORV_UNDISTORT_TOGGLE
#else
#define ORV_UNDISTORT_TOGGLE
#endif
KERNELS_BEGIN

void RadialTerms(const Lens& lens, const ColumnTerms& t, ptrdiff_t column, ptrdiff_t count) {
  const float cx = lens.cx, k1 = lens.k1, k2 = lens.k2, scale = 1.0f / (lens.fx * lens.fx);
  float *const x = t.x, *const u = t.u, *const first = t.first, *const second = t.second;
  Columns(
      0, count, PIXEL(i) {
        x[i] = (float)(int32_t)(column + i);
        u[i] = x[i] - cx;
        const float square = (u[i] * u[i]) * scale;
        first[i] = (k2 * square + k1) * square;
        second[i] = (2 * k2) * square;
      });
}

// The row's share: its coordinate, its distance from the principal point, Y and (k2 * Y + k1) * Y.
struct RadialRow {
  float y, v, square, part;
  HWY_INLINE RadialRow(const Lens& lens, ptrdiff_t row) {
    y = (float)(int32_t)row;
    v = y - lens.cy;
    square = (v * v) * (1.0f / (lens.fy * lens.fy));
    part = (lens.k2 * square + lens.k1) * square;
  }
};

// Where the pixel of column i lies: x + u * K, y + v * K.
struct RadialPlace {
  float x, y;
  HWY_INLINE RadialPlace(const ColumnTerms& t, const RadialRow& row, ptrdiff_t i) {
    const float k = (t.first[i] + row.part) + t.second[i] * row.square;
    x = t.x[i] + t.u[i] * k;
    y = row.y + row.v * k;
  }
};

KERNELS_END
#endif

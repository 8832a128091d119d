// Strips of columns for the column stage (include after core/kernels.h; read once a width).
//
// Each source row is read for `size` destination rows. Rows of a large image times the kernel are more than the first
// level of the cache holds, so the stage works strip by strip, each from top to bottom.
#if defined(ORV_COLUMN_STRIPS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_COLUMN_STRIPS_TOGGLE
#undef ORV_COLUMN_STRIPS_TOGGLE
#else
#define ORV_COLUMN_STRIPS_TOGGLE
#endif
KERNELS_BEGIN

// Calls strip(first, end) for the columns 0 .. end - 1; all strips but the last are whole multiples of 256 columns.
template <class Strip>
HWY_INLINE void ForStrips(ptrdiff_t end, int32_t size, int32_t height, ptrdiff_t elementBytes, const Strip& strip) {
  constexpr ptrdiff_t windowBytes = 24576;
  const ptrdiff_t fitting = windowBytes / (size * elementBytes) & ~(ptrdiff_t)255;
  const ptrdiff_t width = height == 1 ? end : fitting < 256 ? 256 : fitting;
  for (ptrdiff_t first = 0; first < end; first += width) strip(first, end - first < width ? end : first + width);
}
#define STRIP(first, end) [&](ptrdiff_t first, ptrdiff_t end) __attribute__((always_inline))

KERNELS_END
#endif

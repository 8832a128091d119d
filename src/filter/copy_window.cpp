// The driver of all copies with a border: see copy_window.h.
#include "core/image.h"
#include "filter/border_pixels.h"
#include "filter/copy_window.h"

namespace {

// One row: the made pixels of both sides by the rule, the run between them as it is in memory.
template <int N>
void assembleRow(uint8_t* dst, const uint8_t* line, ptrdiff_t n, WindowSpan span, int32_t kind, const uint8_t* value) {
  fillBeyond<N>(dst, line, n, span.p, span.before, kind, value);
  const ptrdiff_t first = span.p + span.before, last = first + span.run;
  uint8_t* run = dst + span.before * N;
  if (run != line + first * N) copyRun(run, line + first * N, span.run * N);
  fillBeyond<N>(run + span.run * N, line, n, last, span.behind, kind, value);
}

template <int N>
void copyRows(const WindowCopy& copy) {
  const Plane<const uint8_t> src{(const uint8_t*)copy.src, copy.srcStep};
  const Plane<uint8_t> dst{(uint8_t*)copy.dst, copy.dstStep};
  const auto inMemory = [&](int32_t side) { return (copy.sides & side) != 0; };
  const WindowSpan span = splitWindow(copy.offset.x, copy.dstSize.width, copy.srcSize.width,
                                      inMemory(orvBorderInMemLeft), inMemory(orvBorderInMemRight));
  const bool top = inMemory(orvBorderInMemTop), bottom = inMemory(orvBorderInMemBottom);
  const auto* value = (const uint8_t*)copy.value;
  const uint8_t* constantRow = nullptr;
  for (ptrdiff_t y = 0; y < copy.dstSize.height; ++y) {
    uint8_t* row = raw(dst.row(y));
    const ptrdiff_t line = borderIndex(copy.kind, copy.offset.y + y, copy.srcSize.height, top, bottom);
    if (line != borderNoPixel) {
      assembleRow<N>(row, raw(src.row(line)), copy.srcSize.width, span, copy.kind, value);
    } else if (constantRow) {
      copyRun(row, constantRow, (ptrdiff_t)copy.dstSize.width * N);
    } else {
      fillRun<N>(row, value, copy.dstSize.width);
      constantRow = row;
    }
  }
}

}  // namespace

void ORV_VARIANT::copyWindow(const WindowCopy& copy) {
  switch (copy.pixelBytes) {
    case 1:
      return copyRows<1>(copy);
    case 2:
      return copyRows<2>(copy);
    case 3:
      return copyRows<3>(copy);
    case 4:
      return copyRows<4>(copy);
    case 6:
      return copyRows<6>(copy);
    case 12:
      return copyRows<12>(copy);
    case 16:
      return copyRows<16>(copy);
  }
}

// The one vector kernel of morphology with a mask: the smallest or largest of several lines, element by element.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "morph/names.h"

namespace ORV_VARIANT {

// dst[x] = fold of lines[0][x] .. lines[count - 1][x] for 0 <= x < elements, at any addresses. `bounded`: floats start
// from the largest finite value (erosion; from the lowest one in dilation), so an infinity on that side isn't kept.
// dst may be a line, or lie before the lines that it overlaps.
using FoldLines = void (*)(const uint8_t* const* lines, ptrdiff_t count, uint8_t* dst, ptrdiff_t elements,
                           bool bounded);

// The form for this processor: the minimum, or the maximum to dilate.
FoldLines foldLinesOf(int32_t dataType, bool dilate);

}  // namespace ORV_VARIANT

// What a smoothing call works on once its checks are done.
#pragma once
#include "filter/names.h"
#include "core/image.h"
#include "filter/border.h"

namespace ORV_VARIANT {

template <class T>
struct Smoothing {
  Plane<const T> src;
  Plane<T> dst;
  OrvSize roi;
  int32_t channels;
  int32_t borderType;     // as the left and right sides see it
  int32_t rowBorderType;  // as rows above and below see it
  const T* borderValue;   // one element a channel; read for constant sides only
  uint8_t* buffer;

  ptrdiff_t elements() const { return (ptrdiff_t)roi.width * channels; }

  // The row of the source that stands for row y, or borderNoPixel for a constant one.
  ptrdiff_t sourceRow(int32_t y) const {
    const int32_t sides = sidesInMemoryByKind(rowBorderType);
    return borderIndex(borderKind(rowBorderType), y, roi.height, sides & orvBorderInMemTop,
                       sides & orvBorderInMemBottom);
  }

  // A row of the border value.
  template <class Element>
  void fillConstant(Element* row) const {
    for (ptrdiff_t x = 0; x < elements(); x += channels)
      for (int32_t c = 0; c < channels; ++c) row[x + c] = (Element)borderValue[c];
  }
};

}  // namespace ORV_VARIANT

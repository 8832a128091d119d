// Plain form of reconstruction: the elementary step, over the whole image, until nothing changes.
#pragma once
#include <algorithm>
#include "reference/pointwise.h"

namespace reference {

template <class T>
void reconstruct(const T* mask, int32_t maskStep, T* marker, int32_t markerStep, OrvSize roi, int norm, bool grow) {
  const auto outer = [&](T a, T b) { return grow ? std::max(a, b) : std::min(a, b); };
  const auto inner = [&](T a, T b) { return grow ? std::min(a, b) : std::max(a, b); };
  forEachElement(roi, 1, [&](int y, int x) {
    store(marker, markerStep, y, x, inner(load(marker, markerStep, y, x), load(mask, maskStep, y, x)));
  });
  for (bool changed = true; changed;) {
    changed = false;
    forEachElement(roi, 1, [&](int y, int x) {
      const T old = load(marker, markerStep, y, x);
      T value = old;
      for (int i = -1; i <= 1; ++i)
        for (int j = -1; j <= 1; ++j) {
          const bool outside = y + i < 0 || y + i >= roi.height || x + j < 0 || x + j >= roi.width;
          if (!outside && (norm == 0 || i * j == 0)) value = outer(value, load(marker, markerStep, y + i, x + j));
        }
      value = inner(value, load(mask, maskStep, y, x));
      if (value != old) store(marker, markerStep, y, x, value), changed = true;
    });
  }
}

}  // namespace reference

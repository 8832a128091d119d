// The taps of the fixed filters, known at compile time: all of them are whole numbers, used in 16 bits and in floats.
//
// Every kernel is symmetric (k[i] == k[K - 1 - i]) or antisymmetric (k[i] == -k[K - 1 - i]). It is applied as a
// correlation: tap 0 lies on the leftmost or topmost pixel.
#pragma once
#include <stdint.h>
#include "filter/names.h"

namespace ORV_VARIANT {

template <int... K>
struct Taps {
  static constexpr int size = sizeof...(K);
  static constexpr int sum = (K + ...);
  static constexpr int at(int i) {
    const int taps[] = {K...};
    return taps[i];
  }
};

using kerDx_3 = Taps<-1, 0, 1>;
using kerDxNeg_3 = Taps<1, 0, -1>;
using kerDx_5 = Taps<-1, -2, 0, 2, 1>;
using kerDxNeg_5 = Taps<1, 2, 0, -2, -1>;
using kerD2x_3 = Taps<1, -2, 1>;
using kerD2x_5 = Taps<1, 0, -2, 0, 1>;
using kerSobel_3 = Taps<1, 2, 1>;
using kerSobel_5 = Taps<1, 4, 6, 4, 1>;
using kerSobelNeg_3 = Taps<-1, -2, -1>;
using kerSobelNeg_5 = Taps<-1, -4, -6, -4, -1>;
using kerScharr_3 = Taps<3, 10, 3>;
using kerAvr_3 = Taps<1, 1, 1>;
using kerAvr_5 = Taps<1, 1, 1, 1, 1>;
using kerLap_3 = Taps<1, 0, 1>;

// A two-dimensional kernel: taps along the row and down the columns.
template <class RowTaps, class ColumnTaps>
struct Separable {
  using Row = RowTaps;
  using Column = ColumnTaps;
  static_assert(Row::size == Column::size, "a mask is square");
};

}  // namespace ORV_VARIANT

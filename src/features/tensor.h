// Means of gradient products around each pixel, for all corner detectors by the structure tensor.
//
// Theory. Row after row flows through a few rows of scratch, in vertical strips that stay in the first cache:
//
//   K source rows --> dx, dy --> xx, xy, yy --window sums--> ring of n rows --fold--> means of xx, xy, yy --> result
//
//                         |<- lo ->|<----- strip ----->|<- h ->|      lo = (n - 1) / 2, h = n / 2
//   columns of products      margin        results       margin
//
// Products beyond a side in memory are computed like all others. Beyond another side they are those of the outermost
// computed row or column, or 0; so a margin is filled after the products of a row are made. A pixel depends on nothing
// but its neighbourhood: strips and bands never show.
//
// Limitations. The scratch must hold tensorBytes() of at least one column.
#pragma once
#include "features/names.h"
#include "core/image.h"
#include "filter/gradient_vector.h"

namespace ORV_VARIANT {

// What a result needs beside the means.
struct TensorWork {
  float scale, k, sign;
  ptrdiff_t whole;  // columns of the region with the ordinary order of operations
};

// The results of columns x .. x + n - 1 of the region; plane p of the means (xx, xy, yy) begins at means + p * pitch.
using TensorResult = void (*)(const float* means, ptrdiff_t pitch, float* dst, ptrdiff_t n, ptrdiff_t x,
                              const TensorWork& work);

template <class T, class R>
struct TensorCall {
  Plane<const T> src;
  Plane<float> dst;
  int32_t channels;  // floats of a result; 0: results get the start of the row and count columns from there
  OrvSize roi;
  GradientKernel<T, R> gradient;
  int32_t maskRows;  // of the gradient, 3 or 5
  int32_t window;    // n
  int32_t kind;      // orvBorderConst (products 0) or orvBorderRepl
  int32_t sides;     // in memory
  T borderValue;
  TensorResult result;
  TensorWork work;
};

// Rows first .. first + rows - 1 of the region, with `bytes` bytes of scratch. Does nothing if they don't suffice for a
// single column, as after a size that wrapped.
void tensorRows(const TensorCall<uint8_t, int16_t>& call, int32_t first, int32_t rows, uint8_t* memory, int64_t bytes);
void tensorRows(const TensorCall<float, float>& call, int32_t first, int32_t rows, uint8_t* memory, int64_t bytes);

}  // namespace ORV_VARIANT

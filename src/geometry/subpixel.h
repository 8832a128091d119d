// Driver of the sub-pixel copies: checks, the place of a window, and what lies around the source.
//
// Theory. A pixel at a fractional place is the weighted sum of the four source pixels around it. All pixels of a call
// have the same fractions, so four weights and one kernel serve the whole window. A window around a centre may reach
// beyond the source. Each axis is then cut in three, by `low` and `high`:
//
//         0        low            high        size
//         | before |    inside    |   behind   |        before: the first source pixel stands for both neighbours
//                                                        behind: the last one
//
// so that the inside of both axes has four real neighbours, the strips beside it two, and the corners one.
//
// An arithmetic is a record with the types Source and Dest and with
//   window(src, dst, width, height)  dst from the (width + 1) x (height + 1) pixels of src by the kernel
//   across(p, q), down(p, q)         one pixel from two neighbours in a row, or in a column
//   single(p)                        one pixel from one
//
// Limitations. src and dst must not overlap.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include "geometry/names.h"
#include "core/checks.h"
#include "core/image.h"

namespace ORV_VARIANT {

// One axis of a window around a centre. Pixel i of the window lies between the source pixels first + i and
// first + i + 1; both are in the source for low <= i <= high. high is at least low - 1.
struct WindowAxis {
  ptrdiff_t first;
  float fraction;
  int32_t low, high;
};

// Places a window of `size` pixels around `centre` over `length` source pixels.
static inline WindowAxis placeWindow(float centre, int32_t size, int32_t length) {
  const float before = -(float)size, behind = (float)length;
  float begin = centre - (float)(size - 1) * 0.5f;
  // Further out nothing changes, and the numbers below stay small. A NaN counts as far before.
  if (!(begin > before)) begin = before;
  if (begin > behind) begin = behind;
  const ptrdiff_t end = (ptrdiff_t)((float)size + begin), right = end - 1;
  WindowAxis axis;
  axis.first = end - size;  // the floor of `begin` where pixels of the source are touched
  axis.fraction = begin - (float)axis.first;
  axis.low = axis.first >= 0 ? 0 : -axis.first < size ? (int32_t)-axis.first : size;
  axis.high = (int32_t)(right > length - 2 ? length - right + (size - 1) - 2 : size - 1);
  if (axis.first >= length) axis.low = 0, axis.high = -1;
  return axis;
}

// The fractional part of an offset, counted upwards: 0.75 for -0.25. What is no number counts as 0.
static inline float fractionOf(float offset) {
  const float fraction = __builtin_fabsf(offset) < 8388608.f ? offset - (float)(int32_t)offset : 0.f;
  return fraction < 0 ? fraction + 1 : fraction;
}

template <class S, class D>
static inline OrvStatus checkWindow(Plane<const S> src, OrvSize srcRoi, Plane<D> dst, OrvSize dstRoi) {
  ORV_REQUIRE(validRoi(srcRoi) && validRoi(dstRoi), orvStatusSize);
  ORV_REQUIRE(src.step >= rowBytes<S>(srcRoi.width) && dst.step >= rowBytes<D>(dstRoi.width), orvStatusStep);
  ORV_REQUIRE(stepsAligned<S>(src.step) && stepsAligned<D>(dst.step), orvStatusStepAlign);
  return orvStatusOk;
}

// The body of orviCopySubpix_*. make(fx, fy) gives the arithmetic of the fractions.
template <class S, class D, class Make>
static inline OrvStatus copySubpix(Plane<const S> src, Plane<D> dst, OrvSize roi, float dx, float dy,
                                   const Make& make) {
  ORV_REQUIRE(allSet(src.data, dst.data), orvStatusNullPtr);
  const OrvStatus status = checkWindow(src, roi, dst, roi);
  ORV_REQUIRE(status == orvStatusOk, status);
  make(fractionOf(dx), fractionOf(dy)).window(src, dst, roi.width, roi.height);
  return orvStatusOk;
}

// The arguments of the functions that take a window around a centre.
template <class S, class D>
struct CentredWindow {
  Plane<const S> src;
  OrvSize srcRoi;
  Plane<D> dst;
  OrvSize dstRoi;
  OrvPoint32f centre;
  OrvPoint *min, *max;
};

template <class T>
static inline void fillPixels(LooseElement<T>* row, ptrdiff_t from, ptrdiff_t end, T value) {
  for (ptrdiff_t x = from; x < end; ++x) row[x] = value;
}

// A row of the window that lies above or below the source: interpolated along the nearest source row.
template <class Arithmetic, class S, class D>
static inline void windowRow(const Arithmetic& form, const LooseElement<S>* s, int32_t length, LooseElement<D>* d,
                             int32_t size, const WindowAxis& x) {
  fillPixels(d, 0, x.low, form.single(s[0]));
  for (ptrdiff_t i = x.low; i <= x.high; ++i) d[i] = form.across(s[x.first + i], s[x.first + i + 1]);
  fillPixels(d, (ptrdiff_t)x.high + 1, size, form.single(s[length - 1]));
}

// Everything outside low..high of either axis.
template <class Arithmetic, class S, class D>
static inline void windowSurround(const Arithmetic& form, const CentredWindow<S, D>& w, const WindowAxis& x,
                                  const WindowAxis& y) {
  const int32_t width = w.dstRoi.width, height = w.dstRoi.height, last = w.srcRoi.width - 1;
  const size_t bytes = (size_t)width * sizeof(D);
  if (x.low > 0 || x.high < width - 1)
    for (ptrdiff_t r = y.low; r <= y.high; ++r) {
      const Loose<const S>*s = w.src.row(y.first + r), *next = w.src.row(y.first + r + 1);
      fillPixels(w.dst.row(r), 0, x.low, form.down(s[0], next[0]));
      fillPixels(w.dst.row(r), (ptrdiff_t)x.high + 1, width, form.down(s[last], next[last]));
    }
  // The first row of each side is made, the others are its copies.
  const struct {
    ptrdiff_t from, end, source;
  } sides[] = {{0, y.low, 0}, {(ptrdiff_t)y.high + 1, height, w.srcRoi.height - 1}};
  for (const auto& side : sides) {
    if (side.from >= side.end) continue;
    windowRow(form, w.src.row(side.source), w.srcRoi.width, w.dst.row(side.from), width, x);
    for (ptrdiff_t r = side.from + 1; r < side.end; ++r) __builtin_memcpy(w.dst.row(r), w.dst.row(side.from), bytes);
  }
}

// The body of the functions around a centre. Those that aren't `whole` leave what lies outside min..max as it is.
template <bool whole, class S, class D, class Make>
static inline OrvStatus copyWindow(const CentredWindow<S, D>& w, const Make& make) {
  ORV_REQUIRE(allSet(w.src.data, w.dst.data, w.min, w.max), orvStatusNullPtr);
  const OrvStatus status = checkWindow(w.src, w.srcRoi, w.dst, w.dstRoi);
  ORV_REQUIRE(status == orvStatusOk, status);
  const WindowAxis x = placeWindow(w.centre.x, w.dstRoi.width, w.srcRoi.width);
  const WindowAxis y = placeWindow(w.centre.y, w.dstRoi.height, w.srcRoi.height);
  const auto form = make(x.fraction, y.fraction);
  if (x.low <= x.high && y.low <= y.high) {
    const Plane<const S> src{raw(w.src.row(y.first + y.low) + x.first + x.low), w.src.step};
    const Plane<D> dst{raw(w.dst.row(y.low) + x.low), w.dst.step};
    form.window(src, dst, x.high - x.low + 1, y.high - y.low + 1);
  }
  if (whole) windowSurround(form, w, x, y);
  *w.min = {x.low, y.low};
  *w.max = {x.high, y.high};
  return orvStatusOk;
}

}  // namespace ORV_VARIANT

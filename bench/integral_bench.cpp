// Integral tables and deviations. The kernels have no branch on pixels.
#include "bench.h"

using bench::Frame;

namespace {

// A table for the frame, `extra` columns and rows larger.
template <class T>
bench::Picture<T> table(const Frame& f, int extra) {
  return Frame{{f.roi.width + extra, f.roi.height + extra}}.image<T>();
}

template <class S, class T, class... Value>
bool sums(const char* name, OrvStatus (*function)(const S*, int32_t, T*, int32_t, OrvSize, Value...)) {
  return bench::add(name, {sizeof(S)}, [=](const Frame& f) {
    auto s = f.image<S>();
    auto t = table<T>(f, 2);
    return [=] { function(s.data, s.step, t.data, t.step, f.roi, Value(0)...); };
  });
}

template <class T, class Q>
bool squares(const char* name,
             OrvStatus (*function)(const uint8_t*, int32_t, T*, int32_t, Q*, int32_t, OrvSize, T, Q)) {
  return bench::add(name, {1}, [=](const Frame& f) {
    auto s = f.image<uint8_t>(1, 1);
    auto t = table<T>(f, 2);
    auto q = table<Q>(f, 2);
    return [=] { function(s.data, s.step, t.data, t.step, q.data, q.step, f.roi, 0, 0); };
  });
}

template <class T, class Q, class D, class... Scale>
bool deviation(const char* name, bench::Threads threads,
               OrvStatus (*function)(const T*, int32_t, const Q*, int32_t, D*, int32_t, OrvSize, OrvRect, Scale...)) {
  return bench::add(name, {4, threads}, [=](const Frame& f) {
    auto t = table<T>(f, 50);
    auto q = table<Q>(f, 50);
    auto d = f.image<D>();
    return [=] { function(t.data, t.step, q.data, q.step, d.data, d.step, f.roi, {12, 1, 12, 12}, Scale(0)...); };
  });
}

#define LINE(kind, function) const bool line_##function = kind(#function, function)
#define DEVIATION(function, threads) const bool line_##function = deviation(#function, threads, function)
LINE(sums, orviIntegral_8u32s_C1R);
LINE(sums, orviIntegral_8u32f_C1R);
LINE(sums, orviIntegral_32f_C1R);
LINE(squares, orviSqrIntegral_8u32s_C1R);
LINE(squares, orviSqrIntegral_8u32s64f_C1R);
LINE(squares, orviSqrIntegral_8u32f64f_C1R);
LINE(sums, orviTiltedIntegral_8u32s_C1R);
LINE(sums, orviTiltedIntegral_8u32f_C1R);
LINE(squares, orviTiltedSqrIntegral_8u32s_C1R);
LINE(squares, orviTiltedSqrIntegral_8u32s64f_C1R);
LINE(squares, orviTiltedSqrIntegral_8u32f64f_C1R);
DEVIATION(orviRectStdDev_32s_C1RSfs, bench::single);
DEVIATION(orviRectStdDev_32s32f_C1R, bench::single);
DEVIATION(orviRectStdDev_32f_C1R, bench::threaded);
DEVIATION(orviTiltedRectStdDev_32s_C1RSfs, bench::single);
DEVIATION(orviTiltedRectStdDev_32s32f_C1R, bench::single);
DEVIATION(orviTiltedRectStdDev_32f_C1R, bench::single);

}  // namespace

// Fixed filters, replicated borders. The kernels have no branch on pixels; the division of 8u8s has two forms.
#include "bench.h"

using bench::Frame;

namespace {

// Lines for the signatures of these filters, mask 33 or 55; `divisor` for 8u8s.
template <class T, class D, class Filter, class Size>
bool masked(const char* name, OrvMaskSize mask, Filter filter, Size size) {
  return bench::add(
      std::string(name) + ",mask:" + std::to_string(mask), {sizeof(T), bench::threaded}, [=](const Frame& f) {
        auto s = f.image<T>();
        auto d = f.image<D>();
        int32_t bytes = 0;
        size(f.roi, mask, &bytes);
        auto buffer = f.scratch(bytes);
        return [=] { filter(s.data, s.step, d.data, d.step, f.roi, mask, orvBorderRepl, (T)0, buffer.get()); };
      });
}
template <class T, class D>
bool add(const char* name,
         OrvStatus (*filter)(const T*, int32_t, D*, int32_t, OrvSize, OrvMaskSize, OrvBorderType, T, uint8_t*),
         OrvStatus (*size)(OrvSize, OrvMaskSize, int32_t*)) {
  return masked<T, D>(name, orvMaskSize3x3, filter, size) && masked<T, D>(name, orvMaskSize5x5, filter, size);
}
bool add(const char* name,
         OrvStatus (*filter)(const uint8_t*, int32_t, int8_t*, int32_t, OrvSize, OrvMaskSize, OrvBorderType, uint8_t,
                             int32_t, uint8_t*),
         OrvStatus (*size)(OrvSize, OrvMaskSize, int32_t*)) {
  bool added = false;
  for (const OrvMaskSize mask : {orvMaskSize3x3, orvMaskSize5x5})
    for (const int32_t divisor : {8, 10})
      added = masked<uint8_t, int8_t>((std::string(name) + ",divisor:" + std::to_string(divisor)).c_str(), mask,
                                      [=](const uint8_t* s, int32_t sStep, int8_t* d, int32_t dStep, OrvSize roi,
                                          OrvMaskSize m, OrvBorderType border, uint8_t value, uint8_t* buffer) {
                                        return filter(s, sStep, d, dStep, roi, m, border, value, divisor, buffer);
                                      },
                                      size);
  return added;
}
template <class T, class D>
bool add(const char* name, OrvStatus (*filter)(const T*, int32_t, D*, int32_t, OrvSize, OrvBorderType, T, uint8_t*),
         OrvStatus (*size)(OrvSize, int32_t*)) {
  return masked<T, D>(
      name, orvMaskSize3x3,
      [=](const T* s, int32_t sStep, D* d, int32_t dStep, OrvSize roi, OrvMaskSize, OrvBorderType border, T value,
          uint8_t* buffer) { return filter(s, sStep, d, dStep, roi, border, value, buffer); },
      [=](OrvSize roi, OrvMaskSize, int32_t* bytes) { return size(roi, bytes); });
}
bool add(const char* name,
         OrvStatus (*filter)(const uint8_t*, int32_t, int8_t*, int32_t, OrvSize, OrvBorderType, uint8_t, int32_t,
                             uint8_t*),
         OrvStatus (*size)(OrvSize, int32_t*)) {
  return masked<uint8_t, int8_t>(
      name, orvMaskSize3x3,
      [=](const uint8_t* s, int32_t sStep, int8_t* d, int32_t dStep, OrvSize roi, OrvMaskSize, OrvBorderType border,
          uint8_t value, uint8_t* buffer) { return filter(s, sStep, d, dStep, roi, border, value, 8, buffer); },
      [=](OrvSize roi, OrvMaskSize, int32_t* bytes) { return size(roi, bytes); });
}

#define LINES(filter, type)                                                                 \
  add("orviFilter" #filter "Border_" #type "_C1R", orviFilter##filter##Border_##type##_C1R, \
      orviFilter##filter##GetBufferSize_##type##_C1R)

const bool lines[] = {
    LINES(SobelVert, 8u8s),        LINES(SobelNegVert, 8u16s),   LINES(SobelNegVert, 8u8s),
    LINES(SobelNegVert, 32f),      LINES(SobelHoriz, 8u8s),      LINES(SobelCross, 8u16s),
    LINES(SobelCross, 8u8s),       LINES(SobelCross, 32f),       LINES(SobelHorizSecond, 8u16s),
    LINES(SobelHorizSecond, 8u8s), LINES(SobelHorizSecond, 32f), LINES(SobelVertSecond, 8u16s),
    LINES(SobelVertSecond, 8u8s),  LINES(SobelVertSecond, 32f),  LINES(ScharrHoriz, 8u16s),
    LINES(ScharrHoriz, 8u8s),      LINES(ScharrHoriz, 32f),      LINES(ScharrVert, 8u16s),
    LINES(ScharrVert, 8u8s),       LINES(ScharrVert, 32f),       LINES(Laplacian, 8u16s),
    LINES(Laplacian, 8u8s),        LINES(Laplacian, 32f),        LINES(Lowpass, 8u),
    LINES(Lowpass, 32f),
};

const bool taps = bench::add("orviGenSobelKernel_32f,size:7", {4}, [](const Frame&) {
  return [] {
    float kernel[7];
    orviGenSobelKernel_32f(kernel, 7, 1, 1);
  };
});

}  // namespace

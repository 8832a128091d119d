// Absolute differences.
#include "bench.h"

namespace {

template <class T, class Function>
bool twoImages(const char* name, Function function) {
  return bench::add(name, {(int)sizeof(T), bench::threaded}, [=](const bench::Frame& f) {
    auto a = f.image<T>(), b = f.image<T>(), d = f.image<T>();
    return [=] { function(a.data, a.step, b.data, b.step, d.data, d.step, f.roi); };
  });
}
template <class T, class Function>
bool imageAndConstant(const char* name, Function function) {
  return bench::add(name, {(int)sizeof(T), bench::threaded}, [=](const bench::Frame& f) {
    auto a = f.image<T>(), d = f.image<T>();
    return [=] { function(a.data, a.step, d.data, d.step, f.roi, 77); };
  });
}

const bool lines[] = {
    twoImages<uint8_t>("orviAbsDiff_8u_C1R", orviAbsDiff_8u_C1R),
    twoImages<uint16_t>("orviAbsDiff_16u_C1R", orviAbsDiff_16u_C1R),
    twoImages<float>("orviAbsDiff_32f_C1R", orviAbsDiff_32f_C1R),
    imageAndConstant<uint8_t>("orviAbsDiffC_8u_C1R", orviAbsDiffC_8u_C1R),
    imageAndConstant<uint16_t>("orviAbsDiffC_16u_C1R", orviAbsDiffC_16u_C1R),
    imageAndConstant<float>("orviAbsDiffC_32f_C1R", orviAbsDiffC_32f_C1R),
    bench::add("orviAbsDiff_8u_C3R", {3, bench::threaded},
               [](const bench::Frame& f) {
                 auto a = f.image<uint8_t>(3), b = f.image<uint8_t>(3), d = f.image<uint8_t>(3);
                 return [=] { orviAbsDiff_8u_C3R(a.data, a.step, b.data, b.step, d.data, d.step, f.roi); };
               }),
};

}  // namespace

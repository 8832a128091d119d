// Accumulations. The accumulator starts at zero and grows from run to run, as it does in use.
#include <string.h>
#include "bench.h"

namespace {

bench::Picture<float> accumulator(const bench::Frame& f) {
  auto p = f.image<float>();
  memset(p.data, 0, (size_t)p.step * (size_t)f.roi.height);
  return p;
}

// `weight` is nothing or alpha.
template <class T, class Function, class... Weight>
bool plain(const char* name, Function function, Weight... weight) {
  return bench::add(name, {(int)sizeof(T), bench::threaded}, [=](const bench::Frame& f) {
    auto a = f.image<T>();
    auto d = accumulator(f);
    return [=] { function(a.data, a.step, d.data, d.step, f.roi, weight...); };
  });
}
template <class T, class Function, class... Weight>
bool masked(const char* name, Function function, Weight... weight) {
  return bench::add(name, {(int)sizeof(T), bench::threaded}, [=](const bench::Frame& f) {
    auto a = f.image<T>();
    auto m = f.mask();
    auto d = accumulator(f);
    return [=] { function(a.data, a.step, m.data, m.step, d.data, d.step, f.roi, weight...); };
  });
}
template <class T, class Function>
bool product(const char* name, Function function) {
  return bench::add(name, {(int)sizeof(T), bench::threaded}, [=](const bench::Frame& f) {
    auto a = f.image<T>(), b = f.image<T>();
    auto d = accumulator(f);
    return [=] { function(a.data, a.step, b.data, b.step, d.data, d.step, f.roi); };
  });
}
template <class T, class Function>
bool productMasked(const char* name, Function function) {
  return bench::add(name, {(int)sizeof(T), bench::threaded}, [=](const bench::Frame& f) {
    auto a = f.image<T>(), b = f.image<T>();
    auto m = f.mask();
    auto d = accumulator(f);
    return [=] { function(a.data, a.step, b.data, b.step, m.data, m.step, d.data, d.step, f.roi); };
  });
}

const float alpha = 0.05f;
const bool lines[] = {
    plain<uint8_t>("orviAdd_8u32f_C1IR", orviAdd_8u32f_C1IR),
    masked<uint8_t>("orviAdd_8u32f_C1IMR", orviAdd_8u32f_C1IMR),
    plain<int8_t>("orviAdd_8s32f_C1IR", orviAdd_8s32f_C1IR),
    masked<uint16_t>("orviAdd_16u32f_C1IMR", orviAdd_16u32f_C1IMR),
    masked<float>("orviAdd_32f_C1IMR", orviAdd_32f_C1IMR),
    plain<uint8_t>("orviAddSquare_8u32f_C1IR", orviAddSquare_8u32f_C1IR),
    masked<float>("orviAddSquare_32f_C1IMR", orviAddSquare_32f_C1IMR),
    product<uint8_t>("orviAddProduct_8u32f_C1IR", orviAddProduct_8u32f_C1IR),
    productMasked<uint8_t>("orviAddProduct_8u32f_C1IMR", orviAddProduct_8u32f_C1IMR),
    product<float>("orviAddProduct_32f_C1IR", orviAddProduct_32f_C1IR),
    plain<uint8_t>("orviAddWeighted_8u32f_C1IR", orviAddWeighted_8u32f_C1IR, alpha),
    masked<uint8_t>("orviAddWeighted_8u32f_C1IMR", orviAddWeighted_8u32f_C1IMR, alpha),
    masked<float>("orviAddWeighted_32f_C1IMR", orviAddWeighted_32f_C1IMR, alpha),
    bench::add("orviAddWeighted_32f_C1R", {4},
               [](const bench::Frame& f) {
                 auto a = f.image<float>(), b = f.image<float>(), d = f.image<float>();
                 return [=] { orviAddWeighted_32f_C1R(a.data, a.step, b.data, b.step, d.data, d.step, f.roi, alpha); };
               }),
};

}  // namespace

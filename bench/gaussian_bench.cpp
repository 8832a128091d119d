// Gaussian smoothing.
#include "bench.h"

namespace {

// A prepared filter with its memory.
struct Prepared {
  std::shared_ptr<uint8_t> spec, buffer;
  const OrvFilterGaussianSpec* record() const { return (const OrvFilterGaussianSpec*)(const void*)spec.get(); }
};

Prepared prepare(const bench::Frame& f, uint32_t kernelSize, OrvDataType type, int32_t channels) {
  int32_t specSize = 0, bufferSize = 0;
  orviFilterGaussianGetBufferSize(f.roi, kernelSize, type, channels, &specSize, &bufferSize);
  Prepared p = {f.scratch(specSize), f.scratch(bufferSize)};
  orviFilterGaussianInit(f.roi, kernelSize, (float)kernelSize / 4.f, orvBorderRepl, type, channels,
                         (OrvFilterGaussianSpec*)(void*)p.spec.get(), p.buffer.get());
  return p;
}

template <class T, class Value>
using Filter = OrvStatus (*)(const T*, int32_t, T*, int32_t, OrvSize, Value, const OrvFilterGaussianSpec*, uint8_t*);

template <class T, class Value>
bool add(const char* name, Filter<T, Value> filter, uint32_t kernelSize, OrvDataType type, int32_t channels) {
  return bench::add(std::string(name) + "/kernel:" + std::to_string(kernelSize), {(int)sizeof(T) * channels},
                    [=](const bench::Frame& f) -> std::function<void()> {
                      auto src = f.image<T>(channels), dst = f.image<T>(channels);
                      const Prepared p = prepare(f, kernelSize, type, channels);
                      return [=] {
                        filter(src.data, src.step, dst.data, dst.step, f.roi, Value(), p.record(), p.buffer.get());
                      };
                    });
}

const bool lines = [] {
  bool all = true;
  for (const uint32_t kernel : {3u, 5u, 11u}) {
    all &= add("orviFilterGaussianBorder_8u_C1R", orviFilterGaussianBorder_8u_C1R, kernel, orvData8u, 1);
    all &= add("orviFilterGaussianBorder_8u_C3R", orviFilterGaussianBorder_8u_C3R, kernel, orvData8u, 3);
    all &= add("orviFilterGaussianBorder_16u_C1R", orviFilterGaussianBorder_16u_C1R, kernel, orvData16u, 1);
    all &= add("orviFilterGaussianBorder_16s_C1R", orviFilterGaussianBorder_16s_C1R, kernel, orvData16s, 1);
    all &= add("orviFilterGaussianBorder_32f_C1R", orviFilterGaussianBorder_32f_C1R, kernel, orvData32f, 1);
    all &=
        bench::add("orviFilterGaussBorder_32f_C1R/kernel:" + std::to_string(kernel), {4}, [=](const bench::Frame& f) {
          auto src = f.image<float>(), dst = f.image<float>();
          int32_t size = 0;
          orviFilterGaussGetBufferSize_32f_C1R(f.roi, (int32_t)kernel, &size);
          const auto buffer = f.scratch(size);
          return [=] {
            orviFilterGaussBorder_32f_C1R(src.data, src.step, dst.data, dst.step, f.roi, (int32_t)kernel, 1.5f,
                                          orvBorderMirr, 0, buffer.get());
          };
        });
  }
  return all;
}();

}  // namespace

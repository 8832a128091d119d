// Corners by the structure tensor. No kernel branches on pixels but that of the eigenvectors, on whole vectors.
#include "bench.h"

using bench::Frame;

namespace {

template <class T, class Call, class Size>
bool eigen(const char* name, int32_t aperture, int32_t window, int32_t channels, Call call, Size size) {
  return bench::add(std::string(name) + ",aperture:" + std::to_string(aperture) + ",window:" + std::to_string(window),
                    {sizeof(T), bench::threaded}, [=](const Frame& f) {
                      auto s = f.image<T>();
                      auto d = f.image<float>(channels);
                      int32_t bytes = 0;
                      size(f.roi, aperture, window, &bytes);
                      auto buffer = f.scratch(bytes);
                      return [=] {
                        call(s.data, s.step, d.data, d.step, f.roi, orvKernelSobel, aperture, window, buffer.get());
                      };
                    });
}

bool harris(bool bytes, OrvMaskSize mask, int32_t window) {
  const std::string name = bytes ? "orviHarrisCorner_8u32f_C1R" : "orviHarrisCorner_32f_C1R";
  return bench::add(name + ",mask:" + std::to_string(mask) + ",window:" + std::to_string(window),
                    {bytes ? 1 : 4, bench::single}, [=](const Frame& f) {
                      auto s8 = f.image<uint8_t>();
                      auto s32 = f.image<float>(), d = f.image<float>();
                      int32_t size = 0;
                      orviHarrisCornerGetBufferSize(f.roi, mask, window, bytes ? orvData8u : orvData32f, 1, &size);
                      auto buffer = f.scratch(size);
                      return [=] {
                        if (bytes)
                          orviHarrisCorner_8u32f_C1R(s8.data, s8.step, d.data, d.step, f.roi, orvFilterKernelSobel,
                                                     mask, window, orvBorderRepl, 0, buffer.get(), 0.04f, 1.f);
                        else
                          orviHarrisCorner_32f_C1R(s32.data, s32.step, d.data, d.step, f.roi, orvFilterKernelSobel,
                                                   mask, window, orvBorderRepl, buffer.get(), 0.04f, 1.f, 0.f);
                      };
                    });
}

const bool lines[] = {
    eigen<uint8_t>("orviMinEigenVal_8u32f_C1R", 3, 3, 1, orviMinEigenVal_8u32f_C1R,
                   orviMinEigenValGetBufferSize_8u32f_C1R),
    eigen<uint8_t>("orviMinEigenVal_8u32f_C1R", 5, 5, 1, orviMinEigenVal_8u32f_C1R,
                   orviMinEigenValGetBufferSize_8u32f_C1R),
    eigen<float>("orviMinEigenVal_32f_C1R", 3, 3, 1, orviMinEigenVal_32f_C1R, orviMinEigenValGetBufferSize_32f_C1R),
    eigen<uint8_t>("orviEigenValsVecs_8u32f_C1R", 3, 3, 6, orviEigenValsVecs_8u32f_C1R,
                   orviEigenValsVecsGetBufferSize_8u32f_C1R),
    eigen<float>("orviEigenValsVecs_32f_C1R", 3, 3, 6, orviEigenValsVecs_32f_C1R,
                 orviEigenValsVecsGetBufferSize_32f_C1R),
    harris(true, orvMaskSize3x3, 3),
    harris(true, orvMaskSize5x5, 3),
    harris(true, orvMaskSize3x3, 9),
    harris(false, orvMaskSize3x3, 3),
};

}  // namespace

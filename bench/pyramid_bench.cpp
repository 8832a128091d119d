// Pyramid steps. A pixel of these lines is one of the source image, a unit a copy of it, up and down.
#include "bench.h"

using bench::Frame;

namespace {

template <class T>
bool dyadic(const char* name, int channels, bool up,
            OrvStatus (*step)(const T*, int32_t, T*, int32_t, OrvSize, uint8_t*)) {
  return bench::add(name, {(int)sizeof(T) * channels}, [=](const Frame& f) {
    auto s = f.image<T>(channels);
    const OrvSize roi = f.roi;
    const OrvSize size =
        up ? OrvSize{2 * roi.width, 2 * roi.height} : OrvSize{(roi.width + 1) / 2, (roi.height + 1) / 2};
    auto d = Frame{size}.image<T>(channels);
    int32_t bytes = 0;
    (up ? orviPyrUpGetBufSize_Gauss5x5 : orviPyrDownGetBufSize_Gauss5x5)(roi.width, orvData8u, channels, &bytes);
    auto buffer = f.scratch(bytes);
    return [=] { step(s.data, s.step, d.data, d.step, roi, buffer.get()); };
  });
}
#define DYADIC(T, type, channels)                                               \
  dyadic<T>("orviPyrDown_Gauss5x5_" #type "_C" #channels "R", channels, false,  \
            orviPyrDown_Gauss5x5_##type##_C##channels##R),                      \
      dyadic<T>("orviPyrUp_Gauss5x5_" #type "_C" #channels "R", channels, true, \
                orviPyrUp_Gauss5x5_##type##_C##channels##R)

const bool dyadicLines[] = {DYADIC(uint8_t, 8u, 1), DYADIC(uint8_t, 8u, 3), DYADIC(int8_t, 8s, 1),
                            DYADIC(float, 32f, 1), DYADIC(float, 32f, 3)};

}  // namespace

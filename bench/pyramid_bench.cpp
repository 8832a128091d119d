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

// Layers with a kernel of five taps, at rate 2 and at one that interpolates. Up goes to the size that comes from.
template <class T, class K, class State, class Init, class Free, class Run>
bool layer(const char* name, int channels, bool up, float rate, Init init, Free release, Run run) {
  return bench::add(name + (rate == 2 ? std::string(",rate:2") : ",rate:1.5"),
                    {(int)sizeof(T) * channels, up ? bench::single : bench::threaded}, [=](const Frame& f) {
                      auto s = f.image<T>(channels);
                      const OrvSize roi = f.roi;
                      OrvSize size;
                      if (up) orviGetPyramidUpROI(roi, &size, &size, rate);
                      else orviGetPyramidDownROI(roi, &size, rate);
                      auto d = Frame{size}.image<T>(channels);
                      const K kernel[] = {1, 4, 6, 4, 1};
                      State* made = nullptr;
                      init(&made, roi, rate, kernel, 5, 2);
                      const std::shared_ptr<State> state(made, release);
                      return [=] { run(s.data, s.step, roi, d.data, d.step, size, state.get()); };
                    });
}
#define LAYERS(T, K, type, channels)                                                                            \
  layer<T, K, OrvPyramidDownState>("orviPyramidLayerDown_" #type "_C" #channels "R", channels, false, 2.f,      \
                                   orviPyramidLayerDownInitAlloc_##type##_C##channels##R,                       \
                                   orviPyramidLayerDownFree_##type##_C##channels##R,                            \
                                   orviPyramidLayerDown_##type##_C##channels##R),                               \
      layer<T, K, OrvPyramidDownState>("orviPyramidLayerDown_" #type "_C" #channels "R", channels, false, 1.5f, \
                                       orviPyramidLayerDownInitAlloc_##type##_C##channels##R,                   \
                                       orviPyramidLayerDownFree_##type##_C##channels##R,                        \
                                       orviPyramidLayerDown_##type##_C##channels##R),                           \
      layer<T, K, OrvPyramidUpState>("orviPyramidLayerUp_" #type "_C" #channels "R", channels, true, 2.f,       \
                                     orviPyramidLayerUpInitAlloc_##type##_C##channels##R,                       \
                                     orviPyramidLayerUpFree_##type##_C##channels##R,                            \
                                     orviPyramidLayerUp_##type##_C##channels##R),                               \
      layer<T, K, OrvPyramidUpState>("orviPyramidLayerUp_" #type "_C" #channels "R", channels, true, 1.5f,      \
                                     orviPyramidLayerUpInitAlloc_##type##_C##channels##R,                       \
                                     orviPyramidLayerUpFree_##type##_C##channels##R,                            \
                                     orviPyramidLayerUp_##type##_C##channels##R)

const bool layerLines[] = {LAYERS(uint8_t, int16_t, 8u, 1), LAYERS(uint8_t, int16_t, 8u, 3),
                           LAYERS(uint16_t, int16_t, 16u, 1), LAYERS(float, float, 32f, 1)};

}  // namespace

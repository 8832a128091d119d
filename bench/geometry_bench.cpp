// Sub-pixel windows, lines, undistortion and super-resolution. Only the warp's choice of the pixels inside is a branch,
// and a lens is what it is for a whole sequence.
#include "bench.h"

using bench::Frame;

namespace {

// Windows as optical flow takes them, out of the middle of a frame, and whole frames.
const std::vector<OrvSize> windows = {{5, 5}, {15, 15}, {31, 31}, {64, 64}, {1920, 1080}};

template <class S, class D, class Copy>
bool copy(const char* name, Copy copy) {
  return bench::add(name, {sizeof(S), bench::single, windows}, [=](const Frame& f) {
    auto s = f.image<S>(1, 1);
    auto d = f.image<D>();
    return [=] { copy(s.data, s.step, d.data, d.step, f.roi); };
  });
}
template <class S, class D, class Intersect>
bool intersect(const char* name, Intersect intersect) {
  return bench::add(name, {sizeof(S), bench::single, windows}, [=](const Frame& f) {
    const Frame whole{{f.roi.width + 600, f.roi.height + 400}};
    auto s = whole.image<S>();
    auto d = f.image<D>();
    const OrvPoint32f middle{(float)whole.roi.width * 0.5f + 0.3f, (float)whole.roi.height * 0.5f + 0.2f};
    return [=] {
      OrvPoint min, max;
      intersect(s.data, s.step, whole.roi, d.data, d.step, f.roi, middle, &min, &max);
    };
  });
}
// `factor` is empty, or a comma and the scale factor.
#define COPY(type, S, D, factor)                                                                                \
  copy<S, D>("orviCopySubpix_" #type,                                                                           \
             [](const S* s, int32_t sStep, D* d, int32_t dStep, OrvSize roi) {                                  \
               orviCopySubpix_##type(s, sStep, d, dStep, roi factor, 0.3f, 0.7f);                               \
             }),                                                                                                \
      intersect<S, D>("orviCopySubpixIntersect_" #type,                                                         \
                      [](const S* s, int32_t sStep, OrvSize whole, D* d, int32_t dStep, OrvSize roi,            \
                         OrvPoint32f point, OrvPoint* min, OrvPoint* max) {                                     \
                        orviCopySubpixIntersect_##type(s, sStep, whole, d, dStep, roi, point, min, max factor); \
                      })
#define FACTOR , -7

// A pixel of these lines is a point: as many lines cross the frame as it has pixels for.
template <class T>
bool line(const char* name, int channels, OrvStatus (*run)(const T*, int32_t, OrvSize, T*, OrvPoint, OrvPoint)) {
  return bench::add(name, {(int)sizeof(T) * channels}, [=](const Frame& f) {
    auto s = f.image<T>(channels), d = f.image<T>(channels);
    return [=] {
      for (int32_t y = 0; y < f.roi.height; ++y) {
        const int32_t n = f.roi.width - 1, last = f.roi.height - 1;
        run(s.data, s.step, f.roi, d.data, {0, y}, {n, last - y});
      }
    };
  });
}

template <class T>
bool undistort(const char* name, int channels,
               OrvStatus (*run)(const T*, int32_t, T*, int32_t, OrvSize, float, float, float, float, float, float,
                                uint8_t*)) {
  return bench::add(name, {(int)sizeof(T) * channels}, [=](const Frame& f) {
    auto s = f.image<T>(channels), d = f.image<T>(channels);
    const float w = (float)f.roi.width, h = (float)f.roi.height;
    int32_t bytes = 0;
    orviUndistortGetSize(f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    return [=] { run(s.data, s.step, d.data, d.step, f.roi, w, w, w / 2, h / 2, -0.2f, 0.05f, buffer.get()); };
  });
}

bool map(const char* name, float tangential) {
  return bench::add(name, {1}, [=](const Frame& f) {
    auto x = f.image<float>(), y = f.image<float>();
    const float w = (float)f.roi.width, h = (float)f.roi.height;
    int32_t bytes = 0;
    orviUndistortGetSize(f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    return [=] {
      orviCreateMapCameraUndistort_32f_C1R(x.data, x.step, y.data, y.step, f.roi, w, w, w / 2, h / 2, -0.2f, 0.05f,
                                           tangential, -tangential, buffer.get());
    };
  });
}

// A sample at every second pixel of every second row, as a sequence of half the resolution gives.
template <class T, class Init, class Free, class Run>
bool superResolution(const char* name, int bytes, Init init, Free release, Run run) {
  return bench::add(name, {bytes, bench::single, {{64, 64}, {320, 240}, {1920, 1080}}}, [=](const Frame& f) {
    const OrvSize samples = f.roi, whole{2 * samples.width + 2, 2 * samples.height + 2};
    auto image = Frame{whole}.image<float>();
    auto values = f.image<T>();
    auto residuals = f.image<float>();
    const size_t count = (size_t)samples.width * (size_t)samples.height;
    std::vector<int32_t> positions(count);
    for (size_t i = 0; i < count; ++i)
      positions[i] = (int32_t)(i / (size_t)samples.width) * 2 * whole.width + (int32_t)(i % (size_t)samples.width) * 2;
    std::vector<uint16_t> index(count);
    OrvSRHNState* made = nullptr;
    const std::vector<float> coefficients(9, 1.f / 9);
    init(&made, coefficients.data(), 1);
    const std::shared_ptr<OrvSRHNState> state(made, release);
    const std::vector<float> weights(256, 0.01f);
    return [=] {
      run(image.data, image.step, values.data, positions.data(), index.data(), residuals.data, (int32_t)count,
          weights.data(), state.get());
    };
  });
}
#define RESIDUAL(size, type, T)                                                                                      \
  superResolution<T>("orviSRHNCalcResidual_PSF" #size "_" #type "_C1R", (int)sizeof(T), orviSRHNInitAlloc_PSF##size, \
                     orviSRHNFree_PSF##size,                                                                         \
                     [](const float* h, int32_t step, const T* v, const int32_t* p, const uint16_t* k, float* r,     \
                        int32_t n, const float*, const OrvSRHNState* s) {                                            \
                       orviSRHNCalcResidual_PSF##size##_##type##_C1R(h, step, v, p, k, r, n, s);                     \
                     })
#define GRADIENT(size)                                                                                       \
  superResolution<uint8_t>("orviSRHNUpdateGradient_PSF" #size "_32f_C1R", 4, orviSRHNInitAlloc_PSF##size,    \
                           orviSRHNFree_PSF##size,                                                           \
                           [](float* g, int32_t step, const uint8_t* c, const int32_t* p, const uint16_t* k, \
                              const float* r, int32_t n, const float* w, const OrvSRHNState* s) {            \
                             orviSRHNUpdateGradient_PSF##size##_32f_C1R(g, step, p, k, r, c, n, w, s);       \
                           })

const bool lines[] = {
    COPY(8u_C1R, uint8_t, uint8_t, ),
    COPY(8u16u_C1R_Sfs, uint8_t, uint16_t, FACTOR),
    COPY(8u32f_C1R, uint8_t, float, ),
    COPY(16u_C1R, uint16_t, uint16_t, ),
    COPY(16u32f_C1R, uint16_t, float, ),
    COPY(32f_C1R, float, float, ),
    line("orviSampleLine_8u_C1R", 1, orviSampleLine_8u_C1R),
    line("orviSampleLine_8u_C3R", 3, orviSampleLine_8u_C3R),
    line("orviSampleLine_16u_C1R", 1, orviSampleLine_16u_C1R),
    line("orviSampleLine_16u_C3R", 3, orviSampleLine_16u_C3R),
    line("orviSampleLine_32f_C1R", 1, orviSampleLine_32f_C1R),
    line("orviSampleLine_32f_C3R", 3, orviSampleLine_32f_C3R),
    undistort("orviUndistortRadial_8u_C1R", 1, orviUndistortRadial_8u_C1R),
    undistort("orviUndistortRadial_8u_C3R", 3, orviUndistortRadial_8u_C3R),
    undistort("orviUndistortRadial_16u_C1R", 1, orviUndistortRadial_16u_C1R),
    undistort("orviUndistortRadial_16u_C3R", 3, orviUndistortRadial_16u_C3R),
    undistort("orviUndistortRadial_32f_C1R", 1, orviUndistortRadial_32f_C1R),
    undistort("orviUndistortRadial_32f_C3R", 3, orviUndistortRadial_32f_C3R),
    map("orviCreateMapCameraUndistort_32f_C1R", 0),
    map("orviCreateMapCameraUndistort_32f_C1R,tangential", 0.01f),
    RESIDUAL(2x2, 8u32f, uint8_t),
    RESIDUAL(2x2, 16u32f, uint16_t),
    RESIDUAL(3x3, 8u32f, uint8_t),
    RESIDUAL(3x3, 16u32f, uint16_t),
    GRADIENT(2x2),
    GRADIENT(3x3),
};

}  // namespace

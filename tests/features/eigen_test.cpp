// Eigenvalues and eigenvectors of the structure tensor against their definitions; sizes and statuses.
// One body serves both variants.
#include "detect/table_roles.h"
#include "reference/tensor.h"
#ifdef ORV_VARIANT
#include "filter/names.h"  // sizes are made of those of filters
#endif

using namespace test;

namespace {

// Kernel, aperture and window, and the scratch that they take.
struct Options : Scratch {
  int32_t kernel = orvKernelSobel, aperture = 3, window = 5;
  OrvStatus (*report)(OrvSize, int32_t, int32_t, int32_t*);
  explicit Options(OrvStatus (*told)(OrvSize, int32_t, int32_t, int32_t*)) : Scratch(nullptr), report(told) {}
  void prepare(Random& r, const Shape& shape) {
    Scratch::prepare(r, shape);
    kernel = r.one(3) ? orvKernelScharr : orvKernelSobel;
    aperture = kernel == orvKernelSobel && r.one(2) ? 5 : 3;
    window = r.one(2) ? 5 : 3;
    size = [f = report, a = aperture, w = window](OrvSize s, int32_t* bytes) { return f(s, a, w, bytes); };
  }
  std::tuple<int32_t, int32_t, int32_t, uint8_t*> arguments(Side side) {
    return {kernel, aperture, window, std::get<0>(Scratch::arguments(side))};
  }
};

// A function with the floats of a result. `measured`: against how many of them dstStep is.
template <class T, class Function, class Size>
void detector(const char* name, Function function, Size size,
              void (*plain)(const T*, int32_t, float*, int32_t, OrvSize, int, int, int, uint8_t*), int channels,
              int measured) {
  const Context context(name);
  sweep(name, function, plain, {520, 257}, In<T>(), Out<float>(channels), Roi(), Options(size));
  sweep(name, function, plain, {1100, 3}, In<T>(), Out<float>(channels), Roi(), Options(size));
  walkArguments(name, function, tableChecks({0, 1}, alignedOf<T, float>(), 2, {0, 1, 3}), In<T>(), Out<float>(measured),
                Roi(), Options(size));

  const struct {
    int32_t dstStep, kernel, aperture, window;
    OrvStatus status;
  } rows[] = {{26, 2, 4, 7, orvStatusStepAlign},
              {24, 2, 4, 7, orvStatusBadArg},
              {24, orvKernelSobel, 4, 3, orvStatusSize},
              {24, orvKernelSobel, 5, 7, orvStatusSize},
              {24, orvKernelScharr, 5, 3, orvStatusSize}};
  T pixel = 0;
  float record = 7;
  uint8_t buffer[1];
  for (const auto& row : rows)
    CHECK(function(&pixel, 4, &record, row.dstStep, OrvSize{1, 1}, row.kernel, row.aperture, row.window, buffer) ==
              row.status &&
          record == 7);
  int32_t bytes = -7;
  CHECK(size({0, 1}, 7, 1, nullptr) == orvStatusNullPtr && size({0, 1}, 3, 3, &bytes) == orvStatusSize);
  CHECK(size({1, -1}, 3, 3, &bytes) == orvStatusSize && size({1, 1}, 7, 3, &bytes) == orvStatusSize);
  CHECK(size({1, 1}, 3, 1, &bytes) == orvStatusSize && bytes == -7);
}
#define DETECTOR(name, type, T, records, channels, measured)                                                    \
  detector<T>("orvi" #name "_" #type "_C1R", orvi##name##_##type##_C1R, orvi##name##GetBufferSize_##type##_C1R, \
              reference::eigen<records, T>, channels, measured)

}  // namespace

TEST(detectors) {
  DETECTOR(MinEigenVal, 8u32f, uint8_t, false, 1, 1);
  DETECTOR(MinEigenVal, 32f, float, false, 1, 1);
  DETECTOR(EigenValsVecs, 8u32f, uint8_t, true, 6, 6);
  DETECTOR(EigenValsVecs, 32f, float, true, 6, 1);
}

// 100 x 50 on one thread: 112 * 50 pixels of 16 or 20 bytes, 224, and the filter that needs most.
TEST(sizes) {
  steerThreads(1);
  int32_t bytes = 0, lowpass = 0, sobel = 0;
  for (const auto size : {orviMinEigenValGetBufferSize_8u32f_C1R, orviEigenValsVecsGetBufferSize_8u32f_C1R}) {
    CHECK(size({100, 50}, 3, 3, &bytes) == 0 && bytes == 89600 + 224 + 10768, "%d", (int)bytes);
    steerThreads(3);  // the Sobel filter, with its own count of threads, times threads
    CHECK(size({100, 50}, 5, 3, &bytes) == 0 && orviFilterLowpassGetBufferSize_32f_C1R({100, 50}, 33, &lowpass) == 0);
    orviFilterSobelCrossGetBufferSize_8u16s_C1R({100, 50}, 55, &sobel);
    CHECK(bytes == 89600 + 224 + 3 * (sobel + 32) && sobel > lowpass / 3, "%d", (int)bytes);
    steerThreads(1);
  }
  for (const auto size : {orviMinEigenValGetBufferSize_32f_C1R, orviEigenValsVecsGetBufferSize_32f_C1R})
    CHECK(size({100, 50}, 5, 5, &bytes) == 0 && bytes == 112000 + 224 + 12944, "%d", (int)bytes);
}

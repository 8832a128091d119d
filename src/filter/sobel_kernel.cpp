// Taps of Sobel kernels of any size, made by repeated sums and differences of neighbours.
// One body serves both variants.
#include "core/checks.h"
#include "core/image.h"

namespace {

template <class T>
OrvStatus genSobelKernel(T* kernel, int32_t kernelSize, int32_t dx, int32_t sign) {
  ORV_REQUIRE(kernel, orvStatusNullPtr);
  ORV_REQUIRE(kernelSize >= 1 && kernelSize % 2 == 1, orvStatusBadArg);
  ORV_REQUIRE(dx >= 0 && dx < kernelSize, orvStatusBadArg);
  auto* const k = loose(kernel);
  const ptrdiff_t last = kernelSize - 1;
  for (ptrdiff_t i = 0; i < last; ++i) k[i] = 0;
  k[last] = 1;
  // Each factor of the polynomial adds a tap before the first one; 16-bit taps wrap.
  ptrdiff_t first = last;
  for (int32_t n = 0; n < kernelSize - 1 - dx; ++n, --first)
    for (ptrdiff_t i = first - 1; i < last; ++i) k[i] = (T)(k[i] + k[i + 1]);
  for (int32_t n = 0; n < dx; ++n, --first)
    for (ptrdiff_t i = first - 1; i < last; ++i) k[i] = (T)(k[i] - k[i + 1]);
  if (sign < 0)
    for (ptrdiff_t i = 0; i <= last; ++i) k[i] = (T)-k[i];
  return orvStatusOk;
}

}  // namespace

OrvStatus orviGenSobelKernel_32f(float* kernel, int32_t kernelSize, int32_t dx, int32_t sign) {
  return genSobelKernel(kernel, kernelSize, dx, sign);
}
OrvStatus orviGenSobelKernel_16s(int16_t* kernel, int32_t kernelSize, int32_t dx, int32_t sign) {
  return genSobelKernel(kernel, kernelSize, dx, sign);
}

#include "gaussian.h"
#include <math.h>
#include <memory>
#include <stdexcept>
#include "orvcore.h"
#include "timing.h"

namespace demo {
namespace {

// Memory of the core library: it starts on a cache line.
template <class T>
using Owned = std::unique_ptr<T, decltype(&orvFree)>;
template <class T>
Owned<T> allocate(int32_t bytes) {
  Owned<T> memory((T*)orvMalloc(bytes), orvFree);
  if (!memory) throw std::runtime_error("no memory");
  return memory;
}

// A prepared filter: made once, used for any number of images up to a size.
struct Filter {
  Owned<OrvFilterGaussianSpec> spec{nullptr, orvFree};
  Owned<uint8_t> buffer{nullptr, orvFree};
  const uint8_t* value;

  Filter(OrvSize size, int channels, const Smoothing& how, int borderType) : value(how.value) {
    const uint32_t kernelSize = (uint32_t)how.kernelSize();
    int32_t specBytes, bufferBytes;
    require(orviFilterGaussianGetBufferSize(size, kernelSize, orvData8u, channels, &specBytes, &bufferBytes),
            "orviFilterGaussianGetBufferSize");
    spec = allocate<OrvFilterGaussianSpec>(specBytes);
    buffer = allocate<uint8_t>(bufferBytes);
    require(
        orviFilterGaussianInit(size, kernelSize, how.sigma, borderType, orvData8u, channels, spec.get(), buffer.get()),
        "orviFilterGaussianInit");
  }

  // Smooths the window of `src` at `corner` into `dst` at row `dstRow`; the window's size is `size`.
  void run(const Bytes& src, OrvPoint corner, Bytes& dst, int dstRow, OrvSize size) const {
    const uint8_t* from = src.at(corner.x, corner.y);
    uint8_t* to = dst.at(0, dstRow);
    if (src.channels == 1)
      require(
          orviFilterGaussianBorder_8u_C1R(from, src.step(), to, dst.step(), size, value[0], spec.get(), buffer.get()),
          "orviFilterGaussianBorder_8u_C1R");
    else
      require(orviFilterGaussianBorder_8u_C3R(from, src.step(), to, dst.step(), size, value, spec.get(), buffer.get()),
              "orviFilterGaussianBorder_8u_C3R");
  }
};

}  // namespace

int Smoothing::kernelSize() const { return 2 * (int)ceilf(3 * sigma) + 1; }

Timed<uint8_t> smooth(const Bytes& image, const Smoothing& how) {
  return smoothWindow(image, {0, 0}, image.size(), how);
}

Timed<uint8_t> smoothWindow(const Bytes& image, OrvPoint corner, OrvSize size, const Smoothing& how) {
  const Filter filter(size, image.channels, how, how.border);
  Bytes result(size.width, size.height, image.channels);
  const double time = leastSeconds([&] { filter.run(image, corner, result, 0, size); });
  return {std::move(result), time};
}

Timed<uint8_t> smoothHalves(const Bytes& image, const Smoothing& how) {
  const OrvSize above{image.width, image.height / 2}, below{image.width, image.height - above.height};
  // What lies beyond the cut is memory, what lies beyond the image follows the border rule.
  const Filter first(above, image.channels, how, how.border | orvBorderInMemBottom);
  const Filter second(below, image.channels, how, how.border | orvBorderInMemTop);
  Bytes result(image.width, image.height, image.channels);
  const double time = leastSeconds([&] {
    first.run(image, {0, 0}, result, 0, above);
    second.run(image, {0, above.height}, result, above.height, below);
  });
  return {std::move(result), time};
}

Timed<float> smoothAtOnce(const Floats& image, const Smoothing& how) {
  int32_t bytes;
  require(orviFilterGaussGetBufferSize_32f_C1R(image.size(), how.kernelSize(), &bytes),
          "orviFilterGaussGetBufferSize_32f_C1R");
  const auto buffer = allocate<uint8_t>(bytes);
  Floats result(image.width, image.height, 1);
  const double time = leastSeconds([&] {
    require(orviFilterGaussBorder_32f_C1R(image.pixels.data(), image.step(), result.pixels.data(), result.step(),
                                          image.size(), how.kernelSize(), how.sigma, how.border, how.value[0],
                                          buffer.get()),
            "orviFilterGaussBorder_32f_C1R");
  });
  return {std::move(result), time};
}

}  // namespace demo

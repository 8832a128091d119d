// Canny edges, over sixteen images in turn: one alone would be learnt by the branch predictor.
#include "turns.h"

using bench::Frame;

namespace {

bool border(const char* name, OrvFilterKernel filter, OrvMaskSize mask, OrvNormType norm, float low, float high) {
  return bench::add(name, {1}, [=](const Frame& f) {
    auto s = bench::turns<uint8_t>(f);
    auto d = f.image<uint8_t>();
    int32_t bytes = 0;
    orviCannyBorderGetSize(f.roi, 0, mask, 0, &bytes);
    auto buffer = f.scratch(bytes);
    return [=]() mutable {
      const auto& image = s.next();
      orviCannyBorder_8u_C1R(image.data, image.step, d.data, d.step, f.roi, filter, mask, orvBorderRepl, 0, low, high,
                             norm, buffer.get());
    };
  });
}

// From the Sobel derivatives of the same images.
template <class T, class Derive, class Canny>
bool derivatives(const char* name, Derive derive, Canny canny) {
  return bench::add(name, {sizeof(T)}, [=](const Frame& f) {
    auto s = bench::turns<uint8_t>(f);
    auto dx = bench::turns<T>(f), dy = bench::turns<T>(f);
    auto d = f.image<uint8_t>();
    for (int i = 0; i < bench::turnCount; ++i) derive(f, s.next(), dx.next(), dy.next());
    int32_t bytes = 0;
    orviCannyGetSize(f.roi, &bytes);
    auto buffer = f.scratch(bytes);
    return [=]() mutable {
      const auto &x = dx.next(), &y = dy.next();
      canny(x.data, x.step, y.data, y.step, d.data, d.step, f.roi, 100.f, 200.f, buffer.get());
    };
  });
}

const auto shortDerivatives = [](const Frame& f, const bench::Picture<uint8_t>& s, const bench::Picture<int16_t>& x,
                                 const bench::Picture<int16_t>& y) {
  int32_t bytes = 0, more = 0;
  orviFilterSobelNegVertGetBufferSize_8u16s_C1R(f.roi, orvMaskSize3x3, &bytes);
  orviFilterScharrHorizGetBufferSize_8u16s_C1R(f.roi, &more);
  auto buffer = f.scratch(bytes > more ? bytes : more);
  orviFilterSobelNegVertBorder_8u16s_C1R(s.data, s.step, x.data, x.step, f.roi, orvMaskSize3x3, orvBorderRepl, 0,
                                         buffer.get());
  orviFilterScharrHorizBorder_8u16s_C1R(s.data, s.step, y.data, y.step, f.roi, orvBorderRepl, 0, buffer.get());
  for (int i = 0; i < f.roi.width * f.roi.height; ++i) y.data[i] = (int16_t)(y.data[i] / 4);
};
const auto floatDerivatives = [](const Frame& f, const bench::Picture<uint8_t>& s, const bench::Picture<float>& x,
                                 const bench::Picture<float>& y) {
  auto sx = f.image<int16_t>(), sy = f.image<int16_t>();
  shortDerivatives(f, s, sx, sy);
  for (int i = 0; i < f.roi.width * f.roi.height; ++i) x.data[i] = sx.data[i], y.data[i] = sy.data[i];
};

}  // namespace

static const bool lines =
    border("orviCannyBorder_8u_C1R,Sobel33,L1", orvFilterKernelSobel, orvMaskSize3x3, orvNormL1, 100, 200) &&
    border("orviCannyBorder_8u_C1R,Sobel33,L2", orvFilterKernelSobel, orvMaskSize3x3, orvNormL2, 80, 160) &&
    border("orviCannyBorder_8u_C1R,Sobel55,L1", orvFilterKernelSobel, orvMaskSize5x5, orvNormL1, 1200, 2400) &&
    border("orviCannyBorder_8u_C1R,Scharr33,L1", orvFilterKernelScharr, orvMaskSize3x3, orvNormL1, 400, 800) &&
    derivatives<int16_t>("orviCanny_16s8u_C1R", shortDerivatives, orviCanny_16s8u_C1R) &&
    derivatives<float>("orviCanny_32f8u_C1R", floatDerivatives, orviCanny_32f8u_C1R);

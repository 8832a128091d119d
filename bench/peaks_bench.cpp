// Peaks, line suppression and colour gradients.
#include "turns.h"

using bench::Frame;

namespace {

// The drawn photograph less its mean, a few percent of it beyond the threshold.
template <class T, class Find>
bool peaks(const char* name, Find find) {
  return bench::add(name, {4}, [=](const Frame& f) {
    auto s = bench::turns<T>(f);
    for (const auto& p : s.pictures)
      for (int i = 0; i < f.roi.width * f.roi.height; ++i) p.data[i] = p.data[i] - 115;
    int32_t bytes = 0;
    orviFindPeaks3x3GetBufferSize_32f_C1R(f.roi.width, &bytes);
    auto buffer = f.scratch(bytes);
    std::vector<OrvPoint> list((size_t)(f.roi.width * f.roi.height));
    return [=]() mutable {
      const auto& image = s.next();
      int32_t count;
      find(image.data, image.step, f.roi, (T)60, list.data(), (int32_t)list.size(), &count, 0, 1, buffer.get());
    };
  });
}

template <class T, class Gray>
bool gray(const char* name, Gray function) {
  bool added = false;
  for (const int32_t norm : {0, 1, 2})
    added = bench::add(std::string(name) + ",norm:" + std::to_string(norm), {3 * sizeof(T), bench::threaded},
                       [=](const Frame& f) {
                         auto s = f.image<T>(3);
                         auto d = f.image<T>();
                         return [=] { function(s.data, s.step, d.data, d.step, f.roi, norm); };
                       });
  return added;
}

}  // namespace

static const bool lines = peaks<float>("orviFindPeaks3x3_32f_C1R", orviFindPeaks3x3_32f_C1R) &&
                          peaks<int32_t>("orviFindPeaks3x3_32s_C1R", orviFindPeaks3x3_32s_C1R) &&
                          gray<uint8_t>("orviGradientColorToGray_8u_C3C1R", orviGradientColorToGray_8u_C3C1R) &&
                          gray<uint16_t>("orviGradientColorToGray_16u_C3C1R", orviGradientColorToGray_16u_C3C1R) &&
                          gray<float>("orviGradientColorToGray_32f_C3C1R", orviGradientColorToGray_32f_C3C1R);

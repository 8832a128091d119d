// Local extrema and colour gradients against their plain forms.
// One body serves both variants.
#include <algorithm>
#include "detect/table_roles.h"
#include "framework/vectors.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

// The numbers of the peaks, as far as the list reaches, in an image of zeros.
template <class T>
void plainPeaks(const T* src, int32_t step, OrvSize roi, T threshold, uint8_t* dst, int32_t dstStep, int32_t most,
                int32_t norm, int32_t border, uint8_t*) {
  int32_t count = 0;
  reference::forEachElement(roi, 1, [&](int y, int x) {
    reference::store(dst, dstStep, y, x, (uint8_t)0);
    if (x < border || y < border || x >= roi.width - border || y >= roi.height - border || count == most) return;
    const T v = reference::load(src, step, y, x);
    T high = v, low = v;
    for (int k = 0; k < 9; ++k) {
      if (norm == 1 && k % 2 == 0) continue;
      const T n = reference::load(src, step, y + k / 3 - 1, x + k % 3 - 1);
      high = std::max(high, n), low = std::min(low, n);
    }
    const double distance = fabs((double)v - (double)(v > 0 ? high : low));
    if (!(fabs((double)v) > (double)threshold) || !(distance <= (double)1.1754944e-38f)) return;
    reference::store(dst, dstStep, y, x, (uint8_t)(++count));
  });
}

template <class T, class Function>
void checkPeaks(const char* name, Function function, std::vector<T> thresholds) {
  const auto size = [](OrvSize roi, int32_t* bytes) {
    CHECK(orviFindPeaks3x3GetBufferSize_32f_C1R(roi.width, bytes) == orvStatusOk);
    CHECK(*bytes == (roi.width + 5) / 4 * 128 + 32);
    return orviFindPeaks3x3GetBufferSize_32s_C1R(roi.width, bytes);
  };
  // Regions too small for a border are refused, so it is lowered to what fits.
  const auto numbered = [&](const T* src, int32_t step, OrvSize roi, T threshold, uint8_t* dst, int32_t dstStep,
                            int32_t most, int32_t norm, int32_t border, uint8_t* buffer) {
    border = std::min({border, roi.width / 2, roi.height / 2});
    std::vector<OrvPoint> peak((size_t)most + 1, OrvPoint{-7, -7});
    int32_t count = 0;
    OrvStatus status = orvStatusOk;
    if (border > 0) status = function(src, step, roi, threshold, peak.data(), most, &count, norm, border, buffer);
    CHECK(count <= most && peak[(size_t)count].x == -7, "%d peaks", count);
    for (int y = 0; y < roi.height; ++y) std::fill_n(rowOf(dst, dstStep, y), roi.width, uint8_t{0});
    for (int32_t i = 0; i < count; ++i) rowOf(dst, dstStep, peak[(size_t)i].y)[peak[(size_t)i].x] = (uint8_t)(i + 1);
    return status;
  };
  const auto plain = [](const T* src, int32_t step, OrvSize roi, T threshold, uint8_t* dst, int32_t dstStep,
                        int32_t most, int32_t norm, int32_t border, uint8_t* buffer) {
    border = std::min({border, roi.width / 2, roi.height / 2});
    plainPeaks(src, step, roi, threshold, dst, dstStep, border > 0 ? most : 0, norm, border, buffer);
  };
  sweep(name, numbered, plain, {}, In<T>(), Roi(), Value<T>(thresholds), Out<uint8_t>(), Value<int32_t>({1, 3, 2000}),
        Value<int32_t>({0, 1}), Value<int32_t>({1, 1, 2, 5}), Scratch(size));
  const std::vector<Told> sizes = {badValue(4, 0, orvStatusSize), badValue(7, 0, orvStatusSize),
                                   badValue(7, 3, orvStatusSize)};
  walkArguments(
      name, function,
      pointersThenSizes({0, 3, 5, 8}, 1) + sizes +
          std::vector<Told>{{Fault::smallStep, 0}, {Fault::misalignedStep, 0}, badValue(6, 2), badValue(6, -1)},
      In<T>(), Roi(), Value<T>(thresholds), Result<OrvPoint>(), Value<int32_t>({9}), Result<int32_t>(),
      Value<int32_t>({0}), Value<int32_t>({1}), Scratch(size));
}

}  // namespace

TEST(peaks) {
  checkPeaks<float>("orviFindPeaks3x3_32f_C1R", orviFindPeaks3x3_32f_C1R, {0, -1, 100.5f, 255.25f, 1e4f});
  checkPeaks<int32_t>("orviFindPeaks3x3_32s_C1R", orviFindPeaks3x3_32s_C1R,
                      {0, -1, INT32_MIN, 1000, 2000000000, INT32_MAX});
}

TEST(peakArguments) {
  const float image[25] = {0, 0, 0, 0, 0, 0, 0, 2e-38f, 3e-38f, 0, 0, 0, 0, 0, 0, 0, 0, -INFINITY, 0, 0};
  OrvPoint peak[9];
  int32_t count = -1, bytes = -1;
  uint8_t buffer[512];
  CHECK(orviFindPeaks3x3_32f_C1R(image, 20, {5, 5}, 0, peak, 9, &count, 0, 1, buffer) == orvStatusOk);
  CHECK(count == 2 && peak[0].x == 2 && peak[1].x == 3, "nearly equal neighbours");
  CHECK(orviFindPeaks3x3GetBufferSize_32f_C1R(0, &bytes) == orvStatusSize && bytes == -1);
  CHECK(orviFindPeaks3x3GetBufferSize_32s_C1R(0, nullptr) == orvStatusNullPtr);
}

namespace {

template <class T>
void plainGray(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int32_t norm) {
  const int factor = sizeof(T) == 1 ? 1365 : 5461, shift = sizeof(T) == 1 ? 12 : 14;
  reference::forEachElement(roi, 1, [&](int y, int x) {
    const auto at = [&](int c) { return (double)reference::load(src, srcStep, y, 3 * x + c); };
    const double a = at(0), b = at(1), c = at(2);
    const float p = (float)fabs(a), q = (float)fabs(b), s = (float)fabs(c);
    T v = (T)std::max({p, q, s});
    if (std::is_same<T, float>::value && norm > 0) v = (T)(norm == 1 ? p + q + s : sqrtf(p * p + q * q + s * s));
    else if (norm == 1) v = (T)(((int64_t)(a + b + c) * factor + (1 << (shift - 1))) >> shift);
    else if (norm == 2) v = (T)(sqrt((a * a + b * b + c * c) / 3.0) + 0.5);
    reference::store(dst, dstStep, y, x, v);
  });
}

template <class T, class Function>
void checkGray(const char* name, Function function) {
  sweep(name, function, plainGray<T>, {301, 71}, In<T>(3), Out<T>(), Roi(), Value<int32_t>({0, 1, 2}));
  const std::vector<Told> order = tableChecks({0, 1}, alignedOf<T, T>(), 2);
  walkArguments(name, function, order + std::vector<Told>{badValue(3, -1), badValue(3, 3)}, In<T>(3), Out<T>(), Roi(),
                Value<int32_t>({1}));
}

// Sums of squares at half a root and just above: (r + p, r + q, r + s) with p + q + s = 1 has the squares' sum
// 3 r (r + 1) - r + pp + qq + ss, and up to 3 r (r + 1) a root is rounded to r.
template <class T, class Function>
void checkHalves(Function function, int most) {
  std::vector<T> pixels;
  std::vector<int> roots;
  const int reach = sizeof(T) == 1 ? 12 : 150;
  for (int p = 0; p < reach; ++p)
    for (int q = -reach; q < p; q += sizeof(T)) {
      const int s = 1 - p - q, squares = p * p + q * q + s * s;
      for (const int above : {0, 1}) {
        const int r = squares - above;
        if (std::min(q, s) < -r || r + std::max(p, s) > most) continue;
        pixels.insert(pixels.end(), {(T)(r + p), (T)(r + q), (T)(r + s)}), roots.push_back(r + above);
      }
    }
  const int n = (int)roots.size();
  std::vector<T> out((size_t)n);
  forEachSetting(false, [&] {
    function(pixels.data(), n * 3 * (int)sizeof(T), out.data(), n * (int)sizeof(T), OrvSize{n, 1}, 2);
    for (int i = 0; i < n; ++i) CHECK(out[(size_t)i] == roots[(size_t)i], "pixel %d", i);
  });
}

}  // namespace

TEST(colourGradients) {
  checkGray<uint8_t>("orviGradientColorToGray_8u_C3C1R", orviGradientColorToGray_8u_C3C1R);
  checkGray<uint16_t>("orviGradientColorToGray_16u_C3C1R", orviGradientColorToGray_16u_C3C1R);
  checkGray<float>("orviGradientColorToGray_32f_C3C1R", orviGradientColorToGray_32f_C3C1R);
  checkHalves<uint8_t>(orviGradientColorToGray_8u_C3C1R, 255);
  checkHalves<uint16_t>(orviGradientColorToGray_16u_C3C1R, 65535);
}

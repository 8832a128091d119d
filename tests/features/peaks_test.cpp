// Local extrema and colour gradients against their plain forms.
// One body serves both variants.
#include <algorithm>
#include "features/roles.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

// The list of peaks and its count; the list has a random limit.
struct Peaks {
  std::vector<OrvPoint> list, expected;
  int32_t most = 1, count = 0, expectedCount = 0;
  void prepare(Random& r, const Shape& shape) {
    most = r.one(3) ? r.in(1, 3) : shape.width * shape.height;
    list.resize((size_t)most + 1), expected.resize(list.size());
    reset(), expected = list;
  }
  std::tuple<OrvPoint*, int32_t, int32_t*> arguments(Side side) {
    if (side == Side::reference) return {expected.data(), most, &expectedCount};
    return {list.data(), most, &count};
  }
  void reset() { std::fill(list.begin(), list.end(), OrvPoint{-7, -7}), count = -7; }
  bool untouched() const { return list[0].x == -7 && count == -7; }
  void verify(int) const {
    CHECK(count == expectedCount, "%d peaks, not %d", count, expectedCount);
    for (size_t i = 0; i < list.size(); ++i)
      if (list[i].x != expected[i].x || list[i].y != expected[i].y) return fail("peak %d differs", (int)i);
  }
};

template <class T>
void plainPeaks(const T* src, int32_t step, OrvSize roi, T threshold, OrvPoint* peak, int32_t most, int32_t* count,
                int32_t norm, int32_t border, uint8_t*) {
  *count = 0;
  for (int y = border; y < roi.height - border; ++y)
    for (int x = border; x < roi.width - border; ++x) {
      const T v = reference::load(src, step, y, x);
      T high = v, low = v;
      for (int k = 0; k < 9; ++k) {
        if (norm == 1 && k % 2 == 0) continue;
        const T n = reference::load(src, step, y + k / 3 - 1, x + k % 3 - 1);
        high = std::max(high, n), low = std::min(low, n);
      }
      const double distance = fabs((double)v - (double)(v > 0 ? high : low));
      if (!(fabs((double)v) > (double)threshold) || !(distance <= (double)1.1754944e-38f)) continue;
      peak[*count] = {x, y};
      if (++*count == most) return;
    }
}

template <class T, class Function>
void checkPeaks(const char* name, Function function, std::vector<T> thresholds) {
  const auto size = [](OrvSize roi, int32_t* bytes) {
    CHECK(orviFindPeaks3x3GetBufferSize_32f_C1R(roi.width, bytes) == orvStatusOk);
    CHECK(*bytes == (roi.width + 5) / 4 * 128 + 32);
    return orviFindPeaks3x3GetBufferSize_32s_C1R(roi.width, bytes);
  };
  // Regions too small for a border are refused: the sweep's sizes are the tested pixels, the image is larger.
  const auto bordered = [](auto f) {
    return [=](const T* src, int32_t step, OrvSize roi, T t, OrvPoint* peak, int32_t most, int32_t* count, int32_t norm,
               int32_t border, uint8_t* buffer) {
      while (border > 1 && (border * 2 > roi.width || border * 2 > roi.height)) --border;
      if (roi.width < 2 || roi.height < 2) return *count = 0, orvStatusOk;
      return f(src, step, roi, t, peak, most, count, norm, border, buffer), orvStatusOk;
    };
  };
  sweep(name, bordered(function), bordered(plainPeaks<T>), {}, In<T>(), Roi(), Value<T>(thresholds), Peaks(),
        Value<int32_t>({0, 1}), Value<int32_t>({1, 1, 2, 5}), Scratch(size));
  std::vector<Told> order = pointersThenSizes({0, 3, 6}, 1);
  order.insert(order.end(), {{Fault::smallStep, 0}, {Fault::misalignedStep, 0}});
  walkArguments(name, function, order, In<T>(), Roi(), Value<T>(thresholds), Peaks(), Value<int32_t>({0}),
                Value<int32_t>({1}), Scratch(size));
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
  const auto find = [&](int32_t most, int32_t norm, int32_t border) {
    return orviFindPeaks3x3_32f_C1R(image, 20, {5, 5}, 0, peak, most, &count, norm, border, buffer);
  };
  CHECK(find(9, 0, 1) == orvStatusOk && count == 2 && peak[0].x == 2 && peak[1].x == 3, "nearly equal neighbours");
  CHECK(find(9, 0, 2) == orvStatusOk && count == 0);
  for (const int32_t bad : {0, 3}) CHECK(find(9, 2, bad) == orvStatusSize);
  CHECK(find(0, 2, 1) == orvStatusSize && find(9, 2, 1) == orvStatusBadArg && find(9, -1, 1) == orvStatusBadArg);
  CHECK(orviFindPeaks3x3_32f_C1R(image, 20, {5, 5}, 0, peak, 9, nullptr, 0, 1, buffer) == orvStatusNullPtr);
  CHECK(orviFindPeaks3x3GetBufferSize_32f_C1R(0, &bytes) == orvStatusSize && bytes == -1);
  CHECK(orviFindPeaks3x3GetBufferSize_32s_C1R(0, nullptr) == orvStatusNullPtr);
}

namespace {

template <class T>
void plainGray(const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi, int32_t norm) {
  const int factor = sizeof(T) == 1 ? 1365 : 5461, shift = sizeof(T) == 1 ? 12 : 14;
  reference::forEachElement(roi, 1, [&](int y, int x) {
    const auto at = [&](int c) { return (double)reference::load(src, srcStep, y, 3 * x + c); };
    const double a = at(0), b = at(1), c = at(2), third = (a * a + b * b + c * c) / 3.0;
    T v = (T)std::max({fabs(a), fabs(b), fabs(c)});
    if (std::is_same<T, float>::value) {
      const float p = (float)fabs(a), q = (float)fabs(b), s = (float)fabs(c);
      if (norm > 0) v = (T)(norm == 1 ? p + q + s : sqrtf(p * p + q * q + s * s));
    } else if (norm > 0) {
      const double mean = sizeof(T) == 1 ? (double)((float)(a * a + b * b + c * c) / 3.0f) : third;
      v = norm == 1 ? (T)(((int64_t)(a + b + c) * factor + (1 << (shift - 1))) >> shift) : (T)(sqrt(mean) + 0.5);
    }
    reference::store(dst, dstStep, y, x, v);
  });
}

template <class T, class Function>
void checkGray(const char* name, Function function) {
  for (int i = 0; i < 2; ++i)
    sweep(name, function, plainGray<T>, {301, 71}, In<T>(3), Out<T>(), Roi(), Value<int32_t>({0, 1, 2}));
  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  order.insert(order.end(), {{Fault::smallStep, 0}, {Fault::smallStep, 1}});
  if (sizeof(T) > 1) order.insert(order.end(), {{Fault::misalignedStep, 0}, {Fault::misalignedStep, 1}});
  walkArguments(name, function, order, In<T>(3), Out<T>(), Roi(), Value<int32_t>({1}));
  T pixel[3] = {}, out = 7;
  for (const int32_t norm : {-1, 3})
    CHECK(function(pixel, 3 * sizeof(T), &out, sizeof(T), OrvSize{1, 1}, norm) == orvStatusBadArg && out == 7);
}

// Each pixel that rounds up next to one that rounds down: S is the last sum below 3 r (r + 1) and the first above.
template <class T, class Function>
void checkHalves(Function function, int most) {
  std::vector<T> pixels;
  std::vector<int> roots;
  for (int r = 1; r < most && roots.size() < 20000; r += 1 + most / 5000) {
    const int64_t limit = 3 * (int64_t)r * (r + 1);
    for (int64_t s = limit; s <= limit + 1; ++s)
      for (int a = (int)std::min<int64_t>(most, (int64_t)sqrt((double)s)), tries = 0; a >= 0 && tries < 40;
           --a, ++tries) {
        const int b = (int)std::min<int64_t>(most, (int64_t)sqrt((double)(s - (int64_t)a * a)));
        const int64_t rest = s - (int64_t)a * a - (int64_t)b * b, c = (int64_t)sqrt((double)rest);
        if (c * c != rest || c > most) continue;
        pixels.insert(pixels.end(), {(T)a, (T)b, (T)c}), roots.push_back(s > limit ? r + 1 : r);
        break;
      }
  }
  const int n = (int)roots.size();
  CHECK(n > 50, "%d pixels", n);
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

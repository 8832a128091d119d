// The sums of tracking windows against plain loops.
// One body serves both variants.
#include <algorithm>
#include <array>
#include "framework/guarded.h"
#include "framework/image.h"
#include "framework/settings.h"
#include "motion/flow_kernels.h"

using namespace test;

namespace {

int16_t toGradient(float v, int16_t*) { return (int16_t)std::clamp(nearbyintf(v), -32768.f, 32767.f); }
float toGradient(float v, float*) { return v; }

template <class P, class G, class Product>
void checkKernels(FlowKernels<P, G> (*get)(), int most) {
  Random r(seed());
  for (int round = 0; round < (quick() ? 40 : 200); ++round) {
    const int width = r.in(1, round % 2 ? 8 : 40), height = r.in(1, 9), x0 = r.in(0, 3), y0 = r.in(0, 2);
    const ptrdiff_t stride = width + x0 + 2 + windowSlack;
    const size_t count = (size_t)stride * (size_t)(height + y0 + 2);
    std::vector<P> first(count), second(count);
    std::vector<G> gx(count), gy(count), outX(count), outY(count);
    // Whatever the slack holds must not count.
    const auto fill = [&](auto& plane, int low, int margin) {
      using E = std::decay_t<decltype(plane[0])>;
      fillRuns<E>(r, plane.data(), (int64_t)count, true);
      for (ptrdiff_t y = 0; y < height + y0 + margin; ++y)
        for (ptrdiff_t x = 0; x < width + x0 + margin; ++x)
          plane[(size_t)(y * stride + x)] = (E)(r.one(4) ? (low < 0 ? low : most) : r.in(low, most));
    };
    fill(first, 0, 2), fill(second, 0, 2), fill(gx, -most, 0), fill(gy, -most, 0);
    const ptrdiff_t at = y0 * stride + x0;
    const FlowWindow<P, G> w{
        &first[(size_t)at], &second[(size_t)at], &gx[(size_t)at], &gy[(size_t)at], stride, width, height};
    const auto g = [&](const G* plane) { return [=](int x, int y) { return (Product)plane[y * stride + x]; }; };
    const auto d = [&](int x, int y) { return (Product)w.first[y * stride + x] - (Product)w.second[y * stride + x]; };
    // In eight sums, of the columns equal modulo 8; or, as products of bytes' windows, in 32 bits a row, which wrap.
    const auto sum = [&](const auto& a, const auto& b, bool wraps) {
      double l[8] = {}, wrapped = 0;
      std::array<uint32_t, 9> rows{};
      for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y) {
          const Product product = (Product)(a(x, y) * b(x, y));
          l[x % 8] += product, rows[(size_t)y] += (uint32_t)(int64_t)product;
        }
      for (const uint32_t row : rows) wrapped += (int32_t)row;
      return wraps ? wrapped : ((l[0] + l[4]) + (l[2] + l[6])) + ((l[1] + l[5]) + (l[3] + l[7]));
    };
    const bool wraps = std::is_integral<P>::value;
    const auto across = g(w.gx), down = g(w.gy);
    const std::array<double, 5> want = {sum(across, across, wraps), sum(across, down, wraps), sum(down, down, wraps),
                                        sum(d, across, wraps), sum(d, down, wraps)};
    const double squares = sum(d, d, false);
    const Context context(std::to_string(width) + "x" + std::to_string(height));
    forEachSetting(false, [&] {
      const FlowKernels<P, G> kernels = get();
      std::array<double, 5> got;
      kernels.matrix(w, got.data());
      kernels.mismatch(w, got.data() + 3);
      for (size_t i = 0; i < 5; ++i) CHECK(got[i] == want[i], "sum %d: %.17g, not %.17g", (int)i, got[i], want[i]);
      CHECK(kernels.squares(w) == squares);
      const P* p = first.data();
      kernels.derive(p, outX.data(), outY.data(), stride, width + x0, height);
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width + x0; ++x) {
          const auto v = [&](int i, int k) { return (float)p[(y + k) * stride + x + i]; };
          const auto smooth = [](float a, float b, float c) { return (0.09375f * a + 0.3125f * b) + 0.09375f * c; };
          const float dx = smooth(v(2, 0) - v(0, 0), v(2, 1) - v(0, 1), v(2, 2) - v(0, 2));
          const float dy = smooth(v(0, 2), v(1, 2), v(2, 2)) - smooth(v(0, 0), v(1, 0), v(2, 0));
          const size_t i = (size_t)(y * stride + x);
          CHECK(outX[i] == toGradient(dx, (G*)nullptr) && outY[i] == toGradient(dy, (G*)nullptr), "%d, %d", x, y);
        }
    });
  }
}

}  // namespace

TEST(bytes) { checkKernels<uint16_t, int16_t, int32_t>(flowKernelsQ7, 32640); }
TEST(floats) { checkKernels<float, float, double>(flowKernelsFloat, 65535); }

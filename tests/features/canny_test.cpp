// Canny edges from derivatives against their plain forms; sizes, statuses and cases worked by hand.
// One body serves both variants.
#include <algorithm>
#include "detect/table_roles.h"
#include "features/roles.h"
#include "reference/canny.h"

using namespace test;

TEST(derivatives) {
  const std::vector<Told> order = tableChecks({0, 1, 2}, {0, 1}, 3, {0, 1, 2, 5});
  const Thresholds shorts({{0, 0}, {0.5f, 9}, {10.9f, 11}, {30, 3000.5f}, {999, 32768}, {3e4f, 5e4f}, {65535, 65535}});
  sweep("orviCanny_16s8u_C1R", orviCanny_16s8u_C1R, reference::cannyShorts, {}, In<int16_t>(), In<int16_t>(),
        Out<uint8_t>(), Roi(), shorts, Scratch(orviCannyGetSize));
  walkArguments("orviCanny_16s8u_C1R", orviCanny_16s8u_C1R, order, In<int16_t>(), In<int16_t>(), Out<uint8_t>(), Roi(),
                shorts, Scratch(orviCannyGetSize));
  const Thresholds floats({{0, 0}, {0.25f, 300}, {255.5f, 255.5f}, {255.5f, 1e4f}, {511, 511}, {1000, INFINITY}});
  sweep("orviCanny_32f8u_C1R", orviCanny_32f8u_C1R, reference::cannyFloats, {}, wild(In<float>()), In<float>(),
        Out<uint8_t>(), Roi(), floats, Scratch(orviCannyGetSize));
  walkArguments("orviCanny_32f8u_C1R", orviCanny_32f8u_C1R, order, In<float>(), In<float>(), Out<uint8_t>(), Roi(),
                floats, Scratch(orviCannyGetSize));
}

TEST(sizes) {
  const auto size = [](int32_t w, int32_t h) {
    int32_t bytes = -1;
    CHECK(orviCannyGetSize({w, h}, &bytes) == orvStatusOk);
    return bytes;
  };
  CHECK(size(100, 50) == 5 * 102 * 52 + 1600 + 160);
  CHECK(size(65532, 1) == 5 * 65534 * 3 + 16 * 65532 + 160 && size(65533, 1) == 9 * 65535 * 3 + 16 * 65533 + 160);
  CHECK(size(1, 65532) == 5 * 3 * 65534 + 176 && size(1, 65533) == 9 * 3 * 65535 + 176);
  CHECK(size(60000, 60000) == (int32_t)(5u * 60002u * 60002u + 960160u), "wraps");
  int32_t bytes = -1;
  for (const OrvSize bad : {OrvSize{0, 1}, OrvSize{1, -1}})
    CHECK(orviCannyGetSize(bad, &bytes) == orvStatusSize && orviCannyGetSize(bad, nullptr) == orvStatusNullPtr);
}

TEST(badThresholds) {
  uint8_t dst[1] = {77}, buffer[512];
  const int16_t d = 5;
  for (const float low : {-1.f, 6.f})
    CHECK(orviCanny_16s8u_C1R(&d, 2, &d, 2, dst, 1, {1, 1}, low, 5, buffer) == orvStatusBadArg && dst[0] == 77);
}

// One strong pixel at the end of a winding path of weak ones, which fills the image and the stack.
TEST(longPath) {
  const int w = 61, h = 91;
  std::vector<float> dx(w * h), dy(w * h);
  std::vector<uint8_t> dst(w * h);
  for (int y = 0; y < h; y += 2) {
    std::fill_n(&dy[(size_t)(y * w)], w, 10.f);
    if (y + 1 < h) dx[(size_t)((y + 1) * w + (y / 2 % 2 ? 0 : w - 1))] = 9;
  }
  Random r(seed());
  Scratch buffer(orviCannyGetSize);
  buffer.prepare(r, {w, h}), buffer.reset();
  for (const int path : {0, w * (h + 1) / 2 + h / 2}) {
    if (path) dy.back() = 11;
    orviCanny_32f8u_C1R(dx.data(), w * 4, dy.data(), w * 4, dst.data(), w, {w, h}, 5, 10, buffer.memory->data());
    CHECK(std::count(dst.begin(), dst.end(), 255) == path, "not %d", path);
  }
}

// A direction so near the limit that only the products in doubles make it a vertical one. Above the pixel stands a
// larger one.
TEST(lastColumns) {
  Random r(seed());
  Scratch buffer(orviCannyGetSize);
  buffer.prepare(r, {7, 2}), buffer.reset();
  for (int x = 0; x < 7; ++x) {
    int16_t dx[14] = {}, dy[14] = {};
    uint8_t dst[14];
    dy[x] = 20000, dx[7 + x] = 3771, dy[7 + x] = 9104;
    CHECK(orviCanny_16s8u_C1R(dx, 14, dy, 14, dst, 7, {7, 2}, 0, 0, buffer.memory->data()) == orvStatusOk);
    CHECK(dst[x] == 255 && dst[7 + x] == (x < 4 ? 255 : 0), "column %d", x);
  }
}

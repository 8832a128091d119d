// Sub-pixel windows against their plain form.
// One body serves both variants.
#include "geometry/subpixel_cases.h"
#include "framework/sweep.h"

using namespace test;

namespace {

constexpr float none = -1;
const reference::Subpixel<uint8_t, uint8_t> bytes;
const reference::Subpixel<uint8_t, float> bytesToFloats{0, 1e-6f, 1e-9f};
const reference::Subpixel<uint16_t, uint16_t> words{0, none, none};
const reference::Subpixel<uint16_t, float> wordsToFloats{0, 1e-6f, 1e-9f};
const reference::Subpixel<float, float> floats{0, 1e-6f, 1e-6f};

// Offsets: the fraction is told beside each.
const struct {
  float offset, fraction;
} offsets[] = {{0, 0},    {0.5f, 0.5f},  {0.3f, 0.3f},         {-0.25f, 0.75f},   {7.75f, 0.75f},
               {-3, 0},   {-1e-9f, 1.f}, {0.99997f, 0.99997f}, {1e-7f, 1e-7f},    {-2.5f, 0.5f},
               {3e9f, 0}, {NAN, 0},      {INFINITY, 0},        {1 / 3.f, 1 / 3.f}};

// run(src, srcStep, dst, dstStep, roi, dx, dy) over sizes and offsets. The source has a column and a row more than dst.
template <class S, class D, class Run>
void sweepCopy(const char* name, const reference::Subpixel<S, D>& plain, const Run& run) {
  Random r(seed());
  for (const Shape& shape : shapes()) {
    const auto &dx = offsets[r.in(0, 13)], &dy = offsets[r.in(0, 13)];
    const Context context(detail::describe(name, shape) + " " + std::to_string(dx.offset) + " " +
                          std::to_string(dy.offset));
    Image<S> src(r, shape.width, shape.height, 1, {0, 0, 1, 1});
    src.fill(r, std::is_floating_point<S>::value);
    Image<D> dst(r, shape.width, shape.height, 1);
    forEachSetting(false, [&] {
      dst.restore();
      const OrvSize roi{shape.width, shape.height};
      CHECK(run(src.data(), src.step(), dst.data(), dst.step(), roi, dx.offset, dy.offset) == orvStatusOk);
      CHECK(src.unchanged() && dst.onlyRegionChanged());
      for (int y = 0; y < shape.height; ++y)
        for (int x = 0; x < shape.width; ++x) {
          const S p[4] = {src.at(x, y), src.at(x + 1, y), src.at(x, y + 1), src.at(x + 1, y + 1)};
          const D want = plain(p, dx.fraction, dy.fraction, true, true), got = dst.at(x, y);
          if (!same(got, want)) return fail("(%d, %d): %.9g, not %.9g", x, y, (double)got, (double)want);
        }
    });
  }
}

template <class S, class D>
void copies(const char* name, OrvStatus (*f)(const S*, int32_t, D*, int32_t, OrvSize, float, float),
            const reference::Subpixel<S, D>& plain) {
  sweepCopy(name, plain, f);
  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  for (const int position : {0, 1}) order.push_back({Fault::smallStep, position});
  if (sizeof(S) > 1) order.push_back({Fault::misalignedStep, 0});
  if (sizeof(D) > 1) order.push_back({Fault::misalignedStep, 1});
  walkArguments(name, f, order, In<S>(), Out<D>(), Roi(), Value<float>({0}), Value<float>({0}));
}

}  // namespace

TEST(windows) {
  const auto bytesCase = windowCase("orviCopySubpixIntersect_8u_C1R", orviCopySubpixIntersect_8u_C1R, bytes);
  const auto byteFloats =
      windowCase("orviCopySubpixIntersect_8u32f_C1R", orviCopySubpixIntersect_8u32f_C1R, bytesToFloats);
  const auto wordsCase = windowCase("orviCopySubpixIntersect_16u_C1R", orviCopySubpixIntersect_16u_C1R, words);
  const auto wordFloats =
      windowCase("orviCopySubpixIntersect_16u32f_C1R", orviCopySubpixIntersect_16u32f_C1R, wordsToFloats);
  const auto floatsCase = windowCase("orviCopySubpixIntersect_32f_C1R", orviCopySubpixIntersect_32f_C1R, floats);
  sweepWindows(bytesCase), walkWindow(bytesCase);
  sweepWindows(byteFloats), walkWindow(byteFloats);
  sweepWindows(wordsCase), walkWindow(wordsCase);
  sweepWindows(wordFloats), walkWindow(wordFloats);
  sweepWindows(floatsCase), walkWindow(floatsCase);
}

TEST(scaledWindows) {
  for (const int factor : {-7, -8, 0, -14, -30, 3}) {
    const auto c = scaledCase("orviCopySubpixIntersect_8u16u_C1R_Sfs", orviCopySubpixIntersect_8u16u_C1R_Sfs, factor);
    sweepWindows(c);
    if (factor == 0) walkWindow(c);
  }
}

TEST(copies) {
  copies("orviCopySubpix_8u_C1R", orviCopySubpix_8u_C1R, bytes);
  copies("orviCopySubpix_8u32f_C1R", orviCopySubpix_8u32f_C1R, bytesToFloats);
  copies("orviCopySubpix_16u_C1R", orviCopySubpix_16u_C1R, words);
  copies("orviCopySubpix_16u32f_C1R", orviCopySubpix_16u32f_C1R, wordsToFloats);
  copies("orviCopySubpix_32f_C1R", orviCopySubpix_32f_C1R, floats);
  for (const int factor : {-7, 0, -8, -14, -15, -17, -100, 1, 8, 9, 10, 100})
    sweepCopy("orviCopySubpix_8u16u_C1R_Sfs", reference::Subpixel<uint8_t, uint16_t>{factor},
              [=](const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roi, float dx,
                  float dy) { return orviCopySubpix_8u16u_C1R_Sfs(src, srcStep, dst, dstStep, roi, factor, dx, dy); });
  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  order.insert(order.end(), {{Fault::smallStep, 0}, {Fault::smallStep, 1}, {Fault::misalignedStep, 1}});
  walkArguments("orviCopySubpix_8u16u_C1R_Sfs", orviCopySubpix_8u16u_C1R_Sfs, order, In<uint8_t>(), Out<uint16_t>(),
                Roi(), Value<int32_t>({0}), Value<float>({0}), Value<float>({0}));
}

// Whole offsets copy bytes exactly, though the weights are pushed up; in 16 bits the push shows.
TEST(knownValues) {
  const uint8_t src[6] = {10, 20, 30, 40, 50, 255};
  uint8_t byte[2];
  uint16_t word[2];
  CHECK(orviCopySubpix_8u_C1R(src, 3, byte, 2, {2, 1}, -4, 0) == orvStatusOk && byte[0] == 10 && byte[1] == 20);
  // 16381 * 20 + 30 + 50 + 255 = 327955, with 64 more shifted by 7
  CHECK(orviCopySubpix_8u16u_C1R_Sfs(src, 3, word, 4, {2, 1}, -7, 0, 0) == orvStatusOk && word[1] == 2562);
  CHECK(orviCopySubpix_8u_C1R(src, 3, byte, 2, {2, 1}, -0.25f, 0) == orvStatusOk && byte[0] == 18, "%d", byte[0]);
}

// Where no number tells the place: the nearest corner, and an empty range.
TEST(farPlaces) {
  const uint8_t src[4] = {1, 2, 3, 4};
  const struct {
    float x, y;
    int value, min, max;
  } cases[] = {{1e30f, 1e30f, 4, 0, -1},
               {-1e30f, -1e30f, 1, 3, 2},
               {-INFINITY, INFINITY, 3, 3, 2},
               {INFINITY, -INFINITY, 2, 0, -1},
               {NAN, NAN, 1, 3, 2}};
  for (const auto& c : cases) {
    uint8_t dst[9] = {};
    OrvPoint min, max;
    CHECK(orviCopySubpixIntersect_8u_C1R(src, 2, {2, 2}, dst, 3, {3, 3}, {c.x, c.y}, &min, &max) == orvStatusOk);
    for (const uint8_t v : dst) CHECK(v == c.value, "%d at %g, %g", v, c.x, c.y);
    CHECK(min.x == c.min && max.x == c.max, "%d to %d at %g", min.x, max.x, c.x);
  }
}

// Sub-pixel windows against their plain form.
// One body serves both variants.
#include "geometry/subpixel_cases.h"
#include "reference/pointwise.h"

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

float fractionOf(float offset) {
  for (const auto& o : offsets)
    if (same(o.offset, offset)) return o.fraction;
  return NAN;
}

// f(src, srcStep, dst, dstStep, roi, dx, dy); the source has a column and a row more than dst.
template <class S, class D, class F>
void copies(const char* name, F f, const reference::Subpixel<S, D>& plain) {
  const auto plainCopy = [&](const S* src, int32_t srcStep, D* dst, int32_t dstStep, OrvSize roi, float dx, float dy) {
    reference::forEachElement(roi, 1, [&](int y, int x) {
      S p[4];
      for (int n = 0; n < 4; ++n) p[n] = reference::load(src, srcStep, y + n / 2, x + n % 2);
      reference::store(dst, dstStep, y, x, plain(p, fractionOf(dx), fractionOf(dy), true, true));
    });
  };
  std::vector<float> values;
  for (const auto& o : offsets) values.push_back(o.offset);
  sweep(name, f, plainCopy, {}, Larger<S>(wild(In<S>()), 1, 1), Out<D>(), Roi(), Value<float>(values),
        Value<float>(values));
  walkArguments(name, f, tableChecks({0, 1}, alignedOf<S, D>(), 2), In<S>(), Out<D>(), Roi(), Value<float>({0}),
                Value<float>({0}));
}

}  // namespace

TEST(windows) {
  windows("orviCopySubpixIntersect_8u_C1R", orviCopySubpixIntersect_8u_C1R, bytes);
  windows("orviCopySubpixIntersect_8u32f_C1R", orviCopySubpixIntersect_8u32f_C1R, bytesToFloats);
  windows("orviCopySubpixIntersect_16u_C1R", orviCopySubpixIntersect_16u_C1R, words);
  windows("orviCopySubpixIntersect_16u32f_C1R", orviCopySubpixIntersect_16u32f_C1R, wordsToFloats);
  windows("orviCopySubpixIntersect_32f_C1R", orviCopySubpixIntersect_32f_C1R, floats);
  for (const int factor : {-7, -8, 0, -14, -30, 3})
    scaledWindows("orviCopySubpixIntersect_8u16u_C1R_Sfs", orviCopySubpixIntersect_8u16u_C1R_Sfs, factor);
}

TEST(copies) {
  copies("orviCopySubpix_8u_C1R", orviCopySubpix_8u_C1R, bytes);
  copies("orviCopySubpix_8u32f_C1R", orviCopySubpix_8u32f_C1R, bytesToFloats);
  copies("orviCopySubpix_16u_C1R", orviCopySubpix_16u_C1R, words);
  copies("orviCopySubpix_16u32f_C1R", orviCopySubpix_16u32f_C1R, wordsToFloats);
  copies("orviCopySubpix_32f_C1R", orviCopySubpix_32f_C1R, floats);
  for (const int factor : {-7, 0, -8, -14, -15, -17, -100, 1, 8, 9, 10, 100})
    copies(
        "orviCopySubpix_8u16u_C1R_Sfs",
        [=](const uint8_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roi, float dx, float dy) {
          return orviCopySubpix_8u16u_C1R_Sfs(src, srcStep, dst, dstStep, roi, factor, dx, dy);
        },
        reference::Subpixel<uint8_t, uint16_t>{factor});
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

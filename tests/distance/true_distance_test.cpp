// The exact transform against distances worked out in whole numbers.
// One body serves both variants.
#include <limits>
#include "distance/distance_roles.h"

using namespace test;

namespace {

// Checks a result: the root of the least squared distance, or of the largest float. Distances down the columns first,
// then each row tries all of them.
void checkExact(const Image<uint8_t>& src, const Image<float>& got) {
  const int width = src.elements(), height = src.height();
  constexpr int64_t none = std::numeric_limits<int64_t>::max();
  std::vector<int64_t> column((size_t)width);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      column[(size_t)x] = none;
      for (int d = 0; d < height && column[(size_t)x] == none; ++d)
        for (const int row : {y - d, y + d})
          if (row >= 0 && row < height && src.at(x, row) == 0) column[(size_t)x] = (int64_t)d * d;
    }
    for (int x = 0; x < width; ++x) {
      int64_t least = none;
      for (int v = 0; v < width; ++v)
        if (column[(size_t)v] != none) least = std::min(least, column[(size_t)v] + (int64_t)(x - v) * (x - v));
      const float want = sqrtf(least == none ? std::numeric_limits<float>::max() : (float)least);
      if (got.at(x, y) == want) continue;
      return fail("%d, %d: %.9g, not %.9g", x, y, (double)got.at(x, y), (double)want);
    }
  }
}

void check(Random& r, Shape shape, int kind) {
  Image<uint8_t> src(r, shape.width, shape.height, 1);
  drawMask(r, src, kind);
  Image<float> dst(r, shape.width, shape.height, 1);
  const std::string text = std::to_string(shape.width) + "x" + std::to_string(shape.height);
  const Context context(text + " kind " + std::to_string(kind));
  forEachSetting(shape.threaded, [&] {
    int32_t bytes = 0;
    CHECK(orviTrueDistanceTransformGetBufferSize_8u32f_C1R({shape.width, shape.height}, &bytes) == orvStatusOk);
    const Guarded buffer((size_t)bytes, true, (size_t)r.in(0, 9));
    dst.restore();
    CHECK(orviTrueDistanceTransform_8u32f_C1R(src.data(), src.step(), dst.data(), dst.step(),
                                              {shape.width, shape.height}, buffer.data()) == orvStatusOk);
    checkExact(src, dst);
    CHECK(src.unchanged() && dst.onlyRegionChanged() && buffer.intact());
  });
}

}  // namespace

TEST(all_shapes) {
  Random r(seed());
  for (const Shape& shape : shapes()) check(r, shape, r.in(0, maskKinds - 1));
  for (const Shape shape : {Shape{600, 90, true}, {70, 300, true}, {1, 500}, {2500, 3}})
    for (int kind = 0; kind < maskKinds; ++kind) check(r, shape, kind);
}

// Too large for whole numbers in a float: still the told parabolas, so within rounding of the truth.
TEST(wide_images) {
  const int width = quick() ? 5000 : 20000;
  std::vector<uint8_t> src((size_t)width, 1);
  std::vector<float> dst((size_t)width);
  src[17] = 0, src[(size_t)width - 40] = 0;
  int32_t bytes = 0;
  orviTrueDistanceTransformGetBufferSize_8u32f_C1R({width, 1}, &bytes);
  std::vector<uint8_t> buffer((size_t)bytes);
  forEachSetting(false, [&] {
    orviTrueDistanceTransform_8u32f_C1R(src.data(), width, dst.data(), width * 4, {width, 1}, buffer.data());
    for (int x = 0; x < width; ++x) {
      const float want = (float)std::min(abs(x - 17), abs(x - width + 40));
      CHECK(fabsf(dst[(size_t)x] - want) <= 1e-3f * want, "%d: %g", x, (double)dst[(size_t)x]);
    }
  });
}

TEST(arguments) {
  int32_t bytes = -1;
  steerThreads(3);
  CHECK(orviTrueDistanceTransformGetBufferSize_8u32f_C1R({101, 50}, &bytes) == orvStatusOk &&
        bytes == 3 * (104 * 24 + 56));
  steerThreads(1);
  CHECK(orviTrueDistanceTransformGetBufferSize_8u32f_C1R({5, 9}, &bytes) == orvStatusOk && bytes == 12 * 24 + 56);
  CHECK(orviTrueDistanceTransformGetBufferSize_8u32f_C1R({0, 9}, nullptr) == orvStatusNullPtr);
  for (const OrvSize roi : {OrvSize{0, 9}, {9, -1}})
    CHECK(orviTrueDistanceTransformGetBufferSize_8u32f_C1R(roi, &bytes) == orvStatusSize && bytes == 12 * 24 + 56);
  std::vector<Told> order = pointersThenSizes({0, 1, 3}, 2);
  order.insert(order.end(), {{Fault::smallStep, 0}, {Fault::smallStep, 1}, {Fault::misalignedStep, 1}});
  walkArguments("orviTrueDistanceTransform_8u32f_C1R", orviTrueDistanceTransform_8u32f_C1R, order, Mask(), Out<float>(),
                Roi(), Result<uint8_t>(1000));
}

// Gray erosion and dilation against their definition; sizes, records, statuses, a failing allocation.
//
// One body serves both variants.
#include <float.h>
#include "morph/replicate_cases.h"

using namespace test;

namespace {

template <class T, class W>
struct Gray {
  OrvStatus (*size)(OrvSize, const W*, OrvSize, int32_t*);
  OrvStatus (*init)(OrvMorphGrayState*, OrvSize, const W*, OrvSize, OrvPoint);
  OrvStatus (*alloc)(OrvMorphGrayState**, OrvSize, const W*, OrvSize, OrvPoint);
  OrvStatus (*free)(OrvMorphGrayState*);
  ReplicateFilter<T, OrvMorphGrayState> filters[2];
};

#define GRAY(tag)                                                                                                 \
  {                                                                                                               \
    orviMorphGrayGetSize_##tag, orviMorphGrayInit_##tag, orviMorphGrayInitAlloc_##tag, orviMorphGrayFree_##tag, { \
      orviGrayErodeBorder_##tag, orviGrayDilateBorder_##tag                                                       \
    }                                                                                                             \
  }
const Gray<uint8_t, int32_t> bytes = GRAY(8u_C1R);
const Gray<float, float> floats = GRAY(32f_C1R);

template <class T, class W>
struct Mask {
  OrvSize size;
  OrvPoint anchor;
  std::vector<W> weights;

  T plain(const Image<T>& src, int x, int y, bool dilate) const {
    const bool byte = sizeof(T) == 1;
    W best = byte ? (W)(dilate ? 0 : 255) : (W)(dilate ? -FLT_MAX : FLT_MAX);
    for (int i = 0; i < size.height; ++i)
      for (int j = 0; j < size.width; ++j) {
        const int column = std::min(std::max(x + j - anchor.x, 0), src.elements() - 1);
        const int row = std::min(std::max(y + i - anchor.y, 0), src.height() - 1);
        const W sum = (W)src.at(column, row) + weights[(size_t)(i * size.width + j)];
        if (dilate ? sum > best : sum < best) best = sum;
      }
    return byte ? (T)std::min<W>(std::max<W>(best, 0), 255) : (T)best;
  }
};

// `most`: how large weights are.
template <class T, class W>
void check(const Gray<T, W>& gray, Random& r, Shape shape, OrvSize maskSize, int most) {
  Mask<T, W> mask = {maskSize, {r.in(0, maskSize.width - 1), r.in(0, maskSize.height - 1)}, {}};
  for (int i = 0; i < maskSize.width * maskSize.height; ++i) mask.weights.push_back((W)r.in(-most, most));
  const Context context(std::to_string(shape.width) + "x" + std::to_string(shape.height) + ", mask " +
                        std::to_string(maskSize.width) + "x" + std::to_string(maskSize.height));
  const OrvSize prepared = {shape.width + r.in(0, 1), shape.height + r.in(0, 1)};
  int32_t size = 0;
  CHECK(gray.size(prepared, mask.weights.data(), maskSize, &size) == orvStatusOk);
  CHECK(size == 4 * maskSize.width * maskSize.height + 32);
  const Guarded block((size_t)size, !r.one(4), (size_t)r.in(0, 9));
  auto* const given = (OrvMorphGrayState*)(void*)block.data();
  OrvMorphGrayState* allocated = nullptr;
  CHECK(gray.init(given, prepared, mask.weights.data(), maskSize, mask.anchor) == orvStatusOk);
  CHECK(gray.alloc(&allocated, prepared, mask.weights.data(), maskSize, mask.anchor) == orvStatusOk);
  Image<T> src(r, shape.width, shape.height, 1);
  src.fill(r, false);
  for (const bool dilate : {false, true}) {
    std::vector<T> expected;
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) expected.push_back(mask.plain(src, x, y, dilate));
    for (OrvMorphGrayState* const state : {given, allocated})
      checkReplicate<T>(
          r, src, 1, [&](auto... a) { return gray.filters[dilate](a..., state); },
          [&](int x, int y) { return expected[(size_t)(y * shape.width + x)]; });
  }
  CHECK(block.intact() && gray.free(allocated) == orvStatusOk);
}

template <class T, class W>
void sweepGray(const Gray<T, W>& gray) {
  Random r(seed());
  const int large = INT32_MAX - 256;
  for (const Shape& shape : shapes()) check(gray, r, shape, {r.in(1, 6), r.in(1, 4)}, r.one(8) ? large : 99);
  for (const int most : {0, 400, 32512, 32513, 32768, large}) check(gray, r, {70, 2}, {3, 3}, most);
  check(gray, r, {1300, 2}, {40, 2}, 50);
  check(gray, r, {20, 3}, {90, 9}, 50);
}

template <class T, class W>
void walkGray(const Gray<T, W>& gray) {
  const W weights[6] = {};
  const OrvSize roi = {9, 5}, mask = {3, 2};
  uint8_t block[64];
  auto* state = (OrvMorphGrayState*)(void*)block;
  OrvMorphGrayState* allocated = nullptr;
  int32_t size;
  CHECK(gray.size({0, 1}, nullptr, mask, &size) == orvStatusNullPtr && gray.size({0, 1}, weights, mask, nullptr) == -8);
  CHECK(gray.size({0, 1}, weights, mask, &size) == orvStatusSize && gray.size(roi, weights, {3, 0}, &size) == -6);
  const auto builds = [&](auto make, auto* target) {
    CHECK(make(nullptr, {0, 1}, weights, mask, {3, 0}) == orvStatusNullPtr);
    CHECK(make(target, {0, 1}, nullptr, mask, {3, 0}) == orvStatusNullPtr);
    CHECK(make(target, {1, 0}, weights, mask, {3, 0}) == orvStatusSize &&
          make(target, roi, weights, {0, 2}, {3, 0}) == -6);
    CHECK(make(target, roi, weights, mask, {3, 0}) == orvStatusAnchor &&
          make(target, roi, weights, mask, {0, -1}) == -34);
  };
  builds(gray.init, state), builds(gray.alloc, &allocated);
  steerFailAllocation(1);
  CHECK(gray.alloc(&allocated, roi, weights, mask, {0, 0}) == orvStatusNoMem && !allocated);
  steerFailAllocation(0);
  CHECK(gray.free(nullptr) == orvStatusNullPtr && steeredLiveAllocations() == 0);
  CHECK(gray.init(state, roi, weights, mask, {1, 1}) == orvStatusOk);
  for (const auto filter : gray.filters) walkReplicate<T>(filter, state, 1, true);
}

}  // namespace

TEST(bytes) { sweepGray(bytes), walkGray(bytes); }
TEST(floats) { sweepGray(floats), walkGray(floats); }

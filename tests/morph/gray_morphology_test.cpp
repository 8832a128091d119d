// Gray erosion and dilation against their definition; sizes, records, statuses, a failing allocation.
//
// One body serves both variants.
#include <float.h>
#include "morph/replicate_cases.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

template <class T, class W>
struct Gray {
  OrvStatus (*size)(OrvSize, const W*, OrvSize, int32_t*);
  OrvStatus (*init)(OrvMorphGrayState*, OrvSize, const W*, OrvSize, OrvPoint);
  OrvStatus (*alloc)(OrvMorphGrayState**, OrvSize, const W*, OrvSize, OrvPoint);
  OrvStatus (*free)(OrvMorphGrayState*);
  OrvStatus (*filters[2])(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, OrvMorphGrayState*);
};
#define GRAY(tag)                                                                                                 \
  {                                                                                                               \
    orviMorphGrayGetSize_##tag, orviMorphGrayInit_##tag, orviMorphGrayInitAlloc_##tag, orviMorphGrayFree_##tag, { \
      orviGrayErodeBorder_##tag, orviGrayDilateBorder_##tag                                                       \
    }                                                                                                             \
  }

template <class T, class W>
struct Mask {
  OrvSize size{}, roi{};
  OrvPoint anchor{};
  std::vector<W> weights{};

  T fold(const T* src, int32_t step, OrvSize region, int x, int y, bool dilate) const {
    const bool byte = sizeof(T) == 1;
    W best = byte ? (W)(dilate ? 0 : 255) : (W)(dilate ? -FLT_MAX : FLT_MAX);
    for (int i = 0; i < size.height; ++i)
      for (int j = 0; j < size.width; ++j) {
        const int column = std::min(std::max(x + j - anchor.x, 0), region.width - 1);
        const int row = std::min(std::max(y + i - anchor.y, 0), region.height - 1);
        const W sum = (W)reference::load(src, step, row, column) + weights[(size_t)(i * size.width + j)];
        if (dilate ? sum > best : sum < best) best = sum;
      }
    return byte ? (T)std::min<W>(std::max<W>(best, 0), 255) : (T)best;
  }
};

// Small masks under weights of every magnitude, and wide ones on the last shapes.
template <class T, class W>
void check(const Gray<T, W>& gray) {
  Mask<T, W> mask;
  const auto draw = [&](Random& r, OrvSize* region) {
    const OrvSize roi = *region;
    const int most[] = {0, 99, 99, 400, 32512, 32513, 32768, INT32_MAX - 256};
    const int limit = most[r.in(0, 7)];
    mask.size = {r.in(1, 6), r.in(1, 4)};
    mask.roi = *region = {roi.width + r.in(0, 1), roi.height + r.in(0, 1)};
    if (roi.width == 1300) mask.size = {40, 2};
    if (roi.width == 20) mask.size = {90, 9};
    mask.anchor = {r.in(0, mask.size.width - 1), r.in(0, mask.size.height - 1)};
    mask.weights.clear();
    for (int i = 0; i < mask.size.width * mask.size.height; ++i)
      mask.weights.push_back((W)(r.one(4) ? limit : r.in(-limit, limit)));
    int32_t size = 0;
    CHECK(gray.size(mask.roi, mask.weights.data(), mask.size, &size) == orvStatusOk);
    CHECK(size == 4 * mask.size.width * mask.size.height + 32);
    return size;
  };
  const auto build = [&](auto make, auto* target) {
    return make(target, mask.roi, mask.weights.data(), mask.size, mask.anchor);
  };
  const auto init = [&](OrvMorphGrayState* state) { return build(gray.init, state); };
  const auto alloc = [&](OrvMorphGrayState** state) { return build(gray.alloc, state); };
  for (const bool dilate : {false, true})
    checkReplicate<T, OrvMorphGrayState>(
        gray.filters[dilate], 1, {draw, init, alloc, gray.free}, true, {{1300, 2}, {20, 3}},
        [&](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi) {
          reference::forEachElement(roi, 1, [&](int y, int x) {
            reference::store(dst, dstStep, y, x, mask.fold(src, srcStep, roi, x, y, dilate));
          });
        });

  const W weights[6] = {};
  const OrvSize roi = {9, 5}, size = {3, 2};
  uint8_t block[64];
  auto* state = (OrvMorphGrayState*)(void*)block;
  OrvMorphGrayState* allocated = nullptr;
  int32_t bytes;
  const Value<const W*> given({weights});
  const Value<OrvSize> maskSize({size});
  const std::vector<Told> maskFaults = {{Fault::width, 3}, {Fault::height, 3}};
  walkArguments("size", gray.size,
                pointersThenSizes({1, 3}, 0) + std::vector<Told>{{Fault::width, 2}, {Fault::height, 2}}, Roi(), given,
                maskSize, Value<int32_t*>({&bytes}));
  const auto builds = [&](auto make, auto* target) {
    for (const OrvPoint anchor : {OrvPoint{3, 0}, {0, -1}}) {
      walkArguments("record", make, pointersThenSizes({0, 2}, 1) + maskFaults, Value<decltype(target)>({target}), Roi(),
                    given, maskSize, Value<OrvPoint>({anchor}));
      CHECK(make(target, roi, weights, size, anchor) == orvStatusAnchor);
    }
  };
  builds(gray.init, state), builds(gray.alloc, &allocated);
  steerFailAllocation(1);
  CHECK(gray.alloc(&allocated, roi, weights, size, {0, 0}) == orvStatusNoMem && !allocated);
  steerFailAllocation(0);
  CHECK(gray.free(nullptr) == orvStatusNullPtr && steeredLiveAllocations() == 0);
}

}  // namespace

TEST(bytes) { check<uint8_t, int32_t>(GRAY(8u_C1R)); }
TEST(floats) { check<float, float>(GRAY(32f_C1R)); }

// Erosion and dilation of the replicate-border family against the definition, in records given and allocated; the
// record of a boxed rectangle, sizes, statuses, failing allocations.
//
// One body serves both variants.
#include "morph/morph_cases.h"
#include "morph/replicate_cases.h"
#include "reference/pointwise.h"

using namespace test;

namespace {

template <class T>
struct Flat {
  int channels;
  OrvStatus (*size)(int32_t, const uint8_t*, OrvSize, int32_t*);
  OrvStatus (*init)(int32_t, const uint8_t*, OrvSize, OrvPoint, OrvMorphState*);
  OrvStatus (*alloc)(int32_t, const uint8_t*, OrvSize, OrvPoint, OrvMorphState**);
  OrvStatus (*filters[2])(const T*, int32_t, T*, int32_t, OrvSize, OrvBorderType, OrvMorphState*);
};
#define FLAT(C, tag)                                                                           \
  {                                                                                            \
    C, orviMorphologyGetSize_##tag, orviMorphologyInit_##tag, orviMorphologyInitAlloc_##tag, { \
      orviErodeBorderReplicate_##tag, orviDilateBorderReplicate_##tag                          \
    }                                                                                          \
  }
const Flat<uint8_t> bytes[] = {FLAT(1, 8u_C1R), FLAT(3, 8u_C3R), FLAT(4, 8u_C4R)};
const Flat<float> floats[] = {FLAT(1, 32f_C1R), FLAT(3, 32f_C3R), FLAT(4, 32f_C4R)};

// Masks with any anchor; larger ones on the last shapes.
template <class T>
void sweepFlat(const Flat<T>& flat) {
  MaskShape mask{1, 1, {1}};
  int32_t prepared = 0;
  const auto draw = [&](Random& r, OrvSize* roi) {
    mask = someMask(r, roi->height > 9 ? 21 : 7);
    mask.anchorX = r.in(0, mask.width - 1), mask.anchorY = r.in(0, mask.height - 1);
    prepared = roi->width += r.one(3) ? r.in(0, 9) : 0;
    int32_t size = -1;
    CHECK(flat.size(prepared, mask.bytes.data(), {mask.width, mask.height}, &size) == orvStatusOk);
    return size;
  };
  const auto build = [&](auto make, auto* target) {
    return make(prepared, mask.bytes.data(), {mask.width, mask.height}, {mask.anchorX, mask.anchorY}, target);
  };
  const auto init = [&](OrvMorphState* state) { return build(flat.init, state); };
  const auto alloc = [&](OrvMorphState** state) { return build(flat.alloc, state); };
  for (const bool dilate : {false, true})
    checkReplicate<T, OrvMorphState>(
        flat.filters[dilate], flat.channels, {draw, init, alloc, orviMorphologyFree}, false, {{33, 38}},
        [&](const T* src, int32_t srcStep, T* dst, int32_t dstStep, OrvSize roi) {
          const int c = flat.channels;
          Grid<T> grid(roi.width, roi.height, c, 0);
          reference::forEachElement(
              roi, c, [&](int y, int x) { grid.at(x / c, y, x % c) = reference::load(src, srcStep, y, x); });
          Grid<T> folded = foldMask(grid, {0, 0, roi.width, roi.height, 0}, mask, dilate);
          reference::forEachElement(
              roi, c, [&](int y, int x) { reference::store(dst, dstStep, y, x, folded.at(x / c, y, x % c)); });
        });
}

// The checks of Init and of InitAlloc, in their order.
template <class T>
void walkFlat(const Flat<T>& flat) {
  const uint8_t mask[6] = {1, 1, 1, 0, 1, 1};
  std::vector<uint8_t> block(1 << 15);
  auto* state = (OrvMorphState*)(void*)block.data();
  int32_t size;
  CHECK(flat.size(0, nullptr, {0, 0}, &size) == orvStatusNullPtr && flat.size(0, mask, {0, 0}, nullptr) == -8);
  CHECK(flat.size(0, mask, {3, 2}, &size) == orvStatusSize && flat.size(9, mask, {3, 0}, &size) == orvStatusSize);
  const auto builds = [&](auto make, auto* target) {
    CHECK(make(0, nullptr, {0, 2}, {3, 0}, target) == orvStatusNullPtr);
    CHECK(make(0, mask, {0, 2}, {3, 0}, nullptr) == orvStatusNullPtr);
    CHECK(make(0, mask, {3, 2}, {3, 0}, target) == orvStatusSize && make(9, mask, {0, 2}, {0, 0}, target) == -6);
    CHECK(make(9, mask, {3, 2}, {3, 0}, target) == orvStatusAnchor && make(9, mask, {3, 2}, {0, -1}, target) == -34);
    steerFailAllocation(1);
    CHECK(make(9, mask, {3, 2}, {1, 1}, target) == orvStatusNoMem && steeredLiveAllocations() == 0);
  };
  OrvMorphState* allocated = nullptr;
  builds(flat.init, state), builds(flat.alloc, &allocated);
  steerFailAllocation(2);
  CHECK(flat.alloc(9, mask, {3, 2}, {1, 1}, &allocated) == orvStatusNoMem && steeredLiveAllocations() == 0);
  CHECK(!allocated && orviMorphologyFree(nullptr) == orvStatusNullPtr);
  steerFailAllocation(0);
}

}  // namespace

TEST(bytes) {
  for (const auto& flat : bytes) sweepFlat(flat), walkFlat(flat);
}
TEST(floats) {
  for (const auto& flat : floats) sweepFlat(flat), walkFlat(flat);
}

TEST(record) {
  alignas(16) static uint8_t block[1 << 14];
  auto* const state = (OrvMorphState*)(void*)block;
  const uint8_t row[9] = {0, 0, 0, 0, 0, 0, 1, 1, 0}, cross[9] = {0, 1, 0, 1, 1, 1, 0, 1, 0};
  CHECK(bytes[0].init(50, row, {3, 3}, {2, 0}, state) == orvStatusOk && state->shapeKind == orvMorphRectangle);
  CHECK(state->maskWidth == 2 && state->maskHeight == 1 && state->anchorX == 2 && state->anchorY == -2);
  CHECK(bytes[0].init(50, cross, {3, 3}, {1, 1}, state) == orvStatusOk && state->shapeKind == orvMorphEllipse);
  CHECK(bytes[0].init(50, cross, {3, 3}, {0, 1}, state) == orvStatusOk && state->shapeKind == orvMorphArbitrary);
  int32_t size = 0;  // as in the border form: A = 16, H = 3, E = 10 * 132 + 160
  CHECK(bytes[0].size(100, cross, {3, 3}, &size) == orvStatusOk && size == 33 * 16 + 48 + 160 + 1480 + 80 + 16 + 112);
}

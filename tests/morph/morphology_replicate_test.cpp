// Erosion and dilation of the replicate-border family against the definition, in records given and allocated; the
// record of a boxed rectangle, sizes, statuses, failing allocations.
//
// One body serves both variants.
#include "morph/morph_cases.h"
#include "morph/replicate_cases.h"

using namespace test;

namespace {

template <class T>
struct Flat {
  int channels;
  OrvStatus (*size)(int32_t, const uint8_t*, OrvSize, int32_t*);
  OrvStatus (*init)(int32_t, const uint8_t*, OrvSize, OrvPoint, OrvMorphState*);
  OrvStatus (*alloc)(int32_t, const uint8_t*, OrvSize, OrvPoint, OrvMorphState**);
  ReplicateFilter<T, OrvMorphState> filters[2];
};

#define FLAT(C, tag)                                                                           \
  {                                                                                            \
    C, orviMorphologyGetSize_##tag, orviMorphologyInit_##tag, orviMorphologyInitAlloc_##tag, { \
      orviErodeBorderReplicate_##tag, orviDilateBorderReplicate_##tag                          \
    }                                                                                          \
  }
const Flat<uint8_t> bytes[] = {FLAT(1, 8u_C1R), FLAT(3, 8u_C3R), FLAT(4, 8u_C4R)};
const Flat<float> floats[] = {FLAT(1, 32f_C1R), FLAT(3, 32f_C3R), FLAT(4, 32f_C4R)};

// A region under a mask with any anchor, first with a record in exact memory, then with an allocated one.
template <class T>
void check(const Flat<T>& flat, Random& r, Shape shape, MaskShape mask) {
  mask.anchorX = r.in(0, mask.width - 1), mask.anchorY = r.in(0, mask.height - 1);
  const Context context(std::to_string(flat.channels) + " channels " + std::to_string(shape.width) + "x" +
                        std::to_string(shape.height) + ", mask " + std::to_string(mask.width) + "x" +
                        std::to_string(mask.height));
  const OrvSize maskSize = {mask.width, mask.height};
  const OrvPoint anchor = {mask.anchorX, mask.anchorY};
  const int32_t prepared = shape.width + (r.one(3) ? r.in(0, 9) : 0);
  int32_t size = -1;
  CHECK(flat.size(prepared, mask.bytes.data(), maskSize, &size) == orvStatusOk);
  const Guarded block((size_t)size, !r.one(4), (size_t)r.in(0, 20));
  auto* const given = (OrvMorphState*)(void*)block.data();
  OrvMorphState* allocated = nullptr;
  CHECK(flat.init(prepared, mask.bytes.data(), maskSize, anchor, given) == orvStatusOk);
  CHECK(flat.alloc(prepared, mask.bytes.data(), maskSize, anchor, &allocated) == orvStatusOk);
  Image<T> src(r, shape.width, shape.height, flat.channels);
  src.fill(r, false);
  Grid<T> grid(shape.width, shape.height, flat.channels, 0);
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < src.elements(); ++x) grid.at(x / flat.channels, y, x % flat.channels) = src.at(x, y);
  for (const bool dilate : {false, true}) {
    Grid<T> expected = foldMask(grid, {0, 0, shape.width, shape.height, 0}, mask, dilate);
    for (OrvMorphState* const state : {given, allocated})
      checkReplicate<T>(
          r, src, flat.channels, [&](auto... a) { return flat.filters[dilate](a..., state); },
          [&](int x, int y) { return expected.at(x / flat.channels, y, x % flat.channels); });
  }
  CHECK(block.intact() && orviMorphologyFree(allocated) == orvStatusOk);
}

template <class T>
void sweepFlat(const Flat<T>& flat) {
  Random r(seed());
  for (const Shape& shape : shapes())
    if (shape.width > 17 || r.one(2)) check(flat, r, shape, someMask(r, 7));
  for (int i = 0; i < 6; ++i) check(flat, r, {r.in(1, 40), r.in(1, 40)}, someMask(r, i % 2 ? 21 : 12));
}

// The checks of Init, of InitAlloc and of the filters, in their order.
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
  CHECK(flat.init(9, mask, {3, 2}, {1, 1}, state) == orvStatusOk);
  for (const auto filter : flat.filters) walkReplicate<T>(filter, state, flat.channels, false);
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
  CHECK(floats[1].init(50, cross, {3, 3}, {1, 1}, state) == orvStatusOk && state->shapeKind == orvMorphArbitrary);
  int32_t size = 0;  // as in the border form: A = 16, H = 3, E = 10 * 132 + 160
  CHECK(bytes[0].size(100, cross, {3, 3}, &size) == orvStatusOk && size == 33 * 16 + 48 + 160 + 1480 + 80 + 16 + 112);
}

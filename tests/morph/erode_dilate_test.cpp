// Erosion and dilation under every kind of mask against their definition; sizes, the record, statuses.
#include <float.h>
#include "morph/morph_cases.h"

using namespace test;

namespace {

template <class State>
auto initRun(OrvStatus (*f)(int32_t, const uint8_t*, OrvSize, State*, uint8_t*)) {
  return [=](OrvSize roi, const uint8_t* mask, OrvSize size, void* state, uint8_t* buffer) {
    return f(roi.width, mask, size, (State*)state, buffer);
  };
}
auto sizeRun(OrvStatus (*f)(int32_t, OrvSize, int32_t*, int32_t*)) {
  return [=](OrvSize roi, OrvSize mask, int32_t* spec, int32_t* buffer) { return f(roi.width, mask, spec, buffer); };
}

#define FAMILY(T, C, packed, tag)                                                                     \
  MorphFamily<T> {                                                                                    \
    C, packed, sizeRun(orviMorphologyBorderGetSize_##tag), initRun(orviMorphologyBorderInit_##tag), { \
      {"orviErodeBorder_" #tag, Op::erode, morphRun(orviErodeBorder_##tag)},                          \
          {"orviDilateBorder_" #tag, Op::dilate, morphRun(orviDilateBorder_##tag)},                   \
    }                                                                                                 \
  }
const auto bytes1 = FAMILY(uint8_t, 1, false, 8u_C1R), bytes3 = FAMILY(uint8_t, 3, false, 8u_C3R),
           bytes4 = FAMILY(uint8_t, 4, false, 8u_C4R), bits = FAMILY(uint8_t, 1, true, 1u_C1R);
const auto words = FAMILY(uint16_t, 1, false, 16u_C1R);
const auto shorts = FAMILY(int16_t, 1, false, 16s_C1R);
const auto floats1 = FAMILY(float, 1, false, 32f_C1R), floats3 = FAMILY(float, 3, false, 32f_C3R),
           floats4 = FAMILY(float, 4, false, 32f_C4R);

template <class Body>
void forAll(const Body& body) {
  body(bits), body(bytes1), body(bytes3), body(bytes4), body(words), body(shorts), body(floats1), body(floats3),
      body(floats4);
}

}  // namespace

TEST(bytes) { sweepMorph(bytes1), sweepMorph(bytes3), sweepMorph(bytes4); }
TEST(shorts) { sweepMorph(words), sweepMorph(shorts); }
TEST(floats) { sweepMorph(floats1), sweepMorph(floats3), sweepMorph(floats4); }
TEST(packedBits) { sweepMorph(bits); }

// Regions wider than a strip; masks with more runs than a table holds; masks too wide for any strip of the scratch.
TEST(extremes) {
  Random r(seed());
  MaskShape noise{40, 33, {}}, wide{300, 1, {}}, tall{1, 60, std::vector<uint8_t>(60, 1)},
      large{35, 37, std::vector<uint8_t>(35 * 37, 1)};
  for (int i = 0; i < 40 * 33; ++i) noise.bytes.push_back(r.one(2));
  for (int i = 0; i < 300; ++i) wide.bytes.push_back(i % 7 != 3);
  forAll([&](const auto& family) {
    for (const MaskShape& mask : {noise, wide, tall, large})
      for (const Shape& shape : {Shape{3, 2}, Shape{21, 11}})
        if (!quick() || r.one(3)) checkMorph(family, r, shape, mask, someMorphBorder(r));
    for (int i = 0; i < (quick() ? 1 : 2); ++i)
      checkMorph(family, r, {r.in(600, 1500), 5}, someMask(r, 9), someMorphBorder(r));
  });
}

// A window of infinities: an arbitrary mask gives the largest finite value, a rectangle keeps them.
TEST(infinities) {
  const OrvSize roi = {37, 1}, maskSize = {3, 3};
  const std::vector<uint8_t> cross = {0, 1, 0, 1, 1, 1, 0, 1, 0}, full(9, 1);
  for (const bool dilate : {false, true})
    for (const auto* mask : {&cross, &full}) {
      const std::vector<float> src(37, dilate ? -INFINITY : INFINITY);
      const float want = mask == &full ? src[0] : dilate ? -FLT_MAX : FLT_MAX;
      std::vector<float> dst(37);
      alignas(16) static uint8_t state[1 << 14], buffer[1 << 14];
      floats1.init(roi, mask->data(), maskSize, state, buffer);
      forEachSetting(false, [&] {
        floats1.filters[dilate].run({src.data(), 148, dst.data(), 148, roi, orvBorderRepl, state, buffer});
        for (const float v : dst) CHECK(v == want, "%g", (double)v);
      });
    }
}

// Sizes worked by hand for 100 pixels and masks of 3 x 3 and 5 x 4: with A = 16 and 32,
// F = 2 * H * (row + 32) + 32 * H + 32 (twice that in 16 bits), E = (H * H + 1) * (row + 32) + 40 * H + 40.
TEST(sizes) {
  const auto check = [](const auto& family, OrvSize mask, int32_t work, int32_t spec, int32_t tail) {
    int32_t stateBytes = -1, bufferBytes = -1;
    family.size({100, 1}, mask, &stateBytes, &bufferBytes);
    CHECK(bufferBytes == work + tail, "%d", bufferBytes);
    CHECK(stateBytes == spec, "%d", stateBytes);
  };
  const int tail3 = 80 + 16 + 112, tail4 = 96 + 32 + 128, e3 = 10 * 132 + 160;
  check(bytes1, {3, 3}, e3, 33 * 16 + 48 + 160 + e3 + tail3, tail3);
  check(bytes4, {5, 4}, 8 * 432 + 160, 33 * 32 + 64 + 160 + 8 * 432 + 160 + tail4, tail4);
  check(words, {3, 3}, 2 * (6 * 232 + 128), 16 + 48 + 160, tail3);
  check(shorts, {5, 4}, 17 * 232 + 200, 32 + 64 + 160, tail4);
  check(floats4, {5, 4}, 17 * 1632 + 200, 33 * 32 + 64 + 160 + 17 * 1632 + 200 + tail4, tail4);
  check(bits, {3, 3}, e3, 16 + 96, tail3);
}

// The record of a small ellipse, of a rectangle beside its anchor, of an empty mask, as far as its fields are told.
TEST(record) {
  alignas(16) static uint8_t block[1 << 14], buffer[1 << 14];
  const auto build = [&](const auto& family, std::vector<uint8_t> mask, OrvSize size) {
    CHECK(family.init({50, 1}, mask.data(), size, block, buffer) == orvStatusOk);
    return *(const OrvMorphState*)(const void*)block;
  };
  const std::vector<uint8_t> cross = {0, 7, 0, 1, 1, 1, 0, 1, 0}, corner = {0, 0, 0, 0, 1, 1};
  OrvMorphState s = build(shorts, cross, {3, 3});
  CHECK(s.shapeKind == orvMorphEllipse && s.marker == -1 && s.dataType == orvData16s && s.totalSize == 0);
  CHECK(s.shapeDesc->rowCount == 3 && s.shapeDesc->lengthCount == 2 && s.shapeDesc->boxHeight == 3);
  CHECK(s.shapeDesc->runLength[0] == 3 && s.shapeDesc->runLength[1] == 1 && s.shapeDesc->runAnchor[0] == 1);
  CHECK(s.shapeDesc->rowLengthIndex[0] == 1 && s.shapeDesc->rowLengthIndex[1] == 0 && s.shapeDesc->rowIndex[2] == 2);
  CHECK(memcmp(s.maskCopy, cross.data(), 9) == 0 && s.erodeTable == s.maskCopy && s.rowStride == 112);
  s = build(bytes1, cross, {3, 3});
  CHECK(s.shapeKind == orvMorphArbitrary && !s.shapeDesc && s.rowStride == 64 && s.totalSize == 33 * 16 + 384 + 112);
  CHECK(s.erodeTable == s.maskCopy + 16 && s.dilateTable == s.maskCopy + 17 * 16);
  CHECK(s.erodeTable[0] == 255 && s.erodeTable[31] == 0 && s.dilateTable[15] == 0 && s.dilateTable[16] == 255);
  s = build(floats3, corner, {3, 2});
  CHECK(s.shapeKind == orvMorphRectangle && s.anchorX == 1 && s.rightExtent == 1 && s.bottomExtent == 1);
  CHECK(s.shapeDesc->boxWidth == 2 && s.shapeDesc->boxAnchorY == -1 && s.channels == 3 && s.roiWidth == 50);
  const auto* const limits = (const float*)(const void*)s.erodeTable;
  CHECK(limits[0] == FLT_MAX && limits[16] == -FLT_MAX && s.dataType == orvData32f);
  s = build(bytes4, std::vector<uint8_t>(6), {3, 2});
  CHECK(s.shapeKind == orvMorphEmpty && !s.erodeTable && s.anchorX == 0 && s.rightExtent == 0 && s.totalSize == 112);
  CHECK(build(words, {0, 1, 0, 1, 1, 0}, {3, 2}).shapeKind == orvMorphEllipse);
  CHECK(build(words, {1, 0, 0, 0, 1, 0}, {3, 2}).shapeKind == orvMorphArbitrary);
  CHECK(build(words, {0, 1, 0, 1, 1, 1, 0, 1, 0, 1, 1, 1}, {3, 4}).shapeKind == orvMorphEllipse);
  CHECK(build(words, {0, 1, 1, 1, 1, 1, 1, 1, 0}, {3, 3}).shapeKind == orvMorphArbitrary,
        "equal lengths, unequal places");
}

TEST(statuses) {
  const std::vector<Op> both = {Op::erode, Op::dilate};
  walkMorph(bytes1, true), walkMorph(bytes3, true), walkMorph(bytes4, true), walkMorph(bits, false, both);
  walkMorph(words, true, both), walkMorph(shorts, true, both);
  walkMorph(floats1, true), walkMorph(floats3, true), walkMorph(floats4, true);
}

// Opening, closing and their differences of 8u and 32f images against their definition; sizes, records, statuses.
// One body serves both variants.
#include "morph/adv_cases.h"

using namespace test;

namespace {

const auto bytes1 = ADV_FAMILY(uint8_t, 1, false, 8u_C1R), bytes3 = ADV_FAMILY(uint8_t, 3, false, 8u_C3R),
           bytes4 = ADV_FAMILY(uint8_t, 4, false, 8u_C4R);
const auto floats1 = ADV_FAMILY(float, 1, false, 32f_C1R), floats3 = ADV_FAMILY(float, 3, false, 32f_C3R),
           floats4 = ADV_FAMILY(float, 4, false, 32f_C4R);

}  // namespace

TEST(bytes) { sweepMorph(bytes1), sweepMorph(bytes3), sweepMorph(bytes4); }
TEST(floats) { sweepMorph(floats1), sweepMorph(floats3), sweepMorph(floats4); }

// Differences run in bands of 16 rows or more: short last ones, and masks that reach further than a band.
TEST(bands) {
  Random r(seed());
  const MaskShape tall{1, 9, std::vector<uint8_t>(9, 1)}, taller{1, 41, std::vector<uint8_t>(41, 1)};
  const Shape floats{1030, 50}, bytes{4100, 66};
  checkMorph(floats1, r, floats, tall, orvBorderRepl), checkMorph(floats1, r, floats, taller, orvBorderRepl);
  for (const OrvBorderType border : {+orvBorderInMem, orvBorderRepl | orvBorderInMemTop})
    if (!quick()) checkMorph(floats1, r, floats, someMask(r, 9), border);
  if (!quick()) checkMorph(bytes1, r, bytes, someMask(r, 9), orvBorderRepl | orvBorderInMemTop);
}

TEST(statuses) {
  walkMorph(bytes1, true), walkMorph(bytes3, true), walkMorph(bytes4, true);
  walkMorph(floats1, true), walkMorph(floats3, true), walkMorph(floats4, true);
}

// 100 x 50 pixels under 5 x 4: rows of (104 * pixel + 31) & ~31 bytes, 53 of them, behind two pieces of scratch.
TEST(sizesAndRecord) {
  const OrvSize roi = {100, 50}, maskSize = {5, 4};
  const std::vector<uint8_t> mask = {0, 1, 1, 0, 0, 1, 1, 1, 1, 0, 0, 1, 0, 1, 0, 0, 1, 0, 0, 1};
  alignas(16) static uint8_t block[1 << 18], buffer[1 << 20];
  int32_t stateBytes, bufferBytes, oneState, oneBuffer;
  bytes3.size(roi, maskSize, &stateBytes, &bufferBytes);
  orviMorphologyBorderGetSize_8u_C3R(100, maskSize, &oneState, &oneBuffer);
  CHECK(stateBytes == 2 * oneState + 32 && bufferBytes == 2 * oneBuffer + 320 * 53);
  memset(buffer, 1, sizeof buffer);
  CHECK(bytes3.init(roi, mask.data(), maskSize, block, buffer) == orvStatusOk);
  const OrvMorphAdvState& s = *(const OrvMorphAdvState*)(const void*)block;
  CHECK((uint8_t*)s.forwardState == block + 32 && (uint8_t*)s.turnedState == block + 32 + oneState);
  CHECK(s.forwardState->roiWidth == 104 && s.turnedState->roiWidth == 100);
  CHECK(s.turnedState->anchorX == 2 && s.turnedState->anchorY == 2 && s.forwardState->anchorY == 1);
  CHECK(memcmp(s.forwardState->maskCopy, mask.data(), mask.size()) == 0);
  CHECK(std::equal(mask.rbegin(), mask.rend(), s.turnedState->maskCopy));
  CHECK(s.tempImage == buffer + 2 * oneBuffer && s.tempSize == 320 * 53 && s.bufferHalf == oneBuffer);
  CHECK(s.tempImage[0] == 0 && s.tempImage[s.tempSize - 1] == 0 && s.tempImage[s.tempSize] == 1);
  // An intermediate image that a taller region would need is refused, in memory or not.
  std::vector<uint8_t> image(60 * 300);
  for (const MorphFilter<uint8_t>& filter : bytes3.filters)
    CHECK(filter.run({image.data() + 300, 300, image.data(), 300, {100, 54}, orvBorderRepl, block, buffer}) ==
          orvStatusSize);
}

// The difference of equal pixels is +0, and the result may replace the source of an opening.
TEST(zerosAndInPlace) {
  const OrvSize roi = {19, 3}, maskSize = {3, 3};
  const std::vector<uint8_t> mask = {0, 1, 1, 1, 1, 1, 0, 1, 0};
  alignas(16) static uint8_t block[1 << 16], buffer[1 << 16];
  std::vector<float> minusZero(57, -0.0f), dst(57, 1);
  CHECK(floats1.init(roi, mask.data(), maskSize, block, buffer) == orvStatusOk);
  for (const int i : {2, 3, 4}) {
    floats1.filters[(size_t)i].run({minusZero.data(), 76, dst.data(), 76, roi, orvBorderRepl, block, buffer});
    for (const float v : dst) CHECK(same(v, 0.0f));
  }
  for (size_t i = 0; i < dst.size(); ++i) dst[i] = (float)(i * 37 % 11);
  std::vector<float> open(57), inPlace = dst;
  for (const int i : {0, 1}) {
    floats1.filters[(size_t)i].run({dst.data(), 76, open.data(), 76, roi, orvBorderRepl, block, buffer});
    floats1.filters[(size_t)i].run({dst.data(), 76, dst.data(), 76, roi, orvBorderRepl, block, buffer});
    CHECK(open == dst);
  }
}

// Allocated records: any anchor, regions that the small intermediate image holds, each allocation failing in turn.
TEST(allocatedRecords) {
  const auto check = [](const auto& given, auto make) {
    Random r(seed());
    for (int i = 0; i < (quick() ? 5 : 20); ++i) {
      MaskShape mask = someMask(r, 6);
      mask.anchorX = r.in(0, mask.width - 1), mask.anchorY = r.in(0, mask.height - 1);
      OrvMorphAdvState* record = nullptr;
      const auto enough = [](OrvSize roi) { return OrvSize{roi.width * 16 + 90, roi.height + 10}; };
      auto family = given;
      family.size = [&](OrvSize roi, OrvSize maskSize, int32_t* spec, int32_t* buffer) {
        return given.size(enough(roi), maskSize, spec, buffer);
      };
      family.init = [&](OrvSize roi, const uint8_t* bytes, OrvSize maskSize, void*, uint8_t*) {
        return make(&record, enough(roi), bytes, maskSize, {mask.anchorX, mask.anchorY});
      };
      for (auto& filter : family.filters)
        filter.run = [&record, run = filter.run](auto a) { return a.state = record, run(a); };
      checkMorph(family, r, {r.in(1, 30), r.in(1, 12)}, mask, someMorphBorder(r));
      CHECK(orviMorphAdvFree(record) == orvStatusOk && steeredLiveAllocations() == 0);
    }
    for (int k = 1; k <= 7; ++k) {
      OrvMorphAdvState* record = nullptr;
      const std::vector<uint8_t> mask(6, 1);
      steerFailAllocation(k);
      CHECK(make(&record, {10, 10}, mask.data(), {3, 2}, {0, 1}) == orvStatusNoMem && !record, "allocation %d", k);
      CHECK(steeredLiveAllocations() == 0);
    }
    steerFailAllocation(0);
    OrvMorphAdvState* record = nullptr;
    const uint8_t one = 1;
    for (const OrvPoint anchor : {OrvPoint{1, 0}, {0, -1}}) {
      walkArguments("record", make,
                    pointersThenSizes({0, 2}, 1) + std::vector<Told>{{Fault::width, 3}, {Fault::height, 3}},
                    Value<OrvMorphAdvState**>({&record}), Roi(), Value<const uint8_t*>({&one}),
                    Value<OrvSize>({{1, 1}}), Value<OrvPoint>({anchor}));
      CHECK(make(&record, {1, 1}, &one, {1, 1}, anchor) == orvStatusAnchor);
    }
  };
  check(bytes1, orviMorphAdvInitAlloc_8u_C1R), check(bytes3, orviMorphAdvInitAlloc_8u_C3R);
  check(bytes4, orviMorphAdvInitAlloc_8u_C4R), check(floats1, orviMorphAdvInitAlloc_32f_C1R);
  check(floats3, orviMorphAdvInitAlloc_32f_C3R), check(floats4, orviMorphAdvInitAlloc_32f_C4R);
  CHECK(orviMorphAdvFree(nullptr) == orvStatusNullPtr);
}

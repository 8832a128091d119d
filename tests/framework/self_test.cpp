// Tests of the tester: planted faults must be caught, and a right function must pass.
#include "framework/sweep.h"

using namespace test;

extern "C" int32_t ownGetNumThreads(void);

namespace {

// The function under test: dst = src + 1, with one of the usual faults planted.
enum class Plant { none, overwrite, overread, tail, step, padding, source, status, order, writesOnError, seam };
Plant plant;

OrvStatus increment(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roi) {
  if (plant == Plant::writesOnError && dst != nullptr) dst[0] = 77;
  if (plant == Plant::order && (roi.width < 1 || roi.height < 1)) return orvStatusSize;
  if (src == nullptr || dst == nullptr) return orvStatusNullPtr;
  if (roi.width < 1 || roi.height < 1) return orvStatusSize;
  if (plant != Plant::status && (srcStep < roi.width || dstStep < roi.width)) return orvStatusStep;
  if (plant == Plant::status && srcStep < roi.width) return orvStatusStep;
  const int32_t bands = ownGetNumThreads();
  for (int32_t y = 0; y < roi.height; ++y) {
    const uint8_t* s = src + (ptrdiff_t)y * (plant == Plant::step ? dstStep : srcStep);
    uint8_t* d = dst + (ptrdiff_t)y * dstStep;
    const int32_t width = plant == Plant::tail && roi.width > 16 ? roi.width - 1 : roi.width;
    const bool lost = plant == Plant::seam && bands > 2 && y == roi.height / bands;
    for (int32_t x = 0; x < width; ++x) d[x] = (uint8_t)(s[x] + (lost ? 0 : 1));
    if (plant == Plant::overwrite) d[roi.width] = 0xA5;
    if (plant == Plant::padding && dstStep > roi.width && y + 1 < roi.height) d[roi.width] = 3;
    if (plant == Plant::overread) d[0] = (uint8_t)(d[0] + 0 * *(const volatile uint8_t*)(s + roi.width));
    if (plant == Plant::source) const_cast<uint8_t*>(s)[0] = 1;
  }
  return orvStatusOk;
}

void reference(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roi) {
  for (int32_t y = 0; y < roi.height; ++y)
    for (int32_t x = 0; x < roi.width; ++x) dst[y * dstStep + x] = (uint8_t)(src[y * srcStep + x] + 1);
}

void sweepPlanted() { sweep("increment", increment, reference, {64, 64}, In<uint8_t>(), Out<uint8_t>(), Roi()); }

void walkPlanted() {
  std::vector<Told> order = pointersThenSizes({0, 1}, 2);
  order.push_back({Fault::smallStep, 0});
  order.push_back({Fault::smallStep, 1});
  walkArguments("increment", increment, order, In<uint8_t>(), Out<uint8_t>(), Roi());
}

void overrunGuard() {
  const Guarded memory(100, true, 0);
  *(volatile uint8_t*)(memory.data() + 100) = 1;
}

void underrunGuard() {
  const Guarded memory(100, false, 0);
  *(volatile uint8_t*)(memory.data() - 1) = 1;
}

void spoilSurroundings() {
  const Guarded memory(100, true, 8);
  memory.data()[103] = 0;
  CHECK(memory.intact());
}

}  // namespace

TEST(aRightFunctionPasses) {
  plant = Plant::none;
  CHECK(!isCaught(sweepPlanted));
  CHECK(!isCaught(walkPlanted));
}

TEST(plantedFaultsAreCaught) {
  for (const Plant fault :
       {Plant::overwrite, Plant::overread, Plant::tail, Plant::step, Plant::padding, Plant::source, Plant::seam}) {
    plant = fault;
    CHECK(isCaught(sweepPlanted), "fault %d slipped through the sweep", (int)fault);
  }
  for (const Plant fault : {Plant::status, Plant::order, Plant::writesOnError}) {
    plant = fault;
    CHECK(isCaught(walkPlanted), "fault %d slipped through the walker", (int)fault);
  }
}

TEST(guardsCatchOneByte) {
  CHECK(isCaught(overrunGuard));
  CHECK(isCaught(underrunGuard));
  CHECK(isCaught(spoilSurroundings));
}

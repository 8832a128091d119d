// Standard line detection against its plain form; sizes and statuses.
// One body serves both variants.
#include "features/hough_cases.h"

using namespace test;

TEST(lines) {
  Random r(seed());
  for (const Shape& shape : lineShapes()) {
    const OrvSize roi = {shape.width, shape.height};
    const OrvPointPolar delta = someDelta(r, roi);
    const int32_t threshold = r.in(1, r.one(2) ? 4 : 20), most = r.one(2) ? r.in(1, 4) : 500;
    const Context context(detail::describe("orviHoughLine", shape) + " rho " + std::to_string(delta.rho) + " theta " +
                          std::to_string(delta.theta));
    Image<uint8_t> src(r, roi.width, roi.height, 1);
    drawLines(r, src, roi.width, roi.height);
    const float span = (float)(roi.width + roi.height);
    const float low = (float)r.in(-1000, 800) * .001f * span, theta = (float)r.in(-10, 30) * .1f;
    const OrvPointPolar part[2] = {{low, theta},
                                   {low + (float)r.in(0, 700) * .001f * span, theta + (float)r.in(0, 20) * .1f}};
    Scratch buffer([&](OrvSize s, int32_t* bytes) { return orviHoughLineGetSize_8u_C1R(s, delta, most, bytes); });
    buffer.prepare(r, shape), buffer.reset();
    for (const bool limited : {false, true}) {
      const auto expected =
          reference::houghLines(src.data(), src.step(), roi, delta, threshold, most, limited ? part : nullptr);
      forEachSetting(false, [&] {
        std::vector<OrvPointPolar> lines((size_t)most + 1, {-7, -7});
        OrvPointPolar bounds[2] = {part[0], part[1]};
        int32_t count = -7;
        const OrvStatus status =
            limited ? orviHoughLine_Region_8u32f_C1R(src.data(), src.step(), roi, lines.data(), bounds, most, &count,
                                                     delta, threshold, buffer.memory->data())
                    : orviHoughLine_8u32f_C1R(src.data(), src.step(), roi, delta, threshold, lines.data(), most, &count,
                                              buffer.memory->data());
        CHECK(status == orvStatusOk && src.unchanged());
        buffer.verify(0);
        if (count != (int)expected.size()) return fail("%d lines, not %d", count, (int)expected.size());
        for (size_t i = 0; i < expected.size(); ++i)
          if (lines[i].rho != expected[i].rho || lines[i].theta != expected[i].theta)
            return fail("line %d differs", (int)i);
        CHECK(lines[expected.size()].rho == -7);
        CHECK(!limited || (bounds[0].theta >= 0 && bounds[1].theta <= 3.14159f));
      });
    }
  }
}

TEST(sizes) {
  const OrvPointPolar delta = {1, .0174533f};
  int32_t bytes = -1;
  CHECK(orviHoughLineGetSize_8u_C1R({100, 50}, delta, 7, &bytes) == orvStatusOk);
  CHECK(bytes == 50 * 464 + 16 * 7 + 8 * 180 + 16 * 301 + 288, "%d", bytes);
  CHECK(orviHoughLineGetSize_8u_C1R({30000, 30000}, delta, 7, &bytes) == orvStatusSizeOverflowWarn);
  CHECK(bytes == (int32_t)(30000u * 120064u + 16 * 7 + 8 * 180 + 16 * 120001 + 288), "%d", bytes);
  for (const OrvPointPolar& bad : {OrvPointPolar{0, 1}, OrvPointPolar{1, -1}, OrvPointPolar{NAN, 1}}) {
    CHECK(orviHoughLineGetSize_8u_C1R({0, 1}, bad, 1, nullptr) == orvStatusNullPtr);
    CHECK(orviHoughLineGetSize_8u_C1R({0, 1}, bad, 1, &bytes) == orvStatusSize);
    CHECK(orviHoughLineGetSize_8u_C1R({1, 1}, bad, 1, &bytes) == orvStatusBadArg);
  }
}

namespace {

struct Arguments {
  const uint8_t* src;
  int32_t step;
  OrvSize roi;
  OrvPointPolar delta;
  int32_t threshold;
  OrvPointPolar *lines, *part;
  int32_t most;
  int32_t* count;
  uint8_t* buffer;
};
enum { whole = 1, region = 2, both = 3 };

OrvStatus run(int function, const Arguments& a) {
  return function == whole
             ? orviHoughLine_8u32f_C1R(a.src, a.step, a.roi, a.delta, a.threshold, a.lines, a.most, a.count, a.buffer)
             : orviHoughLine_Region_8u32f_C1R(a.src, a.step, a.roi, a.lines, a.part, a.most, a.count, a.delta,
                                              a.threshold, a.buffer);
}

}  // namespace

TEST(statuses) {
  const std::vector<SharedCheck<Arguments>> checks = {
      {region, {"part", orvStatusNullPtr, [](Arguments& a) { a.part = nullptr; }}},
      {both, {"src", orvStatusNullPtr, [](Arguments& a) { a.src = nullptr; }}},
      {both, {"lines", orvStatusNullPtr, [](Arguments& a) { a.lines = nullptr; }}},
      {both, {"count", orvStatusNullPtr, [](Arguments& a) { a.count = nullptr; }}},
      {both, {"buffer", orvStatusNullPtr, [](Arguments& a) { a.buffer = nullptr; }}},
      {both, {"step", orvStatusStep, [](Arguments& a) { a.step = 0; }}},
      {both, {"width", orvStatusSize, [](Arguments& a) { a.roi.width = 0; }}},
      {both, {"height", orvStatusSize, [](Arguments& a) { a.roi.height = -1; }}},
      {both, {"most", orvStatusSize, [](Arguments& a) { a.most = 0; }}},
      {both, {"no rho", orvStatusBadArg, [](Arguments& a) { a.delta.rho = 0; }}},
      {both, {"rho", orvStatusBadArg, [](Arguments& a) { a.delta.rho = 16.5f; }}},
      {both, {"no theta", orvStatusBadArg, [](Arguments& a) { a.delta.theta = 0; }}},
      {both, {"theta", orvStatusBadArg, [](Arguments& a) { a.delta.theta = 3.1416f; }}},
      {both, {"threshold", orvStatusBadArg, [](Arguments& a) { a.threshold = 0; }}}};
  std::vector<uint8_t> src(64, 1), buffer(1 << 20);
  OrvPointPolar lines[4] = {{-7, 0}}, part[2] = {{-9, -1}, {9, 9}};
  int32_t count = -7;
  const Arguments valid = {src.data(), 8, {8, 8}, {1, .1f}, 3, lines, part, 4, &count, buffer.data()};
  for (const int function : {whole, region})
    walkShared(function, valid, checks, run, [&] { return count == -7 && lines[0].rho == -7 && part[1].theta == 9; });
  for (const OrvPointPolar& high : {OrvPointPolar{0, .5f}, OrvPointPolar{-1, 2}}) {
    part[0] = {0, 1}, part[1] = high, count = -7;
    CHECK(run(region, valid) == orvStatusRange && count == 0);
  }
}

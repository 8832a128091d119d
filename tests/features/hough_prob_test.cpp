// Probabilistic line detection against its plain form; sizes and statuses.
#include "features/hough_cases.h"

using namespace test;

TEST(segments) {
  Random r(seed());
  for (const Shape& shape : lineShapes()) {
    const OrvSize roi = {shape.width, shape.height};
    OrvPointPolar delta = someDelta(r, roi);
    if (r.one(4)) delta.rho = 12000;  // one cell or none, and counts of 32 bits
    const int32_t threshold = r.in(1, 12), length = r.in(0, 15), gap = r.in(0, 4), most = r.one(2) ? r.in(0, 3) : 500;
    const Context context(detail::describe("orviHoughProbLine_8u32f_C1R", shape) + " rho " + std::to_string(delta.rho) +
                          " theta " + std::to_string(delta.theta));
    Image<uint8_t> src(r, roi.width, roi.height, 1);
    drawLines(r, src, roi.width, roi.height);
    const auto all = reference::houghSegments(src.data(), src.step(), roi, delta, threshold, length, gap);
    int32_t stateBytes = 0;
    Scratch buffer(
        [&](OrvSize s, int32_t* bytes) { return orviHoughProbLineGetSize_8u_C1R(s, delta, &stateBytes, bytes); });
    buffer.prepare(r, shape), buffer.reset();
    const Guarded memory((size_t)stateBytes, true, (size_t)r.in(0, 9));
    auto* const state = (OrvHoughProbState*)(void*)memory.data();
    CHECK(orviHoughProbLineInit_8u32f_C1R(roi, delta, 3, state) == orvStatusOk && memory.intact());
    const size_t kept = std::min(all.size(), (size_t)most);
    forEachSetting(false, [&] {
      std::vector<int32_t> lines(4 * (kept + 1), -7);
      int32_t count = -7;
      const OrvStatus status = orviHoughProbLine_8u32f_C1R(src.data(), src.step(), roi, threshold, length, gap,
                                                           lines.data(), most, &count, buffer.memory->data(), state);
      CHECK(status == (all.size() > kept ? orvStatusLinesFullWarn : orvStatusOk), "status %d", status);
      CHECK(src.unchanged());
      buffer.verify(0);
      if (count != (int)kept) return fail("%d segments, not %d", count, (int)kept);
      for (size_t i = 0; i < 4 * kept; ++i)
        if (lines[i] != all[i / 4][i % 4]) return fail("segment %d differs", (int)i / 4);
      CHECK(lines[4 * kept] == -7);
    });
  }
}

TEST(sizes) {
  const OrvPointPolar delta = {1, .0174533f};
  int32_t bytes = -1, state = -1;
  CHECK(orviHoughProbLineGetSize_8u_C1R({100, 50}, delta, &state, &bytes) == orvStatusOk);
  CHECK(state == 8 * 180 + 16 && bytes == 9 * 5000 + 4 * 301 * 180, "%d %d", state, bytes);
  for (const OrvPointPolar& bad : {OrvPointPolar{0, 1}, OrvPointPolar{1, -1}, OrvPointPolar{NAN, 1}}) {
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 0}, bad, &state, nullptr) == orvStatusNullPtr);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 0}, bad, nullptr, &bytes) == orvStatusNullPtr);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 0}, bad, &state, &bytes) == orvStatusSize);
    CHECK(orviHoughProbLineGetSize_8u_C1R({1, 1}, bad, &state, &bytes) == orvStatusBadArg);
    CHECK(orviHoughProbLineInit_8u32f_C1R({1, 0}, bad, 0, nullptr) == orvStatusSize);
    CHECK(orviHoughProbLineInit_8u32f_C1R({1, 1}, bad, 0, nullptr) == orvStatusBadArg);
  }
  CHECK(orviHoughProbLineInit_8u32f_C1R({1, 1}, delta, 0, nullptr) == orvStatusNullPtr);
}

TEST(statuses) {
  std::vector<uint8_t> src(64, 1), buffer(1 << 16);
  int32_t count = -7;
  alignas(8) uint8_t state[512];
  CHECK(orviHoughProbLineInit_8u32f_C1R({8, 8}, {1, .1f}, 0, (OrvHoughProbState*)state) == orvStatusOk);
  int32_t segment[16] = {-7};
  struct Segments {
    const void *src, *lines, *buffer, *state;
    OrvSize roi;
    int32_t threshold, length, gap;
  };
  walkChecks<Segments>(
      {src.data(), segment, buffer.data(), state, {8, 8}, 3, 2, 1},
      {{"src", orvStatusNullPtr, [](Segments& a) { a.src = nullptr; }},
       {"lines", orvStatusNullPtr, [](Segments& a) { a.lines = nullptr; }},
       {"buffer", orvStatusNullPtr, [](Segments& a) { a.buffer = nullptr; }},
       {"state", orvStatusNullPtr, [](Segments& a) { a.state = nullptr; }},
       {"width", orvStatusSize, [](Segments& a) { a.roi.width = 0; }},
       {"height", orvStatusSize, [](Segments& a) { a.roi.height = 0; }},
       {"threshold", orvStatusBadArg, [](Segments& a) { a.threshold = 0; }},
       {"length", orvStatusBadArg, [](Segments& a) { a.length = -1; }},
       {"gap", orvStatusBadArg, [](Segments& a) { a.gap = -1; }}},
      [&](Segments& a) {
        return orviHoughProbLine_8u32f_C1R((const uint8_t*)a.src, 8, a.roi, a.threshold, a.length, a.gap,
                                           (int32_t*)a.lines, 4, &count, (uint8_t*)a.buffer,
                                           (const OrvHoughProbState*)a.state);
      },
      [&] { return count == -7 && segment[0] == -7; });
}

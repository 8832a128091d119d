// Probabilistic line detection: its segments; sizes, statuses and a case worked by hand.
#include "features/hough_cases.h"

using namespace test;

// Segments end at pixels that are set, and are long enough. What the rounding of votes
// and the random order decide shows in a number made of all segments of images that are always the same; it was taken
// when they equalled those of a plain form with an accumulator of 32 bits and a mask of whole numbers.
TEST(segments) {
  Random r(1);
  uint64_t print[3] = {};
  for (int i = 0; i < (quick() ? 40 : 200); ++i) {
    const OrvSize roi = {r.in(1, i % 10 ? 90 : 520), r.in(1, i % 10 ? 70 : 150)};
    OrvPointPolar delta = someDelta(r, roi);
    if (r.one(4)) delta.rho = 12000;  // one cell or none, and counts of 32 bits
    const int32_t threshold = r.in(1, 12), length = r.in(0, 15), gap = r.in(0, 4), most = r.one(2) ? r.in(0, 3) : 500;
    const Context context(detail::describe("orviHoughProbLine_8u32f_C1R", {roi.width, roi.height}) + " rho " +
                          std::to_string(delta.rho) + " theta " + std::to_string(delta.theta));
    Image<uint8_t> src(r, roi.width, roi.height, 1);
    drawLines(r, src, roi.width, roi.height);
    int32_t stateBytes = 0;
    Buffer buffer(
        [&](OrvSize s, int32_t* bytes) { return orviHoughProbLineGetSize_8u_C1R(s, delta, &stateBytes, bytes); });
    buffer.prepare(r, {roi.width, roi.height});
    const Guarded memory((size_t)stateBytes, true, (size_t)r.in(0, 9));
    auto* const state = (OrvHoughProbState*)(void*)memory.data();
    CHECK(orviHoughProbLineInit_8u32f_C1R(roi, delta, 3, state) == orvStatusOk && memory.intact());
    int width = 0;
    forEachSetting(false, [&] {
      std::vector<int32_t> lines(4 * ((size_t)most + 1), -7);
      int32_t count = -7;
      const OrvStatus status = orviHoughProbLine_8u32f_C1R(src.data(), src.step(), roi, threshold, length, gap,
                                                           lines.data(), most, &count, buffer.memory->data(), state);
      CHECK(status == orvStatusOk || (status == orvStatusLinesFullWarn && count == most), "status %d", status);
      CHECK(src.unchanged() && count >= 0 && count <= most && lines[4 * (size_t)count] == -7);
      buffer.verify(0);
      uint64_t& p = print[width++];
      p = (p ^ (uint64_t)status) * 0x100000001B3;
      for (const int32_t* s = lines.data(); s < lines.data() + 4 * count; s += 4) {
        const int dx = s[2] - s[0], dy = s[3] - s[1], steps = std::max(abs(dx), abs(dy));
        CHECK(src.at(s[0], s[1]) && src.at(s[2], s[3]) && steps >= length, "%d %d to %d %d", s[0], s[1], s[2], s[3]);
        for (int k = 0; k < 4; ++k) p = (p ^ (uint64_t)s[k]) * 0x100000001B3;
      }
    });
  }
  const uint64_t told = quick() ? 0x9fd38fe217051d44 : 0x1994def7e53dad7a;
  for (int width = 0; width < widths(); ++width) CHECK(print[width] == told, "%#llx", (unsigned long long)print[width]);
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

// A perfect line of 20 votes may be at the threshold.
TEST(thresholds) {
  const OrvPointPolar delta = {1, 1.5707f};
  const OrvSize roi = {20, 9};
  uint8_t image[180] = {};
  for (int x = 0; x < 20; ++x) image[5 * 20 + x] = 1;
  std::vector<uint8_t> buffer(1 << 16), memory(64);
  auto* const state = (OrvHoughProbState*)(void*)memory.data();
  int32_t count, segment[16];
  orviHoughProbLineInit_8u32f_C1R(roi, delta, 0, state);
  for (const int32_t threshold : {19, 20, 21}) {
    orviHoughProbLine_8u32f_C1R(image, 20, roi, threshold, 5, 0, segment, 4, &count, buffer.data(), state);
    CHECK(count == (threshold <= 20), "threshold %d: %d segments", threshold, count);
    if (count == 1) CHECK(segment[1] == 5 && segment[3] == 5 && abs(segment[0] - segment[2]) == 19);
  }
}
